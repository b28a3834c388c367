// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "journal/PutInPlace.h"

#include "base/Failure.h"
#include "journal/Whole.h"
#include "textio/SystemCalls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <linux/capability.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace vexmarrow {
namespace {

constexpr mode_t kSetIdBits = S_ISUID | S_ISGID;
constexpr mode_t kModeBits = 07777;

/// Whether a failed write has changed nothing for certain. After an error of the device, for
/// instance, nobody knows.
bool IsLackOfRoom(int error) {
    return error == ENOSPC || error == EDQUOT || error == EFBIG;
}

bool IsLackOfLocks(int error) {
    return error == ENOLCK || error == EOPNOTSUPP || error == ENOSYS || error == EINVAL;
}

int Open(SystemCalls& calls, const std::string& path, int access) {
    return calls.Open(path, access | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, 0);
}

/// Writes bytes `from` to `to` of the source and moves `from` on over what is written.
int WritePart(SystemCalls& calls, const InPlaceJob& job, ByteSource& source, std::uint64_t& from,
              std::uint64_t to) {
    while (from < to) {
        std::string_view bytes;
        const std::size_t most = std::min<std::uint64_t>(to - from, SIZE_MAX);
        int error = source.Show(from, most, bytes);
        std::uint64_t written = 0;
        if (error == 0) {
            error = WriteWhole(calls, job.descriptor, bytes, job.base + from, written);
        }
        from += written;
        if (error != 0) {
            return error;
        }
    }
    return 0;
}

/// Whether writing leaves this process's files their set-id bits. It is the superuser's right,
/// which a container may lack.
bool MayKeepSetIdBits() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> data{};
    return ::syscall(SYS_capget, &header, data.data()) == 0 &&
           (data[CAP_TO_INDEX(CAP_FSETID)].effective & CAP_TO_MASK(CAP_FSETID)) != 0;
}

/// Writing takes the set-id bits away. The owner can give them back, the one of the group only when
/// it is one of the owner's groups.
bool CanKeepSetIdBits(const FileStatus& status) {
    if ((status.mode & kSetIdBits) == 0 || MayKeepSetIdBits()) {
        return true;
    }
    if (status.owner != ::geteuid()) {
        return false;
    }
    return (status.mode & S_ISGID) == 0 || status.group == ::getegid() ||
           ::group_member(status.group) != 0;
}

/// Writing takes capabilities away for good. Only files that can be run have any.
bool HasCapabilities(int descriptor, const FileStatus& status) {
    constexpr mode_t kRunnable = 0111;
    return (status.mode & kRunnable) != 0 &&
           ::fgetxattr(descriptor, "security.capability", nullptr, 0) > 0;
}

} // namespace

OpenedInPlace OpenInPlace(SystemCalls& calls, const std::string& path) {
    OpenedInPlace opened;
    Descriptor file(calls, Open(calls, path, O_RDWR));
    if (!file.IsOpen() && errno == EACCES) {
        file = Descriptor(calls, Open(calls, path, O_WRONLY)); // it may be writable all the same
    }
    if (!file.IsOpen() || calls.Status(file.Number(), opened.status) != 0) {
        opened.error = errno;
    } else {
        opened.reason = ReasonToRefuse(file.Number(), opened.status);
        opened.descriptor = opened.reason.empty() ? file.Release() : -1;
    }
    if (!opened.reason.empty()) {
        opened.error = EPERM;
    }
    return opened;
}

std::u16string_view ReasonToRefuse(int descriptor, const FileStatus& status) {
    if (!status.IsRegular()) {
        return status.IsFolder() ? u"It is a folder" : u"It is not a regular file";
    }
    if (!CanKeepSetIdBits(status)) {
        return u"Its set-id bits would be lost, which only its owner can give back";
    }
    return HasCapabilities(descriptor, status) ? u"Its capabilities would be lost" : u"";
}

int LockForWriting(SystemCalls& calls, int descriptor) {
    return calls.Lock(descriptor, LOCK_EX) == 0 || IsLackOfLocks(errno) ? 0 : errno;
}

Failure OpenFailure(std::u16string_view doing, std::u16string_view path,
                    const OpenedInPlace& opened) {
    return opened.reason.empty() ? FileFailure(doing, path, opened.error)
                                 : FileFailure(doing, path, opened.reason);
}

Failure LockFailure(std::u16string_view doing, std::u16string_view path, int error) {
    return error == EWOULDBLOCK ? FileFailure(doing, path, u"It is locked by another program")
                                : FileFailure(doing, path, error);
}

mode_t ModeToGiveBack(mode_t present, mode_t before) {
    return (present | (before & kSetIdBits)) == before ? before : present;
}

int RestoreSetIdBits(SystemCalls& calls, int descriptor, mode_t mode) {
    if ((mode & kSetIdBits) == 0 || calls.SetMode(descriptor, mode & kModeBits) == 0) {
        return 0;
    }
    return errno;
}

InPlaceResult PutInPlace(SystemCalls& calls, const InPlaceJob& job, ByteSource& source) noexcept {
    const std::uint64_t newSize = job.base + job.size;
    const std::uint64_t overlap = std::min(job.old.size - job.base, job.size);
    std::uint64_t tail = overlap;
    std::uint64_t head = 0;
    int error = WritePart(calls, job, source, tail, job.size);
    bool untouched = error != 0;
    if (error == 0) {
        error = WritePart(calls, job, source, head, overlap);
        untouched = head == 0 && IsLackOfRoom(error);
    }
    if (error != 0) {
        // Also when no byte of the tail was written: the call may have made room for it.
        if (untouched && newSize > job.old.size) {
            untouched = calls.Truncate(job.descriptor, job.old.size) == 0;
        }
        untouched = untouched && RestoreSetIdBits(calls, job.descriptor, job.old.mode) == 0;
        return {untouched ? InPlaceState::Untouched : InPlaceState::Mixed, error};
    }
    if (newSize < job.old.size && calls.Truncate(job.descriptor, newSize) != 0) {
        // With nothing written before it, the cut that failed was all there was to do.
        return {job.size == 0 ? InPlaceState::Untouched : InPlaceState::Mixed, errno};
    }
    error = RestoreSetIdBits(calls, job.descriptor, job.old.mode);
    return {error == 0 ? InPlaceState::Complete : InPlaceState::Mixed, error};
}

} // namespace vexmarrow
