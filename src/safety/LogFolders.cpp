// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/LogFolders.h"

#include "base/Utf8.h"
#include "textio/Descriptor.h"
#include "textio/FolderListing.h"
#include "textio/SystemCalls.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <unistd.h>

namespace vexmarrow {
namespace {

constexpr mode_t kForUserOnly = 0700;
constexpr mode_t kOthersRights = 0077;
constexpr std::string_view kLogSuffix = ".run";
constexpr std::size_t kDigits = 10;

/// The folder in an environment variable; empty unless it is an absolute path.
std::string FolderOfVariable(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr && *value == '/' ? value : "";
}

bool IsLogPath(const std::string& path) {
    const std::string_view name = std::string_view(path).substr(path.find_last_of('/') + 1);
    return name.size() == kDigits + kLogSuffix.size() && name.ends_with(kLogSuffix) &&
           name.find_first_not_of("0123456789") == kDigits;
}

} // namespace

std::vector<std::string> LogFoldersOfUser() {
    std::vector<std::string> folders;
    const std::string home = FolderOfVariable("HOME");
    std::string state = FolderOfVariable("XDG_STATE_HOME");
    if (state.empty() && !home.empty()) {
        state = home + "/.local/state";
    }
    if (!state.empty()) {
        folders.push_back(state + "/vexmarrow");
    }
    folders.push_back("/var/tmp/vexmarrow-" + std::to_string(::geteuid()));
    return folders;
}

int PrepareFolder(SystemCalls& calls, const std::string& folder) {
    int error = 0;
    for (std::size_t end = 0; end != std::string::npos;) { // most parents exist, which is no error
        end = folder.find('/', end + 1);
        error = calls.MakeFolder(folder.substr(0, end), kForUserOnly) == 0 ? 0 : errno;
    }
    const Descriptor opened(calls,
                            calls.Open(folder, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC, 0));
    FileStatus status;
    if (!opened.IsOpen() || calls.Status(opened.Number(), status) != 0) {
        return error != 0 && error != EEXIST ? error : errno;
    }
    if (status.owner != ::geteuid()) {
        return EACCES;
    }
    if ((status.mode & kOthersRights) != 0 && (calls.SetMode(opened.Number(), kForUserOnly) != 0 ||
                                               calls.Status(opened.Number(), status) != 0)) {
        return errno;
    }
    return (status.mode & kOthersRights) == 0 ? 0 : EACCES; // some file systems force modes
}

std::vector<std::string> FilesIn(SystemCalls& calls, const std::string& folder) {
    std::vector<std::string> paths;
    FileStatus status;
    if (calls.StatusOfName(folder, status) != 0 || !status.IsFolder() ||
        status.owner != ::geteuid()) {
        return paths;
    }
    FolderListing listing(TextFromNativeName(folder));
    while (const FolderListing::Entry* const entry = listing.Next()) {
        paths.push_back(folder + "/" + NativeName(entry->name));
    }
    return paths;
}

std::vector<std::string> LogsIn(SystemCalls& calls, const std::vector<std::string>& folders) {
    std::vector<std::string> logs;
    for (const std::string& folder : folders) {
        const std::vector<std::string> paths = FilesIn(calls, folder);
        std::copy_if(paths.begin(), paths.end(), std::back_inserter(logs), IsLogPath);
    }
    std::sort(logs.begin(), logs.end(), [](const std::string& a, const std::string& b) {
        return LogNumber(a) < LogNumber(b);
    });
    return logs;
}

std::string LogName(std::uint64_t number) {
    std::string digits = std::to_string(number);
    digits.insert(0, kDigits - std::min(kDigits, digits.size()), '0');
    return digits.append(kLogSuffix);
}

std::uint64_t LogNumber(const std::string& path) {
    return std::strtoull(path.c_str() + path.find_last_of('/') + 1, nullptr, 10);
}

} // namespace vexmarrow
