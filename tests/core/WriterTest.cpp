// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Writing.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace vexmarrow::test {
namespace {

constexpr uid_t kNobody = 65534;
constexpr gid_t kForeignGroup = 4711;

struct WriterTest : Writing {
    int flock_ = -1;
    std::optional<OtherProgram> other_;
};

/// What must stay the same when a file is written.
struct Identity {
    struct stat status {};
    std::map<std::string, std::string> attributes;

    explicit Identity(const std::string& path) {
        EXPECT_EQ(::stat(path.c_str(), &status), 0);
        std::string names(1000, '\0');
        names.resize(static_cast<std::size_t>(
            std::max<ssize_t>(0, ::listxattr(path.c_str(), names.data(), names.size()))));
        std::istringstream stream(names);
        for (std::string name; std::getline(stream, name, '\0');) {
            std::string value(1000, '\0');
            const ssize_t size =
                ::lgetxattr(path.c_str(), name.c_str(), value.data(), value.size());
            attributes[name] = value.substr(0, static_cast<std::size_t>(size));
        }
    }
    bool operator==(const Identity& other) const {
        return status.st_ino == other.status.st_ino && status.st_mode == other.status.st_mode &&
               status.st_uid == other.status.st_uid && status.st_gid == other.status.st_gid &&
               status.st_nlink == other.status.st_nlink && attributes == other.attributes;
    }
};

/// An access list that gives one more user the right to write.
std::string AccessList() {
    std::string bytes{2, 0, 0, 0};
    const auto entry = [&](char tag, char rights, std::uint32_t id) {
        bytes += {tag, 0, rights, 0};
        for (int shift = 0; shift < 32; shift += 8) {
            bytes += static_cast<char>(id >> shift);
        }
    };
    const auto none = static_cast<std::uint32_t>(-1);
    entry(0x01, 6, none);
    entry(0x02, 6, 1234);
    entry(0x04, 4, none);
    entry(0x10, 6, none);
    entry(0x20, 0, none);
    return bytes;
}

TEST_F(WriterTest, AFileStaysTheFileThatItWas) {
    const bool root = ::geteuid() == 0;
    folder.SetMode("", 0755);
    for (const unsigned mode : {0640U, 0600U, 0666U, 0755U}) {
        for (const std::string& text : {"x"s, std::string(3000, 'y')}) {
            for (const bool unprivileged : {false, true}) {
                SCOPED_TRACE(std::to_string(mode) + (unprivileged ? ", a user" : ""));
                folder.Clear();
                folder.Write("f", "0123456789");
                if (root) {
                    ASSERT_EQ(::chown(folder.Native().c_str(), kNobody, kForeignGroup), 0);
                    ASSERT_EQ(::chown(folder.Native("f").c_str(), kNobody, kForeignGroup), 0);
                }
                ASSERT_EQ(::chmod(folder.Native("f").c_str(), mode), 0);
                ASSERT_EQ(::lsetxattr(folder.Native("f").c_str(), "user.note", "n", 1, 0), 0);
                if (mode == 0640U) {
                    const std::string list = AccessList();
                    ASSERT_EQ(::lsetxattr(folder.Native("f").c_str(), "system.posix_acl_access",
                                          list.data(), list.size(), 0),
                              0);
                }
                folder.MakeLink("link", "f");
                std::filesystem::create_hard_link(folder.Native("f"), folder.Native("hard"));
                const Identity before(folder.Native("f"));
                {
                    std::optional<Unprivileged> user;
                    if (unprivileged) {
                        user.emplace();
                    }
                    EXPECT_EQ(Put("link", text), "");
                    writer.Settle();
                }
                EXPECT_TRUE(Identity(folder.Native("f")) == before);
                EXPECT_EQ(folder.Read("hard"), text);
                EXPECT_TRUE(std::filesystem::is_symlink(folder.Native("link")));
                EXPECT_EQ(folder.Names(), (Strings{"f", "hard", "link"}));
                state.Clear();
            }
        }
    }
}

TEST_F(WriterTest, WhatIsRefused) {
    const std::string path = folder.Native("f");
    const bool root = ::geteuid() == 0; // only the superuser can make files of somebody else
    const auto give = [&](const std::string& name, uid_t owner) {
        EXPECT_EQ(::lchown(folder.Native(name).c_str(), owner, owner), 0);
    };
    const struct {
        const char* what;
        std::function<void()> happens;
        std::string reason; // in the message; empty if it is written
        bool needsRoot = false;
    } rows[] = {
        {"nothing", [] {}, ""},
        {"set-user-id", [&] { ::chmod(path.c_str(), 04755); }, "It has a set-user-ID or"},
        {"set-group-id", [&] { ::chmod(path.c_str(), 02755); }, "It has a set-user-ID or"},
        {"a folder", [&] { folder.Remove("f"), folder.MakeFolder("f"); }, "It is a folder"},
        {"a pipe", [&] { folder.Remove("f"), ::mkfifo(path.c_str(), 0600); },
         "It is not a regular file"},
        {"a link to nowhere", [&] { folder.Remove("f"), folder.MakeLink("f", "gone"); },
         "It is a link to a file that does not exist"},
        {"an own link",
         [&] { folder.Write("g", "old"), folder.Remove("f"), folder.MakeLink("f", "g"); }, ""},
        {"another user's link",
         [&] {
             folder.Write("g", "old"), folder.Remove("f"), folder.MakeLink("f", "g"), give("f", 1);
         },
         "a link that belongs to another user", true},
        {"another user's, in a folder for all", [&] { give("f", 1); },
         "It belongs to another user and is in a folder that everyone can write to", true},
        {"another user's, whose folder it is", [&] { give("f", 1), give("", 1); }, "", true},
        {"another user's, in a folder for some",
         [&] { give("f", 1), ::chmod(folder.Native().c_str(), 0775); }, "", true},
        {"locked", [&] { flock_ = ::open(path.c_str(), O_RDWR), ::flock(flock_, LOCK_EX); },
         "It is locked by another program"},
        {"a part of it locked",
         [&] {
             other_.emplace([&](const auto& stop) {
                 const int file = ::open(path.c_str(), O_RDWR);
                 if (::lseek(file, 1, SEEK_SET) == 1 && ::lockf(file, F_LOCK, 1) == 0) {
                     stop();
                 }
             });
         },
         "It is locked by another program"},
    };
    for (const auto& row : rows) {
        for (const bool toFolder : {true, false}) {
            if (row.needsRoot && !root) {
                continue;
            }
            SCOPED_TRACE(row.what);
            folder.Clear();
            folder.Write("f", "old");
            folder.Write("in/f", "old");
            row.happens();
            const OutputLocation location{
                toFolder ? OutputLocation::OneFolder : OutputLocation::BesideInput, folder.Path()};
            engine.ReplaceTextInFile(folder.Path(toFolder ? "in/f" : "f"), u"old", u"new", location,
                                     1);
            const Strings reports = Reports();
            ASSERT_EQ(reports.empty(), row.reason.empty());
            if (toFolder || reports.empty() || reports[0].find("Could not open") != 0) {
                EXPECT_THAT(reports.empty() ? "" : reports[0], testing::HasSubstr(row.reason));
            }
            if (!row.reason.empty()) {
                EXPECT_TRUE(!folder.Exists("g") || folder.Read("g") == "old");
            }
            writer.Settle();
            EXPECT_EQ(Kept("a").empty(), !row.reason.empty());
            state.Clear();
            ::close(flock_);
            other_.reset();
            give("", ::geteuid());
            ::chmod(folder.Native().c_str(), 0777);
        }
    }
}

TEST_F(WriterTest, RightsOfANewFile) {
    const mode_t before = ::umask(022);
    enum Group { kOwn, kForeign };
    const struct {
        unsigned old;
        Group group;
        unsigned made;
    } rows[] = {{0600, kOwn, 0600},     {0644, kOwn, 0644},     {0640, kOwn, 0640},
                {0640, kForeign, 0600}, {0664, kForeign, 0644}, {0444, kOwn, 0644},
                {0777, kOwn, 0644}};
    folder.MakeFolder("out");
    for (const auto& row : rows) {
        for (const bool nameless : {true, false}) {
            SCOPED_TRACE(row.old);
            folder.Write("f", "a");
            folder.Remove("out/f");
            folder.SetMode("f", row.old);
            if (row.group == kForeign &&
                ::chown(folder.Native("f").c_str(), static_cast<uid_t>(-1), kForeignGroup) != 0) {
                continue; // a user has no such group to give it to
            }
            calls.lacksNamelessFiles = !nameless;
            engine.ReplaceTextInFile(folder.Path("f"), u"a", u"b", IntoFolder(folder.Path("out")),
                                     1);
            EXPECT_EQ(folder.ModeOf("out/f"), row.made);
            EXPECT_EQ(Reports(), Strings{});
            folder.Remove("f");
        }
    }
    EXPECT_EQ(Put("made from none"), "");
    EXPECT_EQ(folder.ModeOf("made from none"), 0644U);
    ::umask(before);
}

TEST_F(WriterTest, AnIdenticalResultIsNotWritten) {
    folder.MakeFolder("out");
    for (const std::string& text : {"abc"s, std::string(1200000, 'x'), ""s}) {
        for (const bool inPlace : {true, false}) {
            WriteOld("f", text);
            WriteOld("out/f", text);
            const OutputLocation location{inPlace ? OutputLocation::BesideInput
                                                  : OutputLocation::OneFolder,
                                          folder.Path("out")};
            engine.ReplaceTextInFile(folder.Path("f"), u"none", u"new", location, 1);
            EXPECT_EQ(Reports(), Strings{});
            EXPECT_EQ(DateOf("f"), kOldDate);
            EXPECT_EQ(DateOf("out/f"), kOldDate);
            EXPECT_EQ(Kept("a"), Strings{});
            if (text == "abc") { // what would have failed to be written is reported all the same
                folder.SetMode(inPlace ? "f" : "out/f", 0444);
                const Unprivileged user;
                engine.ReplaceTextInFile(folder.Path("f"), u"none", u"new", location, 1);
                EXPECT_THAT(Reports().at(0), testing::HasSubstr("Permission denied"));
            }
            folder.Remove("f");
            folder.Remove("out/f");
        }
    }
}

TEST_F(WriterTest, TwoProgramsAtOnce) {
    for (const char* name : {"f", "g", "h"}) {
        WriteOld(name, "old text");
    }
    const auto inTheMiddle = [&](const auto& work) { // of the writing of f
        return [this, work](const std::function<void()>& stop) {
            FaultySystemCalls others;
            others.mostAtOnce = 3;
            others.beforeCall = [&](Calls::Kind) {
                if (Content().starts_with("new") && Content() != "new text") {
                    stop();
                }
            };
            work(others);
        };
    };
    const auto write = [this](FaultySystemCalls& others) {
        SafeWriter theirs(others, Logs());
        Safety::Put(others, theirs, "f", "newnewnewnewnew");
    };
    calls.hasWatches = true;
    EXPECT_EQ(Put("h", "mine"), ""); // this run has begun
    std::optional<OtherProgram> other(std::in_place, inTheMiddle(write));
    EXPECT_EQ(Kept("a").size(), 2U) << "each has a log of its own";
    EXPECT_THAT(Put("f"), testing::HasSubstr("It is locked by another program"));
    EXPECT_EQ(Put("g"), "");
    EXPECT_EQ(Recover(Answer::Yes), 0U) << "a third one has nothing to do with them";
    RunUndo undo(calls, Logs());
    EXPECT_TRUE(undo.FindLastRun()->isInUse);
    EXPECT_THROW(undo.Undo(*undo.FindLastRun(), nullptr), Failure);
    const std::string mixture = Content();

    // Killed: now it is free, but what it holds is nothing to work with. A program that asks about
    // it has the log; another one that starts meanwhile asks nothing.
    other->Kill();
    prompts.whenShown = [&](const Box& box) {
        if (box.style != BoxStyle::OrLater) {
            return;
        }
        ScriptedPrompts more;
        Recovery(calls, Logs(), more).Run();
        EXPECT_TRUE(more.boxes.empty());
        EXPECT_THAT(Put("f"), testing::HasSubstr("It is only partly written"));
        engine.ReplaceTextInFile(folder.Path("f"), u"n", u"m", IntoFolder(folder.Path("out")), 1);
    };
    folder.MakeFolder("out");
    EXPECT_EQ(Recover(Answer::Later), 2U); // the other box is that of the engine
    prompts.whenShown = nullptr;
    EXPECT_THAT(Put("f"), testing::HasSubstr("It is only partly written"));
    EXPECT_EQ(Content(), mixture);
    EXPECT_EQ(folder.Names("out"), Strings{});
    EXPECT_EQ(Recover(Answer::Yes), 1U);
    EXPECT_EQ(Content(), "old text");
    EXPECT_EQ(Put("f", "another text"), "") << "it is settled";
    writer.Settle();

    // While another one takes back, and is killed at that.
    const LastRun run = *undo.FindLastRun();
    for (const char* text : {"mine too", "mine again"}) { // the second one sees nothing new
        EXPECT_EQ(Put("h", text), "");
    }
    other.emplace([&](const std::function<void()>& stop) {
        FaultySystemCalls others;
        others.mostAtOnce = 3;
        others.beforeCall = [&](Calls::Kind) {
            if (Content() != "another text" && Content() != "old text") {
                stop();
            }
        };
        RunUndo(others, Logs()).Undo(run, [](auto, auto) {});
    });
    EXPECT_THAT(Put("f"), testing::HasSubstr("It is locked by another program"));
    other->Kill();
    EXPECT_THAT(Put("f"), testing::HasSubstr("It is only partly written"));
    EXPECT_EQ(Put("g", "later"), "");
}

TEST_F(WriterTest, AProgramThatEndsInTheMiddleOfAFileOfALogThatIsTakenOverAtOnce) {
    WriteOld("f", "old text");
    FaultySystemCalls others;
    others.mostAtOnce = 3;
    calls.hasWatches = true;
    {
        SafeWriter theirs(others, Logs());
        EXPECT_EQ(Safety::Put(others, theirs, "e", "new"), "");
        for (const char* text : {"mine", "mine again"}) { // so that their log is known
            EXPECT_EQ(Put("h", text), "");
        }
        others.beforeCall = [&](Calls::Kind) {
            if (Content() == "new text") {
                others.AtCall(others.allCalls + 1, Event::Gone);
            }
        };
        EXPECT_NE(Safety::Put(others, theirs, "f", "newer text"), "");
    }
    prompts.whenShown = [&](const Box&) { // while a third one holds their log
        EXPECT_THAT(Put("f"), testing::HasSubstr("It is only partly written"));
    };
    EXPECT_EQ(Recover(Answer::Later), 1U);
}

TEST_F(WriterTest, TheSameFileByDifferentWays) {
    folder.Write("in/f.vcf", "a");
    folder.MakeLink("again", "in");
    const std::u16string path = folder.Path("in/f.vcf");
    for (const std::u16string& out : {folder.Path("in"), folder.Path("again")}) {
        for (int row = 0; row < 2; ++row) {
            engine.ReplaceTextInFile(path, u"a", u"aa", IntoFolder(out), row);
        }
    }
    EXPECT_EQ(folder.Read("in/f.vcf"), std::string(16, 'a'));
    EXPECT_EQ(folder.Names("in"), Strings{"f.vcf"});
    const std::string longest = "in/\xFF\n" + std::string(249, 'n') + ".vcf"; // 255 bytes
    folder.Write(longest, "a");
    calls.lacksNamelessFiles = true;
    folder.MakeFolder("out");
    engine.ReplaceTextInFile(folder.Path(longest), u"a", u"b", IntoFolder(folder.Path("out")), 1);
    EXPECT_EQ(folder.Read("out" + longest.substr(2)), "b");
    EXPECT_EQ(Reports(), Strings{});
}

TEST_F(WriterTest, MemoryHasALimitAndItsEndIsReported) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer takes more room than any limit leaves";
#endif
    constexpr rlim_t kMegabyte = 1U << 20U;
    constexpr rlim_t kMost = 64 * kMegabyte;
    const auto limited = [&](auto work) {
        return InChildProcess([&] {
            std::ifstream statm("/proc/self/statm");
            rlim_t pages = 0;
            statm >> pages;
            const rlim_t most = pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE)) + kMost;
            const rlimit limit{most, most};
            if (::setrlimit(RLIMIT_AS, &limit) != 0 || !work()) {
                throw Failure(u"not as it should be");
            }
        });
    };
    folder.MakeFolder("out");
    folder.Write("f", "a");
    std::filesystem::resize_file(folder.Native("f"), 100 * kMegabyte); // one line of NULs
    folder.Write("8", kMark8 + "a");
    std::filesystem::resize_file(folder.Native("8"), 100 * kMegabyte);
    folder.Write("g", "a");
    const OutputLocation out = IntoFolder(folder.Path("out"));
    const Texts find{u"a"}, replace{u"bc"};
    for (const bool unicode : {false, true}) {
        EXPECT_TRUE(limited([&] {
            flags.IsUnicode = unicode;
            engine.ReplaceTextInFile(folder.Path("f"), u"a", u"bc", kInPlace, 1);
            engine.ReplaceTextInFile(folder.Path("f"), u"a", u"bc", out, 1);
            return prompts.boxes.empty() &&
                   std::filesystem::file_size(folder.Native("out/f")) > 100 * kMegabyte;
        }));
    }
    EXPECT_TRUE(limited([&] {
        engine.ReplaceTextInFileCombo(folder.Path("8"), {find, replace}, kInPlace, 1);
        return prompts.boxes.empty();
    }));
    EXPECT_EQ(std::filesystem::file_size(folder.Native("8")), 100 * kMegabyte - 2); // and no mark
    const rlim_t size = std::filesystem::file_size(folder.Native("f"));
    EXPECT_TRUE(limited([&] {
        engine.ReplaceTextInFileFieldOnly(folder.Path("f"), u"a", u"bc", kInPlace, 1);
        engine.ReplaceTextInFileCombo(folder.Path("g"), {find, replace}, kInPlace, 2);
        return Reports() == Strings{"Out of memory."} && folder.Read("g") == "bc";
    }));
    EXPECT_EQ(std::filesystem::file_size(folder.Native("f")), size);
}

} // namespace
} // namespace vexmarrow::test
