// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>

#include <functional>
#include <string_view>
#include <vector>

class QComboBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QWidget;

namespace vexmarrow {

// How the windows make their controls. The object name is the designer's name of the control,
// which support reads off error reports; the accessible name is the caption without surrounding
// blanks and without the "&" that marks the letter which, with Alt, leads to the control.

QPushButton* MakeButton(QWidget* parent, std::u16string_view name, std::u16string_view caption);
QRadioButton* MakeOption(QWidget* parent, std::u16string_view name, std::u16string_view caption);

/// A button in a column that gets lower where there is little room.
QPushButton* MakeLowButton(QWidget* parent, std::u16string_view name, std::u16string_view caption);

/// A button with a caption of a few marks, which is not wide.
QPushButton* MakeSmallButton(QWidget* parent, std::u16string_view name, std::u16string_view caption,
                             std::u16string_view accessibleName);

/// Makes buttons that stand in a row as wide as the widest of them.
void MakeEquallyWide(const QList<QPushButton*>& row);

/// A caption over `control`, which takes its accessible name from it.
QLabel* MakeLabel(QWidget* parent, std::u16string_view name, std::u16string_view caption,
                  QWidget* control);

void Name(QWidget* control, std::u16string_view name, std::u16string_view accessibleName);

/// The window over which a box or dialog appears: the dialog that is open, else the main window.
QWidget* OwnerOfBoxes(QWidget* mainWindow);

/// Sets one option button of a group. Unlike a user, a program can also leave a whole group unset.
void SetOption(QRadioButton* option, bool value);

/// Makes a group of option buttons one stop of the Tab key: the one that is set, from which the
/// arrow keys lead on.
void MakeOneStop(const std::vector<QRadioButton*>& options);

/// Runs `operation` once whenever the user presses the option button: by mouse, by keyboard, or
/// through the accessibility bus (which changes the state without a click), and also when it was
/// set already.
void OnPress(QRadioButton* option, std::function<void()> operation);

/// Has the wheel pass over a control that has not the focus: it is there to scroll the window, and
/// would choose something on its way.
void KeepWheelOut(QWidget* control);

/// Lets assistive programs choose from a drop-down list. They select in the list that drops down,
/// which by itself chooses nothing. To be called once the list has its model.
void ObeySelection(QComboBox* combo);

} // namespace vexmarrow
