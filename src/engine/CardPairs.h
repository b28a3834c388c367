// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/Cascade.h"
#include "engine/FindAny.h"
#include "engine/FindOne.h"
#include "vcard/Pairs.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// Pairs made ready for contact cards. Not for several threads at once.
class CardPairs final : private vcard::PairFinder {
public:
    explicit CardPairs(const std::vector<ReplacementPair>& pairs);
    CardPairs(const CardPairs&) = delete;
    CardPairs& operator=(const CardPairs&) = delete;
    ~CardPairs() override = default;

    const vcard::Pairs& Get() const { return pairs_; }

private:
    std::size_t FirstFound(std::string_view text, std::size_t least) const override;
    void FindPlaces(std::string_view text, std::vector<std::size_t>& places) const override;
    std::size_t FirstOfMany(std::string_view text, std::size_t least) const;

    vcard::Pairs pairs_;
    std::vector<FindOne<char>> finds_;
    FindAny<char> any_;                // where there are many
    std::vector<std::size_t> numbers_; // of those that it looks for
    bool anyHasLineEnd_ = false;       // so that it may be found across lines
    mutable std::vector<FindAny<char>::Hit> hits_;
};

} // namespace vexmarrow
