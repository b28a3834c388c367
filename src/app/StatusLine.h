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

/// What can be done about earlier runs at this moment.
struct UndoOffer {
    bool undo = false;        ///< the last run can be undone
    bool forget = false;      ///< there is something to forget
    bool keepMissing = false; ///< old texts of files that are not there can be kept aside
    QString hint;             ///< which run the last one is, or why it cannot be undone
    QString missing;          ///< what is said of files that are not there
};

/// The line at the foot of the main window: how many files and sets there are, or else that the
/// files look like UTF-8, or how far long work is; the way back; and the code page. Says nothing
/// about results.
class StatusLine final : public QStatusBar {
    Q_OBJECT

public:
    explicit StatusLine(QWidget* parent);

    /// The numbers of files and of sets, which are shown when no work is.
    void ShowCounts(std::size_t files, std::size_t sets);

    /// Whether to say, in the place of the counts, that the files look like UTF-8.
    void ShowUtf8Hint(bool shown);

    void ShowProgress(const Progress& progress);

    /// The work is over, or its display is.
    void ClearProgress();

    void ShowUndo(const UndoOffer& offer);

    /// Without what tells of files and progress, which takes what room there is.
    QSize minimumSizeHint() const override;

    QPushButton* UseUtf8;
    QWidget* UndoFrame; // the ground of the next two
    QPushButton* UndoLastRun;
    QPushButton* UndoMenu; // with the next two in it
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

    QWidget* room_; // no layout of its own, so that a change of texts lays nothing out anew
    QLabel* count_; // or the hint
    QLabel* progress_;
    QLabel* missing_;
    QProgressBar* bar_;
    std::size_t files_ = 0;
    std::size_t sets_ = 0;
    bool hintsAtUtf8_ = false;
    int wanted_ = 0; // width of what is shown in the room, if that can be had
    bool showsProgress_ = false;
};

} // namespace vexmarrow
