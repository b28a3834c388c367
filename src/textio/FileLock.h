// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

namespace vexmarrow {

class SystemCalls;

/// The reason to give to the user when LockFile returns EWOULDBLOCK.
inline constexpr std::u16string_view kLockedByAnother = u"It is locked by another program";

/// Locks an open file, shared for reading or exclusively for writing, so that two running copies of
/// the program never interfere. Also respects other programs' locks of parts of the file, but takes
/// no such lock. Returns 0 if the file is locked or its file system has no locks; otherwise an
/// errno value, EWOULDBLOCK if another program has locked it. Closing the file releases the lock.
int LockFile(SystemCalls& calls, int descriptor, bool forWriting);

} // namespace vexmarrow
