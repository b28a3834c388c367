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

/// Passes calls on to the system, but makes chosen ones fail, do half of their work, or end the
/// process.
class FaultySystemCalls final : public SystemCalls {
public:
    enum Kind {
        kOpen, // also WatchFolder
        kStatus,
        kRead, // also ReadAt
        kWriteAt,
        kTruncate,
        kSetMode, // also SetModified
        kLock,    // also AskForLock
        kClose,
        kUnlink,
        kName, // NameFile and RenameToNew
        kMakeFolder,
        kDuplicate,
        kRoom
    };

    /// Makes the n-th call of a kind fail with an errno. The first call of all is number 1.
    void FailAt(Kind kind, int n, int error) { faults_[{kind, n}] = error; }

    /// Kills the process at that call, like AtCall with Event::Kill.
    void KillAt(Kind kind, int n) { faults_[{kind, n}] = kKill; }

    /// Chooses what happens at the n-th call of any kind. The first is number 1. To kill makes
    /// sense only within InChildProcess.
    enum class Event {
        Kill,     ///< kills the process before the call
        KillHalf, ///< kills the process when half of the bytes are read or written
        Fail,     ///< makes the call fail with EIO
        Full,     ///< makes the call fail with ENOSPC, if it can
        Short,    ///< reads or writes at most one byte
        Gone,     ///< makes this call and all later ones fail with EIO
    };
    void AtCall(int n, Event event) {
        eventCall_ = n;
        event_ = event;
    }

    std::size_t mostAtOnce = static_cast<std::size_t>(-1); ///< bytes that one call reads or writes
    std::map<Kind, int> calls;                             ///< the number of calls so far
    int allCalls = 0;
    int openFiles = 0;                    ///< not closed yet, without watches
    bool hasWatches = false;              ///< off, because real ones take milliseconds to close
    bool lacksNamelessFiles = false;      ///< like old and simple file systems
    std::function<void(Kind)> beforeCall; ///< does what another program does
    std::uint64_t room = UINT64_MAX;      ///< the most bytes that a file system reports as free
    std::uint64_t renumbered = 0;         ///< is added to the numbers of devices and files
    /// The errno with which opening fails, by the beginning of the path.
    std::map<std::string, int> openErrors;
    /// Extended attributes in addition to the real ones, by path (without "/" at its end) and name.
    /// Network shares and NTFS volumes report DOS attributes in this way; most file systems cannot
    /// store them.
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

/// Runs a function in a process of its own. Returns true if it ran to its end, false if
/// FaultySystemCalls killed it. Throws if the process ended in any other way.
bool InChildProcess(const std::function<void()>& work);

/// Another program, which does some work and then waits until it is killed.
class OtherProgram {
public:
    /// Returns when `work` has called the function that it is given. That function never returns.
    explicit OtherProgram(const std::function<void(const std::function<void()>& stop)>& work);
    ~OtherProgram() { Kill(); }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;
    void Kill();

private:
    int process_ = 0;
};

/// While it lives, a process of root runs as an ordinary user, so that permissions count.
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
