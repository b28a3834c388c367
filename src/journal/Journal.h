// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "journal/JournalFile.h"
#include "journal/JournalRecord.h"
#include "journal/PutInPlace.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// The write-ahead journal of this process: holds the new bytes of the one file that is being
/// written, from before its first old byte is touched until the last one is replaced.
///
/// Small payloads stay in memory until Seal writes them with their header; large ones go to disk
/// as they come, and the header last. When a folder has no room for the journal the next one
/// serves, and takes over what the first has got so far.
class Journal final : private ByteSource {
public:
    Journal(SystemCalls& calls, std::vector<std::string> folders);
    ~Journal() override; // removes the journal from its folder
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    /// Begins a record. What was begun before and not sealed is dropped.
    void Begin(JournalRecord record);

    /// Adds bytes to the payload. Throws Failure when no folder takes them.
    void Append(std::string_view bytes);

    /// Makes the record whole on disk: from now on recovery would complete it. Throws Failure, the
    /// record not being pending then.
    void Seal();

    /// The payload of the sealed record, for PutInPlace; and its size in bytes.
    ByteSource& Payload() { return *this; }
    std::uint64_t PayloadSize() const { return record_.payloadSize; }

    /// Marks the sealed record as done.
    void Done() noexcept;

    /// Leaves the sealed record to recovery, in a journal that is not used any more.
    void Retire() noexcept;

    /// Removes the journal until there is a next record. No record may be pending.
    void Settle() noexcept;

    /// Whether a file is this journal.
    bool Is(const FileStatus& file) const;

private:
    int Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) override;
    void Spill();
    void Put(std::uint64_t offset, std::string_view bytes);
    void MoveOn(int error);
    bool OpenIn(const std::string& folder);
    bool CopyPayloadFrom(JournalFile& old);
    void Remove() noexcept;

    SystemCalls& calls_;
    std::vector<std::string> folders_;
    std::size_t folder_ = 0; // the one that serves at present
    std::u16string reasons_; // why those before it do not
    std::optional<JournalFile> file_;

    std::string machine_;
    JournalRecord record_;
    std::size_t headerSize_ = 0;
    std::string buffer_;           // room for the header, then the payload; or its last part
    std::uint64_t onDisk_ = 0;     // bytes of the payload that have left the buffer
    Checksum checksum_;            // of those
    std::unique_ptr<char[]> copy_; // NOLINT(*-avoid-c-arrays): a block on its way between files
};

} // namespace vexmarrow
