// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/ControlTable.h"

#include "app/MakeControls.h"
#include "app/QtEventLoop.h"
#include "app/Strings.h"
#include "app/WaitingBoxes.h"

#include <QAbstractButton>

namespace vexmarrow {

QWidget* WireControl(QWidget& window, const ControlRow& row, std::function<void()> onClick,
                     QWidget* before) {
    auto* const control = window.findChild<QWidget*>(ToQString(row.name));
    SetCaption(control, row.caption, row.spoken);
    if (!row.tip.empty()) {
        control->setToolTip(ToQString(row.tip));
    }
    if (onClick) {
        QObject::connect(qobject_cast<QAbstractButton*>(control), &QAbstractButton::clicked,
                         &window, [&window, onClick = std::move(onClick)] {
                             if (!IsBehindBox(window)) {
                                 RunHandler(onClick);
                             }
                         });
    }
    if (before != nullptr) {
        QWidget::setTabOrder(before, control);
    }
    return control;
}

} // namespace vexmarrow
