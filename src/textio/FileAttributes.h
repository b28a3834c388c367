// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

namespace vexmarrow {

class SystemCalls;

// Bits of a file's attribute word.
inline constexpr int kReadOnly = 1;
inline constexpr int kHidden = 2;
inline constexpr int kSystem = 4;
inline constexpr int kDirectory = 16;
inline constexpr int kArchive = 32;
inline constexpr int kReparsePoint = 1024;

/// The attribute word of a file or folder. Where the file system keeps real DOS attributes, those;
/// else directory, read-only (the owner may not write), hidden (the name starts with a dot) and
/// archive (every regular file). 0 when the path cannot be looked at.
int FileAttributes(SystemCalls& calls, std::u16string_view path);

} // namespace vexmarrow
