# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""The main job in the real window; its results are compared with the oracle's, byte by byte.

    on-virtual-display.sh /usr/bin/python3 main_job.py PROGRAM [unittest arguments]

window_test.py says more.
"""

import os
import re
import signal

import bus
import window_test
from bus import wait_until
from driver import FIND, IN_PLACE, REPLACE, SINGLE, TO_FOLDER
from oracle import FIELDS, SETS, VALUES, WHOLE, Oracle, faults
from window_test import SAMPLES, WindowTest, read, samples, write

# The runs in one window, in order: mode, find text, replace text. A run on whole texts depends on
# the encoding of the last file before it; the UTF-16 sample is last in the list for that reason.
RUNS = [
    (WHOLE, "brightwater.example\nFerries\nBoats\nTYPE=CELL\n\u00e9",
     "clearbrook.example\nBoats\nShips\nTYPE=WORK\ne"),
    (FIELDS, "CELL", "MOBILE"),
    (WHOLE, "Brightwater\n\u041d\u0438\u043d\u0430\nTEL", ""),
    (VALUES, "brightwater", "clearbrook"),
    (VALUES, "e", "\u0119\U0001f6a2"),
    (FIELDS, ";", "\n;"),
    (SETS, "not empty", ""),
    (WHOLE, "Caf\u00e9\nx", "x\ny"),
]
SET_LIST = [("brightwater", "clearbrook"), ("clearbrook.example", "quay.example"),
            ("\u00fc", "ue"), ("tel", "TEL"), ("TEL", ""), ("", "nothing")]


class ResultsTest(WindowTest):
    """Every mode and the sets, with both ways of saving."""

    def prepare(self, program, mode, find, replacement):
        """Fills in the window for one of RUNS."""
        program.tab(SINGLE)
        program.type(FIND, find)
        program.type(REPLACE, replacement)
        if mode == SETS:
            program.tab(SETS)
        else:
            program.choose(mode)

    def made_files(self):
        """Files that are harder to process than the samples, in a folder of their own."""
        folder = self.folder("in")
        # Words around the borders of pieces: one ends at a border, one begins a character before a
        # border, one begins at a border, and one ends a character after a border.
        word, long_text = b"brightwater.example", b"NOTE:"
        for place in (65536 - len(word), 2 * 65536 - 1, 3 * 65536, 4 * 65536 + 1 - len(word)):
            long_text = long_text.ljust(place, b".") + word
        data = {
            "a text longer than one piece.vcf": long_text,
            "empty.vcf": b"",
            "zo\u00e9 & s\u00f6hne; 50%, <b>(2)#.vcf": read(os.path.join(SAMPLES, "western-accents-2-1.vcf")),
            "utf-8 mark alone.vcf": b"\xef\xbb\xbf",
            "some of it is utf-8.vcf": b"N:\xc3\xa9\xe9;\xf0\x9f\x9a\xa2\xf0\x9f\xc3e\xa9\r\n" * 9000,
            "utf-16 big-endian.vcf": b"\xfe\xff" + "TEL:e\r\n".encode("utf-16-be") + b"e",
        }
        for name, content in data.items():
            write(os.path.join(folder, name), content)
        return [os.path.join(folder, name) for name in sorted(data)]

    def test_results_in_a_folder(self):
        self.results_in_a_folder("windows-1252")

    def test_results_in_a_folder_with_utf8_as_the_code_page(self):
        write(os.path.join(self.work, "config", "Quillmoor.ini"), b"[Vexmarrow%20Software]\nAnsiCodePage=UTF-8\n")
        self.results_in_a_folder("UTF-8")

    def results_in_a_folder(self, page):
        paths = self.made_files() + samples()
        before = {path: read(path) for path in paths}
        oracle = Oracle(page)
        with self.program() as program:
            program.add_files(paths)
            self.assertEqual(program.rows(), paths)
            program.tab(SETS)
            for find, replacement in SET_LIST:
                program.add_set(f"{find}::{replacement}")
            program.choose(TO_FOLDER)
            for number, (mode, find, replacement) in enumerate(RUNS):
                with self.subTest(run=number, mode=mode):
                    results = self.folder(f"results {number}")
                    program.type(TO_FOLDER, results)
                    self.prepare(program, mode, find, replacement)
                    program.replace_all()
                    expected = oracle.run(paths, results, mode, find, replacement, SET_LIST)
                    self.assertEqual(faults(expected), [])
                    self.assertEqual(sorted(os.listdir(results)), sorted(map(os.path.basename, expected)))
            # Once more, into a folder that already holds results, named with a slash at its end.
            program.type(TO_FOLDER, results + "/")
            program.replace_all()
            self.assertEqual(faults(oracle.run(paths, results, mode, find, replacement)), [])
        self.assertEqual(faults(before), [], "an input was changed")

    def test_results_in_place(self):
        folder = self.folder("copies")
        originals = {os.path.join(folder, os.path.basename(path)): read(path)
                     for path in self.made_files() + samples()}
        for path, data in originals.items():
            write(path, data)
        paths = list(originals)
        oracle = Oracle()
        with self.program() as program:
            program.add_files(paths)
            program.tab(SETS)
            for find, replacement in SET_LIST:
                program.add_set(f"{find}::{replacement}")
            program.choose(IN_PLACE)
            for number, (mode, find, replacement) in enumerate(RUNS):
                with self.subTest(run=number, mode=mode):
                    for path, data in originals.items():
                        write(path, data)
                    expected = dict(originals)
                    expected.update(oracle.run(paths, None, mode, find, replacement, SET_LIST))
                    self.prepare(program, mode, find, replacement)
                    program.replace_all()
                    self.assertEqual(faults(expected), [])
                    self.assertEqual(sorted(os.listdir(folder)), sorted(map(os.path.basename, paths)))


class NamesTest(WindowTest):
    """The names that the controls have for assistive programs."""

    NAMES = {
        "push button": [
            "Add VCF File(s)", "Add All VCF File(s) In Folder", "Load List Of Files From File",
            "Remove Filenames Contain. X", "Remove Filenames Not Cont. X", "Clear List",
            "Load Sample/Example Files", "Help", "Browse for output folder", "Start Replacing",
            "Undo Last Run", "Undo Menu"],
        "radio button": [FIELDS, VALUES, WHOLE, TO_FOLDER, IN_PLACE],
        "page tab": [SINGLE, SETS],
        "panel": ["Find Options", "Save Option"],
        "tree": ["File(s)"],
        "text": [TO_FOLDER],
    }
    NAMES_ON_TABS = {
        SINGLE: {"text": [FIND, REPLACE]},
        SETS: {"combo box": [FIND, REPLACE],
               "push button": ["Add Set", "Remove Selected Set", "Load Sets", "Clear", "Save Sets"]},
    }

    def test_every_control_is_found_by_its_name(self):
        with self.program() as program:
            for tab, names_on_tab in self.NAMES_ON_TABS.items():
                program.tab(tab)
                for table in (self.NAMES, names_on_tab):
                    for role, names in table.items():
                        missing = [name for name in names if not bus.find(program.window, name, role)]
                        self.assertEqual(missing, [], f"{role} on tab {tab}")
            program.press("Help")
            self.assertRegex(
                program.answer(),
                r"\AThis software is not intended to be used on non-text-based files such as media files, "
                r"executables, etc\.\s+.*https://vexmarrow\.example/contact\Z")


class MessagesTest(WindowTest):
    def test_missing_input_is_reported(self):
        lacking_folder = "Folder does not exist. Please select another folder."
        a_file = os.path.join(self.work, "file")
        write(a_file, b"")
        with self.program() as program:
            for tab in (SINGLE, SETS):
                program.tab(tab)
                program.press("Start Replacing")
                program.confirm("You forgot to input find what.")
            program.tab(SINGLE)
            program.type(FIND, "a")
            program.choose(TO_FOLDER)
            for folder in ("", "/no/such/folder", a_file):
                program.type(TO_FOLDER, folder)
                program.press("Start Replacing")
                program.confirm(lacking_folder)
            program.choose(IN_PLACE)
            program.press("Start Replacing")
            program.confirm("No files added.")
            program.choose(TO_FOLDER)
            program.type(TO_FOLDER, self.work)
            program.tab(SETS)
            program.press("Start Replacing")
            program.confirm("No files added.")
            program.add_set("no separator")
            program.confirm("You must use :: to separate the find text from the replace text")

    def test_missing_and_empty_files(self):
        """Missing and empty files are skipped; a find line without a replace line is reported."""
        folder, results = self.folder("in"), self.folder("out")
        vanished, empty, full = (os.path.join(folder, name) for name in ("a.vcf", "b.vcf", "c.vcf"))
        for path, data in ((vanished, b"AB"), (empty, b""), (full, b"ABC")):
            write(path, data)
        with self.program() as program:
            program.add_folder(folder, 3)
            self.assertEqual(sorted(program.rows()), [vanished, empty, full])
            os.remove(vanished)
            program.type(TO_FOLDER, results)
            program.type(FIND, "A\nB\nC")
            program.type(REPLACE, "1\n2")
            program.press("Start Replacing")
            report = program.answer(title="Application Error")
            self.assertRegex(report, re.compile(
                r"\A.+\s+in Zentavor2021/08/31\.ReplaceText\.ReplaceTextInFile at line \d+\s+"
                r"Please email screenshot of this message to support@vexmarrow\.example\Z", re.DOTALL))
            program.confirm("Done.")
            self.assertEqual(os.listdir(results), ["c.vcf"])
            self.assertEqual(read(os.path.join(results, "c.vcf")), b"12C")


class SittingTest(WindowTest):
    """The choices that the program keeps until its next start, and the ways it ends."""

    def test_choices_survive_a_restart(self):
        choices = [
            (WHOLE, IN_PLACE, SETS, os.path.join(self.work, "a half-typed p")),
            (VALUES, TO_FOLDER, SINGLE, self.folder("zo\u00e9 50%20; \u0142=\"x\", y") + "/"),
            (FIELDS, IN_PLACE, SINGLE, ""),
        ]
        with self.program() as program:
            self.assertTrue(program.is_chosen(WHOLE) and program.is_chosen(TO_FOLDER))
            self.assertTrue(program.is_in_front(SINGLE))
        for mode, saving, tab, folder in choices:
            with self.program() as program:
                program.choose(TO_FOLDER)
                program.type(TO_FOLDER, folder)
                program.tab(tab)
                program.choose(mode)
                program.choose(saving)
            with self.subTest(mode=mode), self.program() as program:
                self.assertEqual([m for m in (FIELDS, VALUES, WHOLE) if program.is_chosen(m)], [mode])
                self.assertEqual([s for s in (TO_FOLDER, IN_PLACE) if program.is_chosen(s)], [saving])
                self.assertTrue(program.is_in_front(tab))
                self.assertEqual(program.text(TO_FOLDER), folder)
        self.assertEqual(os.listdir(os.environ["XDG_CONFIG_HOME"]), ["Quillmoor.ini"])

    def test_closing_ends_a_run_at_once(self):
        count = 4000
        folder = self.folder("copies")
        contents = [read(path) for path in samples()]
        paths = [os.path.join(folder, f"{number:05}.vcf") for number in range(count)]
        old = {path: contents[number % len(contents)] for number, path in enumerate(paths)}
        with self.program(to_be_closed=False) as program:
            for path, data in old.items():
                write(path, data)
            program.add_folder(folder, count)
            order = program.rows()
            self.assertEqual(sorted(order), paths)
            program.type(FIND, "a")
            program.type(REPLACE, "aaa")
            program.choose(VALUES)
            program.choose(IN_PLACE)
            program.press("Start Replacing")
            # The program is stopped as soon as the run has begun, so that the close request
            # arrives during the run, however fast the machine is.
            wait_until(lambda: read(order[0]) != old[order[0]], "the run to begin")
            program.process.send_signal(signal.SIGSTOP)
            self.assertEqual(read(order[-1]), old[order[-1]], "the run was over before it could be closed")
            program.press_close_while_held()
            program.process.send_signal(signal.SIGCONT)
            self.assertEqual(program.wait_end(), 0, "exit status")
        oracle = Oracle()
        new = [oracle.result(old[path], VALUES, "a", "aaa") for path in order]
        done = 0
        while done < count and read(order[done]) == new[done]:
            done += 1
        self.assertLess(done, count // 2, "the run went on after the window was closed")
        self.assertEqual(faults({path: old[path] for path in order[done:]}), [])


if __name__ == "__main__":
    window_test.main()
