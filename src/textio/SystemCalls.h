// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/FileStatus.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace vexmarrow {

/// The system calls on files. Each returns what the system does (-1 for a failure) and sets errno.
/// They are virtual so that a test can make any of them fail or end the program there. Except for
/// listing folders, nothing else in the program looks at users' files, reads or writes them.
class SystemCalls {
public:
    virtual ~SystemCalls() = default;

    virtual int Open(const std::string& path, int flags, mode_t mode);
    virtual int Status(int descriptor, FileStatus& status);
    /// If the path names a symbolic link, StatusOfName looks at the link, StatusOfTarget at what
    /// it leads to.
    virtual int StatusOfName(const std::string& path, FileStatus& status);
    virtual int StatusOfTarget(const std::string& path, FileStatus& status);
    /// The path in a symbolic link, as it is written there.
    virtual int ReadLink(const std::string& path, std::string& target);
    virtual ssize_t Read(int descriptor, void* bytes, std::size_t count);
    virtual ssize_t ReadAt(int descriptor, void* bytes, std::size_t count, std::uint64_t offset);
    virtual ssize_t WriteAt(int descriptor, const void* bytes, std::size_t count,
                            std::uint64_t offset);
    virtual int Truncate(int descriptor, std::uint64_t size);
    virtual int SetMode(int descriptor, mode_t mode);
    /// Sets the time at which the contents last changed, in nanoseconds since 1970.
    virtual int SetModified(int descriptor, std::int64_t modified);
    /// Takes or releases a lock of the whole file. `operation` is that of flock. Never waits: fails
    /// with EWOULDBLOCK if another lock is in the way.
    virtual int Lock(int descriptor, int operation);
    /// Fails with EWOULDBLOCK if another program has locked a part of the file (as lockf does)
    /// against reading or writing. Takes no lock.
    virtual int AskForLock(int descriptor, bool forWriting);
    /// Another descriptor of the same open file.
    virtual int Duplicate(int descriptor);
    virtual int Close(int descriptor);
    virtual int Unlink(const std::string& path);
    /// Names a file that has no name (O_TMPFILE). Fails with EEXIST if the name is taken.
    virtual int NameFile(int descriptor, const std::string& path);
    /// Renames a file. Fails with EEXIST if the new name is taken.
    virtual int RenameToNew(const std::string& from, const std::string& to);
    virtual int MakeFolder(const std::string& path, mode_t mode);
    /// Returns a descriptor to which WatchFolder adds folders. Once an entry of a watched folder
    /// was added or removed, or the folder's times were set, it has something to read; reading
    /// never waits. Closing it takes milliseconds.
    virtual int MakeWatch();
    virtual int WatchFolder(int watch, const std::string& folder);
    /// The number of bytes that this user can still write to the file system of a folder.
    virtual int RoomIn(const std::string& folder, std::uint64_t& bytes);
    /// Reads an extended attribute into `value`. Returns its length, as getxattr does.
    virtual ssize_t Attribute(const std::string& path, const char* name, void* value,
                              std::size_t size);
    virtual ssize_t AttributeOf(int descriptor, const char* name, void* value, std::size_t size);
};

// One system call may read or write only a part of what it was given. These two repeat it until all
// is done. Both return 0 or an errno value.

/// Writes all of `bytes` at `offset`.
int WriteWhole(SystemCalls& calls, int descriptor, std::string_view bytes, std::uint64_t offset);

/// Reads `count` bytes at `offset`, or fewer if the file ends first; `got` is their number.
int ReadWhole(SystemCalls& calls, int descriptor, char* bytes, std::size_t count,
              std::uint64_t offset, std::size_t& got);

} // namespace vexmarrow
