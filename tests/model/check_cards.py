# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Has a program change random cards and the sample files, and judges the results.

    check_cards.py TOOL [--count N] [--seed S] [--show N] [--long]

TOOL reads cases from its standard input and writes a result for each. All numbers have 32 bits, low byte
first. A case is the part (0 fields, 1 values, 2 whole text, 3 sets), the name of the code page, the number
of find texts and these texts, the number of replace texts and these texts, and the file. A result is the
number of messages, these messages, and the file. Each name, text, message and file follows its length in
bytes; texts are UTF-8. The model judges every result. An independent parser judges the results that it can.
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
# What a run of at least LONG cases must have met: a run that judges nothing proves nothing.
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
    """The output of a program."""

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
    """[(messages, bytes)] that a program returns for cases; None for each missing result."""
    run = subprocess.run([tool], input=b"".join(map(packed_case, cases)), stdout=subprocess.PIPE, check=False)
    results, found = Results(run.stdout), []
    try:
        while len(found) < len(cases):
            found.append(results.result())
    except struct.error:
        print(f"The program ended with {run.returncode} after {len(found)} of {len(cases)} results.")
        return found + [None] * (len(cases) - len(found))
    if run.returncode != 0 or results.at != len(run.stdout):
        print(f"The program ended with {run.returncode} and wrote {len(run.stdout) - results.at} bytes too many.")
        found[-1] = None
    return found


class Judge:
    def __init__(self):
        self.counts = Counter()

    def complaints(self, case, result):
        if result is None:
            return ["there is no result"]
        messages, output = result
        pairs, partnerless = vcard_change.partners(case.finds, case.replacements)
        checker = vcard_check.Checker()
        complaints = checker.check(case.data, output, case.part, pairs, case.page)
        if case.data and len(messages) != partnerless:
            complaints.append(f"{len(messages)} messages for {partnerless} texts without partner: {messages!r}")
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
        return [f"the parser: {complaint}" for complaint in complaints]


def sample_cases(seed):
    """Every sample file with a pair that finds nothing, with fixed pairs, and with random ones."""
    for path in sorted(SAMPLES.glob("*.vcf")):
        data = path.read_bytes()
        yield path.name, random_cards.Case(data, "windows-1252", WHOLE, ["\x01"], ["x"])
        for part in (FIELDS, VALUES, WHOLE, SETS):
            yield path.name, random_cards.Case(data, "windows-1252", part, ["a", "e", "T"], ["e", "\u00e4 \u20ac", ""])
        for number in range(SAMPLE_ROUNDS):
            rng = random.Random(f"{seed}/{path.name}/{number}")
            yield path.name, random_cards.case_for(rng, data, "windows-1252")


def long_cases():
    """Lines longer than a piece, a long photo, and cards whose VERSION is too long or too far from its BEGIN."""
    piece = vcard_model.PIECE

    def card(version, body):
        return b"BEGIN:VCARD\r\nVERSION:" + version + b"\r\n" + body + b"\r\nEND:VCARD\r\n"

    def long_line(header, letter, end):
        # The first of the two occurrences of "xy" lies across the border of two pieces.
        return header + letter * (piece - len(header) - 1) + b"xy" + letter * 1000 + b"xy" + end

    pairs = ["xy", "a9"], ["\u00e4", "z"]
    yield random_cards.Case(card(b"2.1", long_line(b"NOTE:", b"a", b"")), "windows-1252", VALUES, *pairs)
    yield random_cards.Case(card(b"3.0", b"FN:xy\r\n xy\r\n" + long_line(b"NOTE:", b"b", b"\r\n xy")),
                            "UTF-8", SETS, *pairs)
    yield random_cards.Case(long_line(b"", b"a", b""), "windows-1252", WHOLE, *pairs)
    yield random_cards.Case(card(b"3.0" + b"." * 6 * piece + b"xy\r\n xy", b"FN:xy"), "UTF-8", WHOLE, *pairs)
    photo = b"PHOTO;ENCODING=b:" + b"\r\n ".join([b"xyAa" * 18] * 40000)
    yield random_cards.Case(card(b"3.0", b"FN:xy\r\n" + photo + b"\r\nFN:xy"), "windows-1252", WHOLE, *pairs)
    for lines in (1000, 2000):
        filler = b"X:" + b"." * 40 + b"\r\n"
        yield random_cards.Case(b"BEGIN:VCARD\r\nFN:x\r\n y\r\n" + filler * lines + b"VERSION:2.1\r\nEND:VCARD\r\n",
                                "windows-1252", WHOLE, *pairs)


def all_cases(count, seed, with_long):
    for number, case in enumerate(long_cases() if with_long else ()):
        yield f"long case {number}", case
    for name, case in sample_cases(seed):
        yield f"sample {name}", case
    for number in range(count):
        yield f"seed {seed}, number {number}", random_cards.case(seed, number)


def show(name, case, result, complaints):
    print(f"{name}: part {case.part}, code page {case.page}")
    print(f"  find:     {case.finds!r}\n  put in:   {case.replacements!r}")
    print(f"  input:    {case.data[:SHOWN]!r}")
    if result is not None:
        print(f"  output:   {result[1][:SHOWN]!r}")
    for complaint in complaints:
        print(f"  {complaint[:SHOWN]}")


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
        print(f"{number:8} {what}")
    missing = [what for what in EXPECTED if not judge.counts[what]] if options.count >= LONG and not bad else []
    for what in missing:
        print(f"Never met: {what}")
    sys.exit(1 if bad or missing else 0)


if __name__ == "__main__":
    main()
