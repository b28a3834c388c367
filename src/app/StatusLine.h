// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/EventLoop.h"

#include <QStatusBar>

class QLabel;
class QProgressBar;

namespace vexmarrow {

class CodePageChooser;

/// The line at the foot of the main window: how many files the list holds, how far long work is,
/// and the code page. Says nothing about results.
class StatusLine final : public QStatusBar {
    Q_OBJECT

public:
    explicit StatusLine(QWidget* parent);

    /// The number of files in the list, which is shown when no work is.
    void ShowCount(std::size_t count);

    void ShowProgress(const Progress& progress);

    /// The work is over, or its display is.
    void ClearProgress();

    CodePageChooser* Combo3; // "Code page of unmarked files:"

private:
    void ShowRest();

    QLabel* count_;
    QProgressBar* bar_;
    QWidget* place_; // of the text, so that its changes lay nothing out anew
    QLabel* progress_;
    std::size_t files_ = 0;
};

} // namespace vexmarrow
