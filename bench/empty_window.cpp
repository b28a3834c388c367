// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

// A window with nothing in it: what the toolkit alone takes to start. Prints the moment at which
// the window is usable.

#include "Usable.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QWidget window;
    window.resize(960, 680);
    window.show();
    vexmarrow::bench::UntilUsable(window);
    std::printf("%.6f\n", vexmarrow::bench::Now());
    return 0;
}
