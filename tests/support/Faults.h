// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/SystemCalls.h"

#include <cstddef>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace vexmarrow::test {

/// The real system calls, of which chosen ones fail, do half of their work, or are the last ones
/// that the program makes.
class FaultySystemCalls final : public SystemCalls {
public:
    enum Kind {
        kOpen, // WatchFolder as well
        kStatus,
        kRead, // ReadAt is one of these as well
        kWriteAt,
        kTruncate,
        kSetMode, // SetModified as well
        kLock,    // AskForLock as well
        kClose,
        kUnlink,
        kName, // NameFile, RenameToNew
        kMakeFolder,
        kDuplicate,
        kRoom
    };

    /// Makes the n-th call of a kind (from 1, counted from the beginning) fail with an errno.
    void FailAt(Kind kind, int n, int error) { faults_[{kind, n}] = error; }

    /// Makes it the end of the process, as AtCall does with Event::Kill.
    void KillAt(Kind kind, int n) { faults_[{kind, n}] = kKill; }

    /// What happens at the n-th call of whatever kind (from 1). Killing is the end of the process,
    /// so it is for one that InChildProcess has begun.
    enum class Event {
        Kill,     ///< the process is killed before it
        KillHalf, ///< it is killed when half of the bytes are read or written
        Fail,     ///< it fails with EIO
        Full,     ///< it fails for want of room, if it is a call that can
        Short,    ///< it reads or writes one byte at most
        Gone,     ///< it fails with EIO, as all that come after it: the disk is gone
    };
    void AtCall(int n, Event event) {
        eventCall_ = n;
        event_ = event;
    }

    std::size_t mostAtOnce = static_cast<std::size_t>(-1); ///< bytes of one read or write
    std::map<Kind, int> calls;                             ///< so many were made
    int allCalls = 0;
    int openFiles = 0;       ///< opened and not closed again, but watches
    bool hasWatches = false; ///< real ones take milliseconds to close; without, all is looked at
    bool lacksNamelessFiles = false;      ///< as old and simple file systems
    std::function<void(Kind)> beforeCall; ///< what other programs do meanwhile
    std::uint64_t room = UINT64_MAX;      ///< bytes that a file system tells to have at most
    std::uint64_t renumbered = 0;         ///< by so much: devices and files, as after a restart
    /// What opening a file fails with, by how its path begins.
    std::map<std::string, int> openErrors;
    /// Extended attributes that files have on top of their real ones, by path (without "/" at its
    /// end) and name: few file systems keep those by which shares and NTFS volumes tell DOS
    /// attributes.
    std::map<std::pair<std::string, std::string>, std::string> attributes;

    int Open(const std::string& path, int flags, mode_t mode) override;
    int Status(int descriptor, FileStatus& status) override;
    int StatusOfName(const std::string& path, FileStatus& status) override;
    int StatusOfTarget(const std::string& path, FileStatus& status) override;
    ssize_t Read(int descriptor, void* bytes, std::size_t count) override;
    ssize_t ReadAt(int descriptor, void* bytes, std::size_t count, std::uint64_t offset) override;
    ssize_t WriteAt(int descriptor, const void* bytes, std::size_t count,
                    std::uint64_t offset) override;
    int Truncate(int descriptor, std::uint64_t size) override;
    int SetMode(int descriptor, mode_t mode) override;
    int SetModified(int descriptor, std::int64_t modified) override;
    int Lock(int descriptor, int operation) override;
    int AskForLock(int descriptor, bool forWriting) override;
    int Duplicate(int descriptor) override;
    int Close(int descriptor) override;
    int Unlink(const std::string& path) override;
    int NameFile(int descriptor, const std::string& path) override;
    int RenameToNew(const std::string& from, const std::string& to) override;
    int MakeFolder(const std::string& path, mode_t mode) override;
    int MakeWatch() override;
    int WatchFolder(int watch, const std::string& folder) override;
    int RoomIn(const std::string& folder, std::uint64_t& bytes) override;
    ssize_t Attribute(const std::string& path, const char* name, void* value,
                      std::size_t size) override;

private:
    bool Fails(Kind kind, std::size_t* count = nullptr);
    ssize_t AfterBytes(ssize_t answer) const;
    int Renumbered(int answer, FileStatus& status) const;

    static constexpr int kKill = -1;
    std::set<int> watches_;
    std::map<std::pair<Kind, int>, int> faults_;
    int eventCall_ = 0;
    Event event_ = Event::Kill;
    bool killAfter_ = false;
};

/// Runs something in a process of its own; true when it came to its end, false when it was killed
/// by FaultySystemCalls. Throws when it ended in any other way.
bool InChildProcess(const std::function<void()>& work);

/// Another program that does something and then waits to be killed.
class OtherProgram {
public:
    /// Returns once `work` has called what it is given, which does not return.
    explicit OtherProgram(const std::function<void(const std::function<void()>& stop)>& work);
    ~OtherProgram() { Kill(); }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;
    void Kill();

private:
    int process_ = 0;
};

/// While it lives, a process of the superuser, for whom no permission counts, is somebody else.
class Unprivileged {
public:
    Unprivileged();
    ~Unprivileged();
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;

private:
    bool changed_;
};

} // namespace vexmarrow::test
