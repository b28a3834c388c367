// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Safety.h"
#include "journal/JournalFile.h"
#include "journal/JournalFolders.h"
#include "journal/JournalRecord.h"

#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vexmarrow::test {
namespace {

using namespace std::chrono_literals;

const Write kWrite{"0123456789", "newnewnewnewnew"};
const std::string kMixture = "0123456789ewnew"; // with what lies past the old end in it

struct RecoveryTest : Safety {
    void SetUp() override { LeaveRecord(); }

    /// A program is killed in the middle of the file; returns the name of its journal.
    std::string LeaveRecord(mode_t mode = 0644) const {
        Prepare(kWrite);
        EXPECT_EQ(::chmod(folder.Native("f").c_str(), mode), 0);
        EXPECT_FALSE(InChildProcess([&] {
            FaultySystemCalls calls;
            calls.KillAt(Calls::kWriteAt, 3);
            Do(kWrite, calls);
        }));
        EXPECT_EQ(Content(), kMixture);
        return Kept("a", "journal-").at(0);
    }
    void WriteRecord(const std::string& name, const JournalRecord& record) const {
        state.Write(name, EncodeHeader(record) + "payload");
        ::chmod(state.Native(name).c_str(), 0600);
    }
};

// What has become of the file since; what the user sees (Q: the question, T: a message), what the
// file holds after a Yes, and what was kept.
TEST_F(RecoveryTest, WhatHasBecomeOfTheFileSince) {
    const std::string path = folder.Native("f");
    const struct {
        const char* what;
        std::function<void()> happens;
        std::string boxes, content, keptOld, keptNew;
    } rows[] = {
        {"nothing", [] {}, "Q", kWrite.text, Content(), "-"},
        {"edited", [&] { folder.Write("f", "edited"); }, "Q", kWrite.text, "edited", "-"},
        {"emptied", [&] { folder.Write("f", ""); }, "Q", kWrite.text, "-", "-"},
        {"completed by hand", [&] { folder.Write("f", kWrite.text); }, "", kWrite.text, "-", "-"},
        {"renamed", [&] { ::rename(path.c_str(), folder.Native("g").c_str()); }, "T", "-", "-",
         kWrite.text},
        {"removed", [&] { folder.Remove("f"); }, "T", "-", "-", kWrite.text},
        {"replaced",
         [&] {
             folder.Write("g", "other");
             ::rename(folder.Native("g").c_str(), path.c_str());
         },
         "T", "other", "-", kWrite.text},
        {"a pipe",
         [&] {
             folder.Remove("f");
             ::mkfifo(path.c_str(), 0666);
         },
         "T", "?", "-", kWrite.text},
        {"a folder",
         [&] {
             folder.Remove("f");
             folder.MakeFolder("f");
         },
         "T", "?", "-", kWrite.text},
        {"nothing, but by way of a link",
         [&] {
             ::rename(path.c_str(), folder.Native("g").c_str());
             folder.MakeLink("f", "g");
         },
         "Q", kWrite.text, Content(), "-"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        LeaveRecord();
        row.happens();
        Recover(Answer::Yes);
        std::string boxes;
        for (const Box& box : prompts.boxes) {
            boxes += box.style == BoxStyle::Question ? "Q" : "T";
            EXPECT_THAT(NativeName(box.text), testing::HasSubstr(path));
        }
        EXPECT_EQ(boxes, row.boxes);
        if (row.content != "?") {
            EXPECT_EQ(Content(), row.content);
        }
        const auto kept = [&](const std::string& kind) {
            const Strings names = Kept("a/kept", kind);
            return names.empty() ? "-" : state.Read(names[0]);
        };
        EXPECT_EQ(kept("-old-"), row.keptOld);
        EXPECT_EQ(kept("-new-"), row.keptNew);
        EXPECT_EQ(Recover(Answer::Yes), 0U) << "told twice";
        EXPECT_EQ(Kept("a"), Strings{});
    }
}

TEST_F(RecoveryTest, RightsThatWereTakenAwaySinceStayAway) {
    for (const bool lost : {false, true}) { // by the writing, when it was killed
        LeaveRecord(06755);
        ASSERT_EQ(::chmod(folder.Native("f").c_str(), lost ? 0755 : 0600), 0);
        EXPECT_EQ(Recover(Answer::Yes), 1U);
        EXPECT_EQ(folder.ModeOf("f"), lost ? 06755U : 0600U);
    }
}

TEST_F(RecoveryTest, ManyMoreThanAProcessMayHaveOpen) {
    for (int i = 0; i < 40; ++i) {
        folder.Write("g" + std::to_string(i), kWrite.old);
        InChildProcess([&] {
            FaultySystemCalls calls;
            calls.KillAt(Calls::kWriteAt, 3);
            JournaledWriter writer(calls, Journals());
            const auto file =
                writer.Begin(folder.Path("g" + std::to_string(i)), WriteStart::Replace, nullptr);
            file->Append(kWrite.text);
            file->Commit();
        });
    }
    EXPECT_TRUE(InChildProcess([&] {
        const rlimit limit{30, 30};
        if (::setrlimit(RLIMIT_NOFILE, &limit) != 0 || Recover(Answer::Yes) != 41) {
            throw Failure(u"not all were asked about");
        }
    }));
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(folder.Read("g" + std::to_string(i)), kWrite.text);
    }
}

TEST_F(RecoveryTest, ADamagedRecordChangesNoFileAndIsNotLost) {
    const std::string whole = state.Read(LeaveRecord());
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const bool cut : {false, true}) {
            SCOPED_TRACE((cut ? "cut at " : "damaged at ") + std::to_string(at));
            const std::string name = LeaveRecord();
            std::string bytes = cut ? whole.substr(0, at) : state.Read(name);
            if (!cut) {
                bytes[at] = static_cast<char>(bytes[at] ^ 0x20);
            }
            state.Write(name, bytes);
            const std::string before = Content();
            const std::size_t boxes = Recover(Answer::Yes);
            for (const Box& box : prompts.boxes) {
                EXPECT_EQ(box.style, BoxStyle::Exclamation);
            }
            EXPECT_EQ(Content(), before);
            const Strings kept = Kept("a/kept", "damaged-");
            if (cut && at == 0) {
                EXPECT_EQ(boxes + kept.size() + Kept("a").size(), 0U); // there was nothing in it
            } else if (kept.empty()) {
                EXPECT_EQ(boxes, 0U); // of a later version: its own program knows what to do
                EXPECT_EQ(state.Read(name), bytes);
            } else {
                EXPECT_EQ(boxes, 1U);
                EXPECT_EQ(state.Read(kept[0]), bytes);
            }
        }
    }
}

TEST_F(RecoveryTest, OnlyItsOwnJournals) {
    const std::string name = "a/journal-" + std::string(32, '0');
    folder.Write("victim", "untouched");
    FileStatus victim;
    SystemCalls calls;
    ASSERT_EQ(calls.StatusOfName(folder.Native("victim"), victim), 0);
    JournalRecord record;
    record.machine = NameOfMachine();
    record.path = folder.Native("victim");
    record.target = victim;
    record.payloadSize = 7;
    record.payloadChecksum = ChecksumOf("payload");
    const auto with = [&](auto change) {
        JournalRecord changed = record;
        change(changed);
        return changed;
    };
    // Each leaves something under the name of a journal; whether it is still there afterwards.
    const struct {
        const char* what;
        std::function<void()> happens;
        bool stays;
    } rows[] = {
        {"another machine's", [&] { WriteRecord(name, with([](auto& r) { r.machine += "x"; })); },
         true},
        {"open to others",
         [&] {
             WriteRecord(name, record);
             ::chmod(state.Native(name).c_str(), 0644);
         },
         true},
        {"with a second name",
         [&] {
             WriteRecord(name, record);
             std::filesystem::create_hard_link(state.Native(name), state.Native("a/second"));
         },
         true},
        {"a link",
         [&] {
             WriteRecord("a/else", record);
             state.MakeLink(name, "else");
         },
         true},
        {"a pipe", [&] { ::mkfifo(state.Native(name).c_str(), 0600); }, true},
        {"a folder", [&] { state.MakeFolder(name); }, true},
        {"of another name", [&] { WriteRecord("a/journal-0", record); }, false},
        {"for another file number",
         [&] { WriteRecord(name, with([](auto& r) { ++r.target.inode; })); }, false},
        {"for a file of another birth",
         [&] { WriteRecord(name, with([](auto& r) { ++r.target.born; })); }, false},
        {"for a passing file that is none",
         [&] { WriteRecord(name, with([](auto& r) { r.kind = RecordKind::Creation; })); }, false},
        {"of a kind that there is not",
         [&] { WriteRecord(name, with([](auto& r) { r.kind = static_cast<RecordKind>(3); })); },
         false},
        {"empty",
         [&] {
             state.Write(name, "");
             ::chmod(state.Native(name).c_str(), 0600);
         },
         false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        state.Remove("a");
        state.MakeFolder("a");
        row.happens();
        Recover(Answer::Yes);
        for (const Box& box : prompts.boxes) {
            EXPECT_NE(box.style, BoxStyle::Question);
        }
        EXPECT_EQ(folder.Read("victim"), "untouched");
        EXPECT_EQ(state.Exists(name), row.stays);
    }
    WriteRecord(name, record); // the same, with nothing wrong in it, is acted upon
    EXPECT_EQ(Recover(Answer::Yes), 1U);
    EXPECT_EQ(folder.Read("victim"), "payload");
}

TEST_F(RecoveryTest, WhatCannotBeDoneNowIsToldAndWaits) {
    const std::string path = folder.Native("f");
    const std::string before = Content();
    const auto waits = [&](FaultySystemCalls& calls, const char* reason) {
        prompts.boxes.clear();
        Recover(calls, Answer::Yes);
        ASSERT_EQ(prompts.boxes.size(), 2U);
        EXPECT_THAT(NativeName(prompts.boxes[1].text), testing::HasSubstr(reason));
        EXPECT_EQ(Content(), before);
        EXPECT_EQ(Kept("a", "journal-").size(), 1U);
    };
    {
        FaultySystemCalls calls;
        const int other = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        ASSERT_EQ(::flock(other, LOCK_EX), 0);
        waits(calls, "locked by another program");
        ::close(other);
    }
    {
        FaultySystemCalls calls;
        calls.folderErrors = {{state.Native("a/kept"), ENOSPC}, {state.Native("b"), EACCES}};
        waits(calls, "Permission denied");
    }
    {
        FaultySystemCalls calls; // what the user was asked about must be what is overwritten
        prompts.whenShown = [&](const Box& box) {
            if (box.style == BoxStyle::Question) {
                const auto later = std::filesystem::file_time_type::clock::now() + 1h;
                std::filesystem::last_write_time(path, later);
            }
        };
        waits(calls, "changed it meanwhile");
        prompts.whenShown = nullptr;
    }
    { // the journal of a program that is alive
        SystemCalls calls;
        const auto held = JournalFile::TakeOver(calls, state.Native(Kept("a", "journal-").at(0)));
        ASSERT_TRUE(held);
        EXPECT_EQ(Recover(Answer::Yes), 0U);
    }
    { // what waits is a mixture, and no program of ours uses it
        FaultySystemCalls calls;
        EXPECT_THAT(Do(kWrite, calls), testing::HasSubstr("will be completed at the next start"));
        EXPECT_EQ(Content(), before);
    }
    EXPECT_EQ(Recover(Answer::Yes), 1U);
    EXPECT_EQ(Content(), kWrite.text);
}

} // namespace
} // namespace vexmarrow::test
