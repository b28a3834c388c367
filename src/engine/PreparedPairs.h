// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/Cascade.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

class AnsiCodePage;

/// Find and replace texts that belong together by their numbers, made ready for many files.
class PreparedPairs {
public:
    /// Find text i goes with replace text i.
    PreparedPairs(std::span<const std::u16string> find, std::span<const std::u16string> replace);

    /// A sentence for each find text without a partner, which makes no pair.
    const std::vector<std::u16string>& Partnerless() const { return partnerless_; }

    /// Replaces characters.
    const BasicCascade<char16_t>& OfCharacters();

    /// Replaces the bytes of a text in the code page, with the same result as decoding it,
    /// replacing characters and encoding it again. Null when a text of a pair holds a character
    /// that the page lacks: a pair may insert one and a later pair find it.
    const BasicCascade<char>* OfBytes(const AnsiCodePage& ansi);

private:
    std::vector<ReplacementPair> pairs_;
    std::vector<std::u16string> partnerless_;
    std::optional<BasicCascade<char16_t>> ofCharacters_;
    std::optional<BasicCascade<char>> ofBytes_;
    bool askedForBytes_ = false;
    std::uint64_t codePage_ = 0; // the choice of the page that the bytes are of
};

} // namespace vexmarrow
