// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "run/OutputFolderChoice.h"

#include "shell/Choices.h"
#include "shell/Pickers.h"
#include "shell/Trap.h"
#include "textio/Paths.h"

namespace vexmarrow {

void OutputFolderChoice::Browse(const std::function<void(const std::u16string&)>& setFolder) {
    Trap trap(desktop_.prompts, u"Form1.PushButton14_Click");
    trap.Do(1, [&] { lastFolder_ = LoadChoice(desktop_.settings, choices::kLastOutputFolder); });
    std::u16string chosen;
    trap.Do(2, [&] {
        chosen = desktop_.pickers.BrowseForFolder(u"Please select folder:", lastFolder_);
    });
    if (chosen.empty()) {
        return;
    }
    lastFolder_ = chosen;
    trap.Do(3, [&] { SaveChoice(desktop_.settings, choices::kLastOutputFolder, lastFolder_); });
    trap.Do(4, [&] { setFolder(WithSeparator(chosen)); });
}

} // namespace vexmarrow
