// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/Cascade.h"
#include "engine/MultiFinder.h"
#include "engine/SingleFinder.h"
#include "vcard/Pairs.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// Pairs prepared for contact cards. One object must not be used by several threads at once.
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
    std::vector<SingleFinder<char>> finds_;
    MultiFinder<char> any_;            // used when there are many pairs
    std::vector<std::size_t> numbers_; // the pair numbers of the texts of any_
    bool anyHasLineEnd_ = false;       // a find text contains a line end
    mutable std::vector<MultiFinder<char>::Hit> hits_;
};

} // namespace vexmarrow
