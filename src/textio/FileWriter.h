// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace vexmarrow {

/// Whether a result takes the place of what its file holds, or is written after it.
enum class WriteStart { Replace, Append };

/// A result on its way into a file. Nothing of the file changes before Commit; dropping the object
/// without Commit leaves everything as it was.
class PendingFile {
public:
    virtual ~PendingFile() = default;

    /// Adds bytes at the end of the result.
    virtual void Append(std::string_view bytes) = 0;

    /// Brings the result into the file, or creates it. To be called once. Throws Failure, with
    /// path and reason.
    virtual void Commit() = 0;
};

/// The one way in which the program writes users' files.
class FileWriter {
public:
    virtual ~FileWriter() = default;

    /// Begins a result for the file of that path. Throws Failure.
    virtual std::unique_ptr<PendingFile> Begin(std::u16string_view path, WriteStart start) = 0;
};

} // namespace vexmarrow
