// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/InputFile.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "textio/FileLock.h"
#include "textio/OpenedFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <new>
#include <sys/file.h>

namespace vexmarrow {
namespace {

/// Large enough to make the cost of the calls negligible, small enough for the processor's cache.
constexpr std::size_t kBlock = std::size_t{256} * 1024;

constexpr std::u16string_view kCouldNotOpen = u"Could not open the file";

} // namespace

InputFile::InputFile(SystemCalls& calls, std::u16string_view path, Use use)
    : calls_(calls), path_(path), descriptor_(calls) {
    const std::string name = NativeName(path);
    // The file is looked at before it is opened: opening a pipe would make its writer believe that
    // somebody reads it, and what it writes would be lost. It is looked at again afterwards,
    // because it may be another file by then.
    RequireRegular(calls_.StatusOfTarget(name, status_));
    OpenedFile opened{Descriptor(calls), 0, {}};
    if (use == Use::ReadAndWrite) {
        opened = OpenToWrite(calls, name);
        writable_ = opened.file.IsOpen();
    }
    if (!writable_) { // the writer reports why not
        opened = OpenToRead(calls, name);
    }
    descriptor_ = std::move(opened.file);
    number_ = descriptor_.Number();
    errno = opened.error;
    RequireRegular(opened.error == 0 ? calls_.Status(number_, status_) : -1);
    // The lock keeps another running copy of the program from writing. Many file systems have no
    // locks; there, CheckUnchanged has to notice.
    if (LockFile(calls, number_, writable_) == EWOULDBLOCK) {
        throw FileFailure(kCouldNotOpen, path_, kLockedByAnother);
    }
}

/// Checks status_. `answer` is the result of the system call that has filled it.
void InputFile::RequireRegular(int answer) const {
    if (answer != 0) {
        throw FileFailure(kCouldNotOpen, path_, errno);
    }
    if (!status_.IsRegular()) {
        throw FileFailure(kCouldNotOpen, path_, status_.WhyNotRegular());
    }
}

void InputFile::ReleaseLock() {
    calls_.Lock(number_, LOCK_UN);
}

std::string_view InputFile::Peek(std::size_t least) {
    while (end_ - begin_ < least && !atEnd_) {
        MakeRoom(least);
        ReadMore();
    }
    return {buffer_.get() + begin_, end_ - begin_};
}

std::string_view InputFile::PeekAll() {
    std::size_t least = kBlock;
    while (!atEnd_) {
        const std::uint64_t left = status_.size > position_ ? status_.size - position_ : 0;
        least = std::max<std::uint64_t>(end_ - begin_ + left + 1, least);
        Peek(least);
        least *= 2; // for a file that grows or whose size the system does not know
    }
    return Peek(0);
}

/// Makes room in the buffer for `least` bytes from begin_ on, and for at least one after end_.
void InputFile::MakeRoom(std::size_t least) {
    if (capacity_ - begin_ < least || end_ == capacity_) {
        if (begin_ < end_ && begin_ > 0) {
            std::memmove(buffer_.get(), buffer_.get() + begin_, end_ - begin_);
        }
        dropped_ = dropped_ || begin_ > 0;
        end_ -= begin_;
        begin_ = 0;
    }
    // One byte more than the file has, so that its end is noticed without a larger buffer.
    const std::uint64_t left = status_.size > position_ ? status_.size - position_ : 0;
    const std::uint64_t useful =
        std::max<std::uint64_t>(least, std::min<std::uint64_t>(end_ + left + 1, kBlock));
    if (capacity_ >= useful && end_ < capacity_) {
        return;
    }
    const std::size_t wanted = std::max<std::uint64_t>(useful, end_ + 1);
    // realloc can move pages instead of copying them, and does not fill new bytes with zeros.
    auto* const grown =
        static_cast<char*>(std::realloc(buffer_.get(), wanted)); // NOLINT(*-no-malloc)
    if (grown == nullptr) {
        throw std::bad_alloc();
    }
    static_cast<void>(buffer_.release());
    buffer_.reset(grown);
    capacity_ = wanted;
}

/// Reads more bytes. When a small file has been read up to its size, this also looks for its end,
/// so that Peek does not enlarge the buffer in vain, and Whole has the file.
void InputFile::ReadMore() {
    const std::size_t before = end_;
    ReadPart();
    if (end_ > before && position_ == status_.size && end_ < capacity_) {
        ReadPart();
    }
}

void InputFile::ReadPart() {
    char* const room = buffer_.get() + end_;
    std::size_t size = capacity_ - end_;
    if (inCopy_) { // other bytes may follow it
        size = std::min<std::uint64_t>(size, status_.size - position_);
    }
    ssize_t got = -1;
    do {
        got = inCopy_    ? calls_.ReadAt(number_, room, size,
                                         position_ + static_cast<std::uint64_t>(shift_))
              : rewound_ ? calls_.ReadAt(number_, room, size, position_)
                         : calls_.Read(number_, room, size);
    } while (got < 0 && errno == EINTR);
    if (got < 0) {
        throw FileFailure(u"Could not read the file", path_, errno);
    }
    const auto count = static_cast<std::size_t>(got);
    end_ += count;
    position_ += count;
    atEnd_ = count == 0; // the size does not decide: some file systems give a wrong one
}

std::optional<std::string_view> InputFile::Whole() const {
    if (!atEnd_ || dropped_ || inCopy_) {
        return std::nullopt;
    }
    return std::string_view(buffer_.get(), end_);
}

void InputFile::Rewind() {
    if (!dropped_) { // everything that was read is still in the buffer
        begin_ = 0;
        return;
    }
    CheckUnchanged(); // the second reading has to give the same bytes
    position_ = 0;
    begin_ = 0;
    end_ = 0;
    atEnd_ = false;
    dropped_ = false;
    rewound_ = true;
}

void InputFile::CheckUnchanged() {
    if (inCopy_) {
        return; // nobody changes the copy, and the writer looked before it changed the file
    }
    // Looks at the path, because another file may have taken the place of the open one.
    FileStatus now;
    if (calls_.StatusOfTarget(NativeName(path_), now) != 0 || !now.SameFileAs(status_) ||
        !now.SameContentsAs(status_)) {
        throw FileFailure(u"Could not read the file", path_,
                          u"Another program has changed or removed it meanwhile");
    }
}

} // namespace vexmarrow
