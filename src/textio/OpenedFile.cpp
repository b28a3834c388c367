// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/OpenedFile.h"

#include "textio/Paths.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace vexmarrow {
namespace {

/// With O_NONBLOCK, opening a path that has just become a pipe does not wait for its other end. The
/// flag has no effect on regular files.
constexpr int kFlags = O_NONBLOCK | O_CLOEXEC | O_NOCTTY;

OpenedFile Open(SystemCalls& calls, const std::string& path, int flags) {
    OpenedFile opened{Descriptor(calls, calls.Open(path, flags | kFlags, 0)), 0, {}};
    opened.error = opened.file.IsOpen() ? 0 : errno;
    return opened;
}

} // namespace

OpenedFile OpenToRead(SystemCalls& calls, const std::string& path) {
    return Open(calls, path, O_RDONLY);
}

OpenedFile OpenToWrite(SystemCalls& calls, const std::string& path) {
    constexpr int kMostLinks = 40; // the system's own limit
    std::string place = path;      // the path once the links at its end are followed
    OpenedFile opened = Open(calls, place, O_RDWR | O_NOFOLLOW);
    for (int links = 0; opened.error == ELOOP && links < kMostLinks; ++links) {
        std::string target;
        FileStatus link;
        if (calls.ReadLink(place, target) != 0 || calls.StatusOfName(place, link) != 0) {
            opened.error = errno;
            break;
        }
        if (link.owner != ::geteuid() && link.owner != 0) {
            opened.error = EPERM;
            opened.reason = u"It is reached by a link that belongs to another user";
            break;
        }
        place = target.starts_with('/') ? target : ParentFolder(place).append("/").append(target);
        opened = Open(calls, place, O_RDWR | O_NOFOLLOW);
    }
    return opened;
}

} // namespace vexmarrow
