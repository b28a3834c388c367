// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Failure.h"
#include "fuzz/Fuzz.h"
#include "textio/CodePage.h"
#include "textio/RFTSFSO.h"
#include "textio/SystemCalls.h"

#include <cerrno>
#include <optional>
#include <vector>

namespace vexmarrow::fuzz {

using Texts = std::vector<std::u16string>;

/// The path of the only file, which is in memory.
inline const std::u16string kPath = u"/memory/file";

/// A file in memory. The input decides how it behaves: it may report a wrong size, and reads may
/// return less than was asked for, be interrupted, or fail.
class MemoryFile final : public SystemCalls {
public:
    explicit MemoryFile(Input& input) : toldSize_(input.Byte()), habits_(input.Bytes(4)) {
        habits_.resize(4);
    }

    std::string bytes;
    bool open = false;
    bool failed = false; ///< a read has failed

    /// Whether the code page is UTF-8; the input decides that, too.
    bool PageIsUtf8() const { return toldSize_ / 4 % 2 != 0; }

    int Open(const std::string& path, int, mode_t) override {
        Require(!open && path == "/memory/file", "only that file is opened, and only once");
        open = true;
        position_ = reads_ = 0;
        return 1000;
    }
    int Status(int, FileStatus& status) override {
        const std::size_t told[] = {bytes.size(), 0, bytes.size() / 2, bytes.size() + 9};
        status = {};
        status.mode = S_IFREG;
        status.size = told[toldSize_ % 4];
        return 0;
    }
    int StatusOfTarget(const std::string&, FileStatus& status) override {
        return Status(0, status);
    }
    ssize_t Attribute(const std::string&, const char*, void*, std::size_t) override { return -1; }
    int Lock(int, int) override { return 0; }
    ssize_t Read(int descriptor, void* into, std::size_t count) override {
        const ssize_t got = ReadAt(descriptor, into, count, position_);
        position_ += got > 0 ? static_cast<std::size_t>(got) : 0;
        return got;
    }
    ssize_t ReadAt(int, void* into, std::size_t count, std::uint64_t offset) override {
        Require(open, "an open file is read");
        // Later reads behave normally: a long file must not be read byte by byte to its end.
        const int habit = reads_ < 40 ? habits_[reads_ % 4] & 0xFF : 0;
        ++reads_;
        if (habit >= 0xFE) {
            failed = failed || habit == 0xFF;
            errno = habit == 0xFF ? EIO : EINTR;
            return -1;
        }
        count = habit == 0 ? count : std::min(count, static_cast<std::size_t>(habit));
        return static_cast<ssize_t>(bytes.copy(static_cast<char*>(into), count, offset));
    }
    int Close(int) override {
        open = false;
        return 0;
    }

private:
    int toldSize_;
    std::string habits_; // of four reads, over and over; 0: returns all that is asked for
    std::size_t position_ = 0;
    std::size_t reads_ = 0;
};

/// Reads that file.
struct Reader {
    explicit Reader(Input& input) : file(input) {}

    MemoryFile file;
    EncodingFlags flags;
    static inline const AnsiCodePage pages[]{AnsiCodePage(u"windows-1252"), AnsiCodePage(u"UTF-8")};
    const AnsiCodePage& ansi = pages[file.PageIsUtf8() ? 1 : 0];
    RFTSFSO textio{file, flags, ansi};

    /// Returns what `read` returns; nothing if a read of the file failed, and only then.
    template <typename Read>
    std::optional<Texts> Try(Read read) {
        std::optional<Texts> texts;
        file.failed = false;
        try {
            texts = read();
        } catch (const Failure&) {
        }
        Require(texts.has_value() != file.failed, "reading fails if and only if the file fails");
        Require(!file.open, "the file is closed again");
        return texts;
    }
    std::optional<Texts> TryLines() {
        return Try([&] { return textio.ReadTextLines(kPath); });
    }
};

} // namespace vexmarrow::fuzz
