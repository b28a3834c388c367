// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

class QLineEdit;

namespace vexmarrow {

/// A box that asks for one line of text of any length.
class InputBox final : public QDialog {
    Q_OBJECT

public:
    InputBox(QWidget* owner, const QString& title, const QString& prompt,
             const QString& suggestion);

    /// Shows the box, waits, and returns the answer; the empty text if the user cancels.
    QString Ask();

private:
    QLineEdit* answer_;
};

} // namespace vexmarrow
