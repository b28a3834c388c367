// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace vexmarrow {

class InputFile;

/// The new contents of a file while they are being made. The file is not touched before they differ
/// from what it holds. Destroying the object without Commit leaves everything as it was. Only one
/// such object may exist at a time.
class PendingFile {
public:
    PendingFile() = default;
    virtual ~PendingFile() = default;
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    /// Adds bytes at the end. Throws Failure with path and reason; then Commit must not be called.
    virtual void Append(std::string_view bytes) = 0;

    /// Ends the contents and prepares Commit. Throws Failure like Append.
    virtual void Seal() = 0;

    /// Writes the file or creates it. A file that holds the very same bytes is not written. Called
    /// once, after Seal. Throws Failure like Append.
    virtual void Commit() = 0;
};

/// Writes users' files. The program writes them in no other way.
class FileWriter {
public:
    FileWriter() = default;
    virtual ~FileWriter() = default;
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;

    /// Begins new contents for the file at `path`. `source` is the file that they are made from, if
    /// there is one; it must outlive the result. If they replace `source`, the caller calls its
    /// InputFile::CheckUnchanged between Seal and Commit. Throws Failure.
    virtual std::unique_ptr<PendingFile> Begin(std::u16string_view path,
                                               InputFile* source = nullptr) = 0;

    /// Releases what was kept open for the next file. Called when all files are written.
    virtual void Settle() noexcept = 0;
};

} // namespace vexmarrow
