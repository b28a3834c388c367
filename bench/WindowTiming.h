// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractEventDispatcher>
#include <QWidget>
#include <QWindow>

#include <chrono>

namespace vexmarrow::bench {

/// Seconds on the clock that all processes of the machine share.
inline double Now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// Handles events until none is waiting.
inline void WaitUntilIdle() {
    while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents)) {
    }
}

/// Handles events until the window is on the screen and has nothing left to do, so that the user
/// can work with it.
inline void WaitUntilUsable(const QWidget& window) {
    while (window.windowHandle() == nullptr || !window.windowHandle()->isExposed()) {
        QAbstractEventDispatcher::instance()->processEvents(QEventLoop::WaitForMoreEvents);
    }
    WaitUntilIdle();
}

} // namespace vexmarrow::bench
