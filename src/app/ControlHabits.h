// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <vector>

class QComboBox;
class QRadioButton;
class QWidget;

namespace vexmarrow {

// How controls behave where the toolkit's own behaviour does not suit.

/// Sets or clears one option button of a group. Unlike a user, the program can clear all of them.
void SetOption(QRadioButton* option, bool value);

/// Makes a group of option buttons one stop of the Tab key: the button that is set. From there the
/// arrow keys lead on.
void MakeOneStop(const std::vector<QRadioButton*>& options);

/// Runs `operation` once whenever the user presses the option button: with the mouse, with the
/// keyboard, or through the accessibility bus, which changes the state without a click. Pressing a
/// button that is already set counts as well.
void OnPress(QRadioButton* option, std::function<void()> operation);

/// Makes a control ignore the mouse wheel unless it has the focus. Otherwise a user who scrolls the
/// window would change what is chosen in the controls under the pointer.
void KeepWheelOut(QWidget* control);

/// Lets assistive programs choose from a drop-down list. They select in the list that drops down,
/// which by itself chooses nothing. The list must have its model already.
void ObeySelection(QComboBox* combo);

} // namespace vexmarrow
