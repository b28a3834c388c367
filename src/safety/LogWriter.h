// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/LogFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vexmarrow {

class ByteSource;

/// Texts of up to this many bytes are held in memory and written to the log in one call.
inline constexpr std::size_t kSmallText = std::size_t{1024} * 1024;

/// Whether the log stays after the run, so that the run can be undone.
enum class UndoSupport { Offered, None };

/// Writes the log of the run in progress. Its file is created with the first record.
///
/// All logs in a folder together take at most half of the space that would be free without them.
/// When they need more, the oldest runs are removed first, then the earlier records of this run.
class LogWriter {
public:
    LogWriter(SystemCalls& calls, std::vector<std::string> folders, UndoSupport undo)
        : calls_(calls), folders_(std::move(folders)), undo_(undo) {}
    ~LogWriter() { End(); }
    LogWriter(const LogWriter&) = delete;
    LogWriter& operator=(const LogWriter&) = delete;

    /// Adds an open record with old bytes from `old`, the whole old text. Only then may the file be
    /// changed. The tail can be added later. Throws Failure, and then nothing is recorded.
    LogRecord AddRecord(RecordHead head, ByteSource& old,
                        const std::optional<RecordTail>& tail = std::nullopt);

    /// Adds the tail to a record. Returns 0 or the errno of the failure.
    int AddTail(LogRecord& record, const RecordTail& tail);

    /// Sets the state of an open record. On failure returns false: recovery will settle the record.
    bool Settle(LogRecord& record, RecordState state) noexcept;

    /// Ends the run: keeps its log, or removes it when there is nothing to undo. Removes old logs.
    void End() noexcept;

    /// The log of the run, or null before the first record.
    const LogFile* File() const { return file_ ? &*file_ : nullptr; }

private:
    void Make(const std::u16string& path);
    int Append(LogRecord& record, ByteSource& old);
    bool HasRoomFor(std::uint64_t size);
    void Measure();
    bool MakeRoom(int error);

    SystemCalls& calls_;
    std::vector<std::string> folders_;
    UndoSupport undo_;
    std::optional<LogFile> file_;
    std::uint64_t end_ = 0;   // where the next record begins
    std::uint64_t room_ = 0;  // bytes that may be written before the space is measured again
    std::uint64_t limit_ = 0; // the most bytes that all logs may take
    int open_ = 0;            // open records
    bool hasDone_ = false;    // a record can be undone
    std::string buffer_;      // reused for every record
};

} // namespace vexmarrow
