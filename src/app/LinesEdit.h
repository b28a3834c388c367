// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPlainTextEdit>

#include <string>
#include <string_view>

namespace vexmarrow {

/// A text box of several lines that returns exactly what was typed or pasted. Enter begins a line,
/// Tab leaves the box.
class LinesEdit final : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit LinesEdit(QWidget* parent);

    /// The text, with CR LF between its lines and every other character as it was entered.
    std::u16string Text() const;

    void SetText(std::u16string_view text);

    /// A few lines high, so that a large window gives its room to other controls.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void insertFromMimeData(const QMimeData* source) override;
};

} // namespace vexmarrow
