// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string_view>

namespace vexmarrow {

// What a file begins with to say how its bytes stand for characters.
inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
inline constexpr std::string_view kUtf16Mark = "\xFF\xFE"; // low byte first
inline constexpr std::size_t kLongestMark = 4;             // bytes

/// How the bytes of a file stand for characters.
enum class TextFormat {
    Ansi,  ///< the code page
    Utf16, ///< low byte first, after a mark of two bytes or without one
    Utf8,  ///< after a mark of three bytes; without one, it is a code page
};

/// The marks by which files tell their encoding; Unicode is any of UTF-16 or UTF-32.
enum class Mark { None, Utf8, Unicode };

/// The mark that a file begins with, of which the first kLongestMark bytes are enough.
Mark MarkOf(std::string_view firstBytes);

} // namespace vexmarrow
