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

/// The number of units of a logical line that are worked on at once.
inline constexpr std::size_t kMostUnits = 1'048'576;

class LineDecoder {
public:
    explicit LineDecoder(const FileCharsets& charsets) : charsets_(charsets) {}

    /// Cuts a very long line, between units, to little more than is worked on at once: the rest
    /// need not be decoded yet.
    static void Shorten(RawLine& line);

    /// Decodes at least the first `most` units of a line.
    void Decode(const RawLine& line, LineText& text, std::size_t most);

    /// Cuts a longer text to its first kMostUnits units, and `line` to the bytes of these.
    void Cut(RawLine& line, LineText& text);

    /// Makes LineText::InJoined known for the text.
    void Locate(const RawLine& line, LineText& text);

private:
    /// In a file with a mark, a run of uncoded characters inside a coded value. It is in the file's
    /// encoding and is decoded separately.
    struct RawRun {
        std::size_t at = 0;    // how many coded bytes precede it
        std::size_t begin = 0; // in the joined line
        std::size_t end = 0;
    };

    bool IsAllUtf8(std::string_view header, const LineText& text) const;
    void DecodeCoded(std::string_view joined, LineText& text);
    void Uncode(std::string_view joined, std::size_t value);
    void AddBytes(std::string_view bytes, std::size_t place);
    const Charset* CharsetOfCoded(bool isWhole) const;

    FileCharsets charsets_;
    std::string bytes_;                 // the bytes that a coded value stands for
    std::vector<std::uint32_t> places_; // their places in the joined line, if needed
    bool needsPlaces_ = false;
    std::size_t most_ = 0; // how many units to decode
    std::vector<RawRun> rawRuns_;
    DecodedText run_;
};

} // namespace vexmarrow::vcard
