# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Character sets: how units become text, and text becomes units; see vcard_model."""

import re

STRAY = 0x110000  # plus a byte that belongs to no character
ALIEN = 0x1000000  # plus a 32-bit unit that is no code point


class Utf8:
    def decode(self, raw):
        """[(value, number of bytes)] of bytes that are held in a str."""
        text = raw.encode("latin-1").decode("utf-8", "surrogateescape")
        return [(STRAY + ord(c) - 0xDC00, 1) if "\ud800" <= c <= "\udfff" else (ord(c), len(c.encode()))
                for c in text]

    def encode(self, value):
        """The bytes as a str, or None."""
        return None if 0xD800 <= value <= 0xDFFF else chr(value).encode().decode("latin-1")


class SingleBytes:
    """A byte that Python's table lacks is the control character of its value, or a stray byte in ASCII."""

    def __init__(self, name):
        table = [bytes([byte]).decode(name, "ignore") for byte in range(256)]
        self.values = [ord(character) if character else STRAY + byte if name == "ascii" else byte
                       for byte, character in enumerate(table)]
        self.bytes = {value: chr(byte) for byte, value in enumerate(self.values)}

    def decode(self, raw):
        return [(self.values[ord(c)], 1) for c in raw]

    def encode(self, value):
        return self.bytes.get(value)


class ShiftJis:
    def decode(self, raw):
        result, at = [], 0
        while at < len(raw):
            lead, trail = ord(raw[at]), raw[at + 1:at + 2]
            if lead < 0x80:
                result.append((lead, 1))
            elif 0xA1 <= lead <= 0xDF:
                result.append((0xFF61 + lead - 0xA1, 1))
            else:
                both = self._both(raw[at], trail)
                result.append((both, 2) if both else (STRAY + lead, 1))
            at += result[-1][1]
            if result[-1][0] >= STRAY and trail and self._is_unassigned(lead, ord(trail)):
                result.append((STRAY + ord(trail), 1))
                at += 1
        return result

    @staticmethod
    def _both(lead, trail):
        try:
            return ord((lead + trail).encode("latin-1").decode("cp932")) if trail else None
        except (UnicodeDecodeError, TypeError):
            return None

    @staticmethod
    def _is_unassigned(lead, trail):
        return (0x81 <= lead <= 0x9F or 0xE0 <= lead <= 0xFC) and 0x40 <= trail <= 0xFC and trail != 0x7F

    def encode(self, value):
        if value < 0x80:
            return chr(value)
        try:
            data = chr(value).encode("cp932")
        except UnicodeEncodeError:
            return None
        return data.decode("latin-1")


class Utf16:
    def decode(self, raw):
        result, at = [], 0
        while at < len(raw):
            if "\ud800" <= raw[at] <= "\udbff" and "\udc00" <= raw[at + 1:at + 2] <= "\udfff":
                result.append((0x10000 + ((ord(raw[at]) & 0x3FF) << 10) + (ord(raw[at + 1]) & 0x3FF), 2))
            else:
                result.append((ord(raw[at]), 1))
            at += result[-1][1]
        return result

    def encode(self, value):
        if value < 0x10000:
            return chr(value)
        return chr(0xD7C0 + (value >> 10)) + chr(0xDC00 + (value & 0x3FF))


class Utf32:
    """`aliens` maps characters to the units beyond the last code point for which they stand."""

    def __init__(self, aliens):
        self.aliens = aliens

    def decode(self, raw):
        return [(ALIEN + self.aliens[c] if c in self.aliens else ord(c), 1) for c in raw]

    def encode(self, value):
        return chr(value)


UTF8 = Utf8()
CHARSETS = {
    "UTF8": UTF8, "USASCII": SingleBytes("ascii"), "US": SingleBytes("ascii"), "ISO88591": SingleBytes("latin-1"),
    "ISO885915": SingleBytes("iso8859-15"), "KOI8R": SingleBytes("koi8-r"), "KOI8": SingleBytes("koi8-r"),
    "SHIFTJIS": ShiftJis(), "WINDOWS1250": SingleBytes("cp1250"), "WINDOWS1251": SingleBytes("cp1251"),
    "WINDOWS1252": SingleBytes("cp1252"),
}


def upper(text):
    """The text with its ASCII letters, and no others, in upper case."""
    return "".join(c.upper() if c.isascii() else c for c in text)


def plain_name(name):
    """A name as charset names are compared: in upper case, without separators."""
    return upper(re.sub("[-_ \t]", "", name))


def is_odd_name(name):
    """Whether libraries may differ about the charset of that name."""
    return not re.fullmatch("[A-Za-z0-9_ \t-]{0,40}", name)


def charset_named(name):
    """The charset of that name; None for one that is unknown, has states, or has units that are no bytes."""
    return CHARSETS.get(plain_name(name))
