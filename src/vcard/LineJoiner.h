// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/PhysicalLine.h"
#include "vcard/RawLine.h"

#include <cstddef>

namespace vexmarrow::vcard {

class Charsets;

/// The size in bytes beyond which a logical line comes in parts.
inline constexpr std::size_t kLongestPart = std::size_t{5} * 1024 * 1024;

/// Finds a physical line; one that is longer than a part ends with the window. False if the window
/// ends before the line.
bool FindBeginning(const Window& window, std::size_t from, PhysicalLine& line);

/// What joins a physical line to the next one. Unknown: the window ends before that can be told.
enum class Link { None, Fold, SoftBreak, Base64, Unknown };
Link LinkAfter(const Window& window, const PhysicalLine& last, const LineContext& context);

/// Joins the physical lines of a logical line, and reads the header of the line.
class LineJoiner {
public:
    /// `line` says what kind of line is to be read, and gets the result. All arguments must outlive
    /// the joiner. Without `hasLimits` the line comes as a whole, however long it is.
    LineJoiner(const Window& window, bool hasLimits, Charsets& charsets, bool hasMark,
               RawLine& line)
        : window_(window),
          hasLimits_(hasLimits),
          charsets_(charsets),
          hasMark_(hasMark),
          line_(line) {}

    /// Joins the physical lines from `first` on. If the value is not searched, the line ends for
    /// now with the separating colon. Returns false if the window is too short to decide.
    bool Join(const PhysicalLine& first);

private:
    bool LookForHeader();
    bool ReadHeaderSoFar();
    void TakeHeader();
    bool FindClosingQuote();
    bool LookIntoValue(std::size_t value);
    bool CollectLetters(std::size_t value, std::string& letters) const;
    void Add(Link link, PhysicalLine& next);
    void LeaveUnsearched();

    const Window& window_;
    bool hasLimits_;
    Charsets& charsets_;
    bool hasMark_;
    RawLine& line_;
    PhysicalLine last_;          // the last one that has been joined
    std::size_t lastAt_ = 0;     // where it begins in the joined line
    std::size_t quotedUpTo_ = 0; // the end of the physical line that closes an open quote
    bool mayHaveHeader_ = false;
};

} // namespace vexmarrow::vcard
