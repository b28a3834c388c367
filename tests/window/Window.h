// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/CodePageChooser.h"
#include "app/Form1.h"
#include "app/LinesEdit.h"
#include "app/QtEventLoop.h"
#include "app/Strings.h"
#include "safety/Recovery.h"
#include "safety/SafeWriter.h"
#include "support/Doubles.h"
#include "support/Faults.h"
#include "support/TestFolder.h"
#include "textio/CodePage.h"
#include "textio/RFTSFSO.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>

#include <functional>
#include <memory>
#include <optional>

namespace vexmarrow::test {

using namespace Qt::StringLiterals;

/// The longest wait, in milliseconds; a wait ends as soon as its condition holds.
constexpr int kDeadline = 60'000;

/// The positions of the two tabs.
enum Tab { kSinglePair, kSets };

/// Adds one row of test data for each case, under the `name` of the case. If NAME_data() calls
/// AddRows(cases), then NAME() runs once for each case and gets it from CurrentRow(cases).
template <typename Cases>
void AddRows(const Cases& cases) {
    QTest::addColumn<qsizetype>("row");
    qsizetype row = 0;
    for (const auto& each : cases) {
        QTest::newRow(each.name) << row++;
    }
}
template <typename Cases>
const auto& CurrentRow(const Cases& cases) {
    QFETCH(const qsizetype, row);
    return *(std::begin(cases) + row);
}

/// Sets a variable of the environment until the result is destroyed.
inline auto WithVariable(const char* name, const std::string& value) {
    const bool isSet = qEnvironmentVariableIsSet(name);
    auto restore = qScopeGuard(
        [name, isSet, before = qgetenv(name)] { isSet ? qputenv(name, before) : qunsetenv(name); });
    qputenv(name, QByteArray::fromStdString(value));
    return restore;
}

/// The real main window over scripted prompts, pickers and settings.
class Window {
public:
    /// Opens the window in the same way as the program does at its start.
    void Open();

    /// The control, or any other object, of that object name; its absence ends the tests.
    template <typename Control>
    Control* Find(const char* name) const {
        auto* const control = form->findChild<Control*>(QString::fromLatin1(name));
        if (control == nullptr) {
            qFatal("there is no control %s", name);
        }
        return control;
    }

    void Press(const char* name) const { Find<QAbstractButton>(name)->click(); }
    void SetText1(std::u16string_view text) const { Find<LinesEdit>("Text1")->SetText(text); }
    void SetText2(std::u16string_view text) const { Find<LinesEdit>("Text2")->SetText(text); }
    void SetText3(std::u16string_view text) const {
        Find<QLineEdit>("Text3")->setText(ToQString(text));
    }
    void SelectTab(Tab tab) const { Find<QTabWidget>("TabControl1")->setCurrentIndex(tab); }
    void AddFiles(const std::vector<std::u16string>& paths);
    void AddSet(const std::u16string& set);
    int Rows() const { return Find<QTreeView>("ListView1")->model()->rowCount(); }
    CodePageChooser* CodePages() const { return form->findChild<CodePageChooser*>(); }

    /// The summaries of all boxes since the last call, joined by "|" (see ScriptedPrompts).
    QString Boxes();

    EncodingFlags flags;
    AnsiCodePage ansi{u"windows-1252"};
    FaultySystemCalls calls;
    RFTSFSO textio{calls, flags, ansi};
    TestFolder state; ///< holds the program's logs
    std::vector<std::string> logFolders{state.Native("logs")};
    SafeWriter writer{calls, logFolders};
    SafeWriter setsWriter{calls, logFolders, UndoSupport::None};
    ScriptedPrompts prompts;
    Prompts* shown = &prompts; ///< the prompts that the window uses
    ScriptedPickers pickers;
    MemorySettings settings;
    RecordingFileManager fileManager;
    std::u16string programFolder = u"/nowhere";
    QtEventLoop eventLoop;
    std::optional<Recovery> recovery; ///< what Open() recovers with
    std::unique_ptr<Form1> form;
};

/// Runs `action` once, from the event loop, as soon as `due` returns true. With it a test does what
/// a user does while the program works or a box is open.
void Once(std::function<bool()> due, std::function<void()> action);

/// The visible and enabled controls that Tab should reach.
QList<QWidget*> TabStops(const QWidget& window);

/// The faults of a window for people who use the keyboard or cannot see it, one a line; nothing if
/// there are none. Each of our style and one of the toolkit's is tried. Faults are: a control that
/// Tab or Shift+Tab does not reach, or reaches against the reading order; one without a name, role
/// or tool tip; one that looks the same with and without focus; one that is cut off; a control
/// without a letter for Alt; a letter that leads to two controls.
QString KeyboardFaults(QWidget& window);

} // namespace vexmarrow::test
