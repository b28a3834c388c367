// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/PathChecks.h"

#include "base/Utf8.h"
#include "textio/SystemCalls.h"

namespace vexmarrow {

bool IsFolder(SystemCalls& calls, std::u16string_view path) {
    FileStatus status;
    return calls.StatusOfTarget(NativeName(path), status) == 0 && status.IsFolder();
}

bool IsExistingFile(SystemCalls& calls, std::u16string_view path) {
    FileStatus status;
    return calls.StatusOfTarget(NativeName(path), status) == 0 && status.IsRegular();
}

bool IsExistingPath(SystemCalls& calls, std::u16string_view path) {
    FileStatus status;
    return calls.StatusOfTarget(NativeName(path), status) == 0;
}

} // namespace vexmarrow
