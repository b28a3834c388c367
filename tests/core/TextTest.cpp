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
    // Each page with one of its bytes and the character of that byte, in hexadecimal.
    for (const std::string& row : Rows(R"(
             windows-1250|8A|160 windows-1251|E0|430 windows-1252|80|20AC windows-1252|81|81
             windows-1253|E1|3B1 windows-1254|F0|11F windows-1255|E0|5D0 windows-1256|C7|627
             windows-1257|E8|10D windows-1258|F0|111 windows-874|A1|E01 iso-8859-1|80|80
             iso-8859-6|A1|F7A1 koi8-r|C1|430 us-ascii|E9|F7E9 us-ascii|9F|9F
             hp-roman8|A9|F7A9 hp-roman8|BB|F7BB ibm-1133|DF|F7DF)")) {
        SCOPED_TRACE(row);
        const std::string name = Fields(row)[0];
        const int byte = std::stoi(Fields(row)[1], nullptr, 16);
        const int character = std::stoi(Fields(row)[2], nullptr, 16);
        const auto page = MakeSingleByteCodePage(TextFromUtf8(name));
        std::u16string text;
        page->Decode(all, text);
        EXPECT_EQ(std::set(text.begin(), text.end()).size(), 256U);
        EXPECT_EQ(NativeName(text.substr(0, 128)), all.substr(0, 128));
        std::string bytes = "before ";
        page->Encode(text, bytes);
        EXPECT_EQ(bytes, "before " + all);
        EXPECT_EQ(text[static_cast<std::size_t>(byte)], character);
        EXPECT_EQ(page->CodeOf(static_cast<char16_t>(character)), byte);
    }
    std::string bytes, room; // one per unit, nothing similar in its place
    const auto page = MakeSingleByteCodePage(u"windows-1252");
    const std::u16string lacking = u"\0a\U0001F600\u0416\u0100\uFF21\u2032\u2212\uFEFFz"s;
    page->Encode(lacking, bytes);
    EXPECT_EQ(bytes, "\0a????????z"s);
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

TEST(CodePage, FollowsTheLanguage) {
    for (const std::string& row : Rows(R"(
             pl_PL.UTF-8|windows-1250 cs_CZ|windows-1250 hu_HU@euro|windows-1250
             sr_RS.UTF-8@latin|windows-1250 sr@latin|windows-1250 sr_RS.UTF-8|windows-1251
             ru_RU.UTF-8|windows-1251 uk_UA|windows-1251 bg|windows-1251 el_GR|windows-1253
             tr_TR.UTF-8|windows-1254 he|windows-1255 ar_EG|windows-1256 lt_LT|windows-1257
             vi_VN|windows-1258 th_TH|windows-874 de_DE.UTF-8|windows-1252 C.UTF-8|windows-1252
             POSIX|windows-1252 r|windows-1252 |windows-1252)")) {
        const std::string locale = row.substr(0, row.find('|'));
        EXPECT_EQ(locale + "|" + NativeName(CodePageForLocale(locale)), row);
    }
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

TEST(Shell, Values) {
    MemorySettings settings;
    const auto valueOf = [&](const auto& choice) {
        try {
            return std::to_string(LoadChoice(settings, choice));
        } catch (const Failure&) {
            return std::string();
        }
    };
    // Text, as a boolean, as an integer; nothing where it is none.
    for (const std::string& row : Rows(R"(
             True|1| fALSE|0| _true_|1| 0|0|0 -1|1|-1 0.0|0|0 0.4|1|0 _12_|1|12 2.5|1|2 3.5|1|4
             +3|1|3 1e2|1|100 -0|0|0 2147483647|1|2147483647 2147483648|1|
             -2147483648.5|1|-2147483648 -2147483649|1| 4.9e-324|1|0 1e999|| || _|| yes|| inf|| nan|| 1x|| 0x1|| +-3||
             --3|| 1_2|| .|| e|| Trué||)")) {
        const std::u16string text = TextFromUtf8(Fields(row)[0]);
        SaveChoice(settings, Choice<std::u16string>{u"key", u""}, text);
        EXPECT_EQ(valueOf(Choice<bool>{u"key", u""}), Fields(row)[1]) << row;
        EXPECT_EQ(valueOf(Choice<int>{u"key", u""}), Fields(row)[2]) << row;
    }
    EXPECT_EQ(ApplicationTitle(kProductName), u"Vexmarrow");
    EXPECT_EQ(ApplicationTitle(std::u16string(40, u'x') + u" y z"), std::u16string(40, u'x'));
}

} // namespace
} // namespace vexmarrow::test
