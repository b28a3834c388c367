// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Core.h"
#include "core/Inputs.h"
#include "filelist/FileList.h"
#include "run/InputNotes.h"
#include "run/ResultConflicts.h"
#include "run/Utf8Hint.h"
#include "sets/SetList.h"

#include <array>
#include <sys/stat.h>

namespace vexmarrow::test {
namespace {

struct InputNotesTest : Core {
    Inputs inputs;
    SetList sets;
};

TEST_F(InputNotesTest, TellOfTheTextsThatTheEngineWouldMiss) {
    // Find what, replace with, the note, how many texts the engine reports.
    for (const std::string& row :
         Rows("a|b||0 a~b|||0 a~b|1~2||0 a~b|1~2~3||0 a^b|1||0 a<b|1||0 |1||0 "
              "a~b|1|2_texts_to_find,_1_to_put_in|1 a~b~c|1~2|3_texts_to_find,_2_to_put_in|1 "
              "a~b~|1~2|3_texts_to_find,_2_to_put_in|1 ~~|1|3_texts_to_find,_1_to_put_in|2 "
              "a~b~c|~|3_texts_to_find,_2_to_put_in|1 a~b|1^2|2_texts_to_find,_1_to_put_in|1")) {
        SCOPED_TRACE(row);
        const Strings fields = Fields(row);
        inputs.texts = {TextFromUtf8(fields[0]), TextFromUtf8(fields[1]), u""};
        EXPECT_EQ(NativeName(NoteOnTexts(inputs)), fields[2]);
        folder.Write("f", "text");
        engine.ReplaceTextInFile(folder.Path("f"), inputs.FindText(), inputs.ReplacementText(),
                                 LocationOf(inputs), 1);
        EXPECT_EQ(std::to_string(prompts.TakeSummaries().size()), fields[3]);
    }
}

TEST_F(InputNotesTest, AreThereWhileTheyAreTrue) {
    sets.Add(u"a,", u"");
    const auto letters = [](const std::u16string& note) {
        std::string firsts = note.empty() ? "-" : NativeName(note.substr(0, 1));
        const std::size_t second = note.find(u'\n');
        return second == std::u16string::npos ? firsts
                                              : firsts + NativeName(note.substr(second + 1, 1));
    };
    // Tab, options, find what; first letters of the lines on the texts, the sets and the options.
    for (const std::string& row :
         Rows(R"(0|3|a~b,|2-- 0|13|a~b,|--T 0|23|a~b,|--T 0|123|a~b,|--T 0||a~b,|--- 0|3||---
                 0|1||--T 1|3|a|--" 1|3||-"" 1|1|a|--" 1|||-"" 0|3c|a~b,|2I-- 0|2c|a~b,|2I--
                 0|1c|a~b,|2-- 0|13c|a,|--- 0|3c|a,|I-- 0|c|a~b,|--- 0|1c||--- 0|2c||---
                 1|3c|a|-I" 1|1c|a|-I" 1|c|a|-I" 1|3c||-"")")) {
        const Strings fields = Fields(row);
        inputs.tab = static_cast<Tab>(std::stoi(fields[0]));
        inputs.options = fields[1];
        inputs.texts = {TextFromUtf8(fields[2]), u"c", u""};
        EXPECT_EQ(letters(NoteOnTexts(inputs)) + letters(NoteOnSets(inputs, sets)) +
                      letters(NoteOnOptions(inputs)),
                  fields[3])
            << row;
    }
}

TEST_F(InputNotesTest, TellOfCommasThatCardsWriteInAnotherWay) {
    inputs.options = "3c";
    for (const std::string& row : Rows(R"(,|1 a,b|1 a\,b|0 \,|0 \,,|1 ;|0 a|0 a~b\,~c,|1)")) {
        const std::u16string find = TextFromUtf8(Fields(row)[0]);
        inputs.texts = {find, u"", u""};
        sets.ClearFindTexts();
        sets.ClearReplaceTexts();
        sets.Add({{u"a", u","}, {find, u""}});
        inputs.tab = Tab::SinglePair;
        EXPECT_EQ(!NoteOnTexts(inputs).empty(), Fields(row)[1] == "1") << row;
        inputs.tab = Tab::Sets;
        EXPECT_EQ(!NoteOnSets(inputs, sets).empty(), Fields(row)[1] == "1") << row;
    }
}

std::string ResultNote(const Strings& paths, const std::string& options, std::string_view folder) {
    FileList list;
    ResultConflicts conflicts;
    list.Add({u"/a/f", u"/b/f", u"/a/f"}); // of which nothing is left after the second look
    conflicts.Find(list);
    list.Clear();
    list.Add(TextsOf(paths));
    conflicts.Find(list);
    Inputs inputs;
    inputs.options = options;
    inputs.texts[2] = TextFromUtf8(folder);
    return NativeName(conflicts.Note(inputs));
}

TEST(ResultConflictsTest, AreSentences) {
    // Rows, options, output folder, the note.
    for (const auto& [rows, options, folder, note] : std::vector<std::array<std::string, 4>>{
             {"/a/x /b/x", "4", "/c", "2 files have the name of another: the last one wins"},
             {"/a/x /b/x x /a/y /b/y /a/X /a/z", "45", "/c",
              "5 files have the name of another: the last one wins"},
             {"/a/x /a/x", "5", "", "1 file is listed twice and is changed twice"},
             {"/a/x /a/../a/./x", "4", "/b/../a", "1 file is listed twice and is changed twice"},
             {"/a/x /b/x /a/x", "4", "/a",
              "2 files have the name of another and are written over one of them\n"
              "1 file is listed twice and is changed twice"},
             {"/a/x /a/y /a/x /a/y", "5", "", "2 files are listed twice and are changed twice"},
             {"/x /x /x", "5", "", "1 file is listed more than once and is changed as often"},
             {"/a/y /a/x /a/x /a/y /a/x", "4", "//a///",
              "2 files are listed more than once and are changed as often"},
             {"/a/y /a/y /b/x /b/x /b/x", "4", "/a", "1 file is listed twice and is changed twice"},
             {"/a/x /a/x", "4", "/b", ""},     // the second result is the first one again
             {"/a/x /b/x /a/x", "", "/a", ""}, // no result is saved
             {"/a/x /b/x /a/x", "45", "", ""}}) {
        EXPECT_EQ(ResultNote(Rows(rows), options, folder), note);
    }
}

struct Utf8HintTest : Core {
    FileList list;
    SetList sets;
    Inputs inputs;
    Utf8Hint hint{calls, list, ansi};
    const std::string full = "\xC3\xA4" + std::string(16'384 - 3, 'a'); // a byte less than a look
    /// Contents by letters; "-" is a file that is not there, "=" the first one again.
    const std::string letterOf = "eaulbswxyzmcdf";
    const Strings contents{"",
                           "a",
                           "a\xC3\xA4",
                           "\xE4 ",
                           "\xC3\xA4\xE4",
                           "\xC3\xA4\xED\xA0\x80",
                           kMark16 + "a",
                           "\xFE\xFF",
                           "\0\0\xFE\xFF"s,
                           "\xFF\xFE\0\0"s,
                           kMark8,
                           full + "\xC3\xA4",
                           full + "a\xFF",
                           full + "\xFF"};

    void List(const std::string& letters) {
        list.Clear();
        for (std::size_t i = 0; i < letters.size(); ++i) {
            const std::string name = std::to_string(letters[i] == '=' ? 0 : i);
            if (letters[i] == '-') {
                folder.Remove(name);
            } else if (letters[i] != '=') {
                folder.Write(name, contents.at(letterOf.find(letters[i])));
            }
            list.Add({folder.Path(name)});
        }
        hint.Forget();
    }
    bool Applies() {
        const bool applies = hint.Applies(inputs, sets);
        EXPECT_EQ(calls.openFiles + calls.calls[Calls::kLock], 0);
        return applies;
    }
};

TEST_F(Utf8HintTest, LooksAtTheBeginningsOfTheFirstFiles) {
    Strings rows =
        Rows("|0 u|1 aeu|1 ua|1 a|0 l|0 b|0 s|0 ul|0 lu|0 wxyz|0 wxyzu|1 w-ux|1 m|2 lm|0 ml|0 um|2 "
             "uuuuuuul|0 uuuuuuuulm|1 aaaaaaaau|0 u=======l|0 wwwwwwwwwu|1 c|1 d|1 f|0");
    rows.push_back(std::string(63, '-') + "m|2");
    rows.push_back(std::string(64, '-') + "m|0");
    rows.push_back(std::string(64, 'w') + "u|0");
    for (const std::string& row : rows) { // 1: seen with letters in the texts; 2: without, too
        List(Fields(row)[0]);
        inputs.texts[0] = u"a";
        EXPECT_EQ(Applies(), Fields(row)[1] == "2") << row;
        inputs.texts[0] = u"\u00E4";
        EXPECT_EQ(Applies(), Fields(row)[1] != "0") << row;
    }
}

TEST_F(Utf8HintTest, AsksForTheTextsInUseAndRemembersTheFiles) {
    List("u");
    // Find what, replace with, both of a set; whether it is seen on tab 0 and on tab 1.
    for (const std::string& row :
         Rows("a|b|c|d|00 ä|b|c|d|10 a|ß|c|d|10 a|b|€|d|01 a|b|c|\x7F|00 a|b|c|\xC2\x80|01 "
              "a|\xF0\x9F\x98\x80|c|é|11")) {
        const Strings fields = Fields(row);
        const Texts texts = TextsOf(fields);
        inputs.texts = {texts[0], texts[1], u"ä"};
        sets.ClearFindTexts();
        sets.ClearReplaceTexts();
        sets.Add({{u"a", u"b"}, {texts[2], texts[3]}});
        for (const Tab tab : {Tab::SinglePair, Tab::Sets}) {
            inputs.tab = tab;
            EXPECT_EQ(Applies(), fields[4][static_cast<std::size_t>(tab)] == '1') << row;
        }
    }
    EXPECT_EQ(calls.calls[Calls::kOpen], 1);
    const int before = calls.allCalls;
    inputs.tab = Tab::Sets;
    ansi.Choose(u"UTF-8");
    hint.Forget();
    EXPECT_FALSE(Applies());
    EXPECT_EQ(calls.allCalls, before); // there is nothing to know
    ansi.Choose(u"windows-1251");
    inputs.options = "3c";
    EXPECT_FALSE(Applies());
    EXPECT_EQ(calls.allCalls, before);
    inputs.options = "3";
    EXPECT_TRUE(Applies());
    List("l");
    EXPECT_FALSE(Applies());
}

TEST_F(Utf8HintTest, PassesOverWhatItCannotRead) {
    inputs.texts[0] = u"\u00E4";
    const auto makePipe = [&] {
        folder.Remove("1");
        ::mkfifo(folder.Native("1").c_str(), 0666);
    };
    const struct {
        const char* what; // becomes of the second of two files, which is not UTF-8
        std::function<void()> prepare;
        bool passedOver;
        int opened;
    } rows[] = {
        {"nothing", [] {}, false, 2},
        {"no rights", [&] { calls.openErrors[folder.Native("1")] = EACCES; }, true, 2},
        {"a folder", [&] { folder.Remove("1"), folder.MakeFolder("1"); }, true, 1},
        {"a pipe", makePipe, true, 1}, // whose writer must not take this for its reader
        {"a pipe at once",
         [&] {
             calls.beforeCall = [&](Calls::Kind kind) {
                 if (kind == Calls::kOpen && calls.calls[kind] == 1) {
                     makePipe();
                 }
             };
         },
         true, 2},
        {"broken", [&] { calls.FailAt(Calls::kRead, 3, EIO); }, true, 2},
        {"slow", [&] { calls.FailAt(Calls::kRead, 3, EINTR), calls.mostAtOnce = 1; }, false, 2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        folder.Remove("1");
        calls.calls.clear();
        calls.openErrors.clear();
        calls.beforeCall = nullptr;
        List("ul");
        row.prepare();
        EXPECT_EQ(Applies(), row.passedOver);
        EXPECT_EQ(calls.calls[Calls::kOpen], row.opened);
    }
}

} // namespace
} // namespace vexmarrow::test
