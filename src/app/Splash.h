// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

#include <array>
#include <string>
#include <string_view>

class QCheckBox;
class QFrame;
class QLabel;

namespace vexmarrow {

class SettingsStore;
class SystemCalls;

/// The tips screen: one picture with a check box below it. The program never opens it; it is ready
/// for a caller. Its only frame is its own four lines. Escape or a click on the picture closes it.
class Splash final : public QWidget {
    Q_OBJECT

public:
    /// `programFolder` is the folder of the program file, without a separator at its end.
    Splash(SystemCalls& calls, SettingsStore& settings, const std::u16string& programFolder);

    /// Shows the first file of the folder "Splash" as the picture and returns at once. Does nothing
    /// if the setting "ShowAgain" is not 0 or there is no picture. Throws Failure if the setting is
    /// not a number.
    void SplashShow();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QFrame* MakeLine(std::u16string_view name);

    SystemCalls& calls_;
    SettingsStore& settings_;
    std::u16string folder_; // "Splash", with a separator at its end
    QLabel* Image1;
    QCheckBox* Check1;             // "Hide this at next startup"
    std::array<QFrame*, 4> lines_; // at the left, top, right and bottom edge
};

} // namespace vexmarrow
