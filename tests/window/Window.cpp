// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Window.h"

#include "app/LinesEdit.h"
#include "app/OutlinedStyle.h"
#include "app/Strings.h"

#include <QAccessible>
#include <QGroupBox>
#include <QStyleFactory>
#include <QTimer>

namespace vexmarrow::test {

void Window::Open() {
    recovery.emplace(calls, logFolders, *shown);
    form = std::make_unique<Form1>(Services{textio, writer, setsWriter, ansi, *shown, pickers,
                                            settings, fileManager, eventLoop, *recovery, logFolders,
                                            programFolder, u"/home/somebody/Desktop/"});
    form->Form_Load();
    recovery->Run();
    form->show();
}

void Window::SetText1(std::u16string_view text) const {
    Find<LinesEdit>("Text1")->SetText(text);
}

void Window::SetText2(std::u16string_view text) const {
    Find<LinesEdit>("Text2")->SetText(text);
}

void Window::SetText3(const std::u16string& text) const {
    Find<QLineEdit>("Text3")->setText(ToQString(text));
}

void Window::AddFiles(const std::vector<std::u16string>& paths) {
    for (const std::u16string& path : paths) {
        pickers.files.push_back({path});
        Press("PushButton13");
    }
}

void Window::AddSet(const std::u16string& set) {
    prompts.texts.push_back(set);
    Press("PushButton7");
}

QString Window::Boxes() {
    QStringList summaries;
    for (const std::string& summary : prompts.TakeSummaries()) {
        summaries << QString::fromStdString(summary);
    }
    return summaries.join(u'|');
}

void Once(std::function<bool()> due, std::function<void()> action) {
    auto* const timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, timer,
                     [timer, due = std::move(due), action = std::move(action)] {
                         if (due()) {
                             timer->stop();
                             timer->deleteLater();
                             action();
                         }
                     });
    timer->start(0);
}

namespace {

QString FaultsOfLetters(const QWidget& window) {
    QString letters, faults;
    const auto add = [&](const QString& caption, bool needed) {
        const QString letter = QKeySequence::mnemonic(caption).toString().right(1);
        if (letter.isEmpty() ? needed : letters.contains(letter)) {
            faults += caption + QStringLiteral(": its letter\n");
        }
        letters += letter;
    };
    for (const auto* const widget : window.findChildren<QWidget*>()) {
        const QString type = QString::fromLatin1(widget->metaObject()->className());
        if (!widget->isVisible()) {
            continue;
        }
        if (const auto* const label = qobject_cast<const QLabel*>(widget)) {
            add(label->text(), label->buddy() != nullptr);
        } else if (const auto* const button = qobject_cast<const QAbstractButton*>(widget)) {
            const bool inGroup = type == QStringLiteral("QRadioButton"); // its title has the letter
            add(button->text(), button->text().size() > 3 && !inGroup);
        } else if (const auto* const group = qobject_cast<const QGroupBox*>(widget)) {
            add(group->title(), true);
        } else if (const auto* const tabs = qobject_cast<const QTabBar*>(widget)) {
            add(tabs->tabText(0), true);
            add(tabs->tabText(1), true);
        }
    }
    return faults;
}

QString CutControls(const QWidget& window) {
    QString cut;
    for (const auto* const widget : window.findChildren<QWidget*>()) {
        const auto* const label = qobject_cast<const QLabel*>(widget);
        const QSize needed = label != nullptr && label->wordWrap()
                                 ? QSize(0, label->heightForWidth(label->width()))
                                 : widget->minimumSizeHint();
        const QString name = widget->objectName(); // others are parts that the toolkit makes
        const bool own = !name.isEmpty() && !name.startsWith(QStringLiteral("qt_"));
        if (own && widget->isVisible() && widget->size().expandedTo(needed) != widget->size()) {
            cut += name + QStringLiteral(": it is cut\n");
        }
    }
    return cut;
}

QString FaultsOfControl(QWidget& control) {
    const auto* const accessible = QAccessible::queryAccessibleInterface(&control);
    const QString name = accessible->text(QAccessible::Name);
    const auto role = accessible->role();
    const auto* const tabs = qobject_cast<QTabBar*>(&control);
    const QString tip = tabs != nullptr ? tabs->tabToolTip(1) : control.toolTip();
    const QImage focused = control.grab().toImage();
    control.clearFocus();
    const auto* const button = qobject_cast<QPushButton*>(&control);
    // The button that Enter presses from anywhere looks like one that has the focus.
    const bool same =
        (button == nullptr || !button->isDefault()) && control.grab().toImage() == focused;
    control.setFocus(Qt::TabFocusReason);
    const bool box = control.window()->objectName() == QStringLiteral("MessageBox");
    QString faults;
    for (const auto& [fault, what] :
         {std::pair{name.isEmpty() || name.contains(u'&'), "name"},
          {role == QAccessible::NoRole || role == QAccessible::Client, "role"},
          {tip.isEmpty() && !box, "tool tip"},
          {same, "focus"}}) {
        if (fault) {
            faults += QStringLiteral("%1 %2: its %3\n")
                          .arg(control.objectName(), name, QString::fromLatin1(what));
        }
    }
    return faults;
}

} // namespace

QString KeyboardFaults(QWidget& window) {
    QString faults = FaultsOfLetters(window);
    QList<QWidget*> stops;
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->isEnabled() && widget->focusProxy() == nullptr &&
            (widget->focusPolicy() & Qt::TabFocus) != 0) {
            stops << widget;
        }
    }
    QApplication::setCursorFlashTime(0);
    // Ours, and one of the toolkit's: what else is installed differs from machine to machine.
    for (const QString& style : {QStringLiteral("ours"), QStringLiteral("Windows")}) {
        QApplication::setStyle(style == QStringLiteral("ours") ? new OutlinedStyle
                                                               : QStyleFactory::create(style));
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window, kDeadline) || stops.isEmpty()) {
            return QStringLiteral("it is not to be used");
        }
        // The layout follows the style and the font.
        if (!QTest::qWaitFor([&] { return CutControls(window).isEmpty(); }, kDeadline)) {
            faults += CutControls(window);
        }
        stops.front()->setFocus();
        QTest::keyClick(stops.front(), Qt::Key_Tab); // styles show the focus to those who use keys
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
            QList<QWidget*> missed = stops;
            for (qsizetype i = 0; i < stops.size(); ++i) {
                QWidget* const control = QApplication::focusWidget();
                missed.removeAll(control);
                faults += FaultsOfControl(*control);
                QTest::keyClick(control, key);
            }
            for (const QWidget* const control : missed) {
                faults += style + u' ' + control->objectName() + QStringLiteral(": not reached\n");
            }
        }
    }
    QApplication::setStyle(new OutlinedStyle);
    return faults;
}

} // namespace vexmarrow::test
