// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Assembly.h"

#include "app/Strings.h"
#include "base/Utf8.h"
#include "journal/Recovery.h"
#include "shell/Trap.h"

#include <QStandardPaths>

#include <filesystem>

namespace vexmarrow {
namespace {

std::u16string DesktopFolder() {
    return ToText(QStandardPaths::writableLocation(QStandardPaths::DesktopLocation)) + u"/";
}

} // namespace

std::u16string ProgramFolder() {
    return TextFromNativeName(
        std::filesystem::read_symlink("/proc/self/exe").parent_path().native());
}

Assembly::Assembly()
    : form1_({textio_, writer_, ansi_, prompts_, pickers_, settings_, fileManager_, eventLoop_,
              ProgramFolder(), DesktopFolder()}) {
    prompts_.SetOwner(&form1_);
    pickers_.SetOwner(&form1_);
}

bool Assembly::Start() {
    RunHandler([this] {
        Trap(prompts_, u"Form1.Form_Load").Do(0, [this] { settings_.Check(); });
        form1_.Form_Load();
        Recovery(calls_, journals_, prompts_).Run();
        form1_.show();
    });
    return form1_.isVisible();
}

} // namespace vexmarrow
