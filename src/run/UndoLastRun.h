// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/RunUndo.h"
#include "shell/Desktop.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace vexmarrow {

class Recovery;
class SystemCalls;

/// "Undo Last Run" and what stands in its menu. Every operation traps its own failures, and does
/// nothing while the pointer is the hourglass.
class UndoLastRun {
public:
    UndoLastRun(SystemCalls& calls, const std::vector<std::string>& logFolders, Recovery& recovery,
                const Desktop& desktop)
        : calls_(calls),
          folders_(logFolders),
          recovery_(recovery),
          runUndo_(calls, logFolders),
          desktop_(desktop) {}

    /// Looks at the disk, for the answers below: at the start, and whenever a run has ended.
    void Refresh();

    /// Whether there is a run that can be taken back.
    bool IsPossible() const { return last_ && last_->CanBeUndone(); }

    /// Which run that is, or why there is none, in a few words for people.
    std::u16string Hint() const;

    /// Whether there are old texts of runs, or copies that were kept aside.
    bool CanForget() const { return canForget_; }

    /// How many files of interrupted runs are not where they were; and that in words, empty when
    /// there are none.
    std::size_t Missing() const;
    std::u16string MissingNotice() const;

    /// Whether a run is being taken back at this moment.
    bool IsInProgress() const { return inProgress_; }

    /// Asks, takes the last run back and tells what was left alone. Yields before each file.
    void Start();

    /// Asks, and removes the logs of all runs; offers to remove the copies that were kept aside.
    void Forget();

    /// Ends the matter of the missing files: their old texts are kept aside, which is told.
    void GiveUpMissing();

private:
    bool IsBusy() const;
    std::u16string Question() const;
    bool IsYes(std::u16string_view question);
    void TakeBack(const LastRun& run);
    void ForgetRuns();
    void RemoveKeptFiles();

    SystemCalls& calls_;
    std::vector<std::string> folders_;
    Recovery& recovery_;
    RunUndo runUndo_;
    Desktop desktop_;
    std::optional<LastRun> last_;
    bool canForget_ = false;
    bool inProgress_ = false;
};

} // namespace vexmarrow
