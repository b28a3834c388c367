// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QApplication>

class QKeyEvent;

namespace vexmarrow {

/// The toolkit's application with what every window of the program has in common: letters of the
/// family Arial in the desktop's size and weight, and outlines, quiet letters and selected ones
/// that can be seen. All are kept when the desktop changes its looks, which some do only once the
/// program has started.
///
/// A key that is held down presses a button once and not again and again: "Start Replacing" and the
/// "OK" of its last message would take turns, and each run changes the results of the one before.
class Application final : public QApplication {
    Q_OBJECT

public:
    Application(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;

protected:
    bool event(QEvent* event) override;

private:
    static void KeepFamily();
    static void KeepOutlines();
    bool IsHeld(const QKeyEvent& event) const;

    int released_ = 0; // the key that was released last
    quint64 releasedAt_ = 0;
};

} // namespace vexmarrow
