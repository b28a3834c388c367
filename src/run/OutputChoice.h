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
    void SaveOptions(bool option4, bool option5);

    /// Saves the text of Text3, as each change of it asks for.
    void SaveFolder(std::u16string_view text3);

    /// "...": lets the user choose the output folder and hands it, with a separator at its end, to
    /// `setText3`. Nothing happens on cancel. Traps its own failures.
    void Browse(const std::function<void(const std::u16string&)>& setText3);

private:
    Prompts& prompts_;
    Pickers& pickers_;
    SettingsStore& settings_;
    std::u16string lastFolder_; // as in the setting "LastFolderDot"
};

} // namespace vexmarrow
