// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Desktop.h"

#include <cstddef>
#include <string>
#include <vector>

namespace vexmarrow {

class RFTSFSO;

/// Searches folders for sub-folders. Yields once for each folder and each sub-folder.
class SubFolderSearch {
public:
    SubFolderSearch(const Desktop& desktop, const RFTSFSO& textio)
        : desktop_(desktop), textio_(textio) {}

    /// Appends the folders directly below the given ones or, with `recursion`, all folders below
    /// them, one level after another. Every path, given or
    /// found, ends in a separator. Leaves out names that are unusual (see HasUnusualCharacters) or
    /// have 260 or more characters, everything below a path of that length, hidden system folders,
    /// and links that lead back to a folder they lie in. A given folder that may not be listed or
    /// is gone is removed from `folders` without a message. Other failures are reported, and the
    /// search goes on.
    void GetSubDirectories2016(std::vector<std::u16string>& folders, bool recursion);

private:
    void ListSubFolders(const std::u16string& folder, std::vector<std::u16string>& found);
    void Yield();

    Desktop desktop_;
    const RFTSFSO& textio_;
    std::size_t seen_ = 0; // sub-folders
};

} // namespace vexmarrow
