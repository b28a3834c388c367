// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <cstddef>
#include <string>
#include <string_view>

class QFontMetrics;

namespace vexmarrow {

// Texts as they are shown to the user. They are never converted back.

/// Cuts a text that has more than `most` (at least 3) 16-bit characters in its middle: returns its
/// beginning, an ellipsis and its end, together `most` characters, or up to two fewer to keep
/// surrogate pairs whole. The toolkit takes minutes to lay out a line of millions of characters, or
/// crashes.
std::u16string Shortened(std::u16string_view text, std::size_t most);

/// More characters than fit in a row of any window.
constexpr std::size_t kMostInRow = 1'000;

/// A text in one line, Shortened to `most`. ASCII control characters become their pictures. Other
/// control characters and lone surrogates (stray bytes of a file name) become U+FFFD.
QString ShownInOneLine(std::u16string_view text, std::size_t most);

/// A text in several lines: CR LF and a lone CR become line ends, lone surrogates become U+FFFD.
QString ShownAsText(std::u16string_view text);

/// Inserts line ends after blanks and "/" so that no line is wider than `widest` pixels. Very long
/// words are broken.
QString InLines(const QString& text, const QFontMetrics& metrics, int widest);

/// A number of things in words: "No sets", "1 set" or "1,000 sets". `one` is the name of a thing in
/// the singular. Numbers are written as in the user's language.
QString CountOf(std::size_t count, std::u16string_view one);

} // namespace vexmarrow
