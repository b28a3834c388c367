// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/Gram.h"
#include "engine/UnitFrequency.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// Counts the grams of a sample text, in order to estimate how common they are in other texts.
template <typename Unit>
class GramFrequencies {
public:
    using View = std::basic_string_view<Unit>;

    explicit GramFrequencies(View text)
        : size_(static_cast<double>(text.size())),
          bits_(std::clamp(static_cast<int>(std::bit_width(text.size())), 4, 18)),
          counts_(kWidestGram<Unit> << bits_) {
        for (std::size_t width = 1; width <= kWidestGram<Unit>; ++width) {
            for (std::size_t at = 0; at + width <= text.size(); ++at) {
                ++counts_[Index(text.substr(at, width))];
            }
        }
    }

    /// The estimated probability of a gram of at most kWidestGram units at a given place.
    double Chance(View gram) const {
        double guess = 1;
        for (const Unit unit : gram) {
            guess *= UnitFrequency(unit);
        }
        constexpr double kTrust = 500; // the weight of the guess, in units of text
        return (counts_[Index(gram)] + kTrust * guess) / (size_ + kTrust);
    }

private:
    /// Different grams may share a count; then they only seem more common.
    std::size_t Index(View gram) const {
        return ((gram.size() - 1) << bits_) + (MixedGram(GramOf(gram)) >> (64 - bits_));
    }

    double size_;
    int bits_;
    std::vector<std::uint32_t> counts_;
};

} // namespace vexmarrow
