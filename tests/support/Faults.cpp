// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "support/Faults.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace vexmarrow::test {
namespace {

constexpr int kKilled = 77; // status of a process that has killed itself

} // namespace

bool FaultySystemCalls::Fails(Kind kind, std::size_t* count) {
    if (beforeCall) {
        beforeCall(kind);
    }
    ++allCalls;
    if (count != nullptr) {
        *count = std::min(*count, mostAtOnce);
    }
    if (event_ == Event::Gone && eventCall_ > 0 && allCalls >= eventCall_) {
        errno = EIO;
        return true;
    }
    if (allCalls == eventCall_) {
        const bool takesRoom = kind == kWriteAt || kind == kMakeFolder || kind == kName;
        if (event_ == Event::Kill || (event_ == Event::KillHalf && count == nullptr)) {
            ::_exit(kKilled);
        }
        if (event_ == Event::Fail || (event_ == Event::Full && takesRoom)) {
            errno = event_ == Event::Fail ? EIO : ENOSPC;
            ++calls[kind];
            return true;
        }
        if (count != nullptr && event_ == Event::KillHalf) {
            *count = (*count + 1) / 2;
            killAfter_ = true;
        } else if (count != nullptr && event_ == Event::Short) {
            *count = std::min<std::size_t>(*count, 1);
        }
    }
    const auto fault = faults_.find({kind, ++calls[kind]});
    if (fault == faults_.end()) {
        return false;
    }
    if (fault->second == kKill) {
        ::_exit(kKilled);
    }
    errno = fault->second;
    return true;
}

ssize_t FaultySystemCalls::AfterBytes(ssize_t answer) const {
    if (killAfter_) {
        ::_exit(kKilled);
    }
    return answer;
}

int FaultySystemCalls::Renumbered(int answer, FileStatus& status) const {
    status.device += renumbered;
    status.inode += renumbered;
    return answer;
}

int FaultySystemCalls::Open(const std::string& path, int flags, mode_t mode) {
    if (Fails(kOpen)) {
        return -1;
    }
    for (const auto& [beginning, error] : openErrors) {
        if (path.starts_with(beginning)) {
            errno = error;
            return -1;
        }
    }
    if (lacksNamelessFiles && (flags & O_TMPFILE) == O_TMPFILE) {
        errno = EOPNOTSUPP;
        return -1;
    }
    const int descriptor = SystemCalls::Open(path, flags, mode);
    openFiles += descriptor >= 0 ? 1 : 0;
    return descriptor;
}

int FaultySystemCalls::Status(int descriptor, FileStatus& status) {
    return Renumbered(Fails(kStatus) ? -1 : SystemCalls::Status(descriptor, status), status);
}

int FaultySystemCalls::StatusOfName(const std::string& path, FileStatus& status) {
    return Renumbered(Fails(kStatus) ? -1 : SystemCalls::StatusOfName(path, status), status);
}

int FaultySystemCalls::StatusOfTarget(const std::string& path, FileStatus& status) {
    return Renumbered(Fails(kStatus) ? -1 : SystemCalls::StatusOfTarget(path, status), status);
}

ssize_t FaultySystemCalls::Read(int descriptor, void* bytes, std::size_t count) {
    return AfterBytes(Fails(kRead, &count) ? -1 : SystemCalls::Read(descriptor, bytes, count));
}

ssize_t FaultySystemCalls::ReadAt(int descriptor, void* bytes, std::size_t count,
                                  std::uint64_t offset) {
    return AfterBytes(Fails(kRead, &count) ? -1
                                           : SystemCalls::ReadAt(descriptor, bytes, count, offset));
}

ssize_t FaultySystemCalls::WriteAt(int descriptor, const void* bytes, std::size_t count,
                                   std::uint64_t offset) {
    return AfterBytes(
        Fails(kWriteAt, &count) ? -1 : SystemCalls::WriteAt(descriptor, bytes, count, offset));
}

int FaultySystemCalls::Truncate(int descriptor, std::uint64_t size) {
    return Fails(kTruncate) ? -1 : SystemCalls::Truncate(descriptor, size);
}

int FaultySystemCalls::SetMode(int descriptor, mode_t mode) {
    return Fails(kSetMode) ? -1 : SystemCalls::SetMode(descriptor, mode);
}

int FaultySystemCalls::SetModified(int descriptor, std::int64_t modified) {
    return Fails(kSetMode) ? -1 : SystemCalls::SetModified(descriptor, modified);
}

int FaultySystemCalls::Lock(int descriptor, int operation) {
    return Fails(kLock) ? -1 : SystemCalls::Lock(descriptor, operation);
}

int FaultySystemCalls::AskForLock(int descriptor, bool forWriting) {
    return Fails(kLock) ? -1 : SystemCalls::AskForLock(descriptor, forWriting);
}

int FaultySystemCalls::Duplicate(int descriptor) {
    const int duplicate = Fails(kDuplicate) ? -1 : SystemCalls::Duplicate(descriptor);
    openFiles += duplicate >= 0 ? 1 : 0;
    return duplicate;
}

int FaultySystemCalls::Close(int descriptor) {
    openFiles -= watches_.erase(descriptor) == 0
                     ? 1
                     : 0; // a close that fails has closed the file all the same
    const bool fails = Fails(kClose);
    const int error = errno;
    const int answer = SystemCalls::Close(descriptor);
    errno = fails ? error : errno;
    return fails ? -1 : answer;
}

int FaultySystemCalls::Unlink(const std::string& path) {
    return Fails(kUnlink) ? -1 : SystemCalls::Unlink(path);
}

int FaultySystemCalls::NameFile(int descriptor, const std::string& path) {
    return Fails(kName) ? -1 : SystemCalls::NameFile(descriptor, path);
}

int FaultySystemCalls::RenameToNew(const std::string& from, const std::string& to) {
    return Fails(kName) ? -1 : SystemCalls::RenameToNew(from, to);
}

int FaultySystemCalls::MakeFolder(const std::string& path, mode_t mode) {
    return Fails(kMakeFolder) ? -1 : SystemCalls::MakeFolder(path, mode);
}

int FaultySystemCalls::MakeWatch() {
    const int watch = hasWatches ? SystemCalls::MakeWatch() : -1;
    watches_.insert(watch);
    return watch;
}

int FaultySystemCalls::WatchFolder(int watch, const std::string& folder) {
    return Fails(kOpen) ? -1 : SystemCalls::WatchFolder(watch, folder);
}

int FaultySystemCalls::RoomIn(const std::string& folder, std::uint64_t& bytes) {
    const int answer = Fails(kRoom) ? -1 : SystemCalls::RoomIn(folder, bytes);
    bytes = std::min(bytes, room);
    return answer;
}

ssize_t FaultySystemCalls::Attribute(const std::string& path, const char* name, void* value,
                                     std::size_t size) {
    const auto found = attributes.find({path.substr(0, path.find_last_not_of('/') + 1), name});
    if (found == attributes.end()) {
        return SystemCalls::Attribute(path, name, value, size);
    }
    if (found->second.size() > size) {
        errno = ERANGE;
        return -1;
    }
    found->second.copy(static_cast<char*>(value), size);
    return static_cast<ssize_t>(found->second.size());
}

bool InChildProcess(const std::function<void()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            work();
            ::_exit(0);
        } catch (...) {
            ::_exit(1);
        }
    }
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status) ||
        (WEXITSTATUS(status) != 0 && WEXITSTATUS(status) != kKilled)) {
        throw std::runtime_error("a child process ended with status " + std::to_string(status));
    }
    return WEXITSTATUS(status) == 0;
}

OtherProgram::OtherProgram(const std::function<void(const std::function<void()>& stop)>& work) {
    std::array<int, 2> ends{};
    process_ = ::pipe(ends.data()) == 0 ? ::fork() : -1;
    if (process_ == 0) {
        const auto stop = [&] {
            if (::write(ends[1], "", 1) != 1) {
                ::_exit(1); // the reader sees the end
            }
            for (;;) {
                ::pause();
            }
        };
        try {
            work(stop);
        } catch (...) { // it ends without having stopped
        }
        ::_exit(1);
    }
    char byte = 0;
    ::close(ends[1]);
    const bool stopped = process_ > 0 && ::read(ends[0], &byte, 1) == 1;
    ::close(ends[0]);
    if (!stopped) {
        throw std::runtime_error("the other program has not come to where it was to stop");
    }
}

void OtherProgram::Kill() {
    if (process_ > 0) {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
        process_ = 0;
    }
}

Unprivileged::Unprivileged() : changed_(::geteuid() == 0) {
    constexpr uid_t kNobody = 65534;
    if (changed_ && ::seteuid(kNobody) != 0) {
        throw std::system_error(errno, std::generic_category(), "seteuid");
    }
}

Unprivileged::~Unprivileged() {
    if (changed_ && ::seteuid(0) != 0) {
        std::abort(); // every later test would run as the wrong user
    }
}

} // namespace vexmarrow::test
