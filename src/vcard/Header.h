// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vexmarrow::vcard {

/// The two families of versions: 3.0 and 4.0 are read alike.
enum class Version { TwoOne, Later };

/// How the value of a line is written.
enum class Coding { Plain, QuotedPrintable, Base64 };

/// What a logical line says of itself before its separating colon.
struct Header {
    static constexpr std::size_t kNone = std::string_view::npos;

    /// Where the separating colon is; kNone for a line that is not `[group.]name[;...]:`.
    std::size_t colon = kNone;
    bool isAgent = false;
    bool mayBeBinary = false; ///< a picture, sound or key: base64 even if it does not say so
    Coding coding = Coding::Plain;
    bool hasCharset = false;
    std::string charset; ///< as the line names it

    /// The line begins like one with a header, but the colon is missing.
    bool isUnfinished = false;

    /// A quote is open at the end of the line; what is folded to it may close it.
    bool hasOpenQuote = false;
};

/// Reads the header at the beginning of a line, of which folds are taken out already.
Header ReadHeader(std::string_view line, Version version);

/// Whether a value is a `data:` address in base64.
bool IsBase64Address(std::string_view value);

// The lines that hold cards together.

enum class Frame { None, Begin, End, Version };

/// What a physical line is, whatever stands around it.
Frame FrameOf(std::string_view line);

/// The version that a physical line of that kind names.
Version VersionOf(std::string_view line);

/// Whether there is nothing but letters of base64, at least one, and blanks at the end.
bool IsBase64Line(std::string_view line);
bool IsBase64Letter(char byte);

} // namespace vexmarrow::vcard
