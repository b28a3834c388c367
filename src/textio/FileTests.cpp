// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/FileTests.h"

#include "base/Utf8.h"
#include "textio/CodePage.h"
#include "textio/FolderListing.h"
#include "textio/Paths.h"
#include "textio/SystemCalls.h"

#include <unicode/uchar.h>

#include <algorithm>

namespace vexmarrow {
namespace {

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

bool IsFolder(SystemCalls& calls, std::u16string_view path) {
    FileStatus status;
    return calls.StatusOfTarget(NativeName(path), status) == 0 && status.IsFolder();
}

bool IsExistingFile(SystemCalls& calls, std::u16string_view path) {
    FileStatus status;
    return calls.StatusOfTarget(NativeName(path), status) == 0 && status.IsRegular();
}

bool IsExistingPath(SystemCalls& calls, std::u16string_view path) {
    FileStatus status;
    return calls.StatusOfTarget(NativeName(path), status) == 0;
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
        // The directory tells the kind of most entries; links and odd file systems need a look.
        if (entry->kind == FolderListing::Kind::File ||
            (entry->kind == FolderListing::Kind::Unknown &&
             IsExistingFile(calls, start + entry->name))) {
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
