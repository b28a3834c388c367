// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Text.h"
#include "core/Core.h"
#include "support/PlainCascade.h"

#include <cerrno>
#include <random>

namespace vexmarrow::test {
namespace {

const Strings kRoutines{"ReplaceTextInFile", "ReplaceTextInFileCombo", "ReplaceTextInFileFieldOnly",
                        "ReplaceTextInFileDataOnly"};
enum Routine : std::size_t { kWhole, kSets, kField, kData };

enum Statement { kReading = 1, kReplacing, kNaming, kWriting };

/// A routine and what it is given.
struct Call {
    Routine routine;
    std::u16string find, replace;
};
const auto Pair = [](auto find, auto replace) { return Call{kWhole, find, replace}; };
const auto Sets = [](auto find, auto replace) { return Call{kSets, find, replace}; };
const auto InFields = [](auto find, auto replace) { return Call{kField, find, replace}; };
const auto InValues = [](auto find, auto replace) { return Call{kData, find, replace}; };

/// What a routine makes of a file.
struct Case {
    const char* name;
    std::string input;
    Call call;
    std::string output;
    std::size_t partnerless = 0; ///< find texts that are reported
};

std::string At(std::size_t routine, int statement) {
    const int splits = routine == kWhole && statement > kReading ? 2 : 0; // of the single pair
    return "in Zentavor2021/08/31.ReplaceText." + kRoutines[routine] + " at line " +
           std::to_string(statement + splits);
}

struct EngineTest : Core {
    /// Calls one of the four routines on a file of the folder; the lines of the texts are the
    /// entries of the sets.
    Strings Replace(std::size_t routine, std::string_view name, std::u16string_view find,
                    std::u16string_view replace, const OutputLocation& location = kInPlace) {
        const std::u16string path = folder.Path(name);
        const auto finds = Split(find, kCrLf), replaces = Split(replace, kCrLf);
        if (routine == kWhole) {
            engine.ReplaceTextInFile(path, find, replace, location, 1);
        } else if (routine == kSets) {
            const Texts findTexts(finds.begin(), finds.end());
            const Texts replaceTexts(replaces.begin(), replaces.end());
            engine.ReplaceTextInFileCombo(path, {findTexts, replaceTexts}, location, 1);
        } else if (routine == kField) {
            engine.ReplaceTextInFileFieldOnly(path, find, replace, location, 1);
        } else {
            engine.ReplaceTextInFileDataOnly(path, find, replace, location, 1);
        }
        return prompts.TakeSummaries();
    }
    void Try(const std::vector<Case>& cases) {
        for (const Case& one : cases) {
            SCOPED_TRACE(one.name);
            folder.Write("f", one.input);
            EXPECT_EQ(Replace(one.call.routine, "f", one.call.find, one.call.replace),
                      Strings(one.partnerless, At(one.call.routine, kReplacing)));
            EXPECT_EQ(folder.Read("f"), one.output);
        }
        engine.Settle();
        EXPECT_EQ(calls.openFiles, 0);
    }
};

TEST_F(EngineTest, WhatBecomesOfAFile) {
    Try({
        // A pair whose lines are pairs.
        {"occurrences do not overlap", "aaaaa", Pair(u"aa", u"a"), "aaa"},
        {"what is put in is not searched", "aaaa", Pair(u"aa", u"aaa"), "aaaaaa"},
        {"case counts", "TEL tel", Pair(u"Tel", u"x"), "TEL tel"},
        {"later pairs find what earlier ones put in", "x", Pair(u"x\r\ny", u"y\r\nz"), "z"},
        {"earlier pairs do not", "y", Pair(u"x\r\ny", u"y\r\nx"), "x"},
        {"an empty box deletes", "xAByA", Pair(u"A\r\nB", u""), "xy"},
        {"an empty line deletes", "abab", Pair(u"b\r\naa", u"\r\n2"), "2"},
        {"a line lacks a partner", "AB", Pair(u"A\r\nB", u"1"), "1B", 1},
        {"an empty line lacks one", "aa", Pair(u"a\r\n", u"b"), "bb", 1},
        {"two lines lack one", "aa", Pair(u"\r\n\r\na", u"b"), "aa", 2},
        {"an empty line finds nothing", "aa", Pair(u"\r\na", u"x\r\ny"), "yy"},
        {"lines to put in are left over", "ab", Pair(u"a", u"1\r\n2\r\n3"), "1b"},
        {"an empty box finds nothing", "aa", Pair(u"", u"x"), "aa"},
        {"empty file", "", Pair(u"a", u"b"), ""},
        {"LF is text", "a\nb\r\nc", Pair(u"a\nb", u"x\ny"), "x\ny\r\nc"},
        {"line ends stay", "a\r\nb\n", Pair(u"b", u""), "a\r\n\n"},
        // Sets.
        {"set without a replace text", "ab", Sets(u"a\r\nb", u"1"), "1b", 1},
        {"no sets", "a\r\nb", Sets(u"", u""), "a\r\nb"},
        // Fields and values: a line has two parts and ends with CR LF.
        {"fields", "N;CHARSET=a:ana", InFields(u"a", u"b"), "N;CHARSET=b:ana\r\n"},
        {"a third part is lost", "NOTE:meet a:10", InValues(u"a", u"b"), "NOTE:meet b\r\n"},
        {"a colon is in neither part", "a:b", InFields(u"a:b", u"x"), "a:b\r\n"},
        {"line ends and colons come in", "a:bb", InValues(u"b", u"1\r\n2:"),
         "a:1\r\n2:1\r\n2:\r\n"},
        {"a box is one text", "a:b", InFields(u"a\r\nb", u"x"), "a:b\r\n"},
        // Encodings.
        {"zero and undefined bytes", "\0a\x81\xFF"s, Pair(u"\0a"s, u"z"), "z\x81\xFF"},
        {"the pair sees no mark", kMark8 + "é", Pair(u"\u00C3", u"A"), kMark8 + "A\xA9"},
        {"the page lacks a letter", "ab", Pair(u"a\r\n?", u"\u0416\r\n!"), "?b"},
        {"sets drop the mark", kMark8 + "éЖ", Sets(u"\u00E9", u"E"), "E?"},
    });
}

TEST_F(EngineTest, WhatBecomesOfAFileOfThePageUtf8) {
    ansi.Choose(u"UTF-8");
    const std::string upToACut(kPieceSize - 1, '-');
    Try({
        {"a stray byte", kMark8 + "é\xC3", Pair(u"\u00E9", u"\u0416"), kMark8 + "Ж\xC3"},
        {"a stray byte behind a mark", kMark8 + "é\xFF", Sets(u"\u00E9", u"\u0416"),
         "\xD0\x96\xEF\xBF\xBD"},
        {"bytes that meet are no letter", "\xC3-\xA9", Sets(u"-\r\n\u00E9", u"\r\nno"), "é"},
        // A lone half, whatever comes after it: nothing, a stray byte, its other half.
        {"half at the end", "ba", Sets(u"a", u"\xD83D"), "b?"},
        {"half before a byte", "a\x80", Sets(u"a", u"\xD83D"), "?\x80"},
        {"at a cut", upToACut + "a\x80", Sets(u"a", u"\xD83D"), upToACut + "?\x80"},
        {"half before a half", "a\x80", Sets(u"a\r\n\xDC80", u"\xD83D\r\n\xDE00"), "😀"},
        {"half of a letter", "💀", Sets(u"\xD83D", u"\xD83E"), "\xF0\x9F\xA2\x80"},
    });
}

/// What must come of a text, told unit by unit and one pair after the other.
std::u32string PlainResult(std::size_t routine, TextFormat format, std::u32string text,
                           const std::vector<BasicReplacementPair<char32_t>>& pairs) {
    const bool utf8 = format == TextFormat::Utf8;
    std::u32string result;
    if (routine == kSets) {
        const std::size_t size = utf8 ? text.size() : kPieceSize;
        for (; !text.empty(); text.erase(0, size)) {
            std::u32string piece = text.substr(0, size);
            for (const auto& pair : pairs) {
                piece = PlainStep(piece, pair);
            }
            result += piece;
        }
        return result;
    }
    for (bool more = true; more;) {
        const std::size_t end = utf8 ? text.find(U"\r\n") : text.find_first_of(U"\r\n");
        std::u32string line = text.substr(0, end);
        const bool isPair = end != text.npos && text.substr(end, 2) == U"\r\n";
        text.erase(0, end == text.npos ? end : end + (isPair ? 2 : 1));
        more = utf8 ? end != text.npos : !text.empty();
        if (const std::size_t colon = line.find(U':'); colon != line.npos) {
            const std::u32string rest = line.substr(colon + 1);
            std::u32string sides[]{line.substr(0, colon), rest.substr(0, rest.find(U':'))};
            std::u32string& side = sides[routine == kField ? 0 : 1];
            side = PlainStep(side, pairs[0]);
            line = sides[0] + U":" + sides[1];
        }
        result += line + U"\r\n";
    }
    return result;
}

// Most files are worked on in bytes, and in parts where they can be long. What must come out is
// told in characters, of the whole file.
TEST_F(EngineTest, BytesAndCharactersComeToTheSame) {
    std::mt19937 random(7);
    const Strings letters{
        "a",   "b",    ":",    "\n",       "\r\n",         "?",    "\xC3\xA9", "\xD0\x96",
        "\r",  "\xC3", "\xA9", "\xF0\x9F", "\xED\xA0\xBD", "\x81", "\x98\x80", "\0"s,
        kMark8};
    constexpr std::size_t kCharacters = 8; // so many of them are characters
    const std::string smile = "\xF0\x9F\x98\x80", skull = "\xF0\x9F\x92\x80";
    const auto text = [&](std::size_t most, std::size_t kinds) {
        std::string bytes;
        for (std::size_t count = random() % (most + 1); count > 0; --count) {
            bytes +=
                random() % 8 == 0 ? (random() % 2 == 0 ? smile : skull) : letters[random() % kinds];
        }
        return bytes;
    };
    const auto decoded = [&](const std::string& bytes) {
        std::u16string characters;
        ansi.Page().Decode(bytes, characters);
        return characters;
    };
    const auto widened = [](const std::u16string& units) {
        return std::u32string(units.begin(), units.end());
    };
    const Texts odd{u"\xD83D", u"\xDE00", u"\u0416",
                    u"\xDCC3\xDCA9"}; // halves, bytes like a letter
    for (int round = 0; round < 1000; ++round) {
        ansi.Choose(round % 2 == 0 ? u"UTF-8" : u"windows-1252");
        const auto format = static_cast<TextFormat>(random() % 3);
        const bool wide = round % 2 == 0 && format == TextFormat::Ansi;
        const std::size_t kinds = random() % 6 == 0 ? letters.size() : kCharacters;
        const bool isOdd = random() % 8 == 0;
        Texts find(1 + random() % 4), replace(find.size());
        std::vector<BasicReplacementPair<char32_t>> pairs;
        for (std::size_t i = 0; i < find.size(); ++i) {
            find[i] = decoded(text(3, kinds)) + (isOdd ? odd[random() % 4] : u"");
            replace[i] = decoded(text(2, kinds)) + (isOdd ? odd[random() % 4] : u"");
            pairs.push_back(
                wide ? BasicReplacementPair<char32_t>{WideText(find[i]), WideText(replace[i])}
                     : BasicReplacementPair<char32_t>{widened(find[i]), widened(replace[i])});
        }
        // What counts lies at the beginning, or where a file is read on, or a piece ends.
        const std::size_t borders[]{0, 0, 0, 4096, kPieceSize, 2 * kPieceSize};
        const std::size_t border = borders[random() % 6];
        std::string before = std::string(border - std::min<std::size_t>(border, random() % 16),
                                         random() % 4 == 0 ? 'a' : '-') +
                             text(40, kCharacters) + text(40, letters.size());
        std::u32string units = widened(decoded(before));
        if (wide) {
            units.clear();
            DecodeUtf8(before, units);
        } else if (format == TextFormat::Utf8) {
            units = widened(TextFromUtf8(before));
            before.insert(0, kMark8);
        } else if (format == TextFormat::Utf16) {
            before = Utf16(decoded(before));
        } else if (before.starts_with(kMark8)) {
            continue;
        }
        calls.mostAtOnce = random() % 4 == 0 ? 1'000'000 : border + 1 + random() % 64;
        for (const std::size_t routine : {kSets, kField, kData}) {
            const std::u32string after = PlainResult(routine, format, units, pairs);
            const std::u16string characters(after.begin(), after.end());
            std::string expected;
            if (wide) {
                EncodeUtf8(after, expected, '?');
            } else if (format == TextFormat::Utf16) {
                expected = Utf16(characters);
            } else {
                ansi.Page().Encode(characters, expected);
            }
            folder.Remove("f"); // overwriting a file that was cut waits for the disk
            folder.Write("f", before);
            if (routine == kSets) {
                engine.ReplaceTextInFileCombo(folder.Path("f"), {find, replace}, kInPlace, 1);
            } else {
                Replace(routine, "f", find[0], replace[0]);
            }
            ASSERT_TRUE(folder.Read("f") == expected)
                << "round " << round << " format " << static_cast<int>(format) << " "
                << kRoutines[routine] << testing::PrintToString(find)
                << testing::PrintToString(replace);
        }
    }
    calls.mostAtOnce = 1'000'000;
    ansi.Choose(u"windows-1252");
    folder.Write("f", "ab");
    Replace(kSets, "f", u"a\r\n\u0416", u"\u0416\r\nb");
    EXPECT_EQ(folder.Read("f"), "bb") << "a later pair finds what the page lacks";
}

TEST_F(EngineTest, PairsStayReadyUntilTheyChange) {
    const auto result = [&](std::u16string_view find, std::u16string_view replace) {
        folder.Write("f", "a:a\xE9");
        Replace(kWhole, "f", find, replace);
        return folder.Read("f");
    };
    EXPECT_EQ(result(u"a", u"b"), "b:b\xE9");
    EXPECT_EQ(result(u"a", u"c"), "c:c\xE9");
    EXPECT_EQ(result(u"a\r\n\u00E9", u"c\r\ne"), "c:ce");
    Replace(kField, "f", u"a\r\nc", u"1\r\n2"); // one pair here, two there
    EXPECT_EQ(folder.Read("f"), "c:ce\r\n");
    Replace(kWhole, "f", u"a\r\nc", u"1\r\n2");
    EXPECT_EQ(folder.Read("f"), "2:2e\r\n");
    EXPECT_EQ(result(u"\u00E9", u"e"), "a:ae");
    ansi.Choose(u"windows-1251");
    EXPECT_EQ(result(u"\u00E9", u"e"), "a:a\xE9") << "it is another letter now";
    EXPECT_EQ(result(u"\u0439", u"\u0416"), "a:a\xC6");
    const struct {
        const char* name;
        Texts replace;
        std::uint64_t revision;
        std::string result;
    } runs[] = {{"sets", {u"1"}, 7, "1"},
                {"other sets", {u"2"}, 8, "2"},
                {"without a revision", {u"1"}, 0, "1"},
                {"and others, too", {u"2"}, 0, "2"}};
    for (const auto& run : runs) {
        folder.Write("f", "a");
        engine.ReplaceTextInFileCombo(folder.Path("f"), {Texts{u"a"}, run.replace, run.revision},
                                      kInPlace, 1);
        EXPECT_EQ(folder.Read("f"), run.result) << run.name;
    }
}

TEST_F(EngineTest, NoMatchCrossesACutBetweenPieces) {
    for (const std::size_t routine : {kWhole, kSets}) {
        for (const std::size_t at : {kPieceSize - 2, kPieceSize - 1, kPieceSize}) {
            for (const std::string& mark : {""s, kMark8}) {
                const bool characters = routine == kWhole; // so a mark is to the single pair
                const std::size_t before = at - (characters ? mark.size() : 0);
                folder.Write("f", mark + std::string(before, '-') + "ab--");
                Replace(routine, "f", u"ab", u"X");
                const bool cut = at == kPieceSize - 1 && (characters || mark.empty());
                EXPECT_TRUE(folder.Read("f") == (characters ? mark : "") +
                                                    std::string(before, '-') + (cut ? "ab" : "X") +
                                                    "--")
                    << kRoutines[routine] << " at " << at << " after " << mark;
            }
        }
    }
}

TEST_F(EngineTest, TheSinglePairGoesByTheLastDetection) {
    folder.Write("plain", "a\0b\0"s);
    folder.Write("utf16", Utf16(u"N:a\u0416\nb"));
    EXPECT_EQ(Replace(kSets, "utf16", u"a", u"\u0416"), Strings{});
    EXPECT_EQ(folder.Read("utf16"), Utf16(u"N:\u0416\u0416\nb"));
    Replace(kWhole, "plain", u"ab", u"\u0416");
    EXPECT_EQ(folder.Read("plain"), Utf16(u"\u0416"));
    folder.Write("plain", "ab");
    Replace(kWhole, "missing", u"a", u"b"); // detects nothing
    Replace(kWhole, "plain", u"ab", u"z");
    EXPECT_EQ(folder.Read("plain"), Utf16(u"\u6261"));
    folder.Write("plain", "ab");
    Replace(kField, "plain", u"-", u"-"); // detects
    Replace(kWhole, "plain", u"ab", u"z");
    EXPECT_EQ(folder.Read("plain"), "z\r\n");
    Replace(kData, "utf16", u"\u0416", u"d");
    EXPECT_EQ(folder.Read("utf16"), Utf16(u"N:dd\r\nb\r\n"));
}

TEST_F(EngineTest, AFailedReadIsOneReportAndNothingIsWritten) {
    folder.Write("f", "a:a\r\na:a\r\n");
    folder.MakeFolder("out");
    const OutputLocation out = IntoFolder(folder.Path("out"));
    for (const std::size_t routine : {kWhole, kSets, kField, kData}) {
        calls.mostAtOnce = 4;
        calls.FailAt(Calls::kRead, calls.calls[Calls::kRead] + 2, EIO);
        EXPECT_EQ(Replace(routine, "f", u"a\r\nb", u"b", out), Strings{At(routine, kReading)});
        EXPECT_EQ(Replace(routine, "missing", u"a\r\nb", u"b", out),
                  Strings{At(routine, kReading)});
    }
    EXPECT_EQ(folder.Names("out"), Strings{});
    EXPECT_EQ(folder.Read("f"), "a:a\r\na:a\r\n");
}

TEST_F(EngineTest, AFailedWriteIsReportedForEveryPieceOrLineInTheOrderOfTheStatements) {
    folder.Write("pieces", std::string(kPieceSize + 1, 'a'));
    folder.Write("lines", "a:a\r\nb");
    prompts.whenShown = [&](const Box&) {
        EXPECT_EQ(calls.openFiles, 0) << "a file stays locked while a box is open";
    };
    const OutputLocation gone = IntoFolder(folder.Path("gone"));
    const std::string pair = At(kWhole, kReplacing), write = At(kWhole, kWriting);
    EXPECT_EQ(Replace(kWhole, "pieces", u"a\r\nb\r\nc", u"1", gone),
              (Strings{pair, pair, write, pair, pair, write}));
    for (const std::size_t routine : {kWhole, kSets, kField, kData}) {
        const std::string name = routine < kField ? "pieces" : "lines";
        EXPECT_EQ(Replace(routine, name, u"a", u"b", gone), Strings(2, At(routine, kWriting)));
        EXPECT_THAT(NativeName(prompts.boxes.back().text),
                    testing::HasSubstr("\"" + folder.Native("gone/" + name) + "\": "));
        EXPECT_EQ(Replace(routine, name, u"a", u"b", IntoFolder(u"")),
                  Strings(2, At(routine, kNaming)));
        EXPECT_EQ(Replace(routine, name, u"a", u"b", {}), Strings(2, At(routine, kWriting)));
    }
    EXPECT_EQ(folder.Names(), (Strings{"lines", "pieces"}));
    EXPECT_EQ(folder.Read("lines"), "a:a\r\nb");
}

TEST(OutputPath, IsTheNameOfTheInputInTheFolder) {
    using enum OutputLocation::Kind;
    const struct {
        const char* name;
        std::u16string_view input;
        OutputLocation::Kind kind;
        std::u16string_view folder, output;
    } rows[] = {
        {"beside the input", u"//in//x///a.vcf", BesideInput, u"/out", u"/in/x/a.vcf"},
        {"in the root", u"/a.vcf", BesideInput, u"", u"/a.vcf"},
        {"below the working folder", u"in/a.vcf", BesideInput, u"", u"in/a.vcf"},
        {"a backslash is no separator", uR"(/in/a\b.vcf)", OneFolder, u"/out", uR"(/out/a\b.vcf)"},
        {"runs of slashes", u"b.vcf", OneFolder, u"//out//", u"/out/b.vcf"},
        {"into the root", u"/in/b.vcf", OneFolder, u"/", u"/b.vcf"},
        {"nowhere", u"/in/a.vcf", Nowhere, u"/out", u""},
    };
    for (const auto& row : rows) {
        const OutputLocation location{row.kind, std::u16string(row.folder)};
        EXPECT_EQ(OutputPath(row.input, location), row.output) << row.name;
    }
    EXPECT_THROW(OutputPath(u"b.vcf", kInPlace), Failure) << "no folder, and not the root either";
}

} // namespace
} // namespace vexmarrow::test
