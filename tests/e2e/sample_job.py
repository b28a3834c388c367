# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Does the sample job in the real window and shows what it changed.

    on-virtual-display.sh /usr/bin/python3 sample_job.py PROGRAM PICTURE

It adds the files beside the program, replaces a text, and saves the results in a
temporary folder. It ends with 0 only if every result is right, byte for byte.
PICTURE is the file for the screenshot.
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
    """The lines of a file to show: read as UTF-8 if they are valid, else in the code page."""
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
    changed = "1 line" if count == 1 else f"{count} lines"
    print(f"{os.path.basename(path)}: {changed} changed")
    for line in changes:
        print(f"    {line[0]} {line[1:].encode('utf-16', 'surrogatepass').decode('utf-16', 'replace')}")
    return count


def do_job(program, paths, results, picture):
    """Uses the window."""
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
            print("The results are wrong:", *wrong, f"exit status {status}", sep="\n  ", file=sys.stderr)
            return 1

        for find, replacement in zip(FIND.split("\n"), REPLACE.split("\n")):
            print(f'Replaced "{find}" by "{replacement}"')
        print(f"in {len(paths)} files, results in a folder of their own:\n")
        changed = sum(show_changes(path, result) for path, result in zip(paths, expected.values()))
        print(f"\n{changed} lines changed in {len(paths)} files; every result is right, byte for byte.")
        print(f"The window after the run: {picture}")
        return 0


if __name__ == "__main__":
    sys.exit(main(os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])))
