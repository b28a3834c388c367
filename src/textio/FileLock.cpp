// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/FileLock.h"

#include "textio/SystemCalls.h"

#include <cerrno>
#include <sys/file.h>

namespace vexmarrow {
namespace {

bool IsLackOfLocks(int error) {
    return error == ENOLCK || error == EOPNOTSUPP || error == ENOSYS || error == EINVAL;
}

} // namespace

int LockFile(SystemCalls& calls, int descriptor, bool forWriting) {
    // Other programs' locks are looked for first. On network file systems, a lock of the whole file
    // also locks its parts, so afterwards this would find the program's own lock.
    if (calls.AskForLock(descriptor, forWriting) != 0) {
        return errno;
    }
    const bool isOurs = calls.Lock(descriptor, forWriting ? LOCK_EX : LOCK_SH) == 0;
    return isOurs || IsLackOfLocks(errno) ? 0 : errno;
}

} // namespace vexmarrow
