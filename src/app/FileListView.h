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

/// The view of the list of files. It takes dropped files and lets the user drag a row with the
/// mouse, which swaps the row with each row that the pointer reaches. A path that is too long for
/// the column shows both its ends. A line marks the end of the column, and an empty list says how
/// to fill it.
class FileListView final : public QTreeView {
    Q_OBJECT

public:
    using Paths = std::vector<std::u16string>;

    /// The list must outlive the view.
    FileListView(FileList& list, QWidget* parent);

    /// Sets the pointer that is shown while a row is dragged.
    void SetDragCursor(const QCursor& cursor) { dragCursor_ = cursor; }

Q_SIGNALS:
    /// Files were dropped. Emitted after the drop is over, so that the program from which they come
    /// does not have to wait.
    void PathsDropped(const Paths& paths);

    void MouseMoved();

    /// The user has pressed Delete while `row`, numbered from 0, was selected.
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
    QModelIndex ShownAt(const QPoint& place) const;
    void MoveDraggedTo(const QModelIndex& under, const QMouseEvent& event);

    FileList& list_;
    QCursor dragCursor_;
    bool bringsFiles_ = false; // whether the drag over the list carries files
    bool dragging_ = false;    // whether a mouse button is held down on the list
    QPersistentModelIndex dragged_;
};

} // namespace vexmarrow
