// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "journal/JournalFile.h"
#include "journal/JournalRecord.h"

#include <optional>
#include <string>
#include <vector>

namespace vexmarrow {

/// The paths of what has the name of a journal, in those of the folders that are this user's.
std::vector<std::string> JournalsIn(SystemCalls& calls, const std::vector<std::string>& folders);

/// A journal that was left behind and is ours now, and what its beginning says.
struct LeftJournal {
    JournalFile file;
    ParsedHeader header;

    /// Whether it holds a record of this machine that is to be completed.
    bool IsPending(const std::string& machine) const {
        return header.state == HeaderState::Whole && header.record.machine == machine;
    }
};

/// Takes over the journal of that path; nothing when that cannot be done (see JournalFile) or when
/// it cannot be read.
std::optional<LeftJournal> TakeOverJournal(SystemCalls& calls, const std::string& path);

/// The files that wait for recovery: records of programs that are gone, at this moment.
std::vector<FileStatus> FilesThatWait(SystemCalls& calls, const std::vector<std::string>& folders,
                                      const std::string& machine);

} // namespace vexmarrow
