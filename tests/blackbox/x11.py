"""What a window manager, a keyboard and a mouse do to the program, on the display that DISPLAY names.

The virtual desktop has no window manager of its own, and the accessibility interface cannot hold a key
down.
"""
import contextlib
import ctypes
import os

_x11 = ctypes.CDLL("libX11.so.6")
_test = ctypes.CDLL("libXtst.so.6")

Window = Atom = ctypes.c_ulong
CLIENT_MESSAGE = 33
SUBSTRUCTURE = (1 << 19) | (1 << 20)  # who asks for these events: the window manager
KEYSYMS = {"Ctrl": 0xFFE3, "Alt": 0xFFE9, "Up": 0xFF52, "Down": 0xFF54, "Delete": 0xFFFF,
           "Return": 0xFF0D, "Escape": 0xFF1B, "Home": 0xFF50, "Tab": 0xFF09, "Shift": 0xFFE1, "space": 0x20,
           "Super": 0xFFEB, "Left": 0xFF51, "Page_Up": 0xFF55, "Page_Down": 0xFF56,
           **{f"F{number}": 0xFFBD + number for number in range(1, 13)}}
# For how many milliseconds a key stays down: as good as none, if nobody cares.
held = 0


class ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", Window), ("message_type", Atom),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5), ("rest_of_event", ctypes.c_long * 24)]


_x11.XOpenDisplay.restype = ctypes.c_void_p
_x11.XOpenDisplay.argtypes = [ctypes.c_char_p]
class Attributes(ctypes.Structure):
    _fields_ = [*[(name, ctypes.c_int) for name in ("x", "y", "width", "height", "border", "depth")],
                ("visual", ctypes.c_void_p), ("root", Window), *[(f"_{i}", ctypes.c_int) for i in range(4)],
                ("planes", ctypes.c_ulong), ("pixel", ctypes.c_ulong), ("save_under", ctypes.c_int),
                ("colours", ctypes.c_ulong), ("has_colours", ctypes.c_int), ("map_state", ctypes.c_int),
                ("rest", ctypes.c_long * 16)]


_x11.XDefaultRootWindow.restype = Window
_x11.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
_x11.XInternAtom.restype = Atom
_x11.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
_x11.XQueryTree.argtypes = [ctypes.c_void_p, Window] + [ctypes.c_void_p] * 4
_x11.XGetWindowProperty.argtypes = [ctypes.c_void_p, Window, Atom, ctypes.c_long, ctypes.c_long,
                                    ctypes.c_int, Atom] + [ctypes.c_void_p] * 5
_x11.XGetWindowAttributes.argtypes = [ctypes.c_void_p, Window, ctypes.c_void_p]
_x11.XTranslateCoordinates.argtypes = [ctypes.c_void_p, Window, Window, *[ctypes.c_int] * 2, *[ctypes.c_void_p] * 3]
_x11.XSendEvent.argtypes = [ctypes.c_void_p, Window, ctypes.c_int, ctypes.c_long, ctypes.c_void_p]
_x11.XFree.argtypes = [ctypes.c_void_p]
_x11.XSetInputFocus.argtypes = [ctypes.c_void_p, Window, ctypes.c_int, ctypes.c_ulong]
_x11.XGetInputFocus.argtypes = [ctypes.c_void_p, ctypes.c_void_p, ctypes.c_void_p]
_x11.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
_x11.XCloseDisplay.argtypes = [ctypes.c_void_p]
_x11.XKeysymToKeycode.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
_x11.XKeysymToKeycode.restype = ctypes.c_ubyte
_x11.XCreateSimpleWindow.restype = Window
_x11.XCreateSimpleWindow.argtypes = [ctypes.c_void_p, Window, *[ctypes.c_int] * 5, *[ctypes.c_ulong] * 2]
_x11.XStoreName.argtypes = [ctypes.c_void_p, Window, ctypes.c_char_p]
_x11.XChangeProperty.argtypes = [ctypes.c_void_p, Window, Atom, Atom, *[ctypes.c_int] * 2, ctypes.c_void_p, ctypes.c_int]
_x11.XMapWindow.argtypes = [ctypes.c_void_p, Window]
_x11.XDestroyWindow.argtypes = [ctypes.c_void_p, Window]
_test.XTestFakeMotionEvent.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_int, ctypes.c_int, ctypes.c_ulong]
_test.XTestFakeButtonEvent.argtypes = [ctypes.c_void_p, ctypes.c_uint, ctypes.c_int, ctypes.c_ulong]
_test.XTestFakeKeyEvent.argtypes = [ctypes.c_void_p, ctypes.c_uint, ctypes.c_int, ctypes.c_ulong]

# A window may go while it is asked about: that is no reason to end this process.
_error_handler = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(lambda *_: 0)


class Display:
    def __enter__(self):
        self.pointer = _x11.XOpenDisplay(os.environ["DISPLAY"].encode())
        if not self.pointer:
            raise RuntimeError(f"the display {os.environ['DISPLAY']} cannot be opened")
        _x11.XSetErrorHandler(_error_handler)
        return self

    def __exit__(self, *_):
        _x11.XSync(self.pointer, 0)
        _x11.XCloseDisplay(self.pointer)

    def atom(self, name):
        return _x11.XInternAtom(self.pointer, name.encode(), 0)

    def top_windows(self):
        parent, root, children, count = Window(), Window(), ctypes.POINTER(Window)(), ctypes.c_uint()
        _x11.XQueryTree(self.pointer, _x11.XDefaultRootWindow(self.pointer), ctypes.byref(root),
                        ctypes.byref(parent), ctypes.byref(children), ctypes.byref(count))
        found = children[:count.value]
        _x11.XFree(children)
        return found

    def numbers(self, window, name):
        """The values of a window's property; none if it has no such property."""
        kind, size, count, left = Atom(), ctypes.c_int(), ctypes.c_ulong(), ctypes.c_ulong()
        data = ctypes.POINTER(ctypes.c_ulong)()
        _x11.XGetWindowProperty(self.pointer, window, self.atom(name), 0, 64, 0, 0, ctypes.byref(kind),
                                ctypes.byref(size), ctypes.byref(count), ctypes.byref(left), ctypes.byref(data))
        values = data[:count.value] if data and size.value == 32 else []
        if data:
            _x11.XFree(data)
        return values

    def put(self, window, name, kind, *values):
        """Sets a window's property."""
        _x11.XChangeProperty(self.pointer, window, self.atom(name), self.atom(kind), 32, 0,
                             (ctypes.c_ulong * len(values))(*values), len(values))

    def root(self):
        return _x11.XDefaultRootWindow(self.pointer)

    def main_window(self, pid):
        """The process's one window that a window manager frames, or would frame."""
        found = [window for window in self.numbers(self.root(), "_NET_CLIENT_LIST") or self.top_windows()
                 if self.numbers(window, "_NET_WM_PID") == [pid] and self.numbers(window, "WM_PROTOCOLS")
                 and not self.numbers(window, "WM_TRANSIENT_FOR")]
        if len(found) != 1:
            raise AssertionError(f"the process {pid} has {len(found)} main windows")
        return found[0]

    def place(self, window):
        """Where a window is on the screen: (x, y, width, height); nothing while it does not show."""
        found, x, y, child = Attributes(), ctypes.c_int(), ctypes.c_int(), Window()
        if not _x11.XGetWindowAttributes(self.pointer, window, ctypes.byref(found)) or found.map_state != 2:
            return None
        _x11.XTranslateCoordinates(self.pointer, window, self.root(), 0, 0, ctypes.byref(x), ctypes.byref(y),
                                   ctypes.byref(child))
        return x.value, y.value, found.width, found.height

    def wish(self, window, message, *values):
        """Asks the window manager for something about a window."""
        self.tell(window, message, *values, to=self.root(), mask=SUBSTRUCTURE)

    def tell(self, window, message, *values, to=None, mask=0):
        """Sends a message to a window, or about it to another one."""
        event = ClientMessage(type=CLIENT_MESSAGE, window=window, message_type=self.atom(message), format=32)
        event.data[:len(values)] = values
        _x11.XSendEvent(self.pointer, to or window, 0, mask, ctypes.byref(event))


def close_window(pid):
    """Asks the main window of the process to close, as the button in its frame does."""
    with Display() as display:
        display.tell(display.main_window(pid), "WM_PROTOCOLS", display.atom("WM_DELETE_WINDOW"))


def activate(pid):
    """Makes the main window the active one and takes it out of its icon, as the task bar does."""
    with Display() as display:
        display.wish(display.main_window(pid), "_NET_ACTIVE_WINDOW", 2)


def move(pid, x, y):
    with Display() as display:
        display.wish(display.main_window(pid), "_NET_MOVERESIZE_WINDOW", 3 << 8, x, y)


def to_workspace(number):
    with Display() as display:
        display.wish(display.root(), "_NET_CURRENT_DESKTOP", number)


def place(pid):
    """Where the main window is without its frame."""
    with Display() as display:
        return display.place(display.main_window(pid))


def frame(pid):
    """How wide the main window's frame is: (left, right, top, bottom)."""
    with Display() as display:
        return tuple(display.numbers(display.main_window(pid), "_NET_FRAME_EXTENTS")) or (0, 0, 0, 0)


def popped_up(pid):
    """Where the process's window is that no window manager frames; nothing if none shows."""
    with Display() as display:
        places = [display.place(window) for window in display.top_windows()
                  if display.numbers(window, "_NET_WM_PID") == [pid]]
        return next(filter(None, places), None)


def is_active(pid):
    with Display() as display:
        active = display.numbers(display.root(), "_NET_ACTIVE_WINDOW")
        return bool(active) and display.numbers(active[0], "_NET_WM_PID") == [pid]


def has_the_keyboard(pid):
    """Whether keys go to a window of the process and not, as at first, to what lies under the pointer."""
    with Display() as display:
        focused, kind = Window(), ctypes.c_int()
        _x11.XGetInputFocus(display.pointer, ctypes.byref(focused), ctypes.byref(kind))
        return focused.value > 1 and display.numbers(focused.value, "_NET_WM_PID") == [pid]


def states(pid):
    """What the window manager says of the main window, such as "_NET_WM_STATE_HIDDEN"."""
    with Display() as display:
        names = ("_NET_WM_STATE_HIDDEN", "_NET_WM_STATE_DEMANDS_ATTENTION")
        found = display.numbers(display.main_window(pid), "_NET_WM_STATE")
        return {name for name in names if display.atom(name) in found}


def is_managed():
    """Whether a window manager runs. One that has gone leaves the name of its window, but not the window."""
    with Display() as display:
        named = display.numbers(display.root(), "_NET_SUPPORTING_WM_CHECK")
        return bool(named) and display.numbers(named[0], "_NET_SUPPORTING_WM_CHECK") == named


@contextlib.contextmanager
def another_window(x, y, width, height):
    """A window of another program, as long as the context lasts."""
    with Display() as display:
        window = _x11.XCreateSimpleWindow(display.pointer, display.root(), x, y, width, height, 0, 0, 0x336633)
        _x11.XStoreName(display.pointer, window, b"another")
        display.put(window, "WM_NORMAL_HINTS", "WM_SIZE_HINTS", 1, *[0] * 17)  # a person wants it there
        _x11.XMapWindow(display.pointer, window)
        _x11.XSync(display.pointer, 0)
        yield lambda: display.numbers(display.root(), "_NET_ACTIVE_WINDOW")[:1] == [window]
        _x11.XDestroyWindow(display.pointer, window)


@contextlib.contextmanager
def bar(width, height):
    """A bar along the screen's upper end that no window shall cover, as long as the context lasts."""
    with Display() as display:
        window = _x11.XCreateSimpleWindow(display.pointer, display.root(), 0, 0, width, height, 0, 0, 0x333366)
        display.put(window, "_NET_WM_WINDOW_TYPE", "ATOM", display.atom("_NET_WM_WINDOW_TYPE_DOCK"))
        display.put(window, "_NET_WM_STRUT", "CARDINAL", 0, 0, height, 0)
        display.put(window, "_NET_WM_STRUT_PARTIAL", "CARDINAL", 0, 0, height, 0, 0, 0, 0, 0, 0, width - 1, 0, 0)
        _x11.XMapWindow(display.pointer, window)
        _x11.XSync(display.pointer, 0)
        yield lambda: (display.numbers(display.root(), "_NET_WORKAREA") or [0, height])[1] == height
        _x11.XDestroyWindow(display.pointer, window)


def take_the_keyboard():
    """No window has the keyboard any more, as when another program takes it."""
    with Display() as display:
        _x11.XSetInputFocus(display.pointer, 0, 0, 0)


def click(x, y, times=1):
    """Presses and releases the mouse's first button there."""
    with Display() as display:
        _test.XTestFakeMotionEvent(display.pointer, -1, x, y, 0)
        for _ in range(times):
            _test.XTestFakeButtonEvent(display.pointer, 1, 1, 0)
            _test.XTestFakeButtonEvent(display.pointer, 1, 0, 0)


def drag(start, end, key):
    """Holds the key and the mouse's first button from one place to the other."""
    with Display() as display:
        code = _x11.XKeysymToKeycode(display.pointer, KEYSYMS[key])
        _test.XTestFakeMotionEvent(display.pointer, -1, *start, 0)
        _test.XTestFakeKeyEvent(display.pointer, code, 1, 0)
        _test.XTestFakeButtonEvent(display.pointer, 1, 1, 0)
        for step in range(1, 11):
            place = (a + (b - a) * step // 10 for a, b in zip(start, end))
            _test.XTestFakeMotionEvent(display.pointer, -1, *place, held // 5)
        _test.XTestFakeButtonEvent(display.pointer, 1, 0, held)
        _test.XTestFakeKeyEvent(display.pointer, code, 0, 0)


def press(keys):
    """Presses keys together, such as "Alt+Up" or "Ctrl+q", wherever the focus is."""
    with Display() as display:
        codes = [_x11.XKeysymToKeycode(display.pointer, KEYSYMS.get(key) or ord(key)) for key in keys.split("+")]
        for code in codes:
            _test.XTestFakeKeyEvent(display.pointer, code, 1, 0)
        for code in reversed(codes):
            _test.XTestFakeKeyEvent(display.pointer, code, 0, held)
