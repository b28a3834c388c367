// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Text.h"
#include "core/Core.h"
#include "support/PlainCascade.h"

#include <cerrno>
#include <random>
#include <tuple>

namespace vexmarrow::test {
namespace {

const OutputLocation kInPlace{OutputLocation::BesideInput, u""};
const Strings kRoutines{"ReplaceTextInFile", "ReplaceTextInFileCombo", "ReplaceTextInFileFieldOnly",
                        "ReplaceTextInFileDataOnly"};
enum Routine : std::size_t { kWhole, kSets, kField, kData };

enum Statement { kReading = 1, kReplacing, kNaming, kWriting };

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
};

TEST_F(EngineTest, WhatBecomesOfAFile) {
    // Routine (W whole, S sets, F fields, D values), input, find, replace, output, reports.
    for (const std::string& row : Rows(R"(
             W|aaa|a|b|bbb| W|aaaa|aa|a|aa| W|aaaaa|aa|aaa|aaaaaaa| W|TEL_tel|Tel|x|TEL_tel|
             W|x|x~y|y~z|z| W|y|x~y|y~x|x| W|xAByA|A~B||xy| W|abab|b~aa|~2|2| W|AB|A~B|1|1B|1
             W|aa|a~|b|bb|1 W|aa|~~a|b|aa|2 W|aa|~a|x~y|yy| W|ab|a|1~2~3|1b| W|aa||x|aa| W||a|b||
             W|a^b~c|a^b|x^y|x^y~c| W|a~b^|b||a~^| S|x|x~y|y~z|z| S|ab|a~~b|b~z~c|cc|
             S|ab|a~b|1|1b|1 S|a~b|||a~b| S||a|b|| F|N;CHARSET=a:ana|a|b|N;CHARSET=b:ana~|
             D|N;CHARSET=a:ana|a|b|N;CHARSET=a:bnb~| D|NOTE:meet_a:10|a|b|NOTE:meet_b~|
             F|TEL;TYPE=a:|a|b|TEL;TYPE=b:~| F|X:1:2:3^Y::^|q||X:1~Y:~| D|X:1:2~_a~~|a|b|X:1~_a~~|
             F|:<a:<:a|a|b|:~b:~:a~| D|:<a:<:a|a|b|:~a:~:b~| F|TEL:1|tel|x|TEL:1~|
             F|a:b|a:b|x|a:b~| D|a:b|b~|x|a:b~| D|a:bb|b|1~2:|a:1~2:1~2:~| D|N:a||x|N:a~|
             F|a:b|a~b|x|a:b~| F||a|b|~|)")) {
        const Strings fields = Fields(row);
        const std::size_t routine = "WSFD"s.find(fields[0]);
        folder.Write("f", fields[1]);
        EXPECT_EQ(
            Replace(routine, "f", TextFromUtf8(fields[2]), TextFromUtf8(fields[3])),
            Strings(fields[5].empty() ? 0U : 0U + std::stoul(fields[5]), At(routine, kReplacing)))
            << row;
        EXPECT_EQ(folder.Read("f"), fields[4]) << row;
    }
    const std::u16string kUtf8 = u"UTF-8";
    const struct {
        Routine routine;
        std::string input;
        std::u16string find, replace;
        std::string output;
        std::u16string page = u"windows-1252";
    } rows[] = {
        {kWhole, "\0a\x81\xFF"s, u"\0a"s, u"z", "z\x81\xFF"},
        {kWhole, kMark8 + "\xC3\xA9", u"\u00C3", u"A", kMark8 + "A\xA9"},
        {kWhole, "ab", u"a\r\n?", u"\u0416\r\n!", "?b"},
        {kSets, kMark8 + "\xC3\xA9\xD0\x96", u"\u00E9", u"E", "E?"},
        {kField, kMark8 + "N:\xC3\xA9\r\n", u"N", u"M", "M:\xE9\r\n\r\n"},
        {kWhole, kMark8 + "\xC3\xA9\xC3", u"\u00E9", u"\u0416", kMark8 + "\xD0\x96\xC3", kUtf8},
        {kSets, kMark8 + "\xC3\xA9\xFF", u"\u00E9", u"\u0416", "\xD0\x96\xEF\xBF\xBD", kUtf8},
        {kData, "\xC3\xA9:\xC3\xA9", u"\u00E9", u"", "\xC3\xA9:\r\n", kUtf8},
        {kSets, "\xC3-\xA9", u"-\r\n\u00E9", u"\r\nno", "\xC3\xA9", kUtf8},
        // A lone half, whatever comes after it: nothing, a stray byte, its other half.
        {kSets, "ba", u"a", u"\xD83D", "b?", kUtf8},
        {kSets, "a\x80", u"a", u"\xD83D", "?\x80", kUtf8},
        {kField, "a\x80:", u"a", u"\xD83D", "?\x80:\r\n", kUtf8},
        {kSets, std::string(65535, '-') + "a\x80", u"a", u"\xD83D",
         std::string(65535, '-') + "?\x80", kUtf8},
        {kSets, "a\x80", u"a\r\n\xDC80", u"\xD83D\r\n\xDE00", "\xF0\x9F\x98\x80", kUtf8},
        {kSets, "\xF0\x9F\x92\x80", u"\xD83D", u"\xD83E", "\xF0\x9F\xA2\x80", kUtf8}};
    for (const auto& row : rows) {
        ansi.Choose(row.page);
        folder.Write("f", row.input);
        EXPECT_EQ(Replace(row.routine, "f", row.find, row.replace), Strings{});
        EXPECT_EQ(folder.Read("f"), row.output);
    }
    engine.Settle();
    EXPECT_EQ(calls.openFiles, 0);
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
        const std::size_t borders[]{0, 0, 0, 0, 0, 4096, 4096, 65'536, 65'536, 131'072};
        const std::size_t border = borders[random() % 10];
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

TEST_F(EngineTest, AnyBytesComeOutOfAnyPageAsTheyWentIn) {
    std::mt19937 random(11);
    for (const ChoosableCodePage& page : ChoosableCodePages()) {
        ansi.Choose(page.name);
        std::string bytes = "-"; // and no mark
        for (int i = 0; i < 200'000; ++i) {
            bytes += static_cast<char>(random() % 3 == 0 ? 0xC0 + random() % 64 : random());
        }
        folder.Write("f", bytes);
        for (const std::u16string_view find : {u"nowhere", u"\xDC00"}) { // as bytes, as characters
            Replace(kWhole, "f", find, u"?");
            Replace(kSets, "f", find, u"?");
            EXPECT_TRUE(folder.Read("f") == bytes) << NativeName(page.name);
        }
    }
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
    const Texts find{u"a"}, first{u"1"}, second{u"2"};
    for (const auto& [replace, revision, expected] :
         {std::tuple(&first, 7, "1"), {&second, 8, "2"}, {&first, 0, "1"}, {&second, 0, "2"}}) {
        folder.Write("f", "a");
        engine.ReplaceTextInFileCombo(
            folder.Path("f"), {find, *replace, static_cast<std::uint64_t>(revision)}, kInPlace, 1);
        EXPECT_EQ(folder.Read("f"), expected);
    }
}

TEST_F(EngineTest, NoMatchCrossesACutBetweenPieces) {
    for (const std::size_t routine : {kWhole, kSets}) {
        for (const std::size_t at : {65534U, 65535U, 65536U}) {
            for (const std::string& mark : {""s, kMark8}) {
                const bool characters = routine == kWhole; // so a mark is to the single pair
                const std::size_t before = at - (characters ? mark.size() : 0);
                folder.Write("f", mark + std::string(before, '-') + "ab--");
                Replace(routine, "f", u"ab", u"X");
                const bool cut = at == 65535 && (characters || mark.empty());
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
    const OutputLocation out{OutputLocation::OneFolder, folder.Path("out")};
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
    folder.Write("pieces", std::string(65537, 'a'));
    folder.Write("lines", "a:a\r\nb");
    prompts.whenShown = [&](const Box&) {
        EXPECT_EQ(calls.openFiles, 0) << "a file stays locked while a box is open";
    };
    const OutputLocation gone{OutputLocation::OneFolder, folder.Path("gone")};
    const std::string pair = At(kWhole, kReplacing), write = At(kWhole, kWriting);
    EXPECT_EQ(Replace(kWhole, "pieces", u"a\r\nb\r\nc", u"1", gone),
              (Strings{pair, pair, write, pair, pair, write}));
    for (const std::size_t routine : {kWhole, kSets, kField, kData}) {
        const std::string name = routine < kField ? "pieces" : "lines";
        EXPECT_EQ(Replace(routine, name, u"a", u"b", gone), Strings(2, At(routine, kWriting)));
        EXPECT_THAT(NativeName(prompts.boxes.back().text),
                    testing::HasSubstr("\"" + folder.Native("gone/" + name) + "\": "));
        EXPECT_EQ(Replace(routine, name, u"a", u"b", {OutputLocation::OneFolder, u""}),
                  Strings(2, At(routine, kNaming)));
        EXPECT_EQ(Replace(routine, name, u"a", u"b", {}), Strings(2, At(routine, kWriting)));
    }
    EXPECT_EQ(folder.Names(), (Strings{"lines", "pieces"}));
    EXPECT_EQ(folder.Read("lines"), "a:a\r\nb");
}

TEST_F(EngineTest, OutputPaths) {
    // Input, options, Text3, output.
    for (const std::string& row : Rows(R"(
             //in//x///a.vcf|5|/out|/in/x/a.vcf /a.vcf|5||/a.vcf in/a.vcf|5||in/a.vcf
             /in/a\b.vcf|4|/out|/out/a\b.vcf b.vcf|4|//out//|/out/b.vcf /in/b.vcf|4|/|/b.vcf
             /in/a.vcf||/out|)")) {
        const Strings fields = Fields(row);
        const OutputLocation location{fields[1] == "4"   ? OutputLocation::OneFolder
                                      : fields[1] == "5" ? OutputLocation::BesideInput
                                                         : OutputLocation::Nowhere,
                                      TextFromUtf8(fields[2])};
        EXPECT_EQ(NativeName(OutputPath(TextFromUtf8(fields[0]), location)), fields[3]) << row;
    }
    EXPECT_THROW(OutputPath(u"b.vcf", kInPlace), Failure); // and not into the root
}

} // namespace
} // namespace vexmarrow::test
