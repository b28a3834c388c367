# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""What a run must write, worked out in the plainest way and independently of the program.

A text is a str of 16-bit units here: every character is below U+10000, and a
character beyond that is its two surrogates. Speed is no concern.
"""

import os
import re
import stat
import struct

FIELDS = "Find and replace in fields only"
VALUES = "Find and replace in values only"
WHOLE = "Find and replace in fields and values"
SETS = "Multiple find and replace (sets)"

PIECE = 65536
UTF8_MARK = b"\xef\xbb\xbf"
UTF16_MARK = b"\xff\xfe"


class SingleBytePage:
    """windows-1252; a byte without a character is the control character of that value."""

    _DECODE = [bytes([byte]).decode("cp1252", "ignore") or chr(byte) for byte in range(256)]
    _ENCODE = {character: byte for byte, character in enumerate(_DECODE)}

    def decode(self, data):
        return "".join(self._DECODE[byte] for byte in data)

    def encode(self, text):
        return bytes(self._ENCODE.get(unit, ord("?")) for unit in text)


class Utf8Page:
    """UTF-8 as a code page: a byte that belongs to no character is a unit of its own."""

    def decode(self, data):
        return units(data.decode("utf-8", "surrogateescape"))

    def encode(self, text):
        whole = text.encode("utf-16-le", "surrogatepass").decode("utf-16-le", "surrogatepass")
        return b"".join(b"?" if re.match("[\ud800-\udc7f\udd00-\udfff]", character)
                        else character.encode("utf-8", "surrogateescape") for character in whole)


PAGES = {"windows-1252": SingleBytePage(), "UTF-8": Utf8Page()}


def from_utf16(data):
    """Little-endian; one mark at the start is skipped, a lone last byte becomes a unit."""
    if data.startswith(UTF16_MARK):
        data = data[2:]
    if len(data) % 2:
        data += b"\0"
    return "".join(map(chr, struct.unpack(f"<{len(data) // 2}H", data)))


def to_utf16(text):
    return UTF16_MARK + struct.pack(f"<{len(text)}H", *map(ord, text))


def units(text):
    """A Python str as 16-bit units."""
    data = text.encode("utf-16-le", "surrogatepass")
    return "".join(map(chr, struct.unpack(f"<{len(data) // 2}H", data)))


def from_utf8(data):
    if data.startswith(UTF8_MARK):
        data = data[3:]
    return units(data.decode("utf-8", "replace"))


def split_lines(text):
    """Lines that end at CR LF, LF or CR; an end at the end of the text begins no further line."""
    lines = text.replace("\r\n", "\n").replace("\r", "\n").split("\n")
    if lines[-1] == "" and len(lines) > 1:
        lines.pop()
    return lines


def replace_all(text, find, replacement):
    """Replaces every occurrence, from left to right, without overlap, in exact case."""
    return text.replace(find, replacement) if find else text


class Oracle:
    """Works out the program's results; it remembers between files what the program remembers."""

    def __init__(self, page="windows-1252"):
        self.page = PAGES[page]
        self.unicode = False
        self.reports = 0

    def _detect(self, data):
        """Remembers the mark of a text; returns whether it is that of UTF-8."""
        self.unicode = data[:4] == b"\0\0\xfe\xff" or data[:2] in (UTF16_MARK, b"\xfe\xff")
        return data[:3] == UTF8_MARK

    def _decode(self, data):
        return from_utf16(data) if self.unicode else self.page.decode(data)

    def _encode(self, text):
        return to_utf16(text) if self.unicode else self.page.encode(text)

    def _pieces(self, data):
        text = self._decode(data)
        return [text[at : at + PIECE] for at in range(0, len(text), PIECE)] or [""]

    def _whole(self, data, find, replacement):
        """Applies the pair to the whole text, in the encoding of the text read last."""
        finds = find.split("\r\n")
        replacements = replacement.split("\r\n") if replacement else [""] * len(finds)
        result = ""
        for piece in self._pieces(data):
            for index, line in enumerate(finds):
                if index < len(replacements):
                    piece = replace_all(piece, line, replacements[index])
                else:
                    self.reports += 1
            result += piece
        return self._encode(result)

    def _sets(self, data, sets):
        pieces = [from_utf8(data)] if self._detect(data) else self._pieces(data)
        for find, replacement in sets:
            pieces = [replace_all(piece, find, replacement) for piece in pieces]
        return self._encode("".join(pieces))

    def _lines(self, data, find, replacement, part):
        """Applies the pair before (part 0) or after (part 1) the first colon of each line."""
        lines = from_utf8(data).split("\r\n") if self._detect(data) else split_lines(self._decode(data))
        result = ""
        for line in lines:
            if ":" in line:
                kept = line.split(":")[:2]
                kept[part] = replace_all(kept[part], find, replacement)
                line = ":".join(kept)
            result += line + "\r\n"
        return self._encode(result)

    def has_read(self, data):
        """Notes that a list file or a sets file of that content was read line by line."""
        self._detect(data)

    def result(self, data, mode, find="", replacement="", sets=()):
        """The bytes written for a file that holds `data`, or None if no file is written.

        A line break in `find` or `replacement` is CR LF or LF, as it is typed.
        """
        if mode == SETS:
            return self._sets(data, [(units(a), units(b)) for a, b in sets])
        if not data:
            return None
        find, replacement = (units(text.replace("\r\n", "\n").replace("\n", "\r\n"))
                             for text in (find, replacement))
        if mode == WHOLE:
            return self._whole(data, find, replacement)
        return self._lines(data, find, replacement, 0 if mode == FIELDS else 1)

    def run(self, paths, folder, mode, find="", replacement="", sets=()):
        """All results of a run on existing files, in order: {output path: bytes}.

        `folder` is the output folder, or None for results beside the inputs.
        """
        written = {}
        for path in paths:
            target = path if folder is None else os.path.join(folder, os.path.basename(path))
            data = written.get(path)
            if data is None:
                with open(path, "rb") as file:
                    data = file.read()
            result = self.result(data, mode, find, replacement, sets)
            if result is not None:
                written[target] = result
        return written


def shown(path):
    """A path as the list shows it: with a replacement mark for each byte that is not UTF-8."""
    return re.sub("[\udc80-\udcff]", "\ufffd", path)


def _with_folders_below(folders):
    """The folders, then their sub-folders, then those below, level by level."""
    found = [entry.path + "/" for folder in folders for entry in os.scandir(folder) if entry.is_dir()]
    return folders + (_with_folders_below(found) if found else [])


def _is_passed_over(path):
    """Whether a file is not listed: backup files, and hidden files that are not write-protected."""
    name = os.path.basename(path)
    return name.startswith("~") or (name.startswith(".") and os.stat(path).st_mode & stat.S_IWUSR)


def dropped(paths):
    """The rows for files and folders that are dropped together.

    Each further folder has all folders that were met before it gone through again.
    """
    rows, folders = [], []
    for path in paths:
        if not os.path.isdir(path):
            rows.append(path)
            continue
        folders = _with_folders_below(folders + [path + "/"])
        for folder in folders:
            files = [entry.path for entry in os.scandir(folder) if entry.is_file()]
            rows += [file for file in files if not _is_passed_over(file)]
    return rows


def faults(written):
    """A sentence for each file that does not hold the expected bytes; `written` is as from Oracle.run."""
    found = []
    for path, expected in written.items():
        try:
            with open(path, "rb") as file:
                actual = file.read()
        except OSError as error:
            found.append(f"{path}: {error.strerror}")
            continue
        if actual != expected:
            at = len(os.path.commonprefix([actual, expected]))
            found.append(f"{path}: from byte {at} on {actual[at : at + 30]!r} instead of "
                         f"{expected[at : at + 30]!r} ({len(actual)} bytes instead of {len(expected)})")
    return found
