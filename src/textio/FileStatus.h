// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string_view>
#include <sys/stat.h>
#include <sys/types.h>

namespace vexmarrow {

/// What the system knows about a file. Times are in nanoseconds since 1970.
struct FileStatus {
    mode_t mode = 0;
    uid_t owner = 0;
    gid_t group = 0;
    std::uint64_t links = 0;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t size = 0;    ///< bytes
    std::int64_t modified = 0; ///< last change of the contents
    std::int64_t changed = 0;  ///< last change of contents or rights; programs cannot set it
    std::int64_t born = 0;     ///< creation; 0 if the file system does not record it

    bool IsRegular() const { return S_ISREG(mode); }
    bool IsFolder() const { return S_ISDIR(mode); }

    /// Why it is not read or written: a sentence without its full stop. Empty for a regular file.
    std::u16string_view WhyNotRegular() const {
        return IsFolder() ? u"It is a folder" : IsRegular() ? u"" : u"It is not a regular file";
    }

    /// Whether both are the same file, possibly under two names. The time of its creation tells a
    /// file from a deleted one whose inode number it has got.
    bool SameFileAs(const FileStatus& other) const {
        return device == other.device && inode == other.inode && born == other.born;
    }

    /// Whether the file has the same contents, as far as size and times can tell.
    bool SameContentsAs(const FileStatus& other) const {
        return size == other.size && modified == other.modified && changed == other.changed;
    }
};

} // namespace vexmarrow
