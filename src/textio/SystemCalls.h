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

/// The system calls on files, each as the system has it: the result (-1 for a failure) and errno.
/// Virtual so that a test can make any one of them fail or stop the program there; nothing else in
/// the program looks at users' files, reads or writes them.
class SystemCalls {
public:
    virtual ~SystemCalls() = default;

    virtual int Open(const std::string& path, int flags, mode_t mode);
    virtual int Status(int descriptor, FileStatus& status);
    /// Of what has that name: of a link itself, or of what it leads to.
    virtual int StatusOfName(const std::string& path, FileStatus& status);
    virtual int StatusOfTarget(const std::string& path, FileStatus& status);
    /// Where a symbolic link leads to, as it is written in the link.
    virtual int ReadLink(const std::string& path, std::string& target);
    virtual ssize_t Read(int descriptor, void* bytes, std::size_t count);
    virtual ssize_t ReadAt(int descriptor, void* bytes, std::size_t count, std::uint64_t offset);
    virtual ssize_t WriteAt(int descriptor, const void* bytes, std::size_t count,
                            std::uint64_t offset);
    virtual int Truncate(int descriptor, std::uint64_t size);
    virtual int SetMode(int descriptor, mode_t mode);
    /// Sets the time of the last change of the contents, in nanoseconds since 1970.
    virtual int SetModified(int descriptor, std::int64_t modified);
    /// Takes or gives up a lock of the whole file, without waiting: EWOULDBLOCK when another one
    /// is in the way. `operation` as for flock.
    virtual int Lock(int descriptor, int operation);
    /// Whether another program has locked a part of the file (as lockf does) against reading or
    /// writing: -1 with EWOULDBLOCK. Takes no lock.
    virtual int AskForLock(int descriptor, bool forWriting);
    /// Another descriptor of the same open file.
    virtual int Duplicate(int descriptor);
    virtual int Close(int descriptor);
    virtual int Unlink(const std::string& path);
    /// Gives a file without a name (O_TMPFILE) one that nothing has yet.
    virtual int NameFile(int descriptor, const std::string& path);
    /// Renames a file to a name that nothing has yet: EEXIST otherwise.
    virtual int RenameToNew(const std::string& from, const std::string& to);
    virtual int MakeFolder(const std::string& path, mode_t mode);
    /// A descriptor from which something can be read, without waiting, once entries of a watched
    /// folder have come or gone or its times were set; and adds a folder to it. Closing it takes
    /// milliseconds.
    virtual int MakeWatch();
    virtual int WatchFolder(int watch, const std::string& folder);
    /// How many bytes this user can still write to the file system of a folder.
    virtual int RoomIn(const std::string& folder, std::uint64_t& bytes);
    /// The value of an extended attribute: its length, as getxattr tells it.
    virtual ssize_t Attribute(const std::string& path, const char* name, void* value,
                              std::size_t size);
    virtual ssize_t AttributeOf(int descriptor, const char* name, void* value, std::size_t size);
};

// Reading and writing that goes on until all is done: a system call may do less than it was asked.
// Both return 0 or the errno of the failure.

/// Writes all of `bytes` at `offset`.
int WriteWhole(SystemCalls& calls, int descriptor, std::string_view bytes, std::uint64_t offset);

/// Reads up to `count` bytes at `offset`, fewer only at the end of the file.
int ReadWhole(SystemCalls& calls, int descriptor, char* bytes, std::size_t count,
              std::uint64_t offset, std::size_t& got);

} // namespace vexmarrow
