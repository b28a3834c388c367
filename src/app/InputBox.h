// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

class QLineEdit;

namespace vexmarrow {

/// Asks for one line of text of any length.
class InputBox final : public QDialog {
    Q_OBJECT

public:
    InputBox(QWidget* owner, const QString& title, const QString& prompt,
             const QString& suggestion);

    /// Shows the box and waits: the answer, the empty text on cancel.
    QString Ask();

private:
    QLineEdit* answer_;
};

} // namespace vexmarrow
