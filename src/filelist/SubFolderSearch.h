// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Desktop.h"

#include <cstddef>
#include <string>
#include <vector>

namespace vexmarrow {

class RFTSFSO;

/// The search for sub-folders. Yields once for each folder and each sub-folder it meets.
class SubFolderSearch {
public:
    SubFolderSearch(const Desktop& desktop, const RFTSFSO& textio)
        : desktop_(desktop), textio_(textio) {}

    /// Appends the sub-folders of the given folders: with `recursion` those of all levels, one
    /// level after another. Every path, given or found, ends in a separator. Left out are folders
    /// with an unusual name (see HasUnusualCharacters) or of 260 characters and more, hidden
    /// system folders, and links that lead back to a folder they lie in. A given folder that may
    /// not be listed or is gone is taken out of the collection in silence; other failures are
    /// reported and the search goes on.
    void GetSubDirectories2016(std::vector<std::u16string>& folders, bool recursion);

private:
    void ListSubFolders(const std::u16string& folder, std::vector<std::u16string>& found);
    void Yield();

    Desktop desktop_;
    const RFTSFSO& textio_;
    std::size_t seen_ = 0;
};

} // namespace vexmarrow
