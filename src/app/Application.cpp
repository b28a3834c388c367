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

/// The classes of controls for which a desktop may set a font; null is the font of all others.
constexpr std::array<const char*, 15> kKinds{
    nullptr,       "QLabel",      "QPushButton", "QCheckBox",      "QRadioButton",
    "QListView",   "QHeaderView", "QStatusBar",  "QComboMenuItem", "QAbstractItemView",
    "QMessageBox", "QMenu",       "QTipLabel",   "QComboLineEdit", "QToolButton"};

/// Whether a key that is held down over `receiver` counts as a single press: a key that may press a
/// button, or that removes a file from the list. In a text box of several lines, Enter repeats.
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
    if (OutlinedStyle::IsNeededFor(*style())) {
        setStyle(new OutlinedStyle);
    }
    SetFontFamily(); // after the style, which brings the desktop's fonts with it
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

/// A held key arrives as many presses and releases. The toolkit marks most of these presses as
/// repeated. Each of the others has the same time as the release before it.
bool Application::IsHeld(const QKeyEvent& event) const {
    const bool sameMoment = event.timestamp() != 0 && event.timestamp() == releasedAt_;
    return event.isAutoRepeat() || (sameMoment && event.key() == released_);
}

bool Application::event(QEvent* event) {
    const bool handled = QApplication::event(event);
    // Not at once, because the windows do not have the new font yet.
    if (event->type() == QEvent::ApplicationFontChange) {
        QMetaObject::invokeMethod(this, &Application::SetFontFamily, Qt::QueuedConnection);
    }
    return handled;
}

void Application::SetFontFamily() {
    const QStringList family{QStringLiteral("Arial")};
    for (const char* const kind : kKinds) {
        QFont font = QApplication::font(kind);
        if (font.families() != family) {
            font.setFamilies(family);
            setFont(font, kind);
        }
    }
}

} // namespace vexmarrow
