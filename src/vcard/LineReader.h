// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/CardStack.h"
#include "vcard/PhysicalLine.h"
#include "vcard/RawLine.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vexmarrow::vcard {

class Charsets;
class LineSkimmer;
class TextSource;

/// Cuts the text of a file into logical lines. Values that are not searched come in parts of any
/// size, after their headers. Very long lines come in parts too: the caller works on as much of a
/// line as it can, and gets the rest next.
class LineReader {
public:
    /// With `hasMark`, the mark decides about the charset of the text, and a charset that a line
    /// names counts for coded values only. `text` and `charsets` must outlive the reader.
    LineReader(TextSource& text, Charsets& charsets, bool hasMark)
        : text_(text), charsets_(charsets), hasMark_(hasMark) {}

    /// Returns the next lines that `skimmer` skims over; empty if there are none. The skimmer must
    /// use the cards of this reader.
    std::string_view Skim(LineSkimmer& skimmer);

    /// Reads the next line or part of one; false at the end of the text. The line is valid until
    /// the next call of Skim or Next.
    bool Next(RawLine& line);

    /// The caller has cut the line that Next returned: its rest comes next.
    void ContinueAfter(const RawLine& part);

    /// Reads `raw` as if it stood in the place of `before`, the line that Next returned, without
    /// its line end. `line` gets the result. Returns false if `raw` would not be read as exactly
    /// one line of the same kind as `before`, or if it would change how a neighbouring line is
    /// read.
    bool ReadAgain(std::string_view raw, const RawLine& before, RawLine& line) const;

    CardStack& Cards() { return cards_; }

private:
    void SkipShown();
    bool Scan(const Window& window, RawLine& line);
    void TakeFrame(Frame frame, const PhysicalLine& first, RawLine& line);
    bool TouchesNeighbours(const RawLine& before, const RawLine& line) const;

    TextSource& text_;
    Charsets& charsets_;
    bool hasMark_;
    CardStack cards_;
    bool wasEmptyAgent_ = false; // the line before
    bool wasBase64_ = false;     // likewise
    std::string_view window_;    // begins with the line that was returned last
    std::uint64_t position_ = 0; // of the window in the text
    std::size_t shown_ = 0;      // bytes that were returned and are skipped before the next ones
    bool isWithin_ = false;      // the next part continues a line
    bool isWithinUnsearched_ = false; // it continues a value that is not searched
    LineContext context_;             // of that line
};

} // namespace vexmarrow::vcard
