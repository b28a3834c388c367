// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/ControlTable.h"

#include <QWidget>

#include <vector>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QRadioButton;
class QTabWidget;

namespace vexmarrow {

class Form1;
class LinesEdit;
class Note;
class SetsTable;

/// What to find and what to put in its place, and in which part of the lines. Makes and lays out
/// the controls; what they do is wired by the main window.
class FindPanel final : public QWidget {
    Q_OBJECT

public:
    FindPanel(ControlTable<Form1> controls, QWidget* parent);

    QTabWidget* TabControl1;
    LinesEdit* Text1 = nullptr;  // " Find what (exact case):"
    LinesEdit* Text2 = nullptr;  // " Replace with:"
    QComboBox* Combo1 = nullptr; // " Find what (exact case):"
    QComboBox* Combo2 = nullptr; // " Replace with:"
    SetsTable* Sets = nullptr;   // all sets
    QGroupBox* Frame1;           // "Find Options"
    std::vector<QRadioButton*> Options;
    QCheckBox* ReadAsVCards; // for both tabs
    Note* TextsNote = nullptr;
    Note* SetsNote = nullptr;
    Note* OptionsNote;

private:
    QWidget* MakeSinglePairTab();
    QWidget* MakeSetsTab(ControlTable<Form1> controls);
};

} // namespace vexmarrow
