// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "journal/PendingRecords.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

class Prompts;

/// Completes what programs that were killed have left in the middle: the work of the next start,
/// before the window shows. It acts on nothing but whole records in journals of this user that no
/// program holds, asks before it changes a file, and keeps a copy of everything that a user might
/// miss. It may itself be killed at any point, and is then done again.
class Recovery {
public:
    Recovery(SystemCalls& calls, std::vector<std::string> journalFolders, Prompts& prompts)
        : calls_(calls), folders_(std::move(journalFolders)), prompts_(prompts) {}

    /// Never fails: what cannot be done is told and left for the next start.
    void Run();

private:
    void LookAt(const std::string& path);
    void Settle(LeftJournal& journal);
    void SettleReplacement(LeftJournal& journal);
    bool UserWants(const JournalRecord& record, const FileStatus& status);
    void Complete(LeftJournal& journal, const Descriptor& present, const FileStatus& status);
    void Finish(LeftJournal& journal, const Descriptor& present, const FileStatus& status);
    void KeepPayload(LeftJournal& journal, std::u16string_view why);
    void KeepDamaged(JournalFile& journal);
    void RemovePassingFile(const JournalRecord& record);
    void Tell(std::u16string_view text);

    struct Waiting {
        std::int64_t begun;
        std::string path;
    };

    SystemCalls& calls_;
    std::vector<std::string> folders_;
    Prompts& prompts_;
    std::string machine_;
    std::vector<Waiting> waiting_;
};

} // namespace vexmarrow
