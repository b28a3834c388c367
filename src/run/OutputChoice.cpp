// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "run/OutputChoice.h"

#include "shell/Pickers.h"
#include "shell/SettingsStore.h"
#include "shell/Trap.h"
#include "shell/Values.h"
#include "textio/Paths.h"

namespace vexmarrow {
namespace {

constexpr std::u16string_view kLastFolderKey = u"LastFolderDot";

} // namespace

void OutputChoice::SaveOptions(bool toOutputFolder, bool besideInput) {
    settings_.SaveSetting(u"Option4", TextFromBoolean(toOutputFolder));
    settings_.SaveSetting(u"Option5", TextFromBoolean(besideInput));
}

void OutputChoice::SaveFolder(std::u16string_view folder) {
    settings_.SaveSetting(u"Output Folder", folder);
}

void OutputChoice::Browse(const std::function<void(const std::u16string&)>& setFolder) {
    Trap trap(prompts_, u"Form1.PushButton14_Click");
    trap.Do(1, [&] { lastFolder_ = settings_.GetSetting(kLastFolderKey, u""); });
    std::u16string chosen;
    trap.Do(2, [&] { chosen = pickers_.BrowseForFolder(u"Please select folder:", lastFolder_); });
    if (chosen.empty()) {
        return;
    }
    lastFolder_ = chosen;
    trap.Do(3, [&] { settings_.SaveSetting(kLastFolderKey, lastFolder_); });
    trap.Do(4, [&] { setFolder(WithSeparator(chosen)); });
}

} // namespace vexmarrow
