// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/QtEventLoop.h"

#include <QCoreApplication>

namespace vexmarrow {

void QtEventLoop::Yield(const Progress& progress) {
    // Painting the status line for every item would take longer than the work itself.
    constexpr qint64 kMillisecondsBetween = 100;
    const bool last = progress.done == progress.total;
    if (show_ &&
        (last || !sinceShown_.isValid() || sinceShown_.elapsed() >= kMillisecondsBetween)) {
        show_(progress);
        sinceShown_.start();
    }
    QCoreApplication::processEvents();
    ThrowIfEnded();
}

} // namespace vexmarrow
