// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string_view>

#define XXH_STATIC_LINKING_ONLY // without this, XXH3_state_t is an incomplete type
#include <xxhash.h>

namespace vexmarrow {

class ByteSource;

/// The checksum of bytes that are all in memory.
std::uint64_t ChecksumOf(std::string_view bytes, std::uint64_t seed = 0);

/// The same checksum, of bytes that come in parts. A copy can go on with other bytes.
class Checksum {
public:
    Checksum() { XXH3_64bits_reset(&state_); } // NOLINT(*-member-init): the reset fills the state
    void Add(std::string_view bytes) { XXH3_64bits_update(&state_, bytes.data(), bytes.size()); }

    /// Adds `size` bytes of a source from `from` on. Returns 0 or an errno value.
    int Add(ByteSource& source, std::uint64_t from, std::uint64_t size);

    std::uint64_t Value() const { return XXH3_64bits_digest(&state_); }

private:
    XXH3_state_t state_;
};

} // namespace vexmarrow
