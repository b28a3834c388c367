// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace vexmarrow {

/// Asks the processor to fetch the text some way after a place. It does so by itself, but stops
/// while what was found is being copied, and at each page of memory.
template <typename Unit>
void ReadAhead(std::basic_string_view<Unit> text, std::size_t place) {
    constexpr std::size_t kDistance = 4096 / sizeof(Unit);
    __builtin_prefetch(text.data() + std::min(place + kDistance, text.size()));
}

} // namespace vexmarrow
