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

/// Skims over plain lines: each is a whole logical line, its bytes are its text, and it holds no
/// find text. Most lines of most files are plain, so the skimmer decides how fast a run is.
class LineSkimmer {
public:
    /// `finder` may be null: then nothing is found. `inBytes`: a search of the bytes finds what is
    /// in the text, because the file is UTF-8 or all find texts are ASCII. In files without a mark,
    /// this does not hold for values that name a charset. `cards` and `finder` must outlive the
    /// skimmer.
    LineSkimmer(CardStack& cards, const PairFinder* finder, bool inBytes, bool hasMark)
        : cards_(cards), finder_(finder), inBytes_(inBytes), hasMark_(hasMark) {}

    /// Returns the length in bytes of the plain lines that a window begins with, and begins and
    /// ends the cards in them. A logical line must begin with the window. `position` is that of the
    /// window in the text. `isAfterEmptyAgent` tells whether the line before the window is an empty
    /// AGENT, and is set to the same for the last plain line.
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
    std::vector<std::size_t> places_; // where find texts begin, from searchedFrom_ on
    std::size_t nextPlace_ = 0;
    std::uint64_t searchedFrom_ = 0; // positions in the text
    std::uint64_t searchedTo_ = 0;
};

} // namespace vexmarrow::vcard
