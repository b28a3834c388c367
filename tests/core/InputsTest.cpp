// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Writing.h"

namespace vexmarrow::test {
namespace {

struct InputsTest : Writing {
    const OutputLocation out = IntoFolder(folder.Path("out"));

    /// What another program may do to a file.
    const std::map<std::string, std::function<void(const std::string& name)>> changes{
        {"it grows", [&](auto& name) { folder.Write(name, folder.Read(name) + "more"); }},
        {"it shrinks", [&](auto& name) { folder.Write(name, "-"); }},
        {"it changes in a way that neither size nor date tells",
         [&](auto& name) {
             const std::int64_t date = DateOf(name);
             folder.Write(name, std::string(folder.Read(name).size(), 'c'));
             SetDate(name, date);
         }},
        {"it is removed", [&](auto& name) { folder.Remove(name); }},
        {"it is replaced, and has a second name",
         [&](auto& name) {
             folder.Remove(name + "-backup");
             std::filesystem::create_hard_link(folder.Native(name),
                                               folder.Native(name + "-backup"));
             folder.Write("g", "other");
             ::rename(folder.Native("g").c_str(), folder.Native(name).c_str());
         }},
    };

    /// Replaces in f while something happens before the n-th call of a kind; the reports.
    Strings ReplaceWhile(Calls::Kind kind, int n, const std::function<void()>& happens,
                         const OutputLocation& location) {
        calls.beforeCall = [&](Calls::Kind now) {
            if (now == kind && --n == 0) {
                happens();
            }
        };
        engine.ReplaceTextInFile(folder.Path("f"), u"a", u"b", location, 1);
        calls.beforeCall = nullptr;
        return Reports();
    }
};

TEST_F(InputsTest, AnInputThatChangesWhileItIsReadIsNotWritten) {
    const auto hasTold = testing::Contains(testing::HasSubstr("Another program has"));
    folder.MakeFolder("out");
    calls.mostAtOnce = 20000;
    for (const auto& change : changes) {
        for (const OutputLocation& location : {kInPlace, out}) {
            for (const int read : {1, 2, 3, 4}) {
                SCOPED_TRACE(change.first + " at read " + std::to_string(read));
                folder.Write("f", std::string(70000, 'a'));
                std::string after;
                EXPECT_THAT(ReplaceWhile(
                                Calls::kRead, read, [&] { change.second("f"), after = Content(); },
                                location),
                            hasTold);
                EXPECT_EQ(Content(), after);
                EXPECT_EQ(folder.Names("out"), Strings{});
            }
        }
    }
    // Between the last read and the writing.
    folder.Write("f", "abc");
    EXPECT_THAT(ReplaceWhile(
                    Calls::kStatus, 3, [&] { folder.Write("f", "edited"); }, kInPlace),
                hasTold);
    EXPECT_EQ(Content(), "edited");
}

TEST_F(InputsTest, ATargetThatChangesBeforeItIsWrittenIsLeftAlone) {
    for (const std::string& text : {"abc"s, std::string(1200000, 'a')}) {
        folder.Write("f", text);
        for (const auto& change : changes) {
            for (const int write : {1, 2}) { // of the log's header and of the record
                SCOPED_TRACE(change.first);
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
                const Strings reports = ReplaceWhile(
                    Calls::kWriteAt, write, [&] { change.second("out/f"), after = all(); }, out);
                EXPECT_THAT(reports.at(0), testing::AnyOf(testing::HasSubstr("Another program has"),
                                                          testing::HasSubstr("Could not save")));
                EXPECT_TRUE(all() == after);
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
