// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/OutlinedStyle.h"

#include <QPainter>
#include <QPalette>
#include <QStyleOption>

namespace vexmarrow {
namespace {

bool IsBlackGround(const QPalette& colours) {
    constexpr int kLeastValue = 24; // of 255: darker ground has no visible shade
    return colours.color(QPalette::Window).value() < kLeastValue;
}

/// Draws an outline around what a style has drawn.
template <typename Draw>
void Outline(const QStyleOption& option, QPainter& painter, Draw draw) {
    if (!IsBlackGround(option.palette)) {
        return; // the colours have changed since
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const bool focus = option.state.testFlag(QStyle::State_HasFocus);
    painter.setPen(option.palette.color(focus ? QPalette::Highlight : QPalette::WindowText));
    draw(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5));
    painter.restore();
}

} // namespace

OutlinedStyle::OutlinedStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

bool OutlinedStyle::IsNeeded(const QStyle& style, const QPalette& colours) {
    if (!IsBlackGround(colours) || qobject_cast<const OutlinedStyle*>(&style) != nullptr) {
        return false;
    }
    const QStyle* base = &style; // desktops have it wrapped in a style of theirs
    while (const auto* const proxy = qobject_cast<const QProxyStyle*>(base)) {
        base = proxy->baseStyle();
    }
    return base->inherits("QFusionStyle");
}

void OutlinedStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                  QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    switch (element) {
    case PE_IndicatorRadioButton:
        Outline(*option, *painter, [&](const QRectF& place) { painter->drawEllipse(place); });
        break;
    case PE_IndicatorCheckBox:
    case PE_Frame:
    case PE_FrameLineEdit:
    case PE_FrameTabWidget:
    case PE_PanelButtonCommand:
        Outline(*option, *painter, [&](const QRectF& place) { painter->drawRect(place); });
        break;
    default:
        break;
    }
}

void OutlinedStyle::drawControl(ControlElement element, const QStyleOption* option,
                                QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_ProgressBarContents || element == CE_TabBarTabShape ||
        element == CE_HeaderSection) {
        Outline(*option, *painter, [&](const QRectF& place) { painter->drawRect(place); });
    }
}

void OutlinedStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                       QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    const SubControl part = control == CC_ScrollBar  ? SC_ScrollBarSlider
                            : control == CC_GroupBox ? SC_GroupBoxFrame
                                                     : SC_None;
    if (part != SC_None) {
        QRectF place = proxy()->subControlRect(control, option, part, widget);
        if (control == CC_GroupBox) { // the title stands above
            place.setTop(subControlRect(control, option, SC_GroupBoxLabel, widget).bottom() + 1);
        }
        Outline(*option, *painter,
                [&](const QRectF&) { painter->drawRect(place.adjusted(0.5, 0.5, -0.5, -0.5)); });
    } else if (control == CC_ComboBox) {
        Outline(*option, *painter, [&](const QRectF& place) { painter->drawRect(place); });
    }
}

} // namespace vexmarrow
