// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/LogRemoval.h"

#include "safety/Clock.h"
#include "safety/LogFolders.h"
#include "shell/Trap.h"

#include <algorithm>

namespace vexmarrow {
namespace {

bool HasOpen(const std::vector<LogRecord>& records) {
    return std::any_of(records.begin(), records.end(),
                       [](const LogRecord& record) { return record.state == RecordState::Open; });
}

} // namespace

bool RemoveLog(SystemCalls& calls, const std::string& path) {
    std::optional<LogFile> log = LogFile::TakeOver(calls, path);
    if (!log) {
        return false;
    }
    bool hasOpen = !log->Header().isSettled; // and remains true when the records cannot be read
    FailureOf([&] {
        if (hasOpen) {
            hasOpen = HasOpen(log->Records());
        }
    });
    if (!hasOpen) {
        log->Remove();
    }
    return !hasOpen;
}

void RemoveOldLogs(SystemCalls& calls, const std::vector<std::string>& folders) noexcept {
    constexpr std::size_t kKeptRuns = 5;
    constexpr std::int64_t kThirtyDays = std::int64_t{30} * 24 * 60 * 60 * 1'000'000'000;
    FailureOf([&] {
        const std::vector<std::string> paths = LogsIn(calls, folders);
        for (std::size_t i = 0; i < paths.size(); ++i) {
            const std::optional<LogFile> log = LogFile::LookAt(calls, paths[i]);
            const bool isOld = log && log->Header().begun < Now() - kThirtyDays;
            if (isOld || i + kKeptRuns < paths.size()) {
                RemoveLog(calls, paths[i]);
            }
        }
    });
}

void RemoveOrSettle(LogFile& log, const std::vector<LogRecord>& records) {
    if (HasOpen(records)) {
        return;
    }
    const bool hasDone = std::any_of(records.begin(), records.end(), [](const LogRecord& record) {
        return record.state == RecordState::Done;
    });
    if (log.Header().isPartial || (hasDone && log.Header().allowsUndo)) {
        log.SetSettled(true);
    } else {
        log.Remove();
    }
}

} // namespace vexmarrow
