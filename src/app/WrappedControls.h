// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCheckBox>
#include <QLabel>

#include <string_view>

namespace vexmarrow {

// Controls whose text takes as many lines as their width requires. They are always high enough to
// show all of these lines.

class WrappedLabel : public QLabel {
    Q_OBJECT

public:
    WrappedLabel(QWidget* parent, std::u16string_view name);

    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
};

/// A check box that does not make the window wide when the font is large.
class WrappedCheckBox final : public QCheckBox {
    Q_OBJECT

public:
    WrappedCheckBox(QWidget* parent, std::u16string_view name);

    QSize sizeHint() const override; // wide enough for a single line
    QSize minimumSizeHint() const override;

protected:
    void initStyleOption(QStyleOptionButton* option) const override;
    void resizeEvent(QResizeEvent* event) override;
};

} // namespace vexmarrow
