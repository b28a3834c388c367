// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/RunRecord.h"
#include "textio/Descriptor.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vexmarrow {

/// What a log begins with, as it lies there.
struct LogHeader {
    std::array<char, 8> mark{'V', 'X', 'M', 'R', 'U', 'N', '\x1A', '\1'}; ///< the last is a version
    std::uint64_t salt = 0;     ///< goes into the checksums of this log alone
    std::int64_t begun = 0;     ///< when the run began, in nanoseconds since 1970
    std::uint64_t checksum = 0; ///< of all before it
    bool isPartial = false;     ///< there was no room to keep the first records of the run
    bool isSettled = false;     ///< no record is open
    bool hasWayBack = true;     ///< it is kept to take the run back
};

/// The log of a run on disk. While a program works with it, it holds its lock, which ends with the
/// program, however that ends.
class LogFile {
public:
    /// Makes an empty log. Sets `error` to the errno of a failure, EEXIST for a name in use.
    static std::optional<LogFile> Make(SystemCalls& calls, const std::string& path, bool hasWayBack,
                                       int& error);

    /// Opens and locks a log that no program works with. Nothing when one does, or when it is no
    /// log: a regular file of this user that nobody else can write, with a whole header.
    static std::optional<LogFile> TakeOver(SystemCalls& calls, const std::string& path);

    /// The same without a lock, to look at it only. Somebody may be working with it. Both throw
    /// Failure where it cannot be read.
    static std::optional<LogFile> LookAt(SystemCalls& calls, const std::string& path);

    /// Has the other programs look again, before work on a log that they know: what happens within
    /// one does not show in its folder.
    void Announce();

    const std::string& Path() const { return path_; }
    int Number() const { return file_.Number(); }
    const LogHeader& Header() const { return header_; }
    const FileStatus& Status() const { return status_; }

    /// Where the first record begins, in bytes.
    static constexpr std::uint64_t kFirstRecord = sizeof(LogHeader);

    /// The record that begins there; nothing when there is none that is whole. Throws Failure when
    /// that cannot be read, which must not pass for the end of the log.
    std::optional<PlacedRecord> RecordAt(std::uint64_t offset) const;

    /// All records, from the first to the last. Throws Failure like RecordAt.
    std::vector<PlacedRecord> Records() const;

    // Each returns 0 or the errno of the failure.
    int Write(std::uint64_t offset, std::string_view bytes);
    int SetState(PlacedRecord& record, RecordState state);
    int SetSettled(bool settled);
    int DropRecords(); ///< leaves the header alone, marked as partial

    /// Whether another program works with it.
    bool IsInUse() const;

    void Remove() { calls_->Unlink(path_); }

private:
    LogFile(SystemCalls& calls, std::string path, Descriptor file)
        : calls_(&calls), path_(std::move(path)), file_(std::move(file)) {}
    bool IsOfUser();
    bool ReadHeader();
    [[noreturn]] void FailToRead(int error) const;

    SystemCalls* calls_;
    std::string path_;
    Descriptor file_;
    FileStatus status_;
    LogHeader header_;
};

/// Whether an open file is a log, of whatever run: they are the user's own and open to nobody else.
bool IsLog(SystemCalls& calls, int descriptor, const FileStatus& status);

} // namespace vexmarrow
