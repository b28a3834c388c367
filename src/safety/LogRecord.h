// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/FileStatus.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vexmarrow {

/// How a run writes a file.
enum class RecordKind : std::uint64_t {
    Overwrite = 1, ///< the file existed, and its old bytes are in the log
    NewFile = 2,   ///< the run creates the file
};

/// The progress of the write. It is one byte, so that a kill cannot leave it half written.
enum class RecordState : char {
    Open = 1,   ///< the file may hold old and new bytes
    Done = 2,   ///< the file holds the new text, and this can be undone
    Closed = 3, ///< nothing remains to be done
};

/// The head of a record: everything that is known before the file is changed. It is written once.
struct RecordHead {
    RecordKind kind = RecordKind::Overwrite;
    std::string path;           ///< the absolute path of the file, in the system's bytes
    std::string temporaryName;  ///< of a new file, on file systems without O_TMPFILE; else empty
    FileStatus old;             ///< the file before the write; without inode for a new file
    std::int64_t begun = 0;     ///< when the record was added, in nanoseconds since 1970
    std::uint64_t keptFrom = 0; ///< the log has the old bytes from this offset to the end
    std::uint64_t checksum = 0; ///< of the whole old text

    std::uint64_t KeptSize() const { return old.size - keptFrom; }
};

/// The tail of a record describes the new text.
struct RecordTail {
    std::uint64_t size = 0;     ///< bytes
    std::uint64_t checksum = 0; ///< of the whole new text
    FileStatus file;            ///< of a new file: its device, inode and time of birth
};

/// A record of a log. The log has its head, its state, its tail and its old bytes in this order.
struct LogRecord {
    RecordHead head;
    RecordState state = RecordState::Open;
    std::optional<RecordTail> tail; ///< once the log has all of it
    std::uint64_t at = 0;           ///< the offset of the head in the log, in bytes
    std::uint64_t headSize = 0;
    std::uint64_t headChecksum = 0;

    std::uint64_t StateAt() const { return at + headSize; }
    std::uint64_t TailAt() const { return StateAt() + 1; }
    std::uint64_t KeptAt() const;
    std::uint64_t End() const { return KeptAt() + head.KeptSize(); }
};

/// The absolute path for one that may be relative to the working folder.
std::string FullPath(std::string path);

/// Sets `bytes` to the head, state and tail of a record, and its `headSize` and `headChecksum`. The
/// log's `salt` enters the checksums, so that bytes of a user's file never look like a record.
void EncodeRecord(LogRecord& record, std::uint64_t salt, std::string& bytes);

/// The bytes of a tail for a record whose head was encoded or parsed.
std::string EncodeTail(const LogRecord& record, const RecordTail& tail);

/// The most bytes that a head may have; state and tail add only a few.
inline constexpr std::size_t kLongestHead = 16384;

/// Parses the record at offset `at` of a log from its first bytes: kLongestHead, or fewer at the
/// end of the log. Returns nothing unless the head is complete and valid. Any bytes are safe.
std::optional<LogRecord> ParseRecord(std::string_view bytes, std::uint64_t salt, std::uint64_t at);

} // namespace vexmarrow
