// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

namespace vexmarrow {

class SystemCalls;

/// Takes the lock of an open file, for reading (shared) or for writing, so that no two programs of
/// ours use it at once; asks for other programs' locks of parts of it as well, but takes none of
/// these. Returns 0 when it is ours or the file system has no locks; else an errno, EWOULDBLOCK
/// when another program has the file. The lock ends when the file is closed.
int LockFile(SystemCalls& calls, int descriptor, bool forWriting);

} // namespace vexmarrow
