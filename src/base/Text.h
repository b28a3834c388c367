// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// Joins texts. std::u16string has no operator+ for views.
template <typename... Parts>
std::u16string Concat(const Parts&... parts) {
    std::u16string all;
    all.reserve((std::u16string_view(parts).size() + ... + 0U));
    (all.append(std::u16string_view(parts)), ...);
    return all;
}

/// The text with A to Z in lower case. No other character changes.
std::u16string InLowerAscii(std::u16string_view text);

/// Whether a text is empty or holds nothing but blanks (U+0020).
bool IsBlank(std::u16string_view text);

/// The decimal digits of a number, without padding.
std::u16string Decimal(long long number);

/// A number followed by `one` if it is 1, else by `several`: "1 file is", "2 files are".
std::u16string Counted(std::size_t number, std::u16string_view one, std::u16string_view several);

/// The parts of `text` between the occurrences of `separator`, which must not be empty. There is
/// one part more than there are separators, so parts may be empty. An empty text has no parts.
std::vector<std::u16string_view> Split(std::u16string_view text, std::u16string_view separator);

inline constexpr std::u16string_view kCrLf = u"\r\n";

} // namespace vexmarrow
