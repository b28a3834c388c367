// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Lists.h"
#include "filelist/FileRemoval.h"
#include "filelist/ReceivedPaths.h"
#include "filelist/SampleFiles.h"
#include "sets/SetsLoading.h"

namespace vexmarrow::test {
namespace {

TEST(PathsInUriList, EveryKindOfAddress) {
    // An address list, then the paths in it.
    for (const std::string& row :
         Rows("file:///a_b|/a_b file:///a%20b%23c#d?e%25|/a_b#c#d?e% file:///a%2g%4%|/a%2g%4% "
              "file:///%e9%C3%A9|/\xE9\xC3\xA9 file:///\xE9|/\xE9 file:///a%2Fb%0A%0d|/a/b^< "
              "file://host/a~file://HOST/b|/a|/b file://localhost/a|/a file://other/a file:/a|/a "
              "file://hos/a file:///|/ FILE:///A|/A file:a^file:///b^|/b file:///a<file:///b|/a|/b "
              "#_c~#file:///x~~http:///a~/a~file:///y~file:///x~|/y|/x file://host file: fil <^~ "
              "file:///a/../b//c/|/a/../b//c/")) {
        Strings paths{Fields(row)[0]};
        for (const std::u16string& path : PathsInUriList(paths[0], "Host")) {
            paths.push_back(NativeName(path));
        }
        EXPECT_EQ(paths, Fields(row));
    }
}

TEST(PathsOfArguments, EveryKindOfArgument) {
    // The working folder and the arguments, then the paths.
    for (const std::string& row :
         Rows("/w|/a|b_c|../d/=/w|/a|/w/b_c|/w/../d/ /w/|b|./c|.|.d=/w/|/w/b|/w/c|/w/|/w/.d /w=/w "
              "/|b|.=/|/b|/ "
              "/w\xFE|\xFF|\xC3\xA9|-\xFF|/\xE9^=/w\xFE|/w\xFE/\xFF|/w\xFE/\xC3\xA9|/\xE9^ "
              "/w|-a|--b|-||a|--|-c||--|d=/w|/w/a|/w/-c|/w/--|/w/d /w|--=/w |b|./c|/d=|b|./c|/d")) {
        SCOPED_TRACE(row);
        Strings arguments = Fields(row.substr(0, row.find('=')));
        Strings paths{arguments[0]};
        arguments.erase(arguments.begin());
        for (const std::u16string& path : PathsOfArguments(arguments, paths[0])) {
            paths.push_back(NativeName(path));
        }
        EXPECT_EQ(paths, Fields(row.substr(row.find('=') + 1)));
    }
}

struct ListSourcesTest : Lists {
    FileRemoval removal{list, desktop};
    SetsLoading loading{sets, desktop, textio};

    /// Drops on an empty list; the rows as names in the test folder, each after a blank.
    std::string Drop(const std::string& names) {
        Texts paths;
        for (const std::string& name : Rows(names)) {
            paths.push_back(folder.Path(name));
        }
        list = FileList();
        Follower shown(list);
        adding.AddDropped(paths);
        EXPECT_LE(shown.additions, 1U) << "a view lays itself out after each";
        std::string rows;
        for (const std::u16string& row : RowsOf(list)) {
            rows += " " + NativeName(row).substr(folder.Native().size() + 1);
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
        engine.ReplaceTextInFile(folder.Path("f"), u"ab", u"cd", {OutputLocation::BesideInput, u""},
                                 1);
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
    for (const std::string& name : Rows("a/x.vcf a/1/x.vcf a/1/2/x a/~t.vcf a/1/.dot.vcf "
                                        "b/3/x.txt b/.ro locked/x.vcf ~t.txt .dot")) {
        folder.Write(name, "x");
    }
    folder.SetMode("b/.ro", 0444); // hidden and archive, but read-only besides
    folder.SetMode("locked", 0);
    folder.MakeLink("b/3/up", "..");
    const Unprivileged unprivileged;
    EXPECT_EQ(Drop(".dot ~t.txt gone .dot"), " .dot ~t.txt gone .dot");
    EXPECT_EQ(Drop("b/"), " b/.ro b/3/x.txt");
    EXPECT_EQ(Drop("locked") + Drop(""), "");
    EXPECT_EQ(prompts.TakeSummaries().size(), 2U) << "asked about the extensions, at the end";
    EXPECT_EQ(Drop("locked b/3 locked"), " b/3/x.txt b/3/x.txt");
    // The second folder has all that was gathered walked again: the folders as they were dropped or
    // found, then all below each, level by level.
    EXPECT_EQ(Drop(".dot a gone b/3 ~t.txt"),
              " .dot a/x.vcf a/1/x.vcf a/1/2/x gone"
              " a/x.vcf a/1/x.vcf a/1/2/x b/3/x.txt a/1/x.vcf a/1/2/x a/1/2/x ~t.txt");
    prompts.answers = {Answer::Yes};
    EXPECT_EQ(Drop("~t.txt a .dot"), " a/x.vcf a/1/x.vcf");
    const std::size_t begun = loop.told.size();
    EXPECT_EQ(Drop("a"), " a/x.vcf a/1/x.vcf a/1/2/x");
    const std::size_t last = loop.told.size() - begun; // before the files of the last folder
    loop.whenTold[loop.told.size() + last] = [&] {
        EXPECT_EQ(list.Count(), 2U) << "what others look at in the middle";
        removal.ClearList();
    };
    EXPECT_EQ(Drop("a"), " a/1/2/x");
    loop.whenTold[loop.told.size() + last] = [] { throw ProgramEnded(); };
    EXPECT_THROW(Drop("a b"), ProgramEnded);
    EXPECT_EQ(list.Count(), 2U);
}

TEST_F(ListSourcesTest, Filters) {
    // The text asked for, then rows that contain it and, after "!", rows that do not.
    for (const std::string& row :
         Rows("OLD|/Old/a.vcf|/b.fOLd|!/new/b .vcf|/x.vcf/b|/A.VCF|!/vcf *|/a*|!/a [a]|/[A]|!/a "
              "_|/a_b|!/ab äÖü|/ÄöÜ|!/aou αΒ|/Αβ|!/ab Жя|/жЯ|/ЖЯ|!/a İ|/İİİ|!/I "
              "ΟΣ|/ΟΣ|/ΟΣ.vcf|/ΟΣΣ|!/x")) { // sigma has another small form at a word's end
        const Texts fields = TextsOf(Fields(row));
        for (std::size_t i = 1; i < fields.size(); ++i) {
            const std::size_t isNot = fields[i][0] == u'!' ? 1 : 0;
            const Texts rows{u"-", fields[i].substr(isNot)};
            const std::pair left{Left(&FileRemoval::RemoveFilenamesContaining, fields[0], rows),
                                 Left(&FileRemoval::RemoveFilenamesNotContaining, fields[0], rows)};
            EXPECT_EQ(left, std::pair(1 + isNot, 1 - isNot)) << row << ", row " << i;
        }
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
    for (const std::string& name : Rows("b.vcf a.vcf .dot")) {
        folder.Write("Samples/" + name, "x");
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
    for (const std::string& row : // the lines, the separator, the sets
         Rows("hi::hello~~no_separator_here^peter::pete|::|(hi)(peter)=(hello)(pete)= a:b|,|== "
              "a::b::c|::|(a)=(b)= ::x<x::|::|()(x)=(x)()= a=>b=>=>|=>|(a)=(b)= aXb~axb|X|(a)=(b)= "
              "_a_::_b_|::|(_a_)=(_b_)= __~a|_|()=()= a:::b|::|(a)=(:b)= a:b|::|== |x|== "
              "::~::|::|()()=()()= a\xE9z|\xC3\xA9|(a)=(z)=")) {
        const Strings fields = Fields(row);
        EXPECT_EQ(load(fields[0], TextFromUtf8(fields[1])), fields[2]) << row;
    }
    EXPECT_EQ(load(kMark8 + "\xD0\x96::b\r\nc::\nd\r\n", u"::"), "(\xD0\x96)(c)=(b)(\nd)=");
    EXPECT_EQ(load(Utf16(u"\u0416::b\nc::d\n"), u"::"), "(\xD0\x96)(c)=(b)(d)=");
    ansi.Choose(u"UTF-8");
    EXPECT_EQ(load("\xD0\x96::\xC3\xA9\nc::d", u"::"), "(\xD0\x96)(c)=(\xC3\xA9)(d)=");
    sets = SetList();
    for (std::size_t i = 0; i < 10'000; ++i) {
        sets.Add(std::u16string(i % 7, u'\u00E9') + u":f", std::u16string(i % 5, u' '));
    }
    pickers.saves = {folder.Path("saved")};
    operations.SaveSets();
    const std::string before = Sets();
    EXPECT_TRUE(load(folder.Read("saved"), u"::") == before && prompts.boxes.empty());
}

TEST_F(ListSourcesTest, SetsNotLoaded) {
    folder.Write(".hidden", "a::b");
    folder.Write("secret", "a::b");
    EXPECT_FALSE(loading.Load(folder.Path("gone"), u""));
    EXPECT_FALSE(loading.Load(u"", u"::") || loading.Load(u"   ", u"::"));
    EXPECT_EQ(prompts.TakeSummaries(), Strings{"You must enter separating character(s)."});
    for (const std::string& name : Rows("gone .hidden secre* /")) {
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
