# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Lets a program change random cards and the sample files, and has the results judged.

    check_cards.py TOOL [--count N] [--seed S] [--show N] [--long]

TOOL reads cases from its standard input and writes a result for each. All numbers have 32 bits, the low
byte first. A case: the part (0 fields, 1 values, 2 whole text, 3 sets); the name of the code page; the
number of find texts and they; the number of replace texts and they; the file. A result: the number of
sentences and they; the file. Before each name, text, sentence and file stands its length in bytes; texts
are UTF-8. The model judges every result, a parser that others have written those that it can.
"""

import argparse
import pathlib
import random
import struct
import subprocess
import sys
from collections import Counter

import random_cards
import vcard_change
import vcard_check
import vcard_model
import vobject_judge
from vcard_change import FIELDS, SETS, VALUES, WHOLE

BATCH = 500
SAMPLES = pathlib.Path(__file__).parents[2] / "Samples"
SAMPLE_ROUNDS = 12
SHOWN = 20000  # bytes of an input
# What must have been met in a run of at least LONG cases: one that judges nothing is no proof.
LONG = 2000
EXPECTED = """
changed, plain/changed, coded/changed, hidden/changed, outside/lines with question marks/new folds, plain
new folds, coded/folds that stay/folds that go/characters cut by a fold/stray bytes kept/signs kept as =3D
blanks kept as =20/blanks put in as =20/stays, reads otherwise/stays, begins with a blank/files without a mark
files with the mark efbbbf/files with the mark fffe/files with the mark feff/files with the mark fffe0000
files with the mark 0000feff/cases that change/cases that do not change/cases with partnerless texts
lines judged by the parser/changed lines judged by the parser
""".strip().replace("\n", "/").split("/")


def packed(data):
    return struct.pack("<I", len(data)) + data


def packed_case(case):
    texts = b"".join(struct.pack("<I", len(group)) + b"".join(packed(t.encode("utf-8", "surrogatepass")) for t in group)
                     for group in (case.finds, case.replacements))
    return struct.pack("<I", case.part) + packed(case.page.encode()) + texts + packed(case.data)


class Results:
    """What a program has written."""

    def __init__(self, data):
        self.data, self.at = data, 0

    def number(self):
        self.at += 4
        return struct.unpack_from("<I", self.data, self.at - 4)[0]

    def bytes(self):
        size = self.number()
        self.at += size
        if self.at > len(self.data):
            raise struct.error("a result is cut short")
        return self.data[self.at - size:self.at]

    def result(self):
        return [self.bytes().decode("utf-8", "surrogatepass") for _ in range(self.number())], self.bytes()


def results_of(tool, cases):
    """[(sentences, bytes)] of a program for cases; what it leaves out is None."""
    run = subprocess.run([tool], input=b"".join(map(packed_case, cases)), stdout=subprocess.PIPE, check=False)
    results, found = Results(run.stdout), []
    try:
        while len(found) < len(cases):
            found.append(results.result())
    except struct.error:
        print("The program ended with %d after %d of %d results." % (run.returncode, len(found), len(cases)))
        return found + [None] * (len(cases) - len(found))
    if run.returncode != 0 or results.at != len(run.stdout):
        print("The program ended with %d and wrote %d bytes too many." % (
            run.returncode, len(run.stdout) - results.at))
        found[-1] = None
    return found


class Judge:
    def __init__(self):
        self.counts = Counter()

    def complaints(self, case, result):
        if result is None:
            return ["there is no result"]
        sentences, output = result
        pairs, partnerless = vcard_change.partners(case.finds, case.replacements)
        checker = vcard_check.Checker()
        complaints = checker.check(case.data, output, case.part, pairs, case.page)
        if case.data and len(sentences) != partnerless:
            complaints.append("%d sentences for %d texts without partner: %r" % (
                len(sentences), partnerless, sentences))
        self.counts.update(checker.counts)
        self.counts["cases judged by the model"] += 1
        self.counts["cases that change" if output != case.data else "cases that do not change"] += 1
        self.counts["cases with partnerless texts"] += partnerless > 0
        if complaints or len(case.data) > vcard_model.PIECE or any(
                what.startswith("stays") for what in checker.counts):
            return complaints
        return self.complaints_of_parser(case, output, pairs)

    def complaints_of_parser(self, case, output, pairs):
        lines, changed, complaints = vobject_judge.judge(case.data, output, case.part, pairs)
        self.counts["cases judged by the parser"] += lines > 0
        self.counts["lines judged by the parser"] += lines
        self.counts["changed lines judged by the parser"] += changed
        return ["the parser: " + complaint for complaint in complaints]


def sample_cases(seed):
    """Every sample file with pairs that hit nothing, and with random ones."""
    for path in sorted(SAMPLES.glob("*.vcf")):
        data = path.read_bytes()
        yield path.name, random_cards.Case(data, "windows-1252", WHOLE, ["\x01"], ["x"])
        for part in (FIELDS, VALUES, WHOLE, SETS):
            yield path.name, random_cards.Case(data, "windows-1252", part, ["a", "e", "T"], ["e", "\u00e4 \u20ac", ""])
        for number in range(SAMPLE_ROUNDS):
            rng = random.Random("%s/%s/%d" % (seed, path.name, number))
            yield path.name, random_cards.case_for(rng, data, "windows-1252")


def long_cases():
    """What is long: a line beyond a piece, a photo, a card whose version stands too far behind its begin."""
    piece = vcard_model.PIECE

    def card(version, body):
        return b"BEGIN:VCARD\r\nVERSION:" + version + b"\r\n" + body + b"\r\nEND:VCARD\r\n"

    def long_line(header, letter, end):
        # Of the two occurrences of "xy", the first lies across the border of two pieces.
        return header + letter * (piece - len(header) - 1) + b"xy" + letter * 1000 + b"xy" + end

    pairs = ["xy", "a9"], ["\u00e4", "z"]
    yield random_cards.Case(card(b"2.1", long_line(b"NOTE:", b"a", b"")), "windows-1252", VALUES, *pairs)
    yield random_cards.Case(card(b"3.0", b"FN:xy\r\n xy\r\n" + long_line(b"NOTE:", b"b", b"\r\n xy")),
                            "UTF-8", SETS, *pairs)
    yield random_cards.Case(long_line(b"", b"a", b""), "windows-1252", WHOLE, *pairs)
    photo = b"PHOTO;ENCODING=b:" + b"\r\n ".join([b"xyAa" * 18] * 40000)
    yield random_cards.Case(card(b"3.0", b"FN:xy\r\n" + photo + b"\r\nFN:xy"), "windows-1252", WHOLE, *pairs)
    for lines in (1000, 2000):
        filler = b"X:" + b"." * 40 + b"\r\n"
        yield random_cards.Case(b"BEGIN:VCARD\r\nFN:x\r\n y\r\n" + filler * lines + b"VERSION:2.1\r\nEND:VCARD\r\n",
                                "windows-1252", WHOLE, *pairs)


def all_cases(count, seed, with_long):
    for number, case in enumerate(long_cases() if with_long else ()):
        yield "long case %d" % number, case
    for name, case in sample_cases(seed):
        yield "sample %s" % name, case
    for number in range(count):
        yield "seed %d, number %d" % (seed, number), random_cards.case(seed, number)


def show(name, case, result, complaints):
    print("%s: part %d, code page %s" % (name, case.part, case.page))
    print("  find:     %r\n  put in:   %r" % (case.finds, case.replacements))
    print("  input:    %r" % case.data[:SHOWN])
    if result is not None:
        print("  output:   %r" % result[1][:SHOWN])
    for complaint in complaints:
        print("  " + complaint[:SHOWN])


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("tool")
    arguments.add_argument("--count", type=int, default=20000)
    arguments.add_argument("--seed", type=int, default=1)
    arguments.add_argument("--show", type=int, default=1, help="how many bad cases to show before the end")
    arguments.add_argument("--long", action="store_true", help="judge some long lines, too")
    options = arguments.parse_args()
    judge, bad = Judge(), 0
    source = all_cases(options.count, options.seed, options.long)
    while bad < options.show:
        cases = [case for case, _ in zip(source, range(BATCH))]
        if not cases:
            break
        for (name, case), result in zip(cases, results_of(options.tool, [case for _, case in cases])):
            complaints = judge.complaints(case, result)
            if complaints and bad < options.show:
                bad += 1
                show(name, case, result, complaints)
    for what, number in sorted(judge.counts.items()):
        print("%8d %s" % (number, what))
    missing = [what for what in EXPECTED if not judge.counts[what]] if options.count >= LONG and not bad else []
    for what in missing:
        print("Never met: " + what)
    sys.exit(1 if bad or missing else 0)


if __name__ == "__main__":
    main()
