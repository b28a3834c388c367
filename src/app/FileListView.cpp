// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/FileListView.h"

#include "app/Colours.h"
#include "app/FileListModel.h"
#include "app/Rows.h"
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

QString UriList() {
    return QStringLiteral("text/uri-list");
}

FileListView::Paths PathsOf(const QByteArray& uris) {
    return PathsInUriList({uris.constData(), static_cast<std::size_t>(uris.size())},
                          QSysInfo::machineHostName().toStdString());
}

/// The column's width: 7000 twentieths of a point.
int ColumnWidth(const QWidget& view) {
    constexpr int kTwips = 7000;
    constexpr int kTwipsPerInch = 1440;
    return (kTwips * view.logicalDpiX() + kTwipsPerInch / 2) / kTwipsPerInch;
}

/// Height of the pointer on the screen in its own pixels; where the desktop does not tell that,
/// within the list.
int HeightOf(const QMouseEvent& event, const QWidget& view) {
    if (QGuiApplication::platformName().startsWith(QStringLiteral("wayland"))) {
        return qRound(event.position().y());
    }
    // A screen's place among others is in its own pixels already; what lies within is not.
    const int origin = view.screen()->geometry().y();
    return qRound(origin + (event.globalPosition().y() - origin) * view.devicePixelRatioF());
}

/// Draws the line where the column ends, over the whole height of the list or its header. Not every
/// style has one.
void DrawEdge(QPainter& painter, const QHeaderView& header, int height) {
    const int within = header.isRightToLeft() ? 0 : header.sectionSize(0) - 1;
    painter.fillRect(header.sectionViewportPosition(0) + within, 0, 1, height,
                     OutlineColour(header.palette()));
}

class Header final : public QHeaderView {
public:
    explicit Header(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
        setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        setStretchLastSection(false);
        setSectionsMovable(false);
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
    setExpandsOnDoubleClick(false);
    setUniformRowHeights(true); // or every row would be measured
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setAcceptDrops(true);
    setMouseTracking(true);
    header()->resizeSection(0, ColumnWidth(*this));
}

void FileListView::dragEnterEvent(QDragEnterEvent* event) {
    const QByteArray uris = event->mimeData()->data(UriList());
    bringsFiles_ = !PathsOf(uris).empty();
    TakeFiles(*event);
}

/// Takes a drag with files for copying: after a move the files would be deleted where they were.
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
        // The bytes as they came: as addresses, the toolkit would spoil some of them.
        const Paths paths = PathsOf(event->mimeData()->data(UriList()));
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
    if (!currentIndex().isValid()) { // what is painted then stays in its place
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
    // The toolkit finds rows beyond the edges as well, such as one below the header.
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
        mousePressEvent(event); // of the other buttons, every press is one by itself
    }
}

void FileListView::mouseMoveEvent(QMouseEvent* event) {
    Q_EMIT MouseMoved();
    if (event->buttons() == Qt::NoButton) {
        EndDragging(); // the release went to a box that opened meanwhile
    }
    if (!dragging_) {
        if (event->buttons() == Qt::NoButton) { // or the view would select along the way
            QTreeView::mouseMoveEvent(event);
        }
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
    setAutoScroll(false); // selecting must not scroll; only the edges below do
    setCurrentIndex(under);
    setAutoScroll(true);
    dragged_ = under;
    const int height = HeightOf(event, *this);
    if (height < kUpperEdge) {
        scrollTo(under.siblingAtRow(under.row() - 1)); // nothing where there is no such row
    } else if (height >= kLowerEdge) {
        scrollTo(under.siblingAtRow(under.row() + 1));
    }
}

void FileListView::mouseReleaseEvent(QMouseEvent* event) {
    QTreeView::mouseReleaseEvent(event);
    dragging_ = true;
    EndDragging();
}

void FileListView::EndDragging() {
    if (dragging_) {
        dragging_ = false;
        viewport()->setCursor(Qt::ArrowCursor);
    }
}

} // namespace vexmarrow
