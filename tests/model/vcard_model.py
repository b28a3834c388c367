# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""How a file is read as vCards, written down plainly and independently of the program.

A file is held as `raw`, a str with one character for each unit: a byte, or a 16-bit or 32-bit unit of a file
with such a mark. Decoded text is a list of ints: code points, or greater numbers (see STRAY and ALIEN) for
units that are no characters. Each rule has a function of its own; speed does not matter.
"""

import re
import struct

from vcard_charsets import STRAY, UTF8, Utf16, Utf32, charset_named, upper

PIECE = 1048576
VERSION_REACH = 65536

LINE_END = re.compile("\r\r\n|\r\n|\n|\r")
BLANKS = " \t"
BEGIN = re.compile("BEGIN:VCARD[ \t]*", re.IGNORECASE | re.ASCII)
END = re.compile("END:VCARD[ \t]*", re.IGNORECASE | re.ASCII)
VERSION = re.compile("VERSION[:;]", re.IGNORECASE | re.ASCII)
HEADER = re.compile(r"(?:[A-Za-z0-9_-]+\.)?([A-Za-z0-9_-]+)(?:;.*)?", re.DOTALL)
BASE64_LINE = re.compile("[A-Za-z0-9+/=]+[ \t]*")
BASE64_START = re.compile("[A-Za-z0-9+/=]{200}")
DATA_VALUE = re.compile("data:[^,]*;base64,", re.IGNORECASE | re.ASCII)
SOFT_BREAK = re.compile("=[ \t]*$")
CODE = re.compile("=([0-9A-Fa-f]{2})")
PICTURES = ("PHOTO", "LOGO", "SOUND", "KEY")


# Files ------------------------------------------------------------------------------------------

MARKS = [(b"\xff\xfe\0\0", "<I"), (b"\0\0\xfe\xff", ">I"), (b"\xff\xfe", "<H"), (b"\xfe\xff", ">H"),
         (b"\xef\xbb\xbf", "B")]


class File:
    """The units of a file, its lines, and the charsets of its text."""

    def __init__(self, data, page):
        self.aliens = {}
        self.page = charset_named(page)
        self.mark, self.unit = next((m for m in MARKS if data.startswith(m[0])), (b"", "B"))
        self.width = struct.calcsize(self.unit)
        whole = len(data) - (len(data) - len(self.mark)) % self.width
        self.tail = data[whole:]
        self.raw = self.units_of(data[len(self.mark):whole])
        self.lines = []
        self.text = {"I": Utf32(self.aliens), "H": Utf16()}.get(self.unit[-1], UTF8)

    def units_of(self, data):
        if self.width == 1:
            return data.decode("latin-1")
        numbers = struct.unpack(f"{self.unit[0]}{len(data) // self.width}{self.unit[1]}", data)
        return "".join(chr(n) if n < 0x110000 else self._alien(n) for n in numbers)

    def _alien(self, number):
        for character, known in self.aliens.items():
            if known == number:
                return character
        character = chr(0x10FFFD - len(self.aliens))
        self.aliens[character] = number
        return character

    def bytes_of(self, raw):
        if self.width == 1:
            return raw.encode("latin-1")
        numbers = [self.aliens.get(c, ord(c)) for c in raw]
        return struct.pack(f"{self.unit[0]}{len(numbers)}{self.unit[1]}", *numbers)

    def is_marked(self):
        return bool(self.mark)


# Lines ------------------------------------------------------------------------------------------

class Card:
    def __init__(self, version):
        self.version = version
        self.folds = False  # whether lines are folded; None where the rules leave that open

    def is_21(self):
        return self.version == "2.1"


class Fold:
    """The units between two physical lines of a logical line; `at` is a place in the joined text."""

    def __init__(self, at, start, stop, kind):
        self.at, self.start, self.stop, self.kind = at, start, stop, kind


class Line:
    """A logical line. Places are in `raw`, except those in `units` and `colon`, which are in `joined`.

    role: text, outside, begin, end or version. kind: plain, coded or hidden; the value of a hidden line is not
    searched, and `joined` and `units` end with the colon. start, stop and end: the first unit, and the places
    before and after the line end. units: [(value, first, after)], where `after` is the place after the unit.
    border: the index in `units` of the separating colon, or None.
    """

    def __init__(self, raw, start, card, role):
        self.raw, self.start, self.card, self.role = raw, start, card, role
        self.joined, self.places, self.folds = "", [], []
        self.colon = self.border = self.charset = None
        self.kind, self.why, self.has_charset, self.agent = "plain", "", False, False
        self.units = []
        self.stop = self.end = start
        self.own_end = None
        self.decoder = None
        self.declared = ()  # what the header says of the encoding

    def values(self):
        return [unit[0] for unit in self.units]

    def bounds(self, index):
        """The first unit of the file that belongs to a unit of the text, and the one after the last."""
        _, first, after = self.units[index]
        return self.places[first], self.places[after - 1] + 1

    def raw_of_unit(self, index):
        first, after = self.bounds(index)
        return self.raw[first:after]

    def hidden(self):
        return self.raw[self.places[self.colon] + 1:self.stop] if self.kind == "hidden" else None

    def whole(self):
        return self.raw[self.start:self.end]

    def add(self, start, stop):
        self.joined += self.raw[start:stop]
        self.places.extend(range(start, stop))


def physical(raw, at):
    """The places before and after the end of the physical line that contains `at`."""
    found = LINE_END.search(raw, at)
    return found.span() if found else (len(raw), len(raw))


def is_blank(raw, at):
    return raw[at:at + 1] in (" ", "\t")


def blanks_taken_off(card):
    """The number of blanks that belong to a fold."""
    return 0 if card.is_21() else 1


def add_physical_line(line, at):
    """Adds the rest of a physical line; returns where the one that a fold joins to it goes on, or None."""
    stop, end = physical(line.raw, at)
    line.add(at, stop)
    if stop == end or not is_blank(line.raw, end):
        line.stop, line.end = stop, end
        return None
    at = end + blanks_taken_off(line.card)
    line.folds.append(Fold(len(line.joined), stop, at, "fold"))
    return at


def join_folds(line, at):
    while at is not None:
        at = add_physical_line(line, at)


def forbids_soft_break(raw, at):
    """Whether no soft break joins the physical line at `at` to the one before it."""
    text = raw[at:physical(raw, at)[0]]
    return bool(BEGIN.fullmatch(text) or END.fullmatch(text) or VERSION.match(text))


def begins_like_frame(text, at):
    """Whether a physical line that begins at `at` might be one to which no soft break joins."""
    return any(pattern.match(text, at) for pattern in (BEGIN, END, VERSION))


def soft_break_before(raw, start, stop, end):
    """Where the soft break at the end of a physical line begins, not before `start`; None if there is none."""
    if stop == end or (end < len(raw) and forbids_soft_break(raw, end)):
        return None
    found = SOFT_BREAK.search(raw[start:stop])
    return start + found.start() if found else None


def join_soft_breaks(line, at, colon):
    """Like join_folds, for a value in quoted-printable that begins after `colon`."""
    raw = line.raw
    line.joined, line.places, line.folds = "", [], []
    while at is not None:
        stop, end = physical(raw, at)
        soft = soft_break_before(raw, max(at, colon + 1), stop, end) if stop > colon else None
        if soft is None:
            at = add_physical_line(line, at)
            continue
        line.add(at, soft)
        line.folds.append(Fold(len(line.joined), soft, end, "soft"))
        at = end
        if end == len(raw):
            line.stop = line.end = end
            return


def join_base64(line):
    """Adds the following lines of base64 letters, and the indented lines after each, to the line."""
    while line.stop < line.end:
        stop, _ = physical(line.raw, line.end)
        if not BASE64_LINE.fullmatch(line.raw, line.end, stop):
            return
        line.folds.append(Fold(len(line.joined), line.stop, line.end, "base64"))
        join_folds(line, line.end)


def quote_end(text, at):
    """The place after the quoted text that begins at `at`, or `at` if none does."""
    if text[at] != '"' or at == 0 or text[at - 1] not in "=,":
        return at
    close = text.find('"', at + 1)
    return close + 1 if close > 0 and text[close + 1:close + 2] in tuple(";,:") else at


def split_outside_quotes(text, character, quotes):
    """The places of `character` in a text; `quotes`: only those outside quotes."""
    places, at = [], 0
    while at < len(text):
        after = quote_end(text, at) if quotes else at
        if after > at:
            at = after
            continue
        if text[at] == character:
            places.append(at)
        at += 1
    return places


def separating_colon(text, card):
    """The place of the colon after `[group.]name[;...]`, or None."""
    colons = split_outside_quotes(text, ":", not card.is_21())
    return colons[0] if colons and HEADER.fullmatch(text, 0, colons[0]) else None


def parameters(text, colon, card):
    """The name, and [(parameter name, or None if there is no "=", value)]; names are in upper case."""
    places = split_outside_quotes(text[:colon + 1], ";", not card.is_21()) + [colon]
    result = []
    for first, after in zip(places, places[1:]):
        name, equals, value = text[first + 1:after].partition("=")
        if not equals:
            name, value = None, name
        value = value.strip(BLANKS)
        if len(value) > 1 and value[0] == value[-1] == '"':
            value = value[1:-1]
        result.append((name and upper(name.strip(BLANKS)), value))
    return upper(HEADER.fullmatch(text, 0, colon).group(1)), result


def has_encoding(params, *names):
    return any(name in (None, "ENCODING") and upper(value) in names for name, value in params)


def is_base64(line, name, params):
    if has_encoding(params, "B", "BASE64"):
        return True
    value = line.joined[line.colon + 1:]
    if DATA_VALUE.match(value):
        return True
    if name not in PICTURES:
        return False
    ahead = Line(line.raw, line.start, line.card, line.role)
    join_folds(ahead, line.start)
    join_base64(ahead)
    return bool(BASE64_START.match(re.sub("[ \t]", "", ahead.joined[line.colon + 1:])))


def hide(line, why):
    """Leaves only the header and the colon in the line."""
    line.kind, line.why = "hidden", why
    line.joined = line.joined[:line.colon + 1]
    line.places = line.places[:line.colon + 1]
    line.folds = [fold for fold in line.folds if fold.at <= line.colon]


def read_in_card(file, raw, at, card):
    """The logical line of a card that begins at `at`, not yet decoded."""
    line = Line(raw, at, card, "text")
    join_folds(line, at)
    line.colon = separating_colon(line.joined, card)
    if line.colon is None:
        return line
    name, params = parameters(line.joined, line.colon, card)
    charsets = [value for key, value in params if key == "CHARSET"]
    line.has_charset = bool(charsets)
    line.agent = name == "AGENT"
    if charsets:
        line.charset = charset_named(charsets[0])
    line.declared = (has_encoding(params, "B", "BASE64"), has_encoding(params, "QUOTED-PRINTABLE"), charsets[:1])
    if is_base64(line, name, params):
        join_base64(line)
        line.why = "base64"
    elif has_encoding(params, "QUOTED-PRINTABLE"):
        line.kind = "coded"
        join_soft_breaks(line, at, line.places[line.colon])
    return line


def read_outside(raw, at):
    line = Line(raw, at, None, "outside")
    line.stop, line.end = physical(raw, at)
    line.add(at, line.stop)
    colon = line.joined.find(":")
    line.colon = None if colon < 0 else colon
    return line


def role_at(raw, at, in_card):
    text = raw[at:physical(raw, at)[0]]
    if BEGIN.fullmatch(text):
        return "begin"
    if in_card and END.fullmatch(text):
        return "end"
    if in_card and VERSION.match(text):
        return "version"
    return "text" if in_card else "outside"


def read_line(file, raw, at, card):
    role = role_at(raw, at, card is not None)
    if role == "text":
        return read_in_card(file, raw, at, card)
    if role == "outside":
        return read_outside(raw, at)
    line = Line(raw, at, card, role)
    if role == "version":
        join_folds(line, at)
    else:
        line.stop, line.end = physical(raw, at)
        line.add(at, line.stop)
    return line


# Cards ------------------------------------------------------------------------------------------

def is_empty_agent(line):
    return (line is not None and line.role == "text" and line.colon is not None and line.agent
            and not line.joined[line.colon + 1:].strip(BLANKS))


def version_of(file, begin):
    """The version of the card whose BEGIN is at `begin`; "" if it has none."""
    raw, depth, before = file.raw, 0, ""
    at = physical(raw, begin)[1]
    while at < len(raw) and (at - begin) * file.width < VERSION_REACH:
        stop, end = physical(raw, at)
        text = raw[at:stop]
        role = role_at(raw, at, True)
        if role == "begin":
            if not is_agent_text(before):
                return ""
            depth += 1
        elif role == "end":
            if depth == 0:
                return ""
            depth -= 1
        elif role == "version" and depth == 0:
            return text.partition(":")[2].strip(BLANKS)
        before = before + text[1:] if is_blank(text, 0) and role == "text" else text
        at = end
    return ""


def is_agent_text(text):
    return bool(re.fullmatch(r"([A-Za-z0-9_-]+\.)?AGENT(;.*)?:[ \t]*", text, re.IGNORECASE | re.DOTALL | re.ASCII))


def split_into_lines(file):
    """All logical lines in order, not yet decoded."""
    lines, cards, at = [], [], 0
    while at < len(file.raw):
        line = read_line(file, file.raw, at, cards[-1] if cards else None)
        if line.role == "begin":
            if not (cards and lines and is_empty_agent(lines[-1])):
                cards = []
            cards.append(Card("2.1" if version_of(file, at) == "2.1" else "3.0"))
            line.card = cards[-1]
        elif line.role == "end":
            cards.pop()
        line.own_end = own_end(line, lines[-1] if lines else None)
        note_folds(line)
        lines.append(line)
        at = line.end
    return lines


def own_end(line, before):
    """The line end of new physical lines in this line."""
    if line.stop < line.end:
        return line.raw[line.stop:line.end]
    if line.folds:
        return LINE_END.search(line.raw, line.folds[0].start).group()
    return before.raw[before.stop:before.end] if before and before.stop < before.end else "\r\n"


def note_folds(line):
    if line.card is None or line.why == "base64" or not line.folds:
        return
    if line.role == "text" and any(fold.kind == "fold" for fold in line.folds) and line.kind == "plain":
        line.card.folds = True
    elif not line.card.folds:
        line.card.folds = None


# Text -------------------------------------------------------------------------------------------

def looks_like_utf8(lines):
    """Whether a file without a mark is read as UTF-8."""
    characters = stray = 0
    for line in lines:
        seen = line.joined if not line.has_charset else line.joined[:line.colon]
        for value, _ in UTF8.decode(seen):
            characters += 0x80 <= value < STRAY
            stray += value >= STRAY
    return characters >= stray


def placed(pairs, first):
    """[(value, length)] as [(value, first, after)], counted from `first`."""
    result = []
    for value, length in pairs:
        result.append((value, first, first + length))
        first += length
    return result


def coded_tokens(text, first):
    """[(character, first, after, whether it is a code)] of a value in quoted-printable."""
    tokens, at = [], first
    while at < len(text):
        code = CODE.match(text, at)
        if code:
            tokens.append((chr(int(code.group(1), 16)), at, at + 3, True))
        else:
            tokens.append((text[at], at, at + 1, False))
        at = tokens[-1][2]
    return tokens


def is_raw_beyond_ascii(token):
    return not token[3] and token[0] > "\x7f"


def runs(file, tokens):
    """The tokens in runs: in a file with a mark, uncoded characters beyond ASCII are runs of their own."""
    result = []
    for token in tokens:
        beyond = file.is_marked() and is_raw_beyond_ascii(token)
        if not result or result[-1][0] != beyond:
            result.append((beyond, []))
        result[-1][1].append(token)
    return result


def charset_of_codes(file, tokens):
    """The charset of a value in quoted-printable that names none."""
    values = [value for beyond, run in runs(file, tokens) if not beyond
              for value, _ in UTF8.decode("".join(token[0] for token in run))]
    if any(value >= STRAY for value in values):
        return file.page
    if any(value > 0x7F for value in values) or file.is_marked():
        return UTF8
    return file.text


def decode_coded(file, tokens, charset):
    units = []
    for beyond, run in runs(file, tokens):
        first = 0
        for value, length in (file.text if beyond else charset).decode("".join(token[0] for token in run)):
            units.append((value, run[first][1], run[first + length - 1][2]))
            first += length
    return units


def decode_value(file, line):
    first = line.colon + 1
    if line.kind == "coded":
        tokens = coded_tokens(line.joined, first)
        if line.decoder is None:
            line.decoder = line.charset or charset_of_codes(file, tokens)
        return decode_coded(file, tokens, line.decoder)
    if line.decoder is None:
        line.decoder = line.charset if line.has_charset and not file.is_marked() else file.text
    return placed(line.decoder.decode(line.joined[first:]), first)


def decode_line(file, line):
    if line.role not in ("text", "outside"):
        return
    if line.colon is None or line.role == "outside":
        line.decoder = file.text
        line.units = placed(file.text.decode(line.joined), 0)
        line.border = next((i for i, unit in enumerate(line.units) if unit[0] == 0x3A), None)
        if line.role == "text":
            line.border = None
        return
    if line.why == "base64":
        hide(line, "base64")
    elif line.has_charset and line.charset is None and (line.kind == "coded" or not file.is_marked()):
        hide(line, "charset")
    line.units = placed(file.text.decode(line.joined[:line.colon + 1]), 0)
    line.border = len(line.units) - 1
    if line.kind != "hidden":
        line.units += decode_value(file, line)


def read(data, page):
    """A File with its lines, decoded."""
    file = File(data, page)
    file.lines = split_into_lines(file)
    if not file.is_marked() and not looks_like_utf8(file.lines):
        file.text = file.page
    for line in file.lines:
        decode_line(file, line)
    return file


def read_again(file, raw, at, card):
    """The line that begins at `at` in other units, read as a line of this file."""
    line = read_line(file, raw, at, card)
    decode_line(file, line)
    return line


def read_likewise(file, raw, at, like, border):
    """The line at `at`, read with the version, coding and charset of `like` and with the separating colon at the unit
    `border` of its text. None if it has no colon there, or if the part that is not searched differs."""
    if like.role == "outside":
        line = read_outside(raw, at)
        line.units = placed(file.text.decode(line.joined), 0)
        return line
    line = Line(raw, at, like.card, "text")
    line.decoder, line.kind, line.why = like.decoder, like.kind, like.why
    join_folds(line, at)
    units = placed(file.text.decode(line.joined), 0)
    if border is None:
        line.units = units
        return line
    if border >= len(units) or units[border][0] != 0x3A:
        return None
    line.colon, line.border = units[border][1], border
    if line.kind == "hidden":
        rest = like.raw[like.places[like.colon] + 1:like.end]
        start = line.places[line.colon] + 1
        if not raw.startswith(rest, start):
            return None
        hide(line, like.why)
        line.end = start + len(rest)
        line.stop = line.end - (like.end - like.stop)
        line.units = units[:border + 1]
        return line
    if line.kind == "coded":
        join_soft_breaks(line, at, line.places[line.colon])
    line.units = units[:border + 1] + decode_value(file, line)
    return line
