// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

class ByteSource;
class SystemCalls;

/// The folder inside `logFolder` that receives the copies made by recovery.
std::string KeptFolder(const std::string& logFolder);

/// Copies the first `size` bytes of a source into a new file, readable only for the user, in the
/// kept folder of the first log folder that accepts it. The name has the time, `kind` (a word) and
/// the end of the name in `path`. Returns the path. Throws Failure, with the last reason, if all
/// fail.
std::string KeepCopy(SystemCalls& calls, const std::vector<std::string>& logFolders,
                     std::string_view kind, std::string_view path, ByteSource& source,
                     std::uint64_t size);

/// The paths of all copies. Throws Failure when a folder cannot be listed.
std::vector<std::string> KeptFiles(SystemCalls& calls, const std::vector<std::string>& logFolders);

} // namespace vexmarrow
