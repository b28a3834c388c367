# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Cards for "Read as vCards", made from those of the corpus, in UTF-8; and their right results."""

import quopri
import random

from corpus import CODE_PAGE, NOTES, SEED

TRAP = ("+49", "0049")  # in every other card, and by chance in some photos, which must not change
FOLDED = ("sends the catalogue", "has the list")  # in every rich card, across a fold
CODED = ("Straße", "Weg")  # in every rich card, in quoted-printable

END = b"END:VCARD\r\n"
PHOTO = b"PHOTO;"
LINE = 76  # characters of quoted-printable


def plain_cards(cards):
    """The same cards without their photos, so that no line is folded or coded."""
    return {name: without_photo(data) + END for name, data in cards.items()}


def without_photo(data):
    return data[:data.index(PHOTO)].decode(CODE_PAGE).encode("utf-8")


def rich_cards(cards):
    """Cards with a folded photo, a folded note, and lines of quoted-printable with soft breaks.
    Half of them are of version 2.1."""
    rng = random.Random(SEED)
    return {name: rich_card(rng, data, number // 4 % 2 == 1)
            for number, (name, data) in enumerate(cards.items())}


def rich_card(rng, data, is_2_1):
    lines = without_photo(data).decode().split("\r\n")[:-1]
    fold = "\r\n" if is_2_1 else "\r\n "  # followed by a blank, which is text
    for at, line in enumerate(lines):
        if is_2_1 and line == "VERSION:3.0":
            lines[at] = "VERSION:2.1"
        elif line.startswith(("N:", "FN:", "ADR;TYPE=WORK:")):
            field, value = line.split(":", 1)
            lines[at] = quoted_printable(field, value, all_letters=field == "FN")
        elif line.startswith("NOTE:"):
            first, last = (rng.choice(NOTES) for _ in range(2))
            find, more = FOLDED[0].rsplit(" ", 1)
            middle = f"Met in spring; {find}{fold} {more}."
            lines[at] = (fold + " ").join(
                ("NOTE:" + first, "Was new in town.", middle, last, "Likes letters."))
    field, photo = data[data.index(PHOTO):-len(END)].split(b":", 1)
    if is_2_1:
        field, photo = b"PHOTO;JPEG;ENCODING=BASE64", photo + b"\r\n"  # an empty line ends it
    return "\r\n".join(lines).encode() + b"\r\n" + field + b":" + photo + END


def quoted_printable(field, value, all_letters):
    """A line of quoted-printable as phones write it. Codes the letters that need it, or all."""
    line, lines = field + ";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:", []
    for byte in value.encode():
        plain = byte < 0x80 and byte != ord("=") and not (all_letters and chr(byte).isalpha())
        code = chr(byte) if plain else f"={byte:02X}"
        if len(line) + len(code) >= LINE:
            lines.append(line + "=")
            line = ""
        line += code
    return "\r\n".join(lines + [line])


def logical_lines(data):
    """The lines of cards without folds and codes. Photos stay as they are. Understands only cards
    like those above."""
    lines, is_2_1, is_open = [], False, False
    for line in data.split(b"\r\n"):
        if line.startswith(b"VERSION:"):
            is_2_1 = line == b"VERSION:2.1"
        if is_open:
            lines[-1] = lines[-1][:-1] + line
        elif line.startswith(b" ") and not lines[-1].startswith(PHOTO):
            lines[-1] += line if is_2_1 else line[1:]
        else:
            lines.append(line)
        is_open = is_coded(lines[-1]) and line.endswith(b"=")
    return [quopri.decodestring(line) if is_coded(line) else line for line in lines]


def is_coded(line):
    return b"QUOTED-PRINTABLE:" in line


def lines_replaced(data, pairs):
    """The logical lines of a right result. The lines of photos do not change; they begin with their
    field or with a blank."""
    pairs = [(find.encode(), replace.encode()) for find, replace in pairs]
    lines = logical_lines(data)
    for at, line in enumerate(lines):
        if not line.startswith((PHOTO, b" ", b"BEGIN:", b"VERSION:", b"END:")):
            for find, replace in pairs:
                line = line.replace(find, replace)
            lines[at] = line
    return lines


def plainly_replaced(data, pairs):
    """The bytes of a right result if all hits are in plain lines. Photos do not change."""
    pairs = [(find.encode(), replace.encode()) for find, replace in pairs]
    parts = data.split(PHOTO)
    for at, part in enumerate(parts):
        photo, rest = part.split(END, 1) if at > 0 else (b"", part)
        for find, replace in pairs:
            rest = rest.replace(find, replace)
        parts[at] = photo + END + rest if at > 0 else rest
    return PHOTO.join(parts)
