# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""While a box or dialog is open, the main window can be closed but not used.

    on-virtual-display.sh /usr/bin/python3 close_job.py PROGRAM [unittest arguments]

window_test.py says more.
"""

import os
import subprocess

import bus
import driver
import window_test
import x11
from bus import is_active, wait_until
from driver import FIND, REPLACE, SETS
from window_test import WindowTest


class CloseTest(WindowTest):
    def test_while_reports_come(self):
        out = self.folder("out")
        os.mkdir(os.path.join(out, "1.vcf"))  # so that each line fails
        files = [self.file("1.vcf", data=b"a:a\r\n" * 3000), self.file("2.vcf", data=b"a")]
        with self.program() as program:
            program.add_files(files)
            program.type(FIND, "a")
            program.type("Save results to this folder:", out)
            program.choose("Find and replace in fields only")
            program.press("Start Replacing")
            for _ in range(3):
                self.assertIn("at line", program.answer("Application Error"))
            program.box("Application Error")
        self.assertEqual(os.listdir(out), ["1.vcf"])

    def test_over_every_box(self):
        def load_sets(program):
            program.tab(SETS)
            program.press("Load Sets")
            return program.dialog("Load Sets")

        for way in (lambda program: program.press("Help") or program.box(),
                    lambda program: program.press("Remove Filenames Contain. X") or program.box(),
                    lambda program: program.press("Add VCF File(s)") or program.dialog(driver.ADD_DIALOG),
                    lambda program: program.press("Browse for output folder") or program.dialog(driver.FOLDER_DIALOG),
                    load_sets,
                    lambda program: load_sets(program).press("Format help") or program.box(),
                    lambda program: load_sets(program).press("Browse") or program.dialog("Select Text File")):
            with self.program() as program:
                way(program)

    def test_out_of_reach(self):
        keyboard, mouse = x11.Keyboard(), x11.Mouse()
        with self.program() as program:
            text = bus.find(program.window, FIND, "text")
            mouse.click(*bus.middle(text))
            keyboard.type("ab")
            wait_until(lambda: bus.text_of(text) == "ab", "the letters")
            keyboard.press("Alt+h")
            box = program.box()
            wait_until(lambda: is_active(box.window), "the box to be active")
            keyboard.type("cd")
            place = bus.middle(bus.find(program.window, REPLACE, "text"))
            mouse.click(*place)
            keyboard.type("ef")
            # The window manager activates the main window, but the box soon gets the focus back.
            subprocess.run(["wmctrl", "-F", "-a", driver.WINDOW], check=True, timeout=bus.DEADLINE)
            keyboard.press("Alt+s")
            drag = x11.Drag({"text/uri-list": b"file:///etc/hostname\r\n"})
            left, top = bus.middle(bus.find(program.window, "File(s)", bus.ITEM_VIEWS))
            self.assertIsNone(drag.over(left - 300, top - 100))
            drag.leave()
            wait_until(lambda: is_active(box.window) and not is_active(program.window), "the box to be in front")
            shown = [node for node in bus.children(program.application) if bus.is_shown(node)]
            self.assertEqual(len(shown), 2)
            keyboard.press("Return")
            program.wait_closed(box)
            wait_until(lambda: is_active(program.window) and bus.is_focused(text), "the focus to be back")
            keyboard.type("g")
            wait_until(lambda: bus.text_of(text) == "abg", "a letter")
            self.assertEqual(program.text(REPLACE), "")


if __name__ == "__main__":
    window_test.main()
