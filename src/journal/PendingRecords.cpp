// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "journal/PendingRecords.h"

#include "journal/JournalFolders.h"

#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace vexmarrow {

std::vector<std::string> JournalsIn(SystemCalls& calls, const std::vector<std::string>& folders) {
    std::vector<std::string> paths;
    for (const std::string& folder : folders) {
        FileStatus status;
        if (calls.StatusOfName(folder, status) != 0 || !status.IsFolder() ||
            status.owner != ::geteuid()) {
            continue;
        }
        std::error_code error;
        for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
             entry.increment(error)) {
            if (IsJournalName(entry->path().filename().native())) {
                paths.push_back(entry->path().native());
            }
        }
    }
    return paths;
}

std::optional<LeftJournal> TakeOverJournal(SystemCalls& calls, const std::string& path) {
    std::optional<JournalFile> file = JournalFile::TakeOver(calls, path);
    std::string first(kLongestHeader, '\0');
    std::size_t got = 0;
    if (!file || file->Read(0, first.data(), first.size(), got) != 0) {
        return std::nullopt;
    }
    ParsedHeader header = ParseHeader(std::string_view(first).substr(0, got));
    return LeftJournal{std::move(*file), std::move(header)};
}

std::vector<FileStatus> FilesThatWait(SystemCalls& calls, const std::vector<std::string>& folders,
                                      const std::string& machine) {
    std::vector<FileStatus> files;
    for (const std::string& path : JournalsIn(calls, folders)) {
        const std::optional<LeftJournal> journal = TakeOverJournal(calls, path);
        if (journal && journal->IsPending(machine)) {
            files.push_back(journal->header.record.target);
        }
    }
    return files;
}

} // namespace vexmarrow
