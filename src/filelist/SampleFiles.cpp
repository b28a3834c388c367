// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "filelist/SampleFiles.h"

#include "base/Text.h"
#include "filelist/FileList.h"
#include "shell/Choices.h"
#include "shell/FileManager.h"
#include "shell/Prompts.h"
#include "textio/FolderListing.h"
#include "textio/PathChecks.h"
#include "textio/Paths.h"

#include <unordered_set>
#include <utility>
#include <vector>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kBetween = u"|"; // paths in the record

} // namespace

SampleFiles::SampleFiles(SystemCalls& calls, FileList& list, const Desktop& desktop,
                         const std::u16string& programFolder)
    : calls_(calls),
      list_(list),
      desktop_(desktop),
      folder_(Concat(programFolder, kSeparatorText, u"Samples", kSeparatorText)) {}

void SampleFiles::RecordOnce() {
    if (!LoadChoice(desktop_.settings, choices::kSampleFiles).empty()) {
        return;
    }
    std::u16string record;
    if (IsFolder(calls_, folder_)) {
        const std::vector<std::u16string> names = ListFilesInFolder(calls_, folder_, u"*.*");
        for (std::size_t i = 1; i < names.size(); ++i) {
            record.append(folder_).append(names[i]).append(kBetween);
        }
    }
    if (!record.empty()) {
        record.pop_back();
    }
    SaveChoice(desktop_.settings, choices::kSampleFiles, record);
}

void SampleFiles::Load() {
    const std::u16string record = LoadChoice(desktop_.settings, choices::kSampleFiles);
    std::unordered_set<std::u16string> listed;
    for (std::size_t i = 1; i <= list_.Count(); ++i) {
        listed.insert(list_.Row(i));
    }
    std::vector<std::u16string> rows;
    for (const std::u16string_view piece : Split(record, kBetween)) {
        std::u16string path(piece);
        if (IsExistingPath(calls_, path) && listed.insert(path).second) {
            rows.push_back(std::move(path));
        }
    }
    list_.Add(std::move(rows));
    const Answer answer = desktop_.prompts.ShowMessage(
        u"Would you like this software to open the folder where these sample files are stored (so "
        u"that you can view them before working with them)?",
        BoxStyle::YesNo);
    if (answer == Answer::Yes) {
        desktop_.fileManager.OpenFolder(folder_);
    }
}

} // namespace vexmarrow
