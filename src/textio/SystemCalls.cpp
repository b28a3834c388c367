// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/SystemCalls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace vexmarrow {
namespace {

/// Sets errno to ENOENT if so. The system would cut such a path at the NUL and use another file.
bool HoldsNul(const std::string& path) {
    if (path.find('\0') == std::string::npos) {
        return false;
    }
    errno = ENOENT;
    return true;
}

constexpr std::int64_t kPerSecond = 1'000'000'000;

std::int64_t Nanoseconds(const struct statx_timestamp& time) {
    return time.tv_sec * kPerSecond + time.tv_nsec;
}

int StatusAt(int descriptor, const char* path, int flags, FileStatus& status) {
    struct statx raw {};
    const int answer = ::statx(descriptor, path, flags, STATX_BASIC_STATS | STATX_BTIME, &raw);
    if (answer == 0) {
        status.mode = raw.stx_mode;
        status.owner = raw.stx_uid;
        status.group = raw.stx_gid;
        status.links = raw.stx_nlink;
        status.device = makedev(raw.stx_dev_major, raw.stx_dev_minor);
        status.inode = raw.stx_ino;
        status.size = raw.stx_size;
        status.modified = Nanoseconds(raw.stx_mtime);
        status.changed = Nanoseconds(raw.stx_ctime);
        status.born = (raw.stx_mask & STATX_BTIME) != 0 ? Nanoseconds(raw.stx_btime) : 0;
    }
    return answer;
}

} // namespace

int SystemCalls::Open(const std::string& path, int flags, mode_t mode) {
    return HoldsNul(path) ? -1 : ::open(path.c_str(), flags, mode);
}

int SystemCalls::Status(int descriptor, FileStatus& status) {
    return StatusAt(descriptor, "", AT_EMPTY_PATH, status);
}

int SystemCalls::StatusOfName(const std::string& path, FileStatus& status) {
    return HoldsNul(path) ? -1 : StatusAt(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, status);
}

int SystemCalls::StatusOfTarget(const std::string& path, FileStatus& status) {
    // Like stat: looking at an automount point must not mount anything.
    return HoldsNul(path) ? -1 : StatusAt(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT, status);
}

int SystemCalls::ReadLink(const std::string& path, std::string& target) {
    std::array<char, PATH_MAX> bytes{};
    const ssize_t length = HoldsNul(path) ? -1 : ::readlink(path.c_str(), bytes.data(), PATH_MAX);
    target.assign(bytes.data(), length < 0 ? 0 : static_cast<std::size_t>(length));
    return length < 0 ? -1 : 0;
}

ssize_t SystemCalls::Read(int descriptor, void* bytes, std::size_t count) {
    return ::read(descriptor, bytes, count);
}

ssize_t SystemCalls::ReadAt(int descriptor, void* bytes, std::size_t count, std::uint64_t offset) {
    return ::pread(descriptor, bytes, count, static_cast<off_t>(offset));
}

ssize_t SystemCalls::WriteAt(int descriptor, const void* bytes, std::size_t count,
                             std::uint64_t offset) {
    return ::pwrite(descriptor, bytes, count, static_cast<off_t>(offset));
}

int SystemCalls::Truncate(int descriptor, std::uint64_t size) {
    return ::ftruncate(descriptor, static_cast<off_t>(size));
}

int SystemCalls::SetMode(int descriptor, mode_t mode) {
    return ::fchmod(descriptor, mode);
}

int SystemCalls::SetModified(int descriptor, std::int64_t modified) {
    // The nanoseconds of a timespec must not be negative, even for times before 1970.
    std::int64_t part = modified % kPerSecond;
    part += part < 0 ? kPerSecond : 0;
    // The time of the last access is set only because some file systems outside the kernel ignore a
    // call that sets just one of the two times.
    const std::array<timespec, 2> times{timespec{0, UTIME_NOW},
                                        timespec{(modified - part) / kPerSecond, part}};
    return ::futimens(descriptor, times.data());
}

int SystemCalls::Lock(int descriptor, int operation) {
    return ::flock(descriptor, operation | LOCK_NB);
}

int SystemCalls::AskForLock(int descriptor, bool forWriting) {
    struct flock lock {};
    lock.l_type = forWriting ? F_WRLCK : F_RDLCK;
    lock.l_whence = SEEK_SET; // from the beginning; a length of 0 means to the end
    if (::fcntl(descriptor, F_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) {
        return 0; // nothing is locked, or the file system has no locks
    }
    errno = EWOULDBLOCK;
    return -1;
}

int SystemCalls::Duplicate(int descriptor) {
    return ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
}

int SystemCalls::Close(int descriptor) {
    return ::close(descriptor);
}

int SystemCalls::Unlink(const std::string& path) {
    return HoldsNul(path) ? -1 : ::unlink(path.c_str());
}

int SystemCalls::NameFile(int descriptor, const std::string& path) {
    if (HoldsNul(path)) {
        return -1;
    }
    // Linking the descriptor itself (AT_EMPTY_PATH) is reserved to the superuser.
    const std::string self = "/proc/self/fd/" + std::to_string(descriptor);
    return ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW);
}

int SystemCalls::RenameToNew(const std::string& from, const std::string& to) {
    if (HoldsNul(from) || HoldsNul(to)) {
        return -1;
    }
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return -1;
    }
    // A file system without RENAME_NOREPLACE usually has hard links, which never replace a file.
    if (::link(from.c_str(), to.c_str()) == 0) {
        ::unlink(from.c_str());
        return 0;
    }
    // If it has neither, another file may take the name between the look and the renaming.
    FileStatus status;
    if (errno == EEXIST || StatusOfName(to, status) == 0) {
        errno = EEXIST;
        return -1;
    }
    return errno == ENOENT ? ::rename(from.c_str(), to.c_str()) : -1;
}

int SystemCalls::MakeFolder(const std::string& path, mode_t mode) {
    return HoldsNul(path) ? -1 : ::mkdir(path.c_str(), mode);
}

int SystemCalls::MakeWatch() {
    return ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
}

int SystemCalls::WatchFolder(int watch, const std::string& folder) {
    constexpr std::uint32_t kEvents = IN_CREATE | IN_DELETE | IN_MOVE | IN_ATTRIB | IN_DELETE_SELF;
    return HoldsNul(folder) ? -1 : ::inotify_add_watch(watch, folder.c_str(), kEvents);
}

int SystemCalls::RoomIn(const std::string& folder, std::uint64_t& bytes) {
    struct statvfs status {};
    if (HoldsNul(folder) || ::statvfs(folder.c_str(), &status) != 0) {
        return -1;
    }
    bytes = std::uint64_t{status.f_bavail} * status.f_frsize;
    return 0;
}

ssize_t SystemCalls::Attribute(const std::string& path, const char* name, void* value,
                               std::size_t size) {
    return HoldsNul(path) ? -1 : ::getxattr(path.c_str(), name, value, size);
}

ssize_t SystemCalls::AttributeOf(int descriptor, const char* name, void* value, std::size_t size) {
    return ::fgetxattr(descriptor, name, value, size);
}

int WriteWhole(SystemCalls& calls, int descriptor, std::string_view bytes, std::uint64_t offset) {
    while (!bytes.empty()) {
        const ssize_t answer = calls.WriteAt(descriptor, bytes.data(), bytes.size(), offset);
        if (answer <= 0 && (answer == 0 || errno != EINTR)) {
            return answer == 0 ? EIO : errno;
        }
        const auto count = static_cast<std::size_t>(std::max<ssize_t>(answer, 0));
        bytes.remove_prefix(count);
        offset += count;
    }
    return 0;
}

int ReadWhole(SystemCalls& calls, int descriptor, char* bytes, std::size_t count,
              std::uint64_t offset, std::size_t& got) {
    got = 0;
    while (got < count) {
        const ssize_t answer = calls.ReadAt(descriptor, bytes + got, count - got, offset + got);
        if (answer < 0 && errno != EINTR) {
            return errno;
        }
        if (answer == 0) {
            break;
        }
        got += static_cast<std::size_t>(std::max<ssize_t>(answer, 0));
    }
    return 0;
}

} // namespace vexmarrow
