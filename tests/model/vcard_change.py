# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""How the text of a logical line is changed, and how the changed line is written; see vcard_model.

A changed line is written in a plain way here, to find out whether it may be written at all. The program may
choose other places for folds, as far as vcard_check allows.
"""

import re

import vcard_model
from vcard_charsets import STRAY, is_odd_name
from vcard_model import PIECE

FIELDS, VALUES, WHOLE, SETS = range(4)
COLON, BACKSLASH = 0x3A, 0x5C
LONGEST, LONGEST_CODED = 75, 76
QUESTION_MARK = 0x3F


def partners(finds, replacements):
    """The pairs, and the number of find texts without a partner."""
    return list(zip(finds, replacements)), max(0, len(finds) - len(replacements))


class Text:
    """Decoded text and its origin: `origins` holds, for each unit, the index of the unit of the line, or None for
    an inserted one; `folds[i]` holds the numbers of the folds before unit i, and `folds[-1]` those at the end."""

    def __init__(self, values, origins, folds, border):
        self.values, self.origins, self.folds, self.border = values, origins, folds, border


def text_of(line):
    folds = [[] for _ in range(len(line.units) + 1)]
    starts = {unit[1]: index for index, unit in enumerate(line.units)}
    for number, fold in enumerate(line.folds):
        if fold.at in starts:
            folds[starts[fold.at]].append(number)
        elif fold.at == len(line.joined):
            folds[-1].append(number)
    return Text(line.values(), list(range(len(line.units))), folds, line.border)


def seen_part(line, text, part):
    if part == FIELDS:
        return (0, text.border) if text.border is not None else (0, 0)
    if part == VALUES:
        return (0 if text.border is None else text.border + 1, len(text.values))
    return (0, len(text.values))


def escaped(line, values, first, after):
    """The places directly after the backslashes that begin an escape."""
    places = set()
    if line.card is None or line.card.is_21():
        return places
    at = first
    while at < after:
        if values[at] == BACKSLASH:
            places.add(at + 1)
            at += 1
        at += 1
    return places


def guards_colon(line):
    return line.role == "text" and line.border is not None


def written_line_ends(line, values, coded):
    """A text to insert, with its line ends as they are written."""
    text = "".join(map(chr, values))
    return [ord(c) for c in re.sub("\r\n|\n|\r", "\r\n" if coded else r"\\n", text)]


def text_to_insert(line, text, first, after, replacement):
    """The new values, and how many of them come before the separating colon if they hold a new one."""
    coded = line.kind == "coded"
    if not guards_colon(line):
        return written_line_ends(line, replacement, False), None
    if after <= text.border:
        return written_line_ends(line, replacement, False), None
    if first > text.border:
        return written_line_ends(line, replacement, coded), None
    colon = replacement.index(COLON)
    header = written_line_ends(line, replacement[:colon], False)
    return header + written_line_ends(line, replacement[colon:], coded), len(header)


def takes_border_unchanged(line, text, at, after, replacement):
    return guards_colon(line) and at <= text.border < after and COLON not in replacement


def goes_with_blank(line, fold, origin):
    """Whether a fold of 2.1 is removed because the blank after it is replaced."""
    return (line.card is not None and line.card.is_21() and line.folds[fold].kind == "fold"
            and origin is not None and line.units[origin][1] == line.folds[fold].at)


def replace_once(line, text, at, after, replacement):
    """Replaces the units from `at` on; returns how many units were inserted."""
    new, colon = text_to_insert(line, text, at, after, replacement)
    before = [f for f in text.folds[at] if not goes_with_blank(line, f, text.origins[at])]
    text.values[at:after] = new
    text.origins[at:after] = [None] * len(new)
    if new:
        text.folds[at:after] = [before] + [[] for _ in new[1:]]
    else:
        text.folds[at:after + 1] = [before + text.folds[after]]
    if text.border is not None and colon is not None:
        text.border = at + colon
    elif text.border is not None and after <= text.border:
        text.border += len(new) - (after - at)
    elif text.border is not None and at <= text.border:
        text.border = next((i for i in range(at, at + len(new)) if text.values[i] == COLON), None)
    return len(new)


def shadow(values):
    """The values as a str to search in; all that are no characters become a character that no text holds."""
    return "".join(chr(value) if value < STRAY else "\U0010ffff" for value in values)


def occurrence(values, shown, find, at, after):
    """The next place at which the text occurs, or None."""
    text = shadow(find)
    while True:
        at = shown.find(text, at, after)
        if at < 0 or values[at:at + len(find)] == find:
            return None if at < 0 else at
        at += 1


def apply_pair(line, text, part, find, replacement):
    first, after = seen_part(line, text, part)
    if not find or occurrence(text.values, shadow(text.values), find, first, after) is None:
        return
    values, shown = list(text.values), shadow(text.values)
    places = escaped(line, values, first, after)
    grown, at = 0, first
    while True:
        at = occurrence(values, shown, find, at, after)
        if at is None:
            return
        here = at + grown
        if at in places:
            at += 1
        elif takes_border_unchanged(line, text, here, here + len(find), replacement):
            at += len(find)
        else:
            grown += replace_once(line, text, here, here + len(find), replacement) - len(find)
            at += len(find)


def in_pieces(text):
    """The text in pieces of PIECE units."""
    for first in range(0, max(1, len(text.values)), PIECE):
        after = min(first + PIECE, len(text.values))
        last = text.folds[after:after + 1] if after == len(text.values) else [[]]
        yield Text(text.values[first:after], text.origins[first:after], text.folds[first:after] + last,
                   None if text.border is None else text.border - first)


def change(line, part, pairs):
    """The Text of a line after all pairs have been applied."""
    text = text_of(line)
    pairs = [([ord(c) for c in find], [ord(c) for c in replacement]) for find, replacement in pairs]
    if len(text.values) <= PIECE:
        for find, replacement in pairs:
            apply_pair(line, text, part, find, replacement)
        return text
    result = Text([], [], [[]], None)
    for piece in in_pieces(text):
        has_border = piece.border is not None and 0 <= piece.border < len(piece.values)
        changeable = has_border or part in (WHOLE, SETS) or line.border is None or (
            (piece.border < 0) == (part == VALUES))
        if not has_border and piece.border is not None:
            piece.border = -1 if piece.border < 0 else len(piece.values)
        if changeable:
            for find, replacement in pairs:
                apply_pair(line, piece, part, find, replacement)
        if has_border:
            result.border = len(result.values) + piece.border
        result.values += piece.values
        result.origins += piece.origins
        result.folds[-1:] = [result.folds[-1] + piece.folds[0]] + piece.folds[1:]
    return result


def with_question_marks(file, line, text):
    """The same Text with "?" for each new unit that the encoding lacks."""
    values, origins, folds, border = [], [], [], text.border
    for index, value in enumerate(text.values):
        count = 1
        if text.origins[index] is None and decoder_at(file, line, text, index).encode(value) is None:
            count, value = 2 if value > 0xFFFF else 1, QUESTION_MARK
        if border is not None and index < text.border:
            border += count - 1
        values += [value] * count
        origins += [text.origins[index]] * count
        folds += [text.folds[index]] + [[]] * (count - 1)
    return Text(values, origins, folds + [text.folds[-1]], border)


def decoder_at(file, line, text, index):
    in_value = text.border is not None and index > text.border and line.role == "text"
    return line.decoder if in_value and line.decoder is not None else file.text


def is_coded_at(line, text, index):
    return line.kind == "coded" and index > text.border


# Writing ----------------------------------------------------------------------------------------

def hex_code(raw):
    return "".join(f"={ord(c):02X}" for c in raw)


def encoded(file, line, text, index):
    """A new unit, as it is written."""
    value = text.values[index]
    raw = decoder_at(file, line, text, index).encode(value)
    if is_coded_at(line, text, index) and (not 0x20 <= value <= 0x7E or value == 0x3D):
        return hex_code(raw)
    return raw


def emptied(line, text, index):
    """How many of the folds before unit `index` are removed because a part beside them became empty."""
    numbers = text.folds[index]
    if not numbers:
        return 0
    places = [0] + [fold.at for fold in line.folds] + [len(line.joined)]
    count = sum(places[a + 1] < places[b + 1] for a, b in zip(numbers, numbers[1:]))
    if index == 0:
        count += places[numbers[0] + 1] > 0
    if index == len(text.values) and line.kind != "hidden":
        count += places[numbers[-1] + 1] < len(line.joined)
    return min(count, len(numbers))


def directly_behind_soft_break(line, origin):
    return any(fold.at == line.units[origin][1] and fold.kind == "soft" for fold in line.folds)


def is_raw_blank(raw):
    return raw in (" ", "\t")


class Piece:
    """A unit as it is written, with the folds before it: [(number or None, raw)]."""

    def __init__(self, raw, origin, coded):
        self.raw, self.origin, self.coded, self.folds = raw, origin, coded, []


def fold_raw(line, number):
    fold = line.folds[number]
    return line.raw[fold.start:fold.stop]


def kept_folds(line, text, index, piece):
    folds = [(number, fold_raw(line, number)) for number in text.folds[index][emptied(line, text, index):]]
    if (folds and line.folds[folds[-1][0]].kind == "soft" and piece is not None and piece.origin is not None
            and is_raw_blank(piece.raw) and not directly_behind_soft_break(line, piece.origin)):
        folds.pop()
    return folds


def pieces_of(file, line, text):
    pieces = []
    for index, origin in enumerate(text.origins):
        raw = encoded(file, line, text, index) if origin is None else line.raw_of_unit(origin)
        piece = Piece(raw, origin, is_coded_at(line, text, index))
        piece.folds = kept_folds(line, text, index, piece)
        if piece.coded and origin is None and raw == " " and piece.folds and piece.folds[-1][1].startswith("="):
            piece.raw = "=20"
        pieces.append(piece)
    end = Piece("", None, False)
    end.folds = kept_folds(line, text, len(text.values), None)
    return pieces + [end]


def ends_physical_line(pieces, index):
    """Whether the piece is the last one before a fold that is no soft break, or before the line's end."""
    after = pieces[index + 1]
    if after.folds:
        return not after.folds[0][1].startswith("=")
    return index + 2 == len(pieces)


def ended_physical_line(line, origin):
    """The same for a unit of the old line."""
    after = line.units[origin][2]
    fold = next((fold for fold in line.folds if fold.at == after), None)
    return fold.kind != "soft" if fold else after == len(line.joined)


def stood_before_end(line, origin):
    """Whether only blanks followed a "=" of the old line."""
    return not line.joined[line.units[origin][2]:].strip(" \t")


def would_begin_code(pieces, index):
    return bool(re.match("[0-9A-Fa-f]{2}", "".join(piece.raw for piece in pieces[index + 1:index + 3])))


def would_begin_soft_break(line, pieces, index):
    if line.stop == line.end and all(not piece.folds for piece in pieces[index + 1:]):
        return False
    while not ends_physical_line(pieces, index):
        index += 1
        if pieces[index].folds or not is_raw_blank(pieces[index].raw):
            return False
    return True


def guard_signs(line, pieces):
    """Writes =20 for a blank that newly ends a physical line, and =3D for a "=" that would newly mean something."""
    for index, piece in enumerate(pieces[:-1]):
        if piece.coded and is_raw_blank(piece.raw) and ends_physical_line(pieces, index) and not (
                piece.origin is not None and ended_physical_line(line, piece.origin)):
            piece.raw = hex_code(piece.raw)
    for index, piece in enumerate(pieces[:-1]):
        if piece.coded and piece.raw == "=" and (would_begin_code(pieces, index) or (
                would_begin_soft_break(line, pieces, index) and not stood_before_end(line, piece.origin))):
            piece.raw = "=3D"


def raw_of(pieces):
    return "".join("".join(raw for _, raw in piece.folds) + piece.raw for piece in pieces)


def physical_lines(line):
    """For each physical line its first unit and the one after its last, without the line end."""
    result, at = [], line.start
    for end in vcard_model.LINE_END.finditer(line.raw, line.start, line.stop):
        result.append((at, end.start()))
        at = end.end()
    return result + [(at, line.stop)]


def may_fold(line):
    """Whether a line that is too long gets new folds; None where the rules leave that open."""
    if line.role != "text" or line.why == "base64":
        return False
    if line.kind == "coded":
        return True
    if line.kind == "hidden":
        return None
    return False if line.card.is_21() else line.card.folds


def must_fold(line, length, old):
    """Whether a physical line of that length, made from lines of the old lengths, gets new folds."""
    if line.kind == "coded":
        return length > LONGEST and length > max(old) and max(old) <= LONGEST_CODED
    return length > LONGEST and max(old) <= LONGEST


def written_lines(line, pieces):
    """The physical lines as they are written: each as [(piece that may begin another line, or None, length)], and
    the numbers of the first and the last line of the input that it is made from."""
    result, entries, number = [], [], 0
    for piece in pieces:
        if piece.folds:
            raw, last = piece.folds[0][1], piece.folds[-1][0]
            result.append((entries + [(None, vcard_model.LINE_END.search(raw).start())], number, piece.folds[0][0]))
            number = last + 1
            lead = 0 if line.card.is_21() or piece.folds[-1][1].startswith("=") else 1
            entries = [(None, lead)]
        parts = vcard_model.LINE_END.split(piece.raw)
        entries.append((piece if entries and not piece.folds else None, len(parts[0])))
        if len(parts) > 1:
            inside = [n for n, fold in enumerate(line.folds)
                      if line.units[piece.origin][1] < fold.at < line.units[piece.origin][2]]
            for part, fold in zip(parts[1:], inside):
                result.append((entries, number, fold))
                number, entries = fold + 1, [(None, len(part))]
    return result + [(entries, number, len(line.folds))]


def fold_anew(line, pieces):
    """Folds lines that became too long, each as late as possible."""
    if line.kind == "hidden" or not may_fold(line):
        return
    lengths = [stop - start for start, stop in physical_lines(line)]
    for entries, first, last in written_lines(line, pieces):
        if must_fold(line, sum(length for _, length in entries), lengths[first:last + 1]):
            break_up(line, entries)


def may_begin_line(line, piece):
    return piece is not None and (line.kind != "coded" or piece.coded and not is_raw_blank(piece.raw))


def break_up(line, entries):
    """Breaks a physical line before the last unit that may begin another and leaves the first short enough."""
    coded = line.kind == "coded"
    limit, fold = (LONGEST_CODED - 1, f"={line.own_end}") if coded else (LONGEST, f"{line.own_end} ")
    used, place, index, first = 0, None, 0, 0
    while index < len(entries):
        piece, length = entries[index]
        if index > first and may_begin_line(line, piece):
            place = index
        if used + length > limit and place is not None:
            entries[place][0].folds = [(None, fold)]
            used, index, first, place = 0 if coded else 1, place, place, None
            continue
        used += length
        index += 1


def written(file, line, text):
    """The changed line with its line end, as units of the file."""
    pieces = pieces_of(file, line, text)
    guard_signs(line, pieces)
    if line.role == "text":
        fold_anew(line, pieces)
    if line.kind == "hidden":
        return raw_of(pieces) + line.raw[line.places[line.colon] + 1:line.end]
    return raw_of(pieces) + line.raw[line.stop:line.end]


def newly_begins_with_blank(line, raw):
    return vcard_model.is_blank(raw, 0) and not vcard_model.is_blank(line.raw, line.start)


def reads_as(file, line, text, raw, at, after):
    """Whether the units from `at` to `after` are a line whose text is that of `text`."""
    again = vcard_model.read_again(file, raw, at, line.card)
    return (again.role == line.role and again.end == after and again.values() == text.values
            and again.hidden() == line.hidden())


def says_something_odd(file, line, text, raw):
    """Whether the header newly names a charset that may or may not be known, or a coded value newly begins like a
    `data:` address in base64, which may or may not be noticed, depending on its codes and soft breaks."""
    declared = vcard_model.read_again(file, raw, 0, line.card).declared
    if line.kind == "coded" and vcard_model.DATA_VALUE.match(shadow(text.values[text.border + 1:])):
        return True
    return declared and declared != line.declared and any(map(is_odd_name, declared[2]))


def goes_on_with_base64(file, line, body):
    """Whether a line newly looks like one more line of the base64 value directly above it."""
    if not vcard_model.BASE64_LINE.fullmatch(body) or vcard_model.BASE64_LINE.fullmatch(line.raw[line.start:line.stop]):
        return False
    above = next((other for other in file.lines if other.end == line.start), None)
    return above is not None and above.kind == "hidden" and above.why == "base64"


def joins_line_ends(line, body):
    """Whether nothing is left between two line ends, which would then be a single one."""
    before = body or line.raw[:line.start]
    return before.endswith("\r") and line.raw[line.stop:line.end] in ("\n", "\r\n")


def stays(file, line, text):
    """Why a line keeps its bytes although its text would change; "" if it does not keep them. None where the rules
    leave that open: it depends on what follows the line; or the line begins with an empty physical line and its
    text with a blank; or the header newly says something else about a value that is not searched before and
    after; or the header newly says something that only some programs understand."""
    raw = written(file, line, text)
    if newly_begins_with_blank(line, raw):
        return "begins with a blank"
    body = raw[:len(raw) - (line.end - line.stop)]
    if joins_line_ends(line, body):
        return "joins line ends"
    if goes_on_with_base64(file, line, body):
        return "goes on with base64"
    alone = reads_as(file, line, text, raw, 0, len(raw))
    before = reads_as(file, line, text, raw + line.raw[line.end:line.end + 5000], 0, len(raw))
    begins_late = raw[:1] in "\r\n" and text.values[:1] in ([0x20], [0x09])
    if alone != before or begins_late or says_something_odd(file, line, text, raw):
        return None
    if not alone:
        return "reads otherwise"
    again = vcard_model.read_again(file, raw, 0, line.card)
    same = again.declared == line.declared and again.why == line.why and text.border == len(text.values) - 1
    return "" if same or line.kind != "hidden" else None


def rewritten(data, part, pairs, page):
    """The bytes of a file after all pairs have been applied."""
    file = vcard_model.read(data, page)
    result = ""
    for line in file.lines:
        text = with_question_marks(file, line, change(line, part, pairs))
        if text.values == line.values() or stays(file, line, text):
            result += line.whole()
        else:
            result += written(file, line, text)
    return file.mark + file.bytes_of(result) + file.tail
