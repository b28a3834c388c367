// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/FrameLine.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace vexmarrow::vcard {

/// How the value of a line is written.
enum class Coding { Plain, QuotedPrintable, Base64 };

/// What a logical line says before its separating colon.
struct Header {
    static constexpr std::size_t kNone = std::string_view::npos;

    /// Where the separating colon is; kNone for a line that is not `[group.]name[;...]:`.
    std::size_t colon = kNone;
    bool isAgent = false;
    bool mayBeBinary = false; ///< a picture, sound or key: may be base64 without saying so
    Coding coding = Coding::Plain;
    bool hasCharset = false;
    std::string charset; ///< as the line names it

    /// The line begins like one with a header, but the colon is missing.
    bool isUnfinished = false;

    /// A quote is open at the end of the line; the next physical line may close it.
    bool hasOpenQuote = false;
};

/// Reads the header at the beginning of a line without folds.
Header ReadHeader(std::string_view line, Version version);

/// Whether a logical line is an AGENT without a value: the next card lies inside its card.
bool IsEmptyAgent(std::string_view line, const Header& header);

} // namespace vexmarrow::vcard
