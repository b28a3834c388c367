// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/EventLoop.h"

#include <QElapsedTimer>

#include <functional>

namespace vexmarrow {

/// Yields to Qt's event loop, and knows whether the program is ending.
class QtEventLoop final : public EventLoop {
public:
    /// `show` is called with the progress from a yield: some twenty times a second, and for the
    /// last item.
    void SetProgressDisplay(std::function<void(const Progress&)> show) { show_ = std::move(show); }

    void Yield(const Progress& progress) override;

    /// From now on every yield and every box throws ProgramEnded.
    void End() { ended_ = true; }

    /// Throws ProgramEnded when the program is ending.
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

} // namespace vexmarrow
