// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/ShownText.h"

#include "app/Strings.h"
#include "base/Text.h"

#include <QFontMetrics>
#include <QLocale>

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

bool IsWithinPair(std::u16string_view text, std::size_t at) {
    return QChar::isHighSurrogate(text[at - 1]) && QChar::isLowSurrogate(text[at]);
}

/// The length of the first part of a text after which a line may end: after a blank or "/", or
/// inside a long word, but not inside a character.
qsizetype LengthOfPart(QStringView text) {
    constexpr qsizetype kLongWord = 30;
    const auto mayEndAfter = [text](qsizetype i) {
        const QChar next = text[i + 1];
        return text[i] == u' ' || text[i] == u'/' ||
               (i + 1 >= kLongWord && !next.isLowSurrogate() && !next.isMark());
    };
    qsizetype last = 0;
    while (last + 1 < text.size() && !mayEndAfter(last)) {
        ++last;
    }
    return qMin(last + 1, text.size());
}

} // namespace

std::u16string Shortened(std::u16string_view text, std::size_t most) {
    constexpr std::u16string_view kEllipsis = u"\u2026";
    if (text.size() <= most) {
        return std::u16string(text);
    }
    const std::size_t kept = most - kEllipsis.size();
    std::size_t head = kept - kept / 2;
    std::size_t tail = text.size() - kept / 2;
    head -= IsWithinPair(text, head) ? 1 : 0;
    tail += IsWithinPair(text, tail) ? 1 : 0;
    return Concat(text.substr(0, head), kEllipsis, text.substr(tail));
}

QString ShownInOneLine(std::u16string_view text, std::size_t most) {
    constexpr char16_t kControlPictures = 0x2400;
    constexpr char16_t kPictureOfDelete = 0x2421;
    QString shown = ToQString(Shortened(text, most));
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

QString InLines(const QString& text, const QFontMetrics& metrics, int widest) {
    QString lines;
    QString line;
    for (QStringView rest(text); !rest.isEmpty();) {
        const QString part = rest.first(LengthOfPart(rest)).toString();
        if (!line.isEmpty() && metrics.horizontalAdvance(line + part) > widest) {
            lines += line + u'\n';
            line.clear();
        }
        line += part;
        rest = rest.sliced(part.size());
    }
    return lines + line;
}

QString CountOf(std::size_t count, std::u16string_view one) {
    const QString number = count == 0 ? QStringLiteral("No") : QLocale().toString(count);
    return number + u' ' + ToQString(one) + (count == 1 ? QString() : QStringLiteral("s"));
}

QString ShownAsText(std::u16string_view text) {
    QString shown = ToQString(text);
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    shown.replace(u'\r', u'\n');
    MarkLoneSurrogates(shown);
    return shown;
}

} // namespace vexmarrow
