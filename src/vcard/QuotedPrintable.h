// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/Ascii.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace vexmarrow::vcard {

/// Whether a code of quoted-printable, `=` and two hexadecimal digits, begins at a place.
constexpr bool IsCode(std::string_view text, std::size_t place) {
    return place + 2 < text.size() && text[place] == '=' && HexDigit(text[place + 1]) >= 0 &&
           HexDigit(text[place + 2]) >= 0;
}

/// The byte that the code at a place stands for.
constexpr char ByteOfCode(std::string_view text, std::size_t place) {
    return static_cast<char>(16 * HexDigit(text[place + 1]) + HexDigit(text[place + 2]));
}

inline void AppendCode(char byte, std::string& text) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(byte);
    text.push_back('=');
    text.push_back(kDigits[value / 16]);
    text.push_back(kDigits[value % 16]);
}

/// Where the soft break at the end of a physical line has its `=`, which only blanks may follow;
/// npos if the line does not end with a soft break.
inline std::size_t FindSoftBreak(std::string_view line) {
    line = WithoutBlanksAtEnd(line);
    return line.ends_with('=') ? line.size() - 1 : std::string_view::npos;
}

} // namespace vexmarrow::vcard
