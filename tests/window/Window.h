// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Form1.h"
#include "app/QtEventLoop.h"
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
#include <QTabWidget>
#include <QTest>
#include <QTreeView>

#include <functional>
#include <memory>
#include <optional>

namespace vexmarrow::test {

/// Of waits, in milliseconds, for a machine that has much else to do; what is waited for ends them.
constexpr int kDeadline = 60'000;

/// A variable of the environment, for the life of this object.
class Variable {
public:
    Variable(const char* name, const std::string& value) : name_(name), before_(qgetenv(name)) {
        qputenv(name, QByteArray::fromStdString(value));
    }
    ~Variable() {
        if (before_.isNull()) {
            qunsetenv(name_);
        } else {
            qputenv(name_, before_);
        }
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const char* name_;
    QByteArray before_;
};

/// The real main window over scripted prompts, pickers and settings.
class Window {
public:
    /// Starts the program's window as main does.
    void Open();

    template <typename Control>
    Control* Find(const char* name) const {
        auto* const control = form->findChild<Control*>(QString::fromLatin1(name));
        if (control == nullptr) {
            qFatal("there is no control %s", name);
        }
        return control;
    }

    void Press(const char* name) const { Find<QAbstractButton>(name)->click(); }
    void SetText1(std::u16string_view text) const;
    void SetText2(std::u16string_view text) const;
    void SetText3(const std::u16string& text) const;
    void SelectTab(int tab) const { Find<QTabWidget>("TabControl1")->setCurrentIndex(tab); }
    void AddFiles(const std::vector<std::u16string>& paths);
    void AddSet(const std::u16string& set);
    int Rows() const { return Find<QTreeView>("ListView1")->model()->rowCount(); }

    /// The summaries of all boxes since the last call, joined by "|" (see ScriptedPrompts).
    QString Boxes();

    EncodingFlags flags;
    AnsiCodePage ansi{u"windows-1252"};
    FaultySystemCalls calls;
    RFTSFSO textio{calls, flags, ansi};
    TestFolder state; ///< of the program: its logs
    std::vector<std::string> logFolders{state.Native("logs")};
    SafeWriter writer{calls, logFolders};
    SafeWriter setsWriter{calls, logFolders, UndoSupport::None};
    ScriptedPrompts prompts;
    Prompts* shown = &prompts; ///< what the window uses
    ScriptedPickers pickers;
    MemorySettings settings;
    RecordingFileManager fileManager;
    std::u16string programFolder = u"/nowhere";
    QtEventLoop eventLoop;
    std::optional<Recovery> recovery; ///< of the start
    std::unique_ptr<Form1> form;
};

/// Runs `action` once, from the event loop, as soon as `due` says so: while the program yields, as
/// a user's hand would come in.
void Once(std::function<bool()> due, std::function<void()> action);

/// What is wrong with a window for those who use it by keyboard or do not see it, in our style
/// and one of the toolkit's: controls that Tab does not reach in either direction, that have no
/// name, role or tool tip, or look the same with and without focus, or are cut; letters that lead
/// to two places.
QString KeyboardFaults(QWidget& window);

} // namespace vexmarrow::test
