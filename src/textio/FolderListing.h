// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <dirent.h>
#include <memory>
#include <string>
#include <string_view>

namespace vexmarrow {

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

} // namespace vexmarrow
