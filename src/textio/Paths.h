// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

/// How paths are spelled. Windows has "\" and network paths; Posix has "/", and a "\" there is an
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

/// The path up to and including its last separator; the empty text when it holds none.
std::u16string_view FolderOfPath(std::u16string_view path, PathStyle style = kNativePathStyle);

/// What follows the last separator: the file's own name, or the whole path when it holds none.
std::u16string_view NameOfPath(std::u16string_view path, PathStyle style = kNativePathStyle);

/// Collapses doubled separators.
/// Windows: every two become one, scanning from the left without overlap; a leading run stands for
/// a network path and becomes exactly two. Posix: every run becomes one, the leading one included.
std::u16string NormalizePath(std::u16string_view path, PathStyle style = kNativePathStyle);

/// `folder` with a separator after it, unless it ends in one.
std::u16string WithSeparator(std::u16string_view folder);

/// The folder that a path in bytes names a file in: "." for one without a slash.
std::string ParentFolder(const std::string& path);

} // namespace vexmarrow
