// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/LogFolders.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "textio/Descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <sys/random.h>
#include <system_error>
#include <unistd.h>

namespace vexmarrow {
namespace {

constexpr mode_t kForUserOnly = 0700;
constexpr mode_t kOthersRights = 0077;
constexpr std::string_view kLogSuffix = ".run";
constexpr std::size_t kDigits = 10;

/// The folder that a variable of the environment names; only full paths count.
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
    const std::string state = FolderOfVariable("XDG_STATE_HOME");
    const std::string home = FolderOfVariable("HOME");
    if (!state.empty()) {
        folders.push_back(state + "/vexmarrow");
    } else if (!home.empty()) {
        folders.push_back(home + "/.local/state/vexmarrow");
    }
    folders.push_back("/var/tmp/vexmarrow-" + std::to_string(::geteuid()));
    return folders;
}

int PrepareFolder(SystemCalls& calls, const std::string& folder) {
    int error = 0;
    for (std::size_t end = 0; end != std::string::npos;) { // those on the way are there, mostly
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
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        paths.push_back(entry->path().native());
    }
    if (error) {
        throw FileFailure(u"Could not list the folder", TextFromNativeName(folder), error.value());
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

std::uint64_t RandomNumber() {
    std::uint64_t number = 0;
    while (::getrandom(&number, sizeof number, 0) != sizeof number) {
        // Only a signal before it has begun can keep it from that.
    }
    return number;
}

std::string RandomHex(std::size_t bytes) {
    constexpr std::string_view kHex = "0123456789abcdef";
    std::string text;
    for (std::uint64_t number = 0; text.size() < 2 * bytes; number /= kHex.size()) {
        if (text.size() % kHex.size() == 0) {
            number = RandomNumber();
        }
        text += kHex[number % kHex.size()];
    }
    return text;
}

std::int64_t Now() {
    using namespace std::chrono;
    return duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
}

std::string LocalTime(std::int64_t nanoseconds, const char* form) {
    constexpr std::int64_t kPerSecond = 1'000'000'000;
    const std::time_t seconds = nanoseconds / kPerSecond;
    std::tm parts{};
    ::localtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), form, &parts);
    return {text.data(), length};
}

std::u16string LocalTime(std::int64_t nanoseconds) {
    return TextFromUtf8(LocalTime(nanoseconds, "%Y-%m-%d %H:%M:%S"));
}

std::string FullPath(std::string path) {
    if (path.starts_with('/')) {
        return path;
    }
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::current_path(error);
    return error ? path : (folder / path).native();
}

} // namespace vexmarrow
