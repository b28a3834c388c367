// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/OutputPath.h"

#include <string>

namespace vexmarrow {

/// The controls of the main window that a run reads, under their names. Each call gives the state
/// at that moment: the user may edit while a run yields.
class RunInputs {
public:
    virtual ~RunInputs() = default;

    virtual std::u16string Text1() const = 0; ///< find what; CR LF between lines
    virtual std::u16string Text2() const = 0; ///< replace with; CR LF between lines
    virtual std::u16string Text3() const = 0; ///< output folder
    virtual bool Option1() const = 0;         ///< fields only
    virtual bool Option2() const = 0;         ///< values only
    virtual bool Option3() const = 0;         ///< fields and values
    virtual bool Option4() const = 0;         ///< save to the folder Text3
    virtual bool Option5() const = 0;         ///< save in the folder of the original
    virtual int SelectedTab() const = 0;      ///< 0 the single pair, 1 the sets
    virtual bool ReadAsVCards() const = 0;    ///< for both tabs
};

// The tabs; any other number is that of none.
inline constexpr int kSinglePairTab = 0;
inline constexpr int kSetsTab = 1;

/// What a run applies the single pair to: the first option that is set decides.
enum class FindMode { None, Fields, Values, FieldsAndValues };
inline FindMode FindModeOf(const RunInputs& inputs) {
    return inputs.Option1()   ? FindMode::Fields
           : inputs.Option2() ? FindMode::Values
           : inputs.Option3() ? FindMode::FieldsAndValues
                              : FindMode::None;
}

/// Whether each line of the boxes of the single pair is a text of its own; else each box is one.
inline bool LinesAreTexts(const RunInputs& inputs) {
    return inputs.ReadAsVCards() || FindModeOf(inputs) == FindMode::FieldsAndValues;
}

/// Where a run saves its results.
inline OutputLocation LocationOf(const RunInputs& inputs) {
    return {inputs.Option4(), inputs.Option5(), inputs.Text3()};
}

} // namespace vexmarrow
