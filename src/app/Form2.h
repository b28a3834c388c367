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
    /// All arguments must outlive the dialog, which gets the colours of its owner. `overButtons` is
    /// the pointer over its push buttons.
    Form2(SetsLoading& loading, Prompts& prompts, const QCursor& overButtons, QWidget* owner);

    /// Prepares the dialog; call this once before it is shown. Traps its own failures.
    void Form_Load();

private:
    struct Table;

    void PushButton1_Click();  // "Load"
    void PushButton2_Click();  // "Cancel"
    void PushButton16_Click(); // "..." beside the file
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
