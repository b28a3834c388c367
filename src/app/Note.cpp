// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Note.h"

#include "app/Strings.h"

namespace vexmarrow {

Note::Note(QWidget* parent, std::u16string_view name, QWidget* control)
    : WrappedLabel(parent, name), control_(control) {
    setForegroundRole(QPalette::PlaceholderText); // it is readable on windows, too
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
