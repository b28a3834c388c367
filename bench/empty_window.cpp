// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

// An empty window, which shows how long the toolkit alone takes to start. Prints the time at which
// the window is usable.

#include "WindowTiming.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QWidget window;
    window.resize(960, 680);
    window.show();
    vexmarrow::bench::WaitUntilUsable(window);
    std::printf("%.6f\n", vexmarrow::bench::Now());
    return 0;
}
