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

/// The folder of `logFolder` in which recovery puts what it must not lose.
std::string KeptFolder(const std::string& logFolder);

/// Copies `size` bytes of a source into a new file, for the user only, in the kept folder of the
/// first log folder that takes it. The file's name holds the time, `kind` (a word) and the end of
/// the name in `path`. Returns the path. Throws Failure with the reason of the last folder, leaving
/// nothing.
std::string KeepCopy(SystemCalls& calls, const std::vector<std::string>& logFolders,
                     std::string_view kind, std::string_view path, ByteSource& source,
                     std::uint64_t size);

/// All files that were kept.
std::vector<std::string> KeptFiles(SystemCalls& calls, const std::vector<std::string>& logFolders);

} // namespace vexmarrow
