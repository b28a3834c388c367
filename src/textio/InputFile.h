// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/Descriptor.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace vexmarrow {

/// A regular file on its way in, from front to end. Pipes, sockets, devices and folders are
/// refused without being opened, and so is, without waiting, a file that another program has
/// locked. All failures are thrown as Failure, with path and reason.
class InputFile {
public:
    /// What is to become of the file: one that is to be written as well is opened for both, if it
    /// may be, and its lock is exclusive; otherwise the lock is shared.
    enum class Use { Read, ReadAndWrite };

    InputFile(SystemCalls& calls, std::u16string_view path, Use use = Use::Read);

    /// The bytes that come next: at least `least`, fewer only when the file ends before that; more
    /// when they are at hand already. Valid until the next call of Peek.
    std::string_view Peek(std::size_t least);

    /// All the bytes that are left. Valid until the next call of Peek.
    std::string_view PeekAll();

    /// The whole file, where it was read to its end and all of it is still at hand; as valid as
    /// what Peek shows.
    std::optional<std::string_view> Whole() const;

    /// Moves on over bytes that Peek has shown.
    void Skip(std::size_t count) { begin_ += count; }

    /// Begins again at the front, with the same failures as CheckUnchanged. To be called before the
    /// result is begun.
    void Rewind();

    /// Throws when what was read may be a mixture: another program has written into the file, or
    /// has cut, removed or replaced it since it was opened. For the end of reading.
    void CheckUnchanged();

    /// The file as it was when it was opened.
    const FileStatus& Status() const { return status_; }
    const std::u16string& Path() const { return path_; }

    void GiveUpLock();

    /// The open file, and whether it may be written through it.
    int Number() const { return number_; }
    bool IsWritable() const { return writable_; }

    /// Gives the open file with its lock to whoever writes it. It must not be closed while this
    /// reads on.
    Descriptor HandOver() { return std::move(descriptor_); }

    /// Where in the file the next byte is that was not read yet.
    std::uint64_t Position() const { return position_; }

    /// Reads on from a copy of the file, in which its byte 0 would lie at `shift`; not further than
    /// the file was long.
    void GoOnIn(int copy, std::int64_t shift) {
        number_ = copy;
        shift_ = shift;
        inCopy_ = true;
    }

private:
    struct Free {
        void operator()(char* bytes) const { std::free(bytes); } // NOLINT(*-no-malloc)
    };
    void RequireRegular(int answer) const;
    void MakeRoom(std::size_t least);
    void ReadOn();
    void ReadPart();

    SystemCalls& calls_;
    std::u16string path_;
    Descriptor descriptor_;
    FileStatus status_;
    std::uint64_t position_ = 0; // of what is read next in the file
    std::int64_t shift_ = 0;     // where the file would begin in the copy
    int number_ = -1;            // from which is read: that of the file, or of a copy
    bool inCopy_ = false;
    bool rewound_ = false; // the system's own place in the file does not count any more
    bool writable_ = false;
    bool atEnd_ = false;
    bool dropped_ = false; // some of what was read is not in the buffer any more

    // Bytes that are read and not skipped yet lie from begin_ to end_.
    std::unique_ptr<char, Free> buffer_;
    std::size_t capacity_ = 0;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
};

} // namespace vexmarrow
