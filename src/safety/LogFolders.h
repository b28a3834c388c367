// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vexmarrow {

class SystemCalls;

/// The folders for this user's logs, the preferred one first: "vexmarrow" in $XDG_STATE_HOME (or in
/// ~/.local/state), then a folder in /var/tmp.
std::vector<std::string> LogFoldersOfUser();

/// Creates the folder and its parents where they are missing, and takes away other users' rights to
/// it. Returns 0 when the path is then a folder (not a link) that belongs to this user alone;
/// otherwise an errno, EACCES when it belongs to another user.
int PrepareFolder(SystemCalls& calls, const std::string& folder);

/// The paths of all entries of a folder; none unless it belongs to this user. Throws Failure.
std::vector<std::string> FilesIn(SystemCalls& calls, const std::string& folder);

/// The paths of all logs in those of the folders that belong to this user, the oldest run first.
/// The order comes from the numbers in the names, because clocks can be set back. Throws Failure.
std::vector<std::string> LogsIn(SystemCalls& calls, const std::vector<std::string>& folders);

/// The file name of the log with that number, and the number of the log with that path.
std::string LogName(std::uint64_t number);
std::uint64_t LogNumber(const std::string& path);

} // namespace vexmarrow
