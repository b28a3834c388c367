// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vexmarrow::vcard {

// Whatever the encoding of its file, all text in this folder is spelled in the same way: like
// UTF-8, but with a spelling for every unit. A unit is a code point, half a code point (from
// UTF-16), or a number above U+10FFFF, which stands for no character. Find texts are never found
// inside the spelling of such a number.

/// The unit kStray + b stands for the stray byte b, which belongs to no character.
inline constexpr char32_t kStray = 0x110000;

/// A unit, and the number of bytes of its spelling.
struct Unit {
    char32_t value = 0;
    std::uint8_t length = 1;
};
/// The unit whose spelling begins at a place.
Unit UnitAt(std::string_view text, std::size_t place);

/// The code point at a place of UTF-8; a stray byte where the bytes are not well-formed.
Unit Utf8UnitAt(std::string_view bytes, std::size_t place);

void AppendUnit(char32_t unit, std::string& text);

/// Whether a byte is not the first one of a spelling.
constexpr bool ContinuesUnit(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
}

/// The length in bytes of the first `most` units of a text, or of the whole text if it has fewer.
std::size_t LengthOfUnits(std::string_view text, std::size_t most);

constexpr bool IsHighHalf(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLowHalf(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
constexpr char32_t JoinHalves(char32_t high, char32_t low) {
    return 0x10000 + ((high - 0xD800) << 10U) + (low - 0xDC00);
}
constexpr char32_t HighHalfOf(char32_t point) {
    return 0xD7C0 + (point >> 10U);
}
constexpr char32_t LowHalfOf(char32_t point) {
    return 0xDC00 + (point & 0x3FFU);
}

} // namespace vexmarrow::vcard
