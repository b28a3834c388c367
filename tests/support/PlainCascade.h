// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/Cascade.h"

namespace vexmarrow::test {

/// The rule of a cascade in its plainest form: what one pair makes of a text.
template <typename Unit>
std::basic_string<Unit> PlainStep(const std::basic_string<Unit>& text,
                                  const BasicReplacementPair<Unit>& pair) {
    std::basic_string<Unit> made;
    std::size_t done = 0;
    if (!pair.find.empty()) {
        for (std::size_t at = 0; (at = text.find(pair.find, done)) != text.npos;) {
            made.append(text, done, at - done).append(pair.replace);
            done = at + pair.find.size();
        }
    }
    return made.append(text, done);
}

} // namespace vexmarrow::test
