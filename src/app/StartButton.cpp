// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/StartButton.h"

#include "app/Colours.h"

#include <QPainter>
#include <QStyleOptionButton>

namespace vexmarrow {

StartButton::StartButton(QWidget* parent) : QPushButton(parent) {
    QFont letters = font();
    letters.setBold(true);
    setFont(letters);
    setAttribute(Qt::WA_Hover);
}

void StartButton::paintEvent(QPaintEvent* event) {
    if (testAttribute(Qt::WA_StyleSheetTarget)) {
        QPushButton::paintEvent(event);
        return;
    }
    constexpr int kHoverPercent = 108;
    constexpr int kDownPercent = 115;
    constexpr double kCornerRadius = 3; // pixels
    QStyleOptionButton option;
    initStyleOption(&option);
    const QColor caption = option.palette.color(QPalette::HighlightedText);
    const QColor away = TextColourOn(caption);
    // The palette may be one that OutlinedStyle has not polished.
    QColor face =
        VisibleColour(option.palette.color(QPalette::Highlight), away, {caption}, kMinTextContrast);
    if (option.state.testFlag(QStyle::State_Sunken)) {
        face = away == Qt::black ? face.darker(kDownPercent) : face.lighter(kDownPercent);
    } else if (option.state.testFlag(QStyle::State_MouseOver)) {
        face = away == Qt::black ? face.darker(kHoverPercent) : face.lighter(kHoverPercent);
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF place = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setBrush(face);
    painter.setPen(OutlineColour(option.palette));
    painter.drawRoundedRect(place, kCornerRadius, kCornerRadius);
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        constexpr double kInset = 4;
        constexpr double kWidth = 2;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(caption, kWidth));
        painter.drawRoundedRect(place.adjusted(kInset, kInset, -kInset, -kInset), kCornerRadius,
                                kCornerRadius);
    }
    QPalette colours = option.palette;
    colours.setColor(QPalette::ButtonText, caption);
    style()->drawItemText(&painter, rect(), Qt::AlignCenter | Qt::TextShowMnemonic, colours, true,
                          text(), QPalette::ButtonText);
}

} // namespace vexmarrow
