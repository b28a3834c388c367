// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/KeptCopies.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "safety/Clock.h"
#include "safety/LogFolders.h"
#include "safety/RandomNumbers.h"
#include "textio/ByteSource.h"
#include "textio/Checksum.h"
#include "textio/Descriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>

namespace vexmarrow {
namespace {

constexpr mode_t kForUserOnly = 0600;
constexpr std::string_view kUnfinished = ".part";

std::string NewName(std::string_view kind, std::string_view path) {
    std::string text = LocalTime(Now(), "%Y%m%d-%H%M%S-") + RandomHex(4);
    text.append("-").append(kind).append("-");
    // Keep the end of a long name, because it has the extension.
    constexpr std::size_t kLongestName = 255;
    const std::string_view name = path.substr(path.find_last_of('/') + 1);
    const std::size_t room = kLongestName - text.size() - kUnfinished.size();
    return text.append(name.substr(name.size() - std::min(room, name.size())));
}

/// Returns 0 or an errno. The copy gets its final name when it is complete.
int Keep(SystemCalls& calls, const std::string& path, ByteSource& source, std::uint64_t size) {
    const std::string unfinished = path + std::string(kUnfinished);
    Descriptor file(calls,
                    calls.Open(unfinished, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kForUserOnly));
    std::uint64_t done = 0;
    int error = file.IsOpen() ? CopyBytes(calls, file.Number(), source, done, size, 0) : errno;
    if (error == 0 && (file.Close() != 0 || calls.RenameToNew(unfinished, path) != 0)) {
        error = errno;
    }
    if (error != 0) {
        calls.Unlink(unfinished);
    }
    return error;
}

} // namespace

std::string KeptFolder(const std::string& logFolder) {
    return logFolder + "/kept";
}

std::string KeepCopy(SystemCalls& calls, const std::vector<std::string>& logFolders,
                     std::string_view kind, std::string_view path, ByteSource& source,
                     std::uint64_t size) {
    int error = ENOENT;
    std::string folder;
    for (const std::string& logFolder : logFolders) {
        folder = KeptFolder(logFolder);
        error = PrepareFolder(calls, logFolder);
        error = error == 0 ? PrepareFolder(calls, folder) : error;
        std::string place = folder + "/" + NewName(kind, path);
        error = error == 0 ? Keep(calls, place, source, size) : error;
        if (error == 0) {
            return place;
        }
    }
    throw FileFailure(u"Could not save a copy in the folder", TextFromNativeName(folder), error);
}

std::vector<std::string> KeptFiles(SystemCalls& calls, const std::vector<std::string>& logFolders) {
    std::vector<std::string> files;
    for (const std::string& logFolder : logFolders) {
        const std::vector<std::string> more = FilesIn(calls, KeptFolder(logFolder));
        files.insert(files.end(), more.begin(), more.end());
    }
    return files;
}

} // namespace vexmarrow
