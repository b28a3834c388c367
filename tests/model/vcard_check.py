# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Checks whether the rules allow a result; see vcard_model and vcard_change.

The result is compared with its input line by line. A line whose text does not change must be the same, byte
for byte. Of a changed line every unit is checked: its origin, how it is written, and the folds before it.
"""

import re
from collections import Counter

import vcard_change
import vcard_charsets
import vcard_model
from vcard_change import LONGEST, LONGEST_CODED


class Complaint(Exception):
    pass


def demand(condition, message):
    if not condition:
        raise Complaint(message)


def folds_before(line):
    """For each unit and the end: the folds directly before it."""
    starts = {unit[1]: index for index, unit in enumerate(line.units)}
    result = [[] for _ in range(len(line.units) + 1)]
    for fold in line.folds:
        index = starts.get(fold.at, len(line.units) if fold.at == len(line.joined) else None)
        if index is not None:
            result[index].append(fold)
    return result


class ChangedLine:
    """A line of the input, the text that it must get, and the line of the result in its place."""

    def __init__(self, file, old, text, new, counts):
        self.file, self.old, self.text, self.new, self.counts = file, old, text, new, counts
        self.before = folds_before(new)
        self.added = set()
        self.numbers = {}  # for each old fold of the result, its number in the input

    def check(self):
        self.check_ends()
        for index in range(len(self.text.values)):
            self.check_unit(index)
        for index in range(len(self.text.values) + 1):
            self.check_folds(index)
        self.check_lengths()
        self.check_again()
        self.counts[f"new folds, {self.old.kind}"] += len(self.added)
        self.counts["folds that stay"] += len(self.new.folds) - len(self.added)
        self.counts["folds that go"] += len(self.old.folds) - len(self.new.folds) + len(self.added)

    def check_ends(self):
        old, new = self.old, self.new
        demand(old.raw[old.stop:old.end] == new.raw[new.stop:new.end], "the line end changes")
        demand(not vcard_change.newly_begins_with_blank(old, new.whole()), "the line newly begins with a blank")
        demand(new.hidden() == old.hidden(), "the part that is not searched changes")

    def is_coded(self, index):
        return vcard_change.is_coded_at(self.old, self.text, index)

    def check_unit(self, index):
        origin, raw = self.text.origins[index], self.new.raw_of_unit(index)
        if origin is None:
            self.check_new_unit(index, raw)
            return
        old = self.old.raw_of_unit(origin)
        self.counts["characters cut by a fold"] += "\n" in raw
        self.counts["stray bytes kept"] += self.text.values[index] >= vcard_charsets.STRAY
        if raw == old:
            demand(not (self.is_coded(index) and vcard_change.is_raw_blank(raw) and self.ends_line(index)
                        and not vcard_change.ended_physical_line(self.old, origin)),
                   f"a blank newly ends a physical line at unit {index}")
            return
        demand(self.is_coded(index), f"the bytes of unit {index} change from {old!r} to {raw!r}")
        if old == "=":
            demand(raw == "=3D" and self.needs_code(index), f"the = at unit {index} becomes {raw!r}")
            self.counts["signs kept as =3D"] += 1
        else:
            demand(vcard_change.is_raw_blank(old) and raw == vcard_change.hex_code(old),
                   f"the bytes of unit {index} change from {old!r} to {raw!r}")
            demand(self.ends_line(index) or self.stands_before_soft_break(index),
                   f"the blank at unit {index} needs no code")
            self.counts["blanks kept as =20"] += 1

    def check_new_unit(self, index, raw):
        expected = vcard_change.encoded(self.file, self.old, self.text, index)
        if not (self.is_coded(index) and expected == " "):
            demand(raw == expected, f"unit {index} is written as {raw!r} instead of {expected!r}")
            return
        begins = any(fold.kind == "soft" for fold in self.before[index][-1:])
        must = begins or self.ends_line(index)
        may = must or bool(self.before[index]) or self.stands_before_soft_break(index)
        self.counts["blanks put in as =20"] += raw == "=20"
        demand(raw == "=20" and may or raw == " " and not must,
               f"the blank that is put in at unit {index} is written as {raw!r}")

    def ends_line(self, index):
        after = self.before[index + 1]
        return after[0].kind != "soft" if after else index + 1 == len(self.new.units)

    def stands_before_soft_break(self, index):
        return any(fold.kind == "soft" for fold in self.before[index + 1][:1])

    def needs_code(self, index):
        """Whether a "=" there, written as itself, would be read as a code or as a soft break."""
        line = self.new
        after = line.joined[line.units[index][2]:]
        if re.match("[0-9A-Fa-f]{2}", after):
            return True
        place = line.bounds(index)[1]
        rest = line.raw[place:vcard_model.physical(line.raw, place)[0]]
        return not rest.strip(" \t")

    # Folds

    def check_folds(self, index):
        """Between two units there may be the folds that were there, or a new one."""
        found = [self.new.raw[fold.start:fold.stop] for fold in self.before[index]]
        numbers = self.text.folds[index]
        kept = [vcard_change.fold_raw(self.old, number) for number in numbers]
        if not kept:
            if found:
                self.check_added(index, found)
            return
        if not self.text.values and not found:
            return
        most = len(kept) - vcard_change.emptied(self.old, self.text, index)
        least = most
        if most < len(kept):
            # A part that was empty before may be next to one that became empty; its fold may be removed, too.
            least = min(most, 1 if 0 < index < len(self.text.values) else 0)
        if self.newly_follows_soft_break(index, kept):
            origin = self.text.origins[index]
            demand(len(kept) > 1 or not found or not vcard_change.is_raw_blank(self.old.raw_of_unit(origin)),
                   f"a blank newly follows a soft break at unit {index}")
            least = 0 if most < len(kept) else least - 1
        demand(least <= len(found) <= most and is_subsequence(found, kept),
               f"between units {index - 1} and {index} stands {found!r} instead of {kept!r}")
        self.note_numbers(index, numbers, kept, found)

    def newly_follows_soft_break(self, index, kept):
        """Whether a soft break may be removed because of the blank after it; it must be if the blank is not coded."""
        if index == len(self.text.values) or not any(raw.startswith("=") for raw in kept):
            return False
        origin = self.text.origins[index]
        # Of two soft breaks, the one that was directly before the blank may be removed.
        return (origin is not None and self.text.values[index] in (0x20, 0x09)
                and (len(kept) > 1 or not vcard_change.directly_behind_soft_break(self.old, origin)))

    def note_numbers(self, index, numbers, kept, found):
        at = 0
        for fold, raw in zip(self.before[index], found):
            while kept[at] != raw:
                at += 1
            self.numbers[id(fold)] = numbers[at]
            at += 1

    def check_added(self, index, found):
        demand(len(found) == 1 and index < len(self.text.values), f"new folds {found!r} before unit {index}")
        line = self.old
        demand(vcard_change.may_fold(line) is not False, f"a new fold before unit {index} of a line that has none")
        if line.kind == "coded":
            demand(index > self.text.border, f"a new soft break in the header, before unit {index}")
            demand(found[0] == f"={line.own_end}", f"a new soft break {found[0]!r} before unit {index}")
            demand(not vcard_change.is_raw_blank(self.new.raw_of_unit(index)),
                   f"a new soft break before the blank at unit {index}")
        else:
            demand(found[0] == f"{line.own_end} ", f"a new fold {found[0]!r} before unit {index}")
        self.added.add(id(self.before[index][0]))

    def check_lengths(self):
        """No physical line that may be folded is newly too long, and none is folded without need."""
        lines, old = vcard_change.physical_lines(self.new), vcard_change.physical_lines(self.old)
        group, number = lines[:1], 0
        for fold, line in zip(self.new.folds, lines[1:]):
            if id(fold) in self.added:
                group.append(line)
                continue
            after = self.number_of(fold)
            self.check_group(group, old[number:after + 1])
            group, number = [line], after + 1
        self.check_group(group, old[number:])

    def lengths(self, line, places, blanks):
        """The lengths of physical lines; `blanks`: with the blanks after the "=" of a soft break."""
        if blanks or line.kind != "coded":
            return [after - first for first, after in places]
        return [len(re.sub("=[ \t]+$", "=", line.raw[first:after])) for first, after in places]

    def number_of(self, fold):
        """The number in the input of a fold of the result; a fold inside a character stays with its unit."""
        if id(fold) in self.numbers:
            return self.numbers[id(fold)]
        index = next(i for i, unit in enumerate(self.new.units) if unit[1] < fold.at < unit[2])
        first, after = self.old.units[self.text.origins[index]][1:]
        inside = [n for n, f in enumerate(self.old.folds) if first < f.at < after]
        same = [f for f in self.new.folds if self.new.units[index][1] < f.at < self.new.units[index][2]]
        return inside[same.index(fold)]

    def check_group(self, group, old):
        """Checks physical lines that would be one without the new folds between them."""
        verdicts = []
        for blanks in (True, False):
            lengths = self.lengths(self.new, group, blanks)
            length = sum(lengths) - (len(group) - 1)
            verdicts.append(vcard_change.must_fold(self.old, length, self.lengths(self.old, old, blanks)))
        if len(group) > 1:
            demand(any(verdicts), f"a physical line of {length} units is folded that need not be")
        if not all(verdicts) or not vcard_change.may_fold(self.old):
            return
        coded = self.old.kind == "coded"
        for (first, _), length in zip(group, lengths):
            demand(length <= (LONGEST_CODED if coded else LONGEST) or coded and not self.could_break(first),
                   f"a physical line of {length} units")

    def could_break(self, first):
        """Whether a soft break could end the physical line at `first` of a coded line early enough."""
        line = self.new
        return any(first < line.bounds(index)[0] < first + LONGEST_CODED
                   and not vcard_change.is_raw_blank(line.raw_of_unit(index))
                   and not vcard_model.begins_like_frame(line.joined, line.units[index][1])
                   for index in range(self.text.border + 2, len(line.units)))

    def check_again(self):
        """Reading the line in its card must give the same text."""
        new = self.new
        raw = new.whole()
        alone = vcard_change.reads_as(self.file, self.old, self.text, raw, 0, len(raw))
        rest = self.old.raw[self.old.end:self.old.end + 5000]
        if vcard_change.says_something_odd(self.file, self.old, self.text, raw):
            return
        demand(alone or vcard_change.reads_as(self.file, self.old, self.text, raw + rest, 0, len(raw)),
               "read again, the line does not say what it should")


def is_subsequence(some, all_of):
    rest = iter(all_of)
    return all(any(one == other for other in rest) for one in some)


class Checker:
    """Checks a result; `counts` says what was met."""

    def __init__(self):
        self.counts = Counter()

    def check(self, data, output, part, pairs, page):
        """The complaints about a result."""
        file = vcard_model.read(data, page)
        if not output.startswith(file.mark):
            return ["the mark changes"]
        self.counts[f"files with the mark {file.mark.hex()}" if file.mark else "files without a mark"] += 1
        tail = len(output) - len(file.tail)
        if output[max(0, tail):] != file.tail or (tail - len(file.mark)) % file.width:
            return ["the bytes after the last whole unit change"]
        self.file, self.part, self.pairs = file, part, pairs
        raw = file.units_of(output[len(file.mark):tail])
        at = 0
        for number, line in enumerate(file.lines):
            try:
                at = self.check_line(line, raw, at)
            except Complaint as complaint:
                return [f"line {number} ({line.kind}, {line.whole()[:200]!r}): {complaint}"]
        return [] if at == len(raw) else [f"{len(raw) - at} units too many at the end"]

    def check_line(self, line, raw, at):
        """Returns where the next line of the result begins."""
        self.counts["lines"] += 1
        after = at + line.end - line.start
        same = raw[at:after] == line.whole()
        plain = vcard_change.change(line, self.part, self.pairs) if line.units else None
        if plain is None or plain.values == line.values():
            demand(same, f"a line changes whose text does not: {raw[at:after + 20]!r}")
            return after
        text = vcard_change.with_question_marks(self.file, line, plain)
        # A part that is not searched follows the last unit, wherever an inserted text has its first colon.
        border = len(text.values) - 1 if line.kind == "hidden" else text.border
        new = vcard_model.read_likewise(self.file, raw, at, line, border)
        if same and (new is None or new.end == after or new.values() != text.values):
            self.check_stays(line, text)
            return after
        demand(new is not None, f"has no such colon, or a part that is not searched changes: {raw[at:after + 20]!r}")
        demand(new.values() == text.values, f"says {shown(new.values())!r} instead of {shown(text.values)!r}")
        ChangedLine(self.file, line, text, new, self.counts).check()
        self.counts["lines with question marks"] += text.values != plain.values
        self.counts[f"changed, {line.kind if line.role == 'text' else line.role}"] += 1
        return new.end

    def check_stays(self, line, text):
        if text.values == line.values():
            self.counts["same by question marks"] += 1
            return
        why = vcard_change.stays(self.file, line, text)
        demand(why != "", f"a line stays though its text should become {shown(text.values)!r}")
        self.counts[f"stays, {why or 'open'}"] += 1


def shown(values):
    return vcard_change.shadow(values)


def check(data, output, part, pairs, page):
    return Checker().check(data, output, part, pairs, page)
