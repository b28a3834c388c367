// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/Checksum.h"

#include "textio/ByteSource.h"

#include <algorithm>

namespace vexmarrow {

std::uint64_t ChecksumOf(std::string_view bytes, std::uint64_t seed) {
    return XXH3_64bits_withSeed(bytes.data(), bytes.size(), seed);
}

int Checksum::Add(ByteSource& source, std::uint64_t from, std::uint64_t size) {
    for (const std::uint64_t end = from + size; from < end;) {
        std::string_view bytes;
        if (const int error = source.Show(from, std::min(end - from, kCopyBlock), bytes)) {
            return error;
        }
        Add(bytes);
        from += bytes.size();
    }
    return 0;
}

} // namespace vexmarrow
