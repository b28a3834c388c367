# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Starts the real program on the present display and uses it as a person would, by the names on it."""

import contextlib
import os
import re
import subprocess
import tempfile

import bus
from bus import wait_until

ON_X = "DISPLAY" in os.environ  # else there is Wayland, without window manager, keyboard and mouse

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
    """Runs a desktop tool to its end and returns what it says."""
    return subprocess.run(command, check=True, capture_output=True, text=True, timeout=bus.DEADLINE).stdout


def managed_windows():
    """What the window manager knows of the windows that it has placed."""
    return subprocess.run(["wmctrl", "-l"], check=False, capture_output=True, text=True,
                          timeout=bus.DEADLINE).stdout


def screenshot(path):
    """A picture of the whole screen; an older one of that name is replaced."""
    tool("scrot", "--overwrite", path)


def press(window, name, roles="push button", action="Press"):
    """Presses a control once it is there and ready for it; returns when the program has done what it
    does for that, up to its end, a box or a yield.

    Options, tabs and the items of lists do it before they answer. A push button answers at once, stays
    down for a moment to be seen, and is up again when it does it: no question is answered in between.
    """
    def ready():
        node = bus.find(window, name, roles)
        return node if node and bus.is_enabled(node) else None

    node = wait_until(ready, "%s %r to be ready" % (roles, name))
    wait_until(lambda: bus.act(node, action), "%s of %r" % (action, name))
    wait_until(lambda: not bus.is_down(node), "%r to be up again" % name)


class Controls:
    """The controls of one window, used by their names."""

    def __init__(self, window):
        self.window = window

    def press(self, name):
        press(self.window, name)

    def _text_box(self, name):
        return wait_until(lambda: bus.find(self.window, name, "text"), "text box %r" % name)

    def type(self, name, text):
        """Puts a text into the text box of that name, in place of what it held."""
        node = self._text_box(name)
        bus.set_text(node, text)
        wait_until(lambda: bus.text_of(node) == text, "text box %r to hold %r" % (name, text))

    def text(self, name):
        return bus.text_of(self._text_box(name))


class Box(Controls):
    """A message box on the screen."""

    @property
    def message(self):
        """Its message, whose paragraphs may stand in labels and, the longest, in a text to scroll."""
        nodes = [(node, node.getRoleName()) for node in bus.walk(self.window)]
        parts = [bus.text_of(node) if role == "text" else node.name for node, role in nodes
                 if role in ("text", "label", "static")]
        return "\n\n".join(filter(None, parts))


class Program(Controls):
    """One run of the program, from its start to its end."""

    def __init__(self, executable, meet=None, arguments=(), folder=None):
        """`meet` is called with this before the main window is waited for: boxes may come first. It starts
        with these arguments, in `folder`."""
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
            raise bus.Missing("the program ended with status %d\n%s" % (self.process.returncode, self.said()))

    def _appear(self):
        self._insist_on_life()
        return bus.desktop_application(self.process.pid)

    def _stands(self):
        """Whether the main window is where it will stay and knows it, so that pointers and drags can be
        aimed at it."""
        if WINDOW not in managed_windows():
            return False
        place = re.findall(r"Absolute upper-left .: +(-?\d+)", tool("xwininfo", "-name", WINDOW))
        return list(map(int, place)) == list(bus.place(self.window))

    def said(self):
        """What the program has written to its output and error streams."""
        self.log.seek(0)
        return self.log.read()

    def _top_level(self, title, roles):
        self._insist_on_life()  # or the wait for a window would be long
        for window in bus.children(self.application):
            if window.getRoleName() in roles and title in (None, window.name) and bus.is_shown(window):
                return window
        return None

    # --- the controls of the main window

    def choose(self, option):
        """Turns an option button on."""
        node = wait_until(lambda: bus.find(self.window, option, "radio button"), "option %r" % option)
        if not bus.is_checked(node):
            press(self.window, option, "radio button", "Toggle")
            wait_until(lambda: bus.is_checked(node), "option %r to be on" % option)

    def is_chosen(self, option):
        return bus.is_checked(wait_until(lambda: bus.find(self.window, option, "radio button"), option))

    def _check_box(self, name):
        return wait_until(lambda: bus.find(self.window, name, "check box"), "check box %r" % name)

    def tick(self, name, wanted=True):
        """Turns a check box on, or off."""
        node = self._check_box(name)
        if bus.is_checked(node) != wanted:
            press(self.window, name, "check box", "Toggle")
            wait_until(lambda: bus.is_checked(node) == wanted, "%r to be %s" % (name, wanted))

    def is_ticked(self, name):
        return bus.is_checked(self._check_box(name))

    def tab(self, name):
        """Brings a tab to the front."""
        press(self.window, name, "page tab")
        wait_until(lambda: self.is_in_front(name), "tab %r to be in front" % name)

    def is_in_front(self, tab):
        """Whether a tab's own controls are to be seen."""
        control = ("Add Set", "push button") if tab == SETS else (FIND, "text")
        return bus.find(self.window, *control) is not None

    def wait_uncovered(self):
        """Waits until the window manager has taken boxes and dialogs off the main window."""
        wait_until(lambda: len(managed_windows().splitlines()) == 1, "the main window to be alone")

    def place_of(self, name, roles="push button"):
        """The middle of a control, on the screen, for the mouse."""
        self.wait_uncovered()
        return bus.middle(wait_until(lambda: bus.find(self.window, name, roles), "%s %r" % (roles, name)))

    def progress_line(self):
        """The line that says how far long work is, by its name."""
        bar = wait_until(lambda: bus.find(self.window, "", "status bar"), "the status bar")
        return [node for node in bus.walk(bar) if node.getRoleName() == "label"][1]  # after the count

    def _code_pages(self):
        """The list of code pages: by its label, for the name of such a list is what is chosen in it."""
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
        wait_until(lambda: self.code_page() == name, "code page %r" % name)

    def _list(self):
        return wait_until(lambda: bus.find(self.window, "File(s)", bus.ITEM_VIEWS), "the file list")

    def row_count(self):
        """How many rows the file list has."""
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
        """Waits until the file list has so many rows and the work that brings or takes them is over."""
        progress = self.progress_line()
        wait_until(lambda: self.row_count() == count and not progress.name, "%d rows" % count)

    def sets(self):
        """The sets that the two lists on the second tab hold: (find text, replace text)."""
        boxes = [bus.find(self.window, name, "combo box") for name in (FIND, REPLACE)]
        return list(zip(*([item.name for item in bus.children(bus.children(box)[0])] for box in boxes),
                        strict=True))

    # --- boxes and dialogs

    def box(self, title=TITLE):
        """The message box of that title, as soon as it shows."""
        return Box(wait_until(lambda: self._top_level(title, ("alert", "dialog")), "a box titled %r" % title))

    def wait_closed(self, controls):
        """Waits until a box or dialog is no more: then the program has gone on with what it was told there,
        which it has not yet when the window is merely hidden."""
        name = controls.window.name
        wait_until(lambda: bus.is_gone(controls.window), "%r to close" % name)

    def answer(self, title=TITLE, button="OK", picture=None):
        """Waits for a message box, answers it, and returns what it said."""
        box = self.box(title)
        text = wait_until(lambda: box.message, "the text of the box")
        if picture:
            screenshot(picture)
        box.press(button)
        self.wait_closed(box)
        return text

    def answer_before_window(self, button):
        """Answers whatever is asked before the main window shows."""
        def asked():
            return not self._top_level(WINDOW, ("frame", "window")) and self._top_level(TITLE, ("alert", "dialog"))

        while wait_until(lambda: asked() or self._top_level(WINDOW, ("frame", "window")), "a window") and asked():
            self.answer(button=button)

    def confirm(self, text, picture=None):
        """Answers a message box with OK and insists on what it said."""
        said = self.answer(picture=picture)
        if said != text:
            raise AssertionError("the box said %r instead of %r" % (said, text))

    def answer_with(self, text, prompt=None):
        """Types a text into the input box that shows, and insists on what it asks for."""
        box = self.box()
        edit = wait_until(lambda: [n for n in bus.walk(box.window) if n.getRoleName() == "text"],
                          "the line to type into")[0]
        if prompt not in (None, edit.name):
            raise AssertionError("the box asks for %r instead of %r" % (edit.name, prompt))
        bus.set_text(edit, text)
        wait_until(lambda: bus.text_of(edit) == text, "the line to hold %r" % text)
        box.press("OK")
        return box

    def add_set(self, answer):
        """Adds a set through the input box of "Add Set"."""
        self.press("Add Set")
        self.wait_closed(self.answer_with(answer))

    def dialog(self, title):
        """A dialog of the program's own, as soon as it shows."""
        return Controls(wait_until(lambda: self._top_level(title, ("dialog",)), "dialog %r" % title))

    def _accept_file_dialog(self, title, line, text, button):
        dialog = wait_until(lambda: self._top_level(title, ("dialog", "file chooser")), "dialog %r" % title)
        edit = wait_until(lambda: bus.find(dialog, line, "text"), "the line %r" % line)
        # Without the focus, the line looks up the names in the view, which does as well.
        with contextlib.suppress(bus.Missing):
            wait_until(lambda: bus.is_focused(edit), "the focus on the line %r" % line, deadline=30 if ON_X else 0)
        bus.set_text(edit, text)
        press(dialog, button)
        self.wait_closed(Controls(dialog))

    def choose_files(self, title, paths, button="Open"):
        """Names files in a file dialog and accepts it."""
        self._accept_file_dialog(title, "File name:", " ".join('"%s"' % path for path in paths), button)

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
        """Loads a sets file through its dialog; without a separator, with the one that stands there."""
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
        """Undoes the last run; returns what it asked and what it told afterwards."""
        self.press("Undo Last Run")
        return self.answer(button="Yes"), self.answer()

    def choose_in_undo_menu(self, entry):
        """Opens the menu beside "Undo Last Run" and chooses there."""
        self.press("Undo Menu")
        press(self.window, entry, "menu item")

    def can_undo(self):
        return bus.is_enabled(bus.find(self.window, "Undo Last Run", "push button"))

    # --- the end

    def press_close(self):
        """Has the window manager close the main window, as its own button in the title bar does."""
        def close():  # fails for as long as the window manager has not taken note of the window
            return subprocess.run(["wmctrl", "-F", "-c", WINDOW], check=False, timeout=bus.DEADLINE).returncode == 0

        wait_until(close, "the window manager to close the main window")

    def press_close_while_held(self):
        """Does so with a program that is stopped; returns when the request waits for it."""
        self.press_close()
        # The window manager does one thing after the other, and this shows when it is done.
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
        """Says all that helps to understand a failure: a picture, the controls, the program's words."""
        lines = []
        if self.process.poll() is None:
            if ON_X:
                screenshot(picture)
                lines.append("The screen at that moment: " + picture)
            lines += bus.describe(self.application)
        else:
            lines.append("The program has ended with status %d" % self.process.returncode)
        return "\n".join(lines + ["The program said:", self.said()])

    def kill(self):
        """Makes sure that nothing is left of it."""
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        self.log.close()
