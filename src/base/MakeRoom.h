// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace vexmarrow {

/// Makes sure that `count` more elements can be appended without asking for memory again, so that
/// a change that has been announced cannot fail half-way. Throws std::bad_alloc.
template <typename Value>
void MakeRoom(std::vector<Value>& values, std::size_t count) {
    const std::size_t needed = values.size() + count;
    if (values.capacity() < needed) {
        values.reserve(std::max(needed, values.capacity() * 2));
    }
}

} // namespace vexmarrow
