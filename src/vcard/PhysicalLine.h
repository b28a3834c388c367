// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string_view>

namespace vexmarrow::vcard {

/// Text that is in memory, and whether the whole text ends with it.
struct Window {
    std::string_view text;
    bool isAtEnd = false;
};

/// Finds the first CR or LF from a place on; npos if there is none.
std::size_t FindLineEnd(std::string_view text, std::size_t from);

/// The number of bytes of the line end that text begins with: CR CR LF, CR LF, LF or CR.
inline std::size_t LengthOfLineEnd(std::string_view text) {
    return text.starts_with("\r\r\n") ? 3 : text.starts_with("\r\n") ? 2 : 1;
}
inline constexpr std::size_t kLongestLineEnd = 3;

/// Where a physical line begins, where its line end begins, and where the next line begins.
struct PhysicalLine {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t next = 0;

    std::string_view In(std::string_view text) const { return text.substr(begin, end - begin); }

    /// Finds the line that begins at `from`. False if the window ends too early to tell where the
    /// line ends; `next` is then the end of the window.
    bool Find(const Window& window, std::size_t from);
};

} // namespace vexmarrow::vcard
