// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/OpenTarget.h"

#include "base/Failure.h"
#include "safety/LogFile.h"
#include "textio/Descriptor.h"
#include "textio/FileLock.h"
#include "textio/InputFile.h"
#include "textio/Paths.h"

#include <cerrno>
#include <unistd.h>

namespace vexmarrow {
namespace {

constexpr mode_t kSetIdBits = S_ISUID | S_ISGID;
constexpr mode_t kRunnable = 0111;

/// Whether another user may have put a file into a folder that everyone can write to, in order to
/// read what is written into it. Files of this user, of root and of the folder's owner are safe.
bool MayBePlanted(SystemCalls& calls, int descriptor, const FileStatus& status) {
    if (status.owner == ::geteuid() || status.owner == 0) {
        return false;
    }
    std::string place; // the path without links
    FileStatus folder;
    return calls.ReadLink("/proc/self/fd/" + std::to_string(descriptor), place) != 0 ||
           calls.StatusOfTarget(ParentFolder(place), folder) != 0 ||
           ((folder.mode & S_IWOTH) != 0 && folder.owner != status.owner);
}

} // namespace

std::u16string_view ReasonToRefuse(SystemCalls& calls, int descriptor, const FileStatus& status) {
    if (!status.IsRegular()) {
        return status.WhyNotRegular();
    }
    if ((status.mode & kSetIdBits) != 0) { // writing would clear the bits
        return u"It has a set-user-ID or set-group-ID bit, which files of contacts never need";
    }
    if ((status.mode & kRunnable) != 0 &&
        calls.AttributeOf(descriptor, "security.capability", nullptr, 0) > 0) {
        return u"It has capabilities of a program, which files of contacts never need";
    }
    if (IsLog(calls, descriptor, status)) {
        return u"It is one of this program's own logs";
    }
    return MayBePlanted(calls, descriptor, status)
               ? u"It belongs to another user and is in a folder that everyone can write to"
               : u"";
}

OpenedFile OpenTarget(SystemCalls& calls, const std::string& path, FileStatus& status,
                      InputFile* source) {
    // Even opening has an effect on a pipe or a device.
    if (calls.StatusOfTarget(path, status) == 0 && !status.IsRegular()) {
        return {Descriptor(calls), EPERM, status.WhyNotRegular()};
    }
    OpenedFile opened = OpenToWrite(calls, path);
    const int file = opened.file.Number();
    const auto readStatus = [&] {
        if (opened.error == 0 && calls.Status(file, status) != 0) {
            opened.error = errno;
        }
    };
    readStatus();
    if (opened.error == 0) {
        opened.reason = ReasonToRefuse(calls, file, status);
        opened.error = opened.reason.empty() ? 0 : EPERM;
    }
    if (opened.error == 0) {
        if (source != nullptr && status.SameFileAs(source->Status())) {
            source->ReleaseLock();
        }
        opened.error = LockFile(calls, file, true);
    }
    readStatus(); // again, because another program may have written the file before the lock
    return opened;
}

std::u16string ReasonOf(const OpenedFile& opened) {
    if (opened.error == EWOULDBLOCK) {
        return std::u16string(kLockedByAnother);
    }
    return opened.reason.empty() ? ReasonOf(opened.error) : std::u16string(opened.reason);
}

} // namespace vexmarrow
