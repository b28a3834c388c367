// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractEventDispatcher>
#include <QWidget>
#include <QWindow>

#include <chrono>

namespace vexmarrow::bench {

/// Seconds of the clock that all processes of the machine share.
inline double Now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// Handles events until none waits.
inline void UntilIdle() {
    while (QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents)) {
    }
}

/// Handles events until the window is on the screen and nothing more is to be done for it: from
/// then on it answers to the user.
inline void UntilUsable(const QWidget& window) {
    while (window.windowHandle() == nullptr || !window.windowHandle()->isExposed()) {
        QAbstractEventDispatcher::instance()->processEvents(QEventLoop::WaitForMoreEvents);
    }
    UntilIdle();
}

} // namespace vexmarrow::bench
