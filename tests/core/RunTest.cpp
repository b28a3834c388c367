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
    for (const auto mode : {ReplacementMode::WholeText, ReplacementMode::None}) { // reads nothing
        inputs.mode = mode;
        EXPECT_EQ(Run(), done);
    }
    EXPECT_EQ(told, 2);
}

TEST_F(RunTest, ChecksItsInputsAndCallsTheRoutineForThem) {
    using enum ReplacementMode;
    const std::string noText = "You forgot to input find what.";
    const std::string noFolder = "Folder does not exist. Please select another folder.";
    const std::string text = "a:a:a";
    AddFiles({"f"}, "");
    folder.MakeFolder("out");
    sets.Add(u"a", u"s");
    const std::u16string out = folder.Path("out"), file = folder.Path("f");
    const struct {
        const char* name;
        Entries entries;
        std::string message = "Done.";
        std::string result = "a:a:a";
        std::string resultIsIn = "f";
    } rows[] = {
        {"no text", {.find = u"", .folder = out, .savesToFolder = true}, noText},
        {"no text for sets", {.tab = Tab::Sets, .find = u""}, noText},
        {"no text for cards", {.find = u"", .asVCards = true}, noText},
        {"no folder", {.savesToFolder = true, .savesBesideInput = false}, noFolder},
        {"a file for a folder",
         {.tab = Tab::Sets, .folder = file, .savesToFolder = true, .savesBesideInput = false},
         noFolder},
        {"no folder, and nothing to save", {.savesBesideInput = false}, noFolder},
        {"no mode", {.mode = None, .folder = u"gone"}},
        {"fields", {.mode = FieldsOnly}, "Done.", "b:a\r\n"},
        {"values", {.mode = ValuesOnly}, "Done.", "a:b\r\n"},
        {"whole text", {}, "Done.", "b:b:b"},
        {"into a folder", {.folder = out, .savesToFolder = true}, "Done.", "b:b:b", "out/f"},
        {"sets", {.tab = Tab::Sets, .mode = FieldsOnly}, "Done.", "s:s:s"},
        {"sets into a folder",
         {.tab = Tab::Sets, .folder = out, .savesToFolder = true, .savesBesideInput = false},
         "Done.",
         "s:s:s",
         "out/f"},
        {"cards without a mode", {.mode = None, .asVCards = true}},
        {"fields of cards", {.mode = FieldsOnly, .asVCards = true}, "Done.", "b:a:a"},
        {"values of cards", {.mode = ValuesOnly, .asVCards = true}, "Done.", "a:b:b"},
        {"whole lines of cards", {.asVCards = true}, "Done.", "b:b:b"},
        {"sets in cards", {.tab = Tab::Sets, .asVCards = true}, "Done.", "s:s:s"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        folder.Write("f", text);
        inputs = row.entries;
        pointer.shapes.clear();
        EXPECT_EQ(Run(), Strings{row.message});
        EXPECT_EQ(folder.Read(row.resultIsIn), row.result);
        const std::vector shown{MousePointer::Hourglass, MousePointer::Default};
        EXPECT_EQ(pointer.shapes, row.message == "Done." ? shown : decltype(shown){});
    }
}

TEST_F(RunTest, YieldsBeforeEachFileAndFixesOnlyTheTabAndTheNumberOfRows) {
    AddFiles({"1", "2", "1"}, "a:a");
    folder.MakeFolder("out");
    loop.whenTold[2] = [&] {
        EXPECT_EQ(folder.Read("1") + folder.Read("2"), "b:ba:a");
        inputs = {.tab = Tab::Sets,
                  .replace = u"2",
                  .mode = ReplacementMode::ValuesOnly,
                  .folder = folder.Path("out"),
                  .savesToFolder = true};
        list.Add({folder.Path("added")});
    };
    loop.whenTold[3] = [&] {
        inputs.find = u"b";
        inputs.replace = u"3";
        inputs.asVCards = true;
    };
    EXPECT_EQ(Run(), done);
    EXPECT_EQ(loop.told, (Strings{"File 1/3", "File 2/3", "File 3/3"}));
    EXPECT_EQ(folder.Read("out/1") + folder.Read("out/2"), "b:3a:2\r\n");
}

TEST_F(RunTest, RowsRemovedMeanwhileHandOverThePreviousFileAgain) {
    inputs.replace = u"aa";
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
    inputs.folder = folder.Path("out");
    folder.MakeFolder("out");
    sets.Add(u"a", u"b");
    SystemCalls others;
    const Descriptor other(others, ::open(folder.Native("f").c_str(), O_RDONLY | O_CLOEXEC));
    const auto runUnder = [&](int lock, Tab tab, ReplacementMode mode, bool savesToFolder = false) {
        EXPECT_EQ(::flock(other.Number(), lock), 0);
        inputs.tab = tab;
        inputs.mode = mode;
        inputs.savesToFolder = savesToFolder;
        return Run();
    };
    using enum ReplacementMode;
    for (const int lock : {LOCK_EX, LOCK_SH}) { // which keeps nobody from reading alone
        for (const ReplacementMode mode : {FieldsOnly, ValuesOnly, WholeText}) {
            EXPECT_EQ(runUnder(lock, Tab::SinglePair, mode), done) << static_cast<int>(mode);
        }
        EXPECT_EQ(runUnder(lock, Tab::Sets, None), (Strings{noFile, "Done."}));
        EXPECT_THAT(NativeName(prompts.boxes.end()[-2].text),
                    testing::HasSubstr("/f\": It is locked by another program."));
        EXPECT_EQ(runUnder(lock, Tab::SinglePair, FieldsOnly, true), done);
        EXPECT_EQ(folder.Names("out"), lock == LOCK_SH ? Strings{"f"} : Strings{});
    }
    EXPECT_TRUE(folder.Read("f") == lines);
    EXPECT_EQ(runUnder(LOCK_UN, Tab::SinglePair, ValuesOnly), done);
    EXPECT_TRUE(folder.Read("f").starts_with("a:b\r\na:b\r\n"));
}

TEST_F(RunTest, OneAtATimeAndTheProgramsEndStopsEverything) {
    AddFiles({"1", "2", "3"}, "a");
    const auto startWithoutText = [&] {
        inputs.find.swap(inputs.folder);
        run.Start(); // would show a message
        inputs.find.swap(inputs.folder);
    };
    loop.whenTold = {{1, startWithoutText}, {5, [] { throw ProgramEnded(); }}};
    prompts.whenShown = [&](const Box&) { startWithoutText(); };
    EXPECT_EQ(Run(), done);
    inputs.find = u"b";
    inputs.replace = u"c";
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
