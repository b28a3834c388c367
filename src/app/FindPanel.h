// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QPushButton;
class QRadioButton;
class QTabWidget;

namespace vexmarrow {

class LinesEdit;
class Note;
class SetsTable;

/// What to find and what to put in its place, and in which part of the lines. Makes and lays out
/// the controls; what they do is wired by the main window.
class FindPanel final : public QWidget {
    Q_OBJECT

public:
    explicit FindPanel(QWidget* parent);

    QTabWidget* TabControl1;
    LinesEdit* Text1 = nullptr;          // " Find what (exact case):"
    LinesEdit* Text2 = nullptr;          // " Replace with:"
    QComboBox* Combo1 = nullptr;         // " Find what (exact case):"
    QComboBox* Combo2 = nullptr;         // " Replace with:"
    SetsTable* Sets = nullptr;           // all sets
    QPushButton* PushButton7 = nullptr;  // "Add Set"
    QPushButton* PushButton6 = nullptr;  // "Remove Selected Set"
    QPushButton* PushButton10 = nullptr; // "Load Sets"
    QPushButton* PushButton4 = nullptr;  // "Clear"
    QPushButton* PushButton12 = nullptr; // "Save Sets"
    QGroupBox* Frame1;                   // "Find Options"
    QRadioButton* Option1;               // "Find and replace in fields only"
    QRadioButton* Option2;               // "Find and replace in values only"
    QRadioButton* Option3;               // "Find and replace in fields and values"
    QCheckBox* ReadAsVCards;             // for both tabs
    Note* TextsNote = nullptr;
    Note* SetsNote = nullptr;
    Note* OptionsNote;

private:
    QWidget* MakeSinglePairTab();
    QWidget* MakeSetsTab();
};

} // namespace vexmarrow
