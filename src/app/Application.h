// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QApplication>

class QKeyEvent;

namespace vexmarrow {

/// The toolkit's application object, with the behaviour that all windows of the program share.
/// The font family is Arial, in the size and weight of the desktop, also after the desktop has
/// changed its fonts. Outlines, grey text and selected text can be seen in every palette.
/// A key that is held down presses a button only once. Otherwise "Start Replacing" and the "OK" of
/// its last message would alternate, and each run would change the results of the run before it.
class Application final : public QApplication {
    Q_OBJECT

public:
    Application(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;

protected:
    bool event(QEvent* event) override;

private:
    static void SetFontFamily();
    bool IsHeld(const QKeyEvent& event) const;

    int released_ = 0; // the key that was released last
    quint64 releasedAt_ = 0;
};

} // namespace vexmarrow
