// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/TakingBack.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "safety/LogFolders.h"
#include "safety/OpenRecords.h"
#include "safety/PutInPlace.h"
#include "safety/Refusing.h"
#include "safety/RunLog.h"
#include "textio/Paths.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>
#include <set>

namespace vexmarrow {
namespace {

/// What became of a file.
enum class Fate {
    Back,  ///< it is as it was
    Final, ///< it stays as it is for good
    Waits, ///< it can be tried again
};
struct Result {
    Fate fate = Fate::Back;
    std::u16string why; ///< if not wholly back
};

/// What the files that a log is about are known by: their paths, and the system's numbers.
std::array<std::string, 2> KeysOf(const PlacedRecord& placed) {
    const bool isNew = placed.record.kind == RecordKind::Creation && placed.written;
    const FileStatus& file = isNew ? placed.written->file : placed.record.old;
    const std::string& path = placed.record.path;
    return {path, file.inode == 0 ? path
                                  : std::to_string(file.device) + ":" + std::to_string(file.inode)};
}

/// Takes back what one record tells of.
class OneFile {
public:
    OneFile(SystemCalls& calls, LogFile& log, OpenRecords& others, PlacedRecord& placed)
        : calls_(calls), log_(log), others_(others), placed_(placed) {}

    Result TakeBack() {
        const std::string& path = placed_.record.path;
        const bool isNew = placed_.record.kind == RecordKind::Creation;
        FileStatus status;
        if (calls_.StatusOfTarget(path, status) != 0) {
            const int error = errno; // where its folder is there, a new file has gone
            return isNew && placed_.state == RecordState::Done && error == ENOENT &&
                           calls_.StatusOfTarget(ParentFolder(path), status) == 0
                       ? Result{}
                       : Result{Fate::Waits,
                                error == ENOENT ? u"It is not there" : ReasonOf(error)};
        }
        if (!status.IsRegular()) {
            return {Fate::Final, u"It is no regular file any more"};
        }
        const OpenedFile opened = OpenTarget(calls_, path, status);
        const int file = opened.file.Number();
        if (opened.error != 0) {
            return {Fate::Waits, ReasonOf(opened)};
        }
        if (others_.Hold(path, status, file, log_.Path())) {
            return {Fate::Waits, u"Another run has written it in part"};
        }
        const Holding holding = HoldingOf(calls_, file, status, placed_);
        if (holding == Holding::Unknown) {
            return {Fate::Waits, u"It could not be read"};
        }
        if (holding == Holding::New) {
            return isNew ? Remove(status) : PutBack(file);
        }
        if (placed_.state == RecordState::Open && !isNew) {
            if (holding == Holding::Other) {
                return {Fate::Waits, u"It is written in part, and the next start asks about it"};
            }
            calls_.SetModified(file, placed_.record.old.modified);
            return {};
        }
        return {Fate::Final, u"It was changed since"};
    }

private:
    Result Remove(const FileStatus& status) {
        FileStatus named;
        if (calls_.StatusOfName(placed_.record.path, named) != 0) {
            return {Fate::Waits, ReasonOf(errno)};
        }
        if (!named.SameFileAs(status)) {
            return {Fate::Final, u"It was replaced since"};
        }
        return calls_.Unlink(placed_.record.path) == 0 ? Result{}
                                                       : Result{Fate::Waits, ReasonOf(errno)};
    }

    Result PutBack(int file) {
        OldText old(calls_, file, log_, placed_);
        if (const int error = old.Check()) {
            return error == ENODATA ? Result{Fate::Final, u"Its old text is damaged"}
                                    : Result{Fate::Waits, ReasonOf(error)};
        }
        if (const int error = log_.SetState(placed_, RecordState::Open)) {
            return {Fate::Waits, ReasonOf(error)};
        }
        const PutBackResult result = vexmarrow::PutBack(calls_, file, placed_, old.Kept());
        if (result.state == PutBackState::Untouched) {
            log_.SetState(placed_, RecordState::Done);
        }
        if (result.state != PutBackState::Whole) {
            return {Fate::Waits, ReasonOf(result.error)};
        }
        return {Fate::Back, result.timeError == 0
                                ? u""
                                : u"It has its old text, but could not get its old date"};
    }

    SystemCalls& calls_;
    LogFile& log_;
    OpenRecords& others_;
    PlacedRecord& placed_;
};

} // namespace

std::optional<LastRun> TakingBack::Last() const {
    std::vector<std::string> paths = LogsIn(calls_, folders_);
    std::reverse(paths.begin(), paths.end());
    for (const std::string& path : paths) {
        const std::optional<LogFile> log = LogFile::LookAt(calls_, path);
        if (!log || !log->Header().hasWayBack) {
            continue;
        }
        if (log->IsInUse()) {
            return LastRun{path, log->Header().begun, 0, 0, false, true};
        }
        std::set<std::string> changed;
        std::set<std::string> created;
        bool waits = log->Header().isPartial;
        for (const PlacedRecord& placed : log->Records()) {
            waits = waits || placed.state == RecordState::Open;
            if (placed.state == RecordState::Done) {
                const bool isNew = placed.record.kind == RecordKind::Creation;
                (isNew ? created : changed).insert(placed.record.path);
            }
        }
        for (const std::string& name : created) { // and written again
            changed.erase(name);
        }
        if (changed.size() + created.size() > 0 || waits) {
            return LastRun{path,           log->Header().begun,     changed.size(),
                           created.size(), log->Header().isPartial, false};
        }
    }
    return std::nullopt;
}

std::vector<LeftAlone>
TakingBack::TakeBack(const LastRun& run,
                     const std::function<void(std::size_t, std::size_t)>& yield) {
    std::optional<LogFile> log = LogFile::TakeOver(calls_, run.log);
    if (!log || log->Header().begun != run.begun) {
        throw Failure(u"Another program is working with the log of that run, or has removed it.");
    }
    if (const int error = log->SetSettled(false)) {
        throw FileFailure(u"Could not write the file", TextFromNativeName(run.log), error);
    }
    log->Announce();
    OpenRecords others(calls_, folders_);
    others.Look(run.log);

    std::vector<PlacedRecord> records = log->Records();
    std::map<std::string, Fate> fates; // of files that are not back: what was before waits with it
    std::vector<LeftAlone> left;
    for (std::size_t i = records.size(); i-- > 0;) {
        PlacedRecord& placed = records[i];
        if (placed.state == RecordState::Closed) {
            continue;
        }
        yield(records.size() - i, records.size());
        const auto keys = KeysOf(placed);
        Result result;
        const auto* const known =
            std::find_if(keys.begin(), keys.end(),
                         [&](const std::string& key) { return fates.find(key) != fates.end(); });
        if (known != keys.end()) {
            result.fate = fates.at(*known);
        } else {
            result = OneFile(calls_, *log, others, placed).TakeBack();
        }
        if (placed.state == RecordState::Open && result.fate == Fate::Final) {
            result.fate = Fate::Waits; // only the user's answer ends it
        }
        if (result.fate != Fate::Waits) {
            // A record that stays open is settled first: it knows nothing of what was before it.
            if (const int error = log->SetState(placed, RecordState::Closed)) {
                result = {Fate::Waits, ReasonOf(error)};
            }
        }
        if (result.fate != Fate::Back) {
            for (const std::string& key : keys) {
                fates[key] = result.fate;
            }
        }
        if (!result.why.empty()) {
            left.push_back({placed.record.path, std::move(result.why)});
        }
    }
    Tidy(*log, records);
    return left;
}

void TakingBack::Forget() {
    for (const std::string& path : LogsIn(calls_, folders_)) {
        RemoveLog(calls_, path);
    }
}

void Tidy(LogFile& log, const std::vector<PlacedRecord>& records) {
    bool isOpen = false;
    bool isOver = !log.Header().isPartial;
    for (const PlacedRecord& placed : records) {
        isOpen = isOpen || placed.state == RecordState::Open;
        isOver = isOver && (placed.state == RecordState::Closed ||
                            (placed.state == RecordState::Done && !log.Header().hasWayBack));
    }
    if (isOver) {
        log.Remove();
    } else if (!isOpen) {
        log.SetSettled(true);
    }
}

} // namespace vexmarrow
