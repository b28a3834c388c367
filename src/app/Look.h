// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCursor>
#include <QObject>
#include <QString>

#include <functional>
#include <utility>

class QWidget;

namespace vexmarrow {

// The optional resources beside the program that change how its windows look.

/// A cursor or icon file as a pointer, in the size that suits the screen, with the hot spot of its
/// own (an icon's is its top left). Throws Failure when there is no picture of a fit size in it.
QCursor LoadPointer(const QString& path, qreal devicePixelRatio);

/// Applies a style sheet file to all windows of the program. Throws Failure when it cannot be read
/// or is no style sheet; the windows then keep their look.
void ApplySkin(const QString& path);

/// Calls one of two operations as the mouse moves: over a push button, or over ground between them.
class PointerWatch final : public QObject {
    Q_OBJECT

public:
    using Operation = std::function<void()>;

    /// The operations are called for every single move.
    PointerWatch(Operation overButton, Operation overGround, QObject* parent)
        : QObject(parent), overButton_(std::move(overButton)), overGround_(std::move(overGround)) {}

    /// Watches a widget; whether it is ground goes by its kind.
    void Watch(QWidget* widget);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Operation overButton_;
    Operation overGround_;
};

} // namespace vexmarrow
