// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Writing.h"
#include "textio/Checksum.h"

#include <cstring>

namespace vexmarrow::test {
namespace {

using LogsTest = Writing;

TEST_F(LogsTest, WhereTheLogGoes) {
    const struct {
        const char* what; // stands in the way of the first folder
        std::function<void()> happens;
        bool inFirst = false; // is the log all the same; else in the second
    } rows[] = {
        {"nothing", [] {}, true},
        {"its rights", [&] { state.MakeFolder("a"), state.SetMode("a", 0755); }, true},
        {"a file", [&] { state.Write("a", ""); }},
        {"a link", [&] { state.MakeFolder("c"), state.MakeLink("a", "c"); }},
        {"no room",
         [&] { calls.FailAt(Calls::kWriteAt, calls.calls[Calls::kWriteAt] + 1, ENOSPC); }},
        {"forced modes",
         [&] {
             calls.beforeCall = [&](Calls::Kind kind) {
                 for (const std::string& name : Kept("a")) {
                     state.SetMode(name, kind == Calls::kStatus ? 0755 : 0600);
                 }
             };
         }},
        {"no locks", [&] { calls.FailAt(Calls::kLock, calls.calls[Calls::kLock] + 3, ENOLCK); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Prepare("old");
        row.happens();
        EXPECT_EQ(Put("f"), "");
        EXPECT_EQ(Kept("a").size(), row.inFirst ? 1U : 0U);
        EXPECT_EQ(Kept("b").size(), row.inFirst ? 0U : 1U);
        EXPECT_EQ(state.ModeOf(row.inFirst ? "a" : "b"), 0700U);
        writer.Settle();
        calls.beforeCall = nullptr;
        EXPECT_EQ(TakeBack(), Strings{});
        EXPECT_EQ(Content(), "old");
    }
    Prepare("old");
    state.Write("a", "");
    state.Write("b", "");
    const std::string failure = Put("f");
    for (const std::string& part : {folder.Native("f"), Logs()[0], Logs()[1]}) {
        EXPECT_THAT(failure, testing::HasSubstr(part));
    }
    EXPECT_EQ(Content(), "old");
    state.Remove("a");
    EXPECT_EQ(Put("f"), "") << "there is room again";
}

TEST_F(LogsTest, RoomForLogs) {
    std::uint64_t share = 0; // of the disk, that logs may take
    calls.beforeCall = [&](Calls::Kind kind) {
        if (kind == Calls::kRoom) {
            calls.room = 2 * share;
            for (const std::string& log : Kept("a")) {
                calls.room -= std::min<std::uint64_t>(
                    calls.room, std::filesystem::file_size(state.Native(log)));
            }
        }
    };
    const std::string old(4000, 'o');
    for (const char* name : {"1", "2", "3", "4", "5"}) {
        WriteOld(name, old);
    }
    WriteOld("large", std::string(20000, 'o'));
    WriteOld("little", "old");
    share = 13900; // three such texts
    for (const char* name : {"1", "2", "3"}) {
        EXPECT_EQ(Put(name), "");
        writer.Settle();
    }
    EXPECT_EQ(Kept("a").size(), 3U);
    EXPECT_THAT(Put("large"), testing::HasSubstr("No space left on device"));
    writer.Settle();
    EXPECT_EQ(Kept("a").size(), 3U) << "given up for what could never fit";
    calls.FailAt(Calls::kWriteAt, calls.calls[Calls::kWriteAt] + 2, EFBIG);
    EXPECT_THAT(Put("little"), testing::HasSubstr("File too large"));
    writer.Settle();
    EXPECT_EQ(Kept("a").size(), 3U) << "given up, although there was room";
    EXPECT_EQ(DateOf("large"), kOldDate);

    EXPECT_EQ(Put("4"), "");
    EXPECT_EQ(Kept("a", "1.run"), Strings{}) << "the oldest goes first";
    EXPECT_EQ(Kept("a").size(), 3U);
    for (const char* name : {"1", "2", "3", "5"}) {
        EXPECT_EQ(Put(name, "newer"), "");
    }
    writer.Settle();
    WriteOld("2", old);
    share = 4600;
    for (const char* name : {"2", "4"}) {
        WriteOld(name, old);
        EXPECT_EQ(Put(name), "");
    }
    writer.Settle();
    EXPECT_EQ(Kept("a").size(), 1U);
    const std::optional<LastRun> last = RunUndo(calls, Logs()).FindLastRun();
    EXPECT_TRUE(last->isPartial && last->changed == 1);
    EXPECT_EQ(TakeBack(), Strings{});
    EXPECT_EQ(folder.Read("2"), "new");
    EXPECT_EQ(folder.Read("4"), old);
    EXPECT_TRUE(RunUndo(calls, Logs()).FindLastRun()->isPartial) << "it stays the last one";
    RunUndo(calls, Logs()).RemoveAllLogs();
    EXPECT_EQ(Kept("a"), Strings{});
}

TEST_F(LogsTest, HowLongRunsAreKept) {
    WriteOld("f", "old");
    WriteOld("g", kOld);
    const auto kept = [&] {
        std::string numbers;
        for (const std::string& name : Kept("a")) {
            numbers += name.substr(name.size() - 5, 1);
        }
        return numbers;
    };
    LeaveMixture({"g"});
    for (int run = 2; run <= 8; ++run) {
        EXPECT_EQ(Put("f", std::to_string(run)), "");
        writer.Settle();
    }
    EXPECT_EQ(kept(), "145678") << "five, and the one that waits";
    const auto makeOlder = [&](std::size_t log, std::int64_t days) {
        const std::string name = Kept("a").at(log);
        std::string bytes = state.Read(name);
        LogHeader header;
        std::memcpy(static_cast<void*>(&header), bytes.data(), sizeof header);
        header.begun -= days * 24 * 60 * 60 * 1'000'000'000;
        std::memcpy(bytes.data(), static_cast<const void*>(&header), sizeof header);
        header.checksum = ChecksumOf(bytes.substr(0, offsetof(LogHeader, checksum)));
        std::memcpy(bytes.data(), static_cast<const void*>(&header), sizeof header);
        state.Write(name, bytes);
    };
    makeOlder(0, 31);
    makeOlder(1, 31);
    makeOlder(2, 29);
    makeOlder(3, -10000);
    EXPECT_EQ(Recover(Answer::Later), 1U);
    EXPECT_EQ(kept(), "15678");
    EXPECT_EQ(Recover(Answer::Yes), 1U);
    RunUndo(calls, Logs()).RemoveAllLogs();
    EXPECT_EQ(kept(), "");
}

TEST_F(LogsTest, WithoutAWayBack) {
    WriteOld("f", "old");
    SafeWriter sets(calls, Logs(), UndoSupport::None);
    EXPECT_EQ(Safety::Put(calls, sets, "f", "new"), "");
    EXPECT_EQ(Safety::Put(calls, sets, "created", "new"), "");
    sets.Settle();
    EXPECT_EQ(Kept("a"), Strings{});
    for (const Write& write :
         {Write{"a file", "old text", "new"}, Write{"a new file", kNoFile, "new"}}) {
        for (int n = 1, finished = 0; finished == 0; ++n) {
            SCOPED_TRACE(write.name + (", killed at call " + std::to_string(n)));
            Prepare(write.old);
            finished = DoKilledAt(write, n, Event::KillHalf, UndoSupport::None) ? 1 : 0;
            Recover(Answer::Yes);
            EXPECT_TRUE(Content() == write.old || Content() == write.text);
            EXPECT_EQ(Kept("a"), Strings{}) << "there is nothing to take back";
        }
    }
}

TEST_F(LogsTest, LogsAreNoTargets) {
    folder.Write("f", "old");
    EXPECT_EQ(Put("f"), "");
    const std::string name = Kept("a").at(0);
    const std::string record = "VXMRUN\x1A and what follows"; // of another version
    state.Write("a/left", record);
    state.SetMode("a/left", 0600);
    for (const std::string& log : {name, "a/left"s}) {
        state.MakeLink("link", log);
        std::filesystem::create_hard_link(state.Native(log), state.Native("hard"));
        for (const std::string& path : {log, "link"s, "hard"s}) {
            EXPECT_THROW(writer.Begin(state.Path(path), nullptr), Failure) << path;
        }
        state.Remove("link");
        state.Remove("hard");
    }
    EXPECT_EQ(state.Read("a/left"), record);
}

} // namespace
} // namespace vexmarrow::test
