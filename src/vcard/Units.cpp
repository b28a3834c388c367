// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/Units.h"

#include "base/Utf8.h"

#include <bit>

namespace vexmarrow::vcard {

// As in UTF-8, the number of leading ones of the first byte is the length, but up to seven: seven
// bytes hold any number of 32 bits.

Unit UnitAt(std::string_view text, std::size_t place) {
    const auto first = static_cast<std::uint8_t>(text[place]);
    if (first < 0x80) {
        return {first, 1};
    }
    const auto length = static_cast<std::uint8_t>(std::countl_one(first));
    char32_t value = first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        value = value << 6U | (static_cast<std::uint8_t>(text[place + i]) & 0x3FU);
    }
    return {value, length};
}

Unit Utf8UnitAt(std::string_view bytes, std::size_t place) {
    const auto first = static_cast<unsigned char>(bytes[place]);
    if (first < 0x80) {
        return {first, 1};
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (place + length <= bytes.size() && IsUtf8(bytes.substr(place, length))) {
        return UnitAt(bytes, place);
    }
    return {kStray + first, 1};
}

void AppendUnit(char32_t unit, std::string& text) {
    if (unit < 0x80) {
        text.push_back(static_cast<char>(unit));
        return;
    }
    const auto bits = static_cast<unsigned>(std::bit_width(static_cast<std::uint32_t>(unit)));
    const unsigned length = bits <= 11 ? 2 : (bits + 3) / 5; // 16, 21, 26, 31, 36 bits for 3 to 7
    const std::uint64_t wide = unit;
    text.push_back(static_cast<char>((0xFF00U >> length) | (wide >> (6 * (length - 1)))));
    for (unsigned left = length - 1; left > 0; --left) {
        text.push_back(static_cast<char>(0x80U | ((wide >> (6 * (left - 1))) & 0x3FU)));
    }
}

std::size_t LengthOfUnits(std::string_view text, std::size_t most) {
    if (text.size() <= most) {
        return text.size();
    }
    std::size_t length = 0;
    while (length < text.size() && (ContinuesUnit(text[length]) || most-- > 0)) {
        ++length;
    }
    return length;
}

} // namespace vexmarrow::vcard
