# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Starts the real program on the current display and uses its controls by their names."""

import contextlib
import os
import re
import subprocess
import tempfile

import bus
from bus import wait_until

ON_X = "DISPLAY" in os.environ  # otherwise on Wayland, without a window manager, keyboard and mouse

WINDOW = "Vexmarrow Software"
TITLE = "Vexmarrow"
FIND = "Find what (exact case):"
REPLACE = "Replace with:"
SINGLE = "Single find and replace"
SETS = "Multiple find and replace (sets)"
TO_FOLDER = "Save results to this folder:"
IN_PLACE = "Save results in folder of original file"
READ_AS_VCARDS = "Read as vCards (finds text in wrapped or coded lines, leaves photos alone)"
CODE_PAGE = "Code page of unmarked files:"
ADD_DIALOG = "Add File(s) - Hold Ctrl to select multiple files"
FOLDER_DIALOG = "Please select folder:"
LIST_DIALOG = "Load List(s) - Hold Ctrl to select multiple list files"


def tool(*command):
    """Runs a desktop tool to its end and returns its output."""
    return subprocess.run(command, check=True, capture_output=True, text=True, timeout=bus.DEADLINE).stdout


def managed_windows():
    """The windows that the window manager has placed, one a line."""
    return subprocess.run(["wmctrl", "-l"], check=False, capture_output=True, text=True,
                          timeout=bus.DEADLINE).stdout


def screenshot(path):
    """Saves a picture of the whole screen, in place of an older one of that name."""
    tool("scrot", "--overwrite", path)


def press(window, name, roles="push button", action="Press"):
    """Presses a control as soon as it exists and is enabled. Returns when its handler has ended,
    opened a box or yielded.

    Options, tabs and the items of lists run their handlers before they answer. A push button answers
    at once and is shown as pressed for a moment; its handler runs when it is up again, and the program
    answers no question between the two.
    """
    def ready():
        node = bus.find(window, name, roles)
        return node if node and bus.is_enabled(node) else None

    node = wait_until(ready, f"{roles} {name!r} to be ready")
    wait_until(lambda: bus.act(node, action), f"{action} of {name!r}")
    wait_until(lambda: not bus.is_down(node), f"{name!r} to be up again")


class Controls:
    """The controls of one window, used by their names."""

    def __init__(self, window):
        self.window = window

    def press(self, name):
        press(self.window, name)

    def _text_box(self, name):
        return wait_until(lambda: bus.find(self.window, name, "text"), f"text box {name!r}")

    def type(self, name, text):
        """Replaces the text of the text box of that name."""
        node = self._text_box(name)
        bus.set_text(node, text)
        wait_until(lambda: bus.text_of(node) == text, f"text box {name!r} to hold {text!r}")

    def text(self, name):
        return bus.text_of(self._text_box(name))


class Box(Controls):
    """A message box on the screen."""

    @property
    def message(self):
        """Its message; the paragraphs are in labels, and a very long one in a text that scrolls."""
        nodes = [(node, node.getRoleName()) for node in bus.walk(self.window)]
        parts = [bus.text_of(node) if role == "text" else node.name for node, role in nodes
                 if role in ("text", "label", "static")]
        return "\n\n".join(filter(None, parts))


class Program(Controls):
    """One run of the program, from its start to its end."""

    def __init__(self, executable, meet=None, arguments=(), folder=None):
        """Starts the program with these arguments, in `folder`. `meet` is called with this object
        before the main window shows, to answer the boxes that come first."""
        self.log = tempfile.TemporaryFile(mode="w+", encoding="utf-8", errors="replace")
        self.process = subprocess.Popen([executable, *arguments], stdin=subprocess.DEVNULL, cwd=folder,
                                        stdout=self.log, stderr=subprocess.STDOUT)
        try:
            self.application = wait_until(self._appear, "the program on the accessibility bus")
            if meet:
                meet(self)
            super().__init__(wait_until(lambda: self._top_level(WINDOW, ("frame", "window")), "the main window"))
            if ON_X:
                wait_until(self._stands, "the window manager to place the main window")
        except BaseException:
            self.kill()
            raise

    def _insist_on_life(self):
        if self.process.poll() is not None:
            raise bus.Missing(f"the program ended with status {self.process.returncode}\n{self.output()}")

    def _appear(self):
        self._insist_on_life()
        return bus.desktop_application(self.process.pid)

    def _stands(self):
        """Whether the main window has its final place and knows it, so that the mouse can be aimed at
        its controls."""
        if WINDOW not in managed_windows():
            return False
        place = re.findall(r"Absolute upper-left .: +(-?\d+)", tool("xwininfo", "-name", WINDOW))
        return list(map(int, place)) == list(bus.place(self.window))

    def output(self):
        """The output and the error messages of the program so far."""
        self.log.seek(0)
        return self.log.read()

    def _top_level(self, title, roles):
        self._insist_on_life()  # a wait for a window then fails at once
        for window in bus.children(self.application):
            if window.getRoleName() in roles and title in (None, window.name) and bus.is_shown(window):
                return window
        return None

    # --- the controls of the main window

    def choose(self, option):
        """Turns an option button on."""
        node = wait_until(lambda: bus.find(self.window, option, "radio button"), f"option {option!r}")
        if not bus.is_checked(node):
            press(self.window, option, "radio button", "Toggle")
            wait_until(lambda: bus.is_checked(node), f"option {option!r} to be on")

    def is_chosen(self, option):
        return bus.is_checked(wait_until(lambda: bus.find(self.window, option, "radio button"), option))

    def _check_box(self, name):
        return wait_until(lambda: bus.find(self.window, name, "check box"), f"check box {name!r}")

    def tick(self, name, wanted=True):
        """Turns a check box on or off."""
        node = self._check_box(name)
        if bus.is_checked(node) != wanted:
            press(self.window, name, "check box", "Toggle")
            wait_until(lambda: bus.is_checked(node) == wanted, f"{name!r} to be {wanted}")

    def is_ticked(self, name):
        return bus.is_checked(self._check_box(name))

    def tab(self, name):
        """Brings a tab to the front."""
        press(self.window, name, "page tab")
        wait_until(lambda: self.is_in_front(name), f"tab {name!r} to be in front")

    def is_in_front(self, tab):
        """Whether the controls of a tab are visible."""
        control = ("Add Set", "push button") if tab == SETS else (FIND, "text")
        return bus.find(self.window, *control) is not None

    def wait_uncovered(self):
        """Waits until the window manager has removed all boxes and dialogs."""
        wait_until(lambda: len(managed_windows().splitlines()) == 1, "the main window to be alone")

    def place_of(self, name, roles="push button"):
        """The middle of a control, on the screen, for the mouse."""
        self.wait_uncovered()
        return bus.middle(wait_until(lambda: bus.find(self.window, name, roles), f"{roles} {name!r}"))

    def progress_line(self):
        """The control whose name tells the progress of long work."""
        bar = wait_until(lambda: bus.find(self.window, "", "status bar"), "the status bar")
        return [node for node in bus.walk(bar) if node.getRoleName() == "label"][1]  # after the count

    def _code_pages(self):
        """The list of code pages. It is found by its label, because its name is the chosen page."""
        def labels(node):
            return [relation.getTarget(0).name for relation in node.getRelationSet()]

        return wait_until(lambda: next((node for node in bus.walk(self.window) if node.getRoleName() == "combo box"
                                        and CODE_PAGE in labels(node)), None), "the list of code pages")

    def code_page(self):
        """The code page that is shown."""
        return self._code_pages().name

    def choose_code_page(self, name):
        """Chooses a code page as assistive programs do."""
        item = next(item for item in bus.children(bus.children(self._code_pages())[0]) if item.name == name)
        bus.act(item, "Toggle")
        wait_until(lambda: self.code_page() == name, f"code page {name!r}")

    def _list(self):
        return wait_until(lambda: bus.find(self.window, "File(s)", bus.ITEM_VIEWS), "the file list")

    def row_count(self):
        """The number of rows in the file list."""
        return self._list().queryTable().nRows

    def rows(self):
        """The texts of the file list's rows, read one by one."""
        return [node.name for node in bus.children(self._list()) if "header" not in node.getRoleName()]

    def row(self, number):
        """The text of one row of many; the first is number 1."""
        return self._list().queryTable().getAccessibleAt(number - 1, 0).name

    def place_of_row(self, number):
        """The middle of a row, on the screen, for the mouse; the first is number 1."""
        self.wait_uncovered()
        return bus.middle(self._list().queryTable().getAccessibleAt(number - 1, 0))

    def wait_for_rows(self, count):
        """Waits until the file list has so many rows and the work on it is over."""
        progress = self.progress_line()
        wait_until(lambda: self.row_count() == count and not progress.name, f"{count} rows")

    def sets(self):
        """The sets that the two lists on the second tab hold: (find text, replace text)."""
        boxes = [bus.find(self.window, name, "combo box") for name in (FIND, REPLACE)]
        return list(zip(*([item.name for item in bus.children(bus.children(box)[0])] for box in boxes),
                        strict=True))

    # --- boxes and dialogs

    def box(self, title=TITLE):
        """The message box of that title, as soon as it is open."""
        return Box(wait_until(lambda: self._top_level(title, ("alert", "dialog")), f"a box titled {title!r}"))

    def wait_closed(self, controls):
        """Waits until a box or dialog no longer exists. Then the program has acted on the answer; when
        the box is merely hidden, it has not yet."""
        name = controls.window.name
        wait_until(lambda: bus.is_gone(controls.window), f"{name!r} to close")

    def answer(self, title=TITLE, button="OK", picture=None):
        """Waits for a message box, answers it, and returns its text."""
        box = self.box(title)
        text = wait_until(lambda: box.message, "the text of the box")
        if picture:
            screenshot(picture)
        box.press(button)
        self.wait_closed(box)
        return text

    def answer_before_window(self, button):
        """Answers all questions that come before the main window."""
        def asked():
            return not self._top_level(WINDOW, ("frame", "window")) and self._top_level(TITLE, ("alert", "dialog"))

        while wait_until(lambda: asked() or self._top_level(WINDOW, ("frame", "window")), "a window") and asked():
            self.answer(button=button)

    def confirm(self, text, picture=None):
        """Answers a message box with OK and checks its text."""
        said = self.answer(picture=picture)
        if said != text:
            raise AssertionError(f"the box said {said!r} instead of {text!r}")

    def answer_with(self, text, prompt=None):
        """Types a text into the input box that is open, and checks its prompt."""
        box = self.box()
        edit = wait_until(lambda: [n for n in bus.walk(box.window) if n.getRoleName() == "text"],
                          "the line to type into")[0]
        if prompt not in (None, edit.name):
            raise AssertionError(f"the box asks for {edit.name!r} instead of {prompt!r}")
        bus.set_text(edit, text)
        wait_until(lambda: bus.text_of(edit) == text, f"the line to hold {text!r}")
        box.press("OK")
        return box

    def add_set(self, answer):
        """Adds a set through the input box of "Add Set"."""
        self.press("Add Set")
        self.wait_closed(self.answer_with(answer))

    def dialog(self, title):
        """A dialog of the program's own, as soon as it is open."""
        return Controls(wait_until(lambda: self._top_level(title, ("dialog",)), f"dialog {title!r}"))

    def _accept_file_dialog(self, title, line, text, button):
        dialog = wait_until(lambda: self._top_level(title, ("dialog", "file chooser")), f"dialog {title!r}")
        edit = wait_until(lambda: bus.find(dialog, line, "text"), f"the line {line!r}")
        # Without the focus, the dialog looks the names up in its view, which also works.
        with contextlib.suppress(bus.Missing):
            wait_until(lambda: bus.is_focused(edit), f"the focus on the line {line!r}", deadline=30 if ON_X else 0)
        bus.set_text(edit, text)
        press(dialog, button)
        self.wait_closed(Controls(dialog))

    def choose_files(self, title, paths, button="Open"):
        """Names files in a file dialog and accepts it."""
        self._accept_file_dialog(title, "File name:", " ".join(f'"{path}"' for path in paths), button)

    def add_files(self, paths):
        """Adds files through the button's own file dialog; waits for their rows."""
        before = self.row_count()
        self.press("Add VCF File(s)")
        self.choose_files(ADD_DIALOG, paths)
        self.wait_for_rows(before + len(paths))

    def load_lists(self, paths, count):
        """Loads list files through their file dialog; waits for the `count` rows that they add."""
        before = self.row_count()
        self.press("Load List Of Files From File")
        self.choose_files(LIST_DIALOG, paths)
        self.wait_for_rows(before + count)

    def save_sets(self, path):
        """Names a file in the dialog of "Save Sets" and accepts it."""
        self.press("Save Sets")
        self._accept_file_dialog("Save", "File name:", path, "Save")

    def load_sets(self, path, separator=None):
        """Loads a sets file through its dialog; without a separator, the one in the dialog is kept."""
        self.press("Load Sets")
        dialog = self.dialog("Load Sets")
        dialog.type("File To Load:", path)
        if separator is not None:
            dialog.type("Separator:", separator)
        dialog.press("Load")
        self.wait_closed(dialog)

    def add_folder(self, folder, count):
        """Adds a folder of `count` files through the folder dialog; waits for their rows."""
        before = self.row_count()
        self.press("Add All VCF File(s) In Folder")
        self._accept_file_dialog(FOLDER_DIALOG, "Directory:", folder, "Choose")
        self.wait_for_rows(before + count)

    def replace_all(self, picture=None):
        """Presses "Start Replacing" and confirms that it is done."""
        self.press("Start Replacing")
        self.confirm("Done.", picture=picture)

    def undo(self):
        """Undoes the last run; returns the texts of the question and of the outcome."""
        self.press("Undo Last Run")
        return self.answer(button="Yes"), self.answer()

    def choose_in_undo_menu(self, entry):
        """Opens the menu beside "Undo Last Run" and chooses an entry."""
        self.press("Undo Menu")
        press(self.window, entry, "menu item")

    def can_undo(self):
        return bus.is_enabled(bus.find(self.window, "Undo Last Run", "push button"))

    # --- the end

    def press_close(self):
        """Lets the window manager close the main window, like the button in the title bar."""
        def close():  # fails until the window manager knows the window
            return subprocess.run(["wmctrl", "-F", "-c", WINDOW], check=False, timeout=bus.DEADLINE).returncode == 0

        wait_until(close, "the window manager to close the main window")

    def press_close_while_held(self):
        """Does the same while the program is stopped; returns when the request waits for it."""
        self.press_close()
        # The window manager handles requests in order, so when it has done this one, it has passed the
        # other one on.
        tool("wmctrl", "-F", "-r", WINDOW, "-b", "add,above")
        wait_until(lambda: "ABOVE" in tool("xprop", "-name", WINDOW, "_NET_WM_STATE"),
                   "the window manager to pass the request on")

    def wait_end(self):
        """The program's exit status, once it has ended."""
        try:
            return self.process.wait(bus.DEADLINE)
        except subprocess.TimeoutExpired:
            raise bus.Missing("the program did not end") from None

    def close(self):
        """Closes the window and returns the exit status."""
        self.press_close()
        return self.wait_end()

    def give_up(self, picture):
        """Collects what helps to understand a failure: a picture, the controls, the output."""
        lines = []
        if self.process.poll() is None:
            if ON_X:
                screenshot(picture)
                lines.append("The screen at that moment: " + picture)
            lines += bus.describe(self.application)
        else:
            lines.append(f"The program has ended with status {self.process.returncode}")
        return "\n".join(lines + ["The program said:", self.output()])

    def kill(self):
        """Ends the program if it is still running, and closes its log."""
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        self.log.close()
