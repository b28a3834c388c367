// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>

#include <string_view>

class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;

namespace vexmarrow {

// Functions that make the windows' controls. `name` is the object name. The caption comes from the
// window's table of controls (see ControlTable.h) if it has one.

void SetName(QWidget* control, std::u16string_view name);

template <typename Control>
Control* MakeNamed(QWidget* parent, std::u16string_view name) {
    auto* const control = new Control(parent);
    SetName(control, name);
    return control;
}

QPushButton* MakeButton(QWidget* parent, std::u16string_view name,
                        std::u16string_view caption = {});

/// A button that can be squeezed in a column with little room.
QPushButton* MakeLowButton(QWidget* parent, std::u16string_view name);

/// A narrow button for a caption of a few characters.
QPushButton* MakeSmallButton(QWidget* parent, std::u16string_view name);

/// A button that shows only the beginning of its caption if there is little room.
QPushButton* MakeShrinkingButton(QWidget* parent, std::u16string_view name);

/// A box for one line of text of any length.
QLineEdit* MakeLineEdit(QWidget* parent, std::u16string_view name);

/// A caption above or beside `control`.
QLabel* MakeLabel(QWidget* parent, std::u16string_view name, QWidget* control);

/// Makes all buttons of a row as wide as the widest one.
void MakeEquallyWide(const QList<QPushButton*>& row);

/// Sets the text of a button, the title of a frame or, for any other control, the text of its
/// label. In the caption, "&" precedes the letter that leads to the control together with Alt.
/// Assistive programs read `spoken` or, if that is empty, the caption, without "&" and surrounding
/// blanks.
void SetCaption(QWidget* control, std::u16string_view caption, std::u16string_view spoken = {});

/// Converts twips, of which 1440 make an inch, to pixels of a widget's screen.
int PixelsFromTwips(const QWidget& widget, int twips);

} // namespace vexmarrow
