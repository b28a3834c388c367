// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/SystemCalls.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace vexmarrow {
namespace {

/// The system would cut a path at a NUL and take another file than the one named.
bool HoldsNul(const std::string& path) {
    if (path.find('\0') == std::string::npos) {
        return false;
    }
    errno = ENOENT;
    return true;
}

std::int64_t Nanoseconds(const struct statx_timestamp& time) {
    constexpr std::int64_t kPerSecond = 1'000'000'000;
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
    return HoldsNul(path) ? -1 : StatusAt(AT_FDCWD, path.c_str(), 0, status);
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

int SystemCalls::Lock(int descriptor, int operation) {
    return ::flock(descriptor, operation | LOCK_NB);
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
    // The descriptor itself could be linked by the superuser only.
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
    // A file system that cannot refuse to replace can mostly link, which never replaces.
    if (::link(from.c_str(), to.c_str()) == 0) {
        ::unlink(from.c_str());
        return 0;
    }
    // One that can do neither leaves a moment between looking and renaming.
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

} // namespace vexmarrow
