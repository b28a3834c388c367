// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Core.h"
#include "run/UndoOperations.h"
#include "safety/Clock.h"
#include "safety/KeptCopies.h"
#include "safety/LogFolders.h"
#include "safety/Recovery.h"
#include "shell/Trap.h"

#include <fcntl.h>
#include <sys/file.h>

namespace vexmarrow::test {
namespace {

const std::string kAsTheyAre = " Files that have been changed since then will stay as they are.";
const std::string kForget = "Delete the old texts that are kept for undoing the last runs? These "
                            "runs can then no longer be "
                            "undone.";
const std::string kStillKept = "Some old texts are still kept, because another program is using "
                               "them or an interrupted file may still need them.";

/// Names and texts, in the order in which they are written.
using Files = std::vector<std::pair<std::string, std::string>>;

struct UndoTest : Core {
    const Strings logs{state.Native("first"), state.Native("second")};
    Recovery recovery{calls, logs, prompts};
    UndoOperations undo{calls, logs, recovery, desktop};

    void Run(const Files& results) {
        for (const auto& [name, text] : results) {
            const auto pending = writer.Begin(folder.Path(name), nullptr);
            pending->Append(text);
            pending->Seal();
            pending->Commit();
        }
        writer.Settle();
        undo.Refresh();
    }

    /// A text with "T" for the time and without the name of the folder.
    std::string Plain(std::string text) const {
        const std::string name = folder.Native() + "/";
        for (std::size_t at; (at = text.find(name)) != std::string::npos;) {
            text.erase(at, name.size());
        }
        const std::size_t length = LocalTime(0).size(); // of "2026-..."
        for (std::size_t at; (at = text.find("run of 2")) != std::string::npos;) {
            text.replace(text.find('2', at), length, "T");
        }
        return text;
    }
    std::string Plain(const std::u16string& text) const { return Plain(NativeName(text)); }

    /// The boxes since the last call.
    Strings Boxes() {
        Strings boxes = prompts.TakeSummaries();
        std::transform(boxes.begin(), boxes.end(), boxes.begin(),
                       [&](const std::string& box) { return Plain(box); });
        return boxes;
    }

    /// All files, by name.
    Files Tree() const {
        Files files;
        for (const std::string& name : folder.Names()) {
            files.emplace_back(name, folder.Read(name));
        }
        return files;
    }
};

TEST_F(UndoTest, AsksAndTellsWhatWasLeftAlone) {
    const std::string gone = "(gone)", aFolder = "(a folder)";
    const struct {
        const char* name;
        Files before, results, changes; // the last after the run
        std::string asked, told;
        Files after;
        bool waits = false; // for a file to come back
    } rows[] = {
        {"a file",
         {{"a", "1"}},
         {{"a", "2"}},
         {},
         "1 file will get its old text and date back",
         "",
         {{"a", "1"}}},
        {"a new file", {}, {{"a", "2"}}, {}, "1 new file will be removed", "", {}},
        {"several of both",
         {{"a", "1"}, {"b", "1"}, {"same", "1"}},
         {{"a", "2"}, {"b", "2"}, {"same", "1"}, {"c", "2"}, {"d", "2"}},
         {},
         "2 files will get their old text and date back, 2 new files will be removed",
         "",
         {{"a", "1"}, {"b", "1"}, {"same", "1"}}},
        {"written twice, one edited",
         {{"a", "1"}, {"b", "1"}},
         {{"a", "2"}, {"b", "2"}, {"a", "3"}, {"n", "2"}, {"n", "3"}},
         {{"a", "4"}},
         "2 files will get their old text and date back, 1 new file will be removed",
         "\r\n\r\na\r\nIt was changed after the run.",
         {{"a", "4"}, {"b", "1"}}},
        {"gone, edited, replaced",
         {{"a", "1"}, {"b", "1"}},
         {{"a", "2"}, {"b", "2"}, {"c", "2"}},
         {{"a", gone}, {"b", "x"}, {"c", aFolder}},
         "2 files will get their old text and date back, 1 new file will be removed",
         "\r\n\r\nc\r\nIt is no longer a regular file.\r\n\r\nb\r\nIt was changed after the run."
         "\r\n\r\na\r\n"
         "It is missing.",
         {{"b", "x"}},
         true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        for (const auto& [name, text] : row.before) {
            folder.Write(name, text);
        }
        Run(row.results);
        EXPECT_TRUE(undo.IsPossible());
        for (const auto& [name, text] : row.changes) {
            folder.Remove(name);
            text == aFolder ? folder.MakeFolder(name)
            : text == gone  ? void()
                            : folder.Write(name, text);
        }
        prompts.answers = {Answer::Yes};
        undo.Start();
        const bool whole = row.told.empty();
        EXPECT_EQ(Boxes(), (Strings{"Undo the run of T? " + row.asked + "." + kAsTheyAre,
                                    "The run of T has been undone" +
                                        (whole ? "." : ", except for these files:" + row.told)}));
        EXPECT_EQ(prompts.boxes.back().style,
                  whole ? BoxStyle::Information : BoxStyle::Exclamation);
        std::filesystem::remove(folder.Native("c/")); // a folder alone
        EXPECT_EQ(Tree(), row.after);
        EXPECT_EQ(undo.IsPossible(), row.waits);
        EXPECT_EQ(Plain(undo.Hint()),
                  row.waits ? "Undo the run of T: 1 file." : "There is no run to undo.");
        RunUndo(calls, logs).RemoveAllLogs();
        folder.Clear();
    }
    calls.room = 8000;
    folder.Write("a", std::string(3000, '1'));
    folder.Write("b", std::string(3000, '1'));
    Run({{"a", "2"}, {"b", "2"}});
    prompts.answers = {Answer::Yes};
    undo.Start();
    EXPECT_EQ(Boxes()[0], "Undo the run of T? 1 file will get its old text and date back." +
                              kAsTheyAre +
                              " Its other files cannot be undone: there was not enough space to "
                              "keep their old texts.");
    EXPECT_EQ(folder.Read("a") + folder.Read("b"), "2" + std::string(3000, '1'));
    EXPECT_EQ(Plain(undo.Hint()),
              "The run of T cannot be undone: there was not enough space to keep the old texts of "
              "its files.");
}

TEST_F(UndoTest, NothingIsDoneWithoutARunOrAYesOrDuringWork) {
    undo.Start();
    EXPECT_EQ(Boxes(), Strings{"There is no run to undo."});
    folder.Write("a", "1");
    Run({{"a", "2"}, {"b", "2"}});
    EXPECT_EQ(Plain(undo.Hint()), "Undo the run of T: 2 files.");
    undo.Start(); // No
    EXPECT_EQ(Boxes().size(), 1U);
    pointer.SetPointer(MousePointer::Hourglass);
    undo.Start();
    undo.Forget();
    undo.GiveUpMissing();
    EXPECT_EQ(Boxes(), Strings{});
    EXPECT_EQ(Tree(), (Files{{"a", "2"}, {"b", "2"}}));

    pointer.shapes.clear();
    loop.whenTold[1] = [&] { // what could be pressed meanwhile
        EXPECT_TRUE(undo.IsInProgress());
        undo.Start();
        undo.Forget();
    };
    prompts.answers = {Answer::Yes};
    undo.Start();
    EXPECT_EQ(loop.told, (Strings{"File 1/2", "File 2/2"}));
    EXPECT_EQ(pointer.shapes, (std::vector{MousePointer::Hourglass, MousePointer::Default}));
    EXPECT_EQ(Boxes().size(), 2U);
    EXPECT_EQ(Tree(), (Files{{"a", "1"}}));
}

TEST_F(UndoTest, EndsInTheMiddleAndIsGoneOnWith) {
    folder.Write("a", "1");
    Run({{"a", "2"}, {"b", "2"}});
    prompts.answers = {Answer::Yes, Answer::Yes, Answer::Yes};
    loop.whenTold[2] = [] { throw ProgramEnded(); };
    EXPECT_THROW(undo.Start(), ProgramEnded);
    EXPECT_EQ(Tree(), (Files{{"a", "2"}}));
    EXPECT_EQ(Boxes().size(), 1U);
    EXPECT_FALSE(undo.IsInProgress());
    pointer.shapes.clear(); // the next start
    recovery.Run();

    int log = -1; // another program begins to undo it while the question is open
    prompts.whenShown = [&](const Box& box) {
        if (box.style == BoxStyle::Question && log < 0) {
            log = ::open((logs[0] + "/" + LogName(1)).c_str(), O_RDWR | O_CLOEXEC);
            ::flock(log, LOCK_EX);
        }
    };
    undo.Start();
    EXPECT_EQ(Boxes().back(), "in Zentavor2021/08/31.Form1.UndoLastRun_Click at line 4");
    EXPECT_EQ(pointer.Pointer(), MousePointer::Default);
    EXPECT_EQ(Plain(undo.Hint()),
              "The run of T cannot be undone now: another program is using its old texts.");
    ::close(log);
    undo.Start();
    EXPECT_EQ(Boxes().back(), "The run of T has been undone.");
    EXPECT_EQ(Tree(), (Files{{"a", "1"}}));
}

TEST_F(UndoTest, ForgetsRunsAndKeptCopies) {
    EXPECT_FALSE(undo.CanForget());
    const std::string keptIn = " kept here:\r\n\r\n" + KeptFolder(logs[0]) + "\r\n";
    const std::string oneCopy = "1 copy of an interrupted file is" + keptIn + "\r\nDelete it?";
    const std::string threeCopies =
        "3 copies of interrupted files are" + keptIn + KeptFolder(logs[1]) + "\r\n\r\nDelete them?";
    const struct {
        const char* name;
        std::size_t runs, copies; // the third copy is in the second folder
        std::deque<Answer> answers;
        Strings boxes;
        std::size_t runsLeft, copiesLeft;
    } rows[] = {
        {"No", 1, 0, {Answer::No}, {kForget}, 1, 0},
        {"Yes", 1, 0, {Answer::Yes}, {kForget}, 0, 0},
        {"runs alone", 2, 1, {Answer::Yes, Answer::No}, {kForget, oneCopy}, 0, 1},
        {"a copy alone", 0, 1, {Answer::Yes}, {oneCopy}, 0, 0},
        {"all", 1, 3, {Answer::Yes, Answer::Yes}, {kForget, threeCopies}, 0, 0},
        {"copies are kept with their runs", 1, 2, {Answer::No, Answer::Yes}, {kForget}, 1, 2},
        {"nothing", 0, 0, {Answer::Yes}, {}, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        for (std::size_t run = 0; run < row.runs; ++run) {
            Run({{"a", row.name + std::to_string(run)}}); // other than before
        }
        for (std::size_t copy = 0; copy < row.copies; ++copy) {
            state.Write((copy < 2 ? "first/kept/" : "second/kept/") + std::to_string(copy), "x");
        }
        undo.Refresh();
        EXPECT_EQ(undo.CanForget(), row.runs + row.copies > 0);
        prompts.answers = row.answers;
        undo.Forget();
        EXPECT_EQ(Boxes(), row.boxes);
        EXPECT_EQ(LogsIn(calls, logs).size(), row.runsLeft);
        EXPECT_EQ(KeptFiles(calls, logs).size(), row.copiesLeft);
        EXPECT_EQ(undo.CanForget(), row.runsLeft + row.copiesLeft > 0);
        prompts.answers.assign(2, Answer::Yes);
        undo.Forget();
        prompts.answers.clear();
        Boxes();
    }
}

TEST_F(UndoTest, MissingFiles) {
    folder.Write("f", "0123456789");
    EXPECT_FALSE(InChildProcess([&] {
        calls.KillAt(Calls::kWriteAt, calls.calls[Calls::kWriteAt] + 3);
        Run({{"f", "newnewnewnewnew"}});
    }));
    folder.Remove("f");
    recovery.Run();
    undo.Refresh();
    EXPECT_EQ(Boxes(), Strings{});
    EXPECT_EQ(NativeName(undo.MissingNotice()), "1 file of an interrupted run is missing");
    prompts.answers = {Answer::Yes};
    undo.Forget();
    EXPECT_EQ(Boxes(), (Strings{kForget, kStillKept}));
    EXPECT_TRUE(undo.CanForget());
    undo.GiveUpMissing();
    const Strings told = Boxes();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(undo.Missing(), 0U);
    EXPECT_EQ(undo.MissingNotice(), u"");
    ASSERT_EQ(KeptFiles(calls, logs).size(), 1U);
    EXPECT_NE(told[0].find(KeptFiles(calls, logs)[0]), std::string::npos);
    EXPECT_EQ(LogsIn(calls, logs), Strings{});
}

} // namespace
} // namespace vexmarrow::test
