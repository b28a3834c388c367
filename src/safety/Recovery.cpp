// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/Recovery.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "safety/Creation.h"
#include "safety/KeptCopies.h"
#include "safety/LogFolders.h"
#include "safety/OpenRecords.h"
#include "safety/PutInPlace.h"
#include "safety/Refusing.h"
#include "safety/RunLog.h"
#include "safety/TakingBack.h"
#include "shell/Prompts.h"
#include "shell/Trap.h"
#include "textio/Paths.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kCouldNotPutBack = u"Could not put back the old text of the file";

/// Whether an error says for certain that a path leads nowhere. Any other may pass.
bool IsGone(int error) {
    return error == ENOENT || error == ENOTDIR || error == ELOOP;
}

/// Removes the unfinished file that a program has left under a passing name.
void RemovePassingFile(SystemCalls& calls, const RunRecord& record) {
    FileStatus status;
    if (IsPassingName(record.passingName) && calls.StatusOfName(record.passingName, status) == 0 &&
        status.IsRegular() && status.owner == ::geteuid() &&
        calls.Unlink(record.passingName) != 0 && errno != ENOENT) {
        throw FileFailure(u"Could not remove the unfinished file",
                          TextFromNativeName(record.passingName), errno);
    }
}

} // namespace

void Recovery::Run() {
    SettleAll();
    RemoveOldLogs(calls_, folders_);
}

void Recovery::GiveUpMissing() {
    givesUp_ = true;
    SettleAll();
    givesUp_ = false;
}

/// One log is open at a time: there may be more of them than a process may have files.
void Recovery::SettleAll() {
    missing_ = 0;
    std::vector<std::string> paths;
    FailureOf([&] { paths = LogsIn(calls_, folders_); });
    for (const std::string& path : paths) {
        FailureOf([&] {
            std::optional<LogFile> log = LogFile::TakeOver(calls_, path);
            if (!log || log->Header().isSettled) {
                return;
            }
            log->Announce();
            std::vector<PlacedRecord> records = log->Records();
            std::reverse(records.begin(), records.end()); // the last change of a file comes first
            for (PlacedRecord& placed : records) {
                if (placed.state == RecordState::Open) {
                    Settle(*log, placed);
                }
            }
            Tidy(*log, records);
        });
    }
}

void Recovery::Settle(LogFile& log, PlacedRecord& placed) {
    const std::optional<std::u16string> failure = FailureOf([&] {
        if (placed.record.kind == RecordKind::Creation) {
            SettleCreation(log, placed);
        } else {
            SettleReplacement(log, placed);
        }
    });
    if (failure) {
        Tell(Concat(*failure, u"\r\n\r\nThe program was ended while it was writing that file. This "
                              u"will be tried again at its next start."));
    }
}

/// Of a card that is not there, perhaps.
void Recovery::Miss(LogFile& log, PlacedRecord& placed, std::u16string_view why) {
    if (!givesUp_) {
        ++missing_;
    } else if (placed.record.kind == RecordKind::Creation) {
        log.SetState(placed, RecordState::Closed);
    } else {
        KeepOld(log, placed, -1, why);
    }
}

/// A new file is complete or it has no name yet. Whatever else stands there stays.
void Recovery::SettleCreation(LogFile& log, PlacedRecord& placed) {
    const RunRecord& record = placed.record;
    FileStatus status;
    if (calls_.StatusOfTarget(ParentFolder(record.path), status) != 0) {
        Miss(log, placed, {});
        return;
    }
    RemovePassingFile(calls_, record);
    const int error = calls_.StatusOfTarget(record.path, status) == 0 ? 0 : errno;
    if (error != 0 && !IsGone(error)) {
        throw FileFailure(u"Could not look at the file", TextFromNativeName(record.path), error);
    }
    const bool isComplete = error == 0 && placed.written && status.SameFileAs(placed.written->file);
    log.SetState(placed, isComplete ? RecordState::Done : RecordState::Closed);
}

void Recovery::SettleReplacement(LogFile& log, PlacedRecord& placed) {
    const RunRecord& record = placed.record;
    const std::u16string path = TextFromNativeName(record.path);
    FileStatus status;
    const int error = calls_.StatusOfTarget(record.path, status) == 0 ? 0 : errno;
    if (error != 0 && !IsGone(error)) {
        throw FileFailure(u"Could not look at the file", path, error);
    }
    if (error != 0 || !status.IsRegular()) {
        Miss(log, placed, u"The file is not there any more.");
        return;
    }
    const OpenedFile opened = OpenToRead(calls_, record.path);
    const int file = opened.file.Number();
    if (opened.error != 0 || calls_.Status(file, status) != 0) {
        throw FileFailure(u"Could not open the file", path,
                          opened.error != 0 ? opened.error : errno);
    }
    // Numbers change over a restart of the machine. With others, another card may lie in the place
    // of the one that the file is on, so the record stays, even where there is nothing to ask.
    const Holding holding = HoldingOf(calls_, file, status, placed);
    if (holding == Holding::Unknown) {
        throw FileFailure(u"Could not read the file", path, EIO);
    }
    if (holding == Holding::Other) {
        Ask(log, placed, file, status);
    } else if (!status.SameFileAs(record.old)) {
        Miss(log, placed, u"Another file has taken its place.");
    } else if (holding == Holding::New) {
        log.SetState(placed, RecordState::Done);
    } else {
        if (status.modified != record.old.modified) {
            calls_.SetModified(file, record.old.modified);
        }
        log.SetState(placed, RecordState::Closed);
    }
}

void Recovery::Ask(LogFile& log, PlacedRecord& placed, int present, const FileStatus& status) {
    const Answer answer = prompts_.ShowMessage(
        Concat(u"The program was ended while it was writing this file, which may hold old and new "
               u"text now:\r\n\r\n",
               TextFromNativeName(placed.record.path), u"\r\n\r\nThe writing began: ",
               LocalTime(placed.record.begun), u"\r\nThe file was last changed: ",
               LocalTime(status.modified),
               u"\r\n\r\nPut its old text back?\r\n\r\nYes: the file gets its old text and date; a "
               u"copy of what it holds at present is kept.\r\nNo: the file stays as it is; a copy "
               u"of its old text is kept.\r\nLater: you are asked again at the next start, and no "
               u"run uses the file until then.\r\n\r\nThe copy goes into this folder:\r\n",
               TextFromNativeName(KeptFolder(folders_.front()))),
        BoxStyle::OrLater);
    if (answer == Answer::Yes) {
        PutBackOld(log, placed, status);
    } else if (answer == Answer::No) {
        KeepOld(log, placed, present, u"The file itself has been left as it is.");
    }
}

void Recovery::PutBackOld(LogFile& log, PlacedRecord& placed, const FileStatus& asked) {
    const RunRecord& record = placed.record;
    const std::u16string path = TextFromNativeName(record.path);
    FileStatus status;
    const OpenedFile opened = OpenTarget(calls_, record.path, status);
    const int file = opened.file.Number();
    if (opened.error != 0) {
        throw FileFailure(kCouldNotPutBack, path, ReasonOf(opened));
    }
    if (!status.SameFileAs(asked) || !status.SameContentsAs(asked)) {
        throw FileFailure(kCouldNotPutBack, path, u"Another program has changed it meanwhile");
    }
    OldText old(calls_, file, log, placed);
    if (const int error = old.Check()) {
        if (error != ENODATA) {
            throw FileFailure(kCouldNotPutBack, path, error);
        }
        KeepOld(log, placed, file,
                u"Its old text cannot be made whole any more, so the file has been left as it is.");
        return;
    }
    std::string place;
    if (status.size > 0) {
        FileBytes present(calls_, file);
        place = KeepCopy(calls_, folders_, "found", record.path, present, status.size);
    }
    const PutBackResult result = PutBack(calls_, file, placed, old.Kept());
    if (result.state != PutBackState::Whole) {
        throw FileFailure(kCouldNotPutBack, path, result.error);
    }
    log.SetState(placed, RecordState::Closed);
    if (result.timeError != 0) {
        Tell(Concat(u"The file \"", path, u"\" has its old text, but could not get its old date."));
    }
    if (!place.starts_with(KeptFolder(folders_.front())) && !place.empty()) { // which was named
        Tell(Concat(u"What the file \"", path, u"\" held before has been kept here:\r\n",
                    TextFromNativeName(place)));
    }
}

/// Keeps the old text, or what there is of it, and ends the matter.
void Recovery::KeepOld(LogFile& log, PlacedRecord& placed, int present, std::u16string_view why) {
    const RunRecord& record = placed.record;
    OldText old(calls_, present, log, placed);
    const int error = old.Check();
    if (error != 0 && error != ENODATA && present >= 0) {
        throw FileFailure(u"Could not read the old text of the file",
                          TextFromNativeName(record.path), error);
    }
    const bool isWhole = error == 0;
    const std::uint64_t end = std::max(log.Status().size, placed.KeptAt());
    const std::uint64_t inLog = std::min(record.KeptSize(), end - placed.KeptAt());
    const std::string place =
        isWhole ? KeepCopy(calls_, folders_, "old", record.path, old, record.old.size)
                : KeepCopy(calls_, folders_, "part", record.path, old.Kept(), inLog);
    log.SetState(placed, RecordState::Closed);
    Tell(Concat(u"The program was ended while it was writing this file:\r\n\r\n",
                TextFromNativeName(record.path), u"\r\n\r\n", why,
                isWhole ? u" Its old text has been kept here:\r\n"
                        : u" What is left of its old text has been kept here:\r\n",
                TextFromNativeName(place)));
}

void Recovery::Tell(std::u16string_view text) {
    prompts_.ShowMessage(text, BoxStyle::Exclamation);
}

} // namespace vexmarrow
