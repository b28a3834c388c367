// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/FrameLine.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace vexmarrow::vcard {

/// How many bytes from BEGIN on must be in memory to begin a card, unless the text ends earlier.
inline constexpr std::size_t kLookForVersion = std::size_t{128} * 1024;

/// The cards that have begun and not ended, each inside the one before it.
class CardStack {
public:
    bool Any() const { return !open_.empty(); }

    // Of the innermost card.
    Version CardVersion() const { return open_.back().version; }
    std::size_t Number() const { return open_.back().number; }

    /// Begins the card at the beginning of `window`: inside the innermost one, or instead of all.
    void Begin(std::string_view window, bool isWithin);
    void End() { open_.pop_back(); }

private:
    struct Card {
        Version version = Version::Later;
        std::size_t number = 0;
    };
    std::vector<Card> open_;
    std::size_t begun_ = 0;
};

} // namespace vexmarrow::vcard
