// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/LogFile.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "safety/Clock.h"
#include "safety/RandomNumbers.h"
#include "textio/Checksum.h"
#include "textio/Descriptor.h"
#include "textio/OpenedFile.h"
#include "textio/Paths.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace vexmarrow {
namespace {

constexpr int kFlags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
constexpr mode_t kForUserOnly = 0600; // a log holds people's contacts
constexpr mode_t kOthersRights = 0077;

std::uint64_t HeaderChecksum(const LogHeader& header) {
    return ChecksumOf(
        std::string_view(reinterpret_cast<const char*>(&header), offsetof(LogHeader, checksum)));
}

std::string_view BytesOf(const bool& flag) {
    return {reinterpret_cast<const char*>(&flag), sizeof flag};
}

} // namespace

std::optional<LogFile> LogFile::Make(SystemCalls& calls, const std::string& path, bool allowsUndo,
                                     int& error) {
    LogFile log(
        calls, path,
        Descriptor(calls, calls.Open(path, kFlags | O_RDWR | O_CREAT | O_EXCL, kForUserOnly)));
    log.header_.salt = RandomNumber();
    log.header_.begun = Now();
    log.header_.allowsUndo = allowsUndo;
    log.header_.checksum = HeaderChecksum(log.header_);
    error = log.file_.IsOpen() && calls.Lock(log.Number(), LOCK_EX) == 0 ? 0 : errno;
    if (error == 0 && (!log.IsOfUser() || (log.status_.mode & kOthersRights) != 0)) {
        // Another program has removed the log before it was locked, so the name may belong to a new
        // log; or the file system gives all files the same mode.
        error = log.status_.links == 0 ? EEXIST : EACCES;
    }
    if (error == 0) {
        error = log.Write(0, {reinterpret_cast<const char*>(&log.header_), sizeof log.header_});
    }
    if (error == 0) {
        log.NotifyOtherPrograms(); // they ignore a log that has no header yet
        return log;
    }
    if (log.file_.IsOpen() && error != EEXIST && error != EWOULDBLOCK) {
        log.Remove();
    }
    return std::nullopt;
}

std::optional<LogFile> LogFile::TakeOver(SystemCalls& calls, const std::string& path) {
    LogFile log(calls, path, Descriptor(calls, calls.Open(path, kFlags | O_RDWR, 0)));
    if (!log.file_.IsOpen() || calls.Lock(log.Number(), LOCK_EX) != 0 || !log.IsOfUser()) {
        return std::nullopt;
    }
    if (log.status_.size < kFirstRecord) { // a program was killed before it wrote the header
        log.Remove();
        return std::nullopt;
    }
    return log.ReadHeader() ? std::optional(std::move(log)) : std::nullopt;
}

std::optional<LogFile> LogFile::LookAt(SystemCalls& calls, const std::string& path) {
    LogFile log(calls, path, Descriptor(calls, calls.Open(path, kFlags | O_RDONLY, 0)));
    const int error = log.file_.IsOpen() ? 0 : errno;
    if (error == EMFILE || error == ENFILE || error == ENOMEM || error == EIO) {
        log.FailToRead(error); // temporary: the log may exist
    }
    return error == 0 && log.IsOfUser() && log.ReadHeader() ? std::optional(std::move(log))
                                                            : std::nullopt;
}

void LogFile::FailToRead(int error) const {
    throw FileFailure(u"Could not read the file", TextFromNativeName(path_), error);
}

/// Whether only this user can write the file. Backups may have added links and the right to read.
bool LogFile::IsOfUser() {
    constexpr mode_t kWritableForOthers = 0022;
    return calls_->Status(Number(), status_) == 0 && status_.IsRegular() &&
           status_.owner == ::geteuid() && status_.links > 0 &&
           (status_.mode & kWritableForOthers) == 0;
}

bool LogFile::ReadHeader() {
    std::array<char, kFirstRecord> bytes{};
    std::size_t got = 0;
    if (const int error = ReadWhole(*calls_, Number(), bytes.data(), bytes.size(), 0, got)) {
        FailToRead(error);
    }
    if (got < bytes.size()) {
        return false;
    }
    // A byte from a file may have any value, but a bool only 0 or 1: the flags are converted.
    std::memcpy(static_cast<void*>(&header_), bytes.data(), offsetof(LogHeader, isPartial));
    header_.isPartial = bytes[offsetof(LogHeader, isPartial)] != 0;
    header_.isSettled = bytes[offsetof(LogHeader, isSettled)] != 0;
    header_.allowsUndo = bytes[offsetof(LogHeader, allowsUndo)] != 0;
    return header_.mark == LogHeader().mark && header_.checksum == HeaderChecksum(header_);
}

std::optional<LogRecord> LogFile::RecordAt(std::uint64_t offset) const {
    constexpr std::size_t kFirstLook = 1024; // enough unless a path is very long
    std::string bytes;
    std::optional<LogRecord> record;
    for (const std::size_t size : {kFirstLook, kLongestHead}) {
        std::size_t got = 0;
        bytes.resize(size);
        if (const int error = ReadWhole(*calls_, Number(), bytes.data(), size, offset, got)) {
            FailToRead(error);
        }
        record = ParseRecord(std::string_view(bytes).substr(0, got), header_.salt, offset);
        const bool isWhole = record && offset + got >= record->KeptAt();
        if (isWhole || got < size) {
            break;
        }
    }
    return record;
}

std::vector<LogRecord> LogFile::Records() const {
    std::vector<LogRecord> records;
    for (std::uint64_t at = kFirstRecord; std::optional<LogRecord> record = RecordAt(at);) {
        at = record->End();
        records.push_back(std::move(*record));
    }
    return records;
}

int LogFile::Write(std::uint64_t offset, std::string_view bytes) {
    return WriteWhole(*calls_, Number(), bytes, offset);
}

void LogFile::NotifyOtherPrograms() {
    const OpenedFile folder = OpenToRead(*calls_, ParentFolder(path_));
    calls_->SetModified(folder.file.Number(), Now());
}

int LogFile::SetState(LogRecord& record, RecordState state) {
    const char byte = static_cast<char>(state);
    const int error = Write(record.StateAt(), {&byte, 1});
    record.state = error == 0 ? state : record.state;
    return error;
}

int LogFile::SetSettled(bool settled) {
    header_.isSettled = settled;
    return Write(offsetof(LogHeader, isSettled), BytesOf(header_.isSettled));
}

int LogFile::DropRecords() {
    header_.isPartial = true;
    const int error = Write(offsetof(LogHeader, isPartial), BytesOf(header_.isPartial));
    return error != 0 ? error : calls_->Truncate(Number(), kFirstRecord) == 0 ? 0 : errno;
}

bool IsLog(SystemCalls& calls, int descriptor, const FileStatus& status) {
    if ((status.mode & kOthersRights) != 0 || status.owner != ::geteuid()) {
        return false;
    }
    const LogHeader header;
    std::array<char, header.mark.size() - 1> first{}; // without the version
    std::size_t got = 0;
    return ReadWhole(calls, descriptor, first.data(), first.size(), 0, got) == 0 &&
           got == first.size() && std::equal(first.begin(), first.end(), header.mark.begin());
}

bool LogFile::IsInUse() const {
    if (calls_->Lock(Number(), LOCK_SH) != 0) {
        return true;
    }
    calls_->Lock(Number(), LOCK_UN);
    return false;
}

} // namespace vexmarrow
