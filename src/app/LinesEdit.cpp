// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/LinesEdit.h"

#include "app/Strings.h"
#include "base/Text.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QTextDocument>

#include <algorithm>
#include <array>
#include <utility>

namespace vexmarrow {
namespace {

/// The characters that the toolkit's document would turn into line ends when they are inserted, and
/// the first half of their substitutes. The document contains two noncharacters for each of them.
constexpr QChar kFirstHalf(0xFDD2);
constexpr std::array kSheltered{QChar(0x2029), QChar(0xFDD0), QChar(0xFDD1), kFirstHalf};

QString SubstituteOf(QChar character) {
    constexpr char16_t kSecondHalves = 0xFDD3;
    const auto* const which = std::find(kSheltered.begin(), kSheltered.end(), character);
    const auto second = static_cast<char16_t>(kSecondHalves + (which - kSheltered.begin()));
    return QString(kFirstHalf) + QChar(second);
}

QString Sheltered(QString text) {
    // The first half must be replaced first, because all substitutes contain it.
    std::for_each(kSheltered.rbegin(), kSheltered.rend(),
                  [&](QChar each) { text.replace(each, SubstituteOf(each)); });
    return text;
}

QString Unsheltered(QString text) {
    for (const QChar each : kSheltered) {
        text.replace(SubstituteOf(each), QString(each));
    }
    return text;
}

} // namespace

LinesEdit::LinesEdit(QWidget* parent) : QPlainTextEdit(parent) {
    setTabChangesFocus(true);
    setLineWrapMode(QPlainTextEdit::NoWrap);
}

std::u16string LinesEdit::Text() const {
    // toPlainText() would turn no-break spaces into blanks. In the raw text, lines end in U+2029.
    QString text = document()->toRawText();
    text.replace(QChar(QChar::ParagraphSeparator), ToQString(kCrLf));
    return ToText(Unsheltered(std::move(text)));
}

void LinesEdit::SetText(std::u16string_view text) {
    setPlainText(Sheltered(ToQString(text)));
}

QSize LinesEdit::sizeHint() const {
    constexpr int kLines = 5;
    return {QPlainTextEdit::sizeHint().width(), fontMetrics().lineSpacing() * kLines};
}

QSize LinesEdit::minimumSizeHint() const {
    constexpr int kLines = 3;
    return {QPlainTextEdit::minimumSizeHint().width(), fontMetrics().lineSpacing() * kLines};
}

void LinesEdit::keyPressEvent(QKeyEvent* event) {
    // Shift+Enter would insert U+2028, which looks like the end of a line but is not one.
    if (event->matches(QKeySequence::InsertLineSeparator)) {
        textCursor().insertBlock();
        ensureCursorVisible();
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

void LinesEdit::insertFromMimeData(const QMimeData* source) {
    if (source->hasText()) {
        textCursor().insertText(Sheltered(source->text()));
        ensureCursorVisible();
    }
}

} // namespace vexmarrow
