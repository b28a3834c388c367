# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Whether a result is one that the rules allow; see vcard_model and vcard_change.

The result is gone through line by line beside its input. A line whose text does not change must be the
same, byte for byte. Of a changed one every unit is looked at: where it comes from, how it is written, and
what stands before it.
"""

import re
from collections import Counter

import vcard_change
import vcard_charsets
import vcard_model
from vcard_change import LONGEST, LONGEST_CODED


class Complaint(Exception):
    pass


def demand(condition, message, *details):
    if not condition:
        raise Complaint(message % details)


def folds_before(line):
    """For each unit and the end: the folds that stand directly before it."""
    starts = {unit[1]: index for index, unit in enumerate(line.units)}
    result = [[] for _ in range(len(line.units) + 1)]
    for fold in line.folds:
        index = starts.get(fold.at, len(line.units) if fold.at == len(line.joined) else None)
        if index is not None:
            result[index].append(fold)
    return result


def raw_of_unit(line, index):
    first, behind = line.bounds(index)
    return line.raw[first:behind]


class ChangedLine:
    """A line of the input, what it must say, and the line of the result that stands in its place."""

    def __init__(self, file, old, text, new, counts):
        self.file, self.old, self.text, self.new, self.counts = file, old, text, new, counts
        self.before = folds_before(new)
        self.added = set()
        self.numbers = {}  # of the folds of the result that are not added: those of the input

    def check(self):
        self.check_ends()
        for index in range(len(self.text.values)):
            self.check_unit(index)
        for index in range(len(self.text.values) + 1):
            self.check_folds(index)
        self.check_lengths()
        self.check_again()
        self.counts["new folds, " + self.old.kind] += len(self.added)
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
        origin, raw = self.text.origins[index], raw_of_unit(self.new, index)
        if origin is None:
            self.check_new_unit(index, raw)
            return
        old = raw_of_unit(self.old, origin)
        self.counts["characters cut by a fold"] += "\n" in raw
        self.counts["stray bytes kept"] += self.text.values[index] >= vcard_charsets.STRAY
        if raw == old:
            demand(not (self.is_coded(index) and vcard_change.is_raw_blank(raw) and self.ends_line(index)
                        and not vcard_change.ended_physical_line(self.old, origin)),
                   "a blank newly ends a physical line at unit %d", index)
            return
        demand(self.is_coded(index), "the bytes of unit %d change from %r to %r", index, old, raw)
        if old == "=":
            demand(raw == "=3D" and self.needs_code(index), "the = at unit %d becomes %r", index, raw)
            self.counts["signs kept as =3D"] += 1
        else:
            demand(vcard_change.is_raw_blank(old) and raw == vcard_change.hex_code(old),
                   "the bytes of unit %d change from %r to %r", index, old, raw)
            demand(self.ends_line(index) or self.stands_before_soft_break(index),
                   "the blank at unit %d needs no code", index)
            self.counts["blanks kept as =20"] += 1

    def check_new_unit(self, index, raw):
        expected = vcard_change.encoded(self.file, self.old, self.text, index)
        if not (self.is_coded(index) and expected == " "):
            demand(raw == expected, "unit %d is written as %r instead of %r", index, raw, expected)
            return
        begins = any(fold.kind == "soft" for fold in self.before[index][-1:])
        must = begins or self.ends_line(index)
        may = must or bool(self.before[index]) or self.stands_before_soft_break(index)
        self.counts["blanks put in as =20"] += raw == "=20"
        demand(raw == "=20" and may or raw == " " and not must,
               "the blank that is put in at unit %d is written as %r", index, raw)

    def ends_line(self, index):
        behind = self.before[index + 1]
        return behind[0].kind != "soft" if behind else index + 1 == len(self.new.units)

    def stands_before_soft_break(self, index):
        return any(fold.kind == "soft" for fold in self.before[index + 1][:1])

    def needs_code(self, index):
        """Whether a "=" there, written as itself, would be taken for a code or for a soft break."""
        line = self.new
        behind = line.joined[line.units[index][2]:]
        if re.match("[0-9A-Fa-f]{2}", behind):
            return True
        place = line.bounds(index)[1]
        rest = line.raw[place:vcard_model.physical(line.raw, place)[0]]
        return not rest.strip(" \t")

    # Folds

    def check_folds(self, index):
        """What stands between two units: what stood there, or a new fold."""
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
            # Beside a part that became empty may lie one that was empty before, and whose fold may go with it.
            least = min(most, 1 if 0 < index < len(self.text.values) else 0)
        if self.newly_follows_soft_break(index, kept):
            origin = self.text.origins[index]
            demand(len(kept) > 1 or not found or not vcard_change.is_raw_blank(raw_of_unit(self.old, origin)),
                   "a blank newly follows a soft break at unit %d", index)
            least = 0 if most < len(kept) else least - 1
        demand(least <= len(found) <= most and is_subsequence(found, kept),
               "between units %d and %d stands %r instead of %r", index - 1, index, found, kept)
        self.note_numbers(index, numbers, kept, found)

    def newly_follows_soft_break(self, index, kept):
        """Whether a soft break may go because of the blank behind it; it must if the blank is no code."""
        if index == len(self.text.values) or not any(raw.startswith("=") for raw in kept):
            return False
        origin = self.text.origins[index]
        # Of two soft breaks the one that stood before the blank may be the one that goes.
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
        demand(len(found) == 1 and index < len(self.text.values), "new folds %r before unit %d", found, index)
        line = self.old
        demand(vcard_change.may_fold(line) is not False, "a new fold before unit %d of a line that has none", index)
        if line.kind == "coded":
            demand(index > self.text.border, "a new soft break in the header, before unit %d", index)
            demand(found[0] == "=" + line.own_end, "a new soft break %r before unit %d", found[0], index)
            demand(not vcard_change.is_raw_blank(raw_of_unit(self.new, index)),
                   "a new soft break before the blank at unit %d", index)
        else:
            demand(found[0] == line.own_end + " ", "a new fold %r before unit %d", found[0], index)
        self.added.add(id(self.before[index][0]))

    def check_lengths(self):
        """No physical line is newly too long where it would be folded anew, and none is folded without need."""
        lines, old = vcard_change.physical_lines(self.new), vcard_change.physical_lines(self.old)
        group, number = lines[:1], 0
        for fold, line in zip(self.new.folds, lines[1:]):
            if id(fold) in self.added:
                group.append(line)
                continue
            behind = self.number_of(fold)
            self.check_group(group, old[number:behind + 1])
            group, number = [line], behind + 1
        self.check_group(group, old[number:])

    def lengths(self, line, places, blanks):
        """The lengths of physical lines, with or without the blanks behind the "=" of a soft break."""
        if blanks or line.kind != "coded":
            return [behind - first for first, behind in places]
        return [len(re.sub("=[ \t]+$", "=", line.raw[first:behind])) for first, behind in places]

    def number_of(self, fold):
        """Which fold of the input one of the result is; one within a character goes with its unit."""
        if id(fold) in self.numbers:
            return self.numbers[id(fold)]
        index = next(i for i, unit in enumerate(self.new.units) if unit[1] < fold.at < unit[2])
        first, behind = self.old.units[self.text.origins[index]][1:]
        inside = [n for n, f in enumerate(self.old.folds) if first < f.at < behind]
        same = [f for f in self.new.folds if self.new.units[index][1] < f.at < self.new.units[index][2]]
        return inside[same.index(fold)]

    def check_group(self, group, old):
        """Physical lines that would be one without the new folds between them."""
        verdicts = []
        for blanks in (True, False):
            lengths = self.lengths(self.new, group, blanks)
            length = sum(lengths) - (len(group) - 1)
            verdicts.append(vcard_change.must_fold(self.old, length, self.lengths(self.old, old, blanks)))
        if len(group) > 1:
            demand(any(verdicts), "a physical line of %d units is folded that need not be", length)
        if not all(verdicts) or not vcard_change.may_fold(self.old):
            return
        coded = self.old.kind == "coded"
        for (first, _), length in zip(group, lengths):
            demand(length <= (LONGEST_CODED if coded else LONGEST) or coded and not self.could_break(first),
                   "a physical line of %d units", length)

    def could_break(self, first):
        """Whether a coded line could have a soft break that ends the physical line at `first` in time."""
        line = self.new
        for index in range(self.text.border + 2, len(line.units)):
            place = line.bounds(index)[0]
            if first < place < first + LONGEST_CODED and not vcard_change.is_raw_blank(raw_of_unit(line, index)):
                return True
        return False

    def check_again(self):
        """Read as a line of its card, it says the same."""
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
    """Goes through an input and its result; `counts` tells what was met."""

    def __init__(self, counts=None):
        self.counts = Counter() if counts is None else counts

    def check(self, data, output, part, pairs, page):
        """The complaints about a result."""
        file = vcard_model.read(data, page)
        if not output.startswith(file.mark):
            return ["the mark changes"]
        self.counts["files with the mark %s" % file.mark.hex() if file.mark else "files without a mark"] += 1
        tail = len(output) - len(file.tail)
        if output[max(0, tail):] != file.tail or (tail - len(file.mark)) % file.width:
            return ["the bytes behind the last whole unit change"]
        self.file, self.part, self.pairs = file, part, pairs
        raw = file._raw(output[len(file.mark):tail])
        at = 0
        for number, line in enumerate(file.lines):
            try:
                at = self.check_line(line, raw, at)
            except Complaint as complaint:
                return ["line %d (%s, %r): %s" % (number, line.kind, line.whole()[:200], complaint)]
        return [] if at == len(raw) else ["%d units too many at the end" % (len(raw) - at)]

    def check_line(self, line, raw, at):
        """Returns where the next line of the result begins."""
        self.counts["lines"] += 1
        behind = at + line.end - line.start
        same = raw[at:behind] == line.whole()
        plain = vcard_change.change(line, self.part, self.pairs) if line.units else None
        if plain is None or plain.values == line.values():
            demand(same, "a line changes whose text does not: %r", raw[at:behind + 20])
            return behind
        text = vcard_change.with_question_marks(self.file, line, plain)
        # A part that is not searched follows the last unit, wherever a text that was put in has its first colon.
        border = len(text.values) - 1 if line.kind == "hidden" else text.border
        new = vcard_model.read_likewise(self.file, raw, at, line, border)
        if same and (new is None or new.end == behind or new.values() != text.values):
            self.check_stays(line, text)
            return behind
        demand(new is not None, "has no such colon, or a part that is not searched changes: %r", raw[at:behind + 20])
        demand(new.values() == text.values, "says %r instead of %r", shown(new.values()), shown(text.values))
        ChangedLine(self.file, line, text, new, self.counts).check()
        self.counts["lines with question marks"] += text.values != plain.values
        self.counts["changed, " + (line.kind if line.role == "text" else line.role)] += 1
        return new.end

    def check_stays(self, line, text):
        if text.values == line.values():
            self.counts["same by question marks"] += 1
            return
        why = vcard_change.stays(self.file, line, text)
        demand(why != "", "a line stays though its text should become %r", shown(text.values))
        self.counts["stays, " + (why or "open")] += 1


def shown(values):
    return vcard_change.shadow(values)


def check(data, output, part, pairs, page):
    return Checker().check(data, output, part, pairs, page)
