// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/ToolTips.h"

#include "app/ShownText.h"

#include <QFontMetrics>
#include <QHelpEvent>
#include <QToolTip>
#include <QWidget>

namespace vexmarrow {
namespace {

QString InTipLines(const QString& text) {
    constexpr int kCharacters = 60;
    const QFontMetrics metrics(QToolTip::font());
    return InLines(text, metrics, metrics.averageCharWidth() * kCharacters);
}

class TipsInLines final : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* const control = qobject_cast<QWidget*>(watched);
        const auto* const help =
            event->type() == QEvent::ToolTip ? dynamic_cast<const QHelpEvent*>(event) : nullptr;
        if (control == nullptr || help == nullptr || control->toolTip().isEmpty()) {
            return QObject::eventFilter(watched, event);
        }
        QToolTip::showText(help->globalPos(), InTipLines(control->toolTip()), control);
        return true;
    }
};

} // namespace

QString TipOf(std::u16string_view text) {
    constexpr std::size_t kCharacters = 2'000; // as many as fit on a small screen
    return QStringLiteral("<div style=\"white-space: pre\">") +
           InTipLines(ShownInOneLine(text, kCharacters)).toHtmlEscaped() + QStringLiteral("</div>");
}

void ShowTipsInLines(QWidget& window) {
    auto* const inLines = new TipsInLines(&window);
    for (QWidget* const control : window.findChildren<QWidget*>()) {
        control->installEventFilter(inLines);
    }
}

} // namespace vexmarrow
