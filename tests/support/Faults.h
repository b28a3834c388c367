// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/SystemCalls.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <map>
#include <string>
#include <utility>

namespace vexmarrow::test {

/// The real system calls, of which chosen ones fail.
class FaultySystemCalls final : public SystemCalls {
public:
    enum Kind { kOpen, kStatus, kRead, kWriteAt, kTruncate, kClose };

    /// Makes the n-th call of a kind (from 1, counted from the beginning) fail with an errno.
    void FailAt(Kind kind, int n, int error) { faults_[{kind, n}] = error; }

    std::size_t mostAtOnce = static_cast<std::size_t>(-1); ///< bytes of one read or write
    std::map<Kind, int> calls;                             ///< so many were made
    int openFiles = 0;                                     ///< opened and not closed again

    int Open(const std::string& path, int flags, mode_t mode) override {
        const int descriptor = Fails(kOpen) ? -1 : SystemCalls::Open(path, flags, mode);
        openFiles += descriptor >= 0 ? 1 : 0;
        return descriptor;
    }
    int Status(int descriptor, struct stat& status) override {
        return Fails(kStatus) ? -1 : SystemCalls::Status(descriptor, status);
    }
    ssize_t Read(int descriptor, void* bytes, std::size_t count) override {
        count = std::min(count, mostAtOnce);
        return Fails(kRead) ? -1 : SystemCalls::Read(descriptor, bytes, count);
    }
    ssize_t WriteAt(int descriptor, const void* bytes, std::size_t count, off_t offset) override {
        count = std::min(count, mostAtOnce);
        return Fails(kWriteAt) ? -1 : SystemCalls::WriteAt(descriptor, bytes, count, offset);
    }
    int Truncate(int descriptor, off_t size) override {
        return Fails(kTruncate) ? -1 : SystemCalls::Truncate(descriptor, size);
    }
    int Close(int descriptor) override {
        --openFiles; // a close that fails has closed the file all the same
        const int answer = SystemCalls::Close(descriptor);
        return Fails(kClose) ? -1 : answer;
    }

private:
    bool Fails(Kind kind) {
        const auto fault = faults_.find({kind, ++calls[kind]});
        errno = fault == faults_.end() ? errno : fault->second;
        return fault != faults_.end();
    }

    std::map<std::pair<Kind, int>, int> faults_;
};

/// While it lives, a process of the superuser, for whom no permission counts, is somebody else.
class Unprivileged {
public:
    Unprivileged();
    ~Unprivileged();
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;

private:
    bool changed_;
};

/// Extended attributes that files have on top of their real ones, by path (without "/" at its end)
/// and name: few file systems keep those by which shares and NTFS volumes tell DOS attributes.
std::map<std::pair<std::string, std::string>, std::string>& ExtendedAttributes();

} // namespace vexmarrow::test
