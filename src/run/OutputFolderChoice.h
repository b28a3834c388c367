// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Desktop.h"

#include <functional>
#include <string>

namespace vexmarrow {

/// Lets the user choose the folder for results.
class OutputFolderChoice {
public:
    explicit OutputFolderChoice(const Desktop& desktop) : desktop_(desktop) {}

    /// "...": asks for a folder and passes it, with a separator at its end, to `setFolder`. Does
    /// nothing if the user cancels. Traps its own failures.
    void Browse(const std::function<void(const std::u16string&)>& setFolder);

private:
    Desktop desktop_;
    std::u16string lastFolder_; // remembered as choices::kLastOutputFolder
};

} // namespace vexmarrow
