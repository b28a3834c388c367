// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/stat.h>
#include <sys/types.h>

namespace vexmarrow {

/// The system calls by which contents of files are read and written, each as the system has it:
/// the result and errno. Virtual so that a test can make any one of them fail; nothing else in the
/// program opens a file for its contents.
class SystemCalls {
public:
    virtual ~SystemCalls() = default;

    virtual int Open(const std::string& path, int flags, mode_t mode);
    virtual int Status(int descriptor, struct stat& status);
    virtual ssize_t Read(int descriptor, void* bytes, std::size_t count);
    virtual ssize_t WriteAt(int descriptor, const void* bytes, std::size_t count, off_t offset);
    virtual int Truncate(int descriptor, off_t size);
    virtual int Close(int descriptor);
    virtual int Unlink(const std::string& path);
};

/// An open file, closed without a look at the result when it goes out of scope (enough for one
/// that was read).
class Descriptor {
public:
    Descriptor(SystemCalls& calls, int number) : calls_(&calls), number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) {
            calls_->Close(number_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Number() const { return number_; }

    /// Closes now; returns the system's answer.
    int Close() {
        const int number = number_;
        number_ = -1;
        return calls_->Close(number);
    }

private:
    SystemCalls* calls_;
    int number_;
};

} // namespace vexmarrow
