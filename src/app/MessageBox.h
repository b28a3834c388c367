// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Prompts.h"

#include <QDialog>

class QLayout;
class QPlainTextEdit;

namespace vexmarrow {

/// A message box for plain text of any length. It never becomes larger than the screen; if a text
/// is too long, its longest paragraph scrolls. Assistive programs see an alert.
class MessageBox final : public QDialog {
    Q_OBJECT

public:
    MessageBox(QWidget* owner, const QString& title, const QString& text, BoxStyle style);

    /// Shows the box and waits. Escape and closing the box answer Later if the box offers it, else
    /// No if it offers that, else OK.
    Answer Ask();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QSize LargestText() const;
    QLayout* MakeText(const QString& text);
    QPlainTextEdit* MakeScrollingText();

    Answer answer_;
};

} // namespace vexmarrow
