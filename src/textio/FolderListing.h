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

/// One pass over a folder, in the order in which the system gives the entries; "." and ".." are
/// left out.
class FolderListing {
public:
    enum class Kind {
        File,
        Folder,
        Unknown ///< a link or whatever the directory does not tell: ask the file system
    };
    struct Entry {
        std::u16string name;
        Kind kind = Kind::Unknown;
    };

    /// Throws Failure, with the system's error number, when the folder cannot be opened.
    explicit FolderListing(std::u16string_view folder);

    /// The next entry, valid until the next call; null at the end. Throws Failure.
    const Entry* Next();

private:
    struct Closer {
        void operator()(DIR* directory) const { ::closedir(directory); }
    };

    std::u16string folder_;
    std::unique_ptr<DIR, Closer> directory_;
    Entry entry_;
};

/// Names (without the folder) of the files in `folder` that match `pattern` ("*" and "?" are
/// wildcards, letter case does not count, "*.*" is every file), in the order of the directory,
/// hidden ones included. The names are elements 1 and up; element 0 is always empty, so that a
/// folder without a match gives one empty name. Throws Failure when the folder cannot be listed.
std::vector<std::u16string> ListFilesInFolder(SystemCalls& calls, std::u16string_view folder,
                                              std::u16string_view pattern);

} // namespace vexmarrow
