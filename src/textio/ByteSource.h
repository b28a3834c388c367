// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/SystemCalls.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vexmarrow {

/// The number of bytes that are copied from file to file at once.
inline constexpr std::size_t kCopyBlock = std::size_t{256} * 1024;

/// Bytes in memory or in a file, which are read when they are needed.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    /// Makes `bytes` a view of at least one and up to `most` bytes that begin at `offset`. Returns
    /// 0 or an errno value; ENODATA if there are no bytes there. Allocates no memory.
    virtual int Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) = 0;
};

class MemoryBytes final : public ByteSource {
public:
    explicit MemoryBytes(std::string_view bytes = {}) : bytes_(bytes) {}
    int Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) override;

private:
    std::string_view bytes_;
};

/// The bytes of an open file from `begin` on, of which Show shows at most `size` at once.
class FileBytes final : public ByteSource {
public:
    FileBytes(SystemCalls& calls, int descriptor, std::uint64_t begin = 0,
              std::uint64_t size = kCopyBlock)
        : calls_(calls),
          descriptor_(descriptor),
          begin_(begin),
          block_(std::min<std::uint64_t>(size, kCopyBlock), '\0') {}
    int Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) override;

    /// Continues with another open file, from `begin` on.
    void MoveTo(int descriptor, std::uint64_t begin) {
        descriptor_ = descriptor;
        begin_ = begin;
    }

private:
    SystemCalls& calls_;
    int descriptor_;
    std::uint64_t begin_;
    std::string block_;
};

/// Copies the bytes of a source from `from` up to `to` into an open file, `shift` bytes further on
/// than in the source. Advances `from` past what was written. Returns 0 or an errno value.
int CopyBytes(SystemCalls& calls, int descriptor, ByteSource& source, std::uint64_t& from,
              std::uint64_t to, std::uint64_t shift);

} // namespace vexmarrow
