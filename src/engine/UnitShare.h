// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

namespace vexmarrow {

/// Roughly which share of an address book's text consists of this unit. It only guides the choice
/// of what to look for first; a wrong guess costs time and nothing else.
template <typename Unit>
double UnitShare(Unit unit) {
    constexpr std::u32string_view kCommonestFirst =
        U"eanirot:10s;lE2T=.dLCAR3cmNhu5-4ODI679g8\r\nPpSMBHkbVyFvGYU@w,fWKzJ+xj/XZqQ_'\"&()!?*#%";
    constexpr double kRare = 0.002;
    constexpr double kOutsideAscii = 0.006;
    if (unit == Unit{' '}) {
        return 0.06;
    }
    const auto value = static_cast<char32_t>(unit);
    if (value > 0x7F) { // also what a negative char becomes
        return kOutsideAscii;
    }
    const std::size_t rank = kCommonestFirst.find(value);
    return rank == std::u32string_view::npos ? kRare : 0.3 / static_cast<double>(rank + 6);
}

} // namespace vexmarrow
