// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/Charset.h"
#include "vcard/LineText.h"
#include "vcard/RawLine.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow::vcard {

/// Units of a logical line that are worked on at once.
inline constexpr std::size_t kMostUnits = 1'048'576;

/// Decodes logical lines.
class LineDecoder {
public:
    explicit LineDecoder(const FileCharsets& charsets) : charsets_(charsets) {}

    /// Leaves of a very long line what is worked on at once and a little more, up to where a unit
    /// begins: only that is to be decoded.
    static void Shorten(RawLine& line);

    /// Decodes a line, or at least its first `most` units.
    void Decode(const RawLine& line, LineText& text, std::size_t most);

    /// Cuts a line that is longer to its first kMostUnits units, and `line` to their bytes.
    void Cut(RawLine& line, LineText& text);

    /// Makes sure that the text knows where its units come from.
    void Locate(const RawLine& line, LineText& text);

private:
    /// A character of the file amid coded bytes, which is not decoded with them.
    struct RawRun {
        std::size_t at = 0;    // in bytes_
        std::size_t begin = 0; // in the joined line
        std::size_t end = 0;
    };

    bool IsAllUtf8(std::string_view header, const LineText& text) const;
    void DecodeCoded(std::string_view joined, LineText& text);
    void Uncode(std::string_view joined, std::size_t value);
    void AddBytes(std::string_view bytes, std::size_t place);
    const Charset* CharsetOfCoded(bool isWhole) const;

    FileCharsets charsets_;
    std::string bytes_;                 // of a coded value
    std::vector<std::uint32_t> places_; // of each in the joined line, where they are needed
    bool needsPlaces_ = false;
    std::size_t most_ = 0; // units to decode
    std::vector<RawRun> rawRuns_;
    DecodedText run_;
};

} // namespace vexmarrow::vcard
