// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/EventLoop.h"

#include <QStatusBar>

class QAction;
class QLabel;
class QProgressBar;
class QPushButton;

namespace vexmarrow {

class CodePageChooser;

/// What the user can do about earlier runs at the moment.
struct UndoOffer {
    bool undo = false;        ///< whether the last run can be undone
    bool forget = false;      ///< whether there is anything to forget
    bool keepMissing = false; ///< whether old texts of missing files can be kept
    QString hint;             ///< describes the last run, or why it cannot be undone
    QString missing;          ///< the notice about missing files; empty if there are none
};

/// The line at the bottom of the main window. It shows either the numbers of files and sets, or the
/// hint that the files look like UTF-8, or the progress of long work; then the controls to undo a
/// run, and the code page. It says nothing about results.
class StatusLine final : public QStatusBar {
    Q_OBJECT

public:
    explicit StatusLine(QWidget* parent);

    /// Sets the numbers of files and sets, which are shown while there is no progress to show.
    void ShowCounts(std::size_t files, std::size_t sets);

    /// Sets whether the hint that the files look like UTF-8 replaces the counts.
    void ShowUtf8Hint(bool shown);

    void ShowProgress(const Progress& progress);

    /// Shows the counts or the hint again.
    void ClearProgress();

    void ShowUndo(const UndoOffer& offer);

    /// Leaves out counts, hint and progress, which take only the room that is left.
    QSize minimumSizeHint() const override;

    QPushButton* UseUtf8;
    QWidget* UndoFrame; // contains UndoLastRun and UndoMenu
    QPushButton* UndoLastRun;
    QPushButton* UndoMenu; // contains Forget and KeepMissing
    QAction* Forget;
    QAction* KeepMissing;
    CodePageChooser* CodePage; // "Code page of unmarked files:"

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ShowRest();
    int Gap() const;
    void Fit();
    void Arrange();

    QWidget* room_; // has no layout, so that a change of texts does not lay out the window again
    QLabel* count_; // shows the counts or the hint
    QLabel* progress_;
    QLabel* missing_;
    QProgressBar* bar_;
    std::size_t files_ = 0;
    std::size_t sets_ = 0;
    bool hintsAtUtf8_ = false;
    int wanted_ = 0; // width in pixels of the contents of room_
    bool showsProgress_ = false;
};

} // namespace vexmarrow
