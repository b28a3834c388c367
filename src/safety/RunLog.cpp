// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/RunLog.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "safety/LogFolders.h"
#include "safety/PutInPlace.h"
#include "shell/Trap.h"
#include "textio/ByteSource.h"

#include <algorithm>
#include <cerrno>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kCouldNotKeep = u"Could not keep the old text of the file";

bool IsLackOfRoom(int error) {
    return error == ENOSPC || error == EDQUOT || error == EFBIG;
}

} // namespace

bool RemoveLog(SystemCalls& calls, const std::string& path) {
    std::optional<LogFile> log = LogFile::TakeOver(calls, path);
    if (!log) {
        return false;
    }
    bool hasOpen = !log->Header().isSettled; // also where that cannot be read
    FailureOf([&] {
        const std::vector<PlacedRecord> records =
            hasOpen ? log->Records() : std::vector<PlacedRecord>();
        hasOpen = std::any_of(records.begin(), records.end(), [](const PlacedRecord& record) {
            return record.state == RecordState::Open;
        });
    });
    if (!hasOpen) {
        log->Remove();
    }
    return !hasOpen;
}

void RemoveOldLogs(SystemCalls& calls, const std::vector<std::string>& folders) noexcept {
    constexpr std::size_t kKeptRuns = 5;
    constexpr std::int64_t kThirtyDays = std::int64_t{30} * 24 * 60 * 60 * 1'000'000'000;
    FailureOf([&] {
        const std::vector<std::string> paths = LogsIn(calls, folders);
        for (std::size_t i = 0; i < paths.size(); ++i) {
            const std::optional<LogFile> log = LogFile::LookAt(calls, paths[i]);
            const bool isOld = log && log->Header().begun < Now() - kThirtyDays;
            if (isOld || i + kKeptRuns < paths.size()) {
                RemoveLog(calls, paths[i]);
            }
        }
    });
}

/// In the first folder that takes it.
void RunLog::Make(const std::u16string& path) {
    std::u16string reasons;
    const std::vector<std::string> logs = LogsIn(calls_, folders_);
    std::uint64_t number = logs.empty() ? 1 : LogNumber(logs.back()) + 1;
    for (const std::string& folder : folders_) {
        int error = PrepareFolder(calls_, folder);
        // Another program may make the same one at the same moment.
        constexpr int kTries = 10;
        for (int i = 0; error == 0 && !file_ && i < kTries; ++i) {
            file_ = LogFile::Make(calls_, folder + "/" + LogName(number++),
                                  wayBack_ == WayBack::Kept, error);
            error = error == EEXIST || error == EWOULDBLOCK ? 0 : error;
        }
        if (file_) {
            folder_ = folder;
            end_ = LogFile::kFirstRecord;
            Measure();
            return;
        }
        reasons += Concat(reasons.empty() ? u"" : u"; ", TextFromNativeName(folder), u": ",
                          ReasonOf(error));
    }
    throw FileFailure(kCouldNotKeep, path,
                      Concat(u"There is no place for the log of the run: ", reasons));
}

PlacedRecord RunLog::Keep(RunRecord record, ByteSource& old,
                          const std::optional<WrittenText>& written) {
    if (!record.path.starts_with('/') ||
        record.path.size() + record.passingName.size() > kLongestHead / 2) {
        throw FileFailure(kCouldNotKeep, TextFromNativeName(record.path), ENAMETOOLONG);
    }
    if (!file_) {
        Make(TextFromNativeName(record.path));
    }
    PlacedRecord placed;
    placed.record = std::move(record);
    placed.written = written;
    for (;;) {
        placed.at = end_;
        int error = Append(placed, old);
        if (error == 0) { // a file system on a network tells of a full disk only then
            error = ErrorOfClosing(calls_, file_->Number());
        }
        if (error == 0) {
            break;
        }
        if (!IsLackOfRoom(error) || placed.End() - placed.at > share_ || !MakeRoom(error)) {
            calls_.Truncate(file_->Number(), end_); // what it has left would look like a record
            throw FileFailure(kCouldNotKeep, TextFromNativeName(placed.record.path), error);
        }
    }
    end_ = placed.End();
    ++open_;
    return placed;
}

/// A record is nothing before its head is whole, so a large one's head comes last. What a failed
/// try has left is written over by the next one.
int RunLog::Append(PlacedRecord& placed, ByteSource& old) {
    EncodeRecord(placed, file_->Header().salt, buffer_);
    const std::uint64_t kept = placed.record.KeptSize();
    if (!HasRoomFor(buffer_.size() + kept)) {
        return ENOSPC;
    }
    std::uint64_t shown = placed.record.keptFrom;
    if (kept > kSmallText) {
        const int error = CopyBytes(calls_, file_->Number(), old, shown, placed.record.old.size,
                                    placed.KeptAt() - shown);
        return error != 0 ? error : file_->Write(placed.at, buffer_);
    }
    while (shown < placed.record.old.size) {
        std::string_view bytes;
        if (const int error = old.Show(shown, placed.record.old.size - shown, bytes)) {
            return error;
        }
        buffer_ += bytes;
        shown += bytes.size();
    }
    return file_->Write(placed.at, buffer_);
}

bool RunLog::HasRoomFor(std::uint64_t size) {
    if (size > room_) {
        Measure();
    }
    const bool has = size <= room_;
    room_ -= has ? size : 0;
    return has;
}

void RunLog::Measure() {
    std::uint64_t used = 0;
    for (const std::string& path : LogsIn(calls_, {folder_})) {
        FileStatus status;
        used += calls_.StatusOfName(path, status) == 0 ? status.size : 0;
    }
    std::uint64_t free = 0;
    share_ = calls_.RoomIn(folder_, free) == 0 ? (free + used) / 2 : 0;
    room_ = share_ > used ? share_ - used : 0;
}

/// Gives up the oldest thing that can be given up. Returns whether there was one. Where it is this
/// file that must not grow, other runs are of no use.
bool RunLog::MakeRoom(int error) {
    const std::vector<std::string> logs =
        error == EFBIG ? std::vector<std::string>() : LogsIn(calls_, {folder_});
    for (const std::string& path : logs) {
        if (path != file_->Path() && RemoveLog(calls_, path)) {
            Measure();
            return true;
        }
    }
    if (open_ > 0 || end_ == LogFile::kFirstRecord || file_->DropRecords() != 0) {
        return false;
    }
    end_ = LogFile::kFirstRecord;
    Measure();
    return true;
}

int RunLog::AddTail(PlacedRecord& record, const WrittenText& written) {
    record.written = written;
    return file_->Write(record.TailAt(), EncodeTail(record, written));
}

bool RunLog::Settle(PlacedRecord& record, RecordState state) noexcept {
    const bool isSettled = file_->SetState(record, state) == 0;
    open_ -= isSettled ? 1 : 0;
    hasDone_ = hasDone_ || (isSettled && state == RecordState::Done);
    return isSettled;
}

void RunLog::End() noexcept {
    if (!file_) {
        return;
    }
    if (open_ == 0) {
        if (wayBack_ == WayBack::None || (!hasDone_ && !file_->Header().isPartial)) {
            file_->Remove(); // not settled first: what a kill leaves is to be tidied away
        } else {
            file_->SetSettled(true);
        }
    }
    file_.reset();
    open_ = 0;
    hasDone_ = false;
    RemoveOldLogs(calls_, folders_);
}

} // namespace vexmarrow
