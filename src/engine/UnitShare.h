// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <string_view>
#include <type_traits>

namespace vexmarrow {

/// The shares that UnitShare tells, by character of ASCII.
constexpr std::array<double, 128> kAsciiShares = [] {
    constexpr std::u32string_view kCommonestFirst =
        U"eanirot:10s;lE2T=.dLCAR3cmNhu5-4ODI679g8\r\nPpSMBHkbVyFvGYU@w,fWKzJ+xj/XZqQ_'\"&()!?*#%";
    std::array<double, 128> shares{};
    shares.fill(0.002);
    double rank = 6;
    for (const char32_t character : kCommonestFirst) {
        shares[character] = 0.3 / rank++;
    }
    shares[U' '] = 0.06;
    return shares;
}();

/// Roughly which share of an address book's text consists of this unit. It only guides the choice
/// of what to look for first; a wrong guess costs time and nothing else.
template <typename Unit>
double UnitShare(Unit unit) {
    constexpr double kOutsideAscii = 0.006;
    // In UTF-8 these begin all characters of a script: the others are the better choice.
    constexpr double kFirstOfSeveral = 0.007;
    const auto value = static_cast<char32_t>(std::make_unsigned_t<Unit>(unit));
    if (value < kAsciiShares.size()) {
        return kAsciiShares[value];
    }
    return sizeof(Unit) == 1 && value >= 0xC0 ? kFirstOfSeveral : kOutsideAscii;
}

} // namespace vexmarrow
