// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Core.h"
#include "core/Inputs.h"
#include "filelist/FileList.h"
#include "run/InputNotes.h"
#include "run/ResultConflicts.h"
#include "run/Utf8Hint.h"
#include "sets/SetList.h"

#include <sys/stat.h>

namespace vexmarrow::test {
namespace {

struct InputNotesTest : Core {
    Inputs inputs;
    SetList sets;
};

TEST_F(InputNotesTest, TellOfTheTextsThatTheEngineWouldMiss) {
    const struct {
        const char* name;
        std::u16string find, replace;
        std::string note = "";
        std::size_t reports = 0; // of the engine
    } rows[] = {
        {"a pair", u"a", u"b"},
        {"nothing to put in deletes", u"a\r\nb", u""},
        {"as many", u"a\r\nb", u"1\r\n2"},
        {"more", u"a\r\nb", u"1\r\n2\r\n3"},
        {"nor does CR", u"a\rb", u"1"},
        {"nothing to find", u"", u"1"},
        {"one is missing", u"a\r\nb", u"1", "2 texts to find, 1 to put in", 1},
        {"an empty line to find", u"a\r\nb\r\n", u"1\r\n2", "3 texts to find, 2 to put in", 1},
        {"empty lines alone", u"\r\n\r\n", u"1", "3 texts to find, 1 to put in", 2},
        {"empty lines to put in", u"a\r\nb\r\nc", u"\r\n", "3 texts to find, 2 to put in", 1},
        {"LF to put in", u"a\r\nb", u"1\n2", "2 texts to find, 1 to put in", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        inputs = {.find = row.find, .replace = row.replace};
        EXPECT_EQ(NativeName(NoteOnTexts(inputs)), row.note);
        folder.Write("f", "text");
        engine.ReplaceTextInFile(folder.Path("f"), row.find, row.replace, kInPlace, 1);
        EXPECT_EQ(prompts.TakeSummaries().size(), row.reports);
    }
}

TEST_F(InputNotesTest, AreThereWhileTheyAreTrue) {
    using enum ReplacementMode;
    sets.Add(u"a,", u"");
    const std::u16string twoTexts = u"a\r\nb,";
    const std::string counts = "2 texts to find, 1 to put in";
    const std::string commas = "In contact cards a comma is often written \\,";
    const struct {
        const char* name;
        Entries entries;
        std::string onTexts = "";
        std::string onSets = "";
        std::string onOptions = ""; // the beginning
    } rows[] = {
        {"whole text", {.find = twoTexts}, counts},
        {"no text", {.find = u""}},
        {"no mode", {.find = twoTexts, .mode = None}},
        {"fields", {.find = twoTexts, .mode = FieldsOnly}, "", "", "The second colon"},
        {"values", {.find = twoTexts, .mode = ValuesOnly}, "", "", "The second colon"},
        {"sets", {.tab = Tab::Sets, .mode = FieldsOnly}, "", "", "\"Find Options\" do not"},
        {"sets without a text",
         {.tab = Tab::Sets, .find = u"", .mode = None},
         "",
         "\"Find what\" on the other tab must not be empty: type any text there.",
         "\"Find Options\" do not"},
        {"cards", {.find = twoTexts, .asVCards = true}, counts + "\n" + commas},
        {"a comma in cards", {.find = u"a,", .asVCards = true}, commas},
        {"values of cards",
         {.find = twoTexts, .mode = ValuesOnly, .asVCards = true},
         counts + "\n" + commas},
        {"fields of cards", {.find = twoTexts, .mode = FieldsOnly, .asVCards = true}, counts},
        {"sets in cards",
         {.tab = Tab::Sets, .mode = None, .asVCards = true},
         "",
         commas,
         "\"Find Options\" do not"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        inputs = row.entries;
        EXPECT_EQ(NativeName(NoteOnTexts(inputs)), row.onTexts);
        EXPECT_EQ(NativeName(NoteOnSets(inputs, sets)), row.onSets);
        const std::string onOptions = NativeName(NoteOnOptions(inputs));
        EXPECT_EQ(onOptions.substr(0, row.onOptions.size()), row.onOptions);
        EXPECT_EQ(onOptions.empty(), row.onOptions.empty());
    }
}

TEST_F(InputNotesTest, TellOfCommasThatCardsWriteInAnotherWay) {
    const struct {
        std::u16string find;
        bool hasNote;
    } rows[] = {{u",", true},      {u"a,b", true}, {uR"(a\,b)", false}, {uR"(\,)", false},
                {uR"(\,,)", true}, {u";", false},  {u"a", false},       {u"a\r\nb\\,\r\n,c", true}};
    for (const auto& row : rows) {
        SCOPED_TRACE(NativeName(row.find));
        sets.ClearFindTexts();
        sets.ClearReplaceTexts();
        sets.Add({{u"a", u","}, {row.find, u""}});
        inputs = {.find = row.find, .replace = u"", .asVCards = true};
        EXPECT_EQ(!NoteOnTexts(inputs).empty(), row.hasNote);
        inputs.tab = Tab::Sets;
        EXPECT_EQ(!NoteOnSets(inputs, sets).empty(), row.hasNote);
    }
}

TEST(ResultConflictsTest, AreSentences) {
    const Entries beside;
    const auto into = [](const char16_t* path) {
        return Entries{.folder = path, .savesToFolder = true};
    };
    const std::string lastWins = " files have the name of another: the last one wins";
    const std::string oneTwice = "1 file is listed twice and is changed twice";
    const struct {
        Texts paths;
        Entries entries;
        std::string note;
    } rows[] = {
        {{u"/a/x", u"/b/x"}, into(u"/c"), "2" + lastWins},
        {{u"/a/x", u"/b/x", u"x", u"/a/y", u"/b/y", u"/a/X", u"/a/z"}, into(u"/c"), "5" + lastWins},
        {{u"/a/x", u"/a/x"}, beside, oneTwice},
        {{u"/a/x", u"/a/../a/./x"}, into(u"/b/../a"), oneTwice},
        {{u"/a/x", u"/b/x", u"/a/x"},
         into(u"/a"),
         "2 files have the name of another and are written over one of them\n" + oneTwice},
        {{u"/a/x", u"/a/y", u"/a/x", u"/a/y"},
         beside,
         "2 files are listed twice and are changed twice"},
        {{u"/x", u"/x", u"/x"}, beside, "1 file is listed more than once and is changed as often"},
        {{u"/a/y", u"/a/x", u"/a/x", u"/a/y", u"/a/x"},
         into(u"//a///"),
         "2 files are listed more than once and are changed as often"},
        {{u"/a/y", u"/a/y", u"/b/x", u"/b/x", u"/b/x"}, into(u"/a"), oneTwice},
        {{u"/a/x", u"/a/x"}, into(u"/b"), ""}, // the second result is the first one again
        {{u"/a/x", u"/b/x", u"/a/x"}, {.folder = u"/a", .savesBesideInput = false}, ""}, // none
        {{u"/a/x", u"/b/x", u"/a/x"}, into(u""), ""},
    };
    for (const auto& row : rows) {
        FileList list;
        ResultConflicts notes;
        list.Add({u"/a/f", u"/b/f", u"/a/f"}); // of which nothing is left after the second look
        notes.Find(list);
        list.Clear();
        list.Add(row.paths);
        notes.Find(list);
        Inputs inputs;
        inputs = row.entries;
        EXPECT_EQ(NativeName(notes.Note(inputs)), row.note) << testing::PrintToString(row.paths);
    }
}

struct Utf8HintTest : Core {
    FileList list;
    SetList sets;
    Inputs inputs;
    Utf8Hint hint{calls, list, ansi};

    static constexpr std::size_t kLook = 16'384; // bytes of a file
    const std::string first = "(the first file again)";
    const std::string ascii = "a", utf8 = "ä", latin = "\xE4 ";
    const std::string wide = kMark16 + "a";

    /// Lists files of these contents.
    void List(const Strings& contents) {
        list.Clear();
        for (std::size_t i = 0; i < contents.size(); ++i) {
            const std::string name = contents[i] == first ? "0" : std::to_string(i);
            if (contents[i] == kNoFile) {
                folder.Remove(name);
            } else if (contents[i] != first) {
                folder.Write(name, contents[i]);
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
    constexpr std::size_t kFiles = 8, kPaths = 64; // to be looked at
    const auto then = [](Strings contents, const Strings& more) {
        contents.insert(contents.end(), more.begin(), more.end());
        return contents;
    };
    const std::string full = "ä" + std::string(kLook - 3, 'a'); // a byte less than a look
    enum Seen { kNever, kForLetters, kAlways };
    const struct {
        const char* name;
        Strings files;
        Seen isSeen;
    } rows[] = {
        {"no files", {}, kNever},
        {"UTF-8", {utf8}, kForLetters},
        {"UTF-8 beside ASCII", {ascii, "", utf8, ascii}, kForLetters},
        {"ASCII", {ascii}, kNever},
        {"the page", {latin}, kNever},
        {"both in one file", {"ä\xE4"}, kNever},
        {"the page behind UTF-8", {utf8, latin}, kNever},
        {"wide files", {wide, "\xFE\xFF", "\0\0\xFE\xFF"s, kMark16 + "\0\0"s}, kNever},
        {"UTF-8 behind wide files", {wide, "\0\0\xFE\xFF"s, kNoFile, utf8, wide}, kForLetters},
        {"mark", {kMark8}, kAlways},
        {"the page behind a mark", {kMark8, latin}, kNever},
        {"the page in the last one", then(Strings(kFiles - 1, utf8), {latin}), kNever},
        {"the page further on", then(Strings(kFiles, utf8), {latin, kMark8}), kForLetters},
        {"UTF-8 further on", then(Strings(kFiles, ascii), {utf8}), kNever},
        {"a file again and again", then(then({utf8}, Strings(kFiles - 1, first)), {latin}), kNever},
        {"wide files do not count", then(Strings(kFiles + 1, wide), {utf8}), kForLetters},
        {"letter across the end of the look", {full + "ä"}, kForLetters},
        {"other bytes behind it", {full + "a\xFF"}, kForLetters},
        {"other bytes at its end", {full + "\xFF"}, kNever},
        {"the last path", then(Strings(kPaths - 1, kNoFile), {kMark8}), kAlways},
        {"wide files count as paths", then(Strings(kPaths, wide), {utf8}), kNever},
        {"a path further on", then(Strings(kPaths, kNoFile), {kMark8}), kNever},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        List(row.files);
        inputs.find = u"a";
        EXPECT_EQ(Applies(), row.isSeen == kAlways);
        inputs.find = u"ä";
        EXPECT_EQ(Applies(), row.isSeen != kNever);
    }
}

TEST_F(Utf8HintTest, AsksForTheTextsInUseAndRemembersTheFiles) {
    List({utf8});
    const struct {
        const char* name;
        TextPair pair, set;
        bool isSeenForPair, isSeenForSets;
    } rows[] = {
        {"ASCII", {u"a", u"b"}, {u"c", u"d"}, false, false},
        {"find text", {u"ä", u"b"}, {u"c", u"d"}, true, false},
        {"text to put in", {u"a", u"ß"}, {u"c", u"d"}, true, false},
        {"find text of a set", {u"a", u"b"}, {u"€", u"d"}, false, true},
        {"the last of ASCII", {u"a", u"b"}, {u"c", u"\u007F"}, false, false},
        {"the first beyond it", {u"a", u"b"}, {u"c", u"\u0080"}, false, true},
        {"both", {u"a", u"😀"}, {u"c", u"é"}, true, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        inputs = {.find = row.pair.first, .replace = row.pair.second, .folder = u"ä"};
        sets.ClearFindTexts();
        sets.ClearReplaceTexts();
        sets.Add(u"a", u"b");
        sets.Add(row.set.first, row.set.second);
        EXPECT_EQ(Applies(), row.isSeenForPair);
        inputs.tab = Tab::Sets;
        EXPECT_EQ(Applies(), row.isSeenForSets);
    }
    EXPECT_EQ(calls.calls[Calls::kOpen], 1);
    const int before = calls.allCalls;
    ansi.Choose(u"UTF-8");
    hint.Forget();
    EXPECT_FALSE(Applies());
    EXPECT_EQ(calls.allCalls, before); // there is nothing to know
    ansi.Choose(u"windows-1251");
    inputs.asVCards = true;
    EXPECT_FALSE(Applies());
    EXPECT_EQ(calls.allCalls, before);
    inputs.asVCards = false;
    EXPECT_TRUE(Applies());
    List({latin});
    EXPECT_FALSE(Applies());
}

TEST_F(Utf8HintTest, PassesOverWhatItCannotRead) {
    inputs.find = u"ä";
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
        List({utf8, latin});
        row.prepare();
        EXPECT_EQ(Applies(), row.passedOver);
        EXPECT_EQ(calls.calls[Calls::kOpen], row.opened);
    }
}

} // namespace
} // namespace vexmarrow::test
