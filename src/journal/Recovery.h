// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "journal/JournalFile.h"
#include "journal/JournalRecord.h"

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
    struct Found {
        JournalFile journal;
        JournalRecord record;
        std::uint64_t payloadOffset;
    };
    std::vector<Found> FindPending();
    void LookAt(JournalFile journal, std::vector<Found>& pending);
    void Settle(Found& found);
    static bool PayloadIsWhole(Found& found);
    bool HasPayloadAlready(Found& found, const Descriptor& file, const FileStatus& status);
    bool UserWants(const JournalRecord& record, const FileStatus& status);
    void Complete(Found& found, const Descriptor& present, const FileStatus& status);
    void Finish(Found& found, const Descriptor& present, const FileStatus& status);
    void KeepPayload(Found& found, std::u16string_view why);
    void KeepDamaged(JournalFile& journal);
    void RemovePassingFile(const JournalRecord& record);
    void Tell(std::u16string_view text);

    SystemCalls& calls_;
    std::vector<std::string> folders_;
    Prompts& prompts_;
    std::string machine_;
};

} // namespace vexmarrow
