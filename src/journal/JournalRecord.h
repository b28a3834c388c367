// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/FileStatus.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vexmarrow {

/// What a record of the journal is about.
enum class RecordKind : std::uint64_t {
    Replacement = 1, ///< an existing file that is about to be written into
    Creation = 2,    ///< a file under a passing name, of no use when the program is gone
};

/// What a journal holds while a file is being written: enough to complete the file, and to be sure
/// that it is the same file.
struct JournalRecord {
    RecordKind kind = RecordKind::Replacement;
    std::string machine;    ///< on which this was written: file numbers mean nothing elsewhere
    std::string path;       ///< the full path of the file, as the system has it
    FileStatus target;      ///< the file before it is written; without inode when not made yet
    std::int64_t begun = 0; ///< when, in nanoseconds since 1970
    std::uint64_t base = 0; ///< where the new bytes begin in the file; what is before them stays
    std::uint64_t payloadSize = 0;     ///< how many new bytes there are; the file ends after them
    std::uint64_t payloadChecksum = 0; ///< ChecksumOf them
};

/// A record is first its header, then its payload. Nothing is pending while the first byte of a
/// journal is zero, so writing kNoRecord over it is what marks a record as done: a single byte is
/// written wholly or not at all.
inline constexpr std::string_view kRecordMark{"VXMJRNL\x1A", 8};
inline constexpr std::string_view kNoRecord{"\0", 1};

/// No header is longer than this, in bytes: a path has a limit.
inline constexpr std::size_t kLongestHeader = 16384;

/// The bytes of the header. Their number depends on the lengths of path and machine only.
std::string EncodeHeader(const JournalRecord& record);

/// What the beginning of a journal is.
enum class HeaderState {
    None,    ///< nothing is pending
    Whole,   ///< a header, every byte of it as it was written
    Foreign, ///< of a later version of the program, which knows what to do with it
    Damaged, ///< anything else
};

struct ParsedHeader {
    HeaderState state = HeaderState::None;
    JournalRecord record;            ///< when the state is Whole
    std::uint64_t payloadOffset = 0; ///< then: where the payload begins, in bytes
};

/// Reads a header from the first kLongestHeader bytes of a journal (all of a shorter one). Takes
/// any bytes.
ParsedHeader ParseHeader(std::string_view bytes);

/// The checksum of bytes that are all at hand.
std::uint64_t ChecksumOf(std::string_view bytes);

/// The same for bytes that come in parts.
class Checksum {
public:
    Checksum();
    ~Checksum();
    Checksum(const Checksum&) = delete;
    Checksum& operator=(const Checksum&) = delete;

    void Restart();
    void Add(std::string_view bytes);
    std::uint64_t Value() const;

private:
    void* state_;
};

} // namespace vexmarrow
