// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace vexmarrow {

class InputFile;

/// A result on its way into a file. Nothing of the file changes before the result differs from what
/// it holds; dropping the object without Commit leaves everything as it was. Only one is under way
/// at a time.
class PendingFile {
public:
    PendingFile() = default;
    virtual ~PendingFile() = default;
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    /// Adds bytes at the end of the result. Throws Failure, with path and reason; the result
    /// cannot be committed then.
    virtual void Append(std::string_view bytes) = 0;

    /// The result is complete: makes ready for Commit. Throws Failure like Append.
    virtual void Seal() = 0;

    /// Brings the sealed result into the file, or creates it. A file that holds the very same
    /// bytes is not written. To be called once. Throws Failure like Append.
    virtual void Commit() = 0;
};

/// The one way in which the program writes users' files.
class FileWriter {
public:
    FileWriter() = default;
    virtual ~FileWriter() = default;
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;

    /// Begins a result for the file of that path, in the place of what it holds. `source` is what
    /// it is made from, if that is a file; it outlives the result. Where the result takes its
    /// place, the caller has InputFile::CheckUnchanged look between Seal and Commit. Throws
    /// Failure.
    virtual std::unique_ptr<PendingFile> Begin(std::u16string_view path,
                                               InputFile* source = nullptr) = 0;

    /// Gives back what was kept at hand for the next file. To be called when a piece of work is
    /// over; never fails.
    virtual void Settle() noexcept = 0;
};

} // namespace vexmarrow
