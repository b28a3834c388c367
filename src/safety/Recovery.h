// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/LogFile.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

class Prompts;

/// Settles what programs that were killed have left in the middle. It acts on nothing but whole
/// records in logs of this user that no program holds, asks before it changes what a file holds,
/// and keeps a copy of everything that a user might miss. It may itself be killed at any point,
/// and is then done again.
class Recovery {
public:
    Recovery(SystemCalls& calls, std::vector<std::string> logFolders, Prompts& prompts)
        : calls_(calls), folders_(std::move(logFolders)), prompts_(prompts) {}

    /// The work of the next start, before the window shows; removes old logs, too. Never fails:
    /// what cannot be done is told and left for the start after that.
    void Run();

    /// How many files wait that are not where they were: they may be on a card.
    std::size_t Missing() const { return missing_; }

    /// Ends the matter of these: keeps a copy of their old texts, and tells where. Never fails.
    void GiveUpMissing();

private:
    void SettleAll();
    void Settle(LogFile& log, PlacedRecord& placed);
    void SettleCreation(LogFile& log, PlacedRecord& placed);
    void SettleReplacement(LogFile& log, PlacedRecord& placed);
    void Miss(LogFile& log, PlacedRecord& placed, std::u16string_view why);
    void Ask(LogFile& log, PlacedRecord& placed, int present, const FileStatus& status);
    void PutBackOld(LogFile& log, PlacedRecord& placed, const FileStatus& asked);
    void KeepOld(LogFile& log, PlacedRecord& placed, int present, std::u16string_view why);
    void Tell(std::u16string_view text);

    SystemCalls& calls_;
    std::vector<std::string> folders_;
    Prompts& prompts_;
    std::size_t missing_ = 0;
    bool givesUp_ = false; // what is missing ends
};

} // namespace vexmarrow
