// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/OpenedFile.h"

#include <string>
#include <string_view>

namespace vexmarrow {

class InputFile;

/// The reason not to write into a file that is open for writing; empty when there is none.
std::u16string_view ReasonToRefuse(SystemCalls& calls, int descriptor, const FileStatus& status);

/// Opens an existing file for writing and locks it, unless there is a ReasonToRefuse. `status` is
/// read after that. If `source` reads the same file, it gives up its lock first.
OpenedFile OpenTarget(SystemCalls& calls, const std::string& path, FileStatus& status,
                      InputFile* source = nullptr);

/// The reason why a file was not opened, as a sentence without its full stop.
std::u16string ReasonOf(const OpenedFile& opened);

} // namespace vexmarrow
