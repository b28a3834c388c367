// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QGridLayout;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace vexmarrow {

class Note;

/// The choice where results are saved, and the start button.
class SavePanel final : public QWidget {
    Q_OBJECT

public:
    explicit SavePanel(QWidget* parent);

    /// Sets the sizes that depend on font and style. Call this once the frame has its title; the
    /// panel itself calls it again when the font or the style changes.
    void Measure();

    QGroupBox* Frame2;         // "Save Option"
    QRadioButton* Option5;     // "Save results in folder of original file"
    QRadioButton* Option4;     // "Save results to this folder:"
    QWidget* Frame4;           // holds the folder and its button
    QLineEdit* Text3;          // the output folder
    QPushButton* PushButton14; // "..."
    Note* ResultsNote;
    QPushButton* PushButton1; // "Start Replacing"

protected:
    void changeEvent(QEvent* event) override;

private:
    QGridLayout* grid_;
};

} // namespace vexmarrow
