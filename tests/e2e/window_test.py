# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""The common base of the tests in the real window.

The program is the first argument of the script that runs; the sample files are
those beside it. A test that fails leaves a picture in the current folder.
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
    """The sample files; the one in UTF-16 is last, so that a run reads it last."""
    names = sorted(os.listdir(SAMPLES), key=lambda name: (name.startswith("utf16"), name))
    return [os.path.join(SAMPLES, name) for name in names]


def read(path):
    with open(path, "rb") as file:
        return file.read()


def write(path, data):
    with open(path, "wb") as file:
        file.write(data)


class WindowTest(unittest.TestCase):
    """A test with a folder, settings and logs of its own."""

    def setUp(self):
        self.work = tempfile.mkdtemp(prefix="vexmarrow-e2e.")
        self.addCleanup(shutil.rmtree, self.work)
        os.environ["XDG_CONFIG_HOME"] = self.folder("config")
        os.environ["XDG_STATE_HOME"] = self.folder("state")
        self.logs = os.path.join(self.work, "state", "vexmarrow")

    def folder(self, *names):
        """Makes a folder in the test's own folder; returns its path."""
        path = os.path.join(self.work, *names)
        os.mkdir(path)
        return path

    def file(self, *names, data=b""):
        """Makes a file in the test's own folder; returns its path."""
        path = os.path.join(self.work, *names)
        write(path, data)
        return path

    @contextlib.contextmanager
    def program(self, to_be_closed=True, executable=PROGRAM, **start):
        """Runs the program; at the end its window is closed, and its exit status must be 0."""
        program = driver.Program(executable, **start)
        try:
            yield program
            if to_be_closed:
                self.assertEqual(program.close(), 0, "exit status")
        except BaseException:
            print(program.give_up(os.path.abspath(f"failure-{self._testMethodName}.png")), file=sys.stderr)
            raise
        finally:
            program.kill()


def main():
    unittest.main(verbosity=2, warnings="ignore")  # the library of the bus uses functions that it deprecates
