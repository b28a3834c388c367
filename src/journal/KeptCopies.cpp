// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "journal/KeptCopies.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "journal/JournalFolders.h"
#include "journal/PutInPlace.h"
#include "journal/Whole.h"
#include "textio/SystemCalls.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <fcntl.h>

namespace vexmarrow {
namespace {

constexpr mode_t kForUserOnly = 0600;
constexpr std::string_view kUnfinished = ".part";

std::string NewName(std::string_view kind, std::string_view name) {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::localtime_r(&now, &parts);
    std::array<char, 32> time{};
    const std::size_t length = std::strftime(time.data(), time.size(), "%Y%m%d-%H%M%S", &parts);
    std::string text(time.data(), length);
    text.append("-").append(RandomHex(4)).append("-").append(kind).append("-");
    // The end of the name tells what the file is; a name has 255 bytes at most.
    constexpr std::size_t kLongestName = 255;
    const std::size_t room = kLongestName - text.size() - kUnfinished.size();
    return text.append(name.substr(name.size() - std::min(room, name.size())));
}

int CopyInto(SystemCalls& calls, int descriptor, ByteSource& source, std::uint64_t size) {
    for (std::uint64_t done = 0; done < size;) {
        std::string_view bytes;
        std::uint64_t written = 0;
        int error = source.Show(done, std::min<std::uint64_t>(size - done, kCopyBlock), bytes);
        if (error == 0) {
            error = WriteWhole(calls, descriptor, bytes, done, written);
        }
        if (error != 0) {
            return error;
        }
        done += written;
    }
    return 0;
}

/// Makes the file complete at once under its name, or not at all. Where every file has a name, what
/// a kill leaves ends in kUnfinished.
int CopyTo(SystemCalls& calls, const std::string& folder, const std::string& path,
           ByteSource& source, std::uint64_t size) {
    const std::string unfinished = path + std::string(kUnfinished);
    Descriptor file(calls, calls.Open(folder, O_TMPFILE | O_WRONLY | O_CLOEXEC, kForUserOnly));
    const bool nameless = file.IsOpen();
    if (!nameless) {
        file = Descriptor(
            calls, calls.Open(unfinished, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kForUserOnly));
    }
    if (!file.IsOpen()) {
        return errno;
    }
    int error = CopyInto(calls, file.Number(), source, size);
    if (error == 0 && nameless && calls.NameFile(file.Number(), path) != 0) {
        error = errno;
    }
    if (file.Close() != 0 && error == 0) {
        error = errno;
    }
    if (error == 0 && !nameless && calls.RenameToNew(unfinished, path) != 0) {
        error = errno;
    }
    if (error != 0) {
        calls.Unlink(nameless ? path : unfinished);
    }
    return error;
}

} // namespace

std::string KeptFolder(const std::string& journalFolder) {
    return journalFolder + "/kept";
}

std::string KeepCopy(SystemCalls& calls, const std::vector<std::string>& journalFolders,
                     std::string_view kind, std::string_view name, ByteSource& source,
                     std::uint64_t size) {
    int error = ENOENT;
    std::string folder;
    for (const std::string& journalFolder : journalFolders) {
        folder = KeptFolder(journalFolder);
        error = PrepareFolder(calls, journalFolder);
        if (error == 0) {
            error = PrepareFolder(calls, folder);
        }
        if (error == 0) {
            std::string path = folder + "/" + NewName(kind, name);
            error = CopyTo(calls, folder, path, source, size);
            if (error == 0) {
                return path;
            }
        }
    }
    throw FileFailure(u"Could not keep a copy in the folder", TextFromNativeName(folder), error);
}

} // namespace vexmarrow
