// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/Core.h"
#include "run/RunInputs.h"

namespace vexmarrow::test {

/// What a user has entered, set by hand.
struct Inputs final : RunInputs {
    Texts texts{u"a", u"b", u""};
    std::string options = "35"; // the numbers of those that are set, and "c" for the vCards
    Tab tab = Tab::SinglePair;

    bool Option(char number) const { return options.find(number) != std::string::npos; }
    Tab SelectedTab() const override { return tab; }
    std::u16string FindText() const override { return texts[0]; }
    std::u16string ReplacementText() const override { return texts[1]; }
    ReplacementMode Mode() const override {
        return Option('1')   ? ReplacementMode::FieldsOnly
               : Option('2') ? ReplacementMode::ValuesOnly
               : Option('3') ? ReplacementMode::WholeText
                             : ReplacementMode::None;
    }
    bool ReadAsVCards() const override { return Option('c'); }
    std::u16string OutputFolder() const override { return texts[2]; }
    bool SavesToOutputFolder() const override { return Option('4'); }
    bool SavesBesideInput() const override { return Option('5'); }
};

} // namespace vexmarrow::test
