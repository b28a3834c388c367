// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/Descriptor.h"

#include <string>
#include <string_view>

namespace vexmarrow {

/// A file that was opened, or why it was not.
struct OpenedFile {
    Descriptor file;            ///< not open in that case
    int error = 0;              ///< errno
    std::u16string_view reason; ///< one of ours, which says more than that; or empty
};

/// Opens an existing file for reading, without waiting and without locking it.
OpenedFile OpenToRead(SystemCalls& calls, const std::string& path);

/// The same for reading and writing. Changes nothing. A link of somebody else (neither this user
/// nor root) is not followed: in a shared folder it may lead to a file that this user would never
/// write.
OpenedFile OpenToWrite(SystemCalls& calls, const std::string& path);

} // namespace vexmarrow
