// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/InPlaceWriter.h"

#include "base/Failure.h"
#include "base/Utf8.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>

namespace vexmarrow {
namespace {

constexpr int kOpenFlags = O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
constexpr mode_t kNewFileMode = 0666; // less what the user's mask takes away

class PendingInPlace final : public PendingFile {
public:
    PendingInPlace(SystemCalls& calls, std::u16string_view path, WriteStart start)
        : calls_(calls), path_(path), nativePath_(NativeName(path)), start_(start) {}

    void Append(std::string_view bytes) override { bytes_ += bytes; }

    void Commit() override {
        int number = calls_.Open(nativePath_, kOpenFlags, 0);
        const bool created = number < 0 && errno == ENOENT;
        if (created) {
            number = calls_.Open(nativePath_, kOpenFlags | O_CREAT | O_EXCL, kNewFileMode);
            if (number < 0 && errno == EEXIST) {
                throw FileFailure(u"Could not write the file", path_, u"It is a link to nowhere");
            }
        }
        Descriptor file(calls_, number);
        if (number < 0) {
            throw FileFailure(u"Could not write the file", path_, errno);
        }
        try {
            WriteInto(file);
        } catch (const Failure&) {
            if (created) {
                calls_.Unlink(nativePath_);
            }
            throw;
        }
    }

private:
    void WriteInto(Descriptor& file) {
        struct stat status {};
        Check(calls_.Status(file.Number(), status));
        if (!S_ISREG(status.st_mode)) {
            throw FileFailure(u"Could not write the file", path_, u"It is not a regular file");
        }
        const auto oldSize = static_cast<std::size_t>(status.st_size);
        const std::size_t base = start_ == WriteStart::Append ? oldSize : 0;
        const std::size_t newSize = base + bytes_.size();
        // What lies past the old end needs new room on the disk. Written first, it shows a full
        // disk while the old bytes are all still there.
        const std::size_t overlap = std::min(oldSize - base, bytes_.size());
        std::size_t tail = overlap;
        std::size_t head = 0;
        try {
            Write(file, base, tail, bytes_.size());
            Write(file, base, head, overlap);
        } catch (const Failure&) {
            if (head == 0) { // no old byte is overwritten yet
                calls_.Truncate(file.Number(), status.st_size);
            }
            throw;
        }
        if (newSize < oldSize) {
            Check(calls_.Truncate(file.Number(), static_cast<off_t>(newSize)));
        }
        Check(file.Close());
    }

    /// Writes bytes `from` to `to` of the result, whose first byte lies at `base` of the file, and
    /// moves `from` on over what is written.
    void Write(const Descriptor& file, std::size_t base, std::size_t& from, std::size_t to) {
        while (from < to) {
            const ssize_t written = calls_.WriteAt(file.Number(), bytes_.data() + from, to - from,
                                                   static_cast<off_t>(base + from));
            if (written < 0 && errno == EINTR) {
                continue;
            }
            if (written == 0) {
                errno = ENOSPC;
            }
            Check(written <= 0 ? -1 : 0);
            from += static_cast<std::size_t>(written);
        }
    }

    void Check(int answer) const {
        if (answer != 0) {
            throw FileFailure(u"Could not write the file", path_, errno);
        }
    }

    SystemCalls& calls_;
    std::u16string path_;
    std::string nativePath_;
    WriteStart start_;
    std::string bytes_;
};

} // namespace

std::unique_ptr<PendingFile> InPlaceWriter::Begin(std::u16string_view path, WriteStart start) {
    return std::make_unique<PendingInPlace>(calls_, path, start);
}

} // namespace vexmarrow
