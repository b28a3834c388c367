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

/// A regular file that is read from beginning to end, and locked meanwhile. Pipes, sockets, devices
/// and folders are refused without being opened; a file that another program has locked is refused
/// without waiting. All failures are thrown as Failure, with path and reason.
class InputFile {
public:
    /// A file for Read has a shared lock. A file for ReadAndWrite is opened for both and has an
    /// exclusive lock; if it may not be written, it is opened as for Read.
    enum class Use { Read, ReadAndWrite };

    InputFile(SystemCalls& calls, std::u16string_view path, Use use = Use::Read);

    /// The next bytes: at least `least`, fewer only if the file ends first, and more if they have
    /// been read already. Valid until the next call of Peek.
    std::string_view Peek(std::size_t least);

    /// All bytes that are left. Valid until the next call of Peek.
    std::string_view PeekAll();

    /// The whole file if it was read to its end and all of it is still in the buffer; else nothing.
    /// Valid until the next call of Peek.
    std::optional<std::string_view> Whole() const;

    /// Skips bytes that Peek has shown.
    void Skip(std::size_t count) { begin_ += count; }

    /// Begins again at the front. Fails like CheckUnchanged. Called before the result is begun.
    void Rewind();

    /// Throws if another program has written, cut, removed or replaced the file since it was
    /// opened, so that what was read may be a mixture. Called when reading is over.
    void CheckUnchanged();

    /// The status of the file when it was opened.
    const FileStatus& Status() const { return status_; }
    const std::u16string& Path() const { return path_; }

    void ReleaseLock();

    /// The open file, and whether it may be written through it.
    int Number() const { return number_; }
    bool IsWritable() const { return writable_; }

    /// Hands the open file and its lock over to the writer. The writer must not close the file
    /// while this object still reads from it.
    Descriptor HandOver() { return std::move(descriptor_); }

    /// The place in the file up to which it was read into the buffer.
    std::uint64_t Position() const { return position_; }

    /// Reads the rest from a copy, up to the size that the file had. Offset n of the file is at
    /// offset n + `shift` of the copy; `shift` may be negative.
    void ContinueInCopy(int copy, std::int64_t shift) {
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
    void ReadMore();
    void ReadPart();

    SystemCalls& calls_;
    std::u16string path_;
    Descriptor descriptor_;
    FileStatus status_;
    std::uint64_t position_ = 0; // in the file, of the next byte to read into the buffer
    std::int64_t shift_ = 0;     // where the file would begin in the copy
    int number_ = -1;            // the descriptor that is read: the file's or the copy's
    bool inCopy_ = false;
    bool rewound_ = false; // the system's own position in the file is no longer used
    bool writable_ = false;
    bool atEnd_ = false;
    bool dropped_ = false; // some bytes that were read are no longer in the buffer

    // The bytes that are read and not yet skipped are from begin_ to end_.
    std::unique_ptr<char, Free> buffer_;
    std::size_t capacity_ = 0;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
};

} // namespace vexmarrow
