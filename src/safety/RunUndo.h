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

/// The last run, and how much of it can be undone. Each path counts once.
struct LastRun {
    std::string log;
    std::int64_t begun = 0;  ///< in nanoseconds since 1970
    std::size_t changed = 0; ///< files that will get their old text and date back
    std::size_t created = 0; ///< new files that will be removed
    bool isPartial = false;  ///< other old texts were dropped for lack of room
    bool isInUse = false;    ///< another program uses the log, so the numbers are unknown

    bool CanBeUndone() const { return changed + created > 0; }
};

/// A file that was not undone completely, and the reason: a sentence without its full stop.
struct UndoProblem {
    std::string path;
    std::u16string why;
};

/// Undoes runs: restores the bytes and dates of overwritten files and removes created ones, unless
/// a file was changed after the run. Work that was interrupted can be repeated.
class RunUndo {
public:
    RunUndo(SystemCalls& calls, std::vector<std::string> folders)
        : calls_(calls), folders_(std::move(folders)) {}

    /// The last run with anything to undo or to settle, or whose old texts were dropped. Throws
    /// Failure when a log cannot be read.
    std::optional<LastRun> FindLastRun() const;

    /// Undoes a run from its last file to its first. Before each, calls `yield` with the number of
    /// the record and of all records; its exceptions end the work. Files that are missing, locked
    /// or without disk space can be tried again. Throws Failure when the log is in use or removed.
    std::vector<UndoProblem> Undo(const LastRun& run,
                                  const std::function<void(std::size_t, std::size_t)>& yield);

    /// Removes all logs except those that are in use or have an open record.
    void RemoveAllLogs();

private:
    SystemCalls& calls_;
    std::vector<std::string> folders_;
};

} // namespace vexmarrow
