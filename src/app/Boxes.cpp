// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Boxes.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QInputMethod>
#include <QList>
#include <QWindow>

#include <algorithm>

namespace vexmarrow {
namespace {

/// The dialogs that wait, in the order in which they were opened.
QList<QDialog*>& Waiting() {
    static QList<QDialog*> waiting;
    return waiting;
}

bool IsInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::Enter:
    case QEvent::ContextMenu:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::NativeGesture:
        return true;
    default:
        return false;
    }
}

/// Of the events on their way to a whole window, those that it has to see so that it does not keep
/// the mouse or a drag; they are kept from its controls. An open menu gets its events through
/// whatever window the pointer is over.
bool PassesToWindow(QEvent::Type type) {
    return type == QEvent::MouseButtonRelease || type == QEvent::DragEnter ||
           type == QEvent::DragMove || type == QEvent::Drop ||
           QApplication::activePopupWidget() != nullptr;
}

/// Keeps the user's input from the windows behind a dialog, for as long as that is open.
class Guard final : public QObject {
public:
    explicit Guard(QDialog& box) : box_(box) {
        for (QWidget* owner = box.parentWidget(); owner != nullptr; owner = owner->parentWidget()) {
            owner = owner->window();
            behind_.append(owner);
        }
        // What dropped down from one of them would stay open and take the mouse.
        while (QWidget* const popup = QApplication::activePopupWidget()) {
            popup->close();
        }
        // What is being composed goes into its control while that still gets it.
        QGuiApplication::inputMethod()->commit();
        // The pointer may stay over a control that is not to look as if it were ready.
        for (const QWidget* const window : behind_) {
            if (window->windowHandle() != nullptr) {
                QEvent leave(QEvent::Leave);
                QCoreApplication::sendEvent(window->windowHandle(), &leave);
            }
        }
        Waiting().append(&box);
        QCoreApplication::instance()->installEventFilter(this);
        connect(&box, &QDialog::finished, this, &Guard::Lift);
    }
    ~Guard() override { Lift(); }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

    bool eventFilter(QObject* watched, QEvent* event) override {
        const QEvent::Type type = event->type();
        if (type == QEvent::WindowActivate && IsBehind(watched)) {
            // Only then is the other window done with becoming active.
            QMetaObject::invokeMethod(this, &Guard::BringToFront, Qt::QueuedConnection);
        } else if (type == QEvent::Close ? Waits(watched)
                                         : IsInput(type) && IsKeptFrom(watched, type)) {
            if (type == QEvent::MouseButtonPress) {
                BringToFront();
            }
            event->ignore();
            return true;
        }
        return false;
    }

private:
    void Lift() {
        Waiting().removeOne(&box_);
        QCoreApplication::instance()->removeEventFilter(this);
    }

    void BringToFront() {
        if (!Waiting().isEmpty() && Waiting().constLast() == &box_) {
            box_.setWindowState(box_.windowState() & ~Qt::WindowMinimized);
            box_.raise();
            box_.activateWindow();
        }
    }

    /// Whether it is one of the windows behind: the toolkit's widget, or the desktop's window of
    /// it.
    bool IsBehind(const QObject* window) const {
        return std::any_of(behind_.begin(), behind_.end(), [window](const QWidget* each) {
            return each == window || each->windowHandle() == window;
        });
    }

    bool IsKeptFrom(const QObject* receiver, QEvent::Type type) const {
        if (const auto* const control = qobject_cast<const QWidget*>(receiver)) {
            return IsBehind(control->window());
        }
        return receiver->isWindowType() && !PassesToWindow(type) && IsBehind(receiver);
    }

    /// Whether it is a dialog that waits itself.
    bool Waits(const QObject* window) const {
        return IsBehind(window) && window != behind_.constLast() &&
               window != behind_.constLast()->windowHandle();
    }

    QDialog& box_;
    QList<QWidget*> behind_; // the outermost last
};

} // namespace

int WaitFor(QDialog& box) {
    const Guard guard(box);
    QEventLoop loop;
    QObject::connect(&box, &QDialog::finished, &loop, &QEventLoop::quit);
    box.show();
    if (box.isVisible()) {
        loop.exec(QEventLoop::DialogExec);
    }
    return box.result();
}

QWidget* TopBox() {
    QWidget* const modal = QApplication::activeModalWidget();
    return modal == nullptr && !Waiting().isEmpty() ? Waiting().constLast() : modal;
}

bool IsBehindBox(const QWidget& control) {
    const QWidget* const box = TopBox();
    const QWidget* each = &control;
    while (each != nullptr && each != box) {
        each = each->parentWidget();
    }
    return box != nullptr && each == nullptr;
}

void CloseBoxes() {
    const QList<QDialog*> waiting = Waiting();
    std::for_each(waiting.rbegin(), waiting.rend(), [](QDialog* box) { box->close(); });
}

QWidget* OwnerOfBoxes(QWidget* mainWindow) {
    QWidget* const box = TopBox();
    return box != nullptr ? box : mainWindow;
}

} // namespace vexmarrow
