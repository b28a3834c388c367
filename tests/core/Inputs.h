// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/Core.h"
#include "run/RunInputs.h"

namespace vexmarrow::test {

/// The controls of the window, set by hand.
struct Inputs final : RunInputs {
    Texts texts{u"a", u"b", u""};
    std::string options = "35"; // the numbers of those that are set, and "c" for the vCards
    int tab = 0;

    bool Option(char number) const { return options.find(number) != std::string::npos; }
    std::u16string Text1() const override { return texts[0]; }
    std::u16string Text2() const override { return texts[1]; }
    std::u16string Text3() const override { return texts[2]; }
    bool Option1() const override { return Option('1'); }
    bool Option2() const override { return Option('2'); }
    bool Option3() const override { return Option('3'); }
    bool Option4() const override { return Option('4'); }
    bool Option5() const override { return Option('5'); }
    int SelectedTab() const override { return tab; }
    bool ReadAsVCards() const override { return Option('c'); }
};

} // namespace vexmarrow::test
