// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/OutlinedStyle.h"

#include "app/Colours.h"

#include <QAbstractScrollArea>
#include <QPainter>
#include <QStyleOption>
#include <QTabBar>

#include <cmath>

namespace vexmarrow {
namespace {

// In pixels.
constexpr double kCornerRadius = 2;
constexpr int kFocusWidth = 2;

/// A pen whose lines cover whole pixels of the screen, even if a pixel of ours covers several.
QPen PenOf(const QColor& colour, double width, const QPainter& painter) {
    const double ratio = painter.device()->devicePixelRatioF();
    return {colour, std::ceil(width * ratio) / ratio};
}

/// The place of an outline of this width that lies wholly inside `place`.
QRectF Inside(const QRectF& place, double width) {
    return place.adjusted(width / 2, width / 2, -width / 2, -width / 2);
}

template <typename Draw>
void DrawWith(const QPen& pen, QPainter& painter, Draw draw) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(pen);
    draw();
    painter.restore();
}

enum class Shape { Box, Circle };

/// Draws the outline of a control over the drawing of the style, thicker if it has the focus.
void Outline(const QStyleOption& option, QPainter& painter, const QRectF& place,
             Shape shape = Shape::Box) {
    const bool focus = option.state.testFlag(QStyle::State_HasFocus) &&
                       option.state.testFlag(QStyle::State_Enabled);
    const QPen pen = focus ? PenOf(FocusColour(option.palette), kFocusWidth, painter)
                           : PenOf(OutlineColour(option.palette), 1, painter);
    const QRectF inside = Inside(place, pen.widthF());
    DrawWith(pen, painter, [&] {
        if (shape == Shape::Circle) {
            painter.drawEllipse(inside);
        } else {
            painter.drawRoundedRect(inside, kCornerRadius, kCornerRadius);
        }
    });
}

/// Draws the outline of the focus inside a larger control.
void OutlineFocus(const QStyleOption& option, QPainter& painter, const QRectF& place) {
    const QPen pen = PenOf(FocusColour(option.palette), 1, painter);
    DrawWith(pen, painter, [&] {
        painter.drawRoundedRect(Inside(place, pen.widthF()), kCornerRadius, kCornerRadius);
    });
}

void DrawGrip(const QStyleOption& option, QPainter& painter) {
    constexpr int kLength = 48;
    constexpr int kWidth = 3;
    const bool flat = option.rect.width() > option.rect.height();
    QRect grip(QPoint(0, 0), flat ? QSize(kLength, kWidth) : QSize(kWidth, kLength));
    grip.moveCenter(option.rect.center());
    painter.fillRect(grip, OutlineColour(option.palette));
}

/// Draws the outline of a tab, which is open towards its page.
void OutlineTab(const QStyleOptionTab& option, QPainter& painter) {
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const QPen pen = PenOf(OutlineColour(option.palette), 1, painter);
    QRectF place = Inside(option.rect, pen.widthF());
    if (!selected) {
        constexpr int kLower = 2; // than the selected tab
        place.setTop(place.top() + kLower);
    }
    DrawWith(pen, painter, [&] {
        painter.drawPolyline(
            QPolygonF{place.bottomLeft(), place.topLeft(), place.topRight(), place.bottomRight()});
    });
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        constexpr int kAround = 3;
        OutlineFocus(option, painter, option.rect.adjusted(kAround, kAround, -kAround, -kAround));
    }
}

} // namespace

OutlinedStyle::OutlinedStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

bool OutlinedStyle::IsNeededFor(const QStyle& style) {
    if (qobject_cast<const OutlinedStyle*>(&style) != nullptr) {
        return false;
    }
    const QStyle* base = &style; // some desktops wrap it in a style of their own
    while (const auto* const proxy = qobject_cast<const QProxyStyle*>(base)) {
        base = proxy->baseStyle();
    }
    return base->inherits("QFusionStyle");
}

void OutlinedStyle::polish(QPalette& colours) {
    QProxyStyle::polish(colours);
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        const QColor text = colours.color(group, QPalette::HighlightedText);
        const QColor selection = colours.color(group, QPalette::Highlight);
        colours.setColor(group, QPalette::Highlight,
                         VisibleColour(selection, TextColourOn(text), {text}, kMinTextContrast));
        colours.setColor(group, QPalette::PlaceholderText, QuietColour(colours));
    }
}

int OutlinedStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                               const QWidget* widget) const {
    return metric == PM_DefaultFrameWidth && qobject_cast<const QAbstractScrollArea*>(widget)
               ? kFocusWidth
               : QProxyStyle::pixelMetric(metric, option, widget);
}

QSize OutlinedStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                      const QSize& contents, const QWidget* widget) const {
    constexpr QSize kAroundCaption(12, 4);
    constexpr QSize kAroundText(0, 2);
    const QSize room = type == CT_PushButton                        ? kAroundCaption
                       : type == CT_LineEdit || type == CT_ComboBox ? kAroundText
                                                                    : QSize(0, 0);
    return QProxyStyle::sizeFromContents(type, option, contents + room, widget);
}

void OutlinedStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                  QPainter* painter, const QWidget* widget) const {
    if (element == PE_FrameFocusRect) {
        OutlineFocus(*option, *painter, option->rect);
        return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    switch (element) {
    case PE_IndicatorRadioButton:
        Outline(*option, *painter, option->rect, Shape::Circle);
        break;
    case PE_Frame:
        if (const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
            frame == nullptr || frame->lineWidth == 0) {
            break; // the toolkit also draws frames without a line
        }
        [[fallthrough]];
    case PE_FrameLineEdit:
    case PE_IndicatorCheckBox:
    case PE_PanelButtonCommand:
        Outline(*option, *painter, option->rect);
        break;
    case PE_FrameTabWidget: {
        QStyleOption page = *option; // its tabs may have the focus, the page never has
        page.state.setFlag(State_HasFocus, false);
        Outline(page, *painter, page.rect);
        break;
    }
    default:
        break;
    }
}

void OutlinedStyle::drawControl(ControlElement element, const QStyleOption* option,
                                QPainter* painter, const QWidget* widget) const {
    if (element == CE_Splitter) {
        DrawGrip(*option, *painter);
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
    if (const auto* const tab = qstyleoption_cast<const QStyleOptionTab*>(option);
        tab != nullptr && element == CE_TabBarTabShape) {
        OutlineTab(*tab, *painter);
    } else if (element == CE_ProgressBarContents || element == CE_ProgressBarGroove) {
        Outline(*option, *painter, option->rect);
    }
}

void OutlinedStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                       QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ComboBox) {
        Outline(*option, *painter, option->rect);
    } else if (control == CC_ScrollBar) {
        Outline(*option, *painter, subControlRect(control, option, SC_ScrollBarSlider, widget));
    } else if (control == CC_GroupBox) {
        QRectF place = subControlRect(control, option, SC_GroupBoxFrame, widget);
        place.setTop(TopOfGroupFrame(*this, *option, widget));
        Outline(*option, *painter, place);
    }
}

int TopOfGroupFrame(const QStyle& style, const QStyleOptionComplex& group, const QWidget* widget) {
    const QRect title =
        style.subControlRect(QStyle::CC_GroupBox, &group, QStyle::SC_GroupBoxLabel, widget);
    return title.bottom() + 1;
}

} // namespace vexmarrow
