// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/OpenRecords.h"

#include "safety/LogFolders.h"
#include "safety/OldText.h"
#include "textio/Descriptor.h"

#include <algorithm>
#include <array>

namespace vexmarrow {
namespace {

/// Reads the events that a watch has collected. Returns whether there were any.
bool TakeEvents(SystemCalls& calls, int watch) {
    std::array<char, 4096> events{};
    return calls.Read(watch, events.data(), events.size()) > 0;
}

} // namespace

void OpenRecords::Prepare(const std::string& own) {
    if (watched_.size() != folders_.size()) {
        ReadLogs(own);
    }
}

void OpenRecords::ReadLogs(const std::string& own) {
    watched_.clear();                          // if this fails, the next call reads the logs again
    const std::vector<bool> watched = Watch(); // first, so that no change is missed
    others_.clear();
    inUse_.clear();
    if (own.empty()) { // the log of this program has ended, so it is read like the others
        left_.clear();
    }
    for (const std::string& path : LogsIn(calls_, folders_)) {
        std::optional<LogFile> log = path != own ? LogFile::LookAt(calls_, path) : std::nullopt;
        if (!log || log->Header().isSettled) {
            continue;
        }
        const bool isInUse = log->IsInUse(); // asked first: later changes will be noticed
        for (LogRecord& record : log->Records()) {
            if (record.state == RecordState::Open && record.head.kind == RecordKind::Overwrite) {
                others_.push_back(std::move(record));
            }
        }
        if (isInUse) {
            inUse_.push_back(std::move(*log));
        }
    }
    watched_ = watched;
}

/// Watches the folders from now on. Returns for each whether it can be watched.
std::vector<bool> OpenRecords::Watch() {
    if (!watch_.IsOpen()) {
        watch_ = Descriptor(calls_, calls_.MakeWatch());
    }
    while (TakeEvents(calls_, watch_.Number())) {
        // Earlier events do not matter.
    }
    std::vector<bool> watched;
    for (const std::string& folder : folders_) {
        watched.push_back(calls_.WatchFolder(watch_.Number(), folder) >= 0);
    }
    return watched;
}

/// Whether another program has begun or ended work. In between, the locks of its files are enough.
bool OpenRecords::IsOutdated() {
    if (watched_.size() != folders_.size()) {
        return true;
    }
    for (std::size_t i = 0; i < folders_.size(); ++i) {
        FileStatus status;
        if (!watched_[i] && calls_.StatusOfName(folders_[i], status) == 0) {
            return true; // the folder is new, or cannot be watched
        }
    }
    return TakeEvents(calls_, watch_.Number()) ||
           std::any_of(inUse_.begin(), inUse_.end(),
                       [](const LogFile& log) { return !log.IsInUse(); });
}

bool OpenRecords::Include(const std::string& path, const FileStatus& status, int descriptor,
                          const std::string& own) {
    if (IsOutdated() || Matches(path, status, descriptor)) {
        ReadLogs(own);
    }
    return Matches(path, status, descriptor);
}

/// A file with the path of a record but another inode, which contains exactly the old or the new
/// text, does not match: another memory card is mounted at this path.
bool OpenRecords::Matches(const std::string& path, const FileStatus& status, int descriptor) const {
    const auto isOf = [&](const LogRecord& record) {
        if (record.head.old.SameFileAs(status)) {
            return true;
        }
        if (record.head.path != path) {
            return false;
        }
        const Content content = ContentOf(calls_, descriptor, status, record);
        return content != Content::Old && content != Content::New;
    };
    return std::any_of(others_.begin(), others_.end(), isOf) ||
           std::any_of(left_.begin(), left_.end(), isOf);
}

} // namespace vexmarrow
