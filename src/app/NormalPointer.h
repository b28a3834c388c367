// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QGuiApplication>
#include <QScopeGuard>

namespace vexmarrow {

/// Replaces the hourglass of the main window by the normal pointer while a box waits for the user:
/// until the returned guard is destroyed.
[[nodiscard]] inline auto ShowNormalPointer() {
    const bool isBusy = QGuiApplication::overrideCursor() != nullptr;
    if (isBusy) {
        QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    return qScopeGuard([isBusy] {
        if (isBusy) {
            QGuiApplication::restoreOverrideCursor();
        }
    });
}

} // namespace vexmarrow
