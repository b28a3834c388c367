// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/UnitShare.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// A few units in a row, of at most eight bytes, as a number; the same units make the same number.
using Gram = std::uint64_t;
template <typename Unit>
constexpr std::size_t kWidestGram = sizeof(Unit) == 1 ? 6 : 4;

template <typename Unit>
constexpr int BitsBeside(std::size_t width) {
    return static_cast<int>(8 * (sizeof(Gram) - width * sizeof(Unit)));
}

constexpr bool kLowByteFirst = std::endian::native == std::endian::little;

/// The gram at the beginning of eight bytes.
constexpr Gram TrimmedGram(Gram eightBytes, int bitsBeside) {
    return kLowByteFirst ? eightBytes << bitsBeside : eightBytes >> bitsBeside;
}

template <typename Unit>
Gram GramOf(std::basic_string_view<Unit> units) {
    Gram gram = 0;
    std::memcpy(&gram, units.data(), units.size() * sizeof(Unit));
    return TrimmedGram(gram, BitsBeside<Unit>(units.size()));
}

/// Mixes a gram so that its upper bits can be used as an index.
constexpr Gram kMixer = 0x9E3779B97F4A7C15U;
constexpr Gram MixedGram(Gram gram) {
    return gram * kMixer;
}

/// MixedGram(TrimmedGram(...)) in fewer steps.
constexpr Gram MixedGram(Gram eightBytes, int bitsBeside) {
    return kLowByteFirst ? eightBytes * (kMixer << bitsBeside)
                         : MixedGram(TrimmedGram(eightBytes, bitsBeside));
}

/// Counts the grams of some text, to guess how common they will be in other text.
template <typename Unit>
class TextSample {
public:
    using View = std::basic_string_view<Unit>;

    explicit TextSample(View text)
        : size_(static_cast<double>(text.size())),
          bits_(std::clamp(static_cast<int>(std::bit_width(text.size())), 4, 18)),
          counts_(kWidestGram<Unit> << bits_) {
        for (std::size_t width = 1; width <= kWidestGram<Unit>; ++width) {
            for (std::size_t at = 0; at + width <= text.size(); ++at) {
                ++counts_[Index(text.substr(at, width))];
            }
        }
    }

    /// About how often a gram of at most kWidestGram units stands at a place.
    double Chance(View gram) const {
        double guess = 1;
        for (const Unit unit : gram) {
            guess *= UnitShare(unit);
        }
        constexpr double kTrust = 500; // what a guess is worth, in units of text
        return (counts_[Index(gram)] + kTrust * guess) / (size_ + kTrust);
    }

private:
    /// Grams that share a count merely look more common.
    std::size_t Index(View gram) const {
        return ((gram.size() - 1) << bits_) + (MixedGram(GramOf(gram)) >> (64 - bits_));
    }

    double size_;
    int bits_;
    std::vector<std::uint32_t> counts_;
};

} // namespace vexmarrow
