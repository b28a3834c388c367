// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Lists.h"
#include "filelist/FileRemoval.h"
#include "filelist/ReceivedPaths.h"
#include "filelist/SampleFiles.h"
#include "sets/SetsLoading.h"

namespace vexmarrow::test {
namespace {

Strings Native(const Texts& paths) {
    Strings names;
    for (const std::u16string& path : paths) {
        names.push_back(NativeName(path));
    }
    return names;
}

TEST(PathsInUriList, EveryKindOfAddress) {
    const struct {
        const char* name;
        std::string list;
        Strings paths;
    } rows[] = {
        {"blank", "file:///a b", {"/a b"}},
        {"codes", "file:///a%20b%23c#d?e%25", {"/a b#c#d?e%"}},
        {"what is no code", "file:///a%2g%4%", {"/a%2g%4%"}},
        {"codes of bytes", "file:///%e9%C3%A9", {"/\xE9\xC3\xA9"}},
        {"byte", "file:///\xE9", {"/\xE9"}},
        {"codes of signs", "file:///a%2Fb%0A%0d", {"/a/b\n\r"}},
        {"this host", "file://host/a\r\nfile://HOST/b", {"/a", "/b"}},
        {"localhost", "file://localhost/a", {"/a"}},
        {"another host", "file://other/a\r\nfile://hos/a", {}},
        {"one slash", "file:/a", {"/a"}},
        {"root", "file:///", {"/"}},
        {"upper case", "FILE:///A", {"/A"}},
        {"no full path", "file:a\nfile:///b\n", {"/b"}},
        {"CR", "file:///a\rfile:///b", {"/a", "/b"}},
        {"comments and other lines",
         "# c\r\n#file:///x\r\n\r\nhttp:///a\r\n/a\r\nfile:///y\r\nfile:///x\r\n",
         {"/y", "/x"}},
        {"no path", "file://host\r\nfile:\r\nfil\r\n\r\n", {}},
        {"dots and slashes", "file:///a/../b//c/", {"/a/../b//c/"}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Native(PathsInUriList(row.list, "Host")), row.paths) << row.name;
    }
}

TEST(PathsOfArguments, EveryKindOfArgument) {
    const struct {
        const char* name;
        std::string workingFolder;
        Strings arguments, paths;
    } rows[] = {
        {"full and relative", "/w", {"/a", "b c", "../d/"}, {"/a", "/w/b c", "/w/../d/"}},
        {"dots", "/w/", {"b", "./c", ".", ".d"}, {"/w/b", "/w/c", "/w/", "/w/.d"}},
        {"none", "/w", {}, {}},
        {"root", "/", {"b", "."}, {"/b", "/"}},
        {"bytes",
         "/w\xFE",
         {"\xFF", "é", "-\xFF", "/\xE9\n"},
         {"/w\xFE/\xFF", "/w\xFE/é", "/\xE9\n"}},
        {"options", "/w", {"-a", "--b", "-", "", "a"}, {"/w/a"}},
        {"after the last option", "/w", {"--", "-c", "", "--", "d"}, {"/w/-c", "/w/--", "/w/d"}},
        {"no folder", "", {"b", "./c", "/d"}, {"b", "./c", "/d"}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Native(PathsOfArguments(row.arguments, row.workingFolder)), row.paths)
            << row.name;
    }
}

struct ListSourcesTest : Lists {
    FileRemoval removal{list, desktop};
    SetsLoading loading{sets, desktop, textio};

    /// Drops on an empty list; the rows then, as names in the test folder.
    Strings Drop(const Strings& names) {
        Texts paths;
        for (const std::string& name : names) {
            paths.push_back(folder.Path(name));
        }
        list = FileList();
        Follower shown(list);
        adding.AddDropped(paths);
        EXPECT_LE(shown.additions, 1U) << "a view lays itself out after each";
        Strings rows = Native(RowsOf(list));
        for (std::string& row : rows) {
            row.erase(0, folder.Native().size() + 1);
        }
        return rows;
    }
    /// Of these rows, those that a filter leaves.
    std::size_t Left(void (FileRemoval::*filter)(), const std::u16string& text, Texts rows) {
        list = FileList();
        list.Add(std::move(rows));
        prompts.texts = {text};
        (removal.*filter)();
        return list.Count();
    }
};

TEST_F(ListSourcesTest, ListFiles) {
    folder.Write("ansi", "a.vcf\r\n\r\n   \n C:\\\xE9.txt \rmissing\n\t\n");
    folder.Write("utf8", kMark8 + "\xD0\x96\r\n \r\nlast\nlast");
    folder.Write("utf16", Utf16(u"\u0416\r\r\n x\n"));
    const std::string wide("a\0b\0", 4);
    const auto replaced = [&] { // as the single pair does it, without a look at the mark
        folder.Write("f", wide);
        engine.ReplaceTextInFile(folder.Path("f"), u"ab", u"cd", kInPlace, 1);
        return folder.Read("f");
    };
    // The folder itself is one of the files; nothing asks about the extensions.
    pickers.files = {{folder.Path(), u"utf8", u"", u"gone", u"/ansi"}, {}, {folder.Path("utf16")}};
    adding.LoadListFiles();
    const Texts rows{u"\u0416", u"last\nlast", u"a.vcf", u" C:\\\u00E9.txt ", u"missing", u"\t"};
    EXPECT_EQ(RowsOf(list), rows);
    EXPECT_EQ(prompts.TakeSummaries()[1], "File not found");
    EXPECT_THAT(NativeName(prompts.boxes[0].text),
                testing::HasSubstr("PushButton9_Click at line 3"));
    adding.LoadListFiles(); // cancelled
    EXPECT_EQ(pointer.shapes, (std::vector{MousePointer::Hourglass, MousePointer::Default}));
    EXPECT_EQ(replaced(), wide);
    adding.LoadListFiles();
    EXPECT_EQ(list.Row(list.Count() - 1) + list.Row(list.Count()), u"\u0416 x");
    EXPECT_EQ(replaced(), Utf16(u"cd"));
    ansi.Choose(u"UTF-8"); // in which every name can be written down
    folder.Write("utf8", "/\xC3\xA9\xE9.vcf\n");
    pickers.files = {{folder.Path("utf8")}};
    adding.LoadListFiles();
    EXPECT_EQ(list.Row(list.Count()), TextFromNativeName("/\xC3\xA9\xE9.vcf"));
    loop.whenTold[loop.told.size() + 2] = [] { throw ProgramEnded(); };
    pickers.files = {{folder.Path("ansi")}};
    EXPECT_THROW(adding.LoadListFiles(), ProgramEnded);
    EXPECT_EQ(list.Row(list.Count()), u"a.vcf");
}

TEST_F(ListSourcesTest, Drops) {
    for (const char* name : {"a/x.vcf", "a/1/x.vcf", "a/1/2/x", "a/~t.vcf", "a/1/.dot.vcf",
                             "b/3/x.txt", "b/.ro", "locked/x.vcf", "~t.txt", ".dot"}) {
        folder.Write(name, "x");
    }
    folder.SetMode("b/.ro", 0444); // hidden and archive, but read-only besides
    folder.SetMode("locked", 0);
    folder.MakeLink("b/3/up", "..");
    const Unprivileged unprivileged;
    const Strings files{".dot", "~t.txt", "gone", ".dot"};
    EXPECT_EQ(Drop(files), files);
    EXPECT_EQ(Drop({"b/"}), (Strings{"b/.ro", "b/3/x.txt"}));
    EXPECT_EQ(Drop({"locked"}), Strings{});
    EXPECT_EQ(Drop({}), Strings{});
    EXPECT_EQ(prompts.TakeSummaries().size(), 2U) << "asked about the extensions, at the end";
    EXPECT_EQ(Drop({"locked", "b/3", "locked"}), (Strings{"b/3/x.txt", "b/3/x.txt"}));
    // The second folder has all that was gathered walked again: the folders as they were dropped or
    // found, then all below each, level by level.
    EXPECT_EQ(Drop({".dot", "a", "gone", "b/3", "~t.txt"}),
              (Strings{".dot", "a/x.vcf", "a/1/x.vcf", "a/1/2/x", "gone", "a/x.vcf", "a/1/x.vcf",
                       "a/1/2/x", "b/3/x.txt", "a/1/x.vcf", "a/1/2/x", "a/1/2/x", "~t.txt"}));
    prompts.answers = {Answer::Yes};
    EXPECT_EQ(Drop({"~t.txt", "a", ".dot"}), (Strings{"a/x.vcf", "a/1/x.vcf"}));
    const std::size_t begun = loop.told.size();
    EXPECT_EQ(Drop({"a"}), (Strings{"a/x.vcf", "a/1/x.vcf", "a/1/2/x"}));
    const std::size_t last = loop.told.size() - begun; // before the files of the last folder
    loop.whenTold[loop.told.size() + last] = [&] {
        EXPECT_EQ(list.Count(), 2U) << "what others look at in the middle";
        removal.ClearList();
    };
    EXPECT_EQ(Drop({"a"}), Strings{"a/1/2/x"});
    loop.whenTold[loop.told.size() + last] = [] { throw ProgramEnded(); };
    EXPECT_THROW(Drop({"a", "b"}), ProgramEnded);
    EXPECT_EQ(list.Count(), 2U);
}

TEST_F(ListSourcesTest, Filters) {
    const struct {
        std::u16string text;
        Texts rowsWithIt, rowsWithout;
    } rows[] = {
        {u"OLD", {u"/Old/a.vcf", u"/b.fOLd"}, {u"/new/b"}},
        {u".vcf", {u"/x.vcf/b", u"/A.VCF"}, {u"/vcf"}},
        {u"*", {u"/a*"}, {u"/a"}},
        {u"[a]", {u"/[A]"}, {u"/a"}},
        {u" ", {u"/a b"}, {u"/ab"}},
        {u"äÖü", {u"/ÄöÜ"}, {u"/aou"}},
        {u"αΒ", {u"/Αβ"}, {u"/ab"}},
        {u"Жя", {u"/жЯ", u"/ЖЯ"}, {}},
        {u"İ", {u"/İİİ"}, {u"/I"}},
        {u"ΟΣ", {u"/ΟΣ", u"/ΟΣ.vcf", u"/ΟΣΣ"}, {u"/x"}}, // another small sigma ends a word
    };
    const auto without = &FileRemoval::RemoveFilenamesContaining;
    const auto with = &FileRemoval::RemoveFilenamesNotContaining;
    for (const auto& row : rows) {
        SCOPED_TRACE(NativeName(row.text));
        EXPECT_EQ(Left(without, row.text, row.rowsWithIt), 0U);
        EXPECT_EQ(Left(with, row.text, row.rowsWithIt), row.rowsWithIt.size());
        EXPECT_EQ(Left(without, row.text, row.rowsWithout), row.rowsWithout.size());
        EXPECT_EQ(Left(with, row.text, row.rowsWithout), 0U);
    }
    const std::size_t shapes = pointer.shapes.size();
    EXPECT_EQ(Left(&FileRemoval::RemoveFilenamesContaining, u"", {u"/a"}), 1U); // cancelled
    EXPECT_TRUE(pointer.shapes.size() == shapes && prompts.boxes.empty());
    EXPECT_EQ(prompts.asked[0].first + prompts.asked[1].first,
              u"Remove entries containing: Remove entries not containing: ");
}

TEST_F(ListSourcesTest, WhatGoesOnWhileAFilterYields) {
    const auto filter = [&](std::size_t rows, std::size_t at, std::function<void()> meanwhile) {
        loop.whenTold = {{loop.told.size() + at, std::move(meanwhile)}};
        return Left(&FileRemoval::RemoveFilenamesContaining, u"A", Texts(rows, u"/a"));
    };
    for (const std::size_t at : {1U, 2U, 50U, 100U}) { // before and after the rows that vanish
        EXPECT_EQ(filter(100, at, [&] { list.Remove({1, 100}); }), 98U) << at;
        EXPECT_EQ(prompts.TakeSummaries(),
                  Strings{"in Zentavor2021/08/31.Form1.PushButton17_Click at line 3"});
    }
    const auto thinAndAdd = [&] {
        removal.ClearList(); // refused, both of them
        removal.RemoveRow(1);
        list.Add({u"/a"}); // comes too late to be looked at
    };
    EXPECT_EQ(filter(3, 2, thinAndAdd), 1U);
    EXPECT_EQ(pointer.Pointer(), MousePointer::Arrow);
    thinAndAdd();
    EXPECT_EQ(list.Count(), 1U);
    removal.RemoveRow(2);
    removal.RemoveRow(1);
    EXPECT_EQ(list.Count(), 0U);
    EXPECT_THROW(filter(3, 3, [] { throw ProgramEnded(); }), ProgramEnded);
    EXPECT_TRUE(list.Count() == 3 && prompts.TakeSummaries().empty());
}

TEST_F(ListSourcesTest, Samples) {
    SampleFiles samples(calls, list, desktop, folder.Path());
    samples.RecordOnce(); // there is no folder yet: it is tried again
    samples.Load();
    folder.MakeFolder("Samples/folder.vcf");
    for (const char* name : {"b.vcf", "a.vcf", ".dot"}) {
        folder.Write("Samples/"s + name, "x");
    }
    samples.RecordOnce();
    folder.Write("Samples/later.vcf", "x");
    samples.RecordOnce();
    ASSERT_EQ(settings.writes.size(), 2U);
    EXPECT_EQ(settings.writes[1].second.size(), 3 * folder.Path("Samples/").size() + 16);
    folder.Remove("Samples/b.vcf");
    list.Add({folder.Path("Samples/A.vcf"), folder.Path("Samples/.dot")});
    prompts.answers = {Answer::Yes};
    samples.Load();
    samples.Load(); // adds nothing; No this time
    EXPECT_EQ(RowsOf(list), (Texts{folder.Path("Samples/A.vcf"), folder.Path("Samples/.dot"),
                                   folder.Path("Samples/a.vcf")}));
    EXPECT_EQ(fileManager.opened, Texts{folder.Path("Samples/")});
    EXPECT_EQ(prompts.TakeSummaries(),
              Strings(3, "Would you like this software to open the folder where these sample files "
                         "are stored (so that you can view them before working with them)?"));
}

TEST_F(ListSourcesTest, SetsLoaded) {
    const auto load = [&](const std::string& bytes, const std::u16string& separator) {
        sets = SetList();
        folder.Write("sets", bytes);
        EXPECT_TRUE(loading.Load(folder.Path("sets"), separator));
        return Sets();
    };
    using Pairs = std::vector<TextPair>;
    const struct {
        const char* name;
        std::string lines;
        std::u16string separator;
        Pairs sets;
    } rows[] = {
        {"lines of all kinds",
         "hi::hello\r\n\r\nno separator here\npeter::pete",
         u"::",
         {{u"hi", u"hello"}, {u"peter", u"pete"}}},
        {"another separator", "a:b", u",", {}},
        {"a third text", "a::b::c", u"::", {{u"a", u"b"}}},
        {"empty texts", "::x\rx::\r\n::", u"::", {{u"", u"x"}, {u"x", u""}, {u"", u""}}},
        {"separators in a row", "a=>b=>=>", u"=>", {{u"a", u"b"}}},
        {"case counts", "aXb\r\naxb", u"X", {{u"a", u"b"}}},
        {"blanks are text", " a :: b ", u"::", {{u" a ", u" b "}}},
        {"a blank separates", "  \r\na", u" ", {{u"", u""}}},
        {"more than a separator", "a:::b", u"::", {{u"a", u":b"}}},
        {"less than one", "a:b", u"::", {}},
        {"no lines", "", u"x", {}},
        {"of the code page", "a\xE9z", u"\u00E9", {{u"a", u"z"}}},
        {"UTF-8", kMark8 + "Ж::b\r\nc::\nd\r\n", u"::", {{u"Ж", u"b"}, {u"c", u"\nd"}}},
        {"UTF-16", Utf16(u"Ж::b\nc::d\n"), u"::", {{u"Ж", u"b"}, {u"c", u"d"}}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(load(row.lines, row.separator), row.sets) << row.name;
    }
    ansi.Choose(u"UTF-8");
    EXPECT_EQ(load("Ж::é\nc::d", u"::"), (Pairs{{u"Ж", u"é"}, {u"c", u"d"}}));
    sets = SetList();
    for (std::size_t i = 0; i < 10'000; ++i) {
        sets.Add(std::u16string(i % 7, u'\u00E9') + u":f", std::u16string(i % 5, u' '));
    }
    pickers.saves = {folder.Path("saved")};
    operations.SaveSets();
    const Pairs before = Sets();
    EXPECT_TRUE(load(folder.Read("saved"), u"::") == before && prompts.boxes.empty());
}

TEST_F(ListSourcesTest, SetsNotLoaded) {
    folder.Write(".hidden", "a::b");
    folder.Write("secret", "a::b");
    EXPECT_FALSE(loading.Load(folder.Path("gone"), u""));
    EXPECT_FALSE(loading.Load(u"", u"::") || loading.Load(u"   ", u"::"));
    EXPECT_EQ(prompts.TakeSummaries(), Strings{"You must enter separating character(s)."});
    for (const char* name : {"gone", ".hidden", "secre*", "/"}) {
        EXPECT_FALSE(loading.Load(folder.Path(name), u"::"));
        EXPECT_EQ(prompts.TakeSummaries(), Strings{folder.Native(name) + " not found."});
        EXPECT_TRUE(prompts.boxes.back().style == BoxStyle::Critical);
        EXPECT_EQ(prompts.boxes.back().title, u"File Not Found");
    }
    folder.SetMode("secret", 0);
    const Unprivileged unprivileged;
    EXPECT_TRUE(loading.Load(folder.Path("secret"), u"::")) << "a failed read closes as well";
    EXPECT_EQ(prompts.TakeSummaries(),
              Strings{"in Zentavor2021/08/31.Form2.PushButton1_Click at line 3"});
}

} // namespace
} // namespace vexmarrow::test
