# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""What the program does with files whose writing was interrupted when it was killed.

    on-virtual-display.sh /usr/bin/python3 recovery_job.py PROGRAM INTERRUPTED_WRITE

window_test.py says more.
"""

import os
import re
import subprocess
import sys
import threading
import time

import bus
import driver
import window_test
import x11
from bus import wait_until
from driver import FIND, REPLACE
from window_test import WindowTest, read

INTERRUPTED_WRITE = os.path.abspath(sys.argv.pop(1))

OLD, NEW, MIXTURE = b"0123456789", b"newnew", b"newnew6789"
WAITS = "It is only partly written"


def kill_once_longer(process, path, size):
    """Kills a process as soon as a file is longer than `size`, or when that takes too long."""
    end = time.monotonic() + 30
    while os.stat(path).st_size <= size and time.monotonic() < end:
        pass
    process.kill()


class RecoveryTest(WindowTest):
    def interrupt(self, path):
        """Kills a program while it writes a file."""
        window_test.write(path, OLD)
        subprocess.run([INTERRUPTED_WRITE, self.logs, path, NEW.decode()], check=False, timeout=60)
        self.assertEqual(read(path), MIXTURE)
        self.assertEqual(len(self.runs()), 1)

    def runs(self):
        return sorted(name for name in os.listdir(self.logs) if re.fullmatch(r"\d{10}\.run", name))

    def kept(self):
        folder = os.path.join(self.logs, "kept")
        return [read(os.path.join(folder, name)) for name in sorted(os.listdir(folder))]

    def test_the_question_before_the_window(self):
        path = self.file("card <b>.vcf")
        for button, content, copy in (("Yes", OLD, MIXTURE), ("No", MIXTURE, OLD)):
            self.interrupt(path)
            said = []

            def meet(program):
                said.append(program.answer(button=button))
                if button == "No":
                    said.append(program.answer())

            with self.program(meet=meet) as program:
                self.assertEqual(program.row_count(), 0)
                self.assertFalse(program.can_undo())
            self.assertIn(path, said[0])
            self.assertRegex(said[0], r"began: \d{4}-\d\d-\d\d \d\d:\d\d:\d\d")
            self.assertRegex(said[0], r"Last change of the file: \d{4}-\d\d-\d\d \d\d:\d\d:\d\d")
            self.assertEqual(read(path), content)
            self.assertIn(copy, self.kept())
            self.assertEqual(self.runs(), [])
        with self.program():
            pass  # the question does not come again

    def run_in_place(self, program, paths):
        program.add_files(paths)
        program.type(FIND, "new")
        program.type(REPLACE, "x")
        program.choose(driver.IN_PLACE)
        program.press("Start Replacing")

    def test_later_is_asked_again_and_no_run_uses_the_file(self):
        path, other = self.file("card.vcf"), self.file("other.vcf", data=b"new")
        self.interrupt(path)
        with self.program(meet=lambda program: program.answer(button="Later")) as program:
            self.run_in_place(program, [path, other])
            self.assertIn(WAITS, program.answer("Application Error"))
            program.confirm("Done.")
            self.assertEqual((read(path), read(other)), (MIXTURE, b"x"))

        def escape(program):
            box = program.box()
            with x11.Keyboard() as keyboard:
                wait_until(lambda: bus.is_active(box.window), "the question to be active")
                keyboard.press("Escape")
                program.wait_closed(box)

        def ask_twice(first):
            """While the question is open, another start neither asks nor uses the file."""
            box = first.box()
            with self.program() as second:
                self.run_in_place(second, [path])
                self.assertIn(WAITS, second.answer("Application Error"))
                second.confirm("Done.")
            self.assertEqual(read(path), MIXTURE)
            box.press("Yes")

        with self.program(meet=escape):
            self.assertEqual(read(path), MIXTURE)
        with self.program(meet=ask_twice):
            self.assertEqual(read(path), OLD)

    def test_a_file_that_is_not_there(self):
        path = self.file("card.vcf")
        self.interrupt(path)
        os.remove(path)
        with self.program() as program:
            wait_until(lambda: bus.find(program.window, "1 file of an interrupted run is missing", "label"),
                       "the remark in the status line")
            program.choose_in_undo_menu("Keep Old Text of Missing Files")
            self.assertIn(path, program.answer())
        self.assertEqual((self.kept(), self.runs()), ([OLD], []))

    def test_killed_in_the_middle_of_a_run(self):
        old = b"TEL:+49 30 1234567\r\n" * 500
        new = old.replace(b"+49", b"0049")
        folder = self.folder("cards")
        for number in range(3000):
            self.file("cards", f"{number:04}.vcf", data=old)
        files = [entry.path for entry in os.scandir(folder)]  # in the order in which the run takes them
        with self.program(to_be_closed=False) as program:
            program.add_folder(folder, len(files))
            program.type(FIND, "+49")
            program.type(REPLACE, "0049")
            program.choose("Find and replace in fields and values")
            program.choose(driver.IN_PLACE)
            # The whole run takes less time than the bus takes to answer a press.
            killer = threading.Thread(target=kill_once_longer, args=(program.process, files[50], len(old)))
            killer.start()
            program.press("Start Replacing")
            killer.join()
            program.process.wait()
        self.assertEqual(read(files[-1]), old, "it was killed too late")
        self.assertEqual(len(self.runs()), 1)

        unfinished = [path for path in files if read(path) not in (old, new)]
        self.assertLessEqual(len(unfinished), 1)
        # The recorded file may be complete already; then there is no question.
        with self.program(meet=lambda program: program.answer_before_window("Yes")) as program:
            for path in files:
                self.assertIn(read(path), (old, new), path)
            for path in unfinished:
                self.assertEqual(read(path), old)
            # The other files can be undone, like those of any run.
            self.assertRegex(program.undo()[1], r"\AThe run of .* has been undone\.\Z")
        self.assertEqual([path for path in files if read(path) != old], [])


if __name__ == "__main__":
    window_test.main()
