// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/SystemCalls.h"

namespace vexmarrow {

/// An open file, closed without a look at the result when it goes out of scope (enough for one
/// that was read).
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

    /// Closes now, if it is open; returns the system's answer.
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
