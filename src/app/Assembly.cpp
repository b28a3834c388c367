// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Assembly.h"

#include "app/Folders.h"
#include "shell/Trap.h"

namespace vexmarrow {

Assembly::Assembly()
    : form1_({textio_, writer_, setsWriter_, ansi_, prompts_, pickers_, settings_, fileManager_,
              eventLoop_, recovery_, logFolders_, ProgramFolder(), DesktopFolder()}) {
    prompts_.SetOwner(&form1_);
    pickers_.SetOwner(&form1_);
}

bool Assembly::Start(const std::vector<std::u16string>& paths) {
    RunHandler([&] {
        Trap(prompts_, u"Form1.Form_Load").Do(0, [this] { settings_.Check(); });
        form1_.Form_Load();
        recovery_.Run();
        form1_.show();
        if (!paths.empty()) {
            form1_.Open(paths);
        }
    });
    return form1_.isVisible();
}

} // namespace vexmarrow
