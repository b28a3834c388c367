// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/EventLoop.h"

#include <QElapsedTimer>

#include <functional>
#include <utility>

namespace vexmarrow {

/// Yields to Qt's event loop, and knows whether the program is ending.
class QtEventLoop final : public EventLoop {
public:
    /// Makes Yield call `show` with the progress, about ten times a second and for the last item.
    void SetProgressDisplay(std::function<void(const Progress&)> show) { show_ = std::move(show); }

    void Yield(const Progress& progress) override;

    /// From now on every yield and every box throws ProgramEnded.
    void End() { ended_ = true; }

    /// Throws ProgramEnded if the program is ending.
    void ThrowIfEnded() const {
        if (ended_) {
            throw ProgramEnded();
        }
    }

private:
    std::function<void(const Progress&)> show_;
    QElapsedTimer sinceShown_;
    bool ended_ = false;
};

/// Runs the operation of a handler. If the program ends meanwhile, this catches ProgramEnded.
template <typename Operation>
void RunHandler(Operation&& operation) {
    try {
        std::forward<Operation>(operation)();
    } catch (const ProgramEnded&) {
        return;
    }
}

} // namespace vexmarrow
