// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "journal/JournalFile.h"

#include "journal/JournalFolders.h"
#include "journal/JournalRecord.h"
#include "journal/Whole.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace vexmarrow {
namespace {

constexpr int kFlags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
constexpr mode_t kForUserOnly = 0600; // it holds people's contacts
constexpr mode_t kOthersRights = 0077;

} // namespace

std::optional<JournalFile> JournalFile::Create(SystemCalls& calls, const std::string& folder,
                                               int& error) {
    error = PrepareFolder(calls, folder);
    // Between making and locking it, a program that starts may take a journal for one that was
    // left behind, and remove it: then there is another try.
    constexpr int kTries = 10;
    for (int i = 0; error == 0 && i < kTries; ++i) {
        const std::string path = folder + "/" + NewJournalName();
        JournalFile file(
            calls, path,
            Descriptor(calls, calls.Open(path, kFlags | O_CREAT | O_EXCL, kForUserOnly)));
        if (!file.file_.IsOpen()) {
            error = errno;
        } else if (file.LockAndCheck()) {
            if (file.IsForUserOnly()) {
                return file;
            }
            error = EACCES; // a file system that gives all files the same mode, for instance
            calls.Unlink(path);
        } else if (errno != EWOULDBLOCK && errno != ENOENT) {
            error = errno;
            calls.Unlink(path);
        }
    }
    error = error == 0 ? EBUSY : error;
    return std::nullopt;
}

std::optional<JournalFile> JournalFile::TakeOver(SystemCalls& calls, const std::string& path) {
    JournalFile file(calls, path, Descriptor(calls, calls.Open(path, kFlags, 0)));
    if (file.file_.IsOpen() && file.LockAndCheck() && file.IsForUserOnly()) {
        return file;
    }
    return std::nullopt;
}

/// What recovery insists on.
bool JournalFile::IsForUserOnly() const {
    return status_.IsRegular() && status_.owner == ::geteuid() && status_.links == 1 &&
           (status_.mode & kOthersRights) == 0;
}

bool JournalFile::LockAndCheck() {
    if (calls_->Lock(file_.Number(), LOCK_EX) != 0 ||
        calls_->Status(file_.Number(), status_) != 0) {
        return false;
    }
    if (!IsInPlace()) {
        errno = ENOENT;
        return false;
    }
    return true;
}

bool JournalFile::IsInPlace() {
    FileStatus named;
    return calls_->StatusOfName(path_, named) == 0 && named.SameFileAs(status_);
}

int JournalFile::Write(std::uint64_t offset, std::string_view bytes) {
    std::uint64_t written = 0;
    return WriteWhole(*calls_, file_.Number(), bytes, offset, written);
}

int JournalFile::Read(std::uint64_t offset, char* bytes, std::size_t count, std::size_t& got) {
    return ReadWhole(*calls_, file_.Number(), bytes, count, offset, got);
}

int JournalFile::Clear() {
    return Write(0, kNoRecord);
}

void JournalFile::Remove() {
    calls_->Unlink(path_);
}

} // namespace vexmarrow
