// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Suites.h"
#include "app/Application.h"

#include <QTest>

#include <functional>
#include <map>
#include <memory>

/// window_tests SUITE: runs one suite.
int main(int argc, char** argv) {
    using namespace vexmarrow::test;
    using namespace Qt::StringLiterals;
    const vexmarrow::Application application(argc, argv);
    const std::map<QString, std::function<std::unique_ptr<QObject>()>> suites{
        {u"BoxesTest"_s, MakeBoxesTest}, {u"ControlsTest"_s, MakeControlsTest},
        {u"ListTest"_s, MakeListTest},   {u"LooksTest"_s, MakeLooksTest},
        {u"RunTest"_s, MakeRunTest},     {u"StartupTest"_s, MakeStartupTest},
    };
    QStringList arguments = QApplication::arguments();
    const auto suite = suites.find(arguments.value(1));
    if (suite == suites.end()) {
        qWarning("which suite?");
        return 2;
    }
    arguments.removeAt(1);
    return QTest::qExec(suite->second().get(), arguments);
}
