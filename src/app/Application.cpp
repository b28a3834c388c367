// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Application.h"

#include "app/FileListView.h"
#include "app/OutlinedStyle.h"

#include <QAbstractButton>
#include <QFont>
#include <QKeyEvent>
#include <QPlainTextEdit>

#include <array>

namespace vexmarrow {
namespace {

/// For which a desktop may have letters of their own; nothing stands for all others.
constexpr std::array<const char*, 15> kKinds{
    nullptr,       "QLabel",      "QPushButton", "QCheckBox",      "QRadioButton",
    "QListView",   "QHeaderView", "QStatusBar",  "QComboMenuItem", "QAbstractItemView",
    "QMessageBox", "QMenu",       "QTipLabel",   "QComboLineEdit", "QToolButton"};

/// Whether a key that is held there counts once: where it goes on to a button (in boxes of several
/// lines it makes lines), and where it takes a file out of the list.
bool CountsOnce(int key, const QObject& receiver) {
    if (key == Qt::Key_Delete) {
        return qobject_cast<const FileListView*>(&receiver) != nullptr;
    }
    if (key == Qt::Key_Space) {
        return qobject_cast<const QAbstractButton*>(&receiver) != nullptr;
    }
    return (key == Qt::Key_Return || key == Qt::Key_Enter) &&
           qobject_cast<const QPlainTextEdit*>(&receiver) == nullptr;
}

} // namespace

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {
    KeepFamily();
    KeepOutlines();
}

bool Application::notify(QObject* receiver, QEvent* event) {
    const bool pressed = event->type() == QEvent::KeyPress;
    const auto* const key =
        (pressed || event->type() == QEvent::KeyRelease) && receiver->isWidgetType()
            ? dynamic_cast<const QKeyEvent*>(event)
            : nullptr;
    if (key != nullptr && pressed && IsHeld(*key) && CountsOnce(key->key(), *receiver)) {
        return true;
    }
    if (key != nullptr && !pressed) {
        released_ = key->key();
        releasedAt_ = key->timestamp();
    }
    return QApplication::notify(receiver, event);
}

/// A held key comes as many presses and releases. The toolkit recognises most of the presses; the
/// others come at the very moment of a release.
bool Application::IsHeld(const QKeyEvent& event) const {
    const bool sameMoment = event.timestamp() != 0 && event.timestamp() == releasedAt_;
    return event.isAutoRepeat() || (sameMoment && event.key() == released_);
}

bool Application::event(QEvent* event) {
    const bool handled = QApplication::event(event);
    // Afterwards: the change is still on its way through the windows.
    if (event->type() == QEvent::ApplicationFontChange) {
        QMetaObject::invokeMethod(this, &Application::KeepFamily, Qt::QueuedConnection);
    }
    return handled;
}

void Application::KeepFamily() {
    const QStringList family{QStringLiteral("Arial")};
    for (const char* const kind : kKinds) {
        QFont letters = font(kind);
        if (letters.families() != family) {
            letters.setFamilies(family);
            setFont(letters, kind);
        }
    }
}

void Application::KeepOutlines() {
    if (OutlinedStyle::IsNeededFor(*style())) {
        setStyle(new OutlinedStyle);
        KeepFamily(); // a new style takes the desktop's letters again
    }
}

} // namespace vexmarrow
