// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <sys/stat.h>
#include <sys/types.h>

namespace vexmarrow {

/// What the system tells about a file. Times are nanoseconds since 1970.
struct FileStatus {
    mode_t mode = 0;
    uid_t owner = 0;
    gid_t group = 0;
    std::uint64_t links = 0;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t size = 0;    ///< bytes
    std::int64_t modified = 0; ///< the last change of the contents
    std::int64_t changed = 0;  ///< the last change of contents or rights, which nobody can set back
    std::int64_t born = 0;     ///< 0 where the file system does not tell

    bool IsRegular() const { return S_ISREG(mode); }
    bool IsFolder() const { return S_ISDIR(mode); }

    /// Whether both are the same file, by whatever name. The time of birth tells a file from one
    /// that got the number of a deleted one.
    bool SameFileAs(const FileStatus& other) const {
        return device == other.device && inode == other.inode && born == other.born;
    }

    /// Whether the file still holds what it held, as far as size and times tell.
    bool SameContentsAs(const FileStatus& other) const {
        return size == other.size && modified == other.modified && changed == other.changed;
    }
};

} // namespace vexmarrow
