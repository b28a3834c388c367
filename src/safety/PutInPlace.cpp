// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/PutInPlace.h"

#include "safety/RunRecord.h"
#include "textio/ByteSource.h"

#include <algorithm>
#include <cerrno>

namespace vexmarrow {

PutBackResult PutBack(SystemCalls& calls, int descriptor, const PlacedRecord& placed,
                      ByteSource& old) noexcept {
    const RunRecord& record = placed.record;
    FileStatus present;
    if (calls.Status(descriptor, present) != 0) {
        return {PutBackState::Untouched, errno, 0};
    }
    const std::uint64_t kept = record.KeptSize();
    // The end of what is put back within the file as it is.
    const std::uint64_t within =
        std::min(std::max(present.size, record.keptFrom) - record.keptFrom, kept);
    std::uint64_t tail = within;
    std::uint64_t head = 0;
    if (const int error = CopyBytes(calls, descriptor, old, tail, kept, record.keptFrom)) {
        // Also when no byte was written: the call may have made room for it.
        const bool cutBack = calls.Truncate(descriptor, present.size) == 0;
        return {cutBack ? PutBackState::Untouched : PutBackState::Mixed, error, 0};
    }
    int error = CopyBytes(calls, descriptor, old, head, within, record.keptFrom);
    if (error == 0 && present.size > record.old.size &&
        calls.Truncate(descriptor, record.old.size) != 0) {
        error = errno;
    }
    if (error == 0) {
        error = ErrorOfClosing(calls, descriptor);
    }
    if (error != 0) {
        return {PutBackState::Mixed, error, 0};
    }
    const int timeError = calls.SetModified(descriptor, record.old.modified) == 0 ? 0 : errno;
    return {PutBackState::Whole, 0, timeError};
}

int ErrorOfClosing(SystemCalls& calls, int descriptor) noexcept {
    const int duplicate = calls.Duplicate(descriptor);
    if (duplicate < 0) {
        return errno;
    }
    // A signal has closed it all the same.
    return calls.Close(duplicate) == 0 || errno == EINTR ? 0 : errno;
}

} // namespace vexmarrow
