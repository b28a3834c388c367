// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "journal/Whole.h"

#include "textio/SystemCalls.h"

#include <cerrno>

namespace vexmarrow {

int WriteWhole(SystemCalls& calls, int descriptor, std::string_view bytes, std::uint64_t offset,
               std::uint64_t& written) {
    written = 0;
    while (!bytes.empty()) {
        const ssize_t count = calls.WriteAt(descriptor, bytes.data(), bytes.size(), offset);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return count < 0 ? errno : ENOSPC;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
        offset += static_cast<std::uint64_t>(count);
        written += static_cast<std::uint64_t>(count);
    }
    return 0;
}

int ReadWhole(SystemCalls& calls, int descriptor, char* bytes, std::size_t count,
              std::uint64_t offset, std::size_t& got) {
    got = 0;
    while (got < count) {
        const ssize_t part = calls.ReadAt(descriptor, bytes + got, count - got, offset + got);
        if (part < 0 && errno == EINTR) {
            continue;
        }
        if (part < 0) {
            return errno;
        }
        if (part == 0) {
            break;
        }
        got += static_cast<std::size_t>(part);
    }
    return 0;
}

} // namespace vexmarrow
