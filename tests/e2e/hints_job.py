# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""The hints that the window shows before a run, as a new user meets them.

    on-virtual-display.sh /usr/bin/python3 hints_job.py PROGRAM [unittest arguments]

window_test.py says more.
"""

import os

import bus
import window_test
from bus import wait_until
from driver import FIND, IN_PLACE, REPLACE, SETS, SINGLE, TO_FOLDER, WINDOW
from keyboard_job import UTF8, Keys
from window_test import WindowTest, read

LOOKS_LIKE_UTF8 = "These files look like UTF-8"


def shows(program, text):
    """Whether the window shows a line with that text."""
    return bus.find(program.window, text, ("label", "static")) is not None


def wait_shows(program, text, shown=True):
    wait_until(lambda: shows(program, text) == shown, f"{text!r} to show: {shown}")


class HintsTest(WindowTest):
    def test_an_accent_in_cards_of_utf8(self):
        folder, out = self.folder("in"), self.folder("out")
        self.folder("in", "deeper")
        cards = {("in", "anna.vcf"): "FN:Anna M\u00fcller\r\n",
                 ("in", "deeper", "jos\u00e9.vcf"): "FN:Jos\u00e9 M\u00fcller\r\n"}
        for names, text in cards.items():
            self.file(*names, data=text.encode())
        with self.program() as program, Keys(program) as keys:
            program.add_folder(folder, 2)
            program.type(FIND, "M\u00fcller")
            program.type(REPLACE, "Miller")
            program.type(TO_FOLDER, out)
            wait_shows(program, LOOKS_LIKE_UTF8)
            # The hint by itself changes nothing: the text is still not found.
            program.replace_all()
            self.assertEqual({read(os.path.join(out, name)) for name in os.listdir(out)},
                             {text.encode() for text in cards.values()})
            keys.to_window()
            keys.press("Alt+8")
            wait_until(lambda: program.code_page() == UTF8, "the code page of the button")
            wait_shows(program, LOOKS_LIKE_UTF8, shown=False)
            program.replace_all()
        self.assertEqual({read(os.path.join(out, name)) for name in os.listdir(out)},
                         {text.replace("M\u00fcller", "Miller").encode() for text in cards.values()})

    def test_sets_from_the_table_and_the_way_back(self):
        paths = [self.file(f"{i}.vcf", data=b"ORG:one two three four five\r\n") for i in range(3)]
        with self.program(arguments=paths) as program:
            program.wait_for_rows(3)
            program.tab(SETS)
            needed = '"Find what" on the other tab must not be empty: type any text there.'
            wait_shows(program, needed)
            for text in ("one::1", "two::2", "three::3", "oops::?", "four::4", "five::5"):
                program.add_set(text)
            wait_shows(program, "3 files, 6 sets")
            table = wait_until(lambda: bus.find(program.window, "Sets", bus.ITEM_VIEWS), "the table of sets")
            cells = table.queryTable()
            self.assertEqual([cells.getAccessibleAt(3, column).name for column in range(3)], ["4", "oops", "?"])
            cells.addRowSelection(3)
            program.press("Remove Selected Set")
            program.press("Remove Selected Set")  # no other set has been chosen
            wait_shows(program, "3 files, 5 sets")
            program.press("Start Replacing")
            program.confirm("You forgot to input find what.")
            program.tab(SINGLE)
            program.type(FIND, "-")
            program.tab(SETS)
            wait_shows(program, needed, shown=False)
            program.choose(IN_PLACE)
            program.replace_all()
            self.assertEqual({read(path) for path in paths}, {b"ORG:1 2 3 4 5\r\n"})
            program.undo()
            self.assertEqual({read(path) for path in paths}, {b"ORG:one two three four five\r\n"})
            self.assertEqual(program.window.name, WINDOW)


if __name__ == "__main__":
    window_test.main()
