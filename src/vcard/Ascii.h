// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <string_view>

namespace vexmarrow::vcard {

constexpr bool IsBlank(char byte) {
    return byte == ' ' || byte == '\t';
}

constexpr bool BeginsWithBlank(std::string_view text) {
    return !text.empty() && IsBlank(text.front());
}

constexpr char InLower(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
}

constexpr bool IsLetterOrDigit(char byte) {
    const char letter = InLower(byte);
    return (letter >= 'a' && letter <= 'z') || (byte >= '0' && byte <= '9');
}

/// The value of a hexadecimal digit in either case; -1 for any other byte.
constexpr int HexDigit(char byte) {
    const char letter = InLower(byte);
    return letter >= '0' && letter <= '9'   ? letter - '0'
           : letter >= 'a' && letter <= 'f' ? letter - 'a' + 10
                                            : -1;
}

inline std::string_view WithoutBlanksAtEnd(std::string_view text) {
    while (!text.empty() && IsBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// The text without blanks at both ends.
inline std::string_view WithoutBlanks(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    return WithoutBlanksAtEnd(text);
}

/// Whether `text` begins with a word, or is one, in any case. `word` is in lower case.
inline bool BeginsWithWord(std::string_view text, std::string_view word) {
    return text.size() >= word.size() &&
           std::equal(word.begin(), word.end(), text.begin(),
                      [](char expected, char byte) { return InLower(byte) == expected; });
}

inline bool IsWord(std::string_view text, std::string_view word) {
    return text.size() == word.size() && BeginsWithWord(text, word);
}

} // namespace vexmarrow::vcard
