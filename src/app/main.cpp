// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Application.h"
#include "app/Assembly.h"

#include <QIcon>

#include <csignal>

int main(int argc, char** argv) {
    using namespace vexmarrow;

    // A file that would grow past the user's limit is a failure to report, not the end.
    std::signal(SIGXFSZ, SIG_IGN); // NOLINT(cert-err33-c)

    SettleHomeFolder();
    const Application application(argc, argv);
    QApplication::setApplicationVersion(QStringLiteral(VEXMARROW_VERSION));
    QApplication::setDesktopFileName(QStringLiteral(VEXMARROW_DESKTOP_ID));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral(VEXMARROW_DESKTOP_ID)));

    Assembly program;
    return program.Start() ? QApplication::exec() : 0;
}
