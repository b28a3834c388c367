// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/SystemCalls.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace vexmarrow {

int SystemCalls::Open(const std::string& path, int flags, mode_t mode) {
    // The system would cut the path at a NUL and open another file than the one named.
    if (path.find('\0') != std::string::npos) {
        errno = ENOENT;
        return -1;
    }
    return ::open(path.c_str(), flags, mode);
}

int SystemCalls::Status(int descriptor, struct stat& status) {
    return ::fstat(descriptor, &status);
}

ssize_t SystemCalls::Read(int descriptor, void* bytes, std::size_t count) {
    return ::read(descriptor, bytes, count);
}

ssize_t SystemCalls::WriteAt(int descriptor, const void* bytes, std::size_t count, off_t offset) {
    return ::pwrite(descriptor, bytes, count, offset);
}

int SystemCalls::Truncate(int descriptor, off_t size) {
    return ::ftruncate(descriptor, size);
}

int SystemCalls::Close(int descriptor) {
    return ::close(descriptor);
}

int SystemCalls::Unlink(const std::string& path) {
    return ::unlink(path.c_str());
}

} // namespace vexmarrow
