# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Undoing runs in the real window: at once, after a restart, and with files changed since.

    on-virtual-display.sh /usr/bin/python3 undo_job.py PROGRAM [unittest arguments]

window_test.py says more.
"""

import os
import random
import re

import window_test
from driver import FIND, IN_PLACE, REPLACE, TO_FOLDER
from oracle import FIELDS, VALUES, WHOLE
from window_test import WindowTest, read, samples, write

YEAR_2001 = 10 ** 18
TIME = r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d"
UNDONE = rf"\AThe run of {TIME} has been undone\.\Z"


def tree(folder):
    """The content of a folder and its sub-folders: names, links, bytes, exact dates, modes."""
    found = {}
    for place, _, names in os.walk(folder):
        for name in names:
            path = os.path.join(place, name)
            status = os.lstat(path)
            content = os.readlink(path) if os.path.islink(path) else read(path)
            found[path] = (status.st_ino, status.st_nlink, content, status.st_mtime_ns, status.st_mode)
    return found


class UndoTest(WindowTest):
    def card(self, *names, data=b"TEL:1\r\n"):
        """Makes a file with an old date."""
        path = self.file(*names, data=data)
        os.utime(path, ns=(YEAR_2001, YEAR_2001 + 123456789))
        return path

    def run_over(self, program, find="TEL", replacement="FON", mode=WHOLE):
        program.type(FIND, find)
        program.type(REPLACE, replacement)
        program.choose(mode)
        program.replace_all()

    def test_in_place_and_into_a_folder_and_after_a_restart(self):
        folder, out = self.folder("in"), self.folder("out")
        paths = [self.card("in", os.path.basename(path), data=read(path)) for path in samples()]
        self.card("out", os.path.basename(paths[0]), data=b"an old result")

        def state():
            return {path: entry for path, entry in tree(self.work).items()
                    if path.startswith((folder, out))}

        before = state()
        with self.program() as program:
            self.assertFalse(program.can_undo())
            program.add_files(paths)
            program.choose(IN_PLACE)
            self.run_over(program, "e", "E!")
            self.assertNotEqual(state(), before)
            question, outcome = program.undo()
            self.assertRegex(question, rf"\AUndo the run of {TIME}\? {len(paths)} files will get their old text "
                                       r"and date back\. Files that have been changed since then will stay "
                                       r"as they are\.\Z")
            self.assertRegex(outcome, UNDONE)
            self.assertEqual(state(), before)
            self.assertFalse(program.can_undo())
            program.choose(TO_FOLDER)
            program.type(TO_FOLDER, out)
            self.run_over(program, "e", "E!")
        self.assertEqual(len(os.listdir(out)), len(paths))
        with self.program() as program:
            question, outcome = program.undo()
            self.assertRegex(question, r"\? 1 file will get its old text and date back, "
                                       rf"{len(paths) - 1} new files will be removed\. ")
            self.assertRegex(outcome, UNDONE)
        self.assertEqual(state(), before)

    def test_what_was_changed_since_is_left_alone_and_named(self):
        folder = self.folder("in")
        paths = [self.card("in", f"{number}.vcf") for number in range(4)]
        edited, removed, replaced, untouched = paths
        before = tree(folder)
        with self.program() as program:
            program.add_files(paths)
            program.choose(IN_PLACE)
            self.run_over(program)
            with open(edited, "ab") as file:
                file.write(b"edited")
            os.remove(removed)
            write(f"{replaced}.new", b"another")
            os.replace(f"{replaced}.new", replaced)
            now = tree(folder)
            outcome = program.undo()[1]
            self.assertRegex(outcome, rf"\AThe run of {TIME} has been undone, except for these files:\s")
            named = re.findall("^/.*$", outcome, re.MULTILINE)
            self.assertEqual(sorted(named), [edited, removed, replaced])
            after = tree(folder)
            self.assertEqual(after.pop(untouched), before[untouched])
            self.assertEqual(after, {path: now[path] for path in (edited, replaced)})

            # A file that was missing can still be restored when it is there again.
            write(removed, b"FON:1\r\n")
            self.assertRegex(program.undo()[1], UNDONE)
            self.assertEqual(tree(folder)[removed][2:4], before[removed][2:4])

            self.run_over(program)
            program.choose_in_undo_menu("Forget")
            self.assertIn("Delete the old texts", program.answer(button="Yes"))
            self.assertFalse(program.can_undo())
        self.assertEqual(os.listdir(self.logs), [])

    def random_tree(self, dice, folder):
        """Makes cards of all sizes, encodings, dates and modes, and links; returns their number."""
        os.makedirs(os.path.join(folder, "below"))
        places = [folder, os.path.join(folder, "below")]
        count = dice.randint(3, 12)
        paths = []
        for number in range(count):
            path = os.path.join(dice.choice(places), f"{dice.randint(0, 5)}.vcf")
            while os.path.lexists(path):
                path = path.replace(".vcf", "x.vcf")
            way = dice.randint(0, 9)
            if way == 0 and paths:
                os.symlink(dice.choice(paths), path)
            elif way == 1 and paths:
                os.link(dice.choice(paths), path, follow_symlinks=False)
            else:
                count_of_lines = dice.choice([0, 1, 9, 9999])
                lines = "".join(f"TEL:{dice.randint(0, 99)} e\u00e9;x\r\n" for _ in range(count_of_lines))
                codec = dice.choice(["cp1252", "utf-8", "utf-8-sig", "utf-16"])
                write(path, lines.encode(codec))
                os.utime(path, ns=(0, dice.randint(0, 16 * 10 ** 17)))
                os.chmod(path, dice.choice([0o600, 0o644, 0o444, 0o664]))
            paths.append(path)
        return count

    def test_random_trees(self):
        seed = int(os.environ.get("VEXMARROW_SEED", "1"))
        dice = random.Random(seed)
        changed = 0
        for number in range(10):
            folder, out = os.path.join(self.work, f"in {number}"), self.folder(f"out {number}")
            count = self.random_tree(dice, folder)
            if dice.random() < 0.5:
                self.card(out, "1.vcf", data=b"an old result")
            before = tree(folder), tree(out)
            with self.program() as program:
                program.add_folder(folder, count)
                program.choose(dice.choice([IN_PLACE, TO_FOLDER]))
                if not program.is_chosen(IN_PLACE):
                    program.type(TO_FOLDER, out)
                self.run_over(program, *dice.choice([("e", "\u00e9!"), ("TEL", ""), ("9", "99")]),
                              mode=dice.choice([FIELDS, VALUES, WHOLE]))
                is_changed = (tree(folder), tree(out)) != before
                self.assertEqual(program.can_undo(), is_changed)
                changed += is_changed
                if is_changed and changed != 3:
                    self.assertRegex(program.undo()[1], UNDONE)
            if is_changed and changed == 3:
                with self.program() as program:
                    self.assertRegex(program.undo()[1], UNDONE)
            self.assertEqual((tree(folder), tree(out)), before, f"seed {seed}, tree {number}")
        self.assertGreater(changed, 5)


if __name__ == "__main__":
    window_test.main()
