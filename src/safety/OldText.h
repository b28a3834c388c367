// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/LogFile.h"
#include "textio/ByteSource.h"
#include "textio/Checksum.h"

#include <algorithm>
#include <cerrno>

namespace vexmarrow {

/// What a file contains, compared with its record.
enum class Content {
    Old,        ///< exactly the old text
    New,        ///< exactly the new text
    Other,      ///< anything else
    Unreadable, ///< the file could not be read
};
Content ContentOf(SystemCalls& calls, int descriptor, const FileStatus& status,
                  const LogRecord& record);

/// The whole old text of a file that a run has overwritten. Its first bytes, which the run did not
/// change, come from the file; the others come from the log.
class OldText final : public ByteSource {
public:
    OldText(SystemCalls& calls, int descriptor, const LogFile& log, const LogRecord& record)
        : head_(record.head),
          inFile_(calls, descriptor, 0, head_.keptFrom),
          inLog_(calls, log.Number(), record.KeptAt(), head_.KeptSize()) {}

    int Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) override {
        return offset < head_.keptFrom
                   ? inFile_.Show(offset, std::min(most, head_.keptFrom - offset), bytes)
                   : inLog_.Show(offset - head_.keptFrom, most, bytes);
    }

    /// The part that is in the log.
    ByteSource& Kept() { return inLog_; }

    /// Returns 0 when the text has the checksum of the record, ENODATA when it is damaged, or the
    /// errno of a failed read, which may be temporary.
    int Check() {
        Checksum checksum;
        const int error = checksum.Add(*this, 0, head_.old.size);
        return error != 0 || checksum.Value() == head_.checksum ? error : ENODATA;
    }

private:
    const RecordHead& head_;
    FileBytes inFile_;
    FileBytes inLog_;
};

/// The state of a file after RestoreOldText.
enum class RestoreState {
    Restored,  ///< it has its old text again
    Unchanged, ///< nothing was written, because there is no room for a longer old text
    Mixed,     ///< some bytes are restored, others are not
};

struct RestoreResult {
    RestoreState state = RestoreState::Restored;
    int error = 0;     ///< errno, unless the file is restored
    int timeError = 0; ///< errno when only its time could not be restored
};

/// Writes the old bytes of a record, which `old` has from offset 0 on, back into its open file, and
/// sets its size and time. Bytes beyond the present end come first, because they need disk space:
/// if there is none, the file stays as it is. Allocates no memory, so that only the file can fail.
RestoreResult RestoreOldText(SystemCalls& calls, int descriptor, const LogRecord& record,
                             ByteSource& old) noexcept;

/// The error that closing the file would report, 0 if none: some file systems report failed writes
/// only then. Closes a duplicate of the descriptor, so the file stays open and locked.
int ErrorOfClosing(SystemCalls& calls, int descriptor) noexcept;

} // namespace vexmarrow
