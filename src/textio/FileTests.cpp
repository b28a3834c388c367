// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/FileTests.h"

#include "base/Utf8.h"
#include "textio/CodePage.h"
#include "textio/FolderListing.h"
#include "textio/Paths.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <optional>
#include <sys/stat.h>

namespace vexmarrow {
namespace {

std::optional<mode_t> ModeOf(std::u16string_view path) {
    struct stat status {};
    const std::string name = NativeName(path);
    // A NUL would cut the name: the system would look at another file than the one named.
    if (name.find('\0') != std::string::npos || ::stat(name.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return status.st_mode;
}

bool SameLetter(char16_t a, char16_t b) {
    return a == b || u_foldCase(a, U_FOLD_CASE_DEFAULT) == u_foldCase(b, U_FOLD_CASE_DEFAULT);
}

/// Whether `name` matches `pattern`. On a mismatch the last "*" takes one more character.
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

bool IsFolder(std::u16string_view path) {
    const std::optional<mode_t> mode = ModeOf(path);
    return mode && S_ISDIR(*mode);
}

bool IsExistingFile(std::u16string_view path) {
    const std::optional<mode_t> mode = ModeOf(path);
    return mode && S_ISREG(*mode);
}

bool IsExistingPath(std::u16string_view path) {
    return ModeOf(path).has_value();
}

std::vector<std::u16string> ListFilesInFolder(std::u16string_view folder,
                                              std::u16string_view pattern) {
    const std::u16string start = WithSeparator(folder);
    std::vector<std::u16string> names(1);
    FolderListing listing(start);
    while (const FolderListing::Entry* const entry = listing.Next()) {
        if (pattern != u"*.*" && !Matches(entry->name, pattern)) {
            continue;
        }
        // The directory tells the kind of most entries; links and odd file systems need a look.
        if (entry->kind == FolderListing::Kind::File ||
            (entry->kind == FolderListing::Kind::Unknown && IsExistingFile(start + entry->name))) {
            names.push_back(entry->name);
        }
    }
    return names;
}

bool HasUnusualCharacters(std::u16string_view text, const CodePage& page) {
    return std::any_of(text.begin(), text.end(), [&](char16_t character) {
        const int code = page.CodeOf(character);
        return code < 32 || code == kLackingCharacter || (code >= 127 && code <= 159);
    });
}

} // namespace vexmarrow
