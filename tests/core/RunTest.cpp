// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Core.h"
#include "core/Inputs.h"
#include "filelist/FileList.h"
#include "run/ReplacementRun.h"
#include "sets/SetList.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace vexmarrow::test {
namespace {

struct RunTest : Core {
    Inputs inputs;
    FileList list;
    SetList sets;
    ReplacementRun run{calls, inputs, list, sets, engine, desktop};
    const Strings done{"Done."};
    const std::string noRow = "in Zentavor2021/08/31.Form1.PushButton1_Click at line 6";
    const std::string noFile = "in Zentavor2021/08/31.ReplaceText.ReplaceTextInFileCombo at line 1";

    void AddFiles(const Strings& names, std::string_view bytes) {
        for (const std::string& name : names) {
            folder.Write(name, bytes);
            list.Add({folder.Path(name)});
        }
    }
    Strings Run() {
        run.Start();
        return prompts.TakeSummaries();
    }
};

TEST_F(RunTest, NothingIsOpenWhileTheEndIsTold) {
    AddFiles({"f", "empty"}, "");
    folder.Write("f", "a");
    list.Add({folder.Path("f")});
    int told = 0;
    prompts.whenShown = [&](const Box&) {
        ++told;
        EXPECT_EQ(calls.openFiles, 0);
        const int log = ::open(state.Native("first/0000000001.run").c_str(), O_RDWR | O_CLOEXEC);
        EXPECT_EQ(::flock(log, LOCK_EX | LOCK_NB), 0);
        ::close(log);
    };
    inputs.texts[0] = u"a";
    for (const std::string& options : {"35"s, "5"s}) { // the second one reads no file at all
        inputs.options = options;
        EXPECT_EQ(Run(), done);
    }
    EXPECT_EQ(told, 2);
}

TEST_F(RunTest, ChecksAndRoutes) {
    AddFiles({"f"}, "");
    sets.Add(u"a", u"s");
    // Tab, Text1, Text3, options; first letter of the message; what becomes of the file.
    for (const std::string& row : Rows(R"(
             0||.|45|Y|a:a:a 1|||5|Y|a:a:a 2||gone|4|Y|a:a:a 0|a||4|F|a:a:a 1|a|f|4|F|a:a:a
             2|a|gone|4|F|a:a:a 0|a|gone|3|F|a:a:a 2|a|.|4|-|a:a:a 0|a|gone|5|D|a:a:a 0|a||1235|D|b:a~
             0|a||235|D|a:b~ 0|a||35|D|b:b:b 1|a|gone|15|D|s:s:s 1|a|.|4|D|s:s:s
             0|||35c|Y|a:a:a 0|a||5c|D|a:a:a 0|a||135c|D|b:a:a 0|a||25c|D|a:b:b 0|a||35c|D|b:b:b
             1|a||15c|D|s:s:s 2|a||5c|-|a:a:a)")) {
        const Strings fields = Fields(row);
        folder.Write("f", "a:a:a");
        inputs.tab = static_cast<Tab>(std::stoi(fields[0]));
        inputs.texts = {TextFromUtf8(fields[1]), u"b",
                        fields[2] == "" ? u"" : folder.Path(fields[2])};
        inputs.options = fields[3];
        pointer.shapes.clear();
        const Strings messages = Run();
        EXPECT_EQ(messages.empty() ? "-" : messages[0].substr(0, 1), fields[4]) << row;
        EXPECT_EQ(folder.Read("f"), fields[5]) << row;
        const std::vector shown{MousePointer::Hourglass, MousePointer::Default};
        EXPECT_EQ(pointer.shapes, fields[4] == "D" ? shown : decltype(shown){}) << row;
    }
}

TEST_F(RunTest, YieldsBeforeEachFileAndFixesOnlyTheTabAndTheNumberOfRows) {
    AddFiles({"1", "2", "1"}, "a:a");
    folder.MakeFolder("out");
    loop.whenTold[2] = [&] {
        EXPECT_EQ(folder.Read("1") + folder.Read("2"), "b:ba:a");
        inputs.texts = {u"a", u"2", folder.Path("out")};
        inputs.options = "24";
        inputs.tab = Tab::Sets;
        list.Add({folder.Path("added")});
    };
    loop.whenTold[3] = [&] {
        inputs.texts = {u"b", u"3", folder.Path("out")};
        inputs.options = "24c";
    };
    EXPECT_EQ(Run(), done);
    EXPECT_EQ(loop.told, (Strings{"File 1/3", "File 2/3", "File 3/3"}));
    EXPECT_EQ(folder.Read("out/1") + folder.Read("out/2"), "b:3a:2\r\n");
}

TEST_F(RunTest, RowsRemovedMeanwhileHandOverThePreviousFileAgain) {
    inputs.texts[1] = u"aa";
    AddFiles({"1", "2", "3"}, "a");
    loop.whenTold = {{2, [&] { list.Remove({2, 3}); }}, {4, [&] { list.Remove({1}); }}};
    EXPECT_EQ(Run(), (Strings{noRow, noRow, "Done."}));
    EXPECT_EQ(folder.Read("1") + folder.Read("2") + folder.Read("3"), "aaaaaaaaaa");
    EXPECT_EQ(Run(), (Strings{noRow, "Done."})); // the first row gone: an empty path, passed over
    AddFiles({"1"}, "a");
    inputs.tab = Tab::Sets;
    loop.whenTold[5] = [&] { list.Remove({1}); };
    EXPECT_EQ(Run(), (Strings{noRow, noFile, "Done."}));
}

TEST_F(RunTest, AFileThatAnotherProgramHasLockedCannotBeOpened) {
    std::string lines;
    for (int i = 0; i < 300; ++i) {
        lines += "a:a\r\n";
    }
    AddFiles({"f"}, lines);
    inputs.texts[2] = folder.Path("out");
    folder.MakeFolder("out");
    sets.Add(u"a", u"b");
    SystemCalls others;
    const Descriptor other(others, ::open(folder.Native("f").c_str(), O_RDONLY | O_CLOEXEC));
    const auto runUnder = [&](int lock, Tab tab, const std::string& options) {
        EXPECT_EQ(::flock(other.Number(), lock), 0);
        inputs.tab = tab;
        inputs.options = options;
        return Run();
    };
    for (const int lock : {LOCK_EX, LOCK_SH}) { // which keeps nobody from reading alone
        for (const std::string& options : Rows("15 25 35")) {
            EXPECT_EQ(runUnder(lock, Tab::SinglePair, options), done) << options;
        }
        EXPECT_EQ(runUnder(lock, Tab::Sets, "5"), (Strings{noFile, "Done."}));
        EXPECT_THAT(NativeName(prompts.boxes.end()[-2].text),
                    testing::HasSubstr("/f\": It is locked by another program."));
        EXPECT_EQ(runUnder(lock, Tab::SinglePair, "14"), done);
        EXPECT_EQ(folder.Names("out"), lock == LOCK_SH ? Strings{"f"} : Strings{});
    }
    EXPECT_TRUE(folder.Read("f") == lines);
    EXPECT_EQ(runUnder(LOCK_UN, Tab::SinglePair, "25"), done);
    EXPECT_TRUE(folder.Read("f").starts_with("a:b\r\na:b\r\n"));
}

TEST_F(RunTest, OneAtATimeAndTheProgramsEndStopsEverything) {
    AddFiles({"1", "2", "3"}, "a");
    const auto startWithoutText = [&] {
        inputs.texts[0].swap(inputs.texts[2]);
        run.Start(); // would show a message
        inputs.texts[0].swap(inputs.texts[2]);
    };
    loop.whenTold = {{1, startWithoutText}, {5, [] { throw ProgramEnded(); }}};
    prompts.whenShown = [&](const Box&) { startWithoutText(); };
    EXPECT_EQ(Run(), done);
    inputs.texts = {u"b", u"c", u""};
    EXPECT_THROW(Run(), ProgramEnded);
    EXPECT_EQ(folder.Read("1") + folder.Read("2") + folder.Read("3"), "cbb");
    folder.Remove("2");
    inputs.tab = Tab::Sets;
    sets.Add(u"b", u"d");
    prompts.whenShown = [](const Box&) { throw ProgramEnded(); }; // closed under a report
    EXPECT_THROW(Run(), ProgramEnded);
    EXPECT_EQ(prompts.TakeSummaries(), Strings{noFile});
    EXPECT_EQ(folder.Read("3"), "b");
    prompts.whenShown = nullptr;
    EXPECT_EQ(Run(), (Strings{noFile, "Done."})) << "the next run starts after each way out";
}

} // namespace
} // namespace vexmarrow::test
