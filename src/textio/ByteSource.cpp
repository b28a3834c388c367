// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/ByteSource.h"

#include <algorithm>
#include <cerrno>

namespace vexmarrow {

int MemoryBytes::Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) {
    bytes = offset < bytes_.size() ? bytes_.substr(offset, most) : std::string_view();
    return bytes.empty() ? ENODATA : 0;
}

int FileBytes::Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) {
    std::size_t got = 0;
    const int error = ReadWhole(calls_, descriptor_, block_.data(), std::min(most, block_.size()),
                                begin_ + offset, got);
    bytes = std::string_view(block_).substr(0, got);
    return error == 0 && got == 0 ? ENODATA : error;
}

int CopyBytes(SystemCalls& calls, int descriptor, ByteSource& source, std::uint64_t& from,
              std::uint64_t to, std::uint64_t shift) {
    while (from < to) {
        std::string_view bytes;
        int error = source.Show(from, std::min(to - from, kCopyBlock), bytes);
        if (error == 0) {
            error = WriteWhole(calls, descriptor, bytes, from + shift);
        }
        if (error != 0) {
            return error;
        }
        from += bytes.size();
    }
    return 0;
}

} // namespace vexmarrow
