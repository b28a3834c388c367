// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QProxyStyle>

namespace vexmarrow {

/// The toolkit's own style with outlines that can be seen in every palette: it draws them somewhat
/// darker than the ground, which leaves little of frames and unset options on a dark one. What has
/// the keyboard's focus gets a thicker outline of a colour of its own.
class OutlinedStyle final : public QProxyStyle {
    Q_OBJECT

public:
    OutlinedStyle();

    /// Whether `style` is one that this one can take the place of.
    static bool IsNeededFor(const QStyle& style);

    /// Selections are dark or light enough to read their letters on them, and quiet letters are not
    /// too quiet, whatever the desktop's palette.
    void polish(QPalette& colours) override;
    using QProxyStyle::polish;

    /// Frames of lists and text boxes have room for the outline of the focus.
    int pixelMetric(PixelMetric metric, const QStyleOption* option = nullptr,
                    const QWidget* widget = nullptr) const override;

    /// Captions and lines of text have room around them.
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget = nullptr) const override;
};

} // namespace vexmarrow
