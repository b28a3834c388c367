// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

namespace vexmarrow {

class SystemCalls;

// Questions to the file system. None ever fails: a path that cannot be looked at gives the negative
// answer.

/// Whether the path names a folder (or a link to one).
bool IsFolder(SystemCalls& calls, std::u16string_view path);

/// Whether the path names a regular file (or a link to one).
bool IsExistingFile(SystemCalls& calls, std::u16string_view path);

/// Whether anything of that path exists.
bool IsExistingPath(SystemCalls& calls, std::u16string_view path);

} // namespace vexmarrow
