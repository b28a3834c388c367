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

/// Characters that a text document would take for the end of a line when they are inserted, and
/// the one that introduces their substitutes: a pair of noncharacters stands for each of them
/// inside the document.
constexpr std::array kSheltered{QChar(0x2029), QChar(0xFDD0), QChar(0xFDD1), QChar(0xFDD2)};
constexpr QChar kLead(0xFDD2);
constexpr char16_t kFirstSubstitute = 0xFDD3;

QString Sheltered(const QString& text) {
    QString sheltered;
    sheltered.reserve(text.size());
    for (const QChar character : text) {
        const auto* const found = std::find(kSheltered.begin(), kSheltered.end(), character);
        if (found == kSheltered.end()) {
            sheltered += character;
        } else {
            sheltered += kLead;
            sheltered +=
                QChar(static_cast<char16_t>(kFirstSubstitute + (found - kSheltered.begin())));
        }
    }
    return sheltered;
}

QString Unsheltered(QString text) {
    qsizetype end = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        QChar character = text[i];
        const int which = i + 1 < text.size() ? text[i + 1].unicode() - kFirstSubstitute : -1;
        if (character == kLead && which >= 0 && which < static_cast<int>(kSheltered.size())) {
            character = kSheltered[static_cast<std::size_t>(which)];
            ++i;
        }
        text[end++] = character;
    }
    text.truncate(end);
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
