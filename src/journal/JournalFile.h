// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/SystemCalls.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace vexmarrow {

/// A journal on disk, open and locked. Whoever holds the lock of a journal whose name leads to it
/// may use or remove it; the lock ends with the process, however that ends.
class JournalFile {
public:
    /// Makes an empty journal in that folder. Sets `error` to the errno of a failure.
    static std::optional<JournalFile> Create(SystemCalls& calls, const std::string& folder,
                                             int& error);

    /// Takes over a journal that some process has left. Nothing when it is in use, is gone, or is
    /// no regular file of this user with one name and without rights for others.
    static std::optional<JournalFile> TakeOver(SystemCalls& calls, const std::string& path);

    /// Bytes at an offset; each returns 0 or the errno of the failure.
    int Write(std::uint64_t offset, std::string_view bytes);
    int Read(std::uint64_t offset, char* bytes, std::size_t count, std::size_t& got);

    /// Marks the record as done. Returns 0 or the errno of the failure.
    int Clear();

    /// Removes the journal from its folder.
    void Remove();

    const std::string& Path() const { return path_; }
    int Number() const { return file_.Number(); }
    const FileStatus& Status() const { return status_; }

private:
    JournalFile(SystemCalls& calls, std::string path, Descriptor file)
        : calls_(&calls), path_(std::move(path)), file_(std::move(file)) {}
    bool IsForUserOnly() const;
    bool LockAndCheck();
    bool IsInPlace();

    SystemCalls* calls_;
    std::string path_;
    Descriptor file_;
    FileStatus status_;
};

} // namespace vexmarrow
