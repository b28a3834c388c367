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

/// Where results go, and the button that starts it all. Makes and lays out the controls; what they
/// do is wired by the main window.
class SavePanel final : public QWidget {
    Q_OBJECT

public:
    explicit SavePanel(QWidget* parent);

    /// Makes room in pixels of the present letters and style. To be called once the frame has its
    /// title; the panel itself follows later changes of letters and style.
    void Measure();

    QGroupBox* Frame2;         // "Save Option"
    QRadioButton* Option5;     // "Save results in folder of original file"
    QRadioButton* Option4;     // "Save results to this folder:"
    QWidget* Frame4;           // holds the folder and its button
    QLineEdit* Text3;          // output folder
    QPushButton* PushButton14; // "..."
    Note* ResultsNote;
    QPushButton* PushButton1; // "Start Replacing"

protected:
    void changeEvent(QEvent* event) override;

private:
    QGridLayout* grid_;
};

} // namespace vexmarrow
