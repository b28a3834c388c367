// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>

#include <initializer_list>

class QPalette;

namespace vexmarrow {

// Colours that can be seen and read in every palette. A contrast is the ratio of two luminances as
// web accessibility guidelines define it: from 1, the same, to 21, black on white.

constexpr double kLeastOfLetters = 4.5;  ///< contrast of letters with their ground
constexpr double kLeastOfOutlines = 3.0; ///< contrast of what is no letter, such as a frame

double Contrast(const QColor& one, const QColor& other);

/// `wanted` if its contrast with all of `grounds` is at least `least`, else the first colour on the
/// way from it to `letters` that has it; `letters` where none has.
QColor Visible(const QColor& wanted, const QColor& letters, std::initializer_list<QColor> grounds,
               double least);

/// Black or white, whichever is better to read on `ground`.
QColor LettersOn(const QColor& ground);

/// Of frames, unset options and lines, seen against windows and lists. Where a palette has the
/// highest contrast, so has this.
QColor OutlineColour(const QPalette& palette);

/// Of what shows where the keyboard goes, on buttons, too: that of selections, as far as it can be
/// seen.
QColor FocusColour(const QPalette& palette);

/// Of letters that are not to catch the eye, on windows, lists and buttons.
QColor QuietColour(const QPalette& palette);

} // namespace vexmarrow
