// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace vexmarrow {

/// Limits the estimated cost, in clock cycles, of a fast method that is slow for unusual input.
/// When it is spent, the plain method takes over, so the worst case is never much slower than that.
class Budget {
public:
    static constexpr std::size_t kUnlimited = static_cast<std::size_t>(-1);

    explicit Budget(std::size_t limit) : left_(limit) {}

    /// Subtracts a cost. Returns false when the budget is spent.
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
