// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow::vcard {

/// What to find and what to put in its place, as text of this room (vcard/Units.h).
struct Pair {
    std::string find;
    std::string replace;      ///< a line end in it is `\n`
    std::string replaceCoded; ///< for quoted-printable, where it is CR LF
};

/// Looks for the find texts of an ordered list of pairs. Whoever makes one knows how to be quick.
class PairFinder {
public:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    virtual ~PairFinder() = default;

    /// The lowest number, at least `least`, of a pair whose find text occurs in `text`; kNone if
    /// there is none.
    virtual std::size_t FirstFound(std::string_view text, std::size_t least) const = 0;

    /// Appends places where find texts begin in `text`, in their order: at least one in each line
    /// of it in which one occurs.
    virtual void FindPlaces(std::string_view text, std::vector<std::size_t>& places) const = 0;
};

/// The pairs of a run, from 0 on in their order, and what looks for them.
struct Pairs {
    std::vector<Pair> list;
    const PairFinder* finder = nullptr;
    bool areFindsAscii = true; ///< all find texts are ASCII
    bool mayGrowLines = false; ///< a line may become longer, in whatever it is encoded
};

} // namespace vexmarrow::vcard
