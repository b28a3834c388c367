// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/FolderListing.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "textio/PathChecks.h"
#include "textio/Paths.h"

#include <unicode/uchar.h>

#include <cerrno>

namespace vexmarrow {
namespace {

bool SameLetter(char16_t a, char16_t b) {
    return a == b || u_foldCase(a, U_FOLD_CASE_DEFAULT) == u_foldCase(b, U_FOLD_CASE_DEFAULT);
}

/// Whether `name` matches `pattern`. After a mismatch, the last "*" takes one more character.
bool Matches(std::u16string_view name, std::u16string_view pattern) {
    constexpr std::size_t kNone = std::u16string_view::npos;
    std::size_t n = 0;
    std::size_t p = 0;
    std::size_t star = kNone;
    std::size_t starEnd = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == u'*') {
            star = p++;
            starEnd = n;
        } else if (p < pattern.size() && (pattern[p] == u'?' || SameLetter(pattern[p], name[n]))) {
            ++p;
            ++n;
        } else if (star != kNone) {
            p = star + 1;
            n = ++starEnd;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(u'*', p) == kNone;
}

} // namespace

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
        // This is safe, because no other thread uses the directory stream of this object.
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

std::vector<std::u16string> ListFilesInFolder(SystemCalls& calls, std::u16string_view folder,
                                              std::u16string_view pattern) {
    const std::u16string start = WithSeparator(folder);
    std::vector<std::u16string> names(1);
    FolderListing listing(start);
    while (const FolderListing::Entry* const entry = listing.Next()) {
        if (pattern != u"*.*" && !Matches(entry->name, pattern)) {
            continue;
        }
        // The folder tells the kind of most entries. Links and some file systems need another look.
        if (entry->kind == FolderListing::Kind::File ||
            (entry->kind == FolderListing::Kind::Unknown &&
             IsExistingFile(calls, start + entry->name))) {
            names.push_back(entry->name);
        }
    }
    return names;
}

} // namespace vexmarrow
