// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCursor>
#include <QString>

namespace vexmarrow {

// The optional files beside the program that change how its windows look.

/// Loads a cursor or icon file as a pointer, in the size that suits the screen. The hot spot is
/// that of the cursor file; an icon's is its top left corner. Throws Failure if the file contains
/// no picture of a suitable size.
QCursor LoadPointer(const QString& path, qreal devicePixelRatio);

/// Applies a style sheet file to all windows of the program. Throws Failure if it cannot be read or
/// is not a valid style sheet; then the windows have no skin.
void ApplySkin(const QString& path);

} // namespace vexmarrow
