// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/OpenRecords.h"

#include "safety/LogFolders.h"
#include "textio/ByteSource.h"
#include "textio/Checksum.h"

#include <algorithm>
#include <array>

namespace vexmarrow {
namespace {

/// Takes news from a watch, if there are any.
bool IsNews(SystemCalls& calls, int watch) {
    std::array<char, 4096> events{};
    return calls.Read(watch, events.data(), events.size()) > 0;
}

} // namespace

Holding HoldingOf(SystemCalls& calls, int descriptor, const FileStatus& status,
                  const PlacedRecord& placed) {
    const bool mayBeOld = status.size == placed.record.old.size;
    const bool mayBeNew = placed.written && status.size == placed.written->size;
    if (!mayBeOld && !mayBeNew) {
        return Holding::Other;
    }
    FileBytes bytes(calls, descriptor, 0, status.size);
    Checksum checksum;
    if (const int error = checksum.Add(bytes, 0, status.size)) {
        return error == ENODATA ? Holding::Other : Holding::Unknown;
    }
    if (mayBeOld && checksum.Value() == placed.record.checksum) {
        return Holding::Old;
    }
    return mayBeNew && checksum.Value() == placed.written->checksum ? Holding::New : Holding::Other;
}

void OpenRecords::Look(const std::string& own) {
    watched_.clear(); // until all is seen: a look that fails is taken again
    const std::vector<bool> watched = Watch(); // before the look: nothing may come between
    others_.clear();
    inUse_.clear();
    if (own.empty()) { // what this program has left is in a log that has ended
        left_.clear();
    }
    for (const std::string& path : LogsIn(calls_, folders_)) {
        std::optional<LogFile> log = path != own ? LogFile::LookAt(calls_, path) : std::nullopt;
        if (!log || log->Header().isSettled) {
            continue;
        }
        const bool isInUse = log->IsInUse(); // asked first: what it does after that will count
        for (PlacedRecord& record : log->Records()) {
            if (record.state == RecordState::Open &&
                record.record.kind == RecordKind::Replacement) {
                others_.push_back(std::move(record));
            }
        }
        if (isInUse) {
            inUse_.push_back(std::move(*log));
        }
    }
    watched_ = watched;
}

/// Watches the folders from now on. Returns which of them can be.
std::vector<bool> OpenRecords::Watch() {
    if (!watch_.IsOpen()) {
        watch_ = Descriptor(calls_, calls_.MakeWatch());
    }
    while (IsNews(calls_, watch_.Number())) {
        // What was before does not count.
    }
    std::vector<bool> watched;
    for (const std::string& folder : folders_) {
        watched.push_back(calls_.WatchFolder(watch_.Number(), folder) >= 0);
    }
    return watched;
}

/// Whether other programs have begun or ended something. What one is working at is locked, so only
/// its end counts.
bool OpenRecords::IsOutdated() {
    if (watched_.size() != folders_.size()) {
        return true;
    }
    for (std::size_t i = 0; i < folders_.size(); ++i) {
        FileStatus status;
        if (!watched_[i] && calls_.StatusOfName(folders_[i], status) == 0) {
            return true; // it has come, or cannot be watched
        }
    }
    return IsNews(calls_, watch_.Number()) ||
           std::any_of(inUse_.begin(), inUse_.end(),
                       [](const LogFile& log) { return !log.IsInUse(); });
}

bool OpenRecords::Hold(const std::string& path, const FileStatus& status, int descriptor,
                       const std::string& own) {
    if (IsOutdated() || Matches(path, status, descriptor)) {
        Look(own);
    }
    return Matches(path, status, descriptor);
}

/// With other numbers, a file that is whole by what the record says is none of them: another card
/// lies in the place of the one that was there.
bool OpenRecords::Matches(const std::string& path, const FileStatus& status, int descriptor) const {
    const auto isOf = [&](const PlacedRecord& placed) {
        if (placed.record.old.SameFileAs(status)) {
            return true;
        }
        if (placed.record.path != path) {
            return false;
        }
        const Holding holding = HoldingOf(calls_, descriptor, status, placed);
        return holding != Holding::Old && holding != Holding::New;
    };
    return std::any_of(others_.begin(), others_.end(), isOf) ||
           std::any_of(left_.begin(), left_.end(), isOf);
}

} // namespace vexmarrow
