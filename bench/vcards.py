# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Reading as vCards beside the whole text as it lies; and the memory that it takes."""

import base64
import os
import quopri
import random
import re

from cards import (CODED, FOLDED, TRAP, lines_replaced, logical_lines, plain_cards, plainly_replaced,
                   rich_cards)
from corpus import ALL, CODE_PAGE, HALF, HALF_FIELD, NONE, SEED, replaced
from measure import Contender, Failed, check, figures, read

MIB = 1 << 20
MEMORY = 64  # MiB

TEXT = {"half hit": ("whole", [HALF]), "all hit": ("whole", [ALL]), "none hit": ("whole", [NONE])}
SIDES = {"fields": ("fields", [HALF_FIELD]), "values": ("values", [HALF])}
# What the plain text does not show stands beside the plain text in which all files are hit.
HARD = {"folded": ("whole", [FOLDED]), "coded": ("whole", [CODED])}


def row(bench):
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
    """Each way as vCards and as plain text, over the same files in place. `replace` tells the bytes of
    a result; without it, they or what they mean are told by the rules for cards."""
    work = "%d %s" % (bench.cards, what)
    tree = bench.tree("ext4", "read-" + re.sub("[ ,]+", "-", what), files)

    def contender(way, besides):
        mode, pairs = ways[way]
        page = "utf-8" if mode == "sets" else "windows-1252"
        return Contender(way if besides else "text, " + way,
                         lambda: bench.run("%s, %s" % (work, way), mode, tree, pairs, page=page, besides=besides),
                         tree.restore, proof(tree, way, pairs, replace) if besides else lambda: None)

    samples = bench.compete([contender(way, "vcards") for way in ways] +
                            [contender(way, None) for way in ways if way not in HARD])
    for way in ways:
        bench.table.compare("%s, %s" % (work, way), samples, way,
                            "text, " + ("all hit" if way in HARD else way), aim)
    for name in files:
        os.remove(tree.path(name))
    del bench.trees[tree.folder]


def proof(tree, way, pairs, replace):
    """A check of what a run as vCards has left: of its bytes where hits are in plain lines only, else of
    what its lines mean. What plain text comes to is proven by other rows."""
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
                raise Failed("reading as vCards has left wrong contents in %s" % tree.path(name))

    return prove


def memory(bench, cards):
    """The peak over the idle window, for large files of cards and for cards with one very long line."""
    size = bench.big * 100 // 256
    head, tail = b"BEGIN:VCARD\r\nVERSION:3.0\r\nTEL:+49 (0)1\r\n", b"\r\nTEL:+49 (0)2\r\nEND:VCARD\r\n"
    photo = base64.b64encode(random.Random(SEED).randbytes(size * 3 // 4))
    # Long lines are worked on in pieces of 1,048,576 characters; no unit of 64 is cut by that.
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

    def told(name, data, pair, expected, meaning=same):
        work = "%d MB, %s" % (len(data) // 1000000, name)
        tree = bench.tree("ext4", "read-memory", {"big.vcf": b""})
        tree.files = {"big.vcf": data}
        bench.clear_state()
        tree.restore()
        sample = bench.run(work, "whole", tree, [pair], besides="vcards")
        peak, _ = bench.peaks.pop()
        if meaning(read(tree.path("big.vcf"))) != expected:
            raise Failed("reading as vCards has left wrong contents: " + work)
        bench.table.line("peak memory in MiB, " + work, figures([sample]), "%.1f" % (peak / MIB), peak / MIB,
                         MEMORY)

    told("rich vCards", many, HALF, plainly_replaced(many, [HALF]))
    told("vCards in UTF-16", wide(cards), HALF, wide(plainly_replaced(cards, [HALF])))
    for name, line in (("a photo in one line", photo), ("a photo, folded", folded(photo))):
        line = b"PHOTO;ENCODING=b:" + line
        told(name, head + line + tail, TRAP, replaced(head, [TRAP]) + line + replaced(tail, [TRAP]))
    for name, line, meaning in (("a text in one line", text, same), ("a text, folded", folded(text), unfolded),
                                ("a coded text", coded, quopri.decodestring)):
        data = head + line + tail
        told(name, data, HALF, replaced(meaning(data), [HALF], "utf-8"), meaning)


def folded(line):
    return b"\r\n ".join(line[at:at + 74] for at in range(0, len(line), 74))
