// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/LogWriter.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "safety/Clock.h"
#include "safety/LogFolders.h"
#include "safety/LogRemoval.h"
#include "safety/OldText.h"
#include "textio/ByteSource.h"
#include "textio/Checksum.h"
#include "textio/OpenedFile.h"
#include "textio/Paths.h"

#include <algorithm>
#include <cerrno>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kCouldNotKeep = u"Could not save the old text of the file";

bool IsLackOfRoom(int error) {
    return error == ENOSPC || error == EDQUOT || error == EFBIG;
}

} // namespace

/// Creates the log in the first folder that accepts it. Throws Failure about the file `path`.
void LogWriter::Make(const std::u16string& path) {
    std::u16string reasons;
    const std::vector<std::string> logs = LogsIn(calls_, folders_);
    std::uint64_t number = logs.empty() ? 1 : LogNumber(logs.back()) + 1;
    for (const std::string& folder : folders_) {
        int error = PrepareFolder(calls_, folder);
        // Another program may take the same name at the same moment.
        constexpr int kTries = 10;
        for (int i = 0; error == 0 && !file_ && i < kTries; ++i) {
            file_ = LogFile::Make(calls_, folder + "/" + LogName(number++),
                                  undo_ == UndoSupport::Offered, error);
            error = error == EEXIST || error == EWOULDBLOCK ? 0 : error;
        }
        if (file_) {
            end_ = LogFile::kFirstRecord;
            Measure();
            return;
        }
        reasons += Concat(reasons.empty() ? u"" : u"; ", TextFromNativeName(folder), u": ",
                          ReasonOf(error));
    }
    throw FileFailure(kCouldNotKeep, path,
                      Concat(u"The log of the run could not be created: ", reasons));
}

LogRecord LogWriter::AddRecord(RecordHead head, ByteSource& old,
                               const std::optional<RecordTail>& tail) {
    if (!head.path.starts_with('/') ||
        head.path.size() + head.temporaryName.size() > kLongestHead / 2) {
        throw FileFailure(kCouldNotKeep, TextFromNativeName(head.path), ENAMETOOLONG);
    }
    if (!file_) {
        Make(TextFromNativeName(head.path));
    }
    LogRecord record;
    record.head = std::move(head);
    record.head.begun = Now();
    record.tail = tail;
    for (;;) {
        record.at = end_;
        int error = Append(record, old);
        if (error == 0) { // network file systems report a full disk only on closing
            error = ErrorOfClosing(calls_, file_->Number());
        }
        if (error == 0) {
            break;
        }
        if (!IsLackOfRoom(error) || record.End() - record.at > limit_ || !MakeRoom(error)) {
            calls_.Truncate(file_->Number(), end_); // what was written may look like a record
            throw FileFailure(kCouldNotKeep, TextFromNativeName(record.head.path), error);
        }
    }
    end_ = record.End();
    ++open_;
    return record;
}

/// Returns 0 or an errno. The head of a large record comes last, because it makes the record valid.
int LogWriter::Append(LogRecord& record, ByteSource& old) {
    EncodeRecord(record, file_->Header().salt, buffer_);
    const std::uint64_t kept = record.head.KeptSize();
    if (!HasRoomFor(buffer_.size() + kept)) {
        return ENOSPC;
    }
    std::uint64_t shown = record.head.keptFrom;
    if (kept > kSmallText) {
        const int error = CopyBytes(calls_, file_->Number(), old, shown, record.head.old.size,
                                    record.KeptAt() - shown);
        return error != 0 ? error : file_->Write(record.at, buffer_);
    }
    while (shown < record.head.old.size) {
        std::string_view bytes;
        if (const int error = old.Show(shown, record.head.old.size - shown, bytes)) {
            return error;
        }
        buffer_ += bytes;
        shown += bytes.size();
    }
    return file_->Write(record.at, buffer_);
}

bool LogWriter::HasRoomFor(std::uint64_t size) {
    if (size > room_) {
        Measure();
    }
    const bool has = size <= room_;
    room_ -= has ? size : 0;
    return has;
}

void LogWriter::Measure() {
    std::uint64_t used = 0;
    for (const std::string& path : LogsIn(calls_, {ParentFolder(file_->Path())})) {
        FileStatus status;
        used += calls_.StatusOfName(path, status) == 0 ? status.size : 0;
    }
    std::uint64_t free = 0;
    limit_ = calls_.RoomIn(ParentFolder(file_->Path()), free) == 0 ? (free + used) / 2 : 0;
    room_ = limit_ > used ? limit_ - used : 0;
}

/// Removes the oldest log, or else the earlier records of this run. Returns false when neither is
/// possible. After EFBIG only the latter helps, because this log itself has become too large.
bool LogWriter::MakeRoom(int error) {
    const std::vector<std::string> logs =
        error == EFBIG ? std::vector<std::string>() : LogsIn(calls_, {ParentFolder(file_->Path())});
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

int LogWriter::AddTail(LogRecord& record, const RecordTail& tail) {
    record.tail = tail;
    return file_->Write(record.TailAt(), EncodeTail(record, tail));
}

bool LogWriter::Settle(LogRecord& record, RecordState state) noexcept {
    const bool isSettled = file_->SetState(record, state) == 0;
    open_ -= isSettled ? 1 : 0;
    hasDone_ = hasDone_ || (isSettled && state == RecordState::Done);
    return isSettled;
}

void LogWriter::End() noexcept {
    if (!file_) {
        return;
    }
    if (open_ == 0) {
        if (undo_ == UndoSupport::None || (!hasDone_ && !file_->Header().isPartial)) {
            file_->Remove(); // not marked as settled before: after a kill, recovery removes it
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
