// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/SystemCalls.h"

namespace vexmarrow {

/// Owns an open file and closes it. The destructor ignores whether closing succeeds, which is fine
/// for a file that was only read.
class Descriptor {
public:
    explicit Descriptor(SystemCalls& calls, int number = -1) : calls_(&calls), number_(number) {}
    ~Descriptor() { Close(); }
    Descriptor(Descriptor&& other) noexcept : calls_(other.calls_), number_(other.number_) {
        other.number_ = -1;
    }
    Descriptor& operator=(Descriptor&& other) noexcept {
        Close();
        calls_ = other.calls_;
        number_ = other.number_;
        other.number_ = -1;
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Number() const { return number_; }
    bool IsOpen() const { return number_ >= 0; }

    /// Closes the file if it is open. Returns what the system call returned.
    int Close() {
        if (number_ < 0) {
            return 0;
        }
        const int number = number_;
        number_ = -1;
        return calls_->Close(number);
    }

private:
    SystemCalls* calls_;
    int number_;
};

} // namespace vexmarrow
