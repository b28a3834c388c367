// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "run/UndoOperations.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "run/AtScopeEnd.h"
#include "safety/Clock.h"
#include "safety/KeptCopies.h"
#include "safety/LogFolders.h"
#include "safety/Recovery.h"
#include "shell/EventLoop.h"
#include "shell/MousePointer.h"
#include "shell/Prompts.h"
#include "shell/Trap.h"
#include "textio/Paths.h"
#include "textio/SystemCalls.h"

#include <cerrno>
#include <set>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kNoneOfOthers =
    u" Its other files cannot be undone: there was not enough space to keep their old texts.";

std::u16string Name(const LastRun& run) {
    return Concat(u"run of ", LocalTime(run.begun));
}

std::u16string Outcome(const LastRun& run, const std::vector<UndoProblem>& left) {
    std::u16string text = Concat(u"The ", Name(run), u" has been undone");
    text += left.empty() ? u"." : u", except for these files:";
    std::set<std::string_view> told; // a file that was written twice is mentioned once
    for (const UndoProblem& file : left) {
        if (told.insert(file.path).second) {
            text += Concat(u"\r\n\r\n", TextFromNativeName(file.path), kCrLf, file.why, u".");
        }
    }
    return text;
}

} // namespace

void UndoOperations::Refresh() {
    Trap trap(desktop_.prompts, u"Form1.UndoLastRun_Refresh");
    last_.reset();
    canForget_ = false;
    trap.Do(1, [&] { last_ = runUndo_.FindLastRun(); });
    trap.Do(2, [&] {
        canForget_ = !LogsIn(calls_, folders_).empty() || !KeptFiles(calls_, folders_).empty();
    });
}

std::u16string UndoOperations::Hint() const {
    if (!last_) {
        return u"There is no run to undo.";
    }
    if (last_->isInUse) {
        return Concat(u"The ", Name(*last_),
                      u" cannot be undone now: another program is using its old texts.");
    }
    if (!last_->CanBeUndone()) {
        return Concat(u"The ", Name(*last_),
                      last_->isPartial
                          ? u" cannot be undone: there was not enough space to keep the old texts "
                            u"of its files."
                          : u" cannot be undone yet: the program has to be started again first, to "
                            u"settle files that were interrupted.");
    }
    return Concat(u"Undo the ", Name(*last_), u": ",
                  Counted(last_->changed + last_->created, u" file.", u" files."),
                  last_->isPartial ? kNoneOfOthers : std::u16string_view());
}

std::size_t UndoOperations::Missing() const {
    return recovery_.Missing();
}

std::u16string UndoOperations::MissingNotice() const {
    return Missing() == 0 ? std::u16string()
                          : Counted(Missing(), u" file of an interrupted run is missing",
                                    u" files of interrupted runs are missing");
}

std::u16string UndoOperations::Question() const {
    std::u16string changed;
    std::u16string created;
    if (last_->changed > 0) {
        changed = Counted(last_->changed, u" file will get its old text and date back",
                          u" files will get their old text and date back");
    }
    if (last_->created > 0) {
        created =
            Counted(last_->created, u" new file will be removed", u" new files will be removed");
    }
    return Concat(u"Undo the ", Name(*last_), u"? ", changed,
                  changed.empty() || created.empty() ? u"" : u", ", created,
                  u". Files that have been changed since then will stay as they are.",
                  last_->isPartial ? kNoneOfOthers : std::u16string_view());
}

bool UndoOperations::IsBusy() const {
    return inProgress_ || desktop_.pointer.IsBusy();
}

bool UndoOperations::IsYes(std::u16string_view question) {
    return desktop_.prompts.ShowMessage(question, BoxStyle::Question) == Answer::Yes;
}

void UndoOperations::Start() {
    if (IsBusy()) {
        return;
    }
    inProgress_ = true;
    const AtScopeEnd end([this] { inProgress_ = false; });
    Trap trap(desktop_.prompts, u"Form1.UndoLastRun_Click");
    Refresh(); // another program may have changed something since the last time
    if (!IsPossible()) {
        trap.Do(1, [&] { desktop_.prompts.ShowMessage(Hint()); });
        return;
    }
    const LastRun run = *last_;
    bool agreed = false;
    trap.Do(2, [&] { agreed = IsYes(Question()); });
    if (!agreed) {
        return;
    }
    Refresh(); // another program may have changed something while the box was open
    if (!last_ || last_->begun != run.begun) {
        trap.Do(2, [&] {
            desktop_.prompts.ShowMessage(
                u"This is no longer the last run, so it has not been undone.");
        });
        return;
    }
    trap.Do(3, [&] { desktop_.pointer.SetPointer(MousePointer::Hourglass); });
    trap.Do(4, [&] { Undo(run); });
    trap.Do(5, [&] { desktop_.pointer.SetPointer(MousePointer::Default); });
    Refresh();
}

void UndoOperations::Undo(const LastRun& run) {
    const std::vector<UndoProblem> left =
        runUndo_.Undo(run, [this](std::size_t record, std::size_t records) {
            desktop_.eventLoop.Yield({u"File", record, records});
        });
    desktop_.prompts.ShowMessage(Outcome(run, left),
                                 left.empty() ? BoxStyle::Information : BoxStyle::Exclamation);
}

void UndoOperations::Forget() {
    if (IsBusy()) {
        return;
    }
    Trap trap(desktop_.prompts, u"Form1.Forget_Click");
    trap.Do(1, [&] { ForgetRuns(); });
    Refresh();
}

void UndoOperations::ForgetRuns() {
    if (!LogsIn(calls_, folders_).empty()) {
        if (!IsYes(u"Delete the old texts that are kept for undoing the last runs? These runs can "
                   u"then no longer be undone.")) {
            return;
        }
        runUndo_.RemoveAllLogs();
        if (!LogsIn(calls_, folders_).empty()) {
            desktop_.prompts.ShowMessage(
                u"Some old texts are still kept, because another program is using them or an "
                u"interrupted file may still need them.",
                BoxStyle::Exclamation);
        }
    }
    RemoveKeptFiles();
}

void UndoOperations::RemoveKeptFiles() {
    const std::vector<std::string> files = KeptFiles(calls_, folders_);
    if (files.empty()) {
        return;
    }
    std::u16string folders; // almost always just one
    std::string last;
    for (const std::string& file : files) {
        std::string folder = ParentFolder(file);
        if (folder != last) {
            folders += Concat(TextFromNativeName(folder), kCrLf);
            last = std::move(folder);
        }
    }
    if (!IsYes(Concat(Counted(files.size(), u" copy of an interrupted file is",
                              u" copies of interrupted files are"),
                      u" kept here:\r\n\r\n", folders,
                      files.size() == 1 ? u"\r\nDelete it?" : u"\r\nDelete them?"))) {
        return;
    }
    for (const std::string& file : files) {
        if (calls_.Unlink(file) != 0 && errno != ENOENT) {
            throw FileFailure(u"Could not remove the file", TextFromNativeName(file), errno);
        }
    }
}

void UndoOperations::GiveUpMissing() {
    if (IsBusy()) {
        return;
    }
    recovery_.GiveUpMissing();
    Refresh();
}

} // namespace vexmarrow
