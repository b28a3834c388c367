// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

// The layout of the main window.

#include "app/ControlBehaviour.h"
#include "app/FileListPanel.h"
#include "app/FileListView.h"
#include "app/FindPanel.h"
#include "app/Form1.h"
#include "app/LinesEdit.h"
#include "app/SavePanel.h"
#include "app/SetsTable.h"
#include "app/StatusLine.h"

#include <QApplication>
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
#include <initializer_list>

namespace vexmarrow {
namespace {

constexpr double kShareOfScreen = 0.9;
constexpr int kHandle = 9;              // pixels: width of the splitter's handle
constexpr int kBetweenParts = 4;        // pixels
constexpr QMargins kAround(9, 6, 9, 4); // pixels
// Size of the desktop's frame around a window, about. The real one is not known before the window
// is shown.
constexpr QSize kFrame(12, 40);

/// Makes the contents scroll, because a small screen with a large font cannot show all of them.
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
    ApplyTable(); // first, because sizes depend on the captions
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
    below->raise(); // assistive programs read children in their order
    parts_->setStretchFactor(0, 1);
    connect(parts_, &QSplitter::splitterMoved, this, [this] { isDivided_ = true; });
    auto* const centre = new QWidget(this);
    auto* const column = new QVBoxLayout(centre);
    column->setContentsMargins(kAround);
    column->addWidget(parts_);
    setCentralWidget(MakeScrollable(centre, this));
    status_->raise(); // assistive programs read it last

    const QMargins margins = column->contentsMargins();
    status_->setContentsMargins(margins.left(), 0, margins.right(), 0);
    for (QWidget* const control : std::initializer_list<QWidget*>{find_->Combo1, find_->Combo2,
                                                                  find_->TabControl1->tabBar()}) {
        KeepWheelOut(control);
    }
    AlignColumns();
    resize(FirstSize());
}

/// Makes the list's buttons, the find options and the start button a column of one width.
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

/// Gives the list the height that the rest does not need. In a low window the rest gets only its
/// minimum. Once the user has moved the splitter, this does nothing.
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

} // namespace vexmarrow
