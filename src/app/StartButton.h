// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPushButton>

namespace vexmarrow {

/// The button that the whole window leads to: bold letters on the colour of selections, dark or
/// light enough to read them, and inside it a ring in the colour of its letters while the keyboard
/// goes to it. A skin that has rules for buttons draws it in its own way.
class StartButton final : public QPushButton {
    Q_OBJECT

public:
    explicit StartButton(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace vexmarrow
