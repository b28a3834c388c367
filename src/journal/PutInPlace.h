// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/FileStatus.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vexmarrow {

class Failure;
class SystemCalls;

/// An existing file that was opened for writing, or why it was not.
struct OpenedInPlace {
    int descriptor = -1; ///< -1 for none
    FileStatus status;
    int error = 0;              ///< errno, when there is none
    std::u16string_view reason; ///< then: one of ours, which says more than that; or empty
};

/// Opens an existing regular file without changing or locking it. Refuses one that would lose
/// set-id bits or capabilities by being written into.
OpenedInPlace OpenInPlace(SystemCalls& calls, const std::string& path);

/// Why a file must not be written into although it is open for that; empty when it may be.
std::u16string_view ReasonToRefuse(int descriptor, const FileStatus& status);

/// Takes the lock of an open file. Returns 0 when it is ours or the file system has no locks; else
/// an errno, EWOULDBLOCK when another program has it.
int LockForWriting(SystemCalls& calls, int descriptor);

/// The failure of either: `doing` "path": the reason.
Failure OpenFailure(std::u16string_view doing, std::u16string_view path,
                    const OpenedInPlace& opened);
Failure LockFailure(std::u16string_view doing, std::u16string_view path, int error);

/// The mode that a file is to have again that was being written: the present one, with the set-id
/// bits that it had before, if these are all that it lacks.
mode_t ModeToGiveBack(mode_t present, mode_t before);

/// Bytes that lie somewhere and are read when they are needed.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    /// Shows up to `most` bytes from `offset` on, at least one. Returns 0 or the errno of the
    /// failure. Takes no memory.
    virtual int Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) = 0;
};

/// How far new bytes have come into an old file.
enum class InPlaceState {
    Complete,  ///< the file is as it is to be
    Untouched, ///< it holds all of its old bytes
    Mixed,     ///< some old bytes are overwritten
};

struct InPlaceResult {
    InPlaceState state = InPlaceState::Complete;
    int error = 0; ///< errno, unless complete
};

/// Where new bytes go in an open file.
struct InPlaceJob {
    int descriptor = -1;
    FileStatus old;         ///< the file as it is
    std::uint64_t base = 0; ///< not past its end
    std::uint64_t size = 0; ///< of the new bytes; the file ends after them
};

/// Gives an open file the set-id bits that `mode` has. Returns 0 or the errno of the failure.
int RestoreSetIdBits(SystemCalls& calls, int descriptor, mode_t mode);

/// Brings new bytes into an existing file. What lies past its old end comes first: that needs room
/// on the disk, and when there is none the file is cut back to what it was. Then the rest, the cut
/// and the set-id bits, which writing takes away. Takes no memory and throws nothing, so that it
/// cannot be left in the middle for any reason but a failure of the file.
InPlaceResult PutInPlace(SystemCalls& calls, const InPlaceJob& job, ByteSource& source) noexcept;

} // namespace vexmarrow
