// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/FolderListing.h"

#include "base/Failure.h"
#include "base/Utf8.h"

#include <cerrno>

namespace vexmarrow {

FolderListing::FolderListing(std::u16string_view folder) : folder_(folder) {
    const std::string name = NativeName(folder);
    if (name.find('\0') != std::string::npos) {
        throw FileFailure(u"Could not list the folder", folder_, ENOENT);
    }
    directory_.reset(::opendir(name.c_str()));
    if (!directory_) {
        throw FileFailure(u"Could not list the folder", folder_, errno);
    }
}

const FolderListing::Entry* FolderListing::Next() {
    for (;;) {
        errno = 0;
        // Only calls on the same directory stream would interfere, and it is this object's own.
        const dirent* const found = ::readdir(directory_.get()); // NOLINT(concurrency-mt-unsafe)
        if (found == nullptr) {
            if (errno != 0) {
                throw FileFailure(u"Could not list the folder", folder_, errno);
            }
            return nullptr;
        }
        const std::string_view name(static_cast<const char*>(found->d_name));
        if (name == "." || name == "..") {
            continue;
        }
        entry_.name = TextFromNativeName(name);
        entry_.kind = found->d_type == DT_REG   ? Kind::File
                      : found->d_type == DT_DIR ? Kind::Folder
                                                : Kind::Unknown;
        return &entry_;
    }
}

} // namespace vexmarrow
