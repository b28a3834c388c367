// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

// How the main window is laid out.

#include "app/ControlHabits.h"
#include "app/FileListPanel.h"
#include "app/FileListView.h"
#include "app/FindPanel.h"
#include "app/Form1.h"
#include "app/LinesEdit.h"
#include "app/Look.h"
#include "app/SavePanel.h"
#include "app/SetsTable.h"
#include "app/StatusLine.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace vexmarrow {
namespace {

constexpr double kShareOfScreen = 0.9;
constexpr int kHandle = 9;              // pixels, of the splitter
constexpr int kBetweenParts = 4;        // pixels
constexpr QMargins kAround(9, 6, 9, 4); // pixels
constexpr QSize kFrame(12, 40); // of the window, about: it is not there before the window shows

/// On a small screen with large letters, not all of the window is in sight at once.
QScrollArea* MakeScrollable(QWidget* content, QWidget* parent) {
    auto* const area = new QScrollArea(parent);
    area->setWidget(content);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    QObject::connect(qApp, &QApplication::focusChanged, area, [area](const QWidget*, QWidget* now) {
        if (now != nullptr && area->widget()->isAncestorOf(now)) {
            area->ensureWidgetVisible(now);
        }
    });
    return area;
}

} // namespace

void Form1::LayOut() {
    status_ = new StatusLine(this);
    setStatusBar(status_);
    ApplyTable(); // before anything asks for sizes: the captions decide them
    auto* const below = new QWidget(this);
    auto* const rest = new QVBoxLayout(below);
    rest->setContentsMargins(0, 0, 0, 0);
    rest->setSpacing(kBetweenParts);
    rest->addWidget(find_, 1);
    rest->addWidget(save_);
    parts_ = new QSplitter(Qt::Vertical, this);
    parts_->setChildrenCollapsible(false);
    parts_->setHandleWidth(kHandle);
    parts_->addWidget(files_);
    parts_->addWidget(below);
    below->raise(); // assistive programs read in the order of the children
    parts_->setStretchFactor(0, 1);
    connect(parts_, &QSplitter::splitterMoved, this, [this] { isDivided_ = true; });
    auto* const centre = new QWidget(this);
    auto* const column = new QVBoxLayout(centre);
    column->setContentsMargins(kAround);
    column->addWidget(parts_);
    setCentralWidget(MakeScrollable(centre, this));
    status_->raise(); // it is read last

    const QMargins margins = column->contentsMargins();
    status_->setContentsMargins(margins.left(), 0, margins.right(), 0);
    for (QWidget* const control :
         {static_cast<QWidget*>(find_->Combo1), static_cast<QWidget*>(find_->Combo2),
          static_cast<QWidget*>(find_->TabControl1->tabBar())}) {
        KeepWheelOut(control);
    }
    AlignColumns();
    resize(FirstSize());
}

/// The list's buttons, the find options and the start button stand in one column.
void Form1::AlignColumns() {
    const std::array<QWidget*, 3> narrow{files_->Buttons, find_->Frame1, save_->PushButton1};
    int width = save_->PushButton1->sizeHint().width();
    for (const QWidget* const each : narrow) {
        width = std::max(width, each->minimumSizeHint().width());
    }
    for (QWidget* const each : narrow) {
        each->setFixedWidth(width);
    }
}

/// The list gets the room that the rest does not want; in a low window the rest is as low as it
/// can.
void Form1::DivideRoom() {
    constexpr int kLow = 700; // pixels
    if (isDivided_) {
        return;
    }
    const QWidget* const below = parts_->widget(1);
    const int height =
        (this->height() < kLow ? below->minimumSizeHint() : below->sizeHint()).height();
    parts_->setSizes({std::max(parts_->height() - height, 0), height});
}

void Form1::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    DivideRoom();
}

void Form1::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        AlignColumns();
    }
    QMainWindow::changeEvent(event);
}

QSize Form1::FirstSize() const {
    constexpr int kCharacters = 137;
    constexpr int kLines = 54;
    const QFontMetrics metrics = fontMetrics();
    const QSize roomy(metrics.averageCharWidth() * kCharacters, metrics.lineSpacing() * kLines);
    const QSize needed =
        parts_->parentWidget()->minimumSizeHint() + QSize(0, status_->sizeHint().height());
    const QSize available = screen()->availableSize() - kFrame;
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    const QSize bars(needed.height() > available.height() ? bar : 0,
                     needed.width() > available.width() ? bar : 0);
    return roomy.boundedTo(screen()->availableSize() * kShareOfScreen)
        .expandedTo((needed + bars).boundedTo(available));
}

void Form1::WatchPointer() {
    auto* const watch =
        new PointerWatch([this] { PointTo(Custom); }, [this] { PointTo(Default); }, this);
    for (QPushButton* const button : findChildren<QPushButton*>()) {
        watch->Watch(button);
    }
    for (QWidget* const ground :
         {parts_->parentWidget(), static_cast<QWidget*>(parts_),
          static_cast<QWidget*>(parts_->handle(1)), parts_->widget(1),
          static_cast<QWidget*>(files_), files_->Buttons, static_cast<QWidget*>(find_),
          static_cast<QWidget*>(save_), static_cast<QWidget*>(find_->Frame1),
          static_cast<QWidget*>(save_->Frame2), save_->Frame4, static_cast<QWidget*>(save_->Text3),
          static_cast<QWidget*>(find_->TabControl1),
          static_cast<QWidget*>(find_->TabControl1->tabBar()), find_->TabControl1->widget(0),
          find_->TabControl1->widget(1), find_->Sets->viewport(), static_cast<QWidget*>(status_),
          status_->UndoFrame}) {
        watch->Watch(ground);
    }
}

} // namespace vexmarrow
