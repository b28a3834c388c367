// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Core.h"
#include "shell/Choices.h"
#include "shell/ProductTexts.h"
#include "shell/Trap.h"

#include <unicode/ustring.h>

#include <cstdlib>
#include <random>
#include <set>

namespace vexmarrow::test {
namespace {

std::u16string ByIcu(std::string_view bytes) {
    std::u16string text(bytes.size() + 1, u'\0');
    std::int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8WithSub(text.data(), static_cast<std::int32_t>(text.size()), &length, bytes.data(),
                         static_cast<std::int32_t>(bytes.size()), 0xFFFD, nullptr, &error);
    return text.substr(0, static_cast<std::size_t>(length));
}

TEST(Utf8, IsReadAsIcuReadsItAndNamesComeBackByteForByte) {
    const std::string hostile = "aZ\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xE1\xEC\xED\xEE"
                                "\xEF\xF0\xF1\xF3\xF4\xF5\xF8\xFE\xFF";
    const Strings well{"a", "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"};
    const Strings ill{"\xC0\xAF",         "\xC1\xBF",         "\xE0\x9F\xBF",
                      "\xED\xA0\x80",     "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80",
                      "\xF5\x80\x80\x80", "\xE2\x82",         "\xF0\x9F\x98"};
    std::mt19937 random(20260101);
    for (int round = 0; round < 40000; ++round) {
        std::string bytes(random() % (round % 4 == 0 ? 5 : 40), '\0');
        for (char& byte : bytes) {
            byte = random() % 8 == 0 ? static_cast<char>(random()) : hostile[random() % 27];
        }
        for (std::size_t i = round % 4 == 0 ? 120 : 0; i > 0; --i) { // so much is read at a glance
            bytes.insert(i % 2 == 0 ? 0 : bytes.size(), well[random() % 4]);
        }
        if (round % 8 == 0) {
            bytes.insert(bytes.size() / 2, ill[random() % ill.size()]);
        }
        const std::u16string text = TextFromUtf8(bytes);
        ASSERT_EQ(text, ByIcu(bytes)) << testing::PrintToString(bytes);
        const std::u16string name = TextFromNativeName(bytes);
        ASSERT_EQ(NativeName(name), bytes) << testing::PrintToString(bytes);
        ASSERT_EQ(name == text, text.find(u'\uFFFD') == std::u16string::npos);
        ASSERT_EQ(IsUtf8(bytes), name == text);
        std::string room, again;
        ASSERT_EQ(WellFormedUtf8(bytes, room), NativeName(text));
        std::u32string wide = WideText(name), decoded;
        DecodeUtf8(bytes, decoded);
        ASSERT_EQ(decoded, wide);
        EncodeUtf8(wide, again, '?');
        ASSERT_EQ(again, bytes);
        const std::size_t most = random() % (round % 4 == 0 ? 400 : 40);
        const TextStretch stretch = MeasureUtf8(bytes, most, false);
        const bool parts = stretch.units == most + 1; // a character of two units
        ASSERT_TRUE(parts ? name[most] >= 0xDC00 : stretch.units == std::min(most, name.size()));
        ASSERT_EQ(NativeName(name.substr(0, stretch.units)), bytes.substr(0, stretch.bytes));
        const std::size_t there = random() % (bytes.size() + 1);
        const std::size_t taken = MeasureUtf8(bytes.substr(0, there), bytes.size(), true).bytes;
        ASSERT_TRUE(taken <= there && taken + 3 >= there);
        ASSERT_EQ(TextFromNativeName(bytes.substr(0, taken)) +
                      TextFromNativeName(bytes.substr(taken)),
                  name);
    }
    std::string bytes; // a half before a stray byte is no character, and neither is a lone one
    EncodeUtf8(U"\xD83D\x110080\xD83D\xDC80\xDC80"s, bytes, '?');
    EXPECT_EQ(bytes, "?\x80\xF0\x9F\x92\x80?");
    EXPECT_EQ(TextFromNativeName("a\xE9\xF0\x9F"), (std::u16string{u'a', 0xDCE9, 0xDCF0, 0xDC9F}));
}

TEST(CodePage, EveryByteComesOutAsItWentIn) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all.push_back(static_cast<char>(byte));
    }
    std::vector<std::u16string_view> names{u"iso-8859-1", u"iso-8859-6", u"koi8-r",
                                           u"us-ascii",   u"hp-roman8",  u"ibm-1133"};
    for (const ChoosableCodePage& page : ChoosableCodePages()) {
        names.push_back(page.name);
    }
    for (const std::u16string_view name : names) {
        SCOPED_TRACE(NativeName(name));
        const auto page = MakeCodePage(name);
        std::u16string text;
        page->Decode(all, text);
        EXPECT_EQ(std::set(text.begin(), text.end()).size(), all.size());
        EXPECT_EQ(NativeName(text.substr(0, 128)), all.substr(0, 128)) << "ASCII";
        std::string bytes = "before ";
        page->Encode(text, bytes);
        EXPECT_EQ(bytes, "before " + all);
    }
}

TEST(CodePage, EveryByteHasACharacter) {
    const struct {
        const char* name;
        std::u16string page;
        int byte;
        char16_t character;
    } rows[] = {
        {"character of its own", u"windows-1252", 0x80, u'\u20AC'},
        {"control character", u"iso-8859-1", 0x80, u'\u0080'},
        {"no character below A0", u"windows-1252", 0x81, u'\u0081'},
        {"nor in ASCII", u"us-ascii", 0x9F, u'\u009F'},
        {"no character above it", u"us-ascii", 0xE9, u'\uF7E9'},
        {"nor in Arabic", u"iso-8859-6", 0xA1, u'\uF7A1'},
        {"the character of a lower byte", u"hp-roman8", 0xA9, u'\uF7A9'},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto page = MakeSingleByteCodePage(row.page);
        std::u16string text;
        page->Decode(std::string(1, static_cast<char>(row.byte)), text);
        EXPECT_EQ(text, std::u16string(1, row.character));
        EXPECT_EQ(page->CodeOf(row.character), row.byte);
    }
}

TEST(CodePage, WritesAQuestionMarkForEachUnitThatItLacks) {
    std::string bytes, room;
    const auto page = MakeSingleByteCodePage(u"windows-1252");
    const std::u16string lacking = u"\0a\U0001F600\u0416\u0100\uFF21\u2032\u2212\uFEFFz"s;
    page->Encode(lacking, bytes);
    EXPECT_EQ(bytes, "\0a????????z"s) << "and nothing similar in its place";
    EXPECT_EQ(page->FromUtf8(NativeName(lacking), room), bytes);
}

TEST(CodePage, ARefusedPageLeavesTheOneInForce) {
    AnsiCodePage ansi(u"windows-1251");
    for (const std::u16string_view name :
         {u"UTF-16LE", u"utf-7", u"shift_jis", u"gb18030", u"big5", u"euc-kr", u"iso-2022-jp",
          u"hz", u"ibm-37", u"ibm-1047", u"windows-1252,version=1", u"UTF-8,x", u"", u" ",
          u"no such page", u"\u0416"}) {
        EXPECT_THROW(ansi.Choose(name), Failure) << NativeName(name);
        EXPECT_EQ(ansi.Page().Name(), u"windows-1251");
    }
    EXPECT_THROW(ansi.Choose(u"UTF-8\0x"s), Failure);
    ansi.Choose(u"koi8-r");
    EXPECT_EQ(ansi.Page().CodeOf(u'\u0430'), 0xC1);
}

TEST(CodePage, HasTheLettersOfTheLanguageThatItIsFor) {
    const struct {
        const char* languages;
        char16_t letter; // which the pages for others lack
        Strings locales;
    } rows[] = {
        {"Central European",
         u'ř',
         {"pl_PL.UTF-8", "cs_CZ", "hu_HU@euro", "sr_RS.UTF-8@latin", "sr@latin"}},
        {"Cyrillic", u'ж', {"sr_RS.UTF-8", "ru_RU.UTF-8", "uk_UA", "bg"}},
        {"Greek", u'λ', {"el_GR"}},
        {"Turkish", u'ğ', {"tr_TR.UTF-8"}},
        {"Hebrew", u'\u05E9', {"he"}},
        {"Arabic", u'\u0634', {"ar_EG"}},
        {"Baltic", u'ė', {"lt_LT"}},
        {"Vietnamese", u'ơ', {"vi_VN"}},
        {"Thai", u'ก', {"th_TH"}},
        {"Western", u'ð', {"is_IS.UTF-8", "C.UTF-8", "POSIX", "r", ""}},
    };
    for (const auto& row : rows) {
        for (const std::string& locale : row.locales) {
            SCOPED_TRACE(row.languages + (": " + locale));
            const auto page = MakeCodePage(CodePageForLocale(locale));
            EXPECT_NE(page->CodeOf(row.letter), kSubstitute);
        }
    }
}

TEST(CodePage, FollowsTheEnvironment) {
    ::setenv("LC_ALL", "th", 1);
    ::setenv("LC_CTYPE", "el", 1);
    ::setenv("LANG", "ru", 1);
    for (const char* const variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        EXPECT_EQ(CodePageOfEnvironment(), CodePageForLocale(std::getenv(variable)));
        ::setenv(variable, "", 1); // as good as not set
    }
    EXPECT_EQ(CodePageOfEnvironment(), u"windows-1252");
}

TEST(Shell, AReportTellsWhatAndWhere) {
    ScriptedPrompts prompts;
    Trap trap(prompts, u"Form1.PushButton1_Click");
    EXPECT_FALSE(trap.Do(7, [] { throw Failure(u"It broke."); }));
    trap.Do(12, [] { throw std::bad_alloc(); });
    trap.Do(0, [] { throw std::runtime_error("\xC3\xA9"); });
    EXPECT_TRUE(trap.Do(8, [] {}));
    ASSERT_EQ(prompts.boxes.size(), 3U);
    EXPECT_EQ(prompts.boxes[0].text,
              u"It broke.\r\nin Zentavor2021/08/31.Form1.PushButton1_Click at line 7\r\r"
              u"Please email screenshot of this message to support@vexmarrow.example");
    EXPECT_TRUE(prompts.boxes[1].text.starts_with(u"Out of memory.\r\nin Zentavor2021"));
    EXPECT_TRUE(prompts.boxes[2].text.starts_with(u"\u00E9\r\nin Zentavor2021"));
    EXPECT_EQ(prompts.boxes[2].title, u"Application Error");
    EXPECT_EQ(prompts.boxes[2].style, BoxStyle::Exclamation);
    EXPECT_THROW(trap.Do(1, [] { throw ProgramEnded(); }), ProgramEnded);
    prompts.whenShown = [](const Box&) { throw ProgramEnded(); };
    EXPECT_THROW(trap.Do(1, [] { throw Failure(u""); }), ProgramEnded);
}

TEST(Shell, ReadsBooleansAndIntegers) {
    MemorySettings settings;
    const auto read = [&](const auto& choice, const char* text) {
        settings.values[u"key"] = TextFromUtf8(text);
        try {
            return std::to_string(LoadChoice(settings, choice));
        } catch (const Failure&) {
            return std::string();
        }
    };
    const Choice<bool> boolean{u"key", u""};
    const Choice<int> integer{u"key", u""};
    const struct {
        const char* text;
        std::string boolean, integer; // empty: it is none
    } rows[] = {
        {.text = "True", .boolean = "1", .integer = ""},
        {.text = "fALSE", .boolean = "0", .integer = ""},
        {.text = " true ", .boolean = "1", .integer = ""},
        {.text = "0", .boolean = "0", .integer = "0"},
        {.text = "-1", .boolean = "1", .integer = "-1"},
        {.text = " 12 ", .boolean = "1", .integer = "12"},
        {.text = "2.5", .boolean = "1", .integer = "2"}, // halves go to the even number
        {.text = "3.5", .boolean = "1", .integer = "4"},
        {.text = "+3", .boolean = "1", .integer = "3"},
        {.text = "1e2", .boolean = "1", .integer = "100"},
        {.text = "2147483647", .boolean = "1", .integer = "2147483647"},
        {.text = "2147483648", .boolean = "1", .integer = ""},
        {.text = "-2147483648.5", .boolean = "1", .integer = "-2147483648"},
        {.text = "-2147483649", .boolean = "1", .integer = ""},
        {.text = "4.9e-324", .boolean = "1", .integer = "0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(read(boolean, row.text), row.boolean);
        EXPECT_EQ(read(integer, row.text), row.integer);
    }
    for (const char* neither : {"", " ", "yes", "inf", "nan", "1e999", "1x", "0x1", "+-3", "--3",
                                "1 2", ".", "e", "Trué"}) {
        EXPECT_EQ(read(boolean, neither), "") << neither;
        EXPECT_EQ(read(integer, neither), "") << neither;
    }
}

TEST(Shell, TitlesAreCutAtABlank) {
    EXPECT_EQ(ApplicationTitle(kProductName), u"Vexmarrow");
    EXPECT_EQ(ApplicationTitle(std::u16string(40, u'x') + u" y z"), std::u16string(40, u'x'));
}

} // namespace
} // namespace vexmarrow::test
