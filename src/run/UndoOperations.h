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

/// The operations behind "Undo Last Run" and its menu. Each one traps its own failures and does
/// nothing while the program is busy.
class UndoOperations {
public:
    UndoOperations(SystemCalls& calls, const std::vector<std::string>& logFolders,
                   Recovery& recovery, const Desktop& desktop)
        : calls_(calls),
          folders_(logFolders),
          recovery_(recovery),
          runUndo_(calls, logFolders),
          desktop_(desktop) {}

    /// Reads from the disk what the functions below report. To be called at the start and after
    /// every run.
    void Refresh();

    /// Whether there is a run that can be undone.
    bool IsPossible() const { return last_ && last_->CanBeUndone(); }

    /// The text that tells the user which run that is, or why there is none.
    std::u16string Hint() const;

    /// Whether there are old texts of runs or copies of interrupted files.
    bool CanForget() const { return canForget_; }

    /// The number of files of interrupted runs that are missing.
    std::size_t Missing() const;

    /// The text that tells the user of them. Empty if there are none.
    std::u16string MissingNotice() const;

    /// Whether a run is being undone at this moment.
    bool IsInProgress() const { return inProgress_; }

    /// Asks, undoes the last run and names the files that were left alone. Yields before each file.
    void Start();

    /// Asks, and removes the old texts of all runs. Offers to delete copies of interrupted files.
    void Forget();

    /// Stops waiting for the missing files: keeps copies of their old texts, and says where.
    void GiveUpMissing();

private:
    bool IsBusy() const;
    std::u16string Question() const;
    bool IsYes(std::u16string_view question);
    void Undo(const LastRun& run);
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
