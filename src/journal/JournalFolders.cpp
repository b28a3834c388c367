// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "journal/JournalFolders.h"

#include "textio/SystemCalls.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <pwd.h>
#include <sys/random.h>
#include <unistd.h>

namespace vexmarrow {
namespace {

constexpr mode_t kForUserOnly = 0700;
constexpr mode_t kOthersRights = 0077;
constexpr std::string_view kJournalPrefix = "journal-";
constexpr std::size_t kRandomBytes = 16;

/// The folder that a variable of the environment names; only full paths count.
std::string FolderOfVariable(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
    return value != nullptr && *value == '/' ? value : "";
}

std::string HomeFolder() {
    std::string home = FolderOfVariable("HOME");
    if (!home.empty()) {
        return home;
    }
    const passwd* const user = ::getpwuid(::geteuid()); // NOLINT(concurrency-mt-unsafe)
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "";
}

int MakeFolders(SystemCalls& calls, const std::string& folder) {
    if (calls.MakeFolder(folder, kForUserOnly) == 0 || errno == EEXIST) {
        return 0;
    }
    const std::size_t slash = folder.find_last_of('/');
    if (errno != ENOENT || slash == std::string::npos || slash == 0) {
        return errno;
    }
    const int error = MakeFolders(calls, folder.substr(0, slash));
    if (error != 0) {
        return error;
    }
    return calls.MakeFolder(folder, kForUserOnly) == 0 || errno == EEXIST ? 0 : errno;
}

} // namespace

std::vector<std::string> JournalFoldersOfUser() {
    std::vector<std::string> folders;
    const std::string state = FolderOfVariable("XDG_STATE_HOME");
    const std::string home = HomeFolder();
    if (!state.empty()) {
        folders.push_back(state + "/vexmarrow");
    } else if (!home.empty()) {
        folders.push_back(home + "/.local/state/vexmarrow");
    }
    folders.push_back("/var/tmp/vexmarrow-" + std::to_string(::geteuid()));
    return folders;
}

int PrepareFolder(SystemCalls& calls, const std::string& folder) {
    if (const int error = MakeFolders(calls, folder); error != 0) {
        return error;
    }
    const Descriptor opened(calls,
                            calls.Open(folder, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC, 0));
    FileStatus status;
    if (!opened.IsOpen() || calls.Status(opened.Number(), status) != 0) {
        return errno;
    }
    if (status.owner != ::geteuid()) {
        return EACCES;
    }
    if ((status.mode & kOthersRights) == 0) {
        return 0;
    }
    if (calls.SetMode(opened.Number(), kForUserOnly) != 0 ||
        calls.Status(opened.Number(), status) != 0) {
        return errno;
    }
    return (status.mode & kOthersRights) == 0 ? 0 : EACCES; // some file systems force modes
}

std::string NewJournalName() {
    return std::string(kJournalPrefix) + RandomHex(kRandomBytes);
}

bool IsJournalName(std::string_view name) {
    return name.starts_with(kJournalPrefix) &&
           name.size() == kJournalPrefix.size() + 2 * kRandomBytes &&
           name.find_first_not_of("0123456789abcdef", kJournalPrefix.size()) ==
               std::string_view::npos;
}

std::string RandomHex(std::size_t bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    while (text.size() < 2 * bytes) {
        unsigned char byte = 0;
        if (::getrandom(&byte, 1, 0) == 1) { // can only fail before it has begun, for a signal
            text += kDigits[byte / 16U];
            text += kDigits[byte % 16U];
        }
    }
    return text;
}

std::string NameOfMachine() {
    std::string name;
    std::ifstream file("/etc/machine-id");
    if (std::getline(file, name) && !name.empty()) {
        return name.substr(0, 64);
    }
    std::array<char, 65> host{};
    ::gethostname(host.data(), host.size() - 1);
    return host.data();
}

} // namespace vexmarrow
