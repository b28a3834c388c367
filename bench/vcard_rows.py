# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""The row `vcards`: reading as vCards beside plain text, and the memory that it takes."""

import base64
import os
import quopri
import random
import re

from cards import (CODED, FOLDED, TRAP, lines_replaced, logical_lines, plain_cards,
                   plainly_replaced, rich_cards)
from corpus import ALL, CODE_PAGE, HALF, HALF_FIELD, NONE, SEED, replaced
from measure import Contender, Failed, check, figures, read

MIB = 1 << 20
MEMORY = 64  # MiB

TEXT = {"half hit": ("whole", [HALF]), "all hit": ("whole", [ALL]), "none hit": ("whole", [NONE])}
SIDES = {"fields": ("fields", [HALF_FIELD]), "values": ("values", [HALF])}
# Plain text has no such hits, so these are compared with plain text in which all files are hit.
HARD = {"folded": ("whole", [FOLDED]), "coded": ("whole", [CODED])}


def compare_with_plain_text(bench):
    plain, rich = plain_cards(bench.corpus.cards), rich_cards(bench.corpus.cards)
    in_page = {name: data.decode().encode(CODE_PAGE) for name, data in plain.items()}
    sets = {"1,000 sets": ("sets", bench.corpus.sets(1000))}
    spared = {"photo spared": ("whole", [TRAP])}
    compete(bench, "plain vCards", plain, {**TEXT, **SIDES, **sets}, 1.5, replaced_in("utf-8"))
    compete(bench, "plain vCards in windows-1252", in_page, TEXT, 1.5, replaced_in(CODE_PAGE))
    compete(bench, "rich vCards", rich, {**TEXT, **HARD, **spared, **sets}, 2.5)
    compete(bench, "plain vCards in 1 file", in_one(plain), TEXT, 1.5, replaced_in("utf-8"))
    compete(bench, "rich vCards in 1 file", in_one(rich), {**TEXT, **HARD, **spared}, 2.5)
    memory(bench, b"".join(rich.values()))


def in_one(files):
    return {"all.vcf": b"".join(files.values())}


def replaced_in(encoding):
    return lambda data, pairs: replaced(data, pairs, encoding)


def compete(bench, what, files, ways, aim, replace=None):
    """Compares each way of replacing as vCards and as plain text, over the same files in place.
    `replace` makes the bytes of a right result; without it, the rules for cards do (see proof)."""
    work = f"{bench.cards} {what}"
    tree = bench.tree("ext4", "read-" + re.sub("[ ,]+", "-", what), files)

    def contender(way, besides):
        mode, pairs = ways[way]
        page = "utf-8" if mode == "sets" else "windows-1252"
        return Contender(
            way if besides else "text, " + way,
            lambda: bench.run(f"{work}, {way}", mode, tree, pairs, page=page, besides=besides),
            tree.restore, proof(tree, way, pairs, replace) if besides else lambda: None)

    samples = bench.compete([contender(way, "vcards") for way in ways] +
                            [contender(way, None) for way in ways if way not in HARD])
    for way in ways:
        bench.table.compare(f"{work}, {way}", samples, way,
                            "text, " + ("all hit" if way in HARD else way), aim)
    for name in files:
        os.remove(tree.path(name))
    del bench.trees[tree.folder]


def proof(tree, way, pairs, replace):
    """A check of the results of a run as vCards: of their bytes if all hits are in plain lines,
    else of their logical lines. Other rows check the results of plain text."""
    if not replace and way in ("half hit", "none hit", "photo spared"):
        replace = plainly_replaced
    names = list(tree.files)[::max(1, len(tree.files) // 200) if len(pairs) > 10 else 1]
    if replace:
        expected = [(name, replace(tree.files[name], pairs)) for name in names]
        return lambda: check("reading as vCards", tree.folder, expected)
    meant = [(name, lines_replaced(tree.files[name], pairs)) for name in names]

    def prove():
        for name, lines in meant:
            if logical_lines(read(tree.path(name))) != lines:
                raise Failed(f"reading as vCards has left wrong contents in {tree.path(name)}")

    return prove


def memory(bench, cards):
    """Measures the peak of memory over the idle window, for large files of cards and for cards with
    one very long line."""
    size = bench.big * 100 // 256
    head = b"BEGIN:VCARD\r\nVERSION:3.0\r\nTEL:+49 (0)1\r\n"
    tail = b"\r\nTEL:+49 (0)2\r\nEND:VCARD\r\n"
    photo = base64.b64encode(random.Random(SEED).randbytes(size * 3 // 4))
    # Long lines are worked on in pieces of 1,048,576 characters, which cut no unit of 64.
    unit = "Ask for Zoë at +49 (0)1234, who has the key to the house. Thanks!"[:63] + " "
    count = size // len(unit)
    text = ("NOTE:" + unit[5:] + unit * count).encode()
    coded = ("NOTE;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:".ljust(64, ".") +
             ("=\r\n" + unit.replace("ë", "=C3=AB")[:-1] + "_") * count).encode()
    many = cards * -(-bench.big // len(cards))

    def wide(data):
        return data.decode().encode("utf-16")

    def same(data):
        return data

    def unfolded(data):
        return data.replace(b"\r\n ", b"")

    def measure(name, data, pair, expected, meaning=same):
        work = f"{len(data) // 1000000} MB, {name}"
        tree = bench.tree("ext4", "read-memory", {"big.vcf": b""})
        tree.files = {"big.vcf": data}
        bench.clear_state()
        tree.restore()
        sample = bench.run(work, "whole", tree, [pair], besides="vcards")
        peak, _ = bench.peaks.pop()
        if meaning(read(tree.path("big.vcf"))) != expected:
            raise Failed("reading as vCards has left wrong contents: " + work)
        bench.table.line("peak memory in MiB, " + work, figures([sample]), f"{peak / MIB:.1f}",
                         peak / MIB, MEMORY)

    measure("rich vCards", many, HALF, plainly_replaced(many, [HALF]))
    measure("vCards in UTF-16", wide(cards), HALF, wide(plainly_replaced(cards, [HALF])))
    for name, line in (("a photo in one line", photo), ("a photo, folded", folded(photo))):
        line = b"PHOTO;ENCODING=b:" + line
        expected = replaced(head, [TRAP]) + line + replaced(tail, [TRAP])
        measure(name, head + line + tail, TRAP, expected)
    for name, line, meaning in (("a text in one line", text, same),
                                ("a text, folded", folded(text), unfolded),
                                ("a coded text", coded, quopri.decodestring)):
        data = head + line + tail
        measure(name, data, HALF, replaced(meaning(data), [HALF], "utf-8"), meaning)


def folded(line):
    return b"\r\n ".join(line[at:at + 74] for at in range(0, len(line), 74))
