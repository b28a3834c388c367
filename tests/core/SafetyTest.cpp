// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Safety.h"

#include <csignal>
#include <sys/resource.h>

namespace vexmarrow::test {
namespace {

constexpr std::size_t kMegabyte = 1 << 20; // so much is held in memory
const std::string kLarge = [] {
    std::string text(kMegabyte + 100'000, 'x');
    for (std::size_t i = 0; i < text.size(); ++i) {
        text[i] = static_cast<char>('A' + i % 59);
    }
    return text;
}();

const std::string kDigits = "0123456789", kNews = "newnewnewnewnew";

const Write kWrites[] = {
    {.name = "shorter", .old = kDigits, .text = "new"},
    {.name = "equally long", .old = kDigits, .text = "newnewnewn"},
    {.name = "longer", .old = kDigits, .text = kNews, .readsItself = true},
    {.name = "emptied", .old = kDigits, .text = ""},
    {.name = "from nothing", .old = "", .text = "new"},
    {.name = "identical", .old = kDigits, .text = kDigits},
    {.name = "listed twice", .old = kDigits, .text = kNews, .readsItself = true, .first = "a"},
    {.name = "ending as it began", .old = kDigits, .text = kDigits, .first = kNews},
    {.name = "large, changed late",
     .old = kLarge,
     .text = kLarge.substr(0, kMegabyte + 50'000) + "differs",
     .readsItself = true},
    {.name = "large, listed twice",
     .old = kLarge,
     .text = kLarge.substr(3, 700'000) + kLarge,
     .readsItself = true,
     .first = kLarge.substr(7)},
    {.name = "large, only cut",
     .old = kLarge,
     .text = kLarge.substr(0, kMegabyte + 50'000),
     .readsItself = true},
    {.name = "large, only longer", .old = kLarge, .text = kLarge + "and more"},
    {.name = "from large to little", .old = kLarge, .text = "little"},
    {.name = "from little to large", .old = "little", .text = kLarge},
    {.name = "created", .old = kNoFile, .text = "newnew"},
    {.name = "created with a name", .old = kNoFile, .text = "newnew", .hasNamelessFiles = false},
    {.name = "created large, listed twice",
     .old = kNoFile,
     .text = kLarge,
     .first = "first",
     .hasNamelessFiles = false},
};

struct SafetyTest : Safety {
    /// What must hold once all is taken back.
    void ExpectOld(const Write& write, bool hasDate = true) const {
        EXPECT_TRUE(Content() == write.old) << Content().substr(0, 50);
        EXPECT_EQ(folder.Names(), write.old == kNoFile ? Strings{} : Strings{"f"});
        EXPECT_TRUE(write.old == kNoFile || !hasDate || DateOf("f") == kOldDate) << DateOf("f");
        EXPECT_EQ(Kept("a"), Strings{});
    }
    void ExpectWhole(const Write& write) const {
        const std::string content = Content();
        EXPECT_TRUE(content == write.old || content == write.first || content == write.text)
            << content.substr(0, 50);
        EXPECT_EQ(folder.Names(), content == kNoFile ? Strings{} : Strings{"f"});
    }

    /// Kills recovery (or the taking back that follows it) at every call, or makes that call fail;
    /// then both are done again. Returns the number of cases.
    int DisturbWhatFollows(const Write& write, bool recovery, int first,
                           const std::function<void()>& leave) {
        constexpr std::array kEvents{Event::Kill, Event::KillHalf, Event::Fail, Event::Full};
        const bool isLarge = write.old.size() + write.text.size() > 1000;
        const int step = isLarge ? 7 : 1;
        int cases = 0;
        for (int n = 1 + first % step, calls = n; n <= calls; n += step, ++cases) {
            const Event event =
                kEvents[static_cast<std::size_t>(n / step + first) % kEvents.size()];
            SCOPED_TRACE((recovery ? "recovery, call " : "taking back, call ") + std::to_string(n) +
                         ", event " + std::to_string(static_cast<int>(event)));
            leave();
            if (!recovery) {
                Recover(Answer::Yes);
            }
            bool hasDate = true; // which a system may refuse to set: then that is told
            const auto disturbed = [&] {
                FaultySystemCalls faulty;
                faulty.AtCall(n, event);
                Strings told;
                if (!recovery) {
                    told = TakeBack(faulty);
                } else if (Recover(faulty, Answer::Yes) > 0) {
                    told = {NativeName(prompts.boxes.back().text)};
                }
                hasDate = told.empty() || told[0].find("but not its old date") == told[0].npos;
                EXPECT_EQ(faulty.openFiles, 0);
                return faulty.allCalls >= n;
            };
            const bool isKill = event == Event::Kill || event == Event::KillHalf;
            calls = (isKill ? !InChildProcess(disturbed) : disturbed()) ? n + step : 0;
            EXPECT_LT(n, 300);
            Recover(Answer::Yes);
            ExpectWhole(write);
            TakeBack();
            ExpectOld(write, hasDate);
        }
        return cases;
    }
};

TEST_F(SafetyTest, KilledAtEverySystemCall) {
    int cases = 0;
    for (const Write& write : kWrites) {
        const int step = write.old.size() + write.text.size() > 1000 ? 2 : 1;
        std::set<std::string> seen; // states of file and log
        int asked = 0;
        for (const Event event : {Event::Kill, Event::KillHalf}) {
            bool finished = false;
            for (int n = event == Event::Kill ? 1 : step; !finished && !HasFailure();
                 n += step, ++cases) {
                SCOPED_TRACE(write.name + (", killed at call " + std::to_string(n)));
                ASSERT_LT(n, 300);
                const auto leave = [&] {
                    Prepare(write.old);
                    finished = DoKilledAt(write, n, event);
                };
                leave();
                const std::string before = Content();
                const std::int64_t date = before == kNoFile ? 0 : DateOf("f");
                const Strings logs = Kept("a");
                const std::string key = before + (logs.empty() ? "" : "|" + StatesIn(logs[0]));

                const std::size_t boxes = Recover(Answer::Later);
                ASSERT_LE(boxes, finished ? 0U : 1U);
                EXPECT_TRUE(Content() == before);
                EXPECT_TRUE(boxes == 0 || DateOf("f") == date);
                EXPECT_EQ(Recover(Answer::Later), boxes);
                EXPECT_EQ(Recover(Answer::Yes), boxes);
                ExpectWhole(write);
                EXPECT_TRUE(boxes == 0 || Content() == write.old || Content() == write.first);
                const Strings found = Kept("a/kept", "-found-f");
                ASSERT_EQ(found.size(), before.empty() ? 0U : boxes);
                EXPECT_TRUE(found.empty() || state.Read(found[0]) == before);
                EXPECT_EQ(TakeBack(), Strings{});
                ExpectOld(write);

                if (boxes > 0) {
                    ++asked;
                    leave();
                    EXPECT_EQ(Recover(Answer::No), 2U); // and told where the old text is
                    EXPECT_TRUE(Content() == before);
                    const Strings old = Kept("a/kept", "-old-f");
                    ASSERT_EQ(old.size(), 1U);
                    EXPECT_TRUE(state.Read(old[0]) == write.old ||
                                state.Read(old[0]) == write.first);
                    EXPECT_EQ(Recover(Answer::Yes), 0U);
                }
                if (seen.insert(key).second) {
                    const bool last = finished;
                    for (const bool recovery : {true, false}) {
                        cases += DisturbWhatFollows(write, recovery, n, leave);
                    }
                    finished = last;
                }
            }
        }
        // A mere cut is done at once.
        const bool isChange = write.old != kNoFile && !write.old.starts_with(write.text);
        EXPECT_TRUE(HasFailure() || (asked > 0) == (isChange || write.first != kNoFile))
            << "whether a kill fell into the overwriting";
    }
    EXPECT_GT(cases, 2000);
    RecordProperty("cases", cases);
}

TEST_F(SafetyTest, EveryCallFailingOrDoingLessThanAsked) {
    for (const Write& write : kWrites) {
        const bool isLarge = write.old.size() + write.text.size() > 1000;
        for (const Event event : {Event::Fail, Event::Full, Event::Short, Event::Gone}) {
            for (int n = isLarge ? static_cast<int>(event) : 1, calls = n;
                 n <= calls && !HasFailure(); n += isLarge ? 4 : 1) {
                SCOPED_TRACE(write.name + (", event " + std::to_string(static_cast<int>(event))) +
                             " at call " + std::to_string(n));
                Prepare(write.old);
                WriteOld("g", "old");
                std::string failure, later;
                {
                    FaultySystemCalls faulty;
                    faulty.mostAtOnce = isLarge ? faulty.mostAtOnce : 7;
                    faulty.AtCall(n, event);
                    SafeWriter writer(faulty, Logs());
                    failure = Do(write, faulty, writer);
                    later = Put(faulty, writer, "g", "new");
                    writer.Settle();
                    calls = faulty.allCalls;
                    EXPECT_EQ(faulty.openFiles, 0);
                }
                const bool waits = failure.find("It is only partly written") != std::string::npos;
                if (failure.empty()) {
                    EXPECT_TRUE(Content() == write.text);
                } else {
                    EXPECT_NE(event, Event::Short);
                    EXPECT_THAT(failure, testing::HasSubstr("\"" + folder.Native("f") + "\": "));
                    // A file whose state could not be written is not written a second time.
                    EXPECT_TRUE(!waits || event == Event::Gone || write.first != kNoFile)
                        << failure;
                    if (!waits && write.first == kNoFile) {
                        EXPECT_TRUE(Content() == write.old) << failure;
                        // A disk that is gone gives no date back either.
                        EXPECT_TRUE(write.old == kNoFile || event == Event::Gone ||
                                    DateOf("f") == kOldDate)
                            << failure;
                    }
                }
                // Files of the same run go on.
                EXPECT_TRUE(event == Event::Gone || failure.empty() || later.empty()) << later;
                if (later.find("It is only partly written") == later.npos) {
                    EXPECT_EQ(folder.Read("g"), later.empty() ? "new" : "old");
                }
                const std::size_t boxes = Recover(Answer::Yes);
                EXPECT_LE(boxes, event == Event::Gone ? 2U : 0U);
                FaultySystemCalls whole;
                if (const auto last = RunUndo(whole, Logs()).FindLastRun();
                    last && last->isPartial) {
                    EXPECT_EQ(event, Event::Full); // the log has lost f to make room for g
                    continue;
                }
                EXPECT_EQ(TakeBack(), Strings{});
                EXPECT_EQ(folder.Read("g"), "old");
                EXPECT_EQ(DateOf("g"), kOldDate);
                folder.Remove("g");
                ExpectOld(write);
            }
        }
    }
}

TEST_F(SafetyTest, AFileThatWaitsIsNeitherWrittenNorReadMeanwhile) {
    WriteOld("f", kDigits);
    FaultySystemCalls calls;
    calls.mostAtOnce = 4;
    SafeWriter writer(calls, Logs());
    calls.beforeCall = [&, writes = 0](Calls::Kind kind) mutable {
        if (kind == Calls::kWriteAt && Content() == "newn456789" && writes++ == 0) {
            calls.AtCall(calls.allCalls + 1, Event::Gone);
        }
    };
    EXPECT_THAT(Put(calls, writer, "f", "newnewnewn"),
                testing::HasSubstr("It is only partly written"));
    calls.beforeCall = nullptr;
    calls.AtCall(0, Event::Kill);
    const std::string mixture = Content();
    EXPECT_EQ(mixture, "newn456789");

    for (const bool restarted : {false, true}) {
        if (restarted) {
            writer.Settle();
            EXPECT_EQ(Recover(Answer::Later), 1U);
        }
        std::filesystem::create_hard_link(folder.Native("f"), folder.Native("hard"));
        folder.MakeLink("link", "f");
        folder.MakeFolder("out");
        RFTSFSO textio{calls, flags, ansi};
        ReplaceText engine(textio, writer, prompts);
        // Nor may another file be made from it; files that have nothing to do with it may.
        for (const char* name : {"f", "hard", "link"}) {
            for (const bool inPlace : {false, true}) {
                prompts.boxes.clear();
                engine.ReplaceTextInFile(
                    folder.Path(name), u"n", u"m",
                    {inPlace ? OutputLocation::BesideInput : OutputLocation::OneFolder,
                     folder.Path("out")},
                    1);
                ASSERT_EQ(prompts.boxes.size(), 1U) << name;
                EXPECT_THAT(NativeName(prompts.boxes[0].text),
                            testing::HasSubstr("It is only partly written"));
            }
        }
        EXPECT_EQ(folder.Names("out"), Strings{});
        EXPECT_EQ(Content(), mixture);
        folder.Write("g", "old");
        engine.ReplaceTextInFile(folder.Path("g"), u"old", u"new", kInPlace, 2);
        EXPECT_EQ(folder.Read("g"), "new");
        for (const char* name : {"hard", "link", "out"}) {
            folder.Remove(name);
        }
    }
    writer.Settle();
    EXPECT_EQ(Recover(Answer::Yes), 1U);
    EXPECT_EQ(Content(), kDigits);
    EXPECT_EQ(DateOf("f"), kOldDate);
}

TEST_F(SafetyTest, ALimitOnTheSizeOfFiles) {
    const std::string tooLarge(9000, 'n');
    const Write writes[] = {
        {.name = "an existing file", .old = kDigits, .text = tooLarge},
        {.name = "a new file", .old = kNoFile, .text = tooLarge},
        {.name = "a large result", .old = kDigits, .text = kLarge},
        {.name = "an old text for the log", .old = std::string(9000, 'o'), .text = "new"},
    };
    for (const Write& write : writes) {
        SCOPED_TRACE(write.name);
        Prepare(write.old);
        WriteOld("g", "old");
        FaultySystemCalls calls;
        SafeWriter writer(calls, Logs());
        EXPECT_EQ(Put(calls, writer, "g", "new"), "");
        writer.Settle();
        EXPECT_TRUE(InChildProcess([&] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{8192, 8192};
            if (::setrlimit(RLIMIT_FSIZE, &limit) != 0 ||
                Do(write, calls).find("File too large") == std::string::npos) {
                throw Failure(u"it was written");
            }
        }));
        EXPECT_TRUE(Content() == write.old);
        EXPECT_EQ(Recover(Answer::Yes), 0U);
        EXPECT_EQ(TakeBack(), Strings{});
        EXPECT_EQ(folder.Read("g"), "old") << "the log of its run was given up in vain";
    }
}

} // namespace
} // namespace vexmarrow::test
