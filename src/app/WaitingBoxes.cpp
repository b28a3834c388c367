// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/WaitingBoxes.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QInputMethod>
#include <QList>
#include <QWindow>

#include <algorithm>
#include <array>

namespace vexmarrow {
namespace {

/// The boxes that wait, in the order in which they were opened.
QList<QDialog*>& Waiting() {
    static QList<QDialog*> waiting;
    return waiting;
}

bool IsInput(QEvent::Type type) {
    constexpr std::array kInput{QEvent::MouseButtonPress,
                                QEvent::MouseButtonRelease,
                                QEvent::MouseButtonDblClick,
                                QEvent::MouseMove,
                                QEvent::Wheel,
                                QEvent::Enter,
                                QEvent::ContextMenu,
                                QEvent::KeyPress,
                                QEvent::KeyRelease,
                                QEvent::ShortcutOverride,
                                QEvent::Shortcut,
                                QEvent::InputMethod,
                                QEvent::DragEnter,
                                QEvent::DragMove,
                                QEvent::Drop,
                                QEvent::TouchBegin,
                                QEvent::TouchUpdate,
                                QEvent::TabletPress,
                                QEvent::TabletMove,
                                QEvent::NativeGesture};
    return std::find(kInput.begin(), kInput.end(), type) != kInput.end();
}

/// Whether a whole window still gets an event that is kept from its controls. It must see releases
/// and drags, or it would hold on to the mouse. An open menu gets its events through the window
/// under the pointer, whichever that is.
bool PassesToWindow(QEvent::Type type) {
    return type == QEvent::MouseButtonRelease || type == QEvent::DragEnter ||
           type == QEvent::DragMove || type == QEvent::Drop ||
           QApplication::activePopupWidget() != nullptr;
}

/// Keeps the user's input from the windows behind a box while the box is open.
class Guard final : public QObject {
public:
    explicit Guard(QDialog& box) : box_(box) {
        for (QWidget* owner = box.parentWidget(); owner != nullptr; owner = owner->parentWidget()) {
            owner = owner->window();
            behind_.append(owner);
        }
        // An open menu or drop-down list of these windows would stay open and take the mouse.
        while (QWidget* const popup = QApplication::activePopupWidget()) {
            popup->close();
        }
        // Characters that are being composed must reach their control before the box opens.
        QGuiApplication::inputMethod()->commit();
        // A control under the pointer must not look as if it could be pressed.
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
            // Not at once, because the window behind is still becoming active.
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

    /// `window` is a widget of the toolkit, or the desktop's window that shows it.
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

    /// Whether `window` is itself a waiting box.
    bool Waits(const QObject* window) const {
        return IsBehind(window) && window != behind_.constLast() &&
               window != behind_.constLast()->windowHandle();
    }

    QDialog& box_;
    QList<QWidget*> behind_; // the windows behind the box, the outermost one last
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
