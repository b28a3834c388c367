// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/Core.h"
#include "run/RunInputs.h"

namespace vexmarrow::test {

/// What a user has entered.
struct Entries {
    Tab tab = Tab::SinglePair;
    std::u16string find = u"a";
    std::u16string replace = u"b";
    ReplacementMode mode = ReplacementMode::WholeText;
    bool asVCards = false;
    std::u16string folder = u"";
    bool savesToFolder = false;
    bool savesBesideInput = true;
};

/// The inputs of a run, set by hand.
struct Inputs final : RunInputs, Entries {
    Inputs& operator=(const Entries& entries) {
        Entries::operator=(entries);
        return *this;
    }
    Tab SelectedTab() const override { return tab; }
    std::u16string FindText() const override { return find; }
    std::u16string ReplacementText() const override { return replace; }
    ReplacementMode Mode() const override { return mode; }
    bool ReadAsVCards() const override { return asVCards; }
    std::u16string OutputFolder() const override { return folder; }
    bool SavesToOutputFolder() const override { return savesToFolder; }
    bool SavesBesideInput() const override { return savesBesideInput; }
};

} // namespace vexmarrow::test
