# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Why "Read as vCards" is there: the same jobs in the real window, without and with the box.

    on-virtual-display.sh /usr/bin/python3 vcards_job.py PROGRAM [unittest arguments]

window_test.py says more.
"""

import collections
import os

import window_test
from driver import FIND, IN_PLACE, READ_AS_VCARDS, REPLACE, SETS, SINGLE, TO_FOLDER
from oracle import VALUES, WHOLE
from undo_job import UNDONE, YEAR_2001, tree
from window_test import WindowTest, read

# A mode and texts; the content of the file, and its results without and with the box.
Trap = collections.namedtuple("Trap", "mode find replacement before without with_box")


def card(version, *lines, end="\r\n"):
    text = end.join(["BEGIN:VCARD", f"VERSION:{version}", *lines, "END:VCARD", ""])
    return text.encode()


TRAPS = {
    "a second colon": Trap(
        VALUES, "brightwater.example", "clearbrook.example",
        card("3.0", "URL;TYPE=WORK:https://www.brightwater.example:8443/crew", "NOTE:10:30", end="\n"),
        card("3.0", "URL;TYPE=WORK:https", "NOTE:10"),
        card("3.0", "URL;TYPE=WORK:https://www.clearbrook.example:8443/crew", "NOTE:10:30", end="\n")),
    "a folded name": Trap(
        WHOLE, "Castellan", "Quill",
        card("3.0", "FN:Ruth Cas", " tellan", "N:Castellan;Ruth"),
        card("3.0", "FN:Ruth Cas", " tellan", "N:Quill;Ruth"),
        card("3.0", "FN:Ruth Quill", "N:Quill;Ruth")),
    "a coded name": Trap(
        WHOLE, "M\u00fcller", "M\u00f6ller",
        card("2.1", "FN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=4D=C3=BCl=", "ler"),
        card("2.1", "FN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=4D=C3=BCl=", "ler"),
        card("2.1", "FN;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:M=C3=B6ller")),
    "a photo": Trap(
        SETS, "+1", "001",
        card("3.0", "TEL:+1-202-555-0114", "PHOTO;ENCODING=b;TYPE=JPEG:/9j/+1AAQ", " SkZ+1JRg=="),
        card("3.0", "TEL:001-202-555-0114", "PHOTO;ENCODING=b;TYPE=JPEG:/9j/001AAQ", " SkZ001JRg=="),
        card("3.0", "TEL:001-202-555-0114", "PHOTO;ENCODING=b;TYPE=JPEG:/9j/+1AAQ", " SkZ+1JRg==")),
}


class VCardsTest(WindowTest):
    def replace(self, program, mode, find, replacement):
        program.tab(SINGLE)
        program.type(FIND, find)
        program.type(REPLACE, replacement)
        if mode == SETS:
            program.tab(SETS)
            program.press("Clear")
            program.add_set(f"{find}::{replacement}")
        else:
            program.choose(mode)
        program.replace_all()

    def results_of_traps(self, program, folder):
        """Does each job on all files; returns the results of its own files and of the others."""
        others, own = {}, {}
        for title, trap in TRAPS.items():
            out = self.folder(folder, title)
            program.type(TO_FOLDER, out)
            self.replace(program, trap.mode, trap.find, trap.replacement)
            for name in TRAPS:
                results = own if name == title else others.setdefault(title, {})
                results[name] = read(os.path.join(out, f"{name}.vcf"))
        return others, own

    def test_traps_without_the_box_and_with_it(self):
        paths = [self.file(f"{title}.vcf", data=trap.before) for title, trap in TRAPS.items()]
        with self.program() as program:
            program.add_files(paths)
            self.assertFalse(program.is_ticked(READ_AS_VCARDS))
            self.folder("without")
            self.assertEqual(self.results_of_traps(program, "without")[1],
                             {title: trap.without for title, trap in TRAPS.items()})
            program.tick(READ_AS_VCARDS)
            self.folder("with")
            others, own = self.results_of_traps(program, "with")
        self.assertEqual(own, {title: trap.with_box for title, trap in TRAPS.items()})
        for results in others.values():
            self.assertEqual(results, {title: TRAPS[title].before for title in results})

    def test_in_place_and_back_and_after_a_restart(self):
        folder = self.folder("in")
        paths = {title: self.file("in", f"{title}.vcf", data=trap.before) for title, trap in TRAPS.items()}
        for path in paths.values():
            os.utime(path, ns=(YEAR_2001, YEAR_2001 + 123456789))
        before = tree(folder)
        trap = TRAPS["a photo"]
        with self.program() as program:
            program.add_files(list(paths.values()))
            program.choose(IN_PLACE)
            program.tick(READ_AS_VCARDS)
            self.replace(program, SETS, trap.find, trap.replacement)
            after = tree(folder)
            changed = paths["a photo"]
            self.assertEqual(after.pop(changed)[2], trap.with_box)
            self.assertEqual(after, {path: entry for path, entry in before.items() if path != changed})
        with self.program() as program:
            self.assertTrue(program.is_ticked(READ_AS_VCARDS))
            self.assertRegex(program.undo()[1], UNDONE)
            self.assertEqual(tree(folder), before)
            program.tick(READ_AS_VCARDS, False)
        with self.program() as program:
            self.assertFalse(program.is_ticked(READ_AS_VCARDS))


if __name__ == "__main__":
    window_test.main()
