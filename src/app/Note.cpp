// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Note.h"

#include "app/Strings.h"

#include <QResizeEvent>

namespace vexmarrow {

WrappedLabel::WrappedLabel(QWidget* parent, std::u16string_view name) : QLabel(parent) {
    setObjectName(ToQString(name));
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
}

QSize WrappedLabel::minimumSizeHint() const {
    return {QLabel::minimumSizeHint().width(), heightForWidth(width())};
}

void WrappedLabel::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    if (event->size().width() != event->oldSize().width()) {
        updateGeometry();
    }
}

Note::Note(QWidget* parent, std::u16string_view name, QWidget* control)
    : WrappedLabel(parent, name), control_(control) {
    setForegroundRole(QPalette::PlaceholderText); // which is readable on windows, too
    hide();
}

void Note::Say(std::u16string_view text) {
    const QString said = ToQString(text);
    if (said != this->text()) {
        setText(said);
        control_->setAccessibleDescription(said);
        setVisible(!said.isEmpty());
    }
}

} // namespace vexmarrow
