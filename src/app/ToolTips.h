// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

class QWidget;

namespace vexmarrow {

/// Gives every control of a window its tool tip: one sentence on what it does. They all stand in
/// ToolTips.cpp, under the names of the window and its controls.
void SetToolTips(QWidget& window);

} // namespace vexmarrow
