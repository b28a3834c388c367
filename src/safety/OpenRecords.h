// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/LogFile.h"

#include <string>
#include <vector>

namespace vexmarrow {

/// What a file holds, compared with a record of it.
enum class Holding {
    Old,     ///< all of its old text
    New,     ///< all of what the run has written
    Other,   ///< anything else
    Unknown, ///< it could not be read
};
Holding HoldingOf(SystemCalls& calls, int descriptor, const FileStatus& status,
                  const PlacedRecord& placed);

/// The files that have an open record in any log, be it in use or left behind: what they hold may
/// be a mixture, which no run may use.
class OpenRecords {
public:
    OpenRecords(SystemCalls& calls, std::vector<std::string> folders)
        : calls_(calls), folders_(std::move(folders)), watch_(calls) {}

    /// Looks at all logs but `own` (a path), at the beginning of a piece of work.
    void Look(const std::string& own = {});

    /// Whether an open file, whose lock is held, is one of them. Looks again where other programs
    /// have done something since.
    bool Hold(const std::string& path, const FileStatus& status, int descriptor,
              const std::string& own);

    /// The piece of work is over: no log stays open.
    void End() noexcept { inUse_.clear(); }

    /// One that this program has to leave; MakeRoomForOne sees to it that this takes no memory.
    void MakeRoomForOne() { left_.reserve(left_.size() + 1); }
    void Add(PlacedRecord&& record) noexcept { left_.push_back(std::move(record)); }

private:
    std::vector<bool> Watch();
    bool IsOutdated();
    bool Matches(const std::string& path, const FileStatus& status, int descriptor) const;

    SystemCalls& calls_;
    std::vector<std::string> folders_;
    std::vector<PlacedRecord> others_;
    std::vector<PlacedRecord> left_; // by this program
    Descriptor watch_;               // of the folders, kept from one look to the next
    std::vector<bool> watched_;      // whether each is there to be watched
    std::vector<LogFile> inUse_;
};

} // namespace vexmarrow
