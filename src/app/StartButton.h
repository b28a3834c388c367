// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPushButton>

namespace vexmarrow {

/// The most important button of the window. Its caption is bold, on the colour of selections, made
/// dark or light enough to read it. A ring inside the button shows that it has the focus. If a skin
/// has rules for buttons, the skin draws it instead.
class StartButton final : public QPushButton {
    Q_OBJECT

public:
    explicit StartButton(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace vexmarrow
