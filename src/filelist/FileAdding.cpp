// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "filelist/FileAdding.h"

#include "base/Text.h"
#include "filelist/AddFolder.h"
#include "filelist/FileList.h"
#include "filelist/ListValidation.h"
#include "shell/EventLoop.h"
#include "shell/Pickers.h"
#include "shell/SettingsStore.h"
#include "shell/Trap.h"
#include "textio/CodePage.h"
#include "textio/FileAttributes.h"
#include "textio/FileTests.h"
#include "textio/Paths.h"

#include <vector>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kLastFolderKey = u"LastFolder";
constexpr std::u16string_view kPattern = u"*.vcf";

std::vector<std::u16string> RowsOfChoice(const std::vector<std::u16string>& choice) {
    if (choice.size() <= 1) {
        return choice; // a single path is listed as the dialog gave it
    }
    std::vector<std::u16string> rows;
    rows.reserve(choice.size() - 1);
    for (std::size_t i = 1; i < choice.size(); ++i) {
        rows.push_back(NormalizePath(Concat(choice[0], kSeparatorText, choice[i])));
    }
    return rows;
}

std::vector<std::u16string> RowsOfFolder(const std::u16string& folder,
                                         const std::vector<std::u16string>& names) {
    constexpr int kPassedOver = kHidden | kArchive;
    std::vector<std::u16string> rows;
    for (std::size_t i = 1; i < names.size(); ++i) {
        if (names[i].front() == u'~') {
            continue;
        }
        const std::u16string path = Concat(folder, kSeparatorText, names[i]);
        // A name may be gone by now, or stem from another folder when this one failed to list.
        if (IsExistingFile(path) && FileAttributes(path) != kPassedOver) {
            rows.push_back(NormalizePath(path));
        }
    }
    return rows;
}

} // namespace

void FileAdding::AddFiles() {
    Trap trap(prompts_, u"Form1.PushButton13_Click");
    std::vector<std::u16string> choice;
    trap.Do(1, [&] {
        choice = pickers_.OpenFiles({u"Add File(s) - Hold Ctrl to select multiple files",
                                     u"VCF Files (*.vcf)|*.vcf|All Files (*.*)|*.*|"});
    });
    trap.Do(2, [&] { list_.Add(RowsOfChoice(choice)); });
    trap.Do(3, [&] { ValidateListFiles(list_, prompts_); });
}

void FileAdding::AddAllFilesInFolder() {
    Trap trap(prompts_, u"Form1.PushButton3_Click");
    trap.Do(1, [&] { lastFolder_ = settings_.GetSetting(kLastFolderKey, u""); });
    std::u16string chosen;
    trap.Do(2, [&] { chosen = pickers_.BrowseForFolder(u"Please select folder:", lastFolder_); });
    if (!chosen.empty()) {
        lastFolder_ = chosen;
        trap.Do(3, [&] { settings_.SaveSetting(kLastFolderKey, lastFolder_); });
        trap.Do(4, [&] { pointer_.SetPointer(MousePointer::Hourglass); });
        std::vector<std::u16string> folders{Concat(chosen, kSeparatorText)};
        trap.Do(5, [&] {
            AddFolder(prompts_, eventLoop_, ansi_).GetSubDirectories2016(folders, true);
        });
        std::vector<std::u16string> names;
        for (std::u16string& folder : folders) {
            folder.pop_back();
            trap.Do(6, [&] { names = ListFilesInFolder(folder, kPattern); });
            trap.Do(7, [&] { list_.Add(RowsOfFolder(folder, names)); });
        }
        trap.Do(8, [&] { pointer_.SetPointer(MousePointer::Default); });
    }
    trap.Do(9, [&] { ValidateListFiles(list_, prompts_); });
}

} // namespace vexmarrow
