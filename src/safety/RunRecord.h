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

/// What a run has done to a file, or was about to do.
enum class RecordKind : std::uint64_t {
    Replacement = 1, ///< the file was there, and its old bytes are in the log
    Creation = 2,    ///< there was none
};

/// How far it has come. One byte, because a kill can come in the middle of a longer mark.
enum class RecordState : char {
    Open = 1,   ///< the file may hold anything
    Done = 2,   ///< it holds what the run has written, and that can be taken back
    Closed = 3, ///< there is nothing more to do
};

/// The head of a record: all that is known before the first byte of the file is touched. It is
/// never written again.
struct RunRecord {
    RecordKind kind = RecordKind::Replacement;
    std::string path;           ///< the full path of the file, as the system has it
    std::string passingName;    ///< under which a new file is written, where files must have a name
    FileStatus old;             ///< the file before; without inode when there was none
    std::int64_t begun = 0;     ///< when the work on the file began, in nanoseconds since 1970
    std::uint64_t keptFrom = 0; ///< the old bytes from there to the end follow in the log
    std::uint64_t checksum = 0; ///< of the whole old text

    std::uint64_t KeptSize() const { return old.size - keptFrom; }
};

/// The tail: what the run has written.
struct WrittenText {
    std::uint64_t size = 0;     ///< bytes
    std::uint64_t checksum = 0; ///< of all of them
    FileStatus file;            ///< of a new file: its device, inode and time of birth
};

/// A record in its log: head, state, tail, old bytes.
struct PlacedRecord {
    RunRecord record;
    RecordState state = RecordState::Open;
    std::optional<WrittenText> written; ///< once the tail is there and whole
    std::uint64_t at = 0;               ///< where the head begins in the log, in bytes
    std::uint64_t headSize = 0;
    std::uint64_t headChecksum = 0;

    std::uint64_t StateAt() const { return at + headSize; }
    std::uint64_t TailAt() const { return StateAt() + 1; }
    std::uint64_t KeptAt() const;
    std::uint64_t End() const { return KeptAt() + record.KeptSize(); }
};

/// Puts the bytes of a placed record up to its old bytes into `bytes`, in the place of what is
/// there. Fills in the size and checksum of its head.
/// `salt` is that of the log: so nothing that a file holds is ever taken for a record.
void EncodeRecord(PlacedRecord& placed, std::uint64_t salt, std::string& bytes);

/// The bytes of the tail, for a record whose head was encoded or parsed.
std::string EncodeTail(const PlacedRecord& placed, const WrittenText& written);

/// No head is longer than this, in bytes; and all of a record but its old bytes hardly is.
inline constexpr std::size_t kLongestHead = 16384;

/// Reads the record that begins at `at` of a log from its first bytes: kLongestHead of them, or all
/// that there are. Nothing unless the head is whole. Takes any bytes.
std::optional<PlacedRecord> ParseRecord(std::string_view bytes, std::uint64_t salt,
                                        std::uint64_t at);

} // namespace vexmarrow
