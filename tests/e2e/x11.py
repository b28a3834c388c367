# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Real keys, mouse events and drags from another program, sent through the X server.

Everything goes through the X server of the present display.
"""

import ctypes
import select
import time
from ctypes import c_char_p, c_int, c_long, c_ubyte, c_uint, c_ulong, c_void_p

import bus

_LIB = ctypes.CDLL("libX11.so.6")
_TEST = ctypes.CDLL("libXtst.so.6")

_CLIENT_MESSAGE, _SELECTION_REQUEST, _SELECTION_NOTIFY = 33, 30, 31
_XDND_VERSION = 5
_BUTTON_1 = 1 << 8
_ATOM, _CURRENT_TIME, _PROP_REPLACE, _POINTER_ROOT = 4, 0, 0, 1


class _ClientMessage(ctypes.Structure):
    _fields_ = [("type", c_int), ("serial", c_ulong), ("send_event", c_int), ("display", c_void_p),
                ("window", c_ulong), ("message", c_ulong), ("format", c_int), ("data", c_long * 5)]


class _SelectionRequest(ctypes.Structure):
    _fields_ = [("type", c_int), ("serial", c_ulong), ("send_event", c_int), ("display", c_void_p),
                ("owner", c_ulong), ("requestor", c_ulong), ("selection", c_ulong), ("target", c_ulong),
                ("property", c_ulong), ("time", c_ulong)]


class _SelectionNotify(ctypes.Structure):
    _fields_ = [("type", c_int), ("serial", c_ulong), ("send_event", c_int), ("display", c_void_p),
                ("requestor", c_ulong), ("selection", c_ulong), ("target", c_ulong),
                ("property", c_ulong), ("time", c_ulong)]


class _Event(ctypes.Union):
    _fields_ = [("type", c_int), ("client", _ClientMessage), ("request", _SelectionRequest),
                ("notify", _SelectionNotify), ("size", c_long * 24)]


def _declare(library, **functions):
    for name, (result, *arguments) in functions.items():
        function = getattr(library, name)
        function.restype, function.argtypes = result, arguments


_declare(
    _LIB,
    XOpenDisplay=(c_void_p, c_char_p),
    XCloseDisplay=(c_int, c_void_p),
    XDefaultRootWindow=(c_ulong, c_void_p),
    XConnectionNumber=(c_int, c_void_p),
    XInternAtom=(c_ulong, c_void_p, c_char_p, c_int),
    XCreateSimpleWindow=(c_ulong, c_void_p, c_ulong, c_int, c_int, c_uint, c_uint, c_uint, c_ulong, c_ulong),
    XSetSelectionOwner=(c_int, c_void_p, c_ulong, c_ulong, c_ulong),
    XChangeProperty=(c_int, c_void_p, c_ulong, c_ulong, c_ulong, c_int, c_int, c_void_p, c_int),
    XListProperties=(c_void_p, c_void_p, c_ulong, c_void_p),
    XTranslateCoordinates=(c_int, c_void_p, c_ulong, c_ulong, c_int, c_int, c_void_p, c_void_p, c_void_p),
    XSendEvent=(c_int, c_void_p, c_ulong, c_int, c_long, c_void_p),
    XPending=(c_int, c_void_p),
    XNextEvent=(c_int, c_void_p, c_void_p),
    XFree=(c_int, c_void_p),
    XSetInputFocus=(c_int, c_void_p, c_ulong, c_int, c_ulong),
    XQueryPointer=(c_int, c_void_p, c_ulong, *[c_void_p] * 7),
    XSync=(c_int, c_void_p, c_int),
    XStringToKeysym=(c_ulong, c_char_p),
    XKeysymToKeycode=(c_ubyte, c_void_p, c_ulong),
    XKeycodeToKeysym=(c_ulong, c_void_p, c_ubyte, c_int),
)
_declare(
    _TEST,
    XTestFakeMotionEvent=(c_int, c_void_p, c_int, c_int, c_int, c_ulong),
    XTestFakeButtonEvent=(c_int, c_void_p, c_uint, c_int, c_ulong),
    XTestFakeKeyEvent=(c_int, c_void_p, c_uint, c_int, c_ulong),
)


class _Client:
    """A connection to the X server, for use in a `with` statement."""

    def __init__(self):
        self._display = _LIB.XOpenDisplay(None)
        if not self._display:
            raise bus.Missing("no X server")
        self._root = _LIB.XDefaultRootWindow(self._display)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        _LIB.XCloseDisplay(self._display)

    def _sync(self):
        _LIB.XSync(self._display, False)


class Keyboard(_Client):
    """The keyboard; its keys go to the window that has the focus."""

    def press(self, *chords):
        """Presses keys by their names ("Return", "a"); "Alt+s" holds Alt down meanwhile."""
        for chord in chords:
            codes = [self._code(_LIB.XStringToKeysym(name.encode())) for name in
                     chord.replace("Alt", "Alt_L").replace("Ctrl", "Control_L").replace("Shift", "Shift_L").split("+")]
            self._strike(codes)

    def hold(self, name, seconds):
        """Holds a key down for so many seconds; the X server repeats it meanwhile."""
        code = self._code(_LIB.XStringToKeysym(name.encode()))
        _TEST.XTestFakeKeyEvent(self._display, code, True, 0)
        self._sync()
        time.sleep(seconds)
        _TEST.XTestFakeKeyEvent(self._display, code, False, 0)
        self._sync()

    def let_go_of_window(self):
        """Takes the focus from the window that has it; the window manager gives it back."""
        _LIB.XSetInputFocus(self._display, _POINTER_ROOT, _POINTER_ROOT, _CURRENT_TIME)
        self._sync()

    def type(self, text):
        """Types a text of characters that the keyboard has."""
        for character in text:
            symbol = {"\n": 0xFF0D}.get(character, ord(character))
            code = self._code(symbol)
            shifted = _LIB.XKeycodeToKeysym(self._display, code, 0) != symbol
            self._strike([self._code(_LIB.XStringToKeysym(b"Shift_L"))] * shifted + [code])

    def _code(self, symbol):
        code = _LIB.XKeysymToKeycode(self._display, symbol)
        if not code:
            raise bus.Missing(f"no key for {symbol:#x}")
        return code

    def _strike(self, codes):
        for code in codes:
            _TEST.XTestFakeKeyEvent(self._display, code, True, 0)
        for code in reversed(codes):
            _TEST.XTestFakeKeyEvent(self._display, code, False, 0)
        self._sync()


class Mouse(_Client):
    """The mouse; it has one button."""

    def move(self, x, y):
        _TEST.XTestFakeMotionEvent(self._display, -1, x, y, 0)
        self._sync()

    def hold(self):
        self._turn(True)

    def release(self):
        self._turn(False)

    def _turn(self, *ways):
        """Presses and releases the button, as the arguments say, without a pause."""
        for is_down in ways:
            _TEST.XTestFakeButtonEvent(self._display, 1, is_down, 0)
        self._sync()
        if ways[-1]:
            return
        # A window manager may delay events while it handles a press. A delayed release takes place
        # wherever the mouse is by then.
        bus.wait_until(lambda: not self._state() & _BUTTON_1, "the mouse button to be up")

    def _state(self):
        ignored, state = c_ulong(), c_uint()
        _LIB.XQueryPointer(self._display, self._root, *[ctypes.byref(ignored)] * 6, ctypes.byref(state))
        return state.value

    def click(self, x, y, times=1):
        """Clicks, or double-clicks; on a slow machine, that must not become two single clicks."""
        self.move(x, y)
        self._turn(*[True, False] * times)


class Drag(_Client):
    """A drag from another program, as file managers begin it: copying or moving, preferably moving."""

    def __init__(self, offers):
        """`offers` are the contents to be dropped: {format: bytes}."""
        super().__init__()
        self._offers = {self._atom(name): data for name, data in offers.items()}
        self._actions = {self._atom(name): name for name in ("XdndActionMove", "XdndActionCopy")}
        self._target = None
        self._window = _LIB.XCreateSimpleWindow(self._display, self._root, 0, 0, 1, 1, 0, 0, 0)
        self._set_property(self._window, self._atom("XdndActionList"), _ATOM, list(self._actions))
        _LIB.XSetSelectionOwner(self._display, self._atom("XdndSelection"), self._window, _CURRENT_TIME)
        self._sync()

    def over(self, x, y):
        """Moves the drag to a place on the screen; returns the action that the window there accepts,
        or None."""
        target = self._aware_window(x, y)
        if target != self._target:
            self._target = target
            self._send("XdndEnter", _XDND_VERSION << 24, *list(self._offers)[:3])
        self._send("XdndPosition", 0, x << 16 | y, _CURRENT_TIME, self._atom("XdndActionMove"))
        accepted, action = self._receive("XdndStatus")[1::3]
        return self._actions[action] if accepted & 1 else None

    def leave(self):
        self._send("XdndLeave")

    def drop(self):
        """Drops; waits until the target has finished, and returns the action that it reports."""
        self._send("XdndDrop", 0, _CURRENT_TIME)
        done, action = self._receive("XdndFinished")[1:3]
        return self._actions[action] if done & 1 else None

    def _atom(self, name):
        return _LIB.XInternAtom(self._display, name.encode(), False)

    def _set_property(self, window, name, kind, value):
        """Sets a property to bytes or to a list of atoms."""
        is_bytes = isinstance(value, bytes)
        items = (c_ubyte if is_bytes else c_long) * len(value)
        _LIB.XChangeProperty(self._display, window, name, kind, 8 if is_bytes else 32, _PROP_REPLACE,
                             items(*value), len(value))

    def _properties(self, window):
        count = c_int()
        names = _LIB.XListProperties(self._display, window, ctypes.byref(count))
        if not names:
            return []
        found = list((c_ulong * count.value).from_address(names))
        _LIB.XFree(names)
        return found

    def _aware_window(self, x, y):
        """The outermost window at that place that accepts drags."""
        window, ignored = c_ulong(self._root), c_int()
        while window.value:
            if self._atom("XdndAware") in self._properties(window):
                return window.value
            _LIB.XTranslateCoordinates(self._display, self._root, window.value, x, y, ctypes.byref(ignored),
                                       ctypes.byref(ignored), ctypes.byref(window))
        raise bus.Missing(f"no window at {x},{y} takes drags")

    def _send(self, message, *data):
        event = _Event(client=_ClientMessage(_CLIENT_MESSAGE, window=self._target, format=32,
                                             message=self._atom(message)))
        event.client.data[:] = [self._window, *data] + [0] * (4 - len(data))
        _LIB.XSendEvent(self._display, self._target, False, 0, ctypes.byref(event))
        self._sync()

    def _receive(self, message):
        """The data of the next message of that kind; meanwhile, requests for the contents are answered."""
        event = _Event()
        end = time.monotonic() + bus.DEADLINE
        while True:
            while _LIB.XPending(self._display):
                _LIB.XNextEvent(self._display, ctypes.byref(event))
                if event.type == _SELECTION_REQUEST:
                    self._hand_out(event.request)
                elif event.type == _CLIENT_MESSAGE and event.client.message == self._atom(message):
                    return event.client.data[:]
            if not select.select([_LIB.XConnectionNumber(self._display)], [], [], end - time.monotonic())[0]:
                raise bus.Missing(f"waited in vain for {message}")

    def _hand_out(self, request):
        data = self._offers.get(request.target)
        if data is not None:
            self._set_property(request.requestor, request.property, request.target, data)
        answer = _Event(notify=_SelectionNotify(
            _SELECTION_NOTIFY, requestor=request.requestor, selection=request.selection,
            target=request.target, property=request.property if data is not None else 0,
            time=request.time))
        _LIB.XSendEvent(self._display, request.requestor, False, 0, ctypes.byref(answer))
        self._sync()
