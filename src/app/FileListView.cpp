// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/FileListView.h"

#include "app/Colours.h"
#include "app/FileListModel.h"
#include "app/MakeControls.h"
#include "app/RowViews.h"
#include "filelist/FileList.h"
#include "filelist/ReceivedPaths.h"

#include <QDropEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QStyledItemDelegate>
#include <QSysInfo>

namespace vexmarrow {
namespace {

FileListView::Paths PathsOf(const QDropEvent& event) {
    // The toolkit's own URLs would lose names that are not UTF-8.
    const QByteArray uris = event.mimeData()->data(QStringLiteral("text/uri-list"));
    return PathsInUriList({uris.constData(), static_cast<std::size_t>(uris.size())},
                          QSysInfo::machineHostName().toStdString());
}

constexpr int kColumnWidth = 7000; // twips

/// The pointer's y coordinate on the screen, in the screen's own pixels. Wayland does not tell it,
/// so there it is the coordinate within the list.
int HeightOf(const QMouseEvent& event, const QWidget& view) {
    if (QGuiApplication::platformName().startsWith(QStringLiteral("wayland"))) {
        return qRound(event.position().y());
    }
    // The origin of a screen is in the screen's own pixels already, a distance on it is not.
    const int origin = view.screen()->geometry().y();
    return qRound(origin + (event.globalPosition().y() - origin) * view.devicePixelRatioF());
}

/// Draws the line at the end of the column, over the whole height of the list or its header. Not
/// every style does.
void DrawEdge(QPainter& painter, const QHeaderView& header, int height) {
    const int within = header.isRightToLeft() ? 0 : header.sectionSize(0) - 1;
    painter.fillRect(header.sectionViewportPosition(0) + within, 0, 1, height,
                     OutlineColour(header.palette()));
}

class Header final : public QHeaderView {
public:
    explicit Header(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
        setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        QHeaderView::paintEvent(event);
        QPainter painter(viewport());
        DrawEdge(painter, *this, height());
    }
};

class RowDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return {QStyledItemDelegate::sizeHint(option, index).width(), RowHeight(*option.widget)};
    }
};

} // namespace

FileListView::FileListView(FileList& list, QWidget* parent) : QTreeView(parent), list_(list) {
    setModel(new FileListModel(list, this));
    setHeader(new Header(this));
    setItemDelegate(new RowDelegate(this));
    setTextElideMode(Qt::ElideMiddle);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true); // saves measuring every row
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setAcceptDrops(true);
    setMouseTracking(true);
    header()->resizeSection(0, PixelsFromTwips(*this, kColumnWidth));
}

void FileListView::dragEnterEvent(QDragEnterEvent* event) {
    bringsFiles_ = !PathsOf(*event).empty();
    TakeFiles(*event);
}

/// Accepts a drag of files only as a copy. After a move, its source would delete the files.
void FileListView::TakeFiles(QDropEvent& event) const {
    if (bringsFiles_ && event.possibleActions().testFlag(Qt::CopyAction)) {
        event.setDropAction(Qt::CopyAction);
        event.accept();
    } else {
        event.ignore();
    }
}

void FileListView::dragMoveEvent(QDragMoveEvent* event) {
    TakeFiles(*event);
}

void FileListView::dropEvent(QDropEvent* event) {
    TakeFiles(*event);
    if (event->isAccepted()) {
        const Paths paths = PathsOf(*event);
        QMetaObject::invokeMethod(
            this, [this, paths] { Q_EMIT PathsDropped(paths); }, Qt::QueuedConnection);
    }
}

void FileListView::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    QPainter painter(viewport());
    if (model()->rowCount() == 0) {
        painter.setPen(QuietColour(palette()));
        const int beside = fontMetrics().averageCharWidth();
        QRect words;
        painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap,
                         QStringLiteral("Drag and drop files here."), &words);
        painter.setClipRegion(QRegion(viewport()->rect()) - words.adjusted(-beside, 0, beside, 0));
    }
    DrawEdge(painter, *header(), viewport()->height());
    painter.end();
    ShowFocusWithoutRow(*this);
}

void FileListView::scrollContentsBy(int dx, int dy) {
    QTreeView::scrollContentsBy(dx, dy);
    if (!currentIndex().isValid()) { // what paintEvent() adds then must not scroll
        viewport()->update();
    }
}

void FileListView::keyPressEvent(QKeyEvent* event) {
    const QModelIndexList selected = selectionModel()->selectedIndexes();
    const bool alone = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (event->key() == Qt::Key_Delete && alone && !selected.isEmpty()) {
        Q_EMIT DeletePressed(selected.front().row());
    } else {
        QTreeView::keyPressEvent(event);
        SelectRowWithFocus(*this, event->key());
    }
}

QModelIndex FileListView::ShownAt(const QPoint& place) const {
    // Outside the viewport, the toolkit finds rows that are hidden, for example below the header.
    return viewport()->rect().contains(place) ? indexAt(place) : QModelIndex();
}

void FileListView::mousePressEvent(QMouseEvent* event) {
    QTreeView::mousePressEvent(event);
    dragging_ = true;
    if (indexAt(event->position().toPoint()).isValid()) {
        viewport()->setCursor(dragCursor_);
        dragged_ = currentIndex();
    }
}

void FileListView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        QTreeView::mouseDoubleClickEvent(event);
    } else {
        mousePressEvent(event); // the other buttons know no double click
    }
}

void FileListView::mouseMoveEvent(QMouseEvent* event) {
    Q_EMIT MouseMoved();
    if (event->buttons() == Qt::NoButton) {
        if (dragging_) {
            EndDragging(); // the release went to a box that has opened meanwhile
        }
        QTreeView::mouseMoveEvent(event);
    }
    if (!dragging_) {
        return;
    }
    const QModelIndex under = ShownAt(event->position().toPoint());
    if (under.isValid() && dragged_.isValid()) {
        MoveDraggedTo(under, *event);
    }
}

void FileListView::MoveDraggedTo(const QModelIndex& under, const QMouseEvent& event) {
    constexpr int kUpperEdge = 305;
    constexpr int kLowerEdge = 365;
    const auto number = [](int row) { return static_cast<std::size_t>(row) + 1; };
    if (list_.Row(number(under.row())) == list_.Row(number(dragged_.row()))) {
        return;
    }
    list_.Swap(number(under.row()), number(dragged_.row()));
    setAutoScroll(false); // selecting must not scroll the list, only the edges do
    setCurrentIndex(under);
    setAutoScroll(true);
    dragged_ = under;
    const int height = HeightOf(event, *this);
    if (height < kUpperEdge) {
        scrollTo(under.siblingAtRow(under.row() - 1)); // does nothing above the first row
    } else if (height >= kLowerEdge) {
        scrollTo(under.siblingAtRow(under.row() + 1));
    }
}

void FileListView::mouseReleaseEvent(QMouseEvent* event) {
    QTreeView::mouseReleaseEvent(event);
    EndDragging();
}

void FileListView::EndDragging() {
    dragging_ = false;
    viewport()->setCursor(Qt::ArrowCursor);
}

} // namespace vexmarrow
