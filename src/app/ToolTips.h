// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <string_view>

class QWidget;

namespace vexmarrow {

/// Shows the tool tips of all controls of a window in lines that are short enough to read.
/// Otherwise the toolkit shows each in one line.
void ShowTipsInLines(QWidget& window);

/// A text such as a path as the tool tip of the row that shows it: whole, but cut in its middle
/// where it would not fit on a small screen, in one or more lines. It is markup, in which every
/// mark of the text stands for itself.
QString TipOf(std::u16string_view text);

} // namespace vexmarrow
