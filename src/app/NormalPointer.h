// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QGuiApplication>

namespace vexmarrow {

/// The hourglass belongs to the main window; while a box or dialog waits for the user, for the life
/// of this object, the pointer is the normal one.
class NormalPointer {
public:
    NormalPointer() : set_(QGuiApplication::overrideCursor() != nullptr) {
        if (set_) {
            QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
        }
    }
    ~NormalPointer() {
        if (set_) {
            QGuiApplication::restoreOverrideCursor();
        }
    }
    NormalPointer(const NormalPointer&) = delete;
    NormalPointer& operator=(const NormalPointer&) = delete;

private:
    bool set_;
};

} // namespace vexmarrow
