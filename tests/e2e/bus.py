# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Finds, reads and uses the controls of a program through the accessibility bus."""

import time

import gi

gi.require_version("Atspi", "2.0")
import pyatspi  # noqa: E402 (the version must be chosen before)
from gi.repository import GLib  # noqa: E402

# The longest wait, in seconds. It is long because the machine may be busy; a wait ends as soon as
# its condition holds.
DEADLINE = 120.0

# By default, the bus gives up after 0.8 s, and an action that is being done would be tried again.
pyatspi.setTimeout(int(DEADLINE * 1000), int(DEADLINE * 1000))

# Views that may have many items; a search for a control does not look into them.
ITEM_VIEWS = ("tree", "tree table", "table", "list", "list box")

# What the bus raises when a control vanishes while its properties are read.
GONE = (GLib.Error, LookupError, RuntimeError, AttributeError)


class Missing(AssertionError):
    """Something did not happen or appear in time."""


def wait_until(condition, what, deadline=DEADLINE):
    """Returns the first true value of `condition()`; a failure names `what` it waits for."""
    end = time.monotonic() + deadline
    while True:
        try:
            value = condition()
        except GONE:
            value = None
        if value:
            return value
        if time.monotonic() > end:
            raise Missing(f"waited {deadline:g} s in vain for {what}")
        time.sleep(0.02)


def children(node):
    found = (node.getChildAtIndex(index) for index in range(node.childCount))
    return [child for child in found if child is not None]


def walk(node):
    """The controls below a window, in order, without the items of views."""
    for child in children(node):
        yield child
        if child.getRoleName() not in ITEM_VIEWS:
            yield from walk(child)


def has_state(node, state):
    return node.getState().contains(state)


def is_shown(node):
    return has_state(node, pyatspi.STATE_SHOWING)


def is_checked(node):
    return has_state(node, pyatspi.STATE_CHECKED)


def is_focused(node):
    return has_state(node, pyatspi.STATE_FOCUSED)


def is_enabled(node):
    return has_state(node, pyatspi.STATE_ENABLED)


def is_active(window):
    """Whether a window gets the keys that are pressed."""
    return has_state(window, pyatspi.STATE_ACTIVE)


def is_down(node):
    """Whether a button is held down; one that is gone is not."""
    try:
        return has_state(node, pyatspi.STATE_PRESSED)
    except GONE:
        return False


def is_gone(node):
    """Whether a control no longer exists; it is hidden before that."""
    try:
        return has_state(node, pyatspi.STATE_DEFUNCT)
    except GONE:
        return True


_found = {}  # by search; a walk through a window asks hundreds of questions


def find(root, name, roles):
    """The first visible control of that name and one of those roles, or None."""
    roles = (roles,) if isinstance(roles, str) else roles
    known = _found.get((root, name, roles))
    if known and not is_gone(known) and known.name == name and is_shown(known):
        return known
    for node in walk(root):
        if node.name == name and node.getRoleName() in roles and is_shown(node):
            _found[root, name, roles] = node
            return node
    return None


def act(node, action):
    """Does the named action ("Press", "Toggle"), if the control offers it now."""
    actions = node.queryAction()
    for index in range(actions.nActions):
        if actions.getName(index) == action:
            return actions.doAction(index)
    return False


def text_of(node):
    """The text of an editable or read-only text control."""
    return node.queryText().getText(0, -1)


def set_text(node, text):
    return node.queryEditableText().setTextContents(text)


def place(node):
    """The upper left corner of a control, on the screen."""
    return node.queryComponent().getPosition(pyatspi.DESKTOP_COORDS)


def middle(node):
    """The middle of a control, on the screen."""
    extents = node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    return extents.x + extents.width // 2, extents.y + extents.height // 2


def desktop_application(process_id):
    """The application of that process on the bus, or None; the bus is read anew each time."""
    desktop = pyatspi.Registry.getDesktop(0)
    for application in children(desktop):
        if application.get_process_id() == process_id:
            application.set_cache_mask(pyatspi.Atspi.Cache.NONE)
            return application
    return None


def describe(node, depth=0, most=40):
    """The tree below a node as indented lines, for the report of a failure."""
    try:
        states = [s for s in ("showing", "enabled", "checked", "selected", "focused")
                  if has_state(node, getattr(pyatspi, "STATE_" + s.upper()))]
        lines = [f"{'  ' * depth}{node.getRoleName()} {node.name!r} [{' '.join(states)}]"]
        below = node.childCount
        for index in range(min(below, most)):
            child = node.getChildAtIndex(index)
            if child is not None:
                lines += describe(child, depth + 1, most)
        if below > most:
            lines.append(f"{'  ' * (depth + 1)}... {below - most} more")
        return lines
    except GONE as error:
        return [f"{'  ' * depth}(gone: {error})"]
