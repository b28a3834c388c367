# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""What the tests in the real window have in common.

The program is the first argument of the script that runs; the sample files are
those beside it. A picture of a failure is left in the current folder.
"""

import contextlib
import os
import shutil
import sys
import tempfile
import unittest

import driver

PROGRAM = os.path.abspath(sys.argv.pop(1)) if len(sys.argv) > 1 else "vexmarrow"
SAMPLES = os.path.join(os.path.dirname(PROGRAM), "Samples")


def samples():
    """The sample files; that in UTF-16 stands last, so that a run has met it last."""
    names = sorted(os.listdir(SAMPLES), key=lambda name: (name.startswith("utf16"), name))
    return [os.path.join(SAMPLES, name) for name in names]


def read(path):
    with open(path, "rb") as file:
        return file.read()


def write(path, data):
    with open(path, "wb") as file:
        file.write(data)


class WindowTest(unittest.TestCase):
    """Gives every test a folder, settings and logs of its own."""

    def setUp(self):
        self.work = tempfile.mkdtemp(prefix="vexmarrow-e2e.")
        self.addCleanup(shutil.rmtree, self.work)
        os.environ["XDG_CONFIG_HOME"] = self.folder("config")
        os.environ["XDG_STATE_HOME"] = self.folder("state")
        self.logs = os.path.join(self.work, "state", "vexmarrow")

    def folder(self, *names):
        """A new folder in the test's own."""
        path = os.path.join(self.work, *names)
        os.mkdir(path)
        return path

    def file(self, *names, data=b""):
        """A new file in the test's own folder."""
        path = os.path.join(self.work, *names)
        write(path, data)
        return path

    @contextlib.contextmanager
    def program(self, to_be_closed=True, executable=PROGRAM, **start):
        """The running program; at the end its window is closed, and its exit status must be 0."""
        program = driver.Program(executable, **start)
        try:
            yield program
            if to_be_closed:
                self.assertEqual(program.close(), 0, "exit status")
        except BaseException:
            print(program.give_up(os.path.abspath("failure-%s.png" % self._testMethodName)), file=sys.stderr)
            raise
        finally:
            program.kill()


def main():
    unittest.main(verbosity=2, warnings="ignore")  # the bus library calls what it deprecates itself
