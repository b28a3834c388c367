// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace vexmarrow {

class Pickers;
class Prompts;
class SettingsStore;

/// Where results go, as the user chooses it: what the controls of the "Save Option" frame do.
class OutputChoice {
public:
    OutputChoice(Prompts& prompts, Pickers& pickers, SettingsStore& settings)
        : prompts_(prompts), pickers_(pickers), settings_(settings) {}

    /// Saves both options, as a click on either of them asks for.
    void SaveOptions(bool toOutputFolder, bool besideInput);

    /// Saves the output folder, as each change of its box asks for.
    void SaveFolder(std::u16string_view folder);

    /// "...": lets the user choose the output folder and hands it, with a separator at its end, to
    /// `setFolder`. Nothing happens on cancel. Traps its own failures.
    void Browse(const std::function<void(const std::u16string&)>& setFolder);

private:
    Prompts& prompts_;
    Pickers& pickers_;
    SettingsStore& settings_;
    std::u16string lastFolder_; // as in the setting "LastFolderDot"
};

} // namespace vexmarrow
