// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/OutputPath.h"

#include <string>

namespace vexmarrow {

/// The tabs of the main window. A run uses the texts on the selected tab.
enum class Tab { SinglePair = 0, Sets = 1 };

/// Where a run searches for the find text of the single pair.
enum class ReplacementMode { None, FieldsOnly, ValuesOnly, WholeText };

/// What the user has entered for a run. Each call returns the present state, because the user may
/// edit while a run yields.
class RunInputs {
public:
    virtual ~RunInputs() = default;

    virtual Tab SelectedTab() const = 0;
    virtual std::u16string FindText() const = 0;        ///< CR LF between lines
    virtual std::u16string ReplacementText() const = 0; ///< CR LF between lines
    virtual ReplacementMode Mode() const = 0;
    virtual bool ReadAsVCards() const = 0; ///< on either tab
    virtual std::u16string OutputFolder() const = 0;

    // Both may be set, or neither, because the settings file can say so.
    virtual bool SavesToOutputFolder() const = 0;
    virtual bool SavesBesideInput() const = 0;
};

/// Whether each line of the find text and of the replacement text is a text of its own.
inline bool LinesAreTexts(const RunInputs& inputs) {
    return inputs.ReadAsVCards() || inputs.Mode() == ReplacementMode::WholeText;
}

/// Where a run saves its results. If both options are set, the output folder is used.
inline OutputLocation LocationOf(const RunInputs& inputs) {
    return {inputs.SavesToOutputFolder() ? OutputLocation::OneFolder
            : inputs.SavesBesideInput()  ? OutputLocation::BesideInput
                                         : OutputLocation::Nowhere,
            inputs.OutputFolder()};
}

} // namespace vexmarrow
