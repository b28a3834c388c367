// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace vexmarrow {

/// A gram is a few successive units, at most eight bytes, as a number.
using Gram = std::uint64_t;
template <typename Unit>
constexpr std::size_t kWidestGram = sizeof(Unit) == 1 ? 6 : 4;

template <typename Unit>
constexpr int BitsBeside(std::size_t width) {
    return static_cast<int>(8 * (sizeof(Gram) - width * sizeof(Unit)));
}

constexpr bool kLowByteFirst = std::endian::native == std::endian::little;

/// The gram at the beginning of eight bytes. `bitsBeside` is the size of the rest in bits.
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

} // namespace vexmarrow
