// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/LinesEdit.h"

#include "app/Strings.h"
#include "base/Text.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QTextDocument>

#include <array>

namespace vexmarrow {
namespace {

/// Characters that a text document would take for the end of a line when they are inserted, and
/// the noncharacters (never part of real text) that stand for them inside the document.
struct Shelter {
    QChar character;
    QChar inside;
};
constexpr std::array kShelters{
    Shelter{QChar(0x2029), QChar(0xFDD2)}, // paragraph separator
    Shelter{QChar(0xFDD0), QChar(0xFDD3)},
    Shelter{QChar(0xFDD1), QChar(0xFDD4)},
};

QString Sheltered(QString text) {
    for (const Shelter& shelter : kShelters) {
        text.replace(shelter.character, shelter.inside);
    }
    return text;
}

} // namespace

LinesEdit::LinesEdit(QWidget* parent) : QPlainTextEdit(parent) {
    setTabChangesFocus(true);
    setLineWrapMode(QPlainTextEdit::NoWrap);
}

std::u16string LinesEdit::Text() const {
    // The raw text: the plain one turns no-break spaces into blanks. Its lines end in U+2029.
    QString text = document()->toRawText();
    text.replace(QChar(QChar::ParagraphSeparator), ToQString(kCrLf));
    for (const Shelter& shelter : kShelters) {
        text.replace(shelter.inside, shelter.character);
    }
    return ToText(text);
}

void LinesEdit::SetText(std::u16string_view text) {
    setPlainText(Sheltered(ToQString(text)));
}

QSize LinesEdit::sizeHint() const {
    constexpr int kLines = 5;
    return {QPlainTextEdit::sizeHint().width(), fontMetrics().lineSpacing() * kLines};
}

void LinesEdit::keyPressEvent(QKeyEvent* event) {
    // Shift+Enter would insert U+2028, which looks like a new line and is none.
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
