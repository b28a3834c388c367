// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/LogFile.h"
#include "textio/ByteSource.h"
#include "textio/Checksum.h"

#include <algorithm>
#include <cerrno>

namespace vexmarrow {

/// The whole old text of a file that a run has written or was writing: what the file still has of
/// it, then what the log has.
class OldText final : public ByteSource {
public:
    OldText(SystemCalls& calls, int descriptor, const LogFile& log, const PlacedRecord& placed)
        : record_(placed.record),
          inFile_(calls, descriptor, 0, record_.keptFrom),
          inLog_(calls, log.Number(), placed.KeptAt(), record_.KeptSize()) {}

    int Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) override {
        return offset < record_.keptFrom
                   ? inFile_.Show(offset, std::min(most, record_.keptFrom - offset), bytes)
                   : inLog_.Show(offset - record_.keptFrom, most, bytes);
    }

    /// What the log has.
    ByteSource& Kept() { return inLog_; }

    /// Whether both give the very text that the file had: 0, or ENODATA when they do not, or the
    /// errno of a failure to read them, which may pass.
    int Check() {
        Checksum checksum;
        const int error = checksum.Add(*this, 0, record_.old.size);
        return error != 0 || checksum.Value() == record_.checksum ? error : ENODATA;
    }

private:
    const RunRecord& record_;
    FileBytes inFile_;
    FileBytes inLog_;
};

/// How far old bytes have come into a file again.
enum class PutBackState {
    Whole,     ///< the file is as it was before it was written
    Untouched, ///< it holds what it held: there is no room for what was longer
    Mixed,     ///< some of its bytes are overwritten
};

struct PutBackResult {
    PutBackState state = PutBackState::Whole;
    int error = 0;     ///< errno, unless whole
    int timeError = 0; ///< errno of the failure to give the file its time again
};

/// Brings the old bytes of a record, which `old` shows from 0 on, into its open file again. What
/// lies past the present end comes first: that needs room on the disk, and when there is none the
/// file is cut back to what it was. Then the rest, the cut and the time. Takes no memory and throws
/// nothing, so that it cannot be left in the middle for any reason but a failure of the file.
PutBackResult PutBack(SystemCalls& calls, int descriptor, const PlacedRecord& placed,
                      ByteSource& old) noexcept;

/// What closing the file could still tell of a failed write, asked of a duplicate: the file itself
/// stays open, and locked. Returns 0 or the errno.
int ErrorOfClosing(SystemCalls& calls, int descriptor) noexcept;

} // namespace vexmarrow
