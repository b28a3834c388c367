// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Prompts.h"

#include <QDialog>

class QLayout;
class QPlainTextEdit;

namespace vexmarrow {

/// A message box for plain text of any length. It never grows beyond the screen: of a text that has
/// no room, the longest paragraph scrolls. Assistive programs see an alert.
class MessageBox final : public QDialog {
    Q_OBJECT

public:
    MessageBox(QWidget* owner, const QString& title, const QString& text, BoxStyle style);

    /// Shows the box and waits. Escape and closing are Later where there is that, else No, else OK.
    Answer Ask();

protected:
    void showEvent(QShowEvent* event) override;

private:
    QSize Most() const; // that the text may take
    QLayout* MakeText(const QString& text);
    QPlainTextEdit* MakeScrollingText();

    Answer answer_;
};

} // namespace vexmarrow
