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

/// The attribute word of a file or folder: its DOS attributes if the file system keeps them. If
/// not, kDirectory for a folder, kArchive for a regular file, kReadOnly if the owner may not write,
/// and kHidden if the name begins with a dot. 0 if the path cannot be looked at.
int FileAttributes(SystemCalls& calls, std::u16string_view path);

} // namespace vexmarrow
