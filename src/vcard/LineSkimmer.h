// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/CardStack.h"
#include "vcard/Pairs.h"
#include "vcard/PhysicalLine.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace vexmarrow::vcard {

/// Skims over lines that need no closer look, because each is a logical line of its own that is
/// read as it lies and in which nothing is found. They are most lines of most files, so this
/// decides how fast a run is.
class LineSkimmer {
public:
    /// `inBytes` tells that what is found in bytes is found in their text: they are UTF-8, or only
    /// ASCII is looked for. That is not so of values with a charset of their own, which there are
    /// unless `hasMark`.
    LineSkimmer(CardStack& cards, const PairFinder* finder, bool inBytes, bool hasMark)
        : cards_(cards), finder_(finder), inBytes_(inBytes), hasMark_(hasMark) {}

    /// The length of such lines at the beginning of a window, where a logical line begins. Cards
    /// that begin or end in them have begun or ended then. `position` is that of the window in the
    /// text. `isAfterEmptyAgent` is what the line before has been, and after it what the last one
    /// of these is.
    std::size_t Skim(const Window& window, std::uint64_t position, bool& isAfterEmptyAgent);

private:
    struct Line;

    bool FindPlaces(std::string_view window, std::uint64_t position);
    bool IsPlainAt(std::string_view window, Line& line, std::size_t at) const;
    bool EndsPlain(const Window& window, std::uint64_t position, Line& line);
    bool IsAfterEmptyAgent(std::string_view window, const Line& line);
    std::size_t Leave(std::string_view window, Line line, bool isKnown, bool& isAfterEmptyAgent);

    CardStack& cards_;
    const PairFinder* finder_;
    bool inBytes_;
    bool hasMark_;
    std::vector<std::size_t> places_; // of what was found, from searchedFrom_ on
    std::size_t nextPlace_ = 0;
    std::uint64_t searchedFrom_ = 0; // positions in the text
    std::uint64_t searchedTo_ = 0;
};

} // namespace vexmarrow::vcard
