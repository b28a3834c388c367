// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <vector>

class QComboBox;
class QRadioButton;
class QWidget;

namespace vexmarrow {

// Corrections of the toolkit's controls.

/// Sets or clears one option button of a group. Unlike the user, the program can clear all of them.
void SetOption(QRadioButton* option, bool value);

/// Makes the Tab key stop only once in a group of option buttons, at the button that is set. The
/// arrow keys lead to the others.
void MakeOneStop(const std::vector<QRadioButton*>& options);

/// Runs `operation` once whenever the user presses an option button, even one that is set already:
/// with the mouse, with the keyboard, or through the accessibility bus, which changes the state
/// without a click.
void OnPress(QRadioButton* option, std::function<void()> operation);

/// Makes a control ignore the mouse wheel unless it has the focus. Otherwise a user who scrolls the
/// window would change the choices in the controls under the pointer.
void KeepWheelOut(QWidget* control);

/// Lets assistive programs choose from a drop-down list, which must have its model already. They
/// only select an entry, and the toolkit does not take that for a choice.
void ObeySelection(QComboBox* combo);

} // namespace vexmarrow
