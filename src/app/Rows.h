// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

class QAbstractItemView;
class QWidget;

namespace vexmarrow {

// What the views of rows have in common.

/// Height of a row in such a view: about one and a half lines of its letters.
int RowHeight(const QWidget& view);

/// Selects the row that has the focus if no row is selected, for the keys that go from row to row:
/// in a list of one row they would lead nowhere. To be called when the view has handled the key.
void SelectRowWithFocus(QAbstractItemView& view, int key);

/// Draws a frame along the edge of a view that has the focus but no row to show it, in styles that
/// do not. To be called when the view has painted itself.
void ShowFocusWithoutRow(QAbstractItemView& view);

} // namespace vexmarrow
