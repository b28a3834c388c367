// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Text.h"
#include "core/Core.h"

#include <cerrno>
#include <chrono>
#include <random>

namespace vexmarrow::test {
namespace {

const OutputLocation kInPlace{OutputLocation::BesideInput, u""};
enum Statement { kReading = 1, kReplacing, kNaming, kWriting };

/// Puts in what a row spells out: {E9} is that byte, {+E9} that character in UTF-8, {70c} 70 times
/// the letter, and {Q} the end of a header whose value is in quoted-printable.
std::string Spelled(std::string text) {
    for (std::size_t at = 0; (at = text.find('{', at)) != std::string::npos;) {
        const std::size_t end = text.find('}', at);
        const std::string word = text.substr(at + 1, end - at - 1);
        std::string made = ";QUOTED-PRINTABLE:";
        if (word[0] == '+') {
            made.clear();
            const std::u32string letter{
                static_cast<char32_t>(std::stoul(word.substr(1), nullptr, 16))};
            EncodeUtf8(letter, made, '?');
        } else if (word.size() > 2 || word.back() > 'a') {
            made = std::string(std::stoul(word), word.back());
        } else if (word != "Q") {
            made = static_cast<char>(std::stoi(word, nullptr, 16));
        }
        text.replace(at, end + 1 - at, made);
        at += made.size();
    }
    return text;
}

/// Made from a line: its name, a colon and a blank; the version and the part, text, find, replace
/// and, where the text does not stay, what comes of it. The version is that of a card around the
/// text, or "-" for none; the part is f, v or w, or s for sets. The fields are written as those of
/// other tables, and spelled out.
struct Case {
    explicit Case(const std::string& line) {
        Strings fields = Fields(line.substr(line.find(": ") + 2));
        std::transform(fields.begin(), fields.end(), fields.begin(), Spelled);
        fields.resize(5, fields.at(1));
        const char version = fields[0].at(0);
        for (const std::size_t field : {1U, 4U}) {
            if (version != '-') {
                fields[field] = "BEGIN:VCARD\r\nVERSION:"s + version +
                                (version == '2' ? ".1\r\n" : ".0\r\n") + fields[field] +
                                "\r\nEND:VCARD\r\n";
            }
        }
        part = "fvws"s.find(fields[0].at(1));
        input = fields[1];
        find = TextFromUtf8(fields[2]);
        replace = TextFromUtf8(fields[3]);
        output = fields[4];
    }

    std::size_t part;
    std::string input;
    std::u16string find, replace;
    std::string output;
};

Strings Lines(const std::string& table) {
    std::istringstream stream(table);
    Strings lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

struct CardsTest : Core {
    /// Replaces in a file of the folder; the lines of the texts are the entries of sets.
    Strings Replace(std::size_t part, std::string_view name, std::u16string_view find,
                    std::u16string_view replace, const OutputLocation& location = kInPlace) {
        if (part == kSets) {
            const auto finds = Split(find, kCrLf), replaces = Split(replace, kCrLf);
            const Texts findTexts(finds.begin(), finds.end());
            const Texts replaceTexts(replaces.begin(), replaces.end());
            engine.ReplaceSetsInCards(folder.Path(name), {findTexts, replaceTexts}, location);
        } else {
            engine.ReplaceTextInCards(folder.Path(name), static_cast<vcard::LinePart>(part), find,
                                      replace, location);
        }
        return prompts.TakeSummaries();
    }

    /// What becomes of bytes. There must be no report.
    std::string Replaced(std::size_t part, const std::string& input, std::u16string_view find,
                         std::u16string_view replace) {
        folder.Write("f", input);
        EXPECT_EQ(Replace(part, "f", find, replace), Strings{});
        return folder.Read("f");
    }

    /// Tries cases, each once more with so many pairs that they are looked for in another way.
    void Try(const std::string& table) {
        const std::u16string more = u"\uE000\r\n\uE001\r\n\uE002\r\n\uE003\r\n";
        for (const std::string& line : Lines(table)) {
            SCOPED_TRACE(line);
            const Case one(line);
            EXPECT_EQ(Replaced(one.part, one.input, one.find, one.replace), one.output);
            if (!one.replace.empty() || one.find.find(kCrLf) == std::u16string::npos) {
                EXPECT_EQ(Replaced(one.part, one.input, more + one.find, more + one.replace),
                          one.output);
            }
        }
    }

    static constexpr std::size_t kValues = 1, kWhole = 2, kSets = 3;
};

TEST_F(CardsTest, TextIsFoundAsItReads) {
    Try(R"(fold: 3v|NOTE:Ma~_ria|Maria|Eva|NOTE:Eva
fold by a tab, of a name: 4w|NO~{9}TE:a|NOTE|X|X:a
the blank of a fold is text in 2.1: 2v|NOTE:Ma~_ria|Ma_r|E|NOTE:Eia
so nothing is joined there: 2v|NOTE:Ma~_ria|Maria|Eva
fold within a character: 2v|A:{C3}~_{A9}{+E9}{+E9}|{+E9}|e|A:{C3}~_{A9}ee
fold within a character: 3v|NOTE:{C3}~_{A9}{+E9}|{+E9}|e|NOTE:ee
fold within an escape: 3v|NOTE:a\~_n;n|n|x|NOTE:a\~_n;x
empty line: 3v|NOTE:a~~_a~~NOTE:a|a|b|NOTE:b~~_b~~NOTE:b
line ends: 3v|A:a<~_b<~A:a<_b<A:a^_b^A:a<<_b~A:a~_b<|ab|x|A:x<~A:x<A:x^A:a<<_b~A:x<
card in lower case, with blanks: -v|begin:vcard_~version:_2.1_~A:a~_b~end:vcard{9}~A:a~_b|a_b|x|begin:vcard_~version:_2.1_~A:x~end:vcard{9}~A:a~_b
nested card: 2v|AGENT:_~BEGIN:VCARD~VERSION:3.0~A:a~_b~END:VCARD~A:a~_b|ab|x|AGENT:_~BEGIN:VCARD~VERSION:3.0~A:x~END:VCARD~A:a~_b
its version is not that of the outer: -v|BEGIN:VCARD~a.AGENT;x:~BEGIN:VCARD~VERSION:3.0~END:VCARD~VERSION:2.1~A:a~_b~END:VCARD|ab|x
card that takes the place of another: 2v|AGENT:~~BEGIN:VCARD~A:a~_b~END:VCARD~A:a~_b|ab|x|AGENT:~~BEGIN:VCARD~A:x~END:VCARD~A:a~_b
version after a text: -v|BEGIN:VCARD~A:a~_b~VERSION:2.1~END:VCARD|ab|x
no version before the end: -v|BEGIN:VCARD~A:a~_b~END:VCARD~VERSION:2.1|ab|x|BEGIN:VCARD~A:x~END:VCARD~VERSION:2.1
the first version: -v|BEGIN:VCARD~VERSION;a:2.1~VERSION:3.0~A:a~_b|ab|x
version far away: -v|BEGIN:VCARD~X:{65400c}~VERSION:2.1~A:a~_b|ab|x
version too far away: -v|BEGIN:VCARD~X:{65600c}~VERSION:2.1~A:a~_b|ab|x|BEGIN:VCARD~X:{65600c}~VERSION:2.1~A:x
another version: -v|BEGIN:VCARD~VERSION:2.10~A:a~_b|ab|x|BEGIN:VCARD~VERSION:2.10~A:x
group: 2v|i1.A{Q}=41|A|B|i1.A{Q}B
bare parameters: 2v|TEL;CELL;quoted-printable;X:=41|A|B|TEL;CELL;quoted-printable;X:B
quoted-printable of 3.0: 3v|A;ENCODING=_"QUOTED-~_PRINTABLE":=4~_1=4=~1;|AA;|B|A;ENCODING=_"QUOTED-~_PRINTABLE":B
8BIT: 2v|N;ENCODING=8BIT;CHARSET=ISO-8859-1:{E9}=41|{+E9}=|e|N;ENCODING=8BIT;CHARSET=ISO-8859-1:e41
Shift_JIS: 2v|N;CHARSET=Shift_JIS:{83}A|{+30A2}|{+30A1}|N;CHARSET=Shift_JIS:{83}{40}
its second byte is no letter: 2v|N;CHARSET=Shift_JIS:{83}A|A|B
unknown charset: 2w|na;CHARSET=x:na|na|N|N;CHARSET=x:na
charset with states: 2v|N;CHARSET=ISO-2022-JP:n~N;CHARSET=UTF-7:n|n|x
charset of wide units: 2v|N;CHARSET=UTF-16BE:n~N;CHARSET=UTF-32LE:n|n|x
first of two charsets: 2v|N;CHARSET=latin1;CHARSET=x:{E9}|{+E9}|e|N;CHARSET=latin1;CHARSET=x:e
colon in quotes: 3f|X;A="b:b":b|b|c|X;A="c:c":b
which 2.1 does not know: 2f|X;A="b:b":b|b|c|X;A="c:b":b
quote in the middle: 3f|X;A=b"b:b":b|b|c|X;A=c"c:b":b
quote that closes nowhere: 3f|X;A="b:b~b:b|b|c|X;A="c:b~c:b
quote that closes wrongly: 3f|X;A="b"b:b":b|b|c|X;A="c"c:b":b
quote that closes on the next line: 3f|X;A=a,"b:~_b":b|b|c|X;A=a,"c:~_c":b
caret: 4f|X;A="a{5E}nb{5E}'":c|{5E}n|,|X;A="a,b{5E}'":c
page beside UTF-8: 2v|A;CHARSET=utf-8:{+E9}{+E9}~B:{E9}|{+E9}|e|A;CHARSET=utf-8:ee~B:e
as many letters as stray bytes: 3v|A:{E9}{E9}~B:{+E9}{C3}~_{A9}|{+E9}|e|A:{E9}{E9}~B:ee
fewer letters: 3v|A:{E9}{E9}~B:{+E9}|{+E9}|e|A:ee~B:{+E9}
soft break before what looks like a line: 2v|N{Q}a=_{9}~TEL:a|aT|x|N{Q}xEL:a
a blank after it is text: 3v|N{Q}a=~_b|a_b|x|N{Q}x
no soft break before a frame: 2v|N{Q}a=|=|b|N{Q}ab
no soft break in a name: 2v|N;QUOTED-PRINTABLE;X=~A:=41|=4|x|N;QUOTED-PRINTABLE;X=~A:x1
codes in lower case: 2v|N{Q}=c3=a9|{+E9}|e|N{Q}e
= for itself: 2v|N{Q}=g=4|=|x|N{Q}xgx4
= at the end of a file: -v|BEGIN:VCARD~N{Q}=41=|A=|B|BEGIN:VCARD~N{Q}B
soft break at the end of a file: -v|BEGIN:VCARD~N{Q}=41=~|A|B|BEGIN:VCARD~N{Q}B=~
codes are UTF-8, or else of the page: 2v|A:{E9}~N{Q}=E9~N{Q}=C3=A9|{+E9}|e|A:e~N{Q}e~N{Q}e
codes of a page in a file of UTF-8: 2v|A:{+E9}~N{Q}=E9|{+E9}|e|A:e~N{Q}e
NUL: 3v|A:{0}a~_{0}|a{0}|b{0}|A:{0}b{0}
no card: -w|N{Q}=41=~_n;PHOTO;B:AA|A|a|N;QUOTED-PRINTaBLE:=41=~_n;PHOTO;B:aa
first colon outside cards: -f|X;A="b:b":b~b|b|c|X;A="c:b":b~b
value without a colon: -v|b~b:b|b|c|c~b:c
no header in a card: 3v|my b:b~b~;b:~.b:~a.b.c:~b"a":|b|c|my c:c~c~;c:~.c:~a.c.c:~c"a":
so it has no field: 3f|my b:b~b~;b:~.b:~a.b.c:|b|c
value after a second colon: 3v|URL:a://a:a|a|b|URL:b://b:b)");
}

TEST_F(CardsTest, WhatIsNotTextIsNotSearched) {
    Try(R"(frames: 3w|NOTE:VCARD;3.0|VCARD~3.0|x~y|NOTE:x;y
more of a frame: -w|BEGIN:VCARD~_a~VERSION;a:3.0~_a~A:a~END:VCARD~_a|a|b|BEGIN:VCARD~_b~VERSION;a:3.0~_a~A:b~END:VCARD~_b
frames outside: -w|VERSION:1~END:VCARD|1~END|2~X|VERSION:2~X:VCARD
base64: 3w|P;ENCODING=b;X=AA:AA~_AA~A:AA|A|b|P;ENCODING=b;X=bb:AA~_AA~b:bb
bare, unindented, up to an empty line: 2w|P;JPEG;B:AAAA~AA==_~{9}AA-~AA==~~A:A|A|b|P;JPEG;B:AAAA~AA==_~{9}AA-~AA==~~b:b
up to other letters: 2w|P;BASE64:AAAA~AA-A~A:AA|AA|b|P;BASE64:AAAA~b-A~A:b
both encodings: 2v|P;QUOTED-PRINTABLE;BASE64:A=~AA|A|b
not by its type: 3v|P;TYPE=B:AA|A|b|P;TYPE=B:bb
address: 4w|P;X=A:DATA:image/png;base64,AA~_AA|A|b|P;X=b:DATA:image/png;base64,AA~_AA
address in a fold: 4v|P:da~_ta:;BASE~_64,AA~AA|A|b
another address: 4v|P:data:;base64;x,AA|A|b|P:data:;base64;x,bb
many letters: 3w|i.Photo:{100A}~_{99A}~A~A:A|A|b|i.Photo:{100A}~_{99A}~A~b:b
fewer letters: 3v|PHOTO:{98A}~_{101A}|AA|b|PHOTO:{49b}~_{50b}A
of another line: 3v|PHOTOS:{250A}|{250A}|b|PHOTOS:b
other letters: 3v|KEY:{199A}-{250A}|A-|-|KEY:{198A}-{250A})");
}

TEST_F(CardsTest, WhatIsPutInIsWrittenAsWhatSurroundsIt) {
    Try(R"(folds around: 3v|A:a~_bc~_d|bc|x|A:a~_x~_d
folds inside: 3v|A:a~_b~_c~_d|bc|x|A:a~_x~_d
of two folds one: 3v|A:a~_bc~{9}d|bc||A:a~_d
of three folds one: 3v|A:a~_b~_c~_d|b~c||A:a~_d
nothing is left after: 3v|A:a~_b|b||A:a
nothing is left before: 3w|A~_:b|A||:b
fold of nothing: 3v|A:a~_~_|a|b|A:b~_~_
a value that becomes empty: 3v|A:a|a||A:
a blank of 2.1 that stays: 2v|A:a~_b|b|x|A:a~_x
a blank of 2.1 that goes: 2v|A:a~_b|_b|x|A:ax
a blank of 2.1 for itself: 2v|A:a~_b|_b|_c|A:a_c
too long: 3v|A:a~_b~N:{72c}x|x|{80y}|A:a~_b~N:{72c}y~_{74y}~_{5y}
not too long: 3v|A:a~_b~N:{72c}x|x|y|A:a~_b~N:{72c}y
its own line end: 3v|A:a~_b~N:{72c}x^|x|yz|A:a~_b~N:{72c}y^_z^
a continuation: 3v|A:a~_{73c}x|x|yz|A:a~_{73c}y~_z
no end of its own: -v|BEGIN:VCARD^A:a^_b~N:{72c}x|x|yz|BEGIN:VCARD^A:a^_b~N:{72c}y~_z
no line end before it but in it: -v|BEGIN:VCARD^A:a~_{73c}x|x|yz|BEGIN:VCARD^A:a~_{73c}y~_z
before a letter: 4v|A:a~_b~N:{72c}x|x|{+E9}|A:a~_b~N:{72c}~_{+E9}
long before: 3v|A:a~_b~N:{80c}x|x|yy|A:a~_b~N:{80c}yy
no folds in the card: 3v|N:{72c}x|x|yyy|N:{72c}yyy
folded base64 alone: 3v|P;B:A~_A~N:{72c}x|x|yyy|P;B:A~_A~N:{72c}yyy
folded 2.1: 2v|A:a~_b~N:{72c}x|x|yyy|A:a~_b~N:{72c}yyy
folded base64 with a long field: 3f|A:a~_b~P;B;{70c}x:A~_A|x|yyy|A:a~_b~P;B;{70c}yyy:A~_A
folds outside cards: -v|N:{72c}x~_a|x|yyy|N:{72c}yyy~_a
quoted-printable: 2v|N{Q}=c3=A9=4d=3da|a|{+E9}=_~|N{Q}=c3=A9=4d=3d=C3=A9=3D=20
too long: 2v|N{Q}{54c}x|x|{+E9}_y{+E9}|N{Q}{54c}=~=C3=A9_y=C3=A9
not too long: 2v|N{Q}{56c}x|x|y|N{Q}{56c}y
longer than before but long: 2v|N{Q}{60c}x|x|yy|N{Q}{60c}yy
not before a blank: 2v|N{Q}{56c}x|x|___y|N{Q}{55c}=~c___y
not before a frame: 2v|N{Q}{56c}x|x|END:VCARD|N{Q}{55c}=~cEND:VCARD
soft break inside: 2v|N{Q}a=~b=~c|ab|x|N{Q}x=~c
blank after a soft break: 2v|N{Q}a=~bc|b|_{9}|N{Q}a=~=20=09c
kept blank after it: 2v|N{Q}a=~b_c|b||N{Q}a_c
kept blank at the end: 2v|N{Q}a_b|b||N{Q}a=20
blank that was there: 2v|N{Q}ab_|b||N{Q}a_
new code: 2v|N{Q}=x41|x||N{Q}=3D41
new soft break: 2v|N{Q}a=_x|x||N{Q}a==20
new soft break: 2v|N{Q}a=x|x||N{Q}a=3D
line ends: 3s|N:a|a|b^c<d|N:b\nc\nd
line ends in codes: 2s|N;X=a{Q}a|a|b^c|N;X=b\nc{Q}b=0D=0Ac
line ends are found: 2s|N{Q}a=0Ab|a^b|x|N{Q}x
letters that a page lacks: 3v|A:{E9}x|x|{+416}{+1F600}{+E8}|A:{E9}???{E8}
that a charset lacks: 2v|N;CHARSET=latin1:x~N;CHARSET=latin1{Q}x|x|{+416}{+E9}|N;CHARSET=latin1:?{E9}~N;CHARSET=latin1{Q}?=E9
letters beside codes of a page: 2v|N{Q}=E9x|x|{+E8}|N{Q}=E9=E8
letters in codes of ASCII: 2v|A:{E9}~N{Q}x|x|{+E8}|A:{E9}~N{Q}=E8
stray bytes stay: 3v|A:{FF}x{+E9}{C3}~_{A9}|x|y|A:{FF}y{+E9}{C3}~_{A9})");
}

TEST_F(CardsTest, StructureStays) {
    Try(R"(word that tells how to read: 2w|N{Q}=41a|PRINTABLE~a|X~b
nothing is read by it: 2w|N{Q}aa|PRINTABLE|X|N;QUOTED-X:aa
charset: 2w|N;CHARSET=latin1:{E9}|latin1|utf-8
charset of ASCII: 2w|N;CHARSET=latin1:a|latin1|utf-8|N;CHARSET=utf-8:a
charset that is unknown then: 2w|N;CHARSET=latin1:a|latin1|x
base64: 3f|P;ENCODING=b:AA~_AA|=b|=c
name of base64: 3f|P;ENCODING=b:AA~AA|P|Q|Q;ENCODING=b:AA~AA
name of many letters: 3f|KEY:{200A}|KEY|X
another such name: 3f|KEY:{200A}|KEY|a.Logo|a.Logo:{200A}
newly after base64: 2w|P;BASE64:AA~a-|-|
newly after it, with another byte: 2v|P;BASE64:AA~{E9}|{+E9}|x
newly a soft break: 2f|N;QUOTED-X:a=~B:b|X|PRINTABLE
newly many letters: 3v|KEY:{199A}-A|-|B
stray bytes that meet: 3v|A:{C3}x{A9}y~B:{+E9}{+E9}|x~y|~z
stray bytes that do not: 3v|A:{C3}xy{A9}~B:{+E9}{+E9}|x||A:{C3}y{A9}~B:{+E9}{+E9}
blank at the beginning: 3w|A_b:c|A|
blank at the beginning outside: -w|a~a_b~_a|a||~a_b~_
frames in a card: 3w|xEND:VCARD~xVERSION;a:2~xBEGIN:VCARD_~xN:x|x||xEND:VCARD~xVERSION;a:2~xBEGIN:VCARD_~N:
frames outside: -w|xend:VCARD~xVERSION:2~xBegin:VCARD|x||end:VCARD~VERSION:2~xBegin:VCARD
separating colon: 3w|TEL:1:TEL:1|L:1|x|TEL:1:TEx
the search goes on after it: 3w|a:aa:a|a:a|x|a:ax
another colon for it: 3w|TEL:1|L:1|X:2:3|TEX:2:3
the first is it then: 2w|N{Q}a|E:a|E:{+E9}:|N{Q}=C3=A9:
but no further one: 2w|N{Q}=41|N;QU|{+E9}:N;QU
the colon moves: 2w|NAME{Q}a|NAME~a|N~{+E9}|N{Q}=C3=A9
line ends that meet: 3v|N:b<a^B:b|a|
any colon outside cards: -w|a:b:b|a:b|x|x:b
any colon without a header: 3w|a b:b|b:b|x|a x
colon in a field: 3f|X;A=b:c|b|b:d|X;A=b:d:c
which moves a coded value: 2f|N;A{Q}=41|;A|:B
escapes: 3v|A:\nn\\nn\,|n~\,|x~,|A:\nx\\xx,
from the letter after it on: 3v|A:\aaa\aa|aa|x|A:\ax\aa
escapes in fields: 4f|A;B="\nn":c|n|x|A;B="\nx":c
none in 2.1: 2v|A:\nn|n|x|A:\xx
none outside cards: -v|A:\nn|n|x|A:\xx)");
}

/// Text in UTF-8 in another form, with a mark: in units of so many bytes.
std::string Marked(const std::string& utf8, std::size_t width, bool swapped) {
    if (width == 1) {
        return kMark8 + utf8;
    }
    std::string bytes;
    const std::u16string text = u"\uFEFF" + TextFromUtf8(utf8);
    for (std::size_t at = 0; at < text.size(); ++at) {
        char32_t unit = text[at];
        if (width == 4 && (unit & 0xFC00) == 0xD800) {
            unit = 0x10000 + ((unit & 0x3FF) << 10) + (text[++at] & 0x3FFU);
        }
        for (std::size_t i = 0; i < width; ++i) {
            bytes += static_cast<char>(unit >> 8 * (swapped ? width - 1 - i : i) & 0xFF);
        }
    }
    return bytes;
}

TEST_F(CardsTest, AFileStaysInItsEncoding) {
    const std::string rows =
        R"(fold: 3v|A:{+E9}~_ria{+1F600}|{+E9}r|{+416}|A:{+416}ia{+1F600}
more than 16 bits: 4v|A:a{+1F600}|{+1F600}|{+1F480}|A:a{+1F480}
charset counts for codes only: 2v|N;CHARSET=latin1:{+E9}~N;CHARSET=latin1{Q}{+E9}=E9|{+E9}|e|N;CHARSET=latin1:e~N;CHARSET=latin1{Q}ee
unknown charset: 2v|N;CHARSET=x:a~N;CHARSET=x{Q}a|a|b|N;CHARSET=x:b~N;CHARSET=x{Q}a
codes beside letters: 2v|N{Q}=C3{+E9}=A9~A{Q}=C3=A9{+E9}|{+C3}{+E9}{+A9}~{+E9}|1~2|N{Q}1~A{Q}22
new codes: 2v|N{Q}x|x|{+416}|N{Q}=D0=96)";
    for (const std::string& row : Lines(rows)) {
        const Case one(row);
        for (const auto& [width, swapped] :
             {std::pair(1, false), {2, false}, {2, true}, {4, false}, {4, true}}) {
            SCOPED_TRACE(row + " in units of " + std::to_string(width));
            const auto marked = [&, w = width, s = swapped](const std::string& text) {
                return Marked(text, static_cast<std::size_t>(w), s);
            };
            EXPECT_EQ(Replaced(one.part, marked(one.input), one.find, one.replace),
                      marked(one.output));
            EXPECT_EQ(Replaced(one.part, marked(one.input) + "\x01", u"\u0416\uE000", u"?"),
                      marked(one.input) + "\x01");
        }
    }
    const auto card = [](const std::u16string& text) {
        return Utf16(u"BEGIN:VCARD\nA:a\n b\n" + text + u"\nEND:VCARD");
    };
    const std::u16string letters(71, u'\u00E9');
    const struct {
        const char* name;
        std::string input;
        std::u16string find, replace;
        std::string output;
    } others[] = {
        {"odd length", Utf16(u"a:a") + "a", u"a", u"b", Utf16(u"b:b") + "a"},
        {"half a letter", Utf16(u"a\xD83D\xDE00\xD83D"), u"\xD83D", u"x", Utf16(u"a\xD83D\xDE00x")},
        {"half a letter is put in", Utf16(u"ab"), u"a", u"\xDE00",
         Utf16(u"\xDE00"
               u"b")},
        {"halves that meet", Utf16(u"\xD83D-\xDE00 -"), u"-", u"", Utf16(u"\xD83D-\xDE00 -")},
        {"halves of 32 bits do not", "\xFF\xFE\0\0\x3D\xD8\0\0-\0\0\0\0\xDE\0\0"s, u"-", u"",
         "\xFF\xFE\0\0\x3D\xD8\0\0\0\xDE\0\0"s},
        {"more than 32 bits should hold", "\0\0\xFE\xFF\0\x11\0\x3A\xFF\xFF\xFF\xFF\0\0\0a\0"s,
         u"a", u"b", "\0\0\xFE\xFF\0\x11\0\x3A\xFF\xFF\xFF\xFF\0\0\0b\0"s},
        {"no half in bytes", "ab", u"a", u"\xDE00", "?b"},
        {"units are counted", card(u"N:" + letters + u"xx"), u"xx", u"yyy",
         card(u"N:" + letters + u"yy\n y")},
        {"not bytes", card(u"N:" + letters + u"x"), u"x", u"yy", card(u"N:" + letters + u"yy")},
        {"a letter of two units", card(u"N:" + letters + u"xx"), u"xx", u"y\U0001F600",
         card(u"N:" + letters + u"y\n \U0001F600")},
    };
    for (const auto& other : others) {
        EXPECT_EQ(Replaced(kWhole, other.input, other.find, other.replace), other.output)
            << other.name;
    }
    calls.mostAtOnce = 3; // so that the letter is torn where text is converted in parts
    for (std::size_t before = 32'766; before <= 32'770; ++before) {
        const std::u16string text(before, u'a');
        EXPECT_EQ(Replaced(kWhole, Utf16(text + u"\U0001F600\r\n"), u"\U0001F600", u"b"),
                  Utf16(text + u"b\r\n"))
            << before;
    }
    calls.mostAtOnce = 1'000'000;
    ansi.Choose(u"UTF-8"); // as a page, which decides nothing
    EXPECT_EQ(Replaced(kWhole, "a\xE9\xC3\xA9\xE9", u"a\r\n\u00E9", u"\u0416\r\ne"),
              "\xD0\x96\xE9\x65\xE9");
    Try(R"(stray codes: 2v|N{Q}=E9a|a|{+E9}|N{Q}=E9=C3=A9)");
}

TEST_F(CardsTest, PartnerlessLinesAreReportedOncePerFile) {
    const auto at = [](const char* routine, int statement) {
        return "in Zentavor2021/08/31.ReplaceText."s + routine + " at line " +
               std::to_string(statement);
    };
    const Strings routines{"ReplaceTextInCards", "ReplaceTextInCards", "ReplaceTextInCards",
                           "ReplaceSetsInCards"};
    folder.Write("folder/f", "BEGIN:VCARD\na:a\n b\nEND:VCARD\n");
    folder.MakeFolder("out");
    const OutputLocation out{OutputLocation::OneFolder, folder.Path("out")};
    prompts.whenShown = [&](const Box&) {
        EXPECT_LE(calls.openFiles, 1) << "beside the log, a file stays locked while a box is open";
    };
    for (std::size_t part = 0; part <= kSets; ++part) {
        const auto report = [&](int statement) { return at(routines[part].c_str(), statement); };
        const auto run = [&](const OutputLocation& location) {
            return Replace(part, "folder/f", u"a\r\nb\r\nc", u"A", location);
        };
        const Strings partnerless(2, report(kReplacing));
        flags = {true, true};
        EXPECT_EQ(run(out), partnerless);
        EXPECT_EQ(folder.Read("out/f"), "BEGIN:VCARD\n"s +
                                            (part == 1   ? "a:A"
                                             : part == 0 ? "A:a"
                                                         : "A:A") +
                                            "\n b\nEND:VCARD\n");
        EXPECT_TRUE(flags.IsUtf8 && flags.IsUnicode);
        folder.Remove("out/f");
        EXPECT_EQ(run({OutputLocation::OneFolder, u""}),
                  (Strings{partnerless[0], partnerless[0], report(kNaming)}));
        EXPECT_EQ(run({OutputLocation::OneFolder, folder.Path("gone")}),
                  (Strings{partnerless[0], partnerless[0], report(kWriting)}));
        EXPECT_EQ(Replace(part, "missing", u"a", u"b", out), Strings{report(kReading)});
        calls.FailAt(Calls::kRead, calls.calls[Calls::kRead] + 1, EIO);
        EXPECT_EQ(run(out), Strings{report(kReading)});
        EXPECT_EQ(folder.Names("out"), Strings{});
    }
    EXPECT_EQ(Replaced(kValues, "A:abcb", u"b\r\nc", u""), "A:a")
        << "no replace text at all deletes";
    EXPECT_EQ(Replaced(kValues, "A:ab", u"a\r\nb", u"b\r\na"), "A:aa") << "in their order";
    EXPECT_EQ(Replaced(kSets, "A:ab", u"\r\nb", u"x\r\n"), "A:a") << "nothing is not found";
}

TEST_F(CardsTest, AFileThatStaysKeepsItsDate) {
    folder.Write("f", kMark8 + "BEGIN:VCARD\r\nA:a\r\n b=\nEND:VCARD");
    const std::filesystem::path file = folder.Native("f");
    const auto before = std::filesystem::last_write_time(file) - std::chrono::hours(1);
    std::filesystem::last_write_time(file, before);
    Replace(kWhole, "f", u"ab=\r\nxyz", u"xyz\r\nab=");
    EXPECT_EQ(std::filesystem::last_write_time(file), before);
    Replace(kWhole, "f", u"ab", u"ba");
    EXPECT_NE(std::filesystem::last_write_time(file), before);
}

TEST_F(CardsTest, LongLinesAreWorkedOnInPieces) {
    constexpr std::size_t kPiece = 1'048'576;
    const struct {
        std::string header, letter, fold;
        std::size_t pieces;
    } rows[] = {{"NOTE:", "c", "", 11},
                {"NOTE:", "c", "\r\n ", 6},
                {"NOTE:", "\xC3\xA9", "\r\n\t", 4},
                {"N;ENCODING=QUOTED-PRINTABLE:", "=63", "=\r\n", 4}};
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
                                        3 * kPiece - 2, 3 * kPiece, row.pieces * kPiece - 40}) {
            while (units < place) {
                add(row.letter, row.letter);
            }
            const bool isCut = (place + 1) % kPiece == 0;
            add("a", isCut ? "a" : "x");
            add("b", isCut ? "b" : "y");
        }
        EXPECT_TRUE(Replaced(kWhole, text + "\r\nab", u"ab", u"xy") == expected + "\r\nxy")
            << row.header << row.letter << row.fold;
    }
    std::string photo = "BEGIN:VCARD\r\nPHOTO:";
    for (int i = 0; i < 12'000; ++i) {
        photo += std::string(1023, 'a') + (i % 3000 < 1500 ? "a" : "\r\n ");
    }
    EXPECT_TRUE(Replaced(kWhole, photo + "\r\nA:a", u"a", u"b") == photo + "\r\nA:b");
}

/// Lines of cards with all that matters, in whatever order. Letters and colons are never coded.
std::string RandomCards(std::mt19937& random, int lines) {
    static const auto table = [](const char* text) {
        Strings strings;
        for (const std::string& row : Rows(text)) {
            strings.push_back(Spelled(Fields(row)[0]));
        }
        return strings;
    };
    static const Strings beginnings = table(R"(
        NOTE: NOTE: a.TEL;CELL: N{Q} N;CHARSET=utf-8{Q} N;CHARSET=ISO-8859-1: N;CHARSET=x: X;A="a:b a_b
        P;BASE64: Photo;A:data:a;base64, KEY:{199a} AGENT:~ AGENT: BEGIN:VCARD~VERSION:2.1~ ~ ~ _ {9}a :
        BEGIN:VCARD^VERSION:3.0^ begin:vcard_~ BEGIN:VCARD~VERSION:4.0~ END:VCARD~ VERSION:2.1)");
    static const Strings parts = table(R"(
        a b ab _ \ ; : = =C3=A9 =e9 =0D=0A {+E9} {E9} " x= ~_ ~{9} =~ ^_ < {36a} + =~{A9} {C3}~_{A9})");
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

TEST_F(CardsTest, LinesThatAreSkimmedOverAreReadAllTheSame) {
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
        for (const char16_t* everywhere : {u":", u"a", u"b", u"E"}) { // and put back
            find.emplace_back(everywhere);
            replace.emplace_back(everywhere);
        }
        quick.ReplaceSetsInCards(folder.Path("f"), {find, replace}, kInPlace);
        ASSERT_EQ(kept.result.value(), result)
            << "round " << round << testing::PrintToString(find) << testing::PrintToString(replace)
            << " in " << input;
    }
}

TEST_F(CardsTest, LargeFilesBecomeWhatSmallOnesDo) {
    const std::pair<std::u16string, std::u16string> pairs[] = {
        {u"a\r\n \r\n\u00E9\r\n\"b", u"bbbb\r\n\r\n=\u0416\r\nA"},
        {u"xx", u""}}; // of which no line becomes longer
    const std::string filling = "X:ccccccccccccccccccccccccc";
    std::mt19937 random(15);
    for (const auto& [mark, most] : {std::pair(""s, "\xC3\xA9"), {""s, "\xE9"}, {kMark16, "e"}}) {
        std::string cards =
            "BEGIN:VCARD\r\n" + RandomCards(random, 500) + "\nEND:VCARD\r\nY:\xC3xx\xA9\r\n";
        while (cards.size() < 600'000) {
            cards += filling + most + "\r\n";
        }
        if (!mark.empty()) {
            cards = Marked(NativeName(TextFromUtf8(cards)), 2, false).substr(mark.size());
        }
        for (const auto& [find, replace] : pairs) {
            calls.mostAtOnce = 1'000'000;
            const std::string small =
                Replaced(kWhole, mark + cards, find, replace).substr(mark.size());
            std::string large = mark, expected = mark;
            while (large.size() < std::size_t{9} * 1024 * 1024 * (mark.empty() ? 1 : 2)) {
                large += cards;
                expected += small;
            }
            calls.mostAtOnce = 100'003;
            EXPECT_TRUE(Replaced(kWhole, large, find, replace) == expected) << mark << most;
            EXPECT_TRUE(find != u"xx" || (large == expected) == (most == "\xC3\xA9"s));
        }
    }
}

} // namespace
} // namespace vexmarrow::test
