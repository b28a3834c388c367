// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Window.h"

#include "app/OutlinedStyle.h"

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

/// Letters: each control with a caption has one, and no two controls share one.
QString FaultsOfLetters(const QWidget& window) {
    QString letters, faults;
    const auto add = [&](const QString& caption, bool needed) {
        const QString letter = QKeySequence::mnemonic(caption).toString().right(1);
        if (letter.isEmpty() ? needed : letters.contains(letter)) {
            faults += caption + u": its letter\n"_s;
        }
        letters += letter;
    };
    constexpr qsizetype kLongestMark = 3; // "..." is a mark, not a caption
    for (const auto* const widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisible()) {
            continue;
        }
        if (const auto* const label = qobject_cast<const QLabel*>(widget)) {
            add(label->text(), label->buddy() != nullptr);
        } else if (const auto* const button = qobject_cast<const QAbstractButton*>(widget)) {
            // The title of a group of options has the letter of all of them.
            const bool inGroup = qobject_cast<const QRadioButton*>(button) != nullptr;
            add(button->text(), button->text().size() > kLongestMark && !inGroup);
        } else if (const auto* const group = qobject_cast<const QGroupBox*>(widget)) {
            add(group->title(), true);
        } else if (const auto* const tabs = qobject_cast<const QTabBar*>(widget)) {
            add(tabs->tabText(kSinglePair), true);
            add(tabs->tabText(kSets), true);
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
        const QString name = widget->objectName(); // parts that the toolkit adds have none or "qt_"
        const bool own = !name.isEmpty() && !name.startsWith(u"qt_"_s);
        if (own && widget->isVisible() && widget->size().expandedTo(needed) != widget->size()) {
            cut += name + u": it is cut\n"_s;
        }
    }
    return cut;
}

bool HasToolTip(const QWidget& control) {
    const auto* const tabs = qobject_cast<const QTabBar*>(&control);
    return tabs == nullptr
               ? !control.toolTip().isEmpty()
               : !tabs->tabToolTip(kSinglePair).isEmpty() && !tabs->tabToolTip(kSets).isEmpty();
}

QString FaultsOfControl(QWidget& control) {
    const auto* const accessible = QAccessible::queryAccessibleInterface(&control);
    const QString name = accessible->text(QAccessible::Name);
    const auto role = accessible->role();
    const QImage focused = control.grab().toImage();
    control.clearFocus();
    const auto* const button = qobject_cast<QPushButton*>(&control);
    // The button that Enter presses from anywhere looks like one that has the focus.
    const bool same =
        (button == nullptr || !button->isDefault()) && control.grab().toImage() == focused;
    control.setFocus(Qt::TabFocusReason);
    const bool box = control.window()->objectName() == u"MessageBox"_s;
    QString faults;
    for (const auto& [fault, what] :
         {std::pair{name.isEmpty() || name.contains(u'&'), "name"},
          {role == QAccessible::NoRole || role == QAccessible::Client, "role"},
          {!box && !HasToolTip(control), "tool tip"},
          {same, "focus"}}) {
        if (fault) {
            faults +=
                u"%1 %2: its %3\n"_s.arg(control.objectName(), name, QString::fromLatin1(what));
        }
    }
    return faults;
}

/// Whether `next` comes after `control` in reading order: on its right, or below it.
bool IsReadAfter(const QWidget& next, const QWidget& control) {
    const QRect first(control.mapTo(control.window(), QPoint()), control.size());
    const QRect second(next.mapTo(next.window(), QPoint()), next.size());
    return second.left() > first.right() || second.top() > first.bottom();
}

/// Walks through the window by `key`, all around, and back to where the walk began.
QString FaultsOfWalk(Qt::Key key, const QList<QWidget*>& stops) {
    QList<QWidget*> missed = stops;
    QStringList back;
    QString faults;
    for (qsizetype i = 0; i < stops.size(); ++i) {
        QWidget* const control = QApplication::focusWidget();
        missed.removeAll(control);
        faults += FaultsOfControl(*control);
        QTest::keyClick(control, key);
        const QWidget* const next = QApplication::focusWidget();
        if (key == Qt::Key_Tab && !IsReadAfter(*next, *control)) {
            back << control->objectName() + u" to "_s + next->objectName();
        }
    }
    for (const QWidget* const control : missed) {
        faults += control->objectName() + u": not reached\n"_s;
    }
    if (back.size() > 1) { // from the end, the walk goes back to the beginning once
        faults += u"against the reading order: "_s + back.join(u", "_s) + u'\n';
    }
    return faults;
}

} // namespace

QList<QWidget*> TabStops(const QWidget& window) {
    QList<QWidget*> stops;
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->isEnabled() && widget->focusProxy() == nullptr &&
            (widget->focusPolicy() & Qt::TabFocus) != 0) {
            stops << widget;
        }
    }
    return stops;
}

QString KeyboardFaults(QWidget& window) {
    QString faults = FaultsOfLetters(window);
    const QList<QWidget*> stops = TabStops(window);
    QApplication::setCursorFlashTime(0);
    // Of the toolkit's styles, "Windows" is the one that every machine has.
    for (const QString& style : {u"ours"_s, u"Windows"_s}) {
        QApplication::setStyle(style == u"ours"_s ? new OutlinedStyle
                                                  : QStyleFactory::create(style));
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window, kDeadline) || stops.isEmpty()) {
            return u"it cannot be used"_s;
        }
        // The layout follows the style and the font.
        if (!QTest::qWaitFor([&] { return CutControls(window).isEmpty(); }, kDeadline)) {
            faults += CutControls(window);
        }
        stops.front()->setFocus();
        QTest::keyClick(stops.front(), Qt::Key_Tab); // styles show the focus only to users of keys
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
            const QString found = FaultsOfWalk(key, stops);
            faults += found.isEmpty() ? found : style + u" style: "_s + found;
        }
    }
    QApplication::setStyle(new OutlinedStyle);
    return faults;
}

} // namespace vexmarrow::test
