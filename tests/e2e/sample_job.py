# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Does the sample job in the real window and shows what it changed.

    on-virtual-display.sh /usr/bin/python3 sample_job.py PROGRAM PICTURE

The files beside the program are added, a text is replaced by another, the
results go into a temporary folder. Ends with 0 only if every result holds, byte
for byte, what it must hold. PICTURE is where the screenshot is put.
"""

import difflib
import os
import sys
import tempfile

import driver
from oracle import PAGES, UTF16_MARK, WHOLE, Oracle, faults, from_utf16, split_lines

FIND = "brightwater.example\nBrightwater Ferries"
REPLACE = "clearbrook.example\nClearbrook Lines"


def readable_lines(data):
    """The lines of a file, to be shown: in UTF-8 where they can be that, else in the code page."""
    if data.startswith(UTF16_MARK):
        return split_lines(from_utf16(data))
    try:
        return split_lines(data.decode("utf-8-sig"))
    except UnicodeDecodeError:
        return split_lines(PAGES["windows-1252"].decode(data))


def show_changes(path, result):
    """Prints the lines that differ between a file and its result, and returns how many there are."""
    with open(path, "rb") as file:
        before = readable_lines(file.read())
    after = readable_lines(result)
    heading_and_changes = list(difflib.unified_diff(before, after, n=0, lineterm=""))
    changes = [line for line in heading_and_changes[2:] if line[0] in "-+"]
    count = sum(line[0] == "-" for line in changes)
    print("%s: %s" % (os.path.basename(path), "%d lines changed" % count if count != 1 else "1 line changed"))
    for line in changes:
        print("    %s %s" % (line[0], line[1:].encode("utf-16", "surrogatepass").decode("utf-16", "replace")))
    return count


def do_job(program, paths, results, picture):
    """The clicks and the typing."""
    program.add_files(paths)
    program.tab(driver.SINGLE)
    program.type(driver.FIND, FIND)
    program.type(driver.REPLACE, REPLACE)
    program.choose(WHOLE)
    program.choose(driver.TO_FOLDER)
    program.type(driver.TO_FOLDER, results)
    program.replace_all(picture=picture)


def main(executable, picture):
    folder = os.path.join(os.path.dirname(os.path.realpath(executable)), "Samples")
    paths = [os.path.join(folder, name) for name in sorted(os.listdir(folder))]
    with tempfile.TemporaryDirectory(prefix="vexmarrow-results.") as results:
        program = driver.Program(executable)
        try:
            do_job(program, paths, results, picture)
            status = program.close()
        except BaseException:
            print(program.give_up(picture), file=sys.stderr)
            raise
        finally:
            program.kill()

        expected = Oracle().run(paths, results, WHOLE, FIND, REPLACE)
        wrong = faults(expected)
        if wrong or status != 0:
            print("The results are wrong:", *wrong, "exit status %d" % status, sep="\n  ", file=sys.stderr)
            return 1

        for find, replacement in zip(FIND.split("\n"), REPLACE.split("\n")):
            print('Replaced "%s" by "%s"' % (find, replacement))
        print("in %d files, results in a folder of their own:\n" % len(paths))
        changed = sum(show_changes(path, result) for path, result in zip(paths, expected.values()))
        print("\n%d lines changed in %d files; every result is right, byte for byte." % (changed, len(paths)))
        print("The window after the run: " + picture)
        return 0


if __name__ == "__main__":
    sys.exit(main(os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])))
