"""What a window manager and a keyboard do to the program, on the display that DISPLAY names.

The virtual desktop has no window manager, and the accessibility interface cannot hold a key down.
"""
import ctypes
import os

_x11 = ctypes.CDLL("libX11.so.6")
_test = ctypes.CDLL("libXtst.so.6")

Window = Atom = ctypes.c_ulong
CLIENT_MESSAGE = 33
KEYSYMS = {"Ctrl": 0xFFE3, "Alt": 0xFFE9, "Up": 0xFF52, "Down": 0xFF54, "Delete": 0xFFFF,
           "Return": 0xFF0D, "Escape": 0xFF1B, "Home": 0xFF50}


class ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", Window), ("message_type", Atom),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5), ("rest_of_event", ctypes.c_long * 24)]


_x11.XOpenDisplay.restype = ctypes.c_void_p
_x11.XOpenDisplay.argtypes = [ctypes.c_char_p]
_x11.XDefaultRootWindow.restype = Window
_x11.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
_x11.XInternAtom.restype = Atom
_x11.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
_x11.XQueryTree.argtypes = [ctypes.c_void_p, Window] + [ctypes.c_void_p] * 4
_x11.XGetWindowProperty.argtypes = [ctypes.c_void_p, Window, Atom, ctypes.c_long, ctypes.c_long,
                                    ctypes.c_int, Atom] + [ctypes.c_void_p] * 5
_x11.XSendEvent.argtypes = [ctypes.c_void_p, Window, ctypes.c_int, ctypes.c_long, ctypes.c_void_p]
_x11.XFree.argtypes = [ctypes.c_void_p]
_x11.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
_x11.XCloseDisplay.argtypes = [ctypes.c_void_p]
_x11.XKeysymToKeycode.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
_x11.XKeysymToKeycode.restype = ctypes.c_ubyte
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


def close_window(pid):
    """Asks the main window of the process to close, as the button in its frame does."""
    with Display() as display:
        delete = display.atom("WM_DELETE_WINDOW")
        asked = [window for window in display.top_windows()
                 if display.numbers(window, "_NET_WM_PID") == [pid]
                 and delete in display.numbers(window, "WM_PROTOCOLS")
                 and not display.numbers(window, "WM_TRANSIENT_FOR")]
        if len(asked) != 1:
            raise AssertionError(f"the process {pid} has {len(asked)} main windows")
        event = ClientMessage(type=CLIENT_MESSAGE, window=asked[0], message_type=display.atom("WM_PROTOCOLS"),
                              format=32)
        event.data[0] = delete
        _x11.XSendEvent(display.pointer, asked[0], 0, 0, ctypes.byref(event))


def press(keys):
    """Presses keys together, such as "Alt+Up" or "Ctrl+q", wherever the focus is."""
    with Display() as display:
        codes = [_x11.XKeysymToKeycode(display.pointer, KEYSYMS.get(key) or ord(key)) for key in keys.split("+")]
        for code in codes:
            _test.XTestFakeKeyEvent(display.pointer, code, 1, 0)
        for code in reversed(codes):
            _test.XTestFakeKeyEvent(display.pointer, code, 0, 0)
