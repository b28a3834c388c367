# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Carries out the recipes of the user guide in the real window, exactly as written there.

    on-virtual-display.sh /usr/bin/python3 recipes_job.py PROGRAM GUIDE [unittest arguments]

Each is done on copies of the sample files in every encoding. The results must
hold what the guide shows. Where the recipe does not read files as vCards, they
are what the oracle says, byte for byte; else they satisfy the model of cards.
window_test.py says more.
"""

import os
import re
import sys

import window_test
from driver import FIND, READ_AS_VCARDS, REPLACE, SINGLE, TO_FOLDER
from oracle import FIELDS, SETS, UTF8_MARK, UTF16_MARK, VALUES, WHOLE, Oracle, faults
from window_test import WindowTest, read, samples, write

sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, "model"))
import vcard_change  # noqa: E402
import vcard_check  # noqa: E402

PARTS = {FIELDS: vcard_change.FIELDS, VALUES: vcard_change.VALUES, WHOLE: vcard_change.WHOLE, SETS: vcard_change.SETS}
GUIDE = os.path.abspath(sys.argv.pop(1))

# The encodings of the copies, and the code page to choose for each.
ENCODINGS = {
    "ANSI": ("windows-1252", lambda text: text.encode("cp1252", "replace")),
    "UTF-8": ("UTF-8", lambda text: text.encode("utf-8")),
    "UTF-8 with mark": ("UTF-8", lambda text: UTF8_MARK + text.encode("utf-8")),
    "UTF-16": ("windows-1252", lambda text: UTF16_MARK + text.encode("utf-16-le")),
}


def decoded(data):
    """The text of a sample or a result; all of them are well-formed."""
    if data.startswith(UTF16_MARK):
        return data[2:].decode("utf-16-le")
    try:
        return data.decode("utf-8-sig")
    except UnicodeDecodeError:
        return data.decode("cp1252")


class Recipe:
    """A section of the guide that has a table of inputs."""

    def __init__(self, title, section):
        self.title = title
        rows = re.findall(r"^\| (\w[^|]*?) +\| (.*?) \|$", section, re.MULTILINE)
        self.entries = [(name, value[1:-1] if value.startswith("`") else value) for name, value in rows]
        self.sets_file = "".join(re.findall(r"^```sets\n(.*?)^```", section, re.MULTILINE | re.DOTALL))
        self.examples = {name: diff.splitlines() for name, diff in re.findall(
            r"^`(\S+\.vcf)`:\n\n```diff\n(.*?)^```", section, re.MULTILINE | re.DOTALL)}

    def values(self, name):
        return [value for entry, value in self.entries if entry == name]

    def value(self, name):
        return "".join(self.values(name))

    def reads_as_vcards(self):
        return {"ticked": True, "not ticked": False}[self.value("Read as vCards")]

    def sets(self):
        lines, separator = (self.sets_file.splitlines(), self.value("Separator")) if self.sets_file else (
            self.values("Set"), "::")
        return [tuple(line.split(separator)[:2]) for line in lines]


def recipes():
    with open(GUIDE, encoding="utf-8") as file:
        sections = re.split(r"^## (.*)\n", file.read(), flags=re.MULTILINE)[1:]
    found = [Recipe(*section) for section in zip(sections[::2], sections[1::2])]
    return [recipe for recipe in found if recipe.entries]


class RecipesTest(WindowTest):
    def enter(self, program, recipe, encode):
        """Enters what the table says, from top to bottom; returns what the oracle needs."""
        program.tick(READ_AS_VCARDS, recipe.reads_as_vcards())
        program.tab(SINGLE)
        program.type(FIND, recipe.value("Find what"))
        program.tab(recipe.value("Tab"))
        if recipe.value("Tab") != SETS:
            program.type(REPLACE, recipe.value("Replace with"))
            program.choose(recipe.value("Option"))
            return recipe.value("Option")
        program.press("Clear")
        for answer in recipe.values("Set"):
            program.add_set(answer)
        if recipe.sets_file:
            path = self.file("sets.txt", data=encode(recipe.sets_file.replace("\n", "\r\n")))
            program.load_sets(path, recipe.value("Separator"))
        self.assertEqual(program.sets(), recipe.sets())
        return SETS

    def check_example(self, before, after, diff):
        """Checks that the lines in the guide are those of the file and of its result."""
        for lines, other, sign in ((before, after, "-"), (after, before, "+")):
            shown = [line[1:] for line in diff if line[0] == sign]
            self.assertTrue(shown)
            for line in shown:
                self.assertIn(line, lines)
                if line:
                    self.assertNotIn(line, other)
        for line in diff:
            if line[0] == " ":
                self.assertIn(line[1:], before)
                self.assertIn(line[1:], after)

    def faults_of_cards(self, copies, results, mode, recipe, page):
        """The faults that the model finds in results of cards."""
        pairs = recipe.sets() if mode == SETS else [(recipe.value("Find what"), recipe.value("Replace with"))]
        return [f"{name}: {fault}" for name, copy in copies.items() for fault in vcard_check.check(
            read(copy), read(os.path.join(results, name)), PARTS[mode], pairs, page)]

    def carry_out(self, encoding):
        page, encode = ENCODINGS[encoding]
        self.folder("copies")
        copies = {}
        for path in samples():
            copy = os.path.join(self.work, "copies", os.path.basename(path))
            write(copy, encode(decoded(read(path))))
            copies[os.path.basename(path)] = copy
        oracle = Oracle(page)
        with self.program() as program:
            if page == "UTF-8":
                program.choose_code_page("UTF-8 (all languages)")
            program.add_files(list(copies.values()))
            for number, recipe in enumerate(recipes()):
                with self.subTest(recipe=recipe.title, encoding=encoding):
                    results = self.folder(f"results {number}")
                    program.choose(TO_FOLDER)
                    program.type(TO_FOLDER, results)
                    mode = self.enter(program, recipe, encode)
                    program.replace_all()
                    if recipe.reads_as_vcards():
                        self.assertEqual(self.faults_of_cards(copies, results, mode, recipe, page), [])
                    else:
                        self.assertEqual(faults(oracle.run(
                            copies.values(), results, mode, recipe.value("Find what"),
                            recipe.value("Replace with"), recipe.sets())), [])
                    self.assertTrue(recipe.examples)
                    for name, diff in recipe.examples.items():
                        before, after = (decoded(read(os.path.join(folder, name))).splitlines()
                                         for folder in (os.path.dirname(copies[name]), results))
                        self.check_example(before, after, diff)

    def test_ansi(self):
        self.carry_out("ANSI")

    def test_utf8(self):
        self.carry_out("UTF-8")

    def test_utf8_with_mark(self):
        self.carry_out("UTF-8 with mark")

    def test_utf16(self):
        self.carry_out("UTF-16")


if __name__ == "__main__":
    window_test.main()
