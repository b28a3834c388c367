// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

namespace vexmarrow {

class SystemCalls;

// What a path names. Links are followed. The answer is false if the path cannot be looked at.

bool IsFolder(SystemCalls& calls, std::u16string_view path);

/// Whether it is a regular file.
bool IsExistingFile(SystemCalls& calls, std::u16string_view path);

/// Whether there is anything at all.
bool IsExistingPath(SystemCalls& calls, std::u16string_view path);

} // namespace vexmarrow
