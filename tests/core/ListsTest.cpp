// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Lists.h"

#include "base/Text.h"
#include "filelist/ValidateListFiles.h"

#include <memory>
#include <random>

namespace vexmarrow::test {
namespace {

TEST(FileList, EveryChangeIsFollowed) {
    std::mt19937 random(3);
    for (int round = 0; round < 100; ++round) {
        FileList list;
        Follower shown(list);
        std::unique_ptr<FileList::Batch> adding;
        Texts rows;
        long long last = 0;
        const auto anyOf = [&] { return 1 + random() % rows.size(); };
        for (int step = 0; step < 20; ++step) {
            const auto what = random() % 8;
            if (what < 4) {
                Texts added(random() % 40);
                for (std::u16string& row : added) {
                    row = Decimal(++last);
                }
                what < 2 && adding ? adding->Add(added) : list.Add(added);
                rows.insert(rows.end(), added.begin(), added.end());
            } else if (what == 4) {
                adding = adding ? nullptr : std::make_unique<FileList::Batch>(list);
            } else if (what == 5 && !rows.empty()) {
                const std::size_t one = anyOf(), other = anyOf();
                list.Swap(one, other);
                std::swap(rows[one - 1], rows[other - 1]);
            } else if (what == 6) {
                std::vector<std::size_t> numbers;
                Texts left;
                const std::size_t share = random() % 10;
                for (std::size_t i = 1; i <= rows.size(); ++i) {
                    const bool removed = random() % 10 < share;
                    numbers.insert(numbers.end(), removed ? 1 : 0, i);
                    left.insert(left.end(), removed ? 0 : 1, rows[i - 1]);
                }
                list.Remove(numbers);
                rows = left;
            } else if (what == 7 && random() % 4 == 0) {
                list.Clear();
                rows.clear();
            } else if (what == 7) {
                list.Announce();
                ASSERT_EQ(shown.rows.size(), list.Count());
            }
            ASSERT_EQ(RowsOf(list), rows) << "round " << round << ", step " << step;
            rows.resize(shown.rows.size());
            ASSERT_TRUE(shown.rows == rows && (adding || rows.size() == list.Count()));
            rows = RowsOf(list);
        }
    }
    EXPECT_THROW(FileList().Row(0), Failure);
}

struct ListsTest : Lists {
    /// Lets the user choose a folder in the test folder; the rows as names in that, sorted.
    Strings Scan(std::string_view name) {
        list = FileList();
        pickers.folders = {folder.Path(name)};
        adding.AddAllFilesInFolder();
        Strings names;
        std::ptrdiff_t level = 0;
        for (const std::u16string& row : RowsOf(list)) {
            EXPECT_LE(std::exchange(level, std::count(row.begin(), row.end(), u'/')), level);
            names.push_back(NativeName(row).substr(folder.Native(name).size() + 1));
        }
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(ListsTest, Validation) {
    ValidateListFiles(list, prompts);
    list.Add({u"/a/b.vcf", u"b.VCF", u"b.vC", u"b.cf", u"b.f", u"b.", u"vcf", u"c", u"a.b/.V"});
    ValidateListFiles(list, prompts);
    Texts left = RowsOf(list);
    std::string question = "These files: \r\n\r\n";
    for (const char* unfit :
         {"b.vcf2", "b.vcard", "b.txt", "a.b/vcf", "/a/b", "b.vf", "b.fc", "v.vс"}) { // Cyrillic
        list.Add({TextFromUtf8(unfit), u"between.vcf"});
        left.push_back(u"between.vcf");
        question += unfit + "\r\n"s;
    }
    question += "\r\ndo not appear to be in the expected file format because of their file "
                "extension.\r\n\r\nWould you like to remove them from list?";
    const Texts all = RowsOf(list);
    ValidateListFiles(list, prompts);
    EXPECT_TRUE(prompts.boxes.at(0).style == BoxStyle::Question && prompts.boxes[0].title.empty());
    EXPECT_EQ(prompts.TakeSummaries(), Strings{question});
    EXPECT_EQ(RowsOf(list), all);
    prompts.answers = {Answer::Yes};
    ValidateListFiles(list, prompts);
    EXPECT_EQ(RowsOf(list), left);
}

TEST_F(ListsTest, ListChangedBehindTheQuestion) {
    for (const std::size_t unfit : {3U, 40U}) {
        list.Add(Texts(unfit, u"a.txt"));
        list.Add({u"a.vcf"});
        prompts.answers = {Answer::Yes, Answer::Yes};
        bool inside = false;
        prompts.whenShown = [&](const Box&) {
            if (!std::exchange(inside, true)) {
                ValidateListFiles(list, prompts); // removes what the question outside is about
            }
        };
        ValidateListFiles(list, prompts);
        EXPECT_EQ(prompts.TakeSummaries().back(),
                  "in Zentavor2021/08/31.Main.ValidateListFiles at line 3");
        EXPECT_EQ(RowsOf(list), Texts{u"a.vcf"});
        list.Remove({1});
    }
}

TEST_F(ListsTest, FilesFromTheDialog) {
    pickers.files = {{u"//one//a.vcf"}, {u"/x", u"b.vcf", u"~c.vcf"}, {u"/", u"d.vcf", u"d.vcf"}};
    while (!pickers.files.empty()) {
        adding.AddFiles();
    }
    EXPECT_EQ(RowsOf(list),
              (Texts{u"//one//a.vcf", u"/x/b.vcf", u"/x/~c.vcf", u"/d.vcf", u"/d.vcf"}));
    EXPECT_TRUE(prompts.boxes.empty());
    list.Add({u"a.txt"});
    adding.AddFiles();            // cancelled,
    adding.AddAllFilesInFolder(); // but validated all the same
    EXPECT_TRUE(prompts.boxes.size() == 2 && list.Count() == 6 && settings.writes.empty());
}

TEST_F(ListsTest, AFolderWithAllBelowIt) {
    const Strings listed{
        "a.vcf", "B.VCF", ".ro.vcf", "caf\xE9.vcf", "1/a.vcf", "1/1/a.vcf", "2/1/2/a.vcf",
        ".3/a.vcf",
        // The name has letters of the page, and the folder is not all that a system folder is.
        "café/a.vcf", "almost/a.vcf"};
    const Strings leftOut{"~c.vcf", "c.txt", ".dot.vcf",
                          // By the names and the attributes of their folders.
                          "what?/a.vcf", "\x7F/a.vcf", "€/a.vcf", "stray\xE9/a.vcf", "system/a.vcf",
                          "system/1/a.vcf", "linkedsystem/a.vcf"};
    for (const Strings& names : {listed, leftOut}) {
        for (const std::string& name : names) {
            folder.Write("t/" + name, "x");
        }
    }
    folder.Write("away/a.vcf", "x");
    folder.SetMode("t/.ro.vcf", 0444); // hidden and archive, but read-only besides
    folder.MakeFolder("t/folder.vcf");
    folder.MakeLink("t/linked", "../away");
    folder.MakeLink("away/back", "../t");
    folder.MakeLink("t/2/up", "..");
    folder.MakeLink("t/1/1/self", ".");
    calls.attributes = {{{folder.Native("t/system"), "user.DOSATTRIB"}, "0x16"},
                        {{folder.Native("t/linkedsystem"), "user.DOSATTRIB"}, "0x416"},
                        {{folder.Native("t/almost"), "user.DOSATTRIB"}, "0x17"}};
    settings.values[u"LastFolder"] = u"/before";
    Strings expected = listed;
    expected.emplace_back("linked/a.vcf");
    EXPECT_THAT(Scan("t"), testing::UnorderedElementsAreArray(expected));
    EXPECT_TRUE(prompts.boxes.empty());
    EXPECT_EQ(pickers.asked[0], TextPair(u"Please select folder:", u"/before"));
    EXPECT_EQ(settings.writes, (std::vector<TextPair>{{u"LastFolder", folder.Path("t")}}));
    EXPECT_EQ(pointer.shapes, (std::vector{MousePointer::Hourglass, MousePointer::Default}));
}

TEST_F(ListsTest, AScanMeetsFailures) {
    const Strings rows{"1/a/x.vcf", "2/a/x.vcf", "3/a/x.vcf"};
    for (const std::string& name : rows) {
        folder.Write("t/" + name, "x");
    }
    folder.Write("t/locked/a.vcf", "x");
    folder.Write("t/closed/a.vcf", "x");
    folder.SetMode("t/locked", 0);
    folder.SetMode("t/closed", 0);
    const Unprivileged unprivileged;
    EXPECT_EQ(Scan("t"), rows);
    EXPECT_EQ(Scan("t/locked"), Strings{});
    EXPECT_EQ(prompts.TakeSummaries(), Strings{})
        << "what may not be listed is left out in silence";
    EXPECT_EQ(Scan("gone"), Strings{});
    EXPECT_EQ(prompts.TakeSummaries(),
              Strings{"in Zentavor2021/08/31.Form1.PushButton3_Click at line 6"});
    loop.whenTold[loop.told.size() + 1] = [] { throw std::runtime_error("once"); };
    EXPECT_EQ(Scan("t"), rows);
    EXPECT_EQ(prompts.TakeSummaries(),
              Strings{"in BrennochTitle2021/08/31.AddFolder.GetSubDirectories2016 at line 1"});
    loop.whenTold[loop.told.size() + 3] = [] { throw ProgramEnded(); };
    EXPECT_THROW(Scan("t"), ProgramEnded);
    EXPECT_TRUE(list.Count() == 0 && prompts.TakeSummaries().empty());
}

TEST_F(ListsTest, SetsAddedAndRemoved) {
    const Strings refusal{"You must use :: to separate the find text from the replace text"};
    using Pairs = std::vector<TextPair>;
    const struct {
        std::u16string entered;
        Pairs sets;
    } rows[] = {
        {u"findwhat::replacewith", {{u"findwhat", u"replacewith"}}},
        {u"a::b::c", {{u"a", u"b"}}},
        {u"::b", {{u"", u"b"}}},
        {u" a ::", {{u" a ", u""}}},
        {u"::", {{u"", u""}}},
        {u"a:::b", {{u"a", u":b"}}},
        {u"::::", {{u"", u""}}},
        {u"x", {}},
        {u"a: :b:", {}},
        {u"", {}}, // cancelled
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(NativeName(row.entered));
        sets = SetList();
        prompts.texts = {row.entered};
        operations.AddSet();
        EXPECT_EQ(Sets(), row.sets);
        const bool isRefused = row.sets.empty() && !row.entered.empty();
        EXPECT_EQ(prompts.TakeSummaries(), isRefused ? refusal : Strings{});
    }
    sets = SetList();
    sets.Add(u"1", u"1");
    sets.Add(u"2", u"2");
    operations.RemoveSelectedSet(-1, -1);
    operations.RemoveSelectedSet(0, 1);
    operations.RemoveSelectedSet(7, -1);
    EXPECT_EQ(Sets(), (Pairs{{u"2", u"1"}}));
    EXPECT_EQ(prompts.TakeSummaries(),
              Strings{"in Zentavor2021/08/31.Form1.PushButton6_Click at line 1"});
    operations.ClearSets();
    EXPECT_EQ(Sets(), Pairs{});
}

TEST_F(ListsTest, SetsSaved) {
    flags = {true, true}; // of no account here, and untouched
    const std::string question = "Are you sure you wish to overwrite " + folder.Native();
    const std::string report = "in Zentavor2021/08/31.Form1.PushButton12_Click at line 3";
    const auto save = [&](const std::string& name, std::deque<Answer> answers = {}) {
        pickers.saves = {folder.Path(name)};
        prompts.answers = std::move(answers);
        operations.SaveSets();
        return prompts.TakeSummaries();
    };
    sets.Add(u"a", u"b");
    sets.Add(u"c", u"");
    EXPECT_EQ(save("f"), Strings{});
    EXPECT_EQ(folder.Read("f"), "a::b\r\nc::\r\n");
    sets.Add(u"\u0416\u00E9", u"::\n");
    EXPECT_EQ(save("f"), Strings{question + "/f ?"});
    EXPECT_EQ(folder.Read("f"), "a::b\r\nc::\r\n") << "No leaves the file";
    save("f", {Answer::Yes});
    EXPECT_EQ(folder.Read("f"), "a::b\r\nc::\r\n?\xE9::::\n\r\n");
    ansi.Choose(u"UTF-8");
    save("f", {Answer::Yes});
    EXPECT_EQ(folder.Read("f"), "a::b\r\nc::\r\n\xD0\x96\xC3\xA9::::\n\r\n");
    EXPECT_EQ(save("", {Answer::Yes}), (Strings{question + " ?", report})); // a folder
    EXPECT_EQ(save("gone/f"), Strings{report});
    EXPECT_TRUE(flags.IsUtf8 && flags.IsUnicode);
}

} // namespace
} // namespace vexmarrow::test
