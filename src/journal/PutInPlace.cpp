// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "journal/PutInPlace.h"

#include "journal/Whole.h"
#include "textio/SystemCalls.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
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

/// Writing takes the set-id bits away from a file unless the superuser writes. Its owner can give
/// them back, the one of the group only when it is one of the owner's groups.
bool CanKeepSetIdBits(const FileStatus& status) {
    if ((status.mode & kSetIdBits) == 0 || ::geteuid() == 0) {
        return true;
    }
    if (status.owner != ::geteuid()) {
        return false;
    }
    return (status.mode & S_ISGID) == 0 || status.group == ::getegid() ||
           ::group_member(status.group) != 0;
}

} // namespace

int OpenInPlace(SystemCalls& calls, const std::string& path, FileStatus& status, int& error) {
    int number = Open(calls, path, O_RDWR);
    if (number < 0 && errno == EACCES) {
        number = Open(calls, path, O_WRONLY); // it may be writable all the same
    }
    if (number < 0) {
        error = errno;
        return -1;
    }
    error = 0;
    if (calls.Status(number, status) != 0) {
        error = errno;
    } else if (status.IsRegular()) {
        if (calls.Lock(number) != 0 && !IsLackOfLocks(errno)) {
            error = errno;
        } else if (!CanKeepSetIdBits(status)) {
            error = EPERM;
        }
    }
    if (error != 0) {
        calls.Close(number);
        return -1;
    }
    return number;
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
