// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <string_view>

class QWidget;

namespace vexmarrow {

/// Gives every control of a window its tool tip: one sentence on what it does. They all stand in
/// ToolTips.cpp, under the names of the window and its controls.
void SetToolTips(QWidget& window);

/// A text such as a path as the tool tip of the row that shows it: whole, but cut in its middle
/// where it would not fit on a small screen, in one or more lines. It is markup, in which every
/// mark of the text stands for itself.
QString TipOf(std::u16string_view text);

} // namespace vexmarrow
