// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/CardReplacing.h"

#include <cerrno>
#include <chrono>
#include <random>

namespace vexmarrow::test {
namespace {

enum Statement { kReading = 1, kReplacing, kNaming, kWriting };

using CardFilesTest = CardReplacing;

TEST_F(CardFilesTest, KeepsWhatIsNoCharacterInAWideFile) {
    constexpr std::size_t kLongestLine = 75; // in units
    const auto card = [](const std::u16string& text) {
        return Utf16(u"BEGIN:VCARD\nA:a\n b\n" + text + u"\nEND:VCARD");
    };
    const std::u16string line = u"N:" + std::u16string(kLongestLine - 4, u'\u00E9');
    const struct {
        const char* name;
        std::string input;
        std::u16string find, replace;
        std::string output;
    } rows[] = {
        {"odd length", Utf16(u"a:a") + "a", u"a", u"b", Utf16(u"b:b") + "a"},
        {"half a letter is put in", Utf16(u"ab"), u"a", u"\xDE00",
         Utf16(u"\xDE00"
               u"b")},
        {"halves would be a letter", Utf16(u"\xD83D-\xDE00 -"), u"-", u"",
         Utf16(u"\xD83D-\xDE00 -")},
        {"no character has so many bits", "\0\0\xFE\xFF\0\x11\0:\xFF\xFF\xFF\xFF\0\0\0a\0"s, u"a",
         u"b", "\0\0\xFE\xFF\0\x11\0:\xFF\xFF\xFF\xFF\0\0\0b\0"s},
        {"no half in a file of bytes", "ab", u"a", u"\xDE00", "?b"},
        {"units tell that a line is too long", card(line + u"xx"), u"xx", u"yyy",
         card(line + u"yy\n y")},
        {"bytes do not", card(line + u"x"), u"x", u"yy", card(line + u"yy")},
        {"a letter of two units stays whole", card(line + u"xx"), u"xx", u"y\U0001F600",
         card(line + u"y\n \U0001F600")},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Replaced(Where::WholeLine, row.input, row.find, row.replace), row.output)
            << row.name;
    }
}

TEST_F(CardFilesTest, FindsALetterWhoseUnitsAreReadApart) {
    constexpr std::size_t kUnits = std::size_t{32} * 1024; // that are converted at once
    calls.mostAtOnce = 3;
    for (std::size_t before = kUnits - 2; before <= kUnits + 2; ++before) {
        const std::u16string text(before, u'a');
        EXPECT_EQ(Replaced(Where::WholeLine, Utf16(text + u"\U0001F600\r\n"), u"\U0001F600", u"b"),
                  Utf16(text + u"b\r\n"))
            << before;
    }
}

TEST_F(CardFilesTest, ReportsEachFailureOncePerFile) {
    const struct {
        Where where;
        std::string routine;
        std::string result; // of the line "a:a"
    } rows[] = {{Where::Fields, "ReplaceTextInCards", "A:a"},
                {Where::Values, "ReplaceTextInCards", "a:A"},
                {Where::WholeLine, "ReplaceTextInCards", "A:A"},
                {Where::Sets, "ReplaceSetsInCards", "A:A"}};
    folder.Write("folder/f", "BEGIN:VCARD\na:a\n b\nEND:VCARD\n");
    folder.MakeFolder("out");
    const OutputLocation out = IntoFolder(folder.Path("out"));
    prompts.whenShown = [&](const Box&) {
        EXPECT_LE(calls.openFiles, 1) << "beside the log, a file stays locked while a box is open";
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.routine + " " + row.result);
        const auto report = [&](Statement statement) {
            return "in Zentavor2021/08/31.ReplaceText." + row.routine + " at line " +
                   std::to_string(statement);
        };
        const auto run = [&](const OutputLocation& location) { // two find lines have no partner
            return Replace(row.where, "folder/f", u"a\r\nb\r\nc", u"A", location);
        };
        const std::string partnerless = report(kReplacing);
        flags = {true, true};
        EXPECT_EQ(run(out), (Strings{partnerless, partnerless}));
        EXPECT_EQ(folder.Read("out/f"), "BEGIN:VCARD\n" + row.result + "\n b\nEND:VCARD\n");
        EXPECT_TRUE(flags.IsUtf8 && flags.IsUnicode) << "the flags do not change";
        folder.Remove("out/f");
        EXPECT_EQ(run(IntoFolder(u"")), (Strings{partnerless, partnerless, report(kNaming)}));
        EXPECT_EQ(run(IntoFolder(folder.Path("gone"))),
                  (Strings{partnerless, partnerless, report(kWriting)}));
        EXPECT_EQ(Replace(row.where, "missing", u"a", u"b", out), Strings{report(kReading)});
        calls.FailAt(Calls::kRead, calls.calls[Calls::kRead] + 1, EIO);
        EXPECT_EQ(run(out), Strings{report(kReading)});
        EXPECT_EQ(folder.Names("out"), Strings{});
    }
}

TEST_F(CardFilesTest, PairsApplyInTheirOrderAndAnEmptyBoxDeletes) {
    EXPECT_EQ(Replaced(Where::Values, "A:abcb", u"b\r\nc", u""), "A:a")
        << "an empty replace box deletes every find line";
    EXPECT_EQ(Replaced(Where::Values, "A:ab", u"a\r\nb", u"b\r\na"), "A:aa");
    EXPECT_EQ(Replaced(Where::Sets, "A:ab", u"\r\nb", u"x\r\n"), "A:a")
        << "an empty find text finds nothing";
}

TEST_F(CardFilesTest, LeavesAFileAloneWhenItsTextStays) {
    folder.Write("f", kMark8 + "BEGIN:VCARD\r\nA:a\r\n b=\nEND:VCARD");
    const std::filesystem::path file = folder.Native("f");
    const auto before = std::filesystem::last_write_time(file) - std::chrono::hours(1);
    std::filesystem::last_write_time(file, before);
    Replace(Where::WholeLine, "f", u"ab=\r\nxyz", u"xyz\r\nab=");
    EXPECT_EQ(std::filesystem::last_write_time(file), before);
    Replace(Where::WholeLine, "f", u"ab", u"ba");
    EXPECT_NE(std::filesystem::last_write_time(file), before);
}

TEST_F(CardFilesTest, WorksOnLongLinesInPieces) {
    constexpr std::size_t kPiece = 1'048'576;
    const struct {
        const char* name;
        std::string header, letter, fold;
        std::size_t size; // in pieces
    } rows[] = {
        {.name = "text", .header = "NOTE:", .letter = "c", .fold = "", .size = 11},
        {.name = "folds", .header = "NOTE:", .letter = "c", .fold = "\r\n ", .size = 6},
        {.name = "two bytes", .header = "NOTE:", .letter = "é", .fold = "\r\n\t", .size = 4},
        {.name = "codes",
         .header = "N;QUOTED-PRINTABLE:",
         .letter = "=63",
         .fold = "=\r\n",
         .size = 4},
    };
    for (const auto& row : rows) {
        std::string text = "BEGIN:VCARD\r\n" + row.header, expected = text;
        std::size_t units = row.header.size();
        const auto add = [&](const std::string& letter, const std::string& becomes) {
            const std::string fold = ++units % 61 == 0 ? row.fold : "";
            text += letter + fold;
            expected += becomes + fold;
        };
        // In the middle of a piece, across its end (where nothing is found), at its end and front.
        for (const std::size_t place : {kPiece / 2, kPiece - 1, kPiece + 9, 2 * kPiece - 1,
                                        3 * kPiece - 2, 3 * kPiece, row.size * kPiece - 40}) {
            while (units < place) {
                add(row.letter, row.letter);
            }
            const bool isCut = (place + 1) % kPiece == 0;
            add("a", isCut ? "a" : "x");
            add("b", isCut ? "b" : "y");
        }
        EXPECT_TRUE(Replaced(Where::WholeLine, text + "\r\nab", u"ab", u"xy") ==
                    expected + "\r\nxy")
            << row.name;
    }
}

TEST_F(CardFilesTest, PassesOverAPhotoOfAnySize) {
    std::string photo = "BEGIN:VCARD\r\nPHOTO:";
    for (int i = 0; i < 12'000; ++i) { // long lines and short ones by turns
        photo += std::string(1023, 'a') + (i % 3000 < 1500 ? "a" : "\r\n ");
    }
    EXPECT_TRUE(Replaced(Where::WholeLine, photo + "\r\nA:a", u"a", u"b") == photo + "\r\nA:b");
}

/// Lines of cards with all that matters, in whatever order. Letters and colons are never coded.
std::string RandomCards(std::mt19937& random, int lines) {
    static const Strings beginnings{
        // Fields of text.
        "NOTE:", "NOTE:", "a.TEL;CELL:", "N;QUOTED-PRINTABLE:", "N;CHARSET=utf-8;QUOTED-PRINTABLE:",
        "N;CHARSET=ISO-8859-1:", "N;CHARSET=x:", "X;A=\"a:b", "a b", "\r\n", "\r\n", " ", "\ta",
        ":",
        // Binary ones.
        "P;BASE64:", "Photo;A:data:a;base64,", "KEY:" + std::string(199, 'a'),
        // Cards.
        "AGENT:\r\n", "AGENT:", "BEGIN:VCARD\r\nVERSION:2.1\r\n", "BEGIN:VCARD\nVERSION:3.0\n",
        "BEGIN:VCARD\r\nVERSION:4.0\r\n", "begin:vcard \r\n", "END:VCARD\r\n", "VERSION:2.1"};
    static const Strings parts{"a", "b", "ab", " ", "\\", ";", ":", "=", "é", "\xE9", "\"", "+",
                               std::string(36, 'a'), "\r",
                               // Codes and folds.
                               "=C3=A9", "=e9", "=0D=0A", "x=", "=\r\n", "=\r\n\xA9", "\r\n ",
                               "\r\n\t", "\n ", "\xC3\r\n \xA9"};
    std::string cards;
    while (lines-- > 0) {
        cards += beginnings[random() % beginnings.size()];
        for (auto left = random() % 6; left > 0; --left) {
            cards += parts[random() % parts.size()];
        }
        cards += random() % 8 == 0 ? "\n" : random() % 16 == 0 ? "\r\r\n" : "\r\n";
    }
    return cards;
}

TEST_F(CardFilesTest, LinesThatAreSkimmedComeOutLikeLinesThatAreRead) {
    const Texts texts{u"a", u"b",  u"ab",  u"",   u" ",  u"=", u"\u00E9",
                      u":", u"a;", u"END", u"aa", u"\"", u"N", u"\r"};
    KeepingWriter kept;
    ReplaceText quick(textio, kept, prompts);
    std::mt19937 random(14);
    for (int round = 0; round < 3000; ++round) {
        const std::string input = (round % 8 == 0 ? kMark8 : "") + RandomCards(random, 24);
        Texts find, replace;
        for (auto left = 1 + random() % 3; left > 0; --left) {
            find.push_back(texts[random() % texts.size()]);
            replace.push_back(texts[random() % texts.size()]);
        }
        folder.Write("f", input);
        quick.ReplaceSetsInCards(folder.Path("f"), {find, replace}, kInPlace);
        const std::string result = kept.result.value();
        // Pairs that put the same text back stop the skimming everywhere.
        for (const char16_t* everywhere : {u":", u"a", u"b", u"E"}) {
            find.emplace_back(everywhere);
            replace.emplace_back(everywhere);
        }
        quick.ReplaceSetsInCards(folder.Path("f"), {find, replace}, kInPlace);
        ASSERT_EQ(kept.result.value(), result)
            << "round " << round << testing::PrintToString(find) << testing::PrintToString(replace)
            << " in " << input;
    }
}

TEST_F(CardFilesTest, LargeFilesBecomeWhatSmallOnesDo) {
    constexpr std::size_t kSmall = std::size_t{8} * 1024 * 1024; // bytes that are held in memory
    const struct {
        const char* name;
        std::u16string find, replace;
        bool canLengthen; // a line
    } pairs[] = {
        {"all kinds of pairs", u"a\r\n \r\n\u00E9\r\n\"b", u"bbbb\r\n\r\n=\u0416\r\nA", true},
        {"a pair that shortens lines", u"xx", u"", false}};
    const struct {
        const char* name;
        bool isWide;
        std::string letter; // in most lines; it tells the encoding of a file without a mark
        bool xxStays;       // between the stray bytes \xC3 and \xA9, which must not be a letter
    } files[] = {{"UTF-8", false, "é", true},
                 {"code page", false, "\xE9", false},
                 {"UTF-16", true, "e", false}};
    const std::string filling = "X:ccccccccccccccccccccccccc";
    std::mt19937 random(15);
    for (const auto& file : files) {
        const std::string mark = file.isWide ? kMark16 : "";
        std::string cards =
            "BEGIN:VCARD\r\n" + RandomCards(random, 500) + "\nEND:VCARD\r\nY:\xC3xx\xA9\r\n";
        while (cards.size() < 600'000) {
            cards += filling + file.letter + "\r\n";
        }
        if (file.isWide) {
            cards = Utf16(TextFromUtf8(cards)).substr(mark.size());
        }
        for (const auto& pair : pairs) {
            SCOPED_TRACE(std::string(file.name) + ", " + pair.name);
            calls.mostAtOnce = 1'000'000;
            const std::string small =
                Replaced(Where::WholeLine, mark + cards, pair.find, pair.replace)
                    .substr(mark.size());
            std::string large = mark, expected = mark;
            while (large.size() <= kSmall * (file.isWide ? 2 : 1)) {
                large += cards;
                expected += small;
            }
            calls.mostAtOnce = 100'003;
            EXPECT_TRUE(Replaced(Where::WholeLine, large, pair.find, pair.replace) == expected);
            EXPECT_TRUE(pair.canLengthen || (large == expected) == file.xxStays);
        }
    }
}

} // namespace
} // namespace vexmarrow::test
