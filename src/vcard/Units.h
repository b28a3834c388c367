// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vexmarrow::vcard {

// All text of this room is in one form, whatever the encoding of its file: UTF-8 in which every
// unit has a spelling of its own. A unit is a code point, half of one (from UTF-16), or something
// above U+10FFFF, which stands for no character: well-formed UTF-8 is never found in that.

/// What stands for the stray byte b is kStray + b.
inline constexpr char32_t kStray = 0x110000;

/// The unit that begins at a place, and the number of bytes of its spelling.
struct Unit {
    char32_t value = 0;
    std::uint8_t length = 1;
};
Unit UnitAt(std::string_view text, std::size_t place);

/// The code point of well-formed UTF-8 at a place; a stray byte where it is not.
Unit Utf8UnitAt(std::string_view bytes, std::size_t place);

/// Appends the spelling of a unit.
void AppendUnit(char32_t unit, std::string& text);

/// Whether a byte goes on with a unit that another byte begins.
constexpr bool ContinuesUnit(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
}

/// The number of bytes at the beginning of the text that spell `most` units, or all its bytes.
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
