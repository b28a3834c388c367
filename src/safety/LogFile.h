// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/LogRecord.h"
#include "textio/Descriptor.h"
#include "textio/SystemCalls.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vexmarrow {

/// The first bytes of a log, in the layout that the file has.
struct LogHeader {
    std::array<char, 8> mark{'V', 'X', 'M', 'R', 'U', 'N', '\x1A', '\1'}; ///< ends with the version
    std::uint64_t salt = 0;     ///< a random number that enters this log's checksums
    std::int64_t begun = 0;     ///< when the run began, in nanoseconds since 1970
    std::uint64_t checksum = 0; ///< of the fields above
    bool isPartial = false;     ///< the first records of the run were dropped for lack of room
    bool isSettled = false;     ///< no record is open
    bool allowsUndo = true;     ///< the log stays after the run, so that the run can be undone
};

/// The log of a run on disk. The program that works with it holds its lock until it ends.
class LogFile {
public:
    /// Creates and locks an empty log. On failure returns nothing and sets `error` to the errno:
    /// EEXIST when the name is taken.
    static std::optional<LogFile> Make(SystemCalls& calls, const std::string& path, bool allowsUndo,
                                       int& error);

    /// Opens and locks a log. Returns nothing when it is in use, or is not a regular file of this
    /// user with a valid header that nobody else can write. Throws Failure when it cannot be read.
    static std::optional<LogFile> TakeOver(SystemCalls& calls, const std::string& path);

    /// Like TakeOver, but opens the log only for reading and without a lock, so it may be in use.
    static std::optional<LogFile> LookAt(SystemCalls& calls, const std::string& path);

    /// Makes other running copies of the program read the logs again, by changing the time of the
    /// folder. To be called before records change: they watch the folder, not the logs in it.
    void NotifyOtherPrograms();

    const std::string& Path() const { return path_; }
    int Number() const { return file_.Number(); }
    const LogHeader& Header() const { return header_; }
    const FileStatus& Status() const { return status_; }

    /// The offset of the first record in bytes.
    static constexpr std::uint64_t kFirstRecord = sizeof(LogHeader);

    /// All complete records in order. Throws Failure when the log cannot be read.
    std::vector<LogRecord> Records() const;

    // Each returns 0 or the errno of the failure.
    int Write(std::uint64_t offset, std::string_view bytes);
    int SetState(LogRecord& record, RecordState state);
    int SetSettled(bool settled);
    int DropRecords(); ///< removes all records and marks the header as partial

    bool IsInUse() const;

    void Remove() { calls_->Unlink(path_); }

private:
    LogFile(SystemCalls& calls, std::string path, Descriptor file)
        : calls_(&calls), path_(std::move(path)), file_(std::move(file)) {}
    bool IsOfUser();
    bool ReadHeader();
    std::optional<LogRecord> RecordAt(std::uint64_t offset) const;
    [[noreturn]] void FailToRead(int error) const;

    SystemCalls* calls_;
    std::string path_;
    Descriptor file_;
    FileStatus status_;
    LogHeader header_;
};

/// Whether an open file is one of this user's logs.
bool IsLog(SystemCalls& calls, int descriptor, const FileStatus& status);

} // namespace vexmarrow
