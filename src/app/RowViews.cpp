// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/RowViews.h"

#include "app/Colours.h"
#include "app/OutlinedStyle.h"

#include <QAbstractItemView>
#include <QPainter>

namespace vexmarrow {

int RowHeight(const QWidget& view) {
    return view.fontMetrics().height() * 3 / 2;
}

void SelectRowWithFocus(QAbstractItemView& view, int key) {
    const bool moves =
        key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Home || key == Qt::Key_End;
    if (moves && view.currentIndex().isValid() && !view.selectionModel()->hasSelection()) {
        view.setCurrentIndex(view.currentIndex());
    }
}

void ShowFocusWithoutRow(QAbstractItemView& view) {
    const bool hasFrame = qobject_cast<const OutlinedStyle*>(view.style()) != nullptr;
    if (view.hasFocus() && !view.currentIndex().isValid() && !hasFrame) {
        QPainter painter(view.viewport());
        painter.setPen(FocusColour(view.palette()));
        painter.drawRect(view.viewport()->rect().adjusted(0, 0, -1, -1));
    }
}

} // namespace vexmarrow
