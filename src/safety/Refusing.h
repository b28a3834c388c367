// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/OpenedFile.h"

#include <string>
#include <string_view>

namespace vexmarrow {

class InputFile;

/// Why a file must not be written into although it is open for that; empty when it may be.
std::u16string_view ReasonToRefuse(SystemCalls& calls, int descriptor, const FileStatus& status);

/// Opens an existing file to write into it, and locks it, unless it is to be refused. `status` is
/// that of the file once it is locked. Where it is the file that `source` reads, that one gives up
/// its lock: each opening has a lock of its own.
OpenedFile OpenTarget(SystemCalls& calls, const std::string& path, FileStatus& status,
                      InputFile* source = nullptr);

/// Why a file was not opened, as a person understands it.
std::u16string ReasonOf(const OpenedFile& opened);

} // namespace vexmarrow
