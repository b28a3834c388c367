# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Looking at a program through the accessibility bus: finding controls, reading and using them."""

import time

import gi

gi.require_version("Atspi", "2.0")
import pyatspi  # noqa: E402 (the version must be chosen before)
from gi.repository import GLib  # noqa: E402

# In seconds, for a machine that has much else to do: whoever waits goes on as soon as it is so.
DEADLINE = 120.0

# The bus itself takes no answer within 0.8 s for none, and an action would be tried again that is under way.
pyatspi.setTimeout(int(DEADLINE * 1000), int(DEADLINE * 1000))

# Views whose items may be many; a search for a control does not look into them.
ITEM_VIEWS = ("tree", "tree table", "table", "list", "list box")

# What the bus raises when a control vanishes while it is looked at.
GONE = (GLib.Error, LookupError, RuntimeError, AttributeError)


class Missing(AssertionError):
    """Something did not happen or did not show in time."""


def wait_until(condition, what, deadline=DEADLINE):
    """Returns the first true value of `condition()`; `what` says what it waits for."""
    end = time.monotonic() + deadline
    while True:
        try:
            value = condition()
        except GONE:
            value = None
        if value:
            return value
        if time.monotonic() > end:
            raise Missing("waited %g s in vain for %s" % (deadline, what))
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
    """Whether keys go to a window."""
    return has_state(window, pyatspi.STATE_ACTIVE)


def is_down(node):
    """Whether a button is held down; one that is gone is not."""
    try:
        return has_state(node, pyatspi.STATE_PRESSED)
    except GONE:
        return False


def is_gone(node):
    """Whether a control is no more, which is later than that it does not show."""
    try:
        return has_state(node, pyatspi.STATE_DEFUNCT)
    except GONE:
        return True


_found = {}  # by what was looked for: a walk through a window asks hundreds of questions


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
    """What an editable or read-only text control holds."""
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
    """The application of that process on the bus, or None; every look at it is a fresh one."""
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
        lines = ["%s%s %r [%s]" % ("  " * depth, node.getRoleName(), node.name, " ".join(states))]
        below = node.childCount
        for index in range(min(below, most)):
            child = node.getChildAtIndex(index)
            if child is not None:
                lines += describe(child, depth + 1, most)
        if below > most:
            lines.append("%s... %d more" % ("  " * (depth + 1), below - most))
        return lines
    except GONE as error:
        return ["%s(gone: %s)" % ("  " * depth, error)]
