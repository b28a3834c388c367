// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

/// How paths are written. Windows has "\" and network paths. Posix has "/"; there, "\" is an
/// ordinary character of a name.
enum class PathStyle { Windows, Posix };

#ifdef _WIN32
inline constexpr PathStyle kNativePathStyle = PathStyle::Windows;
#else
inline constexpr PathStyle kNativePathStyle = PathStyle::Posix;
#endif

constexpr char16_t SeparatorOf(PathStyle style) {
    return style == PathStyle::Windows ? u'\\' : u'/';
}
inline constexpr char16_t kSeparator = SeparatorOf(kNativePathStyle);
inline constexpr std::u16string_view kSeparatorText{&kSeparator, 1};

/// The path up to and including its last separator; empty if it has none.
std::u16string_view FolderOfPath(std::u16string_view path, PathStyle style = kNativePathStyle);

/// The file's own name, which follows the last separator; the whole path if it has none.
std::u16string_view NameOfPath(std::u16string_view path, PathStyle style = kNativePathStyle);

/// Removes doubled separators.
/// Windows: every two become one, from the left and without overlap. Separators at the beginning
/// stand for a network path and become exactly two. Posix: every run becomes one, everywhere.
std::u16string NormalizePath(std::u16string_view path, PathStyle style = kNativePathStyle);

/// `folder`, with a separator added unless it ends in one.
std::u16string WithSeparator(std::u16string_view folder);

/// The folder that holds the file at a path in bytes: "." if the path has no slash.
std::string ParentFolder(const std::string& path);

} // namespace vexmarrow
