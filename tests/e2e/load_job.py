# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Saving and loading sets, and the sample files, in the real window.

    on-virtual-display.sh /usr/bin/python3 load_job.py PROGRAM [unittest arguments]

window_test.py says more.
"""

import os
import shutil

import window_test
from bus import wait_until
from driver import FIND, REPLACE, SETS, SINGLE, TITLE, TO_FOLDER
from oracle import UTF8_MARK, VALUES, Oracle, faults
from window_test import PROGRAM, SAMPLES, WindowTest, read, samples, write


class LoadSetsTest(WindowTest):
    FILE, SEPARATOR = "File To Load:", "Separator:"
    HELP = [
        "If the text file you are loading looks like this:", "hi::hello", "peter::pete",
        "then use :: as a Separator",
        "If the text file you are loading looks like this:", "hi,hello", "peter,pete",
        "then use , as a Separator",
        "NOTE: The 'Save Sets' feature in this software always saves in this format:",
        "hi::hello", "peter::pete",
    ]

    def test_round_trip(self):
        sets = [("TEL", "FON"), ("FON", ""), (" \u00e9 ", "\u20ac"), ("", "x"), ("TEL", "FON")]
        lines = "".join(f"{find}::{replacement}\r\n" for find, replacement in sets).encode("cp1252")
        path, again = (os.path.join(self.work, name) for name in ("sets", "again.txt"))
        with self.program() as program:
            program.tab(SETS)
            for pair in sets:
                program.add_set("::".join(pair))
            program.save_sets(path)
            self.assertEqual(read(path), lines)
            program.press("Clear")
            program.load_sets(path)
            program.load_sets(path)
            self.assertEqual(program.sets(), sets * 2)
            write(again, b"old")
            for button, expected in (("No", b"old"), ("Yes", lines * 2)):
                program.save_sets(again)
                question = program.answer(button=button)
                self.assertEqual(question, f"Are you sure you wish to overwrite {again} ?")
                self.assertEqual(read(again), expected, f"after {button}")

    def test_other_separators_and_encodings(self):
        contents = [
            ("=>", "a=>\u0142=>c\n\nno separator\n => x\r\nb=>".encode("utf-16"),
             [("a", "\u0142"), (" ", " x"), ("b", "")]),
            ("X", UTF8_MARK + "aXb::\u03a9\r\naxb\r\n".encode(), [("a", "b::\u03a9")]),
            (",", b"hi,hello\npeter,pete\xe9", [("hi", "hello"), ("peter", "pete\u00e9")]),
        ]
        results = self.folder("out")
        sets = []
        with self.program() as program:
            program.tab(SETS)
            for number, (separator, data, loaded) in enumerate(contents):
                program.load_sets(self.file(f"{number}.txt", data=data), separator)
                sets += loaded
                self.assertEqual(program.sets(), sets)
            program.tab(SINGLE)
            program.type(FIND, "not empty")
            program.tab(SETS)
            program.type(TO_FOLDER, results)
            program.add_files(samples())
            program.replace_all()
            self.assertEqual(faults(Oracle().run(samples(), results, SETS, sets=sets)), [])
        with self.program() as program:  # the separator is remembered
            program.load_sets(os.path.join(self.work, "2.txt"))
            self.assertEqual(program.sets(), contents[2][2])

    def test_what_the_dialog_says(self):
        missing = os.path.join(self.work, "missing <b>.txt")
        with self.program() as program:
            program.tab(SETS)
            program.press("Load Sets")
            dialog = program.dialog("Load Sets")
            self.assertEqual([dialog.text(self.FILE), dialog.text(self.SEPARATOR)], ["", "::"])
            dialog.press("Format help")
            self.assertEqual([line for line in program.answer().splitlines() if line], self.HELP)
            dialog.type(self.SEPARATOR, "")
            dialog.press("Load")
            program.confirm("You must enter separating character(s).")
            dialog.type(self.SEPARATOR, ";")
            dialog.type(self.FILE, missing)
            dialog.press("Load")
            self.assertEqual(program.answer(title="File Not Found"), f"{missing} not found.")
            dialog.press("Cancel")
            program.wait_closed(dialog)
            self.assertEqual(program.sets(), [])


class SamplesTest(WindowTest):
    QUESTION = ("Would you like this software to open the folder where these sample files are stored "
                "(so that you can view them before working with them)?")

    def load(self, program, count):
        program.tab(SETS)
        program.press("Load Sample/Example Files")
        self.assertEqual(program.answer(title=TITLE, button="No"), self.QUESTION)
        wait_until(lambda: program.is_in_front(SINGLE), "the first tab")
        self.assertEqual((program.text(FIND), program.text(REPLACE)), ("a", "b"))
        self.assertEqual(program.row_count(), count)

    def test_samples_of_the_first_start(self):
        executable = shutil.copy(PROGRAM, self.folder("program"))
        folder = shutil.copytree(SAMPLES, os.path.join(self.work, "program", "Samples"))
        self.file(folder, ".hidden.vcf", data=b"a")
        self.folder(folder, "no file.vcf")
        paths = [entry.path for entry in os.scandir(folder) if entry.is_file()]
        with self.program(executable=executable) as program:
            self.load(program, len(paths))
            self.assertEqual(program.rows(), paths)
            self.load(program, len(paths))
            results = self.folder("out")
            program.type(TO_FOLDER, results)
            program.choose(VALUES)
            program.replace_all()
            self.assertEqual(faults(Oracle().run(paths, results, VALUES, "a", "b")), [])
        self.file(folder, "added later.vcf")
        os.remove(paths.pop(3))
        with self.program(executable=executable) as program:
            self.load(program, len(paths))
            self.assertEqual(program.rows(), paths)


if __name__ == "__main__":
    window_test.main()
