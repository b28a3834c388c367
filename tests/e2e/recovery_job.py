# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""What the program does about files that a program before it was killed in the middle of.

    on-virtual-display.sh /usr/bin/python3 recovery_job.py PROGRAM INTERRUPTED_WRITE

window_test.py says more.
"""

import os
import subprocess
import sys
import threading
import time

import driver
import window_test
from driver import FIND, REPLACE
from window_test import WindowTest, read

INTERRUPTED_WRITE = os.path.abspath(sys.argv.pop(1))

OLD, NEW = b"0123456789", b"newnewnewnewnew"


def kill_once_longer(process, path, size):
    """Kills a process as soon as a file is longer than that, or when that takes too long."""
    end = time.monotonic() + 30
    while os.stat(path).st_size <= size and time.monotonic() < end:
        pass
    process.kill()


class RecoveryTest(WindowTest):
    def setUp(self):
        super().setUp()
        os.environ["XDG_STATE_HOME"] = self.folder("state")
        self.journals = os.path.join(self.work, "state", "vexmarrow")

    def interrupt(self, path):
        subprocess.run([INTERRUPTED_WRITE, self.journals, path, NEW.decode()], check=False, timeout=60)
        self.assertEqual(len([name for name in os.listdir(self.journals) if name != "kept"]), 1)

    def kept(self):
        folder = os.path.join(self.journals, "kept")
        return [read(os.path.join(folder, name)) for name in sorted(os.listdir(folder))]

    def test_the_question_before_the_window(self):
        path = self.file("card <b>.vcf", data=OLD)
        for button, content, copy in (("Yes", NEW, None), ("No", None, NEW)):
            window_test.write(path, OLD)
            self.interrupt(path)
            mixture = read(path)
            self.assertNotIn(mixture, (OLD, NEW))
            said = []

            def meet(program):
                said.append(program.answer(button=button))
                if button == "No":
                    said.append(program.answer())

            with self.program(meet=meet) as program:
                self.assertEqual(program.row_count(), 0)
            self.assertIn(path, said[0])
            self.assertRegex(said[0], r"began: \d{4}-\d\d-\d\d \d\d:\d\d:\d\d")
            self.assertRegex(said[0], r"last changed: \d{4}-\d\d-\d\d \d\d:\d\d:\d\d")
            self.assertEqual(read(path), content or mixture)
            self.assertIn(copy or mixture, self.kept())
            self.assertEqual(os.listdir(self.journals), ["kept"])
        with self.program():
            pass  # nothing is asked again

    def test_killed_in_the_middle_of_a_run(self):
        old = b"TEL:+49 30 1234567\r\n" * 500
        new = old.replace(b"+49", b"0049")
        folder = self.folder("cards")
        for number in range(3000):
            self.file("cards", "%04d.vcf" % number, data=old)
        files = [entry.path for entry in os.scandir(folder)]  # in the order of the run
        with self.program(to_be_closed=False) as program:
            program.add_folder(folder, len(files))
            program.type(FIND, "+49")
            program.type(REPLACE, "0049")
            program.choose("Find and replace in fields and values")
            program.choose(driver.IN_PLACE)
            # The whole run takes less time than a press takes to come back from the bus.
            killer = threading.Thread(target=kill_once_longer, args=(program.process, files[50], len(old)))
            killer.start()
            program.press("Start Replacing")
            killer.join()
            program.process.wait()
        self.assertEqual(read(files[-1]), old, "it was killed too late")
        pending = [name for name in os.listdir(self.journals)
                   if read(os.path.join(self.journals, name))[:1] == b"V"]

        states = [read(path) for path in files]
        whole = (old, new)
        unfinished = [path for path, state in zip(files, states) if state not in whole]
        self.assertLessEqual(len(unfinished), len(pending))
        # What was recorded may be complete already, and then there is no question.
        with self.program(meet=lambda program: program.answer_before_window("Yes")):
            pass
        for path in files:
            self.assertIn(read(path), whole, path)
        for path in unfinished:
            self.assertEqual(read(path), new)


if __name__ == "__main__":
    window_test.main()
