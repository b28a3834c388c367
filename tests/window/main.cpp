// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Suites.h"
#include "app/Application.h"

#include <QTest>

/// window_tests SUITE: runs one suite.
int main(int argc, char** argv) {
    const vexmarrow::Application application(argc, argv);
    QStringList arguments = QApplication::arguments();
    const auto& suites = vexmarrow::test::Suites();
    const auto suite = suites.find(arguments.value(1).toStdString());
    if (suite == suites.end()) {
        qWarning("which suite?");
        return 2;
    }
    arguments.removeAt(1);
    return QTest::qExec(suite->second().get(), arguments);
}
