// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace vexmarrow {

class Prompts;
class SetsLoading;

/// The dialog "Load Sets".
class Form2 final : public QDialog {
    Q_OBJECT

public:
    /// Everything handed over outlives the dialog; it looks like its owner. `overButtons` is the
    /// pointer over its push buttons.
    Form2(SetsLoading& loading, Prompts& prompts, const QCursor& overButtons, QWidget* owner);

    /// Start-up, to be called once before the dialog is shown. Traps its own failures.
    void Form_Load();

private:
    struct Table;

    void PushButton1_Click();  // "Load"
    void PushButton2_Click();  // "Cancel"
    void PushButton16_Click(); // "..." of the file
    void Text2_Change();
    void LayOut();

    SetsLoading& loading_;
    Prompts& prompts_;
    QLineEdit* Text1;          // "File To Load:"
    QPushButton* PushButton16; // "..."
    QLineEdit* Text2;          // "Separator:"
    QPushButton* PushButton1;  // "Load"
    QPushButton* PushButton2;  // "Cancel"
    QPushButton* PushButton3;  // "?"
};

} // namespace vexmarrow
