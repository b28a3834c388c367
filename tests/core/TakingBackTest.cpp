// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Writing.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace vexmarrow::test {
namespace {

struct TakingBackTest : Writing {
    int held = -1;

    /// A run over a file of three names, over another one, and over a new one.
    void Run() {
        folder.Clear();
        state.Clear();
        WriteOld("a", "old");
        std::filesystem::create_hard_link(folder.Native("a"), folder.Native("hard"));
        folder.MakeLink("link", "a");
        WriteOld("b", "old");
        folder.MakeFolder("in");
        for (const char* name : {"in/new", "in/new", "a", "hard", "link", "b"}) {
            EXPECT_EQ(Put(name, "by "s + name), "");
        }
        writer.Settle();
    }
    /// Files and their texts; folders are empty, or hold one file.
    std::string Tree() const {
        std::string tree;
        for (const std::string& name : folder.Names()) {
            const bool isFolder = std::filesystem::is_directory(folder.Native(name));
            const Strings inside = isFolder ? folder.Names(name) : Strings{};
            const std::string file = inside.empty() ? name : name + "/" + inside[0];
            tree += file + (isFolder && inside.empty() ? "" : "=" + folder.Read(file)) + " ";
        }
        return tree;
    }
    void Rename(const char* from, const char* to) const {
        ::rename(folder.Native(from).c_str(), folder.Native(to).c_str());
    }
};

TEST_F(TakingBackTest, WhatHasBecomeOfTheFilesSince) {
    const std::string isChanged = ": It was changed after the run", isGone = ": It is missing";
    // What is left alone and why; the files then; whether the run can be taken back once more.
    const struct {
        const char* what;
        std::function<void()> happens;
        Strings left;
        std::string files;
        bool waits = false;
    } rows[] = {
        {"nothing", [] {}, {}, "a=old b=old hard=old in link=old "},
        {"one of three names is edited: what was before that is of no use",
         [&] { folder.Write("hard", "edited"); },
         {"link" + isChanged},
         "a=edited b=old hard=edited in link=edited "},
        {"neither size nor date tells",
         [&] {
             const std::int64_t date = DateOf("b");
             folder.Write("b", "yb b");
             SetDate("b", date);
         },
         {"b" + isChanged},
         "a=old b=yb b hard=old in link=old "},
        {"replaced",
         [&] { folder.Write("c", "other"), Rename("c", "a"); },
         {"link" + isChanged},
         "a=other b=old hard=by link in link=other "},
        {"replaced by its old text",
         [&] { folder.Write("c", "old"), Rename("c", "b"); },
         {"b" + isChanged},
         "a=old b=old hard=old in link=old "},
        {"away",
         [&] { Rename("b", "c"); },
         {"b" + isGone},
         "a=old c=by b hard=old in link=old ",
         true},
        {"a new file is away",
         [&] { folder.Remove("in/new"); },
         {},
         "a=old b=old hard=old in link=old "},
        {"its folder is away",
         [&] { folder.Remove("in"); },
         {"in/new" + isGone},
         "a=old b=old hard=old link=old ",
         true},
        {"a new file is edited",
         [&] { folder.Write("in/new", "edited"); },
         {"in/new" + isChanged},
         "a=old b=old hard=old in/new=edited link=old "},
        {"a link has taken the place of a new file",
         [&] { Rename("in/new", "n"), folder.MakeLink("in/new", "../n"); },
         {"in/new: It was replaced after the run"},
         "a=old b=old hard=old in/new=by in/new link=old n=by in/new "},
        {"locked",
         [&] {
             held = ::open(folder.Native("b").c_str(), O_RDONLY | O_CLOEXEC);
             ::flock(held, LOCK_EX);
         },
         {"b: It is locked by another program"},
         "a=old b=by b hard=old in link=old ",
         true},
        {"with a set-id bit",
         [&] { folder.SetMode("b", 04640); },
         {"b: It has a set-user-ID or set-group-ID bit, which files of contacts never need"},
         "a=old b=by b hard=old in link=old ",
         true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Run();
        row.happens();
        EXPECT_EQ(TakeBack(), row.left);
        EXPECT_EQ(Tree(), row.files);
        EXPECT_EQ(folder.Read("hard") == "old", DateOf("hard") == kOldDate);
        EXPECT_EQ(Kept("a").empty(), !row.waits);
        ::close(held);
        if (row.waits) { // it can be gone on with
            folder.MakeFolder("in");
            folder.Exists("c") ? Rename("c", "b") : folder.SetMode("b", 0640);
            EXPECT_EQ(TakeBack(), Strings{});
            EXPECT_EQ(Tree(), "a=old b=old hard=old in link=old ");
            EXPECT_EQ(Kept("a"), Strings{});
        }
    }
}

TEST_F(TakingBackTest, RunsOneAfterTheOtherAndNoneBeneathAnother) {
    const RunUndo undo(calls, Logs());
    WriteOld("f", kOld);
    std::vector<LastRun> runs;
    for (const char* text : {"1", "2", "3"}) {
        EXPECT_EQ(Put("f", text), "");
        writer.Settle();
        runs.push_back(*undo.FindLastRun());
    }
    for (const char* text : {"2", "1", kOld}) {
        EXPECT_EQ(TakeBack(), Strings{});
        EXPECT_EQ(Content(), text);
    }
    EXPECT_EQ(DateOf("f"), kOldDate);
    EXPECT_FALSE(undo.FindLastRun());

    EXPECT_EQ(Put("f", "1"), "");
    writer.Settle();
    const LastRun run = *undo.FindLastRun();
    EXPECT_EQ(run.log, runs[0].log);
    const auto takeBack = [&](const LastRun& which) {
        return RunUndo(calls, Logs()).Undo(which, [](auto, auto) {});
    };
    EXPECT_THROW(takeBack(runs[0]), Failure) << "another run of the same name";
    WriteOld("f", kOld);
    LeaveMixture({"f"});
    const std::vector<UndoProblem> left = takeBack(run);
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left[0].why, u"It was only partly written by another run");
    EXPECT_EQ(Content(), kMixture);
}

TEST_F(TakingBackTest, WhatWaitsForAnAnswerGoesOnWaiting) {
    for (const bool isFolder : {false, true}) {
        Prepare(kOld);
        WriteOld("g", kOld);
        LeaveMixture({"g", "f"});
        if (isFolder) {
            folder.Remove("f");
            folder.MakeFolder("f");
        }
        EXPECT_EQ(TakeBack(),
                  Strings{isFolder ? "f: It is no longer a regular file"
                                   : "f: It is only partly written. The next start asks about it"});
        EXPECT_EQ(folder.Read("g"), kOld);
        EXPECT_EQ(StatesIn(Kept("a").at(0)), "CO");
    }
}

} // namespace
} // namespace vexmarrow::test
