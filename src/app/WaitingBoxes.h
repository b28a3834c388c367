// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

class QDialog;
class QWidget;

namespace vexmarrow {

// Boxes are the dialogs that wait for the user's answer. They keep the user's input from the
// windows behind them, but they are not modal: the toolkit never tells a window behind a modal
// dialog that it is to be closed, and the main window can always be closed.

/// Shows a box, waits until it is closed and returns its result (QDialog::result). Meanwhile its
/// owner, the owner's owner and so on get no input; a press on one of them brings the box to the
/// front. The user can close only the outermost of these windows.
int WaitFor(QDialog& box);

/// The box or modal dialog that the user must answer first; null if there is none.
QWidget* TopBox();

/// The window over which the next box appears: the top box, or the main window if there is none.
QWidget* OwnerOfBoxes(QWidget* mainWindow);

/// Whether a box keeps the user from a control. Handlers of buttons must ask, because assistive
/// programs press a button without an event that the box could keep back.
bool IsBehindBox(const QWidget& control);

/// Closes all waiting boxes, the last one first.
void CloseBoxes();

} // namespace vexmarrow
