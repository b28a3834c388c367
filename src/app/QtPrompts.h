// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Prompts.h"

#include <QPointer>
#include <QWidget>

namespace vexmarrow {

class QtEventLoop;

class QtPrompts final : public Prompts {
public:
    explicit QtPrompts(const QtEventLoop& eventLoop) : eventLoop_(eventLoop) {}

    /// Sets the window over which boxes appear unless another box is open.
    void SetOwner(QWidget* owner) { owner_ = owner; }

    Answer ShowMessage(std::u16string_view text, BoxStyle style,
                       std::u16string_view title) override;
    std::u16string AskForText(std::u16string_view prompt, std::u16string_view suggestion) override;

private:
    const QtEventLoop& eventLoop_;
    QPointer<QWidget> owner_;
};

} // namespace vexmarrow
