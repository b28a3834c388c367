// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QProxyStyle>

namespace vexmarrow {

/// The toolkit's own style, but with outlines that can be seen in every palette. The toolkit draws
/// them a little darker than the background, so frames and unset options almost disappear in a dark
/// palette. The control that has the focus gets a thicker outline in another colour.
class OutlinedStyle final : public QProxyStyle {
    Q_OBJECT

public:
    OutlinedStyle();

    /// Whether `style` is the toolkit's own style without these outlines.
    static bool IsNeededFor(const QStyle& style);

    /// Changes the desktop's palette so that selected text and grey text can be read.
    void polish(QPalette& colours) override;
    using QProxyStyle::polish;

    /// Makes room for the outline of the focus in the frames of lists and text boxes.
    int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr,
                    const QWidget* widget = nullptr) const override;

    /// Makes room around captions and lines of text.
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget = nullptr) const override;
};

/// The y coordinate at which the frame of a group begins, below its title.
int TopOfGroupFrame(const QStyle& style, const QStyleOptionComplex& group, const QWidget* widget);

} // namespace vexmarrow
