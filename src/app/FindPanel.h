// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/ControlTable.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QTabWidget;

namespace vexmarrow {

class Form1;
class LinesEdit;
class Note;
class SetsTable;

/// The texts to find and their replacements, and the find options.
class FindPanel final : public QWidget {
    Q_OBJECT

public:
    FindPanel(ControlTable<Form1> controls, QWidget* parent);

    QTabWidget* TabControl1;
    LinesEdit* Text1 = nullptr;  // " Find what (exact case):"
    LinesEdit* Text2 = nullptr;  // " Replace with:"
    QComboBox* Combo1 = nullptr; // " Find what (exact case):"
    QComboBox* Combo2 = nullptr; // " Replace with:"
    SetsTable* Sets = nullptr;
    QGroupBox* Frame1;       // "Find Options"
    QCheckBox* ReadAsVCards; // for both tabs
    Note* TextsNote = nullptr;
    Note* SetsNote = nullptr;
    Note* OptionsNote;

private:
    QWidget* MakeSinglePairTab();
    QWidget* MakeSetsTab(ControlTable<Form1> controls);
};

} // namespace vexmarrow
