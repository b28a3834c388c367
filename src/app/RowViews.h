// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

class QAbstractItemView;
class QWidget;

namespace vexmarrow {

// Functions that the views of rows share.

/// Height of a row in pixels: about one and a half lines of text.
int RowHeight(const QWidget& view);

/// If no row is selected, a key that moves from row to row selects the row that has the focus.
/// Otherwise such a key would have no effect in a list of one row. Call this after the view has
/// handled the key.
void SelectRowWithFocus(QAbstractItemView& view, int key);

/// Draws a frame inside a view that has the focus but no current row to show it, unless the style
/// draws one. Call this after the view has painted itself.
void ShowFocusWithoutRow(QAbstractItemView& view);

} // namespace vexmarrow
