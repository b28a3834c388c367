// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

// The mouse pointer of the main window.

#include "app/FileListPanel.h"
#include "app/FindPanel.h"
#include "app/Form1.h"
#include "app/SavePanel.h"
#include "app/SetsTable.h"
#include "app/StatusLine.h"

#include <QEvent>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>

#include <functional>
#include <initializer_list>
#include <utility>

namespace vexmarrow {
namespace {

/// Calls `moved` for every move of the mouse over a watched widget, with whether that is a button.
class PointerWatch final : public QObject {
public:
    PointerWatch(std::function<void(bool)> moved, QObject* parent)
        : QObject(parent), moved_(std::move(moved)) {}

    void Watch(QWidget* widget) {
        widget->setMouseTracking(true);
        if (qobject_cast<QPushButton*>(widget) != nullptr) {
            // The button would pass the move on to its parent, which is no button.
            widget->setAttribute(Qt::WA_NoMousePropagation);
        }
        widget->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::MouseMove || event->type() == QEvent::Enter) {
            moved_(qobject_cast<QPushButton*>(watched) != nullptr);
        }
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void(bool)> moved_;
};

} // namespace

void Form1::WatchPointer() {
    const auto point = [this](bool toButton) { PointTo(toButton ? Custom : Default); };
    auto* const watch = new PointerWatch(point, this);
    for (QPushButton* const button : findChildren<QPushButton*>()) {
        watch->Watch(button);
    }
    for (QWidget* const ground : std::initializer_list<QWidget*>{
             parts_->parentWidget(), parts_, parts_->handle(1), parts_->widget(1), files_,
             files_->Buttons, find_, find_->Frame1, find_->TabControl1,
             find_->TabControl1->tabBar(), find_->TabControl1->widget(0),
             find_->TabControl1->widget(1), find_->Sets->viewport(), save_, save_->Frame2,
             save_->Frame4, save_->Text3, status_, status_->UndoFrame}) {
        watch->Watch(ground);
    }
}

void Form1::SetPointer(Shape shape) {
    if (shape != Hourglass) {
        status_->ClearProgress(); // also at the end of a run during which a scan has ended
    }
    ShowPointer(shape);
}

/// Shows a pointer as the mouse moves, but never replaces the hourglass.
void Form1::PointTo(Shape shape) {
    if (!IsBusy() && pointer_ != shape) {
        ShowPointer(shape);
    }
}

void Form1::ShowPointer(Shape shape) {
    const bool wasBusy = std::exchange(pointer_, shape) == Hourglass;
    const bool busy = shape == Hourglass;
    if (busy && !wasBusy) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    } else if (wasBusy && !busy) {
        QGuiApplication::restoreOverrideCursor();
    }
    if (busy != wasBusy) {
        ShowUndo();
        utf8Hint_.Forget(); // the work may have changed the files
        ShowNotesSoon();
    }
    if (shape == Custom || shape == Arrow) {
        setCursor(shape == Custom ? hand_ : QCursor(Qt::ArrowCursor));
    } else {
        unsetCursor();
    }
}

} // namespace vexmarrow
