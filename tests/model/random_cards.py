# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Random files of cards, and pairs that occur in them; the same seed and number make the same case."""

import base64
import codecs
import random
import struct
from typing import NamedTuple

import vcard_model
from vcard_change import BACKSLASH, FIELDS, SETS, VALUES, WHOLE
from vcard_charsets import STRAY

PAGES = ["windows-1252"] * 6 + ["windows-1251", "windows-1250", "ISO-8859-15", "UTF-8", "UTF-8"]
MARKS = {"utf-8": b"\xef\xbb\xbf", "<H": b"\xff\xfe", ">H": b"\xfe\xff", "<I": b"\xff\xfe\0\0", ">I": b"\0\0\xfe\xff"}
WORDS = [
    "Anna", "Müller", "Peña", "Zoë", "Łódź", "Иван", "山田太郎", "ソース", "\U0001f600", "naïve", "€ 5", "“x”", "na",
    "555-0100", "+1", "a,b", r"a\,b", r"x\ny", r"\\n", "\\", "x:y", "10:30", "https://example.org/a?b=c", "=41", "=",
    "==", "= ", "a=b", "\t", " ", "  ", "-", ";", ";;", '"', "aaaa", "abababab", "A", "e", "\0", "\x19", "\x85",
    "VERSION:2.1", "END:VCARD", "BEGIN:VCARD", "ä", "ö ü", "é", "example", "Quay Street", "?", "~", "Ж", "カナ", "ｶﾅ",
]
NAMES = ["FN", "N", "TEL", "ADR", "NOTE", "ORG", "EMAIL", "URL", "LABEL", "X-A_b", "fn", "note", "PHOTO", "KEY",
         "AGENT"]
PARAMETERS = [
    "CELL", "HOME", "WORK", "PREF", "TYPE=CELL", "TYPE=home,work", 'TYPE="a:b"', 'X="a;b"', 'X="a:b', 'X=a"b', 'X="a"b',
    "type=Pref", "ENCODING=8BIT", "ENCODING=7BIT", "TYPE=B", "X=a^nb", "LANGUAGE=de", 'X=",c', 'X=1,"e:f"', " CELL ",
    "VALUE=uri", "", "X=é", "B64", "ENCODING=X",
]
QP = ["QUOTED-PRINTABLE", "ENCODING=QUOTED-PRINTABLE", "quoted-printable", "encoding=Quoted-Printable",
      "ENCODING= QUOTED-PRINTABLE ", 'ENCODING="QUOTED-PRINTABLE"']
BASE64 = ["B", "BASE64", "b", "ENCODING=B", "ENCODING=b", "ENCODING=BASE64", "encoding=base64", 'ENCODING="B"']
# Texts that other parsers read in the same way.
TAME_WORDS = ["Anna", "Müller", "Łódź", "Иван", "山田太郎", "\U0001f600", "na", "555-0100", "a,b", r"a\,b", r"x\ny", "x:y",
              ";", "10:30", "https://example.org/a?b=c", "=41", "a=b", "-", "aaaa", "abababab", "e", "Quay Street"]
TAME_PARAMETERS = ["CELL", "HOME", "TYPE=CELL", "TYPE=home,work", "type=Pref", 'TYPE="a;b"', "LANGUAGE=de"]
TAME_CHARSETS = ["UTF-8", "ISO-8859-1", "KOI8-R", "windows-1252"]
CHARSETS = ["UTF-8", "utf-8", "ISO-8859-1", "iso-8859-1", "windows-1252", "Shift_JIS", "SHIFT_JIS", "KOI8-R",
            "US-ASCII", "X-UNKNOWN", "ISO-2022-JP", "UTF-7", "UTF-16", "UTF-16LE", "UTF-32", '"UTF-8"', "Windows-1251"]
PYTHON_NAMES = {"Shift_JIS": "cp932", "SHIFT_JIS": "cp932"}
REPLACEMENTS = [
    "", "", "", "X", "x", "Hans", "ß", "Ω", "\U0001f680", "日本", "ソ", "€", ":", "a:b", "=", "=4", "=41", "41", "4",
    " ", "  ",
    "\t", " x", "x ", "\t ", "END:VCARD", "BEGIN:VCARD", "VERSION:", "VERSION:4.0", "QUOTED-PRINTABLE", "BASE64",
    "B", "b",
    "ENCODING=B", "ENCODING=QUOTED-PRINTABLE", "CHARSET=UTF-8", "CHARSET=", "UTF-8", "ISO-8859-1", "X-UNKNOWN", "PHOTO",
    "KEY", "NOTE", "TYPE", '"', '="', ";", "\\", "\\n", ",", "A" * 30, "lorem ipsum " * 8, "w" * 120, "é" * 50, "?",
    "\0",
    "\ud83d", "\ude00", "ABCD" * 60, "x y  z" * 16, "Ã", "¤", "é", "data:image/png;base64,", "AGENT",
    "0" * 70, "-" * 76,
]
REPLACEMENTS_WITH_LINE_ENDS = ["\r\n", "\n", "\r", "a\nb", "a\r\nb\r\n", "\n:", "x\rEND:VCARD"]
COMMON = ["a", "e", "=", ":", " ", "T", "CELL", "QUOTED", "ENCODING", "B", "CHARSET", "UTF-8", "NOTE:", "PHOTO", "n",
          "\\", "na", "ä", "é", "http", "\t", '"', "AGENT:", "X", "\ud83d", "\ude00", "", "zzzz", "VCARD", "2.1",
          "A", "1", "l"]


class Case(NamedTuple):
    data: bytes
    page: str
    part: int
    finds: list
    replacements: list


class Maker:
    def __init__(self, rng):
        self.rng = rng
        self.page = rng.choice(PAGES)
        self.form = rng.choices(["", "utf-8", "<H", ">H", "<I", ">I"], [60, 12, 10, 7, 6, 5])[0]
        self.text = rng.choice(["utf-8", "utf-8", "page", "mixed"]) if not self.form else "utf-8"
        ends = ["\r\n", "\n", "\r", "\r\r\n"]
        self.ends = rng.choices([ends[:1], ends[1:2], ends[2:3], ends[3:], ends], [6, 3, 1, 1, 3])[0]
        self.words = rng.sample(WORDS, rng.randint(3, 12))
        self.tame = self.chance(0.3)
        if self.tame:
            self.form = self.form if self.chance(0.4) else ""
            self.text, self.ends = "utf-8", rng.choice([["\r\n"], ["\n"]])
            self.words = rng.sample(TAME_WORDS, rng.randint(3, 12))

    def chance(self, share):
        return self.rng.random() < share

    def end(self):
        return self.rng.choice(self.ends)

    def is_wide(self):
        return self.form not in ("", "utf-8")

    def raw(self, text):
        """Text as units of the file, each as a character."""
        if self.form[1:] == "H":
            data = text.encode("utf-16-le", "surrogatepass")
            return "".join(map(chr, struct.unpack(f"<{len(data) // 2}H", data)))
        if self.is_wide():
            return text
        form = self.text if self.text != "mixed" else self.rng.choice(["utf-8", "page"])
        form = self.page if form == "page" else form
        return text.encode(form, "ignore").decode("latin-1")

    def words_of(self, count):
        return "".join(self.rng.choice(self.words) + self.rng.choice(["", " ", " ", ","]) for _ in range(count))

    def stray(self):
        if self.is_wide():
            return self.rng.choice(["\ud800", "\udc00", "\ufffe"])
        return self.rng.choice(["\xff", "\x80", "\xc3", "\xe2\x82", "\xa4", "\x83", "\xe9"])

    # Values

    def plain_value(self, charset):
        text = self.words_of(self.rng.randint(0, 6) if self.chance(0.85) else self.rng.randint(8, 25))
        raw = self.in_charset(text, charset) if charset and not self.is_wide() and self.chance(0.8) else self.raw(text)
        if self.chance(0.06):
            at = self.rng.randint(0, len(raw))
            raw = raw[:at] + self.stray() + raw[at:]
        return raw

    def in_charset(self, text, charset):
        name = PYTHON_NAMES.get(charset, charset.strip('"'))
        try:
            codecs.lookup(name)
        except LookupError:
            name = "utf-8"
        return text.encode(name, "ignore").decode("latin-1")

    def coded_value(self, charset, soft):
        """Quoted-printable with codes in either case, soft breaks at any place, and stray "="."""
        text = self.words_of(self.rng.randint(0, 8))
        if charset:
            raw = self.in_charset(text, charset)
        elif self.is_wide():
            raw = text.encode().decode("latin-1")
        else:
            raw = self.raw(text)
        hexed = self.rng.choice([0.02, 0.02, 0.3, 1])
        result = []
        for unit in raw:
            if self.chance(0.02):
                result += self.rng.choice(["=", "=Z", "=4", "=a", "= ", "==", "=FF", "=E9", "=0D=0A"])
            if unit > "\x7f" and (self.is_wide() or self.chance(0.9)) or unit == "=" and self.chance(0.8) or \
                    unit in "\r\n" or self.chance(hexed):
                result += f"={ord(unit):02x}" if self.chance(0.3) else f"={ord(unit):02X}"
            else:
                result.append(unit)
        if self.is_wide() and self.chance(0.3):
            result += self.raw(self.words_of(1))
        for _ in range(self.rng.choice([0, 0, 1, 2, 4]) if soft else 0):
            blanks = self.rng.choice(["", "", "", " ", "\t "])
            soft_break = f"={blanks}{self.end()}"
            result.insert(self.rng.randint(0, len(result)), soft_break)
        if self.chance(0.15):
            result.append(self.rng.choice(["=", "= ", " ", "=3", "=Z41", "=Z", " Z", "  Z", "\tZ"]))
        return "".join(result)

    def base64_letters(self, size):
        return base64.b64encode(bytes(self.rng.choice([0, 65, 255, self.rng.randrange(256)])
                                      for _ in range(size))).decode()

    def base64_value(self, size):
        """Letters in lines, all, some or none of them indented; often with an empty line at the end."""
        letters = self.base64_letters(size)
        width = self.rng.choice([20, 60, 72, 74, 76])
        leads = self.rng.choice([[" "], ["\t"], [""], ["", " "], ["  "]])
        lines = [letters[at:at + width] for at in range(0, len(letters), width)]
        if self.chance(0.3):
            lines.insert(0, "")
        value = lines[0] if lines else ""
        for line in lines[1:]:
            value += self.rng.choice(["", "", "", " "]) + self.end() + self.rng.choice(leads) + line
        return value + (self.end() if self.chance(0.4) else "")

    # Lines

    def header(self, name, params):
        group = self.rng.choice(["item1.", "A.", "a-b_1."]) if self.chance(0.12) else ""
        return self.raw("".join([group, name] + [f";{param}" for param in params]))

    def content_line(self):
        rng = self.rng
        name = rng.choice(NAMES)
        params = [rng.choice(PARAMETERS) for _ in range(rng.choice([0, 0, 0, 1, 1, 2, 3]))]
        charset = rng.choice(CHARSETS) if self.chance(0.22) else None
        if charset:
            params.insert(rng.randint(0, len(params)), rng.choice(["CHARSET=", "charset="]) + charset)
        kind = rng.choices(["plain", "coded", "base64", "data", "picture"], [60, 24, 6, 2, 3])[0]
        value = ""
        if kind == "coded":
            params.insert(rng.randint(0, len(params)), rng.choice(QP))
            value = self.coded_value(charset, self.chance(0.6))
        elif kind == "base64":
            params.insert(rng.randint(0, len(params)), rng.choice(BASE64))
            value = self.base64_value(rng.choice([0, 3, 30, 200]))
        elif kind == "data":
            value = rng.choice(["data:image/png;base64,", "DATA:;base64,", "data:a,b;base64,", "data:x;BASE64,"])
            value += self.base64_value(30)
        elif kind == "picture":
            name = rng.choice(["PHOTO", "LOGO", "SOUND", "KEY", "photo"])
            value = self.base64_value(rng.choice([100, 148, 149, 150, 151, 160, 300]))
            value = value.replace("=", "") if self.chance(0.5) else value
        else:
            value = self.plain_value(charset)
        if kind in ("base64", "data", "picture"):
            return f"{self.header(name, params)}:{value}"
        return f"{self.header(name, params)}:{value}", kind

    def tame_line(self, old):
        """A line as other programs write it; `old`: for a card of 2.1."""
        rng = self.rng
        params = [rng.choice(TAME_PARAMETERS[:4] if old else TAME_PARAMETERS) for _ in range(rng.choice([0, 0, 1, 2]))]
        kind = rng.choices(["plain", "coded", "base64"], [6, 4 if old else 0, 1])[0]
        name, value = rng.choice(NAMES[:10]), self.words_of(rng.choice([1, 3, 5, 12])).strip()
        if kind == "plain":
            line = f"{self.header(name, params)}:{self.raw(value)}"
            return line if old or self.chance(0.3) else self.wrapped(line, 75, f"{self.end()} ")
        if kind == "base64":
            line = self.header("PHOTO", ["BASE64" if old else "ENCODING=b"]) + ":"
            line += self.base64_letters(rng.randint(0, 90))
            return line if old else self.wrapped(line, 75, f"{self.end()} ")
        charset = rng.choice(TAME_CHARSETS) if self.chance(0.5) else ""
        params += [rng.choice(QP[:2])] + ([f"CHARSET={charset}"] if charset else [])
        everything = self.chance(0.2)
        codes = [f"={byte:02X}" if everything or byte == 0x3D or not 0x20 <= byte < 0x7F else chr(byte)
                 for byte in value.encode(charset or "utf-8", "ignore")]
        line = f"{self.header(name, params)}:"
        used = len(line)
        for code in codes:
            if used + len(code) > 75:
                line, used = f"{line}={self.end()}", 0
            line, used = line + code, used + len(code)
        return line

    @staticmethod
    def wrapped(line, width, fold):
        return fold.join([line[:width]] + [line[at:at + width - 1] for at in range(width, len(line), width - 1)])

    def tame_card(self):
        version = self.rng.choice(["2.1", "3.0", "3.0", "4.0"])
        lines = ["BEGIN:VCARD", f"VERSION:{version}"]
        lines += [self.tame_line(version == "2.1") for _ in range(self.rng.randint(1, 8))]
        return "".join([*(f"{line}{self.end()}" for line in lines), "END:VCARD"])

    def folded(self, line):
        """Folds at any place, even inside characters, or at the usual width; `line` may have line ends already."""
        width = self.rng.choice([0, 0, 60, 75, 75, 76])
        blank = self.rng.choice([" ", " ", "\t"])
        if width:
            return line if vcard_model.LINE_END.search(line) else self.wrapped(line, width, self.end() + blank)
        for _ in range(self.rng.choice([0, 1, 1, 2, 4])):
            at = self.rng.randint(1, max(1, len(line)))
            fold = self.end() + self.rng.choice([" ", " ", "\t"])
            line = line[:at] + fold * self.rng.choice([1, 1, 1, 2]) + line[at:]
        return line

    def odd_line(self):
        return self.rng.choice(["", "", "no colon", " begins with a blank", "=", "a.b.c:d", "é;x:y", ":", ";:", "TEL",
                                "data:x;base64,AAAA", "AAAA", "BEGIN:VCARD x", "END:VCARDS", "BEGIN: VCARD", "\t",
                                "VERSIONS:1"])

    def line(self, folds):
        if self.chance(0.06):
            return self.raw(self.odd_line())
        made = self.content_line()
        if isinstance(made, str):
            return made
        return self.folded(made[0]) if folds and self.chance(0.6) else made[0]

    # Cards and files

    def card(self, depth=0):
        rng = self.rng
        version = rng.choice(["2.1", "2.1", "3.0", "3.0", "3.0", "4.0", "4.0", "", "2.1 ", "2.10", "5"])
        folds = self.chance(0.6)
        lines = [self.line(folds) for _ in range(rng.randint(0, 7))]
        if version:
            at = 0 if self.chance(0.85) else rng.randint(0, len(lines))
            begin = rng.choice(["VERSION:", "VERSION:", "VERSION:", "version:", "Version;X=1:", "VERSION: "])
            lines.insert(at, self.raw(begin + version) + (f"{self.end()} 2.1" if self.chance(0.03) else ""))
        if depth < 2 and self.chance(0.07):
            agent = rng.choice(["AGENT:", "agent;X=y: ", "A.AGENT:", "AGENT:x"]) + self.end()
            lines.insert(rng.randint(1 if lines else 0, len(lines)), agent + self.card(depth + 1))
        begin = rng.choice(["BEGIN:VCARD"] * 6 + ["begin:vcard", "BEGIN:VCARD ", "Begin:vCard\t "])
        text = begin + self.end() + "".join(line + self.end() for line in lines)
        return text + (rng.choice(["END:VCARD"] * 6 + ["end:vcard", "END:VCARD  "]) if self.chance(0.95) else "FN:x")

    def data(self):
        rng = self.rng
        parts = []
        if self.tame:
            raw = "".join(self.tame_card() + self.end() for _ in range(rng.choice([1, 1, 2])))
            mark = MARKS.get(self.form, b"")
            return mark + (self.wide(raw) if self.is_wide() else raw.encode("latin-1"))
        for _ in range(rng.choice([0, 1, 1, 1, 2, 3])):
            if self.chance(0.15):
                outside = [self.raw(self.words_of(3)), "", "NOTE:x", "END:VCARD", "VERSION:2.1", "A;B64:="]
                parts.append(rng.choice(outside))
            parts.append(self.card())
        if not parts or self.chance(0.05):
            parts += [self.raw(self.words_of(rng.randint(0, 4))) for _ in range(rng.randint(0, 4))]
        raw = "".join(part + self.end() for part in parts)
        if self.chance(0.2):
            raw = vcard_model.LINE_END.sub("", raw[::-1], 1)[::-1] if raw else raw
        if self.chance(0.06):
            raw = raw[:rng.randint(0, len(raw))]
        if self.is_wide():
            return MARKS[self.form] + self.wide(raw)
        if self.chance(0.03):
            raw = "".join(chr(rng.randrange(256)) if self.chance(0.05) else c for c in raw)
        return MARKS.get(self.form, b"") + raw.encode("latin-1", "replace")

    def wide(self, raw):
        numbers = list(map(ord, raw))
        if self.form[1] == "I" and numbers and not self.tame and self.chance(0.2):
            numbers[self.rng.randrange(len(numbers))] = self.rng.choice([0x110000, 0xFFFFFFFF, 0x80000041])
        if self.form[1] == "H":
            numbers = [n for n in numbers if n < 0x10000]
        data = struct.pack(f"{self.form[0]}{len(numbers)}{self.form[1]}", *numbers)
        return data + (b"\0A\0"[:self.rng.choice([1, 1, 2, 3])] if self.chance(0.15) else b"")


def seen(line, part):
    """The first unit of a line that belongs to a part, and the one after the last."""
    if part == FIELDS:
        return 0, line.border or 0
    if part == VALUES and line.border is not None:
        return line.border + 1, len(line.units)
    return 0, len(line.units)


def starts_of_pieces(line):
    """The units at the beginning of the line or directly after a fold."""
    places = {fold.at for fold in line.folds}
    return [i for i, unit in enumerate(line.units) if i == 0 or unit[1] in places]


def stretch(rng, line, first, after):
    """Some units of a line, preferably near something that makes a replacement difficult."""
    length = rng.choice([1, 1, 2, 3, 5, 8, 30, 200])
    hard = [i for i in range(first, after) if i == line.border or line.units[i - 1][0] == BACKSLASH
            or line.units[i][2] - line.units[i][1] > 1]
    hard += [i for i in starts_of_pieces(line) if first <= i < after]
    at = rng.randrange(first, after)
    if hard and rng.random() < 0.6:
        at = max(first, rng.choice(hard) - rng.randint(0, length))
    return at, min(at + length, after)


def whole_piece(rng, line, first, after):
    """All units between two folds that belong to the part."""
    starts = starts_of_pieces(line)
    at = rng.randrange(len(starts))
    end = starts[at + 1] if at + 1 < len(starts) else len(line.units)
    return max(first, starts[at]), min(after, end)


def cut(rng, file, part, choose=stretch):
    """A text that occurs in a line; "" if none was found."""
    lines = [line for line in file.lines if len(line.units) > 1]
    folded = [line for line in lines if line.folds]
    if choose is whole_piece and folded:
        lines = folded
    for _ in range(10 if lines else 0):
        line = rng.choice(lines)
        first, after = seen(line, part)
        if first >= after:
            continue
        at, end = choose(rng, line, first, after)
        values = line.values()[at:end]
        if values and all(value < STRAY for value in values):
            return joined("".join(map(chr, values)))
    return ""


def joined(text):
    """The text with surrogates joined to characters."""
    return text.encode("utf-16-le", "surrogatepass").decode("utf-16-le", "surrogatepass")


def pair(rng, file, part):
    special = rng.random()
    if special < 0.07:
        return "Z", rng.choice(["", "", "", "41", " "])
    if special < 0.12:
        find = "".join(c for c in cut(rng, file, part, whole_piece) if c not in "\r\n")
        return find, rng.choice(["", "", "", "x"])
    if special < 0.14:
        return "n", rng.choice(["N", "nn", ""])
    find = rng.choice(COMMON) if rng.random() < 0.25 else cut(rng, file, part)
    replacement = rng.choice(REPLACEMENTS)
    if rng.random() < 0.2:
        replacement += rng.choice(REPLACEMENTS)
    if rng.random() < 0.15:
        replacement = find + replacement
    if rng.random() < 0.1 and ":" in find:
        replacement = find.replace(":", "y:")
    if part == SETS and rng.random() < 0.15:
        replacement += rng.choice(REPLACEMENTS_WITH_LINE_ENDS)
    if part != SETS:
        find, replacement = ("".join(c for c in text if c not in "\r\n") for text in (find, replacement))
    return find, joined(replacement)


def case(seed, number):
    rng = random.Random(f"{seed}/{number}")
    maker = Maker(rng)
    return case_for(rng, maker.data(), maker.page)


def case_for(rng, data, page):
    """A case for given bytes."""
    part = rng.choice([FIELDS, VALUES, VALUES, WHOLE, WHOLE, SETS, SETS])
    file = vcard_model.read(data, page)
    pairs = [pair(rng, file, part) for _ in range(rng.choice([1, 1, 2, 3, 4]))]
    finds, replacements = [p[0] for p in pairs], [p[1] for p in pairs]
    if part != SETS and len(pairs) > 1 and rng.random() < 0.1 and any(replacements[:-1]) and finds[-1]:
        replacements.pop()
    return Case(data, page, part, finds, replacements)
