// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Safety.h"

#include <csignal>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vexmarrow::test {
namespace {

/// More than the journal keeps in memory.
const std::string kLarge = [] {
    std::string text(1300000, 'x');
    for (std::size_t i = 0; i < text.size(); ++i) {
        text[i] = static_cast<char>('A' + i % 59);
    }
    return text;
}();

const Write kWrites[] = {
    {"0123456789", "new"},                     // shorter
    {"0123456789", "newnewnewn"},              // equally long
    {"0123456789", "newnewnewnewnew"},         // longer
    {"0123456789", ""},                        // empty
    {"0123456789", "new", WriteStart::Append}, //
    {kLarge.substr(1), kLarge + "end"},        // the payload leaves memory early
    {"0123456789", "newnewnewnewnew", WriteStart::Replace, true, true},
    {"-", "newnew"},                             // created
    {"-", "newnew", WriteStart::Replace, false}, // where every file has a name
    {"-", kLarge, WriteStart::Replace, false},   //
};

struct SafetyTest : Safety {
    /// What must hold once the next start is over, `before` being what the file held before it.
    void ExpectWhole(const Write& write, const std::string& before) const {
        const std::string content = Content();
        EXPECT_TRUE(content == write.Result() || content == write.old) << content.substr(0, 50);
        EXPECT_TRUE(before == write.old || content == write.Result());
        EXPECT_EQ(folder.Names(), content == "-" ? Strings{} : Strings{"f"});
        for (const std::string& name : Kept("a")) {
            ADD_FAILURE() << name << " was left behind";
        }
    }

    void KillRecoveryEverywhere(const Write& write, int killAt, Event event) {
        for (int n = 1; n < 200; ++n) {
            SCOPED_TRACE("recovery killed at call " + std::to_string(n));
            Prepare(write);
            EXPECT_FALSE(InChildProcess([&] { WriteKilledAt(write, killAt, event); }));
            const std::string before = Content();
            const bool finished = InChildProcess([&] {
                FaultySystemCalls calls;
                calls.AtCall(n, Event::KillHalf);
                Recover(calls, Answer::Yes);
            });
            Recover(Answer::Yes);
            ExpectWhole(write, before);
            if (finished) {
                return;
            }
        }
        ADD_FAILURE() << "there is no end to the calls";
    }

    /// Makes each call of a recovery fail once: the start after that has a clear run.
    void FailRecoveryEverywhere(const Write& write, int killAt) {
        for (int n = 1, calls = 1; n <= calls; ++n) {
            SCOPED_TRACE("recovery failing at call " + std::to_string(n));
            Prepare(write);
            InChildProcess([&] { WriteKilledAt(write, killAt, Event::Kill); });
            const std::string before = Content();
            {
                FaultySystemCalls faulty;
                faulty.AtCall(n, Event::Fail);
                Recover(faulty, Answer::Yes);
                EXPECT_EQ(faulty.openFiles, 0);
                calls = faulty.allCalls;
            }
            Recover(Answer::Yes);
            ExpectWhole(write, before);
        }
    }

    void WriteKilledAt(const Write& write, int n, Event event) const {
        FaultySystemCalls calls;
        calls.AtCall(n, event);
        Do(write, calls);
    }
};

TEST_F(SafetyTest, KilledAtEverySystemCall) {
    for (const Write& write : kWrites) {
        for (const Event event : {Event::Kill, Event::KillHalf}) {
            int asked = 0;
            bool finished = false;
            for (int n = 1; !finished; ++n) {
                SCOPED_TRACE(write.old.substr(0, 20) + " to " + write.Result().substr(0, 20) +
                             ", killed at call " + std::to_string(n));
                ASSERT_LT(n, 200);
                Prepare(write);
                finished = InChildProcess([&] { WriteKilledAt(write, n, event); });
                const std::string before = Content();
                if (!finished && event == Event::Kill && write.text.size() < 100) {
                    FailRecoveryEverywhere(write, n);
                    Prepare(write);
                    InChildProcess([&] { WriteKilledAt(write, n, event); });
                }
                const std::size_t boxes = Recover(Answer::Yes);
                ExpectWhole(write, before);
                ASSERT_LE(boxes, 1U);
                if (boxes == 1 && prompts.boxes[0].style != BoxStyle::Question) {
                    // Half a header: nobody can know that the file was not touched yet.
                    EXPECT_EQ(event, Event::KillHalf);
                    EXPECT_TRUE(before == write.old);
                    EXPECT_EQ(Kept("a/kept", "damaged").size(), 1U);
                } else if (boxes == 1) {
                    ++asked;
                    EXPECT_EQ(Content(), write.Result());
                    const Strings kept = Kept("a/kept", "-old-f");
                    ASSERT_EQ(kept.size(), before.empty() ? 0U : 1U);
                    EXPECT_TRUE(kept.empty() || state.Read(kept[0]) == before);

                    // The same once more, answered with No.
                    Prepare(write);
                    InChildProcess([&] { WriteKilledAt(write, n, event); });
                    EXPECT_EQ(Recover(Answer::No), 2U); // and told where the text is
                    EXPECT_TRUE(Content() == before);
                    const Strings texts = Kept("a/kept", "-new-f");
                    ASSERT_EQ(texts.size(), 1U);
                    EXPECT_TRUE(state.Read(texts[0]) == write.text);
                    EXPECT_EQ(Recover(Answer::Yes), 0U);
                    if (write.text.size() < 100) {
                        KillRecoveryEverywhere(write, n, event);
                    }
                }
            }
            EXPECT_EQ(Content(), write.Result());
            EXPECT_EQ(asked > 0, write.old != "-") << "no kill fell into the overwriting";
        }
    }
}

TEST_F(SafetyTest, EveryCallFailingOrDoingLessThanAsked) {
    for (const Write& write : kWrites) {
        for (const Event event : {Event::Fail, Event::Full, Event::Short}) {
            for (int n = 1, calls = 1; n <= calls; ++n) {
                SCOPED_TRACE(write.old.substr(0, 20) + " to " + write.Result().substr(0, 20) +
                             ", event " + std::to_string(static_cast<int>(event)) + " at call " +
                             std::to_string(n));
                Prepare(write);
                std::string failure;
                {
                    FaultySystemCalls faulty;
                    faulty.AtCall(n, event);
                    failure = Do(write, faulty);
                    calls = faulty.allCalls;
                    EXPECT_EQ(faulty.openFiles, 0);
                }
                const std::string before = Content();
                if (failure.empty()) {
                    EXPECT_EQ(before, write.Result());
                } else {
                    EXPECT_NE(event, Event::Short);
                    EXPECT_THAT(failure, testing::HasSubstr("\"" + folder.Native("f") + "\": "));
                    const bool waits = failure.find("at the next start") != std::string::npos;
                    EXPECT_EQ(waits, !Kept("a", "journal-").empty()) << failure;
                    EXPECT_TRUE(waits || before == write.old) << failure;
                    // A disk can be full in the middle of a file only where each write takes room.
                    EXPECT_TRUE(!waits || event == Event::Fail || before != write.old);
                }
                EXPECT_EQ(Kept("b"), Strings{});
                const std::size_t boxes = Recover(Answer::Yes);
                ExpectWhole(write, before);
                EXPECT_TRUE(boxes == 0 || Content() == write.Result());
            }
        }
    }
}

TEST_F(SafetyTest, AFileThatWaitsIsNeitherWrittenNorReadMeanwhile) {
    const Write write{"0123456789", "newnewnewn"};
    for (int n = 1;; ++n) {
        ASSERT_LT(n, 200);
        Prepare(write);
        FaultySystemCalls calls;
        calls.mostAtOnce = 4;
        calls.AtCall(n, Event::Fail);
        JournaledWriter writer(calls, Journals());
        Do(write, writer);
        if (Content() == write.old || Content() == write.Result()) {
            continue;
        }
        const std::string mixture = Content();
        EXPECT_THAT(Do(write, writer), testing::HasSubstr("will be completed at the next start"));
        EXPECT_EQ(Content(), mixture);

        // Nor may another file be made from it; files that have nothing to do with it may.
        RFTSFSO textio{calls, flags, ansi};
        ReplaceText engine(textio, writer, prompts);
        folder.MakeFolder("out");
        engine.ReplaceTextInFile(folder.Path("f"), u"n", u"m", {true, false, folder.Path("out")},
                                 1);
        EXPECT_THAT(NativeName(prompts.boxes.back().text),
                    testing::HasSubstr("will be completed at the next start"));
        EXPECT_EQ(folder.Names("out"), Strings{});
        folder.Write("g", "old");
        engine.ReplaceTextInFile(folder.Path("g"), u"old", u"new", {false, true, u""}, 2);
        EXPECT_EQ(folder.Read("g"), "new");
        break;
    }
    EXPECT_EQ(Recover(Answer::Yes), 1U);
    EXPECT_EQ(Content(), write.Result());
}

// As no test with prepared faults can do it: a real process that overwrites real files, killed at
// whatever point it has come to.
TEST_F(SafetyTest, KilledAThousandTimesAtRandomMoments) {
    constexpr std::size_t kFiles = 12;
    // Each version of a file is one letter, as often as the letter tells.
    const auto version = [](std::size_t file, std::size_t round) {
        const auto letter = static_cast<char>('a' + round % 20);
        const std::size_t unit = file == 0 ? 60000 : 100 + 900 * file;
        return std::string(unit * (1 + round * 7 % 20), letter);
    };
    const auto isVersion = [&](std::size_t file, const std::string& bytes) {
        return !bytes.empty() && bytes == version(file, static_cast<std::size_t>(bytes[0] - 'a'));
    };
    for (std::size_t file = 0; file < kFiles; ++file) {
        folder.Write(std::to_string(file), version(file, 0));
    }
    std::mt19937 random(4); // NOLINT(cert-msc51-cpp): the moments differ all the same
    std::size_t questions = 0, mixtures = 0;
    for (int kill = 0; kill < 1000; ++kill) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            SystemCalls calls;
            JournaledWriter writer(calls, Journals());
            for (std::size_t round = random();; ++round) {
                for (std::size_t file = 0; file < kFiles; ++file) {
                    const auto pending =
                        writer.Begin(folder.Path(std::to_string(file)), WriteStart::Replace, {});
                    pending->Append(version(file, round));
                    pending->Commit();
                }
            }
        }
        ::usleep(static_cast<useconds_t>(500 + random() % 3000));
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "it ended by itself";
        for (std::size_t file = 0; file < kFiles; ++file) {
            mixtures += isVersion(file, folder.Read(std::to_string(file))) ? 0 : 1;
        }
        questions += Recover(Answer::Yes);
        for (std::size_t file = 0; file < kFiles; ++file) {
            ASSERT_TRUE(isVersion(file, folder.Read(std::to_string(file)))) << "kill " << kill;
        }
        ASSERT_EQ(folder.Names().size(), kFiles);
        state.Remove("a/kept");
    }
    EXPECT_EQ(Kept("a"), Strings{});
    RecordProperty("mixtures", std::to_string(mixtures));
    RecordProperty("questions", std::to_string(questions));
}

TEST_F(SafetyTest, ALimitOnTheSizeOfFiles) {
    for (const Write& write : {Write{"0123456789", std::string(9000, 'n')},
                               Write{"-", std::string(9000, 'n')}, Write{"0123456789", kLarge}}) {
        Prepare(write);
        EXPECT_TRUE(InChildProcess([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{8192, 8192};
            FaultySystemCalls calls;
            if (::setrlimit(RLIMIT_FSIZE, &limit) != 0 ||
                Do(write, calls).find("File too large") == std::string::npos) {
                throw Failure(u"it was written");
            }
        }));
        EXPECT_EQ(Content(), write.old);
        EXPECT_EQ(Recover(Answer::Yes), 0U);
    }
}

} // namespace
} // namespace vexmarrow::test
