// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Application.h"

#include "app/OutlinedStyle.h"

#include <QFont>

#include <array>

namespace vexmarrow {
namespace {

/// For which a desktop may have letters of their own; nothing stands for all others.
constexpr std::array<const char*, 10> kKinds{nullptr,         "QLabel",       "QPushButton",
                                             "QCheckBox",     "QRadioButton", "QAbstractItemView",
                                             "QHeaderView",   "QStatusBar",   "QTipLabel",
                                             "QComboMenuItem"};

} // namespace

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {
    KeepFamily();
    KeepOutlines();
}

bool Application::event(QEvent* event) {
    const bool handled = QApplication::event(event);
    // Afterwards: the change is still on its way through the windows.
    if (event->type() == QEvent::ApplicationFontChange) {
        QMetaObject::invokeMethod(this, &Application::KeepFamily, Qt::QueuedConnection);
    } else if (event->type() == QEvent::ApplicationPaletteChange) {
        QMetaObject::invokeMethod(this, &Application::KeepOutlines, Qt::QueuedConnection);
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
    if (OutlinedStyle::IsNeeded(*style(), palette())) {
        setStyle(new OutlinedStyle);
        KeepFamily(); // a new style takes the desktop's letters again
    }
}

} // namespace vexmarrow
