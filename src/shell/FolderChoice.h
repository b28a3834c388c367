// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Choices.h"
#include "shell/Desktop.h"

#include <string>

namespace vexmarrow {

class Trap;

/// Lets the user choose a folder. The dialog begins at the folder that was chosen last.
class FolderChoice {
public:
    /// `last` is where the settings keep the chosen folder. It outlives this object.
    FolderChoice(const Desktop& desktop, const Choice<std::u16string>& last)
        : desktop_(desktop), last_(last) {}

    /// Returns the chosen folder, or the empty text if the user cancels. Runs statements 1 to 3 of
    /// the routine whose trap is given.
    std::u16string Ask(Trap& trap);

private:
    Desktop desktop_;
    const Choice<std::u16string>& last_;
    std::u16string lastFolder_;
};

} // namespace vexmarrow
