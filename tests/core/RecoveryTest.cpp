// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Safety.h"

#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vexmarrow::test {
namespace {

using namespace std::chrono_literals;

struct RecoveryTest : Safety {
    void SetUp() override { LeaveRecord(); }
    void LeaveRecord() const {
        Prepare(kOld);
        LeaveMixture({"f"});
    }
    enum Shown { kQuestion, kMessage };
    std::vector<Shown> Boxes() const {
        std::vector<Shown> shown;
        for (const Box& box : prompts.boxes) {
            shown.push_back(box.style == BoxStyle::OrLater ? kQuestion : kMessage);
        }
        return shown;
    }
};

const std::string kNothing = kNoFile; ///< was kept
const std::string kNotAFile = "(no regular file)";

TEST_F(RecoveryTest, WhatHasBecomeOfTheFileSince) {
    const std::string path = folder.Native("f");
    const auto rename = [&](const char* from, const char* to) {
        ::rename(folder.Native(from).c_str(), folder.Native(to).c_str());
    };
    const auto whole = [&](const std::string& text) { folder.Write("f", text); };
    const auto replace = [&](const std::string& text) {
        folder.Write("g", text), rename("g", "f");
    };
    const auto makePipe = [&] { folder.Remove("f"), ::mkfifo(path.c_str(), 0666); };
    const auto makeFolder = [&] { folder.Remove("f"), folder.MakeFolder("f"); };
    const auto makeLink = [&] { rename("f", "g"), folder.MakeLink("f", "g"); };
    enum Missing { kThere, kMissing };
    enum Numbers { kSame, kOthers }; // of files and file systems, as after a restart
    const struct {
        const char* what;
        std::function<void()> happens;
        std::vector<Shown> boxes;   // the question is answered with Yes
        std::string content, found; // of the file then; of the copy of what was found
        Missing missing = kThere;
        Numbers numbers = kSame;
    } rows[] = {
        {"nothing", [] {}, {kQuestion}, kOld, kMixture},
        {"edited", [&] { whole("edited"); }, {kQuestion}, kOld, "edited"},
        {"emptied", [&] { whole(""); }, {kQuestion}, kOld, kNothing},
        {"completed by hand", [&] { whole(kWhole); }, {}, kWhole, kNothing},
        {"put back by hand", [&] { whole(kOld); }, {}, kOld, kNothing},
        {"renamed", [&] { rename("f", "g"); }, {}, kNoFile, kNothing, kMissing},
        {"removed", [&] { folder.Remove("f"); }, {}, kNoFile, kNothing, kMissing},
        {"replaced", [&] { replace("other"); }, {kQuestion}, kOld, "other"},
        {"replaced by its old text", [&] { replace(kOld); }, {}, kOld, kNothing, kMissing},
        {"a pipe", makePipe, {}, kNotAFile, kNothing, kMissing},
        {"a folder", makeFolder, {}, kNotAFile, kNothing, kMissing},
        {"a link to it", makeLink, {kQuestion}, kOld, kMixture},
        {"restarted", [] {}, {kQuestion}, kOld, kMixture, kThere, kOthers},
        {"restarted, completed", [&] { whole(kWhole); }, {}, kWhole, kNothing, kMissing, kOthers},
        {"restarted, put back", [&] { whole(kOld); }, {}, kOld, kNothing, kMissing, kOthers},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        LeaveRecord();
        row.happens();
        prompts.answers.assign(9, Answer::Yes);
        prompts.boxes.clear();
        FaultySystemCalls calls;
        calls.renumbered = row.numbers == kOthers ? 1000 : 0;
        Recovery recovery(calls, Logs(), prompts);
        recovery.Run();
        EXPECT_EQ(Boxes(), row.boxes);
        EXPECT_EQ(recovery.Missing(), row.missing == kMissing ? 1U : 0U);
        if (row.content != kNotAFile) {
            EXPECT_EQ(Content(), row.content);
            EXPECT_EQ(row.content == kOld && row.missing == kThere, DateOf("f") == kOldDate);
        }
        const auto kept = [&](const std::string& kind) {
            const Strings names = Kept("a/kept", kind);
            return names.empty() ? kNothing : state.Read(names[0]);
        };
        EXPECT_EQ(kept("-found-"), row.found);
        if (row.missing == kMissing) { // the record stays, until it is given up
            EXPECT_EQ(StatesIn(Kept("a").at(0)), "O");
            recovery.Run();
            EXPECT_EQ(recovery.Missing(), 1U);
            recovery.GiveUpMissing();
            EXPECT_EQ(recovery.Missing(), 0U);
            EXPECT_EQ(kept("-old-"), kOld);
            EXPECT_EQ(Boxes(), std::vector{kMessage});
            if (row.content != kNotAFile) {
                EXPECT_EQ(Content(), row.content);
            }
        }
        EXPECT_EQ(Recover(calls, Answer::Yes), 0U) << "told twice";
        EXPECT_EQ(TakeBack(), Strings{});
        EXPECT_EQ(Kept("a"), Strings{});
        EXPECT_EQ(folder.Names().empty(), row.content == kNoFile && !folder.Exists("g"));
    }
}

TEST_F(RecoveryTest, ManyMoreThanAProcessMayHaveOpen) {
    for (int i = 0; i < 40; ++i) {
        folder.Write("g" + std::to_string(i), kOld);
        LeaveMixture({"g" + std::to_string(i)});
    }
    EXPECT_EQ(Kept("a").size(), 41U);
    EXPECT_TRUE(InChildProcess([&] {
        const rlimit limit{30, 30};
        if (::setrlimit(RLIMIT_NOFILE, &limit) != 0 || Recover(Answer::Yes) != 41) {
            throw Failure(u"not all were asked about");
        }
    }));
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(folder.Read("g" + std::to_string(i)), kOld);
    }
    EXPECT_EQ(Kept("a"), Strings{});
}

// A log of two records, the first one done and the second one open, with each byte changed and cut
// at each: no file may get anything but a text that it had, and what is asked for is kept.
TEST_F(RecoveryTest, ADamagedLogChangesNothingThatItShouldNot) {
    const auto leave = [&] {
        Prepare(kOld);
        WriteOld("g", "old");
        LeaveMixture({"g", "f"});
        return Kept("a").at(0);
    };
    const std::size_t size = state.Read(leave()).size();
    std::size_t asked = 0, takenBack = 0;
    for (std::size_t at = 0; at < size; ++at) {
        for (const bool cut : {false, true}) {
            SCOPED_TRACE((cut ? "cut at " : "damaged at ") + std::to_string(at));
            const std::string name = leave();
            std::string bytes = cut ? state.Read(name).substr(0, at) : state.Read(name);
            if (!cut) {
                bytes[at] = static_cast<char>(bytes[at] ^ 0x21);
            }
            state.Write(name, bytes);
            Recover(Answer::Yes);
            ASSERT_LE(prompts.boxes.size(), 2U);
            asked += testing::Matches(testing::Contains(kQuestion))(Boxes()) ? 1 : 0;
            EXPECT_TRUE(Content() == kMixture || Content() == kOld) << Content();
            if (Boxes() == std::vector{kQuestion, kMessage}) {
                EXPECT_EQ(Content(), kMixture) << "its old text is damaged";
                EXPECT_EQ(Kept("a/kept", "-part-").size(), 1U);
            }
            EXPECT_EQ(Recover(Answer::Yes), 0U) << "told twice";
            takenBack += TakeBack().empty() && folder.Read("g") == "old" ? 1 : 0;
            EXPECT_TRUE(folder.Read("g") == "old" || folder.Read("g") == kWhole);
            EXPECT_EQ(folder.Names(), (Strings{"f", "g"}));
        }
    }
    EXPECT_GT(asked, size / 2);
    EXPECT_GT(takenBack, size / 2);
}

TEST_F(RecoveryTest, OnlyItsOwnLogs) {
    const std::string name = "a/0000000001.run", path = state.Native(name);
    const auto rename = [&](const char* to) { ::rename(path.c_str(), state.Native(to).c_str()); };
    // What is done to the log of a mixture; whether recovery may act upon it.
    const struct {
        const char* what;
        std::function<void()> happens;
        bool isAsked = false, stays = true;
    } rows[] = {
        {"nothing", [] {}, true, false},
        {"readable for others", [&] { ::chmod(path.c_str(), 0644); }, true, false},
        {"writable for others", [&] { ::chmod(path.c_str(), 0666); }},
        {"with a second name", [&] { std::filesystem::create_hard_link(path, state.Native("x")); },
         true, false},
        {"a link", [&] { rename("x"), state.MakeLink(name, state.Native("x")); }},
        {"a pipe", [&] { state.Remove(name), ::mkfifo(path.c_str(), 0600); }},
        {"a folder", [&] { state.Remove(name), state.MakeFolder(name); }},
        {"of a later version",
         [&] { state.Write(name, "VXMRUN\x1A\2" + state.Read(name).substr(8)); }},
        {"of another name", [&] { rename("a/1.run"); }, false, false},
        {"another user's",
         [&] {
             if (::chown(path.c_str(), 1, 1) != 0) {
                 ::chmod(path.c_str(), 0666);
             }
         }},
        {"in use",
         [&] {
             const int held = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
             EXPECT_EQ(::flock(held, LOCK_EX), 0); // until the end of the test
         }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        LeaveRecord();
        row.happens();
        EXPECT_EQ(Recover(Answer::Yes), row.isAsked ? 1U : 0U);
        EXPECT_EQ(Content(), row.isAsked ? kOld : kMixture);
        FaultySystemCalls calls;
        RunUndo(calls, Logs()).RemoveAllLogs();
        EXPECT_EQ(state.Exists(name), row.stays);
    }
}

TEST_F(RecoveryTest, WhatCannotBeDoneNowIsToldAndWaits) {
    const std::string path = folder.Native("f");
    const auto waits = [&](FaultySystemCalls& calls, const char* reason) {
        EXPECT_EQ(Recover(calls, Answer::Yes), 2U);
        EXPECT_EQ(Boxes(), (std::vector{kQuestion, kMessage}));
        EXPECT_THAT(NativeName(prompts.boxes.back().text), testing::HasSubstr(reason));
        EXPECT_EQ(Content(), kMixture);
        EXPECT_EQ(StatesIn(Kept("a").at(0)), "O");
        EXPECT_EQ(TakeBack(), Strings{});
    };
    FaultySystemCalls calls;
    const int other = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(other, LOCK_EX), 0);
    waits(calls, "locked by another program");
    ::close(other);

    calls.openErrors = {{state.Native("a/kept"), ENOSPC}, {state.Native("b"), EACCES}};
    waits(calls, "Permission denied");
    calls.openErrors.clear();

    ASSERT_EQ(::chmod(path.c_str(), 04755), 0);
    waits(calls, "set-user-ID");
    ASSERT_EQ(::chmod(path.c_str(), 0600), 0);

    prompts.whenShown = [&](const Box& box) { // what was asked about must be what is overwritten
        if (box.style == BoxStyle::OrLater) {
            SetDate("f", kOldDate + 1);
        }
    };
    waits(calls, "just changed it");
    prompts.whenShown = nullptr;

    EXPECT_EQ(Recover(Answer::Yes), 1U);
    EXPECT_EQ(Content(), kOld);
    EXPECT_EQ(folder.ModeOf("f"), 0600U) << "rights that were taken away since stay away";
}

} // namespace
} // namespace vexmarrow::test
