// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "filelist/FileAdding.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "filelist/FileList.h"
#include "filelist/SubFolderSearch.h"
#include "filelist/ValidateListFiles.h"
#include "shell/EventLoop.h"
#include "shell/MousePointer.h"
#include "shell/Pickers.h"
#include "shell/Prompts.h"
#include "shell/Trap.h"
#include "textio/FileAttributes.h"
#include "textio/FolderListing.h"
#include "textio/PathChecks.h"
#include "textio/Paths.h"
#include "textio/RFTSFSO.h"

#include <utility>

namespace vexmarrow {
namespace {

/// The paths in an answer of Pickers::OpenFiles.
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

std::vector<std::u16string> RowsOfFolder(SystemCalls& calls, const std::u16string& folder,
                                         const std::vector<std::u16string>& names) {
    constexpr int kLeftOut = kHidden | kArchive;
    std::vector<std::u16string> rows;
    for (std::size_t i = 1; i < names.size(); ++i) {
        if (names[i].front() == u'~') {
            continue;
        }
        const std::u16string path = Concat(folder, kSeparatorText, names[i]);
        // The file may be gone by now. If this folder could not be listed, the names are still
        // those of the folder before it.
        if (IsExistingFile(calls, path) && FileAttributes(calls, path) != kLeftOut) {
            rows.push_back(NormalizePath(path));
        }
    }
    return rows;
}

} // namespace

void FileAdding::AddFiles() {
    Trap trap(desktop_.prompts, u"Form1.PushButton13_Click");
    std::vector<std::u16string> choice;
    trap.Do(1, [&] {
        choice = desktop_.pickers.OpenFiles({u"Add File(s) - Hold Ctrl to select multiple files",
                                             u"VCF Files (*.vcf)|*.vcf|All Files (*.*)|*.*|"});
    });
    trap.Do(2, [&] { list_.Add(RowsOfChoice(choice)); });
    trap.Do(3, [&] { ValidateListFiles(list_, desktop_.prompts); });
}

void FileAdding::AddAllFilesInFolder() {
    Trap trap(desktop_.prompts, u"Form1.PushButton3_Click");
    const std::u16string chosen = inputFolder_.Ask(trap);
    if (!chosen.empty()) {
        trap.Do(4, [&] { desktop_.pointer.SetPointer(MousePointer::Hourglass); });
        std::vector<std::u16string> folders{Concat(chosen, kSeparatorText)};
        trap.Do(5,
                [&] { SubFolderSearch(desktop_, textio_).GetSubDirectories2016(folders, true); });
        const std::u16string pattern = Concat(u"*.", kExpectedExtension);
        std::vector<std::u16string> names;
        for (std::u16string& folder : folders) {
            folder.pop_back();
            trap.Do(6, [&] { names = ListFilesInFolder(textio_.Calls(), folder, pattern); });
            trap.Do(7, [&] { list_.Add(RowsOfFolder(textio_.Calls(), folder, names)); });
        }
        trap.Do(8, [&] { desktop_.pointer.SetPointer(MousePointer::Default); });
    }
    trap.Do(9, [&] { ValidateListFiles(list_, desktop_.prompts); });
}

void FileAdding::LoadListFiles() {
    Trap trap(desktop_.prompts, u"Form1.PushButton9_Click");
    std::vector<std::u16string> choice;
    trap.Do(1, [&] {
        choice = desktop_.pickers.OpenFiles(
            {u"Load List(s) - Hold Ctrl to select multiple list files", kTextFilesFilter});
    });
    if (choice.empty()) {
        return;
    }
    trap.Do(2, [&] { desktop_.pointer.SetPointer(MousePointer::Hourglass); });
    for (const std::u16string& path : RowsOfChoice(choice)) {
        trap.Do(3, [&] { LoadListFile(path); });
    }
    trap.Do(4, [&] { desktop_.pointer.SetPointer(MousePointer::Default); });
}

void FileAdding::LoadListFile(const std::u16string& path) {
    if (!IsExistingPath(textio_.Calls(), path)) {
        desktop_.prompts.ShowMessage(u"File not found");
        return;
    }
    std::vector<std::u16string> lines = textio_.ReadTextLines(path);
    std::size_t done = 0;
    FileList::Batch batch(list_);
    for (std::u16string& line : lines) {
        desktop_.eventLoop.Yield({u"Line", ++done, lines.size()});
        if (!IsBlank(line)) {
            batch.Add(std::move(line));
        }
    }
}

void FileAdding::AddDropped(const std::vector<std::u16string>& paths) {
    AddFilesOf(paths);
    ValidateListFiles(list_, desktop_.prompts);
}

void FileAdding::AddFilesOf(const std::vector<std::u16string>& paths) {
    FileList::Batch batch(list_);
    std::size_t listed = 0;
    std::vector<std::u16string> folders;
    for (const std::u16string& path : paths) {
        if (!IsFolder(textio_.Calls(), path)) {
            batch.Add(path);
            continue;
        }
        folders.push_back(path + kSeparator);
        SubFolderSearch(desktop_, textio_).GetSubDirectories2016(folders, true);
        for (const std::u16string& entry : folders) {
            const std::u16string folder = entry.substr(0, entry.size() - 1);
            desktop_.eventLoop.Yield({u"Folder", ++listed, 0});
            try {
                batch.Add(RowsOfFolder(textio_.Calls(), folder,
                                       ListFilesInFolder(textio_.Calls(), folder, u"*.*")));
            } catch (const Failure&) {
                continue;
            }
        }
    }
}

} // namespace vexmarrow
