// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>

#include <initializer_list>

class QPalette;

namespace vexmarrow {

// Colours that can be seen and read in every palette. A contrast is the ratio of two luminances as
// web accessibility guidelines define it: from 1 (the same) to 21 (black on white).

constexpr double kMinTextContrast = 4.5;    ///< between text and its background
constexpr double kMinOutlineContrast = 3.0; ///< between a frame or line and its background

double Contrast(const QColor& one, const QColor& other);

/// Mixes `wanted` with as little of `text` as it takes to reach the contrast `least` with all
/// `backgrounds`. Returns `text` if no mixture reaches it.
QColor VisibleColour(const QColor& wanted, const QColor& text,
                     std::initializer_list<QColor> backgrounds, double least);

/// Black or white, whichever is easier to read on `background`.
QColor TextColourOn(const QColor& background);

/// For frames, unset options and lines, on windows and lists. In a palette of the highest contrast,
/// this is the colour of text.
QColor OutlineColour(const QPalette& palette);

/// For the outline of the control that has the keyboard's focus: the colour of selections, made
/// visible on windows, lists and buttons.
QColor FocusColour(const QPalette& palette);

/// For text that should not catch the eye, on windows, lists and buttons.
QColor QuietColour(const QPalette& palette);

} // namespace vexmarrow
