// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow::vcard {

/// A find text and its replacement, spelled as all text of this folder (vcard/Units.h).
struct Pair {
    std::string find;
    std::string replace;      ///< line ends are written as `\n`
    std::string replaceCoded; ///< for coded values: line ends are CR LF
};

/// Looks for the find texts of an ordered list of pairs.
class PairFinder {
public:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    virtual ~PairFinder() = default;

    /// The lowest number, at least `least`, of a pair whose find text occurs in `text`, or kNone.
    virtual std::size_t FirstFound(std::string_view text, std::size_t least) const = 0;

    /// Appends, in ascending order, places where find texts begin in `text`: at least one for each
    /// line in which a find text occurs.
    virtual void FindPlaces(std::string_view text, std::vector<std::size_t>& places) const = 0;
};

/// The pairs of a run in their order, counted from 0, and the finder of their find texts.
struct Pairs {
    std::vector<Pair> list;
    const PairFinder* finder = nullptr;
    bool areFindsAscii = true; ///< all find texts are ASCII
    bool mayGrowLines = false; ///< some line may become longer, in some encoding
};

} // namespace vexmarrow::vcard
