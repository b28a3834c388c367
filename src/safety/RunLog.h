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

/// Texts up to this many bytes are held in memory, and go into the log in one write.
inline constexpr std::size_t kSmallText = std::size_t{1024} * 1024;

/// Whether the old texts stay after the work, so that it can be taken back.
enum class WayBack { Kept, None };

/// The log of the run in progress: made with its first record, and ended with the run.
///
/// All logs of a folder take at most half of the room that its file system would have without them.
/// For more, the oldest runs go first, then the earlier records of this one.
class RunLog {
public:
    RunLog(SystemCalls& calls, std::vector<std::string> folders, WayBack wayBack)
        : calls_(calls), folders_(std::move(folders)), wayBack_(wayBack) {}
    ~RunLog() { End(); }
    RunLog(const RunLog&) = delete;
    RunLog& operator=(const RunLog&) = delete;

    /// Writes a record with its old bytes, from the old text that `old` shows; from then on it is
    /// open, and the file may be touched. `written` is the tail, if it is known. Throws Failure,
    /// nothing being recorded then.
    PlacedRecord Keep(RunRecord record, ByteSource& old,
                      const std::optional<WrittenText>& written = std::nullopt);

    /// Adds the tail to a record. Returns 0 or the errno of the failure.
    int AddTail(PlacedRecord& record, const WrittenText& written);

    /// Marks an open record. Returns false when it had to stay open: the next start settles it.
    bool Settle(PlacedRecord& record, RecordState state) noexcept;

    /// The run is over. Never fails.
    void End() noexcept;

    /// The log, or null while there is none.
    const LogFile* File() const { return file_ ? &*file_ : nullptr; }

private:
    void Make(const std::u16string& path);
    int Append(PlacedRecord& placed, ByteSource& old);
    bool HasRoomFor(std::uint64_t size);
    void Measure();
    bool MakeRoom(int error);

    SystemCalls& calls_;
    std::vector<std::string> folders_;
    WayBack wayBack_;
    std::optional<LogFile> file_;
    std::string folder_;      // of the log
    std::uint64_t end_ = 0;   // where the next record begins
    std::uint64_t room_ = 0;  // bytes that may still be written before it is measured again
    std::uint64_t share_ = 0; // bytes that all logs may take
    int open_ = 0;            // records in work, or left so for the next start
    bool hasDone_ = false;    // there is something to take back
    std::string buffer_;      // of one record, kept for the next
};

/// Removes a log, unless it is in use or holds an open record: then it stays until the user has
/// answered. Returns whether it is gone.
bool RemoveLog(SystemCalls& calls, const std::string& path);

/// Removes the logs of runs that began more than 30 days ago, and all but the last five, as far as
/// RemoveLog does.
void RemoveOldLogs(SystemCalls& calls, const std::vector<std::string>& folders) noexcept;

} // namespace vexmarrow
