// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/Refusing.h"

#include "base/Failure.h"
#include "safety/LogFile.h"
#include "textio/FileLock.h"
#include "textio/InputFile.h"
#include "textio/Paths.h"

#include <cerrno>
#include <unistd.h>

namespace vexmarrow {
namespace {

constexpr mode_t kSetIdBits = S_ISUID | S_ISGID;
constexpr mode_t kRunnable = 0111;

/// In a folder that everybody may write to, anybody can have put a file for others to write their
/// texts into. This user's own files, root's, and those of the folder's owner are none of these.
bool MayBePlanted(SystemCalls& calls, int descriptor, const FileStatus& status) {
    if (status.owner == ::geteuid() || status.owner == 0) {
        return false;
    }
    std::string place; // after all links
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
    if ((status.mode & kSetIdBits) != 0) { // which writing takes away
        return u"It has a set-id bit, as no file of contacts has";
    }
    if ((status.mode & kRunnable) != 0 &&
        calls.AttributeOf(descriptor, "security.capability", nullptr, 0) > 0) {
        return u"It has capabilities, as no file of contacts has";
    }
    if (IsLog(calls, descriptor, status)) {
        return u"It is a log of this program";
    }
    return MayBePlanted(calls, descriptor, status)
               ? u"It belongs to another user, in a folder that everybody may write to"
               : u"";
}

OpenedFile OpenTarget(SystemCalls& calls, const std::string& path, FileStatus& status,
                      InputFile* source) {
    // A pipe tells its other end that it was opened; a device may act on it.
    if (calls.StatusOfTarget(path, status) == 0 && !status.IsRegular()) {
        return {Descriptor(calls), EPERM, status.WhyNotRegular()};
    }
    OpenedFile opened = OpenToWrite(calls, path);
    const int file = opened.file.Number();
    if (opened.error == 0 && calls.Status(file, status) != 0) {
        opened.error = errno;
    }
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
    // What it holds counts from the moment at which nobody else of ours can write it.
    if (opened.error == 0 && calls.Status(file, status) != 0) {
        opened.error = errno;
    }
    return opened;
}

std::u16string ReasonOf(const OpenedFile& opened) {
    if (opened.error == EWOULDBLOCK) {
        return std::u16string(kLockedByAnother);
    }
    return opened.reason.empty() ? ReasonOf(opened.error) : std::u16string(opened.reason);
}

} // namespace vexmarrow
