// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/LogFile.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vexmarrow {

/// The last run, and how much of it can be taken back. Each path counts once.
struct LastRun {
    std::string log;
    std::int64_t begun = 0;  ///< in nanoseconds since 1970
    std::size_t changed = 0; ///< files that get their old text and date back
    std::size_t created = 0; ///< files that go
    bool isPartial = false;  ///< there was no room to keep the old texts of others
    bool isInUse = false;    ///< another program is working with it, and nothing is known of it

    bool CanBeTakenBack() const { return changed + created > 0; }
};

/// A file that was not put back wholly, and why: a sentence without its end.
struct LeftAlone {
    std::string path;
    std::u16string why;
};

/// Takes runs back: every file that a run has overwritten gets its old bytes and its old date
/// again, every file that it has created goes. What holds anything but what the run has written is
/// left alone. Can be killed at any point and gone on with.
class TakingBack {
public:
    TakingBack(SystemCalls& calls, std::vector<std::string> folders)
        : calls_(calls), folders_(std::move(folders)) {}

    /// The last run that has left anything to take back or to settle, or could not keep it. Looks
    /// at the disk; throws Failure when a log cannot be read.
    std::optional<LastRun> Last() const;

    /// Takes a run back, from its last file to its first. Calls `yield` before each, with the
    /// number of the record and of all records; what that throws ends the work. Files that are
    /// missing, locked or without room stay in the log. Throws Failure when the log is
    /// in use or gone.
    std::vector<LeftAlone> TakeBack(const LastRun& run,
                                    const std::function<void(std::size_t, std::size_t)>& yield);

    /// Removes the logs of all runs, but those that are in use or hold an open record.
    void Forget();

private:
    SystemCalls& calls_;
    std::vector<std::string> folders_;
};

/// To be called when work on a log that was left, and on all its records, is over: removes one with
/// nothing to do in it.
void Tidy(LogFile& log, const std::vector<PlacedRecord>& records);

} // namespace vexmarrow
