// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

class QDialog;
class QWidget;

namespace vexmarrow {

// The dialogs of the program that wait for the user. They keep the user's input from the windows
// behind them as modal ones do, but these windows still hear that they are to be closed: the
// toolkit never delivers that to a window behind a modal one.

/// Shows a dialog and waits until it is closed; returns its result (QDialog::result). Meanwhile its
/// owner, that window's owner and so on get no input. A press on one of them brings the dialog to
/// the front. Of these windows only the outermost can be closed by the user.
int WaitFor(QDialog& box);

/// The dialog that the user has to answer first, those of the toolkit included; null when there is
/// none.
QWidget* TopBox();

/// The window over which the next box or dialog appears: the top box, else the main window.
QWidget* OwnerOfBoxes(QWidget* mainWindow);

/// Whether a dialog keeps the user from this control. What assistive programs do to a control
/// comes without an event that could be kept back, so the handlers of buttons ask.
bool IsBehindBox(const QWidget& control);

/// Closes all dialogs that wait, the last first; those that wait for them in turn go on.
void CloseBoxes();

} // namespace vexmarrow
