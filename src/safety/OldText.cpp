// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/OldText.h"

#include "textio/Checksum.h"

namespace vexmarrow {

Content ContentOf(SystemCalls& calls, int descriptor, const FileStatus& status,
                  const LogRecord& record) {
    const bool mayBeOld = status.size == record.head.old.size;
    const bool mayBeNew = record.tail && status.size == record.tail->size;
    if (!mayBeOld && !mayBeNew) {
        return Content::Other;
    }
    FileBytes bytes(calls, descriptor, 0, status.size);
    Checksum checksum;
    if (const int error = checksum.Add(bytes, 0, status.size)) {
        return error == ENODATA ? Content::Other : Content::Unreadable;
    }
    if (mayBeOld && checksum.Value() == record.head.checksum) {
        return Content::Old;
    }
    return mayBeNew && checksum.Value() == record.tail->checksum ? Content::New : Content::Other;
}

RestoreResult RestoreOldText(SystemCalls& calls, int descriptor, const LogRecord& record,
                             ByteSource& old) noexcept {
    const RecordHead& head = record.head;
    FileStatus present;
    if (calls.Status(descriptor, present) != 0) {
        return {RestoreState::Unchanged, errno, 0};
    }
    const std::uint64_t kept = head.KeptSize();
    // How many of the kept bytes lie within the present size.
    const std::uint64_t within =
        std::min(std::max(present.size, head.keptFrom) - head.keptFrom, kept);
    std::uint64_t back = within;
    std::uint64_t front = 0;
    if (const int error = CopyBytes(calls, descriptor, old, back, kept, head.keptFrom)) {
        // Truncate even if no byte was written: the call may have made the file longer.
        const bool cutBack = calls.Truncate(descriptor, present.size) == 0;
        return {cutBack ? RestoreState::Unchanged : RestoreState::Mixed, error, 0};
    }
    int error = CopyBytes(calls, descriptor, old, front, within, head.keptFrom);
    if (error == 0 && present.size > head.old.size &&
        calls.Truncate(descriptor, head.old.size) != 0) {
        error = errno;
    }
    if (error == 0) {
        error = ErrorOfClosing(calls, descriptor);
    }
    if (error != 0) {
        return {RestoreState::Mixed, error, 0};
    }
    const int timeError = calls.SetModified(descriptor, head.old.modified) == 0 ? 0 : errno;
    return {RestoreState::Restored, 0, timeError};
}

int ErrorOfClosing(SystemCalls& calls, int descriptor) noexcept {
    const int duplicate = calls.Duplicate(descriptor);
    if (duplicate < 0) {
        return errno;
    }
    // After EINTR the descriptor is closed, too.
    return calls.Close(duplicate) == 0 || errno == EINTR ? 0 : errno;
}

} // namespace vexmarrow
