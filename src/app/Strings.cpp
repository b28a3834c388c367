// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Strings.h"

namespace vexmarrow {
namespace {

void MarkLoneSurrogates(QString& string) {
    for (qsizetype i = 0; i < string.size(); ++i) {
        const bool pair =
            string[i].isHighSurrogate() && i + 1 < string.size() && string[i + 1].isLowSurrogate();
        if (pair) {
            ++i;
        } else if (string[i].isSurrogate()) {
            string[i] = QChar::ReplacementCharacter;
        }
    }
}

} // namespace

QString ShownInOneLine(std::u16string_view text) {
    constexpr char16_t kControlPictures = 0x2400;
    constexpr char16_t kPictureOfDelete = 0x2421;
    QString shown = ToQString(text);
    MarkLoneSurrogates(shown);
    for (QChar& character : shown) {
        const char16_t unit = character.unicode();
        if (unit < 0x20) {
            character = QChar(static_cast<char16_t>(kControlPictures + unit));
        } else if (unit == 0x7F) {
            character = QChar(kPictureOfDelete);
        } else if ((unit >= 0x80 && unit < 0xA0) || unit == QChar::LineSeparator ||
                   unit == QChar::ParagraphSeparator) {
            character = QChar::ReplacementCharacter;
        }
    }
    return shown;
}

QString ShownAsText(std::u16string_view text) {
    QString shown = ToQString(text);
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    shown.replace(u'\r', u'\n');
    MarkLoneSurrogates(shown);
    return shown;
}

} // namespace vexmarrow
