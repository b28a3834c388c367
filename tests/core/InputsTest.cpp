// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Writing.h"

namespace vexmarrow::test {
namespace {

using InputsTest = Writing;

const OutputLocation kInPlace{false, true, u""};

TEST_F(InputsTest, AnInputThatChangesWhileItIsReadIsNotWritten) {
    const std::string old(70000, 'a');
    const std::string path = folder.Native("f");
    const struct {
        const char* what;
        std::function<void()> happens;
    } rows[] = {
        {"grows", [&] { folder.Write("f", old + "more"); }},
        {"shrinks", [&] { folder.Write("f", "less"); }},
        {"changes in a way that neither size nor date tells",
         [&] {
             const std::int64_t date = DateOf("f");
             folder.Write("f", std::string(old.size(), 'c'));
             SetDate("f", date);
         }},
        {"is removed", [&] { folder.Remove("f"); }},
        {"is replaced",
         [&] {
             folder.Write("g", "other");
             ::rename(folder.Native("g").c_str(), path.c_str());
         }},
    };
    folder.MakeFolder("out");
    for (const auto& row : rows) {
        for (const bool inPlace : {false, true}) {
            for (const int read : {1, 2, 3, 4, 5}) {
                SCOPED_TRACE(std::string(row.what) + " at read " + std::to_string(read));
                folder.Write("f", old);
                std::string after;
                calls.mostAtOnce = 20000;
                calls.beforeCall = [&, n = 0](Calls::Kind kind) mutable {
                    if (kind == Calls::kRead && ++n == read) {
                        row.happens();
                        after = Content();
                    }
                };
                engine.ReplaceTextInFile(folder.Path("f"), u"a", u"b",
                                         {!inPlace, inPlace, folder.Path("out")}, 1);
                calls.beforeCall = nullptr;
                if (after.empty()) {
                    EXPECT_GT(read, 4) << "it was not read so often";
                    prompts.boxes.clear();
                    folder.Remove("out/f");
                    continue;
                }
                const Strings reports = Reports();
                ASSERT_FALSE(reports.empty());
                EXPECT_THAT(reports[0], testing::HasSubstr("Another program has"));
                EXPECT_EQ(Content(), after);
                EXPECT_EQ(folder.Names("out"), Strings{});
                folder.Remove("out/f");
            }
        }
    }
    // Between the last read and the writing.
    folder.Write("f", "abc");
    calls.beforeCall = [&, n = 0](Calls::Kind kind) mutable {
        if (kind == Calls::kStatus && ++n == 3) {
            folder.Write("f", "edited");
        }
    };
    engine.ReplaceTextInFile(folder.Path("f"), u"a", u"b", {false, true, u""}, 1);
    calls.beforeCall = nullptr;
    EXPECT_EQ(Content(), "edited");
    EXPECT_EQ(Reports().size(), 1U);
}

TEST_F(InputsTest, ATargetThatChangesBeforeItIsWrittenIsLeftAlone) {
    const std::string path = folder.Native("out/f");
    const struct {
        const char* what;
        std::function<void()> happens;
    } rows[] = {
        {"is written into", [&] { folder.Write("out/f", "another program's"); }},
        {"changes in a way that neither size nor date tells",
         [&] {
             const std::int64_t date = DateOf("out/f");
             folder.Write("out/f", std::string(folder.Read("out/f").size(), 'c'));
             SetDate("out/f", date);
         }},
        {"is removed", [&] { folder.Remove("out/f"); }},
        {"is replaced, and has a second name",
         [&] {
             std::filesystem::create_hard_link(path, folder.Native("out/backup"));
             folder.Write("g", "other");
             ::rename(folder.Native("g").c_str(), path.c_str());
         }},
    };
    for (const std::string& text : {"abc"s, std::string(1200000, 'a')}) {
        folder.Write("f", text);
        for (const auto& row : rows) {
            for (const int write : {1, 2}) { // of the log's header and of the record
                SCOPED_TRACE(row.what);
                folder.Remove("out");
                folder.Write("out/f", "old");
                std::map<std::string, std::string> after;
                const auto all = [&] {
                    std::map<std::string, std::string> files;
                    for (const std::string& name : folder.Names("out")) {
                        files[name] = folder.Read("out/" + name);
                    }
                    return files;
                };
                calls.beforeCall = [&, n = 0](Calls::Kind kind) mutable {
                    if (kind == Calls::kWriteAt && ++n == write) {
                        row.happens();
                        after = all();
                    }
                };
                engine.ReplaceTextInFile(folder.Path("f"), u"a", u"b",
                                         {true, false, folder.Path("out")}, 1);
                calls.beforeCall = nullptr;
                EXPECT_TRUE(all() == after);
                EXPECT_THAT(Reports().at(0), testing::HasSubstr("Another program has"));
                writer.Settle();
                EXPECT_EQ(Kept("a"), Strings{});
            }
        }
    }
}

// Of one letter again and again, the result is what the file holds further on than it was read.
TEST_F(InputsTest, AResultThatRunsAheadOfItsReader) {
    constexpr std::size_t kSize = 3000000;
    WriteOld("first", "Z" + std::string(kSize, 'Q'));
    WriteOld("f", std::string(kSize, 'a'));
    for (const char* const name : {"first", "f"}) {
        engine.ReplaceTextInFile(folder.Path(name), u"Z\r\na", u"Y\r\naa", kInPlace, 1);
    }
    writer.Settle();
    EXPECT_EQ(Reports(), Strings{});
    EXPECT_TRUE(folder.Read("first") == "Y" + std::string(kSize, 'Q'));
    EXPECT_TRUE(folder.Read("f") == std::string(2 * kSize, 'a')) << folder.Read("f").size();
    EXPECT_EQ(TakeBack(), Strings{});
    EXPECT_TRUE(folder.Read("first") == "Z" + std::string(kSize, 'Q'));
    EXPECT_TRUE(folder.Read("f") == std::string(kSize, 'a'));
    EXPECT_EQ(DateOf("f"), kOldDate);
}

TEST_F(InputsTest, ALargeInputThatChangesIsReportedOnce) {
    std::string lines;
    while (lines.size() < 2500000) {
        lines += "a:b\r\n";
    }
    folder.Write("f", lines);
    calls.beforeCall = [&, n = 0](Calls::Kind kind) mutable {
        if (kind == Calls::kRead && ++n == 2) {
            folder.Write("f", lines + "more");
        }
    };
    engine.ReplaceTextInFileFieldOnly(folder.Path("f"), u"a", u"b", kInPlace, 1);
    calls.beforeCall = nullptr;
    const Strings reports = Reports();
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_THAT(reports[0], testing::HasSubstr("Another program has"));
    EXPECT_TRUE(folder.Read("f") == lines + "more");
}

} // namespace
} // namespace vexmarrow::test
