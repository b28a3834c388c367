// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>

#include <string_view>

class QLabel;
class QPushButton;
class QRadioButton;
class QWidget;

namespace vexmarrow {

// How the windows make their controls. `name` is the object name. Where a window has a table of
// controls (see ControlTable.h), that gives the caption.

QPushButton* MakeButton(QWidget* parent, std::u16string_view name,
                        std::u16string_view caption = {});
QRadioButton* MakeOption(QWidget* parent, std::u16string_view name);

/// A button for a column that is squeezed where there is little room.
QPushButton* MakeLowButton(QWidget* parent, std::u16string_view name);

/// A narrow button, for a caption of a few characters.
QPushButton* MakeSmallButton(QWidget* parent, std::u16string_view name);

/// A caption above or beside `control`.
QLabel* MakeLabel(QWidget* parent, std::u16string_view name, QWidget* control);

/// Makes all buttons of a row as wide as the widest of them.
void MakeEquallyWide(const QList<QPushButton*>& row);

void SetName(QWidget* control, std::u16string_view name);

/// Sets the text of a button, the title of a frame or, for any other control, the text of its
/// label. In it, "&" precedes the letter that, with Alt, leads to the control. Assistive programs
/// read the same text, without that mark and without surrounding blanks, unless `spoken` gives them
/// another.
void SetCaption(QWidget* control, std::u16string_view caption, std::u16string_view spoken = {});

} // namespace vexmarrow
