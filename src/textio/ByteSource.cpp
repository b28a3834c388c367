// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/ByteSource.h"

#include <algorithm>
#include <cerrno>

namespace vexmarrow {

int WriteWhole(SystemCalls& calls, int descriptor, std::string_view bytes, std::uint64_t offset) {
    while (!bytes.empty()) {
        const ssize_t answer = calls.WriteAt(descriptor, bytes.data(), bytes.size(), offset);
        if (answer <= 0 && (answer == 0 || errno != EINTR)) {
            return answer == 0 ? EIO : errno;
        }
        const auto count = static_cast<std::size_t>(std::max<ssize_t>(answer, 0));
        bytes.remove_prefix(count);
        offset += count;
    }
    return 0;
}

int ReadWhole(SystemCalls& calls, int descriptor, char* bytes, std::size_t count,
              std::uint64_t offset, std::size_t& got) {
    got = 0;
    while (got < count) {
        const ssize_t answer = calls.ReadAt(descriptor, bytes + got, count - got, offset + got);
        if (answer < 0 && errno != EINTR) {
            return errno;
        }
        if (answer == 0) {
            break;
        }
        got += static_cast<std::size_t>(std::max<ssize_t>(answer, 0));
    }
    return 0;
}

std::uint64_t ChecksumOf(std::string_view bytes, std::uint64_t seed) {
    return XXH3_64bits_withSeed(bytes.data(), bytes.size(), seed);
}

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

int AddTo(Checksum& checksum, ByteSource& source, std::uint64_t from, std::uint64_t size) {
    for (const std::uint64_t end = from + size; from < end;) {
        std::string_view bytes;
        if (const int error = source.Show(from, std::min(end - from, kCopyBlock), bytes)) {
            return error;
        }
        checksum.Add(bytes);
        from += bytes.size();
    }
    return 0;
}

int CopyTo(SystemCalls& calls, int descriptor, ByteSource& source, std::uint64_t& from,
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
