// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string_view>

namespace vexmarrow::vcard {

/// The first CR or LF from a place on; npos when there is none.
std::size_t FindLineEnd(std::string_view window, std::size_t from);

/// The number of bytes of the line end that text begins with: CR CR LF, CR LF, LF or CR.
inline std::size_t LengthOfLineEnd(std::string_view text) {
    return text.starts_with("\r\r\n") ? 3 : text.starts_with("\r\n") ? 2 : 1;
}
inline constexpr std::size_t kLongestLineEnd = 3;

/// Where in a window a physical line begins, its line end begins, and the next line begins.
struct PhysicalLine {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t next = 0;

    std::string_view In(std::string_view window) const { return window.substr(begin, end - begin); }

    /// Finds the line that begins at a place. False if the window ends before that can be told;
    /// with `atEnd`, the text ends there.
    bool Find(std::string_view window, bool atEnd, std::size_t from);
};

} // namespace vexmarrow::vcard
