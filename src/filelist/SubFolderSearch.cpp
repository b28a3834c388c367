// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "filelist/SubFolderSearch.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "shell/EventLoop.h"
#include "shell/Trap.h"
#include "textio/CodePage.h"
#include "textio/FileAttributes.h"
#include "textio/FolderListing.h"
#include "textio/PathChecks.h"
#include "textio/Paths.h"
#include "textio/RFTSFSO.h"
#include "textio/SystemCalls.h"

#include <cerrno>
#include <utility>

namespace vexmarrow {
namespace {

constexpr std::size_t kTooLong = 260;

bool IsRootFolder(std::u16string_view folder) {
    return folder.find_first_not_of(kSeparator) == std::u16string_view::npos;
}

/// False only for hidden system folders that have exactly these attributes.
bool MayBeScanned(SystemCalls& calls, const std::u16string& folder) {
    constexpr int kHiddenSystem = kDirectory | kHidden | kSystem;
    if (IsRootFolder(folder)) {
        return true;
    }
    const int attributes = FileAttributes(calls, folder);
    return attributes != kHiddenSystem && attributes != (kHiddenSystem | kReparsePoint);
}

/// Whether `folder` is a link to one of the folders on its own path. To search it would never end.
bool LeadsToAncestor(SystemCalls& calls, std::u16string_view folder) {
    FileStatus target;
    std::string path = NativeName(folder);
    if (calls.StatusOfTarget(path, target) != 0) {
        return false;
    }
    for (std::size_t slash = path.rfind('/'); slash != std::string::npos;
         slash = slash == 0 ? std::string::npos : path.rfind('/', slash - 1)) {
        path.resize(slash + 1);
        FileStatus ancestor;
        if (calls.StatusOfTarget(path, ancestor) == 0 && ancestor.SameFileAs(target)) {
            return true;
        }
    }
    return false;
}

bool DeniedOrGone(int error) {
    return error == EACCES || error == EPERM || error == ENOENT || error == ENOTDIR;
}

} // namespace

void SubFolderSearch::Yield() {
    desktop_.eventLoop.Yield({u"Folder", seen_, 0});
}

void SubFolderSearch::ListSubFolders(const std::u16string& folder,
                                     std::vector<std::u16string>& found) {
    FolderListing listing(folder);
    while (const FolderListing::Entry* const entry = listing.Next()) {
        if (entry->kind == FolderListing::Kind::File) {
            continue;
        }
        std::u16string path = folder + entry->name;
        // Only links can lead back, and only entries of unknown kind can be links.
        if (entry->kind == FolderListing::Kind::Unknown &&
            (!IsFolder(textio_.Calls(), path) || LeadsToAncestor(textio_.Calls(), path))) {
            continue;
        }
        ++seen_;
        Yield();
        if (entry->name.size() < kTooLong &&
            !HasUnusualCharacters(entry->name, textio_.Ansi().Page())) {
            found.push_back(std::move(path.append(kSeparatorText)));
        }
    }
}

void SubFolderSearch::GetSubDirectories2016(std::vector<std::u16string>& folders, bool recursion) {
    // Support staff know the reports of this routine by an origin of its own.
    Trap trap(desktop_.prompts, u"AddFolder.GetSubDirectories2016", u"in BrennochTitle2021/08/31.");
    std::vector<std::u16string> found;
    std::size_t kept = 0; // folders[0] to folders[kept - 1] are not removed
    for (std::u16string& entry : folders) {
        const std::u16string folder = entry;
        std::swap(folders[kept++], entry);
        if (!IsFolder(textio_.Calls(), folder) || folder.size() >= kTooLong) {
            continue;
        }
        trap.Do(1, [&] { Yield(); });
        if (!MayBeScanned(textio_.Calls(), folder)) {
            continue;
        }
        trap.Do(2, [&] {
            try {
                ListSubFolders(folder, found);
            } catch (const Failure& failure) {
                if (!DeniedOrGone(failure.SystemError())) {
                    throw;
                }
                --kept;
            }
        });
    }
    folders.resize(kept);
    if (recursion && !found.empty()) {
        trap.Do(3, [&] { GetSubDirectories2016(found, true); });
    }
    for (std::u16string& folder : found) {
        if (IsFolder(textio_.Calls(), folder) && MayBeScanned(textio_.Calls(), folder)) {
            trap.Do(4, [&] {
                Yield();
                folders.push_back(std::move(folder));
            });
        }
    }
}

} // namespace vexmarrow
