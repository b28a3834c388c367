// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/WrappedCheckBox.h"

#include "app/Strings.h"

#include <QResizeEvent>
#include <QStyleOptionButton>

namespace vexmarrow {

WrappedCheckBox::WrappedCheckBox(QWidget* parent) : QCheckBox(parent) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize WrappedCheckBox::sizeHint() const {
    return {QCheckBox::sizeHint().width(), minimumSizeHint().height()};
}

QSize WrappedCheckBox::minimumSizeHint() const {
    constexpr int kCharacters = 20;
    QStyleOptionButton option;
    initStyleOption(&option);
    const QSize lines = fontMetrics().size(Qt::TextShowMnemonic, option.text);
    return {fontMetrics().averageCharWidth() * kCharacters,
            style()->sizeFromContents(QStyle::CT_CheckBox, &option, lines, this).height()};
}

void WrappedCheckBox::initStyleOption(QStyleOptionButton* option) const {
    QCheckBox::initStyleOption(option);
    if (testAttribute(Qt::WA_Resized)) { // else its width says nothing
        const QSize around = style()->sizeFromContents(QStyle::CT_CheckBox, option, {0, 0}, this);
        option->text = InLines(option->text, fontMetrics(), width() - around.width());
    }
}

void WrappedCheckBox::resizeEvent(QResizeEvent* event) {
    QCheckBox::resizeEvent(event);
    if (event->size().width() != event->oldSize().width()) {
        updateGeometry();
    }
}

} // namespace vexmarrow
