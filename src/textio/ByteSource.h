// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/SystemCalls.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#define XXH_STATIC_LINKING_ONLY // which shows the state's size
#include <xxhash.h>

namespace vexmarrow {

/// Bytes that are copied at once from file to file.
inline constexpr std::size_t kCopyBlock = std::size_t{256} * 1024;

// Reading and writing that goes on until all is done: a system call may do less than it was asked.
// Both return 0 or the errno of the failure.

/// Writes all of `bytes` at `offset`.
int WriteWhole(SystemCalls& calls, int descriptor, std::string_view bytes, std::uint64_t offset);

/// Reads up to `count` bytes at `offset`, fewer only at the end of the file.
int ReadWhole(SystemCalls& calls, int descriptor, char* bytes, std::size_t count,
              std::uint64_t offset, std::size_t& got);

/// The checksum of bytes that are all at hand.
std::uint64_t ChecksumOf(std::string_view bytes, std::uint64_t seed = 0);

/// The same of bytes that come in parts. It can be copied, to go on in two ways.
class Checksum {
public:
    Checksum() { XXH3_64bits_reset(&state_); } // NOLINT(*-member-init): which fills the state
    void Add(std::string_view bytes) { XXH3_64bits_update(&state_, bytes.data(), bytes.size()); }
    std::uint64_t Value() const { return XXH3_64bits_digest(&state_); }

private:
    XXH3_state_t state_;
};

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

/// Adds `size` bytes from `from` on to a checksum. Returns 0 or the errno of the failure.
int AddTo(Checksum& checksum, ByteSource& source, std::uint64_t from, std::uint64_t size);

/// Copies bytes `from` to `to` of a source to those places of a file that lie `shift` further on;
/// moves `from` on over what is written. Returns 0 or the errno of the failure.
int CopyTo(SystemCalls& calls, int descriptor, ByteSource& source, std::uint64_t& from,
           std::uint64_t to, std::uint64_t shift);

} // namespace vexmarrow
