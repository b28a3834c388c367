// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "shell/FolderChoice.h"

#include "shell/Pickers.h"
#include "shell/Trap.h"

namespace vexmarrow {

std::u16string FolderChoice::Ask(Trap& trap) {
    trap.Do(1, [&] { lastFolder_ = LoadChoice(desktop_.settings, last_); });
    std::u16string chosen;
    trap.Do(2, [&] {
        chosen = desktop_.pickers.BrowseForFolder(u"Please select folder:", lastFolder_);
    });
    if (!chosen.empty()) {
        lastFolder_ = chosen;
        trap.Do(3, [&] { SaveChoice(desktop_.settings, last_, lastFolder_); });
    }
    return chosen;
}

} // namespace vexmarrow
