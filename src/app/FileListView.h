// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCursor>
#include <QPersistentModelIndex>
#include <QTreeView>

#include <string>
#include <vector>

namespace vexmarrow {

class FileList;

/// The view of the list of files: takes dropped files, and lets the user move a row by dragging it
/// with the mouse, one row at a time with the pointer. Paths that are too long for the column show
/// both their ends. A line shows where the column ends, and an empty list says how to fill it.
class FileListView final : public QTreeView {
    Q_OBJECT

public:
    using Paths = std::vector<std::u16string>;

    /// The list outlives the view.
    FileListView(FileList& list, QWidget* parent);

    /// The pointer while an entry is held.
    void SetDragCursor(const QCursor& cursor) { dragCursor_ = cursor; }

Q_SIGNALS:
    /// Files were dropped. Emitted once the drop itself is over, so that the program they come from
    /// need not wait for what follows.
    void PathsDropped(const Paths& paths);

    /// The mouse has moved over the list.
    void MouseMoved();

    /// The Delete key was pressed, and this row, numbered from 0, is the selected one.
    void DeletePressed(int row);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void TakeFiles(QDropEvent& event) const;
    void EndDragging();
    QModelIndex ShownAt(const QPoint& place) const; // in the viewport; none outside of it
    void MoveDraggedTo(const QModelIndex& under, const QMouseEvent& event);

    FileList& list_;
    QCursor dragCursor_;
    bool bringsFiles_ = false; // the drag over the list
    bool dragging_ = false;    // a mouse button is held down on the list
    QPersistentModelIndex dragged_;
};

} // namespace vexmarrow
