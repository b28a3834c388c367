// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/WrappedControls.h"

#include "app/MakeControls.h"
#include "app/ShownText.h"

#include <QResizeEvent>
#include <QStyleOptionButton>

namespace vexmarrow {
namespace {

void FollowWidth(QWidget& control, const QResizeEvent& event) {
    if (event.size().width() != event.oldSize().width()) {
        control.updateGeometry();
    }
}

} // namespace

WrappedLabel::WrappedLabel(QWidget* parent, std::u16string_view name) : QLabel(parent) {
    SetName(this, name);
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
}

QSize WrappedLabel::minimumSizeHint() const {
    return {QLabel::minimumSizeHint().width(), heightForWidth(width())};
}

void WrappedLabel::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    FollowWidth(*this, *event);
}

WrappedCheckBox::WrappedCheckBox(QWidget* parent, std::u16string_view name) : QCheckBox(parent) {
    SetName(this, name);
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
    if (testAttribute(Qt::WA_Resized)) { // before, the width means nothing
        const QSize around = style()->sizeFromContents(QStyle::CT_CheckBox, option, {0, 0}, this);
        option->text = InLines(option->text, fontMetrics(), width() - around.width());
    }
}

void WrappedCheckBox::resizeEvent(QResizeEvent* event) {
    QCheckBox::resizeEvent(event);
    FollowWidth(*this, *event);
}

} // namespace vexmarrow
