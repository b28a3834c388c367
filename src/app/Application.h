// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QApplication>

namespace vexmarrow {

/// The toolkit's application with what every window of the program has in common: letters of the
/// family Arial in the desktop's size and weight, and outlines that can be seen. Both are kept when
/// the desktop changes its looks, which some do only once the program has started.
class Application final : public QApplication {
    Q_OBJECT

public:
    Application(int& argc, char** argv);

protected:
    bool event(QEvent* event) override;

private:
    static void KeepFamily();
    static void KeepOutlines();
};

} // namespace vexmarrow
