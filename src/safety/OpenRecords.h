// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/LogFile.h"
#include "textio/Descriptor.h"

#include <string>
#include <vector>

namespace vexmarrow {

/// The files that have an open record in any log, whether a program is using the log or not. They
/// may contain a mixture of old and new text, so no run may read or write them.
class OpenRecords {
public:
    OpenRecords(SystemCalls& calls, std::vector<std::string> folders)
        : calls_(calls), folders_(std::move(folders)), watch_(calls) {}

    /// Reads all logs but the one with the path `own`, unless that was done since CloseLogs. Throws
    /// Failure when a log cannot be read.
    void Prepare(const std::string& own = {});

    /// Whether an open file is one of them. The caller must hold its lock. Reads the logs again
    /// when other programs may have changed them. Throws Failure when a log cannot be read.
    bool Include(const std::string& path, const FileStatus& status, int descriptor,
                 const std::string& own);

    /// Closes all logs at the end of a run. The next run reads them again.
    void CloseLogs() noexcept {
        inUse_.clear();
        watched_.clear();
    }

    /// Adds an open record of this program. After ReserveOne, this allocates no memory.
    void ReserveOne() { left_.reserve(left_.size() + 1); }
    void Add(LogRecord&& record) noexcept { left_.push_back(std::move(record)); }

private:
    void ReadLogs(const std::string& own);
    std::vector<bool> Watch();
    bool IsOutdated();
    bool Matches(const std::string& path, const FileStatus& status, int descriptor) const;

    SystemCalls& calls_;
    std::vector<std::string> folders_;
    std::vector<LogRecord> others_;
    std::vector<LogRecord> left_; // by this program
    Descriptor watch_;            // of the folders; closing it is slow, so it stays open
    std::vector<bool> watched_;   // for each folder; empty when the logs must be read
    std::vector<LogFile> inUse_;
};

} // namespace vexmarrow
