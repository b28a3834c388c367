// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCheckBox>

namespace vexmarrow {

/// A check box whose caption takes as many lines as its width asks for. Where letters are large,
/// the toolkit's own would make the window wide.
class WrappedCheckBox final : public QCheckBox {
    Q_OBJECT

public:
    explicit WrappedCheckBox(QWidget* parent);

    /// Wide enough for one line, and as high as all lines in its present width.
    QSize sizeHint() const override;

    /// As high, but not wide.
    QSize minimumSizeHint() const override;

protected:
    void initStyleOption(QStyleOptionButton* option) const override;
    void resizeEvent(QResizeEvent* event) override;
};

} // namespace vexmarrow
