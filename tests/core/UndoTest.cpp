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

struct UndoTest : Core {
    const Strings logs{state.Native("first"), state.Native("second")};
    Recovery recovery{calls, logs, prompts};
    UndoOperations undo{calls, logs, recovery, desktop};

    /// Files are told by a letter and their text: "a=1 b=2".
    void Run(const std::string& files) {
        for (const std::string& file : Rows(files)) {
            const auto pending = writer.Begin(folder.Path(file.substr(0, 1)), nullptr);
            pending->Append(file.substr(2));
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

    std::string Tree() const {
        std::string tree;
        for (const std::string& name : folder.Names()) {
            tree += (tree.empty() ? "" : " ") + name + "=" + folder.Read(name);
        }
        return tree;
    }
};

TEST_F(UndoTest, AsksAndTellsWhatWasLeftAlone) {
    // Files before the run and its results; what happens to them since ("-": it goes, "/": a folder
    // takes its place); what is asked; what is told; the files then.
    for (const std::string& row :
         Rows("a=1|a=2||1_file_will_get_its_old_text_and_date_back||a=1 "
              "|a=2||1_new_file_will_be_removed|| "
              "a=1_b=1_s=1|a=2_b=2_s=1_c=2_d=2||2_files_will_get_their_old_text_and_date_back,_"
              "2_new_files_will_be_removed||a=1_b=1_s=1 "
              "a=1_b=1|a=2_b=2_a=3_n=2_n=3|a=4|2_files_will_get_their_old_text_and_date_back,_"
              "1_new_file_will_be_removed|~~a~It_was_changed_after_the_run.|a=4_b=1 "
              "a=1_b=1|a=2_b=2_c=2|a=-_c=/_b=x|2_files_will_get_their_old_text_and_date_back,_"
              "1_new_file_will_be_removed|~~c~It_is_no_longer_a_regular_file.~~b~It_was_changed_"
              "after_"
              "the_run."
              "~~a~It_is_missing.|b=x")) {
        SCOPED_TRACE(row);
        const Strings fields = Fields(row);
        for (const std::string& file : Rows(fields[0])) {
            folder.Write(file.substr(0, 1), file.substr(2));
        }
        Run(fields[1]);
        EXPECT_TRUE(undo.IsPossible());
        for (const std::string& change : Rows(fields[2])) {
            const std::string name = change.substr(0, 1), text = change.substr(2);
            folder.Remove(name);
            text == "/" ? folder.MakeFolder(name) : text == "-" ? void() : folder.Write(name, text);
        }
        prompts.answers = {Answer::Yes};
        undo.Start();
        const bool whole = fields[4].empty();
        EXPECT_EQ(Boxes(), (Strings{"Undo the run of T? " + fields[3] + "." + kAsTheyAre,
                                    "The run of T has been undone" +
                                        (whole ? "." : ", except for these files:" + fields[4])}));
        EXPECT_EQ(prompts.boxes.back().style,
                  whole ? BoxStyle::Information : BoxStyle::Exclamation);
        std::filesystem::remove(folder.Native("c/")); // a folder alone
        EXPECT_EQ(Tree(), fields[5]);
        const bool waits = fields[4].ends_with("missing."); // for the file to come back
        EXPECT_EQ(undo.IsPossible(), waits);
        EXPECT_EQ(Plain(undo.Hint()),
                  waits ? "Undo the run of T: 1 file." : "There is no run to undo.");
        RunUndo(calls, logs).RemoveAllLogs();
        folder.Clear();
    }
    calls.room = 8000;
    folder.Write("a", std::string(3000, '1'));
    folder.Write("b", std::string(3000, '1'));
    Run("a=2 b=2");
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
    Run("a=2 b=2");
    EXPECT_EQ(Plain(undo.Hint()), "Undo the run of T: 2 files.");
    undo.Start(); // No
    EXPECT_EQ(Boxes().size(), 1U);
    pointer.SetPointer(MousePointer::Hourglass);
    undo.Start();
    undo.Forget();
    undo.GiveUpMissing();
    EXPECT_EQ(Boxes(), Strings{});
    EXPECT_EQ(Tree(), "a=2 b=2");

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
    EXPECT_EQ(Tree(), "a=1");
}

TEST_F(UndoTest, EndsInTheMiddleAndIsGoneOnWith) {
    folder.Write("a", "1");
    Run("a=2 b=2");
    prompts.answers = {Answer::Yes, Answer::Yes, Answer::Yes};
    loop.whenTold[2] = [] { throw ProgramEnded(); };
    EXPECT_THROW(undo.Start(), ProgramEnded);
    EXPECT_EQ(Tree(), "a=2");
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
    EXPECT_EQ(Tree(), "a=1");
}

TEST_F(UndoTest, ForgetsRunsAndKeptCopies) {
    EXPECT_FALSE(undo.CanForget());
    const std::string keptIn = " kept here:\r\n\r\n" + KeptFolder(logs[0]) + "\r\n";
    // Runs and copies that there are (copies in one or two folders), answers, boxes, what is left.
    for (const std::string& row : Rows(R"(1|0|n|F|1:0 1|0|y|F|0:0 2|1|yn|F1|0:1 0|1|y|1|0:0
                                          1|3|yy|F3|0:0 1|2|ny|F|1:2 0|0|y||0:0)")) {
        SCOPED_TRACE(row);
        const Strings fields = Fields(row);
        for (int run = 0; run < std::stoi(fields[0]); ++run) {
            Run("a=" + row + std::to_string(run)); // other than before
        }
        for (int copy = 0; copy < std::stoi(fields[1]); ++copy) {
            state.Write((copy < 2 ? "first/kept/" : "second/kept/") + std::to_string(copy), "x");
        }
        undo.Refresh();
        EXPECT_EQ(undo.CanForget(), fields[0] + fields[1] != "00");
        for (const char answer : fields[2]) {
            prompts.answers.push_back(answer == 'y' ? Answer::Yes : Answer::No);
        }
        undo.Forget();
        Strings expected;
        for (const char box : fields[3]) {
            expected.push_back(box == 'F' ? kForget
                               : box == '1'
                                   ? "1 copy of an interrupted file is" + keptIn + "\r\nDelete it?"
                                   : "3 copies of interrupted files are" + keptIn +
                                         KeptFolder(logs[1]) + "\r\n\r\nDelete them?");
        }
        EXPECT_EQ(Boxes(), expected);
        EXPECT_EQ(std::to_string(LogsIn(calls, logs).size()) + ":" +
                      std::to_string(KeptFiles(calls, logs).size()),
                  fields[4]);
        EXPECT_EQ(undo.CanForget(), fields[4] != "0:0");
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
        Run("f=newnewnewnewnew");
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
