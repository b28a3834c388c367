// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vexmarrow {

class SystemCalls;

// Reading and writing that goes on until all is done: a system call may do less than it was asked.

/// Bytes that are copied at once from file to file.
inline constexpr std::size_t kCopyBlock = std::size_t{256} * 1024;

/// Writes all of `bytes` at `offset`. Returns 0, or the errno of the failure; `written` is then
/// how many bytes were written before it.
int WriteWhole(SystemCalls& calls, int descriptor, std::string_view bytes, std::uint64_t offset,
               std::uint64_t& written);

/// Reads up to `count` bytes at `offset`, fewer only at the end of the file. Returns 0 and the
/// number in `got`, or the errno of the failure.
int ReadWhole(SystemCalls& calls, int descriptor, char* bytes, std::size_t count,
              std::uint64_t offset, std::size_t& got);

} // namespace vexmarrow
