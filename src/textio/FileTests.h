// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

class CodePage;
class SystemCalls;

// Questions to the file system. None but ListFilesInFolder ever fails: a path that cannot be
// looked at gives the negative answer.

/// Whether the path names a folder (or a link to one).
bool IsFolder(SystemCalls& calls, std::u16string_view path);

/// Whether the path names a regular file (or a link to one).
bool IsExistingFile(SystemCalls& calls, std::u16string_view path);

/// Whether anything of that path exists.
bool IsExistingPath(SystemCalls& calls, std::u16string_view path);

/// Names (without the folder) of the files in `folder` that match `pattern` ("*" and "?" are
/// wildcards, letter case does not count, "*.*" is every file), in the order of the directory,
/// hidden ones included. The names are elements 1 and up; element 0 is always empty, so that a
/// folder without a match gives one empty name. Throws Failure when the folder cannot be listed.
std::vector<std::u16string> ListFilesInFolder(SystemCalls& calls, std::u16string_view folder,
                                              std::u16string_view pattern);

/// Whether a character of `text` has a code below 32, from 127 to 159, or 63 (which is "?" and
/// whatever the page lacks) in the code page.
bool HasUnusualCharacters(std::u16string_view text, const CodePage& page);

} // namespace vexmarrow
