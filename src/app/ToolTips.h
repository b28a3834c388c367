// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <string_view>

class QWidget;

namespace vexmarrow {

/// Makes the tool tips of all controls of a window appear in lines that are short enough to read.
/// The toolkit would show each tip in one line.
void ShowTipsInLines(QWidget& window);

/// Converts the text of a row, such as a path, to its tool tip of one or more lines. If the text
/// would not fit on a small screen, it is cut in its middle. The result is markup that shows the
/// text literally.
QString TipOf(std::u16string_view text);

} // namespace vexmarrow
