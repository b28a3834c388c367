// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

class SystemCalls;

/// Where this user's logs lie, best place first: "vexmarrow" in the folder for the state of
/// programs (XDG_STATE_HOME, else ~/.local/state), and a folder of /var/tmp.
std::vector<std::string> LogFoldersOfUser();

/// Makes the folder, and those on the way to it, if they are missing. Returns 0 when it is a folder
/// (no link) that belongs to this user and is open to nobody else, which is mended if need be; else
/// the errno of the failure, EACCES for a folder of somebody else.
int PrepareFolder(SystemCalls& calls, const std::string& folder);

/// The paths of what lies in a folder, if that is this user's. Throws Failure.
std::vector<std::string> FilesIn(SystemCalls& calls, const std::string& folder);

/// The paths of what has the name of a log, in those of the folders that are this user's, the
/// oldest run first: names begin with a number that rises, because clocks jump.
std::vector<std::string> LogsIn(SystemCalls& calls, const std::vector<std::string>& folders);

/// The name of a log, and the number of one by its path.
std::string LogName(std::uint64_t number);
std::uint64_t LogNumber(const std::string& path);

/// Random bits, and so many random bytes in hexadecimal.
std::uint64_t RandomNumber();
std::string RandomHex(std::size_t bytes);

/// The time, in nanoseconds since 1970; and one as people read it, or in a form for strftime.
std::int64_t Now();
std::u16string LocalTime(std::int64_t nanoseconds);
std::string LocalTime(std::int64_t nanoseconds, const char* form);

/// A full path for one that may start at the working folder.
std::string FullPath(std::string path);

} // namespace vexmarrow
