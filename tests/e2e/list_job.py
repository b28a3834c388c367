# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""All ways to add files to the list and to remove them, in the real window.

    on-virtual-display.sh /usr/bin/python3 list_job.py PROGRAM [unittest arguments]

window_test.py says more.
"""

import os
import re
import signal
import socket
from urllib.parse import quote_from_bytes

import oracle
import window_test
from bus import wait_until
from driver import FIND, REPLACE, SETS, TO_FOLDER, WINDOW, tool
from oracle import UTF8_MARK, UTF16_MARK, WHOLE, Oracle, faults, shown, to_utf16
from window_test import WindowTest, samples, write
from x11 import Drag, Mouse

EXTENSION_QUESTION = re.compile(
    r"These files: \r?\n\r?\n(.*)\r?\ndo not appear to be in the expected file format because of their "
    r"file extension\.\r?\n\r?\nWould you like to remove them from list\?", re.DOTALL)


def address(path):
    """The address of a path, as file managers write it."""
    return b"file://" + quote_from_bytes(os.fsencode(path)).encode()


def uri_list(addresses):
    return {"text/uri-list": b"".join(line + b"\r\n" for line in addresses)}


class DropTest(WindowTest):
    """Drags from another program."""

    def tree(self, name, sub_folders=()):
        """A folder with sub-folders that hold three files each, one of which must not be listed."""
        root = self.folder(name)
        for number, folder in enumerate(("",) + sub_folders):
            os.makedirs(os.path.join(root, folder), exist_ok=True)
            for file in (f"card {number}.vcf", ".shown.vcf", ".hidden.vcf", "~backup.vcf"):
                self.file(name, folder, file, data=b"TEL:1\r\n")
            os.chmod(os.path.join(root, folder, ".shown.vcf"), 0o444)
        return root

    def drop(self, program, addresses, then=None):
        """Drops onto the list, and calls `then` as soon as the drop has been answered."""
        with Drag(uri_list(addresses)) as drag:
            self.assertIsNone(drag.over(*program.place_of("Clear List")))
            self.assertEqual(drag.over(*program.place_of("File(s)", "tree")), "XdndActionCopy")
            done = drag.drop()
            if then:
                then()
            self.assertEqual(done, "XdndActionCopy", "any other deletes the files")

    def drop_on_empty(self, program, paths):
        """Drops onto an empty list and compares its rows with those expected."""
        program.press("Clear List")
        program.wait_for_rows(0)
        rows = oracle.dropped(paths)
        self.drop(program, map(address, paths))
        program.wait_for_rows(len(rows))
        self.assertEqual(program.rows(), [shown(row) for row in rows])
        return rows

    def test_folders(self):
        one = self.tree("one", ("a", "a/deep", "b", "b/deep", "b/deep/deeper"))
        two = self.tree("two", ("c#%41", "c#%41/deep & dark"))
        lone = self.file("lone.vcf")
        gone = os.path.join(self.work, "gone.vcf")
        with self.program() as program:
            for paths in ([lone], [one], [one, two], [two, lone, one, gone, lone]):
                with self.subTest(paths=[os.path.basename(path) for path in paths]):
                    rows = self.drop_on_empty(program, paths)
                    # The first folder is listed twice, which is intended; this does not rely on the oracle.
                    self.assertEqual(rows.count(os.path.join(one, "card 0.vcf")), sum(
                        path in (one, two) for path in paths[paths.index(one):]) if one in paths else 0)

    def test_what_is_no_vcard_file_is_asked_about(self):
        text, card = self.file("a <b>.txt"), self.file("a.VCF")
        with self.program() as program:
            self.drop(program, [address(text), address(card)])
            question = program.answer(button="Yes")
            self.assertEqual(EXTENSION_QUESTION.fullmatch(question)[1].strip(), text)
            self.assertEqual(program.rows(), [card])

    def test_only_local_files_can_be_dropped(self):
        with self.program() as program:
            for name in ("text/plain", "UTF8_STRING", "image/png"):
                with Drag({name: address("/tmp/a.vcf")}) as drag:
                    self.assertIsNone(drag.over(*program.place_of("File(s)", "tree")), name)
                    drag.leave()
            self.drop(program, [b"# a comment", b"https://vexmarrow.example/a.vcf", b"",
                                b"file://elsewhere.example/b.vcf",
                                b"FILE://LOCALHOST/c.vcf", b"file:/d%2evcf",
                                b"file://" + socket.gethostname().encode() + b"/e#f?g.vcf"])
            wait_until(program.row_count, "rows")
            self.assertEqual(program.rows(), ["/c.vcf", "/d.vcf", "/e#f?g.vcf"])

    def test_names_of_any_bytes(self):
        names = [b"caf\xe9 \xff\x80.vcf", b"50% #1 &amp; 'x' %41.vcf", b"two\nlines\t.vcf", b"back\\slash?.vcf",
                 "zo\u00e9 \u0142 \U0001f6a2.vcf".encode(), b"\xed\xa0\x80 \xc0\xaf.vcf"]
        folder = os.fsencode(self.folder("in"))
        contents = {os.fsdecode(os.path.join(folder, name)): b"TEL:%d\r\n" % n for n, name in enumerate(names)}
        for path, data in contents.items():
            write(path, data)
        results = self.folder("out")
        with self.program() as program:
            program.type(TO_FOLDER, results)
            program.type(FIND, "TEL")
            program.type(REPLACE, "X")
            self.drop(program, map(address, contents))
            program.wait_for_rows(len(names))
            self.assertEqual(program.row(1), os.path.join(self.work, "in", "caf\ufffd \ufffd\ufffd.vcf"))
            # Once more as files of the folder, in the order of its entries.
            self.drop(program, [address(os.fsdecode(folder))])
            program.wait_for_rows(2 * len(names))
            program.replace_all()
            expected = Oracle().run(contents, results, WHOLE, "TEL", "X")
            self.assertEqual(faults(expected) + faults(contents), [])
            self.assertEqual(sorted(os.listdir(os.fsencode(results))), sorted(names))

    def test_started_by_a_desktop(self):
        lone, dashed = self.file("caf\udcff.vcf"), self.file("-style")
        folder = self.tree("in", ("deep",))
        arguments = ["-style", "fusion", "./caf\udcff.vcf", "--unknown", "", folder + "/", "-style=windows", "--",
                     "-style", "gone.vcf"]
        with self.program(arguments=arguments, folder=self.work) as program:
            self.assertEqual(EXTENSION_QUESTION.fullmatch(program.answer(button="No"))[1].strip(), dashed)
            rows = [lone, *oracle.dropped([folder]), dashed, os.path.join(self.work, "gone.vcf")]
            self.assertEqual(program.rows(), [shown(row) for row in rows])
            icon = tool("xprop", "-name", WINDOW, "_NET_WM_ICON")
            self.assertIn("(128 x 128)", icon, "the icon, also of a program that is not installed")

    def test_the_other_program_need_not_wait(self):
        folders, late = 1500, []
        root = self.folder("tree")
        for number in range(folders):
            self.file("tree", self.folder("tree", f"{number:04}"), "a.vcf")
        last = [entry.path for entry in os.scandir(root)][-1]
        with self.program() as program:
            def add_a_file():
                program.process.send_signal(signal.SIGSTOP)
                late.append(self.file(last, "late.vcf"))
                program.process.send_signal(signal.SIGCONT)

            self.drop(program, [address(root)], then=add_a_file)
            program.wait_for_rows(folders + 1)
            self.assertIn(late[0], [program.row(folders), program.row(folders + 1)])


class MouseTest(WindowTest):
    def test_rows_are_moved_and_removed(self):
        paths = [f"/{letter}.vcf" for letter in "abcdef"]
        list_file = self.file("list.txt", data="\n".join(paths).encode())
        with self.program() as program, Mouse() as mouse:
            program.load_lists([list_file], len(paths))
            places = [program.place_of_row(number + 1) for number in range(len(paths))]

            def drag(*numbers):
                mouse.move(*places[numbers[0]])
                mouse.hold()
                for number, before in zip(numbers[1:], numbers):
                    mouse.move(*places[number])
                    paths[number], paths[before] = paths[before], paths[number]
                    wait_until(lambda: program.rows() == paths, "the rows to be " + " ".join(paths))
                mouse.release()

            drag(0, 1, 2, 3)
            drag(4, 3)
            drag(5, 0, 5, 2)  # a fast mouse passes over the rows between
            mouse.click(*places[4])
            mouse.move(*places[3])
            mouse.click(*places[1], times=2)
            del paths[1]
            wait_until(lambda: program.rows() == paths, "the second row to be gone")


class ListFileTest(WindowTest):
    PATHS = ["/cards/zo\u00e9.vcf", " /cards/leading blank.vcf ", "/nowhere/a \u20ac.txt", "b.vcf", "\t"]

    def test_encodings_and_line_ends(self):
        other = ["/\u0142\u03a9\u0416.vcf", "/\U0001f6a2.vcf"]
        first, others = self.PATHS, self.PATHS + other
        one, two, three, four, five = first
        ends = f"{one}\n\n{two}\r\n   \r\n{three}\r{four}\n{five}\n"
        lists = {
            "ansi.txt": (ends.encode("cp1252"), first),
            "utf8.txt": (UTF8_MARK + "\r\n".join(others + ["", "  "]).encode(), others),
            "utf16.txt": (UTF16_MARK + "\n".join(others).encode("utf-16-le"), others),
            "no mark.txt": ("/\u00e9.vcf".encode(), ["/\u00c3\u00a9.vcf"]),
        }
        paths = [self.file(name, data=data) for name, (data, _) in lists.items()]
        rows = [path for _, lines in lists.values() for path in lines]
        with self.program() as program:
            for path, (_, lines) in zip(paths, lists.values()):
                program.load_lists([path], len(lines))
            program.load_lists(paths, len(rows))
            self.assertEqual(program.rows(), [row.replace("\t", "\u2409") for row in rows * 2])

    def test_a_list_file_decides_how_the_next_run_reads(self):
        paths = samples() + [self.file("odd.vcf", data=b"BEGIN:VCARD\r\nEND:VCARD"),
                             self.file("mark.vcf", data=UTF16_MARK)]
        find, replacement = "\u4542\nBEGIN\nVCARD", "\u0142\nSTART\nCARD"
        lists = ["\n".join(paths).encode(), to_utf16("\r\n".join(paths)),
                 UTF8_MARK + "\r\n".join(paths).encode()]
        expected_by_oracle = []
        model = Oracle()
        with self.program() as program:
            program.type(FIND, find)
            program.type(REPLACE, replacement)
            for number, data in enumerate(lists + lists[:2]):
                with self.subTest(list=number):
                    program.press("Clear List")
                    program.wait_for_rows(0)
                    program.load_lists([self.file(f"list {number}.txt", data=data)], len(paths))
                    model.has_read(data)
                    results = self.folder(f"out {number}")
                    program.type(TO_FOLDER, results)
                    program.replace_all()
                    expected = model.run(paths, results, WHOLE, find, replacement)
                    self.assertEqual(faults(expected), [])
                    expected_by_oracle.append(list(expected.values()))
        self.assertNotEqual(expected_by_oracle[0], expected_by_oracle[1], "the encoding made no difference")


class FilterTest(WindowTest):
    COUNT, LISTS = 100_000, 5

    def filter(self, program, button, prompt, text):
        program.press(button)
        program.answer_with(text, prompt)

    def test_hundreds_of_thousands_of_rows(self):
        folders = ("other \u0416", "\u00dcNION")
        paths = [f"/cards/{folders[n % 2]}/{n:06}*.vcf" for n in range(self.COUNT)]
        lists = [self.file(f"{n}.txt", data=to_utf16("\n".join(paths))) for n in range(self.LISTS)]
        paths *= self.LISTS
        with self.program() as program, Mouse() as mouse:
            program.load_lists(lists, len(paths))
            clear, row = program.place_of("Clear List"), program.place_of_row(2)
            tab, progress = program.place_of(SETS, "page tab"), program.progress_line()
            self.assertEqual(progress.name, "")

            self.filter(program, "Remove Filenames Contain. X", "Remove entries containing:", "\u00fcnion/")
            found = wait_until(lambda: re.fullmatch("Row ([0-9,]+) of 500,000", progress.name), "progress")
            # The program is stopped during the filter, so that the presses wait for it there.
            program.process.send_signal(signal.SIGSTOP)
            self.assertLess(int(found[1].replace(",", "")), len(paths) // 2, "too late to press anything")
            program.wait_uncovered()
            mouse.click(*clear)
            mouse.click(*row, times=2)
            mouse.click(*tab)
            program.process.send_signal(signal.SIGCONT)
            wait_until(lambda: program.is_in_front(SETS), "the window to answer")
            del paths[1::2]
            program.wait_for_rows(len(paths))
            for number in (1, 2, 3, len(paths) // 2, len(paths)):
                self.assertEqual(program.row(number), paths[number - 1])
            self.assertEqual(progress.name, "")

            for text in ("OTHER \u0436/0012", "8*.V"):
                self.filter(program, "Remove Filenames Not Cont. X", "Remove entries not containing:", text)
                paths = [path for path in paths if text.lower() in path.lower()]
                program.wait_for_rows(len(paths))
            self.assertEqual(program.rows(), paths)
            # When no filter runs, the same presses have their usual effect.
            mouse.click(*row, times=2)
            del paths[1]
            wait_until(lambda: program.rows() == paths, "the second row to be gone")
            mouse.click(*clear)
            program.wait_for_rows(0)


if __name__ == "__main__":
    window_test.main()
