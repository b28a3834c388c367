// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/InputFile.h"

#include "base/Failure.h"
#include "base/Utf8.h"

#include <cerrno>
#include <fcntl.h>
#include <utility>

namespace vexmarrow {
namespace {

/// O_NONBLOCK: opening a pipe must not wait for its other end. It means nothing to regular files.
int OpenForReading(SystemCalls& calls, std::u16string_view path) {
    return calls.Open(NativeName(path), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, 0);
}

} // namespace

InputFile::InputFile(SystemCalls& calls, std::u16string_view path)
    : calls_(calls), path_(path), descriptor_(calls, OpenForReading(calls, path)) {
    if (descriptor_.Number() < 0) {
        throw FileFailure(u"Could not open the file", path_, errno);
    }
    struct stat status {};
    if (calls_.Status(descriptor_.Number(), status) != 0) {
        throw FileFailure(u"Could not open the file", path_, errno);
    }
    if (!S_ISREG(status.st_mode)) {
        throw FileFailure(u"Could not open the file", path_,
                          S_ISDIR(status.st_mode) ? u"It is a folder"
                                                  : u"It is not a regular file");
    }
    size_ = static_cast<std::uint64_t>(status.st_size);
}

std::string InputFile::Read(std::size_t count) {
    std::string bytes(count, '\0');
    std::size_t done = 0;
    while (done < count) {
        const ssize_t got = calls_.Read(descriptor_.Number(), bytes.data() + done, count - done);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            throw FileFailure(u"Could not read the file", path_, errno);
        }
        if (got == 0) {
            break;
        }
        done += static_cast<std::size_t>(got);
    }
    position_ += done;
    bytes.resize(done);
    return bytes;
}

std::string InputFile::ReadRest() {
    // One byte more than the size tells that the end is reached without a second look. Files that
    // grow meanwhile, and those that do not tell their size, take further rounds.
    constexpr std::uint64_t kLeast = 4096;
    std::string bytes;
    for (;;) {
        const std::uint64_t left = size_ > position_ ? size_ - position_ + 1 : kLeast;
        std::string part = Read(static_cast<std::size_t>(left));
        const bool atEnd = part.size() < left;
        if (bytes.empty()) {
            bytes = std::move(part); // the usual case, which copies nothing
        } else {
            bytes += part;
        }
        if (atEnd) {
            return bytes;
        }
    }
}

std::optional<std::uint64_t> InputFile::SizeOf(SystemCalls& calls, std::u16string_view path) {
    try {
        return InputFile(calls, path).size_;
    } catch (const Failure&) {
        return std::nullopt;
    }
}

} // namespace vexmarrow
