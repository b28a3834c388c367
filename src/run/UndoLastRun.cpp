// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "run/UndoLastRun.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "base/Utf8.h"
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
    u" There was no room to keep the old texts of its other files.";

std::u16string Name(const LastRun& run) {
    return Concat(u"run of ", LocalTime(run.begun));
}

std::u16string WithCapital(std::u16string text) {
    if (!text.empty() && text[0] >= u'a' && text[0] <= u'z') {
        text[0] = static_cast<char16_t>(text[0] - u'a' + u'A');
    }
    return text;
}

std::u16string Outcome(const LastRun& run, const std::vector<UndoProblem>& left) {
    std::u16string text = Concat(u"The ", Name(run), u" is undone");
    text += left.empty() ? u"." : u", but for these files:";
    std::set<std::string_view> told; // a file that was written twice is told once
    for (const UndoProblem& file : left) {
        if (told.insert(file.path).second) {
            text += Concat(u"\r\n\r\n", TextFromNativeName(file.path), kCrLf, WithCapital(file.why),
                           u".");
        }
    }
    return text;
}

/// Sets a flag for as long as this lives, whatever ends the work.
class Mark {
public:
    explicit Mark(bool& flag) : flag_(flag) { flag = true; }
    ~Mark() { flag_ = false; }
    Mark(const Mark&) = delete;
    Mark& operator=(const Mark&) = delete;

private:
    bool& flag_;
};

} // namespace

void UndoLastRun::Refresh() {
    Trap trap(desktop_.prompts, u"Form1.UndoLastRun_Refresh");
    last_.reset();
    canForget_ = false;
    trap.Do(1, [&] { last_ = runUndo_.FindLastRun(); });
    trap.Do(2, [&] {
        canForget_ = !LogsIn(calls_, folders_).empty() || !KeptFiles(calls_, folders_).empty();
    });
}

std::u16string UndoLastRun::Hint() const {
    if (!last_) {
        return u"There is no run to undo.";
    }
    if (last_->isInUse) {
        return Concat(u"Another program is working on the ", Name(*last_), u".");
    }
    if (!last_->CanBeUndone()) {
        return Concat(u"The ", Name(*last_),
                      last_->isPartial
                          ? u" cannot be undone: there was no room to keep the old texts of its "
                            u"files."
                          : u" cannot be undone yet: its files wait for the next start.");
    }
    return Concat(u"Undo the ", Name(*last_), u": ",
                  Counted(last_->changed + last_->created, u" file.", u" files."),
                  last_->isPartial ? kNoneOfOthers : std::u16string_view());
}

std::size_t UndoLastRun::Missing() const {
    return recovery_.Missing();
}

std::u16string UndoLastRun::MissingNotice() const {
    return Missing() == 0 ? std::u16string()
                          : Counted(Missing(), u" file of an interrupted run is not there",
                                    u" files of interrupted runs are not there");
}

std::u16string UndoLastRun::Question() const {
    std::u16string changed;
    std::u16string created;
    if (last_->changed > 0) {
        changed = Counted(last_->changed, u" file gets its old text and date back",
                          u" files get their old text and date back");
    }
    if (last_->created > 0) {
        created = Counted(last_->created, u" new file is removed", u" new files are removed");
    }
    return Concat(u"Undo the ", Name(*last_), u"? ", changed,
                  changed.empty() || created.empty() ? u"" : u", ", created,
                  u". Files that were changed since stay as they are.",
                  last_->isPartial ? kNoneOfOthers : std::u16string_view());
}

bool UndoLastRun::IsBusy() const {
    return inProgress_ || desktop_.pointer.IsBusy();
}

bool UndoLastRun::IsYes(std::u16string_view question) {
    return desktop_.prompts.ShowMessage(question, BoxStyle::Question) == Answer::Yes;
}

void UndoLastRun::Start() {
    if (IsBusy()) {
        return;
    }
    const Mark mark(inProgress_);
    Trap trap(desktop_.prompts, u"Form1.UndoLastRun_Click");
    Refresh(); // another program may have done something since
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
    Refresh(); // another program may have done something while the box was open
    if (!last_ || last_->begun != run.begun) {
        trap.Do(2, [&] { desktop_.prompts.ShowMessage(u"It is not the last run any more."); });
        return;
    }
    trap.Do(3, [&] { desktop_.pointer.SetPointer(MousePointer::Hourglass); });
    trap.Do(4, [&] { TakeBack(run); });
    trap.Do(5, [&] { desktop_.pointer.SetPointer(MousePointer::Default); });
    Refresh();
}

void UndoLastRun::TakeBack(const LastRun& run) {
    const std::vector<UndoProblem> left =
        runUndo_.Undo(run, [this](std::size_t record, std::size_t records) {
            desktop_.eventLoop.Yield({u"File", record, records});
        });
    desktop_.prompts.ShowMessage(Outcome(run, left),
                                 left.empty() ? BoxStyle::Information : BoxStyle::Exclamation);
}

void UndoLastRun::Forget() {
    if (IsBusy()) {
        return;
    }
    Trap trap(desktop_.prompts, u"Form1.Forget_Click");
    trap.Do(1, [&] { ForgetRuns(); });
    Refresh();
}

void UndoLastRun::ForgetRuns() {
    if (!LogsIn(calls_, folders_).empty()) {
        if (!IsYes(u"Forget the old texts that are kept of the last runs? They cannot be undone "
                   u"then.")) {
            return;
        }
        runUndo_.RemoveAllLogs();
        if (!LogsIn(calls_, folders_).empty()) {
            desktop_.prompts.ShowMessage(
                u"Some old texts are still kept: another program is working, or a file of an "
                u"interrupted run waits for its old text.",
                BoxStyle::Exclamation);
        }
    }
    RemoveKeptFiles();
}

void UndoLastRun::RemoveKeptFiles() {
    const std::vector<std::string> files = KeptFiles(calls_, folders_);
    if (files.empty()) {
        return;
    }
    std::u16string folders; // hardly ever more than one
    std::string last;
    for (const std::string& file : files) {
        std::string folder = ParentFolder(file);
        if (folder != last) {
            folders += Concat(TextFromNativeName(folder), kCrLf);
            last = std::move(folder);
        }
    }
    if (!IsYes(Concat(Counted(files.size(), u" copy", u" copies"),
                      u" of what files of interrupted runs held ",
                      files.size() == 1 ? u"is" : u"are", u" kept in this folder:\r\n\r\n", folders,
                      u"\r\nRemove ",
                      files.size() == 1 ? std::u16string(u"this file")
                                        : Counted(files.size(), u"", u" files"),
                      u", too?"))) {
        return;
    }
    for (const std::string& file : files) {
        if (calls_.Unlink(file) != 0 && errno != ENOENT) {
            throw FileFailure(u"Could not remove the file", TextFromNativeName(file), errno);
        }
    }
}

void UndoLastRun::GiveUpMissing() {
    if (IsBusy()) {
        return;
    }
    recovery_.GiveUpMissing();
    Refresh();
}

} // namespace vexmarrow
