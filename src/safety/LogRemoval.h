// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/LogFile.h"

#include <string>
#include <vector>

namespace vexmarrow {

/// Removes a log unless it is in use or has an open record. Returns whether it was removed.
bool RemoveLog(SystemCalls& calls, const std::string& path);

/// Calls RemoveLog for each run that began more than 30 days ago and for all but the last five.
void RemoveOldLogs(SystemCalls& calls, const std::vector<std::string>& folders) noexcept;

/// Ends the work on a log with these records: removes it if nothing can be undone, else marks it as
/// settled, unless a record is open.
void RemoveOrSettle(LogFile& log, const std::vector<LogRecord>& records);

} // namespace vexmarrow
