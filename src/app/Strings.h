// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QFontMetrics;

#include <cstddef>
#include <string>
#include <string_view>

namespace vexmarrow {

// The border between the window's strings and the texts of everything below it. Both are 16-bit
// characters, and both ways keep every one of them.

inline QString ToQString(std::u16string_view text) {
    return QString(reinterpret_cast<const QChar*>(text.data()),
                   static_cast<qsizetype>(text.size()));
}
inline std::u16string ToText(const QString& string) {
    return string.toStdU16String();
}

// How texts are shown. Neither form is ever read back.

/// The text, cut in its middle where it has more than `most` (at least 3) 16-bit characters: its
/// beginning, an ellipsis and its end, together `most` or, where a pair of surrogates stays whole,
/// one or two less. The toolkit takes minutes to lay out a line of millions, or ends the program.
std::u16string Shortened(std::u16string_view text, std::size_t most);

/// In one line, Shortened to `most`: ASCII control characters as their pictures, and the
/// replacement mark for others and for what is no character (the stray bytes of a file name).
QString ShownInOneLine(std::u16string_view text, std::size_t most);

/// With line ends after blanks and "/" where a line would be wider than `widest` pixels. Very long
/// words are broken.
QString InLines(const QString& text, const QFontMetrics& metrics, int widest);

/// How many there are of something, whose name is given in the singular: "No sets", "1 set", and
/// more as the user's language writes numbers.
QString CountOf(std::size_t count, std::u16string_view one);

/// As text: CR LF and lone CR as line ends, and the replacement mark as above.
QString ShownAsText(std::u16string_view text);

} // namespace vexmarrow
