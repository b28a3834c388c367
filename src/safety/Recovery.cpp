// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/Recovery.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "safety/Clock.h"
#include "safety/KeptCopies.h"
#include "safety/LogFolders.h"
#include "safety/LogRemoval.h"
#include "safety/OldText.h"
#include "safety/OpenTarget.h"
#include "safety/PendingNewFile.h"
#include "shell/Prompts.h"
#include "shell/Trap.h"
#include "textio/Paths.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kCouldNotPutBack = u"Could not put back the old text of the file";

/// Whether a path leads to anything. Throws Failure when an error, maybe a temporary one, hides it.
bool Exists(SystemCalls& calls, const std::string& path, FileStatus& status) {
    const int error = calls.StatusOfTarget(path, status) == 0 ? 0 : errno;
    if (error != 0 && error != ENOENT && error != ENOTDIR && error != ELOOP) {
        throw FileFailure(u"Could not check the file", TextFromNativeName(path), error);
    }
    return error == 0;
}

/// Removes the unfinished file that an interrupted program has left under a temporary name.
void RemoveTemporaryFile(SystemCalls& calls, const RecordHead& head) {
    FileStatus status;
    if (IsTemporaryName(head.temporaryName) &&
        calls.StatusOfName(head.temporaryName, status) == 0 && status.IsRegular() &&
        status.owner == ::geteuid() && calls.Unlink(head.temporaryName) != 0 && errno != ENOENT) {
        throw FileFailure(u"Could not remove the unfinished file",
                          TextFromNativeName(head.temporaryName), errno);
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

/// Opens one log at a time: there may be more logs than a process may have open files.
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
            log->NotifyOtherPrograms();
            std::vector<LogRecord> records = log->Records();
            std::reverse(records.begin(), records.end()); // the last write comes first
            for (LogRecord& record : records) {
                if (record.state == RecordState::Open) {
                    Settle(*log, record);
                }
            }
            RemoveOrSettle(*log, records);
        });
    }
}

void Recovery::Settle(LogFile& log, LogRecord& record) {
    const std::optional<std::u16string> failure = FailureOf([&] {
        if (record.head.kind == RecordKind::NewFile) {
            SettleNewFile(log, record);
        } else {
            SettleOverwrite(log, record);
        }
    });
    if (failure) {
        Tell(Concat(*failure, u"\r\n\r\nThe program was interrupted while it was writing this "
                              u"file. It will try again at its next start."));
    }
}

/// The file may be on a removed card, so its record stays open until the user gives the file up.
void Recovery::HandleMissing(LogFile& log, LogRecord& record, std::u16string_view why) {
    if (!givesUp_) {
        ++missing_;
    } else if (record.head.kind == RecordKind::NewFile) {
        log.SetState(record, RecordState::Closed);
    } else {
        KeepOldText(log, record, -1, why);
    }
}

/// A new file either is complete or has no name yet. Any other file with its name stays.
void Recovery::SettleNewFile(LogFile& log, LogRecord& record) {
    const RecordHead& head = record.head;
    FileStatus status;
    if (calls_.StatusOfTarget(ParentFolder(head.path), status) != 0) {
        HandleMissing(log, record, {});
        return;
    }
    RemoveTemporaryFile(calls_, head);
    const bool isComplete =
        Exists(calls_, head.path, status) && record.tail && status.SameFileAs(record.tail->file);
    log.SetState(record, isComplete ? RecordState::Done : RecordState::Closed);
}

void Recovery::SettleOverwrite(LogFile& log, LogRecord& record) {
    const RecordHead& head = record.head;
    const std::u16string path = TextFromNativeName(head.path);
    FileStatus status;
    if (!Exists(calls_, head.path, status) || !status.IsRegular()) {
        HandleMissing(log, record, u"The file no longer exists.");
        return;
    }
    const OpenedFile opened = OpenToRead(calls_, head.path);
    const int file = opened.file.Number();
    if (opened.error != 0 || calls_.Status(file, status) != 0) {
        throw FileFailure(u"Could not open the file", path,
                          opened.error != 0 ? opened.error : errno);
    }
    // Another device or inode may mean another card at this path, or just a restart of the machine:
    // the record stays open even if there is nothing to ask.
    const Content content = ContentOf(calls_, file, status, record);
    if (content == Content::Unreadable) {
        throw FileFailure(u"Could not read the file", path, EIO);
    }
    if (content == Content::Other) {
        Ask(log, record, file, status);
    } else if (!status.SameFileAs(head.old)) {
        HandleMissing(log, record, u"It has been replaced by another file.");
    } else if (content == Content::New) {
        log.SetState(record, RecordState::Done);
    } else {
        if (status.modified != head.old.modified) {
            calls_.SetModified(file, head.old.modified);
        }
        log.SetState(record, RecordState::Closed);
    }
}

void Recovery::Ask(LogFile& log, LogRecord& record, int present, const FileStatus& status) {
    const Answer answer = prompts_.ShowMessage(
        Concat(u"The program was interrupted while it was writing this file, which may now contain "
               u"both old and new text:\r\n\r\n",
               TextFromNativeName(record.head.path), u"\r\n\r\nWriting began: ",
               LocalTime(record.head.begun), u"\r\nLast change of the file: ",
               LocalTime(status.modified),
               u"\r\n\r\nPut its old text back?\r\n\r\nYes: the file gets its old text and date "
               u"back. A copy of its present contents is kept.\r\nNo: the file stays as it is. A "
               u"copy of its old text is kept.\r\nLater: the program asks again at its next "
               u"start. Until then, no run uses the file.\r\n\r\nCopies are kept in this "
               u"folder:\r\n",
               TextFromNativeName(KeptFolder(folders_.front()))),
        BoxStyle::OrLater);
    if (answer == Answer::Yes) {
        RestoreAsAnswered(log, record, status);
    } else if (answer == Answer::No) {
        KeepOldText(log, record, present, u"The file itself was not changed.");
    }
}

void Recovery::RestoreAsAnswered(LogFile& log, LogRecord& record, const FileStatus& asked) {
    const RecordHead& head = record.head;
    const std::u16string path = TextFromNativeName(head.path);
    FileStatus status;
    const OpenedFile opened = OpenTarget(calls_, head.path, status);
    const int file = opened.file.Number();
    if (opened.error != 0) {
        throw FileFailure(kCouldNotPutBack, path, ReasonOf(opened));
    }
    if (!status.SameFileAs(asked) || !status.SameContentsAs(asked)) {
        throw FileFailure(kCouldNotPutBack, path, u"Another program has just changed it");
    }
    OldText old(calls_, file, log, record);
    if (const int error = old.Check()) {
        if (error != ENODATA) {
            throw FileFailure(kCouldNotPutBack, path, error);
        }
        KeepOldText(log, record, file, u"Its old text is damaged, so the file was not changed.");
        return;
    }
    std::string place;
    if (status.size > 0) {
        FileBytes present(calls_, file);
        place = KeepCopy(calls_, folders_, "found", head.path, present, status.size);
    }
    const RestoreResult result = RestoreOldText(calls_, file, record, old.Kept());
    if (result.state != RestoreState::Restored) {
        throw FileFailure(kCouldNotPutBack, path, result.error);
    }
    log.SetState(record, RecordState::Closed);
    if (result.timeError != 0) {
        Tell(Concat(u"The file \"", path, u"\" has its old text again, but not its old date."));
    }
    if (!place.starts_with(KeptFolder(folders_.front())) && !place.empty()) { // not as announced
        Tell(Concat(u"The contents that the file \"", path, u"\" had before were copied to:\r\n",
                    TextFromNativeName(place)));
    }
}

/// Keeps a copy of the old text, or of the part that is left of it, and closes the record.
void Recovery::KeepOldText(LogFile& log, LogRecord& record, int present, std::u16string_view why) {
    const RecordHead& head = record.head;
    OldText old(calls_, present, log, record);
    const int error = old.Check();
    if (error != 0 && error != ENODATA && present >= 0) {
        throw FileFailure(u"Could not read the old text of the file", TextFromNativeName(head.path),
                          error);
    }
    const bool isWhole = error == 0;
    const std::uint64_t end = std::max(log.Status().size, record.KeptAt());
    const std::uint64_t inLog = std::min(head.KeptSize(), end - record.KeptAt());
    const std::string place =
        isWhole ? KeepCopy(calls_, folders_, "old", head.path, old, head.old.size)
                : KeepCopy(calls_, folders_, "part", head.path, old.Kept(), inLog);
    log.SetState(record, RecordState::Closed);
    Tell(Concat(u"The program was interrupted while it was writing this file:\r\n\r\n",
                TextFromNativeName(head.path), u"\r\n\r\n", why,
                isWhole ? u" Its old text was copied to:\r\n"
                        : u" The remaining part of its old text was copied to:\r\n",
                TextFromNativeName(place)));
}

void Recovery::Tell(std::u16string_view text) {
    prompts_.ShowMessage(text, BoxStyle::Exclamation);
}

} // namespace vexmarrow
