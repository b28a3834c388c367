// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

namespace vexmarrow {

/// The shape of the main window's mouse pointer, which also tells whether the program is busy.
class MousePointer {
public:
    enum Shape { Default = 0, Arrow = 1, Hourglass = 11, Custom = 99 };

    virtual ~MousePointer() = default;
    virtual Shape Pointer() const = 0;
    virtual void SetPointer(Shape shape) = 0;

    /// Whether long work is in progress: the hourglass is shown as long as it lasts.
    bool IsBusy() const { return Pointer() == Hourglass; }
};

} // namespace vexmarrow
