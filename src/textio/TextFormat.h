// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string_view>

namespace vexmarrow {

// Byte-order marks: the first bytes of a file, which tell its encoding.
inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
inline constexpr std::string_view kUtf16Mark = "\xFF\xFE"; // low byte first
inline constexpr std::size_t kLongestMark = 4;             // bytes

/// How the bytes of a text file stand for characters.
enum class TextFormat {
    Ansi,  ///< the code page
    Utf16, ///< low byte first, with or without a mark
    Utf8,  ///< with a mark; UTF-8 without a mark is a code page
};

/// The mark of a file. Unicode is any mark of UTF-16 or UTF-32.
enum class Mark { None, Utf8, Unicode };

/// The mark that a file begins with. Its first kLongestMark bytes are enough to tell.
Mark MarkOf(std::string_view firstBytes);

} // namespace vexmarrow
