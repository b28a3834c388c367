// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QProxyStyle>

class QPalette;

namespace vexmarrow {

/// The toolkit's own style with outlines that can be seen on black ground: it draws them somewhat
/// darker than the ground, which on black leaves nothing of boxes and unset options.
class OutlinedStyle final : public QProxyStyle {
    Q_OBJECT

public:
    OutlinedStyle();

    /// Whether `style` is the one whose outlines are lost in those colours.
    static bool IsNeeded(const QStyle& style, const QPalette& colours);

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget = nullptr) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget = nullptr) const override;
};

} // namespace vexmarrow
