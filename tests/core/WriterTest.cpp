// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Safety.h"

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

struct WriterTest : Safety {
    FaultySystemCalls calls;
    RFTSFSO textio{calls, flags, ansi};
    JournaledWriter writer{calls, Journals()};
    ReplaceText engine{textio, writer, prompts};

    /// The first lines of the reports since the last call, without the folder's name.
    Strings Reports() {
        Strings reports;
        for (const Box& box : prompts.boxes) {
            std::string text = NativeName(box.text.substr(0, box.text.find(u"\r\n")));
            for (std::size_t at; (at = text.find(folder.Native() + "/")) != std::string::npos;) {
                text.erase(at, folder.Native().size() + 1);
            }
            reports.push_back(text);
        }
        prompts.boxes.clear();
        return reports;
    }
    std::string Write1(const std::string& name, const std::string& text = "new") {
        try {
            const auto file = writer.Begin(folder.Path(name), WriteStart::Replace, nullptr);
            file->Append(text);
            file->Commit();
            return {};
        } catch (const Failure& failure) {
            return NativeName(failure.Description());
        }
    }
};

/// All that is to stay as it was.
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
    for (const unsigned mode : {0640U, 0600U, 0666U, 02755U, 04755U, 06711U}) {
        for (const std::string& text : {"x"s, std::string(3000, 'y')}) {
            for (const bool unprivileged : {false, true}) {
                SCOPED_TRACE(std::to_string(mode) + (unprivileged ? ", a user" : ""));
                for (const std::string& name : folder.Names()) {
                    folder.Remove(name);
                }
                folder.Write("f", "0123456789");
                if (root) { // the superuser's group is also that of the user it plays
                    ASSERT_EQ(::chown(folder.Native("f").c_str(), kNobody,
                                      (mode & S_ISGID) != 0 ? 0 : kForeignGroup),
                              0);
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
                        state.SetMode("", 0777);
                        user.emplace();
                    }
                    EXPECT_EQ(Write1("link", text), "");
                    writer.Settle();
                }
                EXPECT_TRUE(Identity(folder.Native("f")) == before);
                EXPECT_EQ(folder.Read("hard"), text);
                EXPECT_TRUE(std::filesystem::is_symlink(folder.Native("link")));
                EXPECT_EQ(folder.Names(), (Strings{"f", "hard", "link"}));
                for (const std::string& name : state.Names()) {
                    state.Remove(name);
                }
            }
        }
    }
}

TEST_F(WriterTest, SetIdBitsThatCouldNotBeGivenBackAreNotTaken) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the superuser can make files of somebody else";
    }
    for (const bool foreignOwner : {false, true}) {
        folder.Write("f", "old");
        ASSERT_EQ(::chown(folder.Native("f").c_str(), foreignOwner ? 1 : kNobody, kForeignGroup),
                  0);
        ASSERT_EQ(::chmod(folder.Native("f").c_str(), 02777), 0);
        {
            const Unprivileged user;
            EXPECT_THAT(Write1("f"), testing::HasSubstr("set-id"));
        }
        EXPECT_EQ(folder.Read("f"), "old");
        EXPECT_EQ(folder.ModeOf("f"), 02777U);
        folder.Remove("f");
    }
}

TEST_F(WriterTest, TwoProgramsAtOnce) {
    folder.Write("f", "old");
    folder.Write("g", "old");
    JournaledWriter other(calls, Journals());
    const auto mine = writer.Begin(folder.Path("f"), WriteStart::Replace, nullptr);
    mine->Append("mine");
    EXPECT_THAT(Do({"", "other"}, other), testing::HasSubstr("It is locked by another program"));
    const auto second = other.Begin(folder.Path("g"), WriteStart::Replace, nullptr);
    second->Append("other");
    second->Commit();
    EXPECT_EQ(Kept("a").size(), 1U);
    EXPECT_EQ(Recover(Answer::Yes), 0U) << "a third one has nothing to do with them";
    mine->Commit();
    EXPECT_EQ(Kept("a").size(), 2U) << "each has a journal of its own";
    EXPECT_EQ(folder.Read("f") + folder.Read("g"), "mineother");
    EXPECT_EQ(Do({"", "later"}, other), "");
    writer.Settle();
    other.Settle();
    EXPECT_EQ(Kept("a"), Strings{});
}

TEST_F(WriterTest, AnInputThatChangesWhileItIsReadIsNotWritten) {
    const std::string old(70000, 'a');
    const std::string path = folder.Native("f");
    const struct {
        const char* what;
        std::function<void()> happens;
    } rows[] = {
        {"grows", [&] { folder.Write("f", old + "more"); }},
        {"shrinks", [&] { folder.Write("f", "less"); }},
        {"is removed", [&] { folder.Remove("f"); }},
        {"is replaced",
         [&] {
             folder.Write("g", "other");
             ::rename(folder.Native("g").c_str(), path.c_str());
         }},
    };
    folder.MakeFolder("out");
    for (const auto& row : rows) {
        for (const bool inPlace : {false, true}) {
            for (const int read : {1, 2, 3, 4, 5}) {
                SCOPED_TRACE(std::string(row.what) + " at read " + std::to_string(read));
                folder.Write("f", old);
                std::string after;
                calls.mostAtOnce = 20000;
                calls.beforeCall = [&, n = 0](Calls::Kind kind) mutable {
                    if (kind == Calls::kRead && ++n == read) {
                        row.happens();
                        after = Content();
                    }
                };
                engine.ReplaceTextInFile(folder.Path("f"), u"a", u"b",
                                         {!inPlace, inPlace, folder.Path("out")}, 1);
                calls.beforeCall = nullptr;
                if (after.empty()) {
                    EXPECT_GT(read, 4) << "it was not read so often";
                    prompts.boxes.clear();
                    folder.Remove("out/f");
                    continue;
                }
                const Strings reports = Reports();
                ASSERT_FALSE(reports.empty());
                EXPECT_THAT(reports[0], testing::HasSubstr("Another program has"));
                EXPECT_EQ(Content(), after);
                EXPECT_EQ(folder.Names("out"), Strings{});
                folder.Remove("out/f");
            }
        }
    }
    // Between the last read and the writing.
    folder.Write("f", "abc");
    calls.beforeCall = [&, n = 0](Calls::Kind kind) mutable {
        if (kind == Calls::kStatus && ++n == 3) {
            folder.Write("f", "edited");
        }
    };
    engine.ReplaceTextInFile(folder.Path("f"), u"a", u"b", {false, true, u""}, 1);
    calls.beforeCall = nullptr;
    EXPECT_EQ(Content(), "edited");
    EXPECT_EQ(Reports().size(), 1U);
}

TEST_F(WriterTest, ATargetThatChangesBeforeItIsWrittenIsLeftAlone) {
    const std::string path = folder.Native("out/f");
    const struct {
        const char* what;
        std::function<void()> happens;
    } rows[] = {
        {"is written into", [&] { folder.Write("out/f", "another program's"); }},
        {"is removed", [&] { folder.Remove("out/f"); }},
        {"is replaced, and has a second name",
         [&] {
             std::filesystem::create_hard_link(path, folder.Native("out/backup"));
             folder.Write("g", "other");
             ::rename(folder.Native("g").c_str(), path.c_str());
         }},
    };
    folder.Write("f", "abc");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        folder.Remove("out");
        folder.Write("out/f", "old");
        std::vector<std::string> after;
        calls.beforeCall = [&, n = 0](Calls::Kind kind) mutable {
            if (kind == Calls::kLock && ++n == 2) { // that of the target
                row.happens();
                after = folder.Names("out");
            }
        };
        engine.ReplaceTextInFile(folder.Path("f"), u"a", u"b", {true, false, folder.Path("out")},
                                 1);
        calls.beforeCall = nullptr;
        EXPECT_EQ(folder.Names("out"), after);
        EXPECT_FALSE(folder.Exists("out/f") && folder.Read("out/f") == "bbc");
        EXPECT_THAT(Reports().at(0), testing::HasSubstr("Another program has"));
    }
}

TEST_F(WriterTest, WhereTheJournalGoes) {
    // What stands in the way of the first folder; whether the second one serves.
    const struct {
        const char* what;
        std::function<void()> happens;
        std::size_t inFirst, inSecond;
    } rows[] = {
        {"nothing", [] {}, 1, 0},
        {"its rights",
         [&] {
             state.MakeFolder("a");
             state.SetMode("a", 0755);
         },
         1, 0},
        {"a file", [&] { state.Write("a", ""); }, 0, 1},
        {"a link",
         [&] {
             state.MakeFolder("c");
             state.MakeLink("a", "c");
         },
         0, 1},
        {"no room",
         [&] { calls.FailAt(Calls::kWriteAt, calls.calls[Calls::kWriteAt] + 1, ENOSPC); }, 0, 1},
        {"forced modes",
         [&] {
             calls.beforeCall = [&](Calls::Kind kind) {
                 for (const std::string& name : Kept("a", "journal-")) {
                     state.SetMode(name, kind == Calls::kStatus ? 0755 : 0600);
                 }
             };
         },
         0, 1},
        {"no locks", [&] { calls.FailAt(Calls::kLock, calls.calls[Calls::kLock] + 2, ENOLCK); }, 0,
         1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Prepare({"old", "new"});
        row.happens();
        EXPECT_EQ(Do({"old", "new"}, writer), "");
        EXPECT_EQ(Kept("a", "journal-").size(), row.inFirst);
        EXPECT_EQ(Kept("b", "journal-").size(), row.inSecond);
        const std::string used = state.Native(row.inFirst == 1 ? "a" : "b");
        EXPECT_EQ(std::filesystem::status(used).permissions(), std::filesystem::perms(0700));
        writer.Settle();
        calls.beforeCall = nullptr;
    }
    Prepare({"old", "new"});
    state.Write("a", "");
    state.Write("b", "");
    const std::string failure = Do({"old", "new"}, writer);
    for (const std::string& part : {folder.Native("f"), Journals()[0], Journals()[1]}) {
        EXPECT_THAT(failure, testing::HasSubstr(part));
    }
    EXPECT_EQ(Content(), "old");
    state.Remove("a");
    EXPECT_EQ(Do({"old", "new"}, writer), "") << "there is room again";
}

TEST_F(WriterTest, JournalsAreNoTargets) {
    folder.Write("f", "old");
    EXPECT_EQ(Write1("f"), "");
    const std::string name = Kept("a", "journal-").at(0);
    const std::string record = "VXMJRNL\x1A and what follows";
    state.Write("a/left", record);
    state.SetMode("a/left", 0600);
    for (const std::string& journal : {name, "a/left"s}) {
        state.MakeLink("link", journal);
        std::filesystem::create_hard_link(state.Native(journal), state.Native("hard"));
        for (const std::string& path : {journal, "link"s, "hard"s}) {
            EXPECT_THROW(writer.Begin(state.Path(path), WriteStart::Replace, nullptr), Failure)
                << path;
        }
        state.Remove("link");
        state.Remove("hard");
    }
    EXPECT_EQ(state.Read("a/left"), record);
}

TEST_F(WriterTest, TheSameFileByDifferentWays) {
    folder.Write("in/f.vcf", "a");
    folder.MakeLink("again", "in");
    const std::u16string path = folder.Path("in/f.vcf");
    for (const std::u16string& out : {folder.Path("in"), folder.Path("again")}) {
        for (int row = 0; row < 2; ++row) {
            engine.ReplaceTextInFile(path, u"a", u"aa", {true, false, out}, row);
        }
    }
    EXPECT_EQ(folder.Read("in/f.vcf"), std::string(16, 'a'));
    EXPECT_EQ(folder.Names("in"), Strings{"f.vcf"});
    const std::string longest = "in/\xFF\n" + std::string(249, 'n') + ".vcf"; // 255 bytes
    folder.Write(longest, "a");
    calls.lacksNamelessFiles = true;
    folder.MakeFolder("out");
    engine.ReplaceTextInFile(folder.Path(longest), u"a", u"b", {true, false, folder.Path("out")},
                             1);
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
    const OutputLocation inPlace{false, true, u""}, out{true, false, folder.Path("out")};
    const Texts find{u"a"}, replace{u"bc"};
    for (const bool unicode : {false, true}) {
        EXPECT_TRUE(limited([&] {
            flags.IsUnicode = unicode;
            engine.ReplaceTextInFile(folder.Path("f"), u"a", u"bc", inPlace, 1);
            engine.ReplaceTextInFile(folder.Path("f"), u"a", u"bc", out, 1);
            return prompts.boxes.empty() &&
                   std::filesystem::file_size(folder.Native("out/f")) > 100 * kMegabyte;
        }));
    }
    EXPECT_TRUE(limited([&] {
        engine.ReplaceTextInFileCombo(folder.Path("8"), {find, replace}, inPlace, 1);
        return prompts.boxes.empty();
    }));
    EXPECT_EQ(std::filesystem::file_size(folder.Native("8")), 100 * kMegabyte - 2); // and no mark
    const rlim_t size = std::filesystem::file_size(folder.Native("f"));
    EXPECT_TRUE(limited([&] {
        engine.ReplaceTextInFileFieldOnly(folder.Path("f"), u"a", u"bc", inPlace, 1);
        engine.ReplaceTextInFileCombo(folder.Path("g"), {find, replace}, inPlace, 2);
        return Reports() == Strings{"Out of memory."} && folder.Read("g") == "bc";
    }));
    EXPECT_EQ(std::filesystem::file_size(folder.Native("f")), size);
}

} // namespace
} // namespace vexmarrow::test
