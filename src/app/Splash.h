// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

#include <string>

class QCheckBox;
class QFrame;
class QLabel;

namespace vexmarrow {

class SettingsStore;
class SystemCalls;

/// The tips screen: one picture with a check box under it. Nothing opens it by itself; it is ready
/// for a caller. It has no frame but its own lines; Escape or a click on the picture closes it.
class Splash final : public QWidget {
    Q_OBJECT

public:
    /// `programFolder` is the folder of the program file, without a separator at its end.
    Splash(SystemCalls& calls, SettingsStore& settings, const std::u16string& programFolder);

    /// Shows the picture that is the first file of the folder "Splash", unless the setting
    /// "ShowAgain" says otherwise or there is none, and returns at once. Throws Failure when the
    /// setting is no number.
    void SplashShow();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void Check1_Click();
    QFrame* MakeLine(const char* name);

    SystemCalls& calls_;
    SettingsStore& settings_;
    std::u16string folder_; // of the picture, with a separator at its end
    QLabel* Image1;         // the picture
    QCheckBox* Check1;      // "Hide this at next startup"
    QFrame* Line1;          // left edge
    QFrame* Line2;          // top edge
    QFrame* Line3;          // right edge
    QFrame* Line4;          // bottom edge
};

} // namespace vexmarrow
