// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Prompts.h"

#include <QDialog>

class QDialogButtonBox;

namespace vexmarrow {

/// A message box for plain text of any length: a box never grows beyond the screen, its text
/// scrolls. Assistive programs see an alert.
class MessageBox final : public QDialog {
    Q_OBJECT

public:
    MessageBox(QWidget* owner, const QString& title, const QString& text, BoxStyle style);

    /// Shows the box and waits. Escape and closing are Later where there is that, else No, else OK.
    Answer Ask();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* MakeText(const QString& text);
    QWidget* MakeScrollingText(const QString& text, const QSize& size);

    Answer answer_;
};

} // namespace vexmarrow
