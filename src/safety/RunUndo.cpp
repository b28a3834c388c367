// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/RunUndo.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "safety/LogFolders.h"
#include "safety/LogRemoval.h"
#include "safety/OldText.h"
#include "safety/OpenRecords.h"
#include "safety/OpenTarget.h"
#include "textio/Paths.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>
#include <set>

namespace vexmarrow {
namespace {

enum class Fate {
    Undone, ///< the file is as it was before the run
    Final,  ///< the file will stay as it is
    Retry,  ///< undoing it can be tried again
};
struct Result {
    Fate fate = Fate::Undone;
    std::u16string why; ///< empty when the file is undone completely
};

/// Two keys by which records of the same file are recognised: its path, and its device and inode.
std::array<std::string, 2> KeysOf(const LogRecord& record) {
    const bool isNew = record.head.kind == RecordKind::NewFile && record.tail;
    const FileStatus& file = isNew ? record.tail->file : record.head.old;
    const std::string& path = record.head.path;
    return {path, file.inode == 0 ? path
                                  : std::to_string(file.device) + ":" + std::to_string(file.inode)};
}

/// Undoes one record.
struct FileUndo {
    SystemCalls& calls;
    LogFile& log;
    OpenRecords& others;
    LogRecord& record;

    Result Undo() {
        const std::string& path = record.head.path;
        const bool isNew = record.head.kind == RecordKind::NewFile;
        FileStatus status;
        if (calls.StatusOfTarget(path, status) != 0) {
            const int error = errno; // a new file may have been removed already
            return isNew && record.state == RecordState::Done && error == ENOENT &&
                           calls.StatusOfTarget(ParentFolder(path), status) == 0
                       ? Result{}
                       : Result{Fate::Retry, error == ENOENT ? u"It is missing" : ReasonOf(error)};
        }
        if (!status.IsRegular()) {
            return {Fate::Final, u"It is no longer a regular file"};
        }
        const OpenedFile opened = OpenTarget(calls, path, status);
        const int file = opened.file.Number();
        if (opened.error != 0) {
            return {Fate::Retry, ReasonOf(opened)};
        }
        if (others.Include(path, status, file, log.Path())) {
            return {Fate::Retry, u"It was only partly written by another run"};
        }
        const Content content = ContentOf(calls, file, status, record);
        if (content == Content::Unreadable) {
            return {Fate::Retry, u"It could not be read"};
        }
        if (content == Content::New) {
            return isNew ? Remove(status) : Restore(file);
        }
        if (record.state == RecordState::Open && !isNew) {
            if (content == Content::Other) {
                return {Fate::Retry, u"It is only partly written. The next start asks about it"};
            }
            calls.SetModified(file, record.head.old.modified);
            return {};
        }
        return {Fate::Final, u"It was changed after the run"};
    }

    Result Remove(const FileStatus& status) {
        FileStatus named;
        if (calls.StatusOfName(record.head.path, named) != 0) {
            return {Fate::Retry, ReasonOf(errno)};
        }
        if (!named.SameFileAs(status)) {
            return {Fate::Final, u"It was replaced after the run"};
        }
        return calls.Unlink(record.head.path) == 0 ? Result{}
                                                   : Result{Fate::Retry, ReasonOf(errno)};
    }

    Result Restore(int file) {
        OldText old(calls, file, log, record);
        if (const int error = old.Check()) {
            return error == ENODATA ? Result{Fate::Final, u"Its old text is damaged"}
                                    : Result{Fate::Retry, ReasonOf(error)};
        }
        if (const int error = log.SetState(record, RecordState::Open)) {
            return {Fate::Retry, ReasonOf(error)};
        }
        const RestoreResult result = RestoreOldText(calls, file, record, old.Kept());
        if (result.state == RestoreState::Unchanged) {
            log.SetState(record, RecordState::Done);
        }
        if (result.state != RestoreState::Restored) {
            return {Fate::Retry, ReasonOf(result.error)};
        }
        return {Fate::Undone,
                result.timeError == 0 ? u"" : u"It has its old text again, but not its old date"};
    }
};

} // namespace

std::optional<LastRun> RunUndo::FindLastRun() const {
    std::vector<std::string> paths = LogsIn(calls_, folders_);
    std::reverse(paths.begin(), paths.end());
    for (const std::string& path : paths) {
        const std::optional<LogFile> log = LogFile::LookAt(calls_, path);
        if (!log || !log->Header().allowsUndo) {
            continue;
        }
        LastRun run{path, log->Header().begun, 0, 0, log->Header().isPartial, log->IsInUse()};
        if (run.isInUse) {
            return run;
        }
        std::set<std::string> changed;
        std::set<std::string> created;
        bool isUnsettled = run.isPartial;
        for (const LogRecord& record : log->Records()) {
            isUnsettled = isUnsettled || record.state == RecordState::Open;
            if (record.state == RecordState::Done) {
                const bool isNew = record.head.kind == RecordKind::NewFile;
                (isNew ? created : changed).insert(record.head.path);
            }
        }
        for (const std::string& name : created) { // and then overwritten
            changed.erase(name);
        }
        run.changed = changed.size();
        run.created = created.size();
        if (run.CanBeUndone() || isUnsettled) {
            return run;
        }
    }
    return std::nullopt;
}

std::vector<UndoProblem> RunUndo::Undo(const LastRun& run,
                                       const std::function<void(std::size_t, std::size_t)>& yield) {
    std::optional<LogFile> log = LogFile::TakeOver(calls_, run.log);
    if (!log || log->Header().begun != run.begun) {
        throw Failure(u"Another program is using the log of this run, or has removed it.");
    }
    if (const int error = log->SetSettled(false)) {
        throw FileFailure(u"Could not write the file", TextFromNativeName(run.log), error);
    }
    log->NotifyOtherPrograms();
    OpenRecords others(calls_, folders_);
    others.Prepare(run.log);

    std::vector<LogRecord> records = log->Records();
    std::map<std::string, Fate> fates; // of files not undone: their earlier records share it
    std::vector<UndoProblem> left;
    for (std::size_t i = records.size(); i-- > 0;) {
        LogRecord& record = records[i];
        if (record.state == RecordState::Closed) {
            continue;
        }
        yield(records.size() - i, records.size());
        const auto keys = KeysOf(record);
        Result result;
        const auto* const known =
            std::find_if(keys.begin(), keys.end(),
                         [&](const std::string& key) { return fates.find(key) != fates.end(); });
        if (known != keys.end()) {
            result.fate = fates.at(*known);
        } else {
            result = FileUndo{calls_, *log, others, record}.Undo();
        }
        if (record.state == RecordState::Open && result.fate == Fate::Final) {
            result.fate = Fate::Retry; // only recovery may close an open record
        }
        if (result.fate != Fate::Retry) {
            // If the record stays open, the earlier records of its file must wait for it.
            if (const int error = log->SetState(record, RecordState::Closed)) {
                result = {Fate::Retry, ReasonOf(error)};
            }
        }
        if (result.fate != Fate::Undone) {
            for (const std::string& key : keys) {
                fates[key] = result.fate;
            }
        }
        if (!result.why.empty()) {
            left.push_back({record.head.path, std::move(result.why)});
        }
    }
    RemoveOrSettle(*log, records);
    return left;
}

void RunUndo::RemoveAllLogs() {
    for (const std::string& path : LogsIn(calls_, folders_)) {
        RemoveLog(calls_, path);
    }
}

} // namespace vexmarrow
