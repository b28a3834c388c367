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

/// Settles the open records that interrupted programs have left. It uses only valid records in logs
/// of this user that no other program is using. It asks before it changes the contents of a file,
/// and keeps a copy of everything that the user might miss. If it is killed, it can be repeated.
class Recovery {
public:
    Recovery(SystemCalls& calls, std::vector<std::string> logFolders, Prompts& prompts)
        : calls_(calls), folders_(std::move(logFolders)), prompts_(prompts) {}

    /// Settles all open records and removes old logs. To be called at the start, before the window
    /// shows. Never throws Failure: shows a box instead, and the record waits for the next start.
    void Run();

    /// The number of files with open records that were not found. They may be on a removed card.
    std::size_t Missing() const { return missing_; }

    /// Closes the records of missing files: copies each old text and shows the path of the copy.
    void GiveUpMissing();

private:
    void SettleAll();
    void Settle(LogFile& log, LogRecord& record);
    void SettleNewFile(LogFile& log, LogRecord& record);
    void SettleOverwrite(LogFile& log, LogRecord& record);
    void HandleMissing(LogFile& log, LogRecord& record, std::u16string_view why);
    void Ask(LogFile& log, LogRecord& record, int present, const FileStatus& status);
    void RestoreAsAnswered(LogFile& log, LogRecord& record, const FileStatus& asked);
    void KeepOldText(LogFile& log, LogRecord& record, int present, std::u16string_view why);
    void Tell(std::u16string_view text);

    SystemCalls& calls_;
    std::vector<std::string> folders_;
    Prompts& prompts_;
    std::size_t missing_ = 0;
    bool givesUp_ = false; // records of missing files are being closed
};

} // namespace vexmarrow
