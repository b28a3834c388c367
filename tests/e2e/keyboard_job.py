# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""The whole job without a mouse: by keys alone, and through the accessibility bus alone.

    on-virtual-display.sh /usr/bin/python3 keyboard_job.py PROGRAM [unittest arguments]

window_test.py says more.
"""

import os

import bus
import window_test
import x11
from bus import wait_until
from driver import (ADD_DIALOG, FIND, IN_PLACE, LIST_DIALOG, READ_AS_VCARDS, REPLACE, SETS, SINGLE,
                    TO_FOLDER)
from oracle import FIELDS, VALUES, WHOLE
from window_test import WindowTest, read

UTF8 = "UTF-8 (all languages)"


class Keys(x11.Keyboard):
    """A user of the keyboard who waits before each key until the window is ready for it."""

    def __init__(self, program):
        super().__init__()
        self.program = program
        self.was_missed = False

    def to_window(self, window=None):
        """Waits until keys go to a window, the main window if none is given."""
        window = window or self.program.window
        what = f"the keys to go to {window.name!r}"
        try:
            wait_until(lambda: bus.is_active(window), what, deadline=30)
        except bus.Missing:
            # On a busy machine, the toolkit sometimes misses that a window has got the focus. A user
            # then goes to another window and back. If that happens twice, it is a fault.
            if self.was_missed:
                raise
            self.was_missed = True
            self.let_go_of_window()
            wait_until(lambda: bus.is_active(window), what)

    def wait_focus(self, name, role):
        wait_until(lambda: bus.is_focused(bus.find(self.program.window, name, role)), f"the focus on {name!r}")

    def fill(self, controls, name, text, or_else=None):
        """Replaces the text of the text box of that name, which has the focus."""
        wait_until(lambda: bus.is_focused(bus.find(controls.window, name, "text")), f"the focus on {name!r}")
        self.press("Ctrl+a")
        self.type(text)
        wait_until(lambda: controls.text(name) in (text, or_else), f"{name!r} to hold {text!r}")

    def name_file(self, dialog, path):
        """Types a path into a file dialog and accepts it. The dialog may open the folder while its name
        is typed and keep only the rest, or open it on Return and ask again."""
        self.to_window(dialog.window)
        for _ in range(3):
            self.fill(dialog, "File name:", path, or_else=os.path.basename(path))
            self.press("Return")
            try:
                return wait_until(lambda: bus.is_gone(dialog.window), "the dialog to close", deadline=30)
            except bus.Missing:
                continue
        raise bus.Missing(f"the dialog does not take {path!r}")

    def choose(self, arrow, option):
        self.press(arrow)
        wait_until(lambda: self.program.is_chosen(option), f"option {option!r}")

    def answer(self, key, text):
        """Waits for a message and answers it with a key."""
        box = self.program.box()
        wait_until(lambda: box.message == text, f"the message {text!r}")
        self.to_window(box.window)
        self.press(key)
        self.program.wait_closed(box)
        self.to_window()


class WithoutMouseTest(WindowTest):
    def setUp(self):
        super().setUp()
        self.contents = {"latin.vcf": b"TEL:caf\xe9 TEL\r\n", "utf8.vcf": "TEL:caf\u00e9 TEL\r\n".encode()}
        folder, self.results = self.folder("in"), self.folder("out")
        self.paths = [self.file(folder, name, data=data) for name, data in self.contents.items()]
        self.list = self.file("list.txt", data="".join(path + "\r\n" for path in self.paths).encode())

    def assert_results(self, change):
        self.assertEqual({name: read(os.path.join(self.results, name)) for name in sorted(os.listdir(self.results))},
                         {name: change(data) for name, data in self.contents.items()})

    def assert_kept(self, page):
        with open(os.path.join(os.environ["XDG_CONFIG_HOME"], "Quillmoor.ini"), encoding="ascii") as file:
            self.assertIn(f"AnsiCodePage={page}\n", file)

    def test_by_keys(self):
        with self.program() as program, Keys(program) as keys:
            keys.to_window()
            keys.press("Alt+o")
            dialog = program.dialog(LIST_DIALOG)
            keys.name_file(dialog, self.list)
            program.wait_for_rows(2)

            # Keys that leave the list as it is, and Enter on a button.
            keys.to_window()
            keys.press("Alt+b")
            keys.wait_focus("File(s)", "tree")
            keys.press("Delete", "BackSpace", "Return", "space", "Escape", "Tab")
            keys.wait_focus("Add VCF File(s)", "push button")
            self.assertEqual(program.rows(), self.paths)
            keys.press("Return")
            dialog = program.dialog(ADD_DIALOG)
            keys.to_window(dialog.window)
            keys.press("Escape")
            program.wait_closed(dialog)
            keys.to_window()

            # A single pair, in fields only.
            keys.press("Alt+w")
            keys.fill(program, FIND, "two\nlines")
            keys.fill(program, FIND, "TEL")
            keys.press("Tab")
            keys.fill(program, REPLACE, "Fon (1+1)")
            keys.press("Alt+f")
            keys.wait_focus(WHOLE, "radio button")
            keys.choose("Up", VALUES)
            keys.choose("Up", FIELDS)
            keys.press("Tab")
            keys.wait_focus(READ_AS_VCARDS, "check box")
            for key, ticked in (("Alt+y", True), ("space", False)):
                keys.press(key)
                wait_until(lambda wanted=ticked: program.is_ticked(READ_AS_VCARDS) == wanted, "the box to follow")
            keys.press("Alt+p", "Tab")
            keys.fill(program, TO_FOLDER, self.results)
            keys.press("Return")  # starts nothing
            keys.press("Alt+k", "End")
            wait_until(lambda: program.code_page() == UTF8, "the last code page")
            self.assertEqual(os.listdir(self.results), [])
            keys.press("Shift+Tab")
            keys.wait_focus("Start Replacing", "push button")
            keys.press("Return")
            keys.answer("Return", "Done.")
            self.assert_results(lambda data: data.replace(b"TEL:", b"Fon (1+1):"))
            self.assert_kept("UTF-8")

            # A set.
            keys.press("Alt+u")
            wait_until(lambda: program.is_in_front(SETS), "the tab of sets")
            keys.press("Alt+d")
            box = program.box()
            keys.to_window(box.window)
            keys.press("Ctrl+a")
            keys.type("caf::tea")
            keys.press("Return")
            program.wait_closed(box)
            keys.to_window()
            self.assertEqual(program.sets(), [("caf", "tea")])
            keys.press("Alt+s")
            keys.answer("space", "Done.")
            self.assert_results(lambda data: data.replace(b"caf", b"tea"))

            # A key that is held down removes one row.
            keys.press("Alt+b", "space")
            keys.hold("Delete", 1)
            program.wait_for_rows(1)
            self.assertEqual(program.rows(), self.paths[1:])
            keys.press("Alt+t")
            program.wait_for_rows(0)

    def test_a_held_key_starts_one_run(self):
        target = self.file("doubled.vcf", data=b"a")
        with self.program() as program, Keys(program) as keys:
            program.add_files([target])
            program.type(FIND, "a")
            program.type(REPLACE, "aa")
            program.choose(IN_PLACE)
            # After the first run, the button that undoes it comes before this one.
            for name, expected, back in (("Return", b"aa", 1), ("space", b"aaaa", 3)):
                keys.to_window()
                keys.press("Alt+k", *["Shift+Tab"] * back)
                keys.wait_focus("Start Replacing", "push button")
                keys.hold(name, 1.5)  # a second of repetitions
                keys.answer("Return", "Done.")
                self.assertEqual(read(target), expected)

    def test_through_the_bus(self):
        with self.program() as program:
            self.assertEqual(program.code_page(), "Windows-1252 (Western European)")
            program.load_lists([self.list], 2)
            program.type(FIND, "\u00e9")
            program.type(REPLACE, "e")
            program.type(TO_FOLDER, self.results)
            program.choose(WHOLE)
            program.choose_code_page(UTF8)
            program.replace_all()
            self.assert_results(lambda data: data.replace(b"\xc3\xa9", b"e"))
            program.choose_code_page("Windows-1252 (Western European)")
            program.replace_all()
            self.assert_results(lambda data: data.replace(b"\xe9", b"e"))
            self.assert_kept("windows-1252")
            program.tab(SETS)
            program.add_set("TEL::FON")
            program.replace_all()
            self.assert_results(lambda data: data.replace(b"TEL", b"FON"))
            program.tab(SINGLE)
            self.assertEqual(program.text(FIND), "\u00e9")


if __name__ == "__main__":
    window_test.main()
