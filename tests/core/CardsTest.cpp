// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/CardReplacing.h"

namespace vexmarrow::test {
namespace {

/// The lines of a card, or of a file that has no such card.
struct Card {
    std::string lines;
    std::string version = ""; // empty: the lines are the whole file

    /// The file, with other lines in the card.
    std::string FileWith(const std::string& otherLines) const {
        return version.empty() ? otherLines
                               : "BEGIN:VCARD\r\nVERSION:" + version + "\r\n" + otherLines +
                                     "\r\nEND:VCARD\r\n";
    }
};
const auto V21 = [](const std::string& lines) { return Card{lines, "2.1"}; };
const auto V30 = [](const std::string& lines) { return Card{lines, "3.0"}; };
const auto V40 = [](const std::string& lines) { return Card{lines, "4.0"}; };
const auto File = [](const std::string& lines) { return Card{lines}; };

/// What is replaced and where; Then adds a pair.
struct Pairs {
    Where where;
    std::string find, replace;

    Pairs Then(const std::string& nextFind, const std::string& nextReplace) const {
        return {where, find + "\r\n" + nextFind, replace + "\r\n" + nextReplace};
    }
};
const auto InFields = [](auto find, auto replace) { return Pairs{Where::Fields, find, replace}; };
const auto InValues = [](auto find, auto replace) { return Pairs{Where::Values, find, replace}; };
const auto InLines = [](auto find, auto replace) { return Pairs{Where::WholeLine, find, replace}; };
const auto InSets = [](auto find, auto replace) { return Pairs{Where::Sets, find, replace}; };

constexpr std::nullopt_t kStays = std::nullopt;
const std::string kCoded = "N;QUOTED-PRINTABLE:"; // the header of a value in codes

/// What pairs do to a card: its lines afterwards.
struct Case {
    std::string name;
    Card card;
    Pairs pairs;
    std::optional<std::string> result;

    std::string Before() const { return card.FileWith(card.lines); }
    std::string After() const { return card.FileWith(result.value_or(card.lines)); }
};

/// A line that is filled with the letter "c" up to a size.
std::string Filled(std::string line, std::size_t size) {
    line.resize(size, 'c');
    return line;
}

struct CardsTest : CardReplacing {
    std::string Replaced(const Pairs& pairs, const std::string& input) {
        return CardReplacing::Replaced(pairs.where, input, TextFromUtf8(pairs.find),
                                       TextFromUtf8(pairs.replace));
    }
    /// Tries each case, and once more with so many pairs that they are looked for in another way.
    void Try(const std::vector<Case>& cases) {
        for (const Case& one : cases) {
            SCOPED_TRACE(one.name);
            const Pairs more = Pairs{one.pairs.where, "\uE000", "\uE000"}
                                   .Then("\uE001", "\uE001")
                                   .Then("\uE002", "\uE002")
                                   .Then("\uE003", "\uE003")
                                   .Then(one.pairs.find, one.pairs.replace);
            EXPECT_EQ(Replaced(one.pairs, one.Before()), one.After());
            EXPECT_EQ(Replaced(more, one.Before()), one.After());
        }
    }
};

TEST_F(CardsTest, FindsTextAcrossFolds) {
    Try({
        {"value", V30("NOTE:Ma\r\n ria"), InValues("Maria", "Eva"), "NOTE:Eva"},
        {"name, folded with a tab", V40("NO\r\n\tTE:a"), InLines("NOTE", "X"), "X:a"},
        {"2.1: the blank is text", V21("NOTE:Ma\r\n ria"), InValues("Ma r", "E"), "NOTE:Eia"},
        {"2.1: nothing is joined", V21("NOTE:Ma\r\n ria"), InValues("Maria", "Eva"), kStays},
        {"in a letter", V30("NOTE:\xC3\r\n \xA9é"), InValues("é", "e"), "NOTE:ee"},
        {"2.1: a cut letter", V21("A:\xC3\r\n \xA9éé"), InValues("é", ""), "A:\xC3\r\n \xA9"},
        {"in an escape", V30("NOTE:a\\\r\n n;n"), InValues("n", "x"), "NOTE:a\\\r\n n;x"},
        {"not after an empty line", V30("A:a\r\n\r\n a"), InValues("aa", "b"), kStays},
        {"every kind of line end",
         V30("A:a\r\r\n b\r\r\nA:a\r b\rA:a\n b\nA:a\r\r b\r\nA:a\r\n b\r"), InValues("ab", "x"),
         "A:x\r\r\nA:x\rA:x\nA:a\r\r b\r\nA:x\r"},
        {"zero byte", V30("A:\0a\r\n \0"s), InValues("a\0"s, "b\0"s), "A:\0b\0"s},
    });
}

// In 2.1 the blank of a fold is text, elsewhere it is not: so "a", a fold and "b" tell the version.
TEST_F(CardsTest, ReadsEachCardByItsOwnVersion) {
    const std::string folded = "A:a\r\n b", joined = "A:x", begin = "BEGIN:VCARD\r\n",
                      end = "\r\nEND:VCARD", version21 = "VERSION:2.1\r\n";
    constexpr std::size_t kVersionReach = std::size_t{64} * 1024; // bytes from BEGIN to VERSION
    const std::string near = Filled("X:", kVersionReach - 100) + "\r\n",
                      far = Filled("X:", kVersionReach + 100) + "\r\n";
    Try({
        {"lower case and blanks",
         File("begin:vcard \r\nversion: 2.1 \r\nA:a\r\n b\r\nend:vcard\t\r\nA:a\r\n b"),
         InValues("a b", "x"), "begin:vcard \r\nversion: 2.1 \r\nA:x\r\nend:vcard\t\r\nA:a\r\n b"},
        {"nested card",
         V21("AGENT: \r\nBEGIN:VCARD\r\nVERSION:3.0\r\n" + folded + end + "\r\n" + folded),
         InValues("ab", "x"),
         "AGENT: \r\nBEGIN:VCARD\r\nVERSION:3.0\r\n" + joined + end + "\r\n" + folded},
        {"nested card before the version of the outer one",
         File(begin + "a.AGENT;x:\r\nBEGIN:VCARD\r\nVERSION:3.0\r\nEND:VCARD\r\n" + version21 +
              folded + end),
         InValues("ab", "x"), kStays},
        {"version below the text", File(begin + folded + "\r\n" + "VERSION:2.1\r\nEND:VCARD"),
         InValues("ab", "x"), kStays},
        {"first of two versions", File(begin + "VERSION;a:2.1\r\nVERSION:3.0\r\n" + folded),
         InValues("ab", "x"), kStays},
        {"version far away", File(begin + near + version21 + folded), InValues("ab", "x"), kStays},
        {"version too far away", File(begin + far + version21 + folded), InValues("ab", "x"),
         begin + far + version21 + joined},
    });
}

TEST_F(CardsTest, DividesLinesIntoFieldsAndValues) {
    Try({
        {"second colon", V30("URL:a://a:a"), InValues("a", "b"), "URL:b://b:b"},
        {"colon in quotes", V30(R"(X;A="b:b":b)"), InFields("b", "c"), R"(X;A="c:c":b)"},
        {"2.1 knows no quotes", V21(R"(X;A="b:b":b)"), InFields("b", "c"), R"(X;A="c:b":b)"},
        {"quote in the middle", V30(R"(X;A=b"b:b":b)"), InFields("b", "c"), R"(X;A=c"c:b":b)"},
        {"quote left open", V30("X;A=\"b:b\r\nb:b"), InFields("b", "c"), "X;A=\"c:b\r\nc:b"},
        {"folded quote", V30("X;A=\"b:\r\n b\":b"), InFields("b", "c"), "X;A=\"c:\r\n c\":b"},
        {"caret in a parameter", V40(R"(X;A="a^nb^'":c)"), InFields("^n", ","), R"(X;A="a,b^'":c)"},
        {"no colon outside cards: a value", File("b\r\nb:b"), InValues("b", "c"), "c\r\nb:c"},
        {"no header in a card: a value", V30("my b:b\r\nb\r\n;b:\r\n.b:\r\na.b.c:\r\nb\"a\":"),
         InValues("b", "c"), "my c:c\r\nc\r\n;c:\r\n.c:\r\na.c.c:\r\nc\"a\":"},
    });
}

TEST_F(CardsTest, FindsTextInQuotedPrintable) {
    Try({
        {"group and other parameters", V21("i1.TEL;CELL;quoted-printable;X:=41"),
         InValues("A", "B"), "i1.TEL;CELL;quoted-printable;X:B"},
        {"in 3.0, with folds", V30("A;ENCODING= \"QUOTED-\r\n PRINTABLE\":=4\r\n 1=4=\r\n1;"),
         InValues("AA;", "B"), "A;ENCODING= \"QUOTED-\r\n PRINTABLE\":B"},
        {"soft break before what looks like a line", V21(kCoded + "a= \t\r\nTEL:a"),
         InValues("aT", "x"), kCoded + "xEL:a"},
        {"blank after a soft break", V30(kCoded + "a=\r\n b"), InValues("a b", "x"), kCoded + "x"},
        {"no soft break before END", V21(kCoded + "a="), InValues("=", "b"), kCoded + "ab"},
        {"codes in lower case", V21(kCoded + "=c3=a9"), InValues("é", "e"), kCoded + "e"},
        {"= that begins no code", V21(kCoded + "=g=4"), InValues("=", "x"), kCoded + "xgx4"},
        {"soft break at the end of a file", File("BEGIN:VCARD\r\nN;QUOTED-PRINTABLE:=41=\r\n"),
         InValues("A", "B"), "BEGIN:VCARD\r\nN;QUOTED-PRINTABLE:B=\r\n"},
        {"outside cards nothing is decoded", File(kCoded + "=41=\r\n n;PHOTO;B:AA"),
         InLines("A", "a"), "N;QUOTED-PRINTaBLE:=41=\r\n n;PHOTO;B:aa"},
    });
}

TEST_F(CardsTest, FindsLettersInTheirCharset) {
    Try({
        {"charset without codes", V21("N;ENCODING=8BIT;CHARSET=ISO-8859-1:\xE9=41"),
         InValues("é=", "e"), "N;ENCODING=8BIT;CHARSET=ISO-8859-1:e41"},
        {"Shift_JIS", V21("N;CHARSET=Shift_JIS:\x83\x41"), InValues("ア", "x"),
         "N;CHARSET=Shift_JIS:x"},
        {"unknown charset", V21("na;CHARSET=x:na"), InLines("na", "N"), "N;CHARSET=x:na"},
        {"charsets with states or wide units",
         V21("N;CHARSET=ISO-2022-JP:n\r\nN;CHARSET=UTF-7:n\r\nN;CHARSET=UTF-16BE:n\r\nN;CHARSET="
             "UTF-32LE:n"),
         InValues("n", "x"), kStays},
        {"first of two", V21("N;CHARSET=latin1;CHARSET=x:\xE9"), InValues("é", ""),
         "N;CHARSET=latin1;CHARSET=x:"},
        {"a charset does not tell that of the file", V21("A;CHARSET=utf-8:éé\r\nB:\xE9"),
         InValues("é", "e"), "A;CHARSET=utf-8:ee\r\nB:e"},
        {"as many letters of UTF-8 as stray bytes: UTF-8", V30("A:\xE9\xE9\r\nB:é\xC3\r\n \xA9"),
         InValues("é", "e"), "A:\xE9\xE9\r\nB:ee"},
        {"fewer: the code page", V30("A:\xE9\xE9\r\nB:é"), InValues("é", "e"), "A:ee\r\nB:é"},
        {"codes of either", V21("A:\xE9\r\n" + kCoded + "=E9\r\n" + kCoded + "=C3=A9"),
         InValues("é", ""), "A:\r\n" + kCoded + "\r\n" + kCoded},
    });
    ansi.Choose(u"UTF-8"); // as the page: it decides nothing
    Try({{"stray codes", V21(kCoded + "=E9a"), InValues("a", "é"), kCoded + "=E9=C3=A9"}});
    EXPECT_EQ(Replaced(InLines("a", "Ж").Then("é", "e"), "a\xE9\xC3\xA9\xE9"),
              "\xD0\x96\xE9\x65\xE9");
}

TEST_F(CardsTest, DoesNotSearchFramesAndBinaryValues) {
    constexpr std::size_t kBinaryLetters = 200; // of base64, which make a photo's value binary
    const auto letters = [](std::size_t count) { return std::string(count, 'A'); };
    const std::string folded = letters(100) + "\r\n " + letters(kBinaryLetters - 101);
    Try({
        {"frames", V30("NOTE:VCARD;3.0"), InLines("VCARD", "x").Then("3.0", "y"), "NOTE:x;y"},
        {"what follows a frame is no part of it",
         File("BEGIN:VCARD\r\n a\r\nVERSION;a:3.0\r\n a\r\nA:a\r\nEND:VCARD\r\n a"),
         InLines("a", "b"), "BEGIN:VCARD\r\n b\r\nVERSION;a:3.0\r\n a\r\nA:b\r\nEND:VCARD\r\n b"},
        {"outside cards, frames are text", File("VERSION:1\r\nEND:VCARD"),
         InLines("1", "2").Then("END", "X"), "VERSION:2\r\nX:VCARD"},
        {"base64", V30("P;ENCODING=b;X=AA:AA\r\n AA\r\nA:AA"), InLines("A", "b"),
         "P;ENCODING=b;X=bb:AA\r\n AA\r\nb:bb"},
        {"base64 without indents goes on up to an empty line",
         V21("P;JPEG;B:AAAA\r\nAA== \r\n\tAA-\r\nAA==\r\n\r\nA:A"), InLines("A", "b"),
         "P;JPEG;B:AAAA\r\nAA== \r\n\tAA-\r\nAA==\r\n\r\nb:b"},
        {"or up to other characters", V21("P;BASE64:AAAA\r\nAA-A\r\nA:AA"), InLines("AA", "b"),
         "P;BASE64:AAAA\r\nb-A\r\nA:b"},
        {"both encodings", V21("P;BASE64;QUOTED-PRINTABLE:A=\r\nAA"), InValues("A", "b"), kStays},
        {"and the other way round", V21("P;QUOTED-PRINTABLE;BASE64:A=\r\nAA"), InValues("A", "b"),
         kStays},
        {"address that holds data", V40("P;X=A:DATA:image/png;base64,AA\r\n AA"), InLines("A", "b"),
         "P;X=b:DATA:image/png;base64,AA\r\n AA"},
        {"folded address", V40("P:da\r\n ta:;BASE\r\n 64,AA\r\nAA"), InValues("A", "b"), kStays},
        {"photo of enough letters of base64", V30("i.Photo:" + folded + "\r\nA\r\nA:A"),
         InLines("A", "b"), "i.Photo:" + folded + "\r\nA\r\nb:b"},
        {"photo of fewer", V30("PHOTO:" + folded), InValues("A", ""), "PHOTO:"},
        {"no photo", V30("PHOTOS:" + letters(kBinaryLetters)), InValues("A", ""), "PHOTOS:"},
        {"another character among the first ones",
         V30("KEY:" + folded + "-" + letters(kBinaryLetters)), InValues("A", ""), "KEY:\r\n -"},
    });
}

TEST_F(CardsTest, KeepsFoldsAroundWhatChanges) {
    Try({
        {"folds around", V30("A:a\r\n bc\r\n d"), InValues("bc", "x"), "A:a\r\n x\r\n d"},
        {"fold inside", V30("A:a\r\n b\r\n c\r\n d"), InValues("bc", "x"), "A:a\r\n x\r\n d"},
        {"of two folds one stays", V30("A:a\r\n bc\r\n\td"), InValues("bc", ""), "A:a\r\n d"},
        {"folds of nothing", V30("A:a\r\n \r\n "), InValues("a", "b"), "A:b\r\n \r\n "},
        {"in 2.1 the blank stays", V21("A:a\r\n b"), InValues("b", "x"), "A:a\r\n x"},
        {"in 2.1 the blank is replaced", V21("A:a\r\n b"), InValues(" b", "x"), "A:ax"},
        {"in 2.1 a blank replaces the blank", V21("A:a\r\n b"), InValues(" b", " c"), "A:a c"},
    });
}

TEST_F(CardsTest, FoldsLinesThatBecomeTooLongWhereTheCardHasFolds) {
    constexpr std::size_t kLongestLine = 75;
    const std::string folds = "A:a\r\n b\r\n";               // what a card has
    const std::string line = Filled("N:", kLongestLine - 1); // has room for one letter more
    const std::string photo = Filled("P;B;", kLongestLine);
    Try({
        {"too long for three lines", V30(folds + line + "x"),
         InValues("x", std::string(kLongestLine + 5, 'y')),
         folds + line + "y\r\n " + std::string(kLongestLine - 1, 'y') + "\r\n yyyyy"},
        {"not too long", V30(folds + line + "x"), InValues("x", "y"), folds + line + "y"},
        {"its own line end", V30(folds + line + "x\n"), InValues("x", "yz"),
         folds + line + "y\n z\n"},
        {"with that of the line before", File("BEGIN:VCARD\nA:a\n b\r\n" + line + "x"),
         InValues("x", "yz"), "BEGIN:VCARD\nA:a\n b\r\n" + line + "y\r\n z"},
        {"not in a letter", V40(folds + line + "x"), InValues("x", "é"), folds + line + "\r\n é"},
        {"a line that was too long before stays one", V30(folds + line + "ccx"),
         InValues("x", "yy"), folds + line + "ccyy"},
        {"no folds in the card", V30(line + "x"), InValues("x", "yyy"), line + "yyy"},
        {"folds of base64 do not count", V30("P;B:A\r\n A\r\n" + line + "x"), InValues("x", "yyy"),
         "P;B:A\r\n A\r\n" + line + "yyy"},
        {"never in 2.1", V21(folds + line + "x"), InValues("x", "yyy"), folds + line + "yyy"},
        {"not the field of base64", V30(folds + photo + "x:A\r\n A"), InFields("x", "yyy"),
         folds + photo + "yyy:A\r\n A"},
    });
}

TEST_F(CardsTest, WritesCodesInQuotedPrintable) {
    constexpr std::size_t kLongestCoded = 76;                   // with the "=" of a soft break
    const std::string line = Filled(kCoded, kLongestCoded - 1); // has room for one letter more
    const std::string cut = Filled(kCoded, kLongestCoded - 2) + "=\r\nc";
    Try({
        {"codes that stay, and new ones", V21(kCoded + "=c3=A9=4d=3da"), InValues("a", "é= \r\n"),
         kCoded + "=c3=A9=4d=3d=C3=A9=3D=20"},
        {"soft break before a letter", V21(Filled(kCoded, kLongestCoded - 3) + "x"),
         InValues("x", "é yé"), Filled(kCoded, kLongestCoded - 3) + "=\r\n=C3=A9 y=C3=A9"},
        {"not too long", V21(line + "x"), InValues("x", "y"), line + "y"},
        {"a line that was too long before stays one", V21(line + "ccccx"), InValues("x", "yy"),
         line + "ccccyy"},
        {"no soft break before a blank", V21(line + "x"), InValues("x", "   y"), cut + "   y"},
        {"blanks after a soft break", V21(kCoded + "a=\r\nbc"), InValues("b", " \t"),
         kCoded + "a=\r\n=20=09c"},
        {"blank that would follow a soft break", V21(kCoded + "a=\r\nb c"), InValues("b", ""),
         kCoded + "a c"},
        {"blank that would end the line", V21(kCoded + "a b"), InValues("b", ""), kCoded + "a=20"},
        {"= that would begin a code", V21(kCoded + "=x41"), InValues("x", ""), kCoded + "=3D41"},
        {"= that would be a soft break before a blank", V21(kCoded + "a= x"), InValues("x", ""),
         kCoded + "a==20"},
        {"line ends are escaped", V30("N:a"), InSets("a", "b\nc\rd"), R"(N:b\nc\nd)"},
        {"line ends in codes", V21("N;X=a;QUOTED-PRINTABLE:a"), InSets("a", "b\nc"),
         "N;X=b\\nc;QUOTED-PRINTABLE:b=0D=0Ac"},
    });
}

TEST_F(CardsTest, WritesLettersInTheCharsetAroundThem) {
    Try({
        {"the page lacks some", V30("A:\xE9x"), InValues("x", "Ж😀è"), "A:\xE9???\xE8"},
        {"the charset lacks one", V21("N;CHARSET=latin1:x\r\nN;CHARSET=latin1;QUOTED-PRINTABLE:x"),
         InValues("x", "Жé"), "N;CHARSET=latin1:?\xE9\r\nN;CHARSET=latin1;QUOTED-PRINTABLE:?=E9"},
        {"beside ASCII, in a file of the page", V21("A:\xE9\r\nN;QUOTED-PRINTABLE:x"),
         InValues("x", "è"), "A:\xE9\r\nN;QUOTED-PRINTABLE:=E8"},
        {"stray bytes stay", V30("A:\xFFxé\xC3\r\n \xA9"), InValues("x", "y"),
         "A:\xFFyé\xC3\r\n \xA9"},
    });
}

TEST_F(CardsTest, LeavesALineThatWouldBeReadInAnotherWay) {
    const std::string photo(200, 'A'); // as few letters as make one
    Try({
        {"codes would be text", V21(kCoded + "=41a"), InLines("PRINTABLE", "X").Then("a", "b"),
         kStays},
        {"there are no codes", V21(kCoded + "aa"), InLines("PRINTABLE", "X"), "N;QUOTED-X:aa"},
        {"the charset would be another", V21("N;CHARSET=latin1:\xE9"), InLines("latin1", "utf-8"),
         kStays},
        {"base64 would be text", V30("P;ENCODING=b:AA\r\n AA"), InFields("=b", "=c"), kStays},
        {"a key's letters would be text", V30("KEY:" + photo), InFields("KEY", "X"), kStays},
        {"text would go on with base64", V21("P;BASE64:AA\r\na-"), InLines("-", ""), kStays},
        {"= would be a soft break", V21("N;QUOTED-X:a=\r\nB:b"), InFields("X", "PRINTABLE"),
         kStays},
        {"text would be a key", V30("KEY:" + photo.substr(1) + "-A"), InValues("-", "B"), kStays},
        {"stray bytes would be a letter", V30("A:\xC3x\xA9y\r\nB:éé"),
         InValues("x", "").Then("y", "z"), kStays},
        {"it would begin with a blank", V30("A b:c"), InLines("A", ""), kStays},
        {"outside cards it may", File("a\r\na b\r\n a"), InLines("a", ""), "\r\na b\r\n "},
        {"it would be a frame", V30("xEND:VCARD\r\nxVERSION;a:2\r\nxBEGIN:VCARD \r\nxN:x"),
         InLines("x", ""), "xEND:VCARD\r\nxVERSION;a:2\r\nxBEGIN:VCARD \r\nN:"},
        {"outside cards, it would begin one", File("xend:VCARD\r\nxVERSION:2\r\nxBegin:VCARD"),
         InLines("x", ""), "end:VCARD\r\nVERSION:2\r\nxBegin:VCARD"},
        {"two line ends would be one", V30("N:b\ra\nB:b"), InValues("a", ""), kStays},
    });
}

TEST_F(CardsTest, ReplacesAColonOnlyByAColon) {
    Try({
        {"the separating one stays", V30("TEL:1:TEL:1"), InLines("L:1", "x"), "TEL:1:TEx"},
        {"the search goes on behind it", V30("a:aa:a"), InLines("a:a", "x"), "a:ax"},
        {"the first of several separates", V30("TEL:1"), InLines("L:1", "X:2:3"), "TEX:2:3"},
        {"what follows the new one is coded", V21(kCoded + "a"), InLines("E:a", "E:é:"),
         kCoded + "=C3=A9:"},
        {"not in front of it", V21(kCoded + "=41"), InLines("N;QU", "é:N;QU"), kStays},
        {"any colon outside cards", File("a:b:b"), InLines("a:b", "x"), "x:b"},
        {"new colon in a field", V30("X;A=b:c"), InFields("b", "b:d"), "X;A=b:d:c"},
        {"new colon that would leave codes behind", V21("N;A;QUOTED-PRINTABLE:=41"),
         InFields(";A", ":B"), kStays},
    });
}

TEST_F(CardsTest, DoesNotCutEscapes) {
    Try({
        {"values", V30(R"(A:\nn\\nn\,)"), InValues("n", "x").Then(R"(\,)", ","), R"(A:\nx\\xx,)"},
        {"the search goes on after the escape", V30(R"(A:\aaa\aa)"), InValues("aa", "x"),
         R"(A:\ax\aa)"},
        {"fields", V40(R"(A;B="\nn":c)"), InFields("n", "x"), R"(A;B="\nx":c)"},
        {"2.1 has none", V21(R"(A:\nn)"), InValues("n", "x"), R"(A:\xx)"},
        {"outside cards there are none", File(R"(A:\nn)"), InValues("n", "x"), R"(A:\xx)"},
    });
}

/// Units of a marked file.
struct Encoding {
    const char* name;
    std::size_t width; // in bytes
    bool isBigEndian;

    /// The bytes of a text, after the mark.
    std::string Marked(const std::string& utf8) const {
        std::string bytes;
        const std::u16string text = u"\uFEFF" + TextFromUtf8(utf8);
        for (std::size_t at = 0; at < text.size() && width > 1; ++at) {
            char32_t unit = text[at];
            if (width == 4 && (unit & 0xFC00) == 0xD800) {
                unit = 0x10000 + ((unit & 0x3FF) << 10) + (text[++at] & 0x3FFU);
            }
            for (std::size_t i = 0; i < width; ++i) {
                bytes += static_cast<char>(unit >> 8 * (isBigEndian ? width - 1 - i : i) & 0xFF);
            }
        }
        return width == 1 ? kMark8 + utf8 : bytes;
    }
};

TEST_F(CardsTest, KeepsTheEncodingOfAMarkedFile) {
    const Case cases[] = {
        {"fold", V30("A:é\r\n ria😀"), InValues("ér", "Ж"), "A:Жia😀"},
        {"beyond 16 bits", V40("A:a😀"), InValues("😀", "💀"), "A:a💀"},
        {"a charset counts for codes alone",
         V21("N;CHARSET=latin1:é\r\nN;CHARSET=latin1;QUOTED-PRINTABLE:é=E9"), InValues("é", "e"),
         "N;CHARSET=latin1:e\r\nN;CHARSET=latin1;QUOTED-PRINTABLE:ee"},
        {"unknown charset", V21("N;CHARSET=x:a\r\nN;CHARSET=x;QUOTED-PRINTABLE:a"),
         InValues("a", "b"), "N;CHARSET=x:b\r\nN;CHARSET=x;QUOTED-PRINTABLE:a"},
        {"codes beside letters", V21(kCoded + "=C3é=A9\r\nA;QUOTED-PRINTABLE:=C3=A9é"),
         InValues("Ãé©", "1").Then("é", "2"), kCoded + "1\r\nA;QUOTED-PRINTABLE:22"},
        {"new codes", V21(kCoded + "x"), InValues("x", "Ж"), kCoded + "=D0=96"},
    };
    const Encoding encodings[] = {{"UTF-8", 1, false},
                                  {"UTF-16, low byte first", 2, false},
                                  {"UTF-16, high byte first", 2, true},
                                  {"UTF-32, low byte first", 4, false},
                                  {"UTF-32, high byte first", 4, true}};
    for (const Case& one : cases) {
        for (const Encoding& encoding : encodings) {
            SCOPED_TRACE(one.name + " in " + encoding.name);
            const std::string before = encoding.Marked(one.Before());
            EXPECT_EQ(Replaced(one.pairs, before), encoding.Marked(one.After()));
            const std::string odd = before + "\x01"; // which is no whole unit
            EXPECT_EQ(Replaced(InValues("Ж", "?").Then("\uE000", "?"), odd), odd);
        }
    }
}

} // namespace
} // namespace vexmarrow::test
