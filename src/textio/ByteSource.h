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

/// Bytes that are copied at once from file to file.
inline constexpr std::size_t kCopyBlock = std::size_t{256} * 1024;

/// Bytes that lie somewhere and are read when they are needed.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    /// Shows up to `most` bytes from `offset` on, at least one. Returns 0 or the errno of the
    /// failure, ENODATA where there are none. Takes no memory.
    virtual int Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) = 0;
};

class MemoryBytes final : public ByteSource {
public:
    explicit MemoryBytes(std::string_view bytes = {}) : bytes_(bytes) {}
    int Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) override;

private:
    std::string_view bytes_;
};

/// The bytes of an open file that begin at `begin`: not more than `size`.
class FileBytes final : public ByteSource {
public:
    FileBytes(SystemCalls& calls, int descriptor, std::uint64_t begin = 0,
              std::uint64_t size = kCopyBlock)
        : calls_(calls),
          descriptor_(descriptor),
          begin_(begin),
          block_(std::min<std::uint64_t>(size, kCopyBlock), '\0') {}
    int Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) override;

    /// From now on those of another one.
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

/// Copies bytes `from` to `to` of a source to those places of a file that lie `shift` further on;
/// moves `from` on over what is written. Returns 0 or the errno of the failure.
int CopyBytes(SystemCalls& calls, int descriptor, ByteSource& source, std::uint64_t& from,
              std::uint64_t to, std::uint64_t shift);

} // namespace vexmarrow
