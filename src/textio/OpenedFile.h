// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/Descriptor.h"

#include <string>
#include <string_view>

namespace vexmarrow {

/// A file that was opened, or the reason why it could not be.
struct OpenedFile {
    Descriptor file;            ///< not open if there is an error
    int error = 0;              ///< errno value
    std::u16string_view reason; ///< the program's own, clearer than that of `error`; or empty
};

/// Opens an existing file for reading. Neither waits nor locks the file.
OpenedFile OpenToRead(SystemCalls& calls, const std::string& path);

/// The same for reading and writing; the file is not changed. Does not follow a link that belongs
/// to anybody but this user and root: in a shared folder, another user may have put it there to
/// lead to a file that this user would never write.
OpenedFile OpenToWrite(SystemCalls& calls, const std::string& path);

} // namespace vexmarrow
