// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <dirent.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

class SystemCalls;

/// One pass over the entries of a folder, in the order of the system, without "." and "..".
class FolderListing {
public:
    enum class Kind {
        File,
        Folder,
        Unknown ///< a link, something else, or not known before the file system is asked
    };
    struct Entry {
        std::u16string name;
        Kind kind = Kind::Unknown;
    };

    /// Throws Failure, with the errno value, if the folder cannot be opened.
    explicit FolderListing(std::u16string_view folder);

    /// The next entry, which is valid until the next call; null at the end. Throws Failure.
    const Entry* Next();

private:
    struct Closer {
        void operator()(DIR* directory) const { ::closedir(directory); }
    };

    std::u16string folder_;
    std::unique_ptr<DIR, Closer> directory_;
    Entry entry_;
};

/// The names of the files in `folder` that match `pattern`, without the folder, in the order of the
/// system and including hidden files. In a pattern, "*" and "?" are wildcards, letter case does not
/// matter, and "*.*" matches every file. The names begin at element 1. Element 0 is always empty,
/// so a folder without a match gives one empty name. Throws Failure if the folder cannot be listed.
std::vector<std::u16string> ListFilesInFolder(SystemCalls& calls, std::u16string_view folder,
                                              std::u16string_view pattern);

} // namespace vexmarrow
