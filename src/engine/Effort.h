// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace vexmarrow {

/// What a clever way may cost, in clock cycles as far as they can be guessed, before the plain way
/// takes over. So no text and no pairs make the clever way much slower than the plain one.
class Effort {
public:
    explicit Effort(std::size_t limit) : left_(limit) {}

    /// Counts a cost; false if that was too much.
    bool Spend(std::size_t cost) {
        left_ = cost < left_ ? left_ - cost : 0;
        return left_ != 0;
    }

    void Exhaust() { left_ = 0; }
    bool Exhausted() const { return left_ == 0; }

private:
    std::size_t left_;
};

} // namespace vexmarrow
