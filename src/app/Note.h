// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>

#include <string_view>

namespace vexmarrow {

/// Plain text of as many lines as its width asks for; it always has room for all of them.
class WrappedLabel : public QLabel {
    Q_OBJECT

public:
    WrappedLabel(QWidget* parent, std::u16string_view name);

    /// As high as all its lines in its present width.
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
};

/// A quiet line under a control that says what the user ought to know before a run. It takes no
/// room while there is nothing to say.
class Note final : public WrappedLabel {
    Q_OBJECT

public:
    /// Assistive programs read the line as the description of `control`.
    Note(QWidget* parent, std::u16string_view name, QWidget* control);

    /// An empty text hides the line.
    void Say(std::u16string_view text);

private:
    QWidget* control_;
};

} // namespace vexmarrow
