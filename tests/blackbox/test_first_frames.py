"""The first moments of the window: what is on the screen, frame by frame, from the very first pixel.

The virtual screen's memory is read as fast as it goes while the program starts. What lies behind the
window has a colour that nothing else has, so that what is not drawn yet can be told from what is.
"""
import mmap
import pathlib
import struct
import subprocess
import time
import unittest

import x11
from harness import PROGRAM, READY, BlackBox, processes, w
from test_window import ROUTE_READY

BEHIND = 0xFF00FF
GREY = 0x28282B
RING = 0x3E9BFF

x11._x11.XSetWindowBackground.argtypes = [x11.ctypes.c_void_p, x11.Window, x11.ctypes.c_ulong]
x11._x11.XClearWindow.argtypes = [x11.ctypes.c_void_p, x11.Window]
x11._test.XTestFakeMotionEvent.argtypes = [x11.ctypes.c_void_p] + [x11.ctypes.c_int] * 3 + [x11.ctypes.c_ulong]


def paint_behind(colour):
    """Paints what lies behind all windows, and takes the pointer to the last corner of the screen."""
    with x11.Display() as display:
        x11._test.XTestFakeMotionEvent(display.pointer, -1, 1279, 1023, 0)
        root = x11._x11.XDefaultRootWindow(display.pointer)
        x11._x11.XSetWindowBackground(display.pointer, root, colour)
        x11._x11.XClearWindow(display.pointer, root)


class Screen:
    """The memory of the virtual screen itself."""

    def __init__(self, folder):
        with open(pathlib.Path(folder) / "screen" / "Xvfb_screen0", "rb") as file:
            self._memory = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)
        header = struct.unpack(">25I", self._memory[:100])
        self.width, self.height, self._stride = header[4], header[5], header[12]
        self._start = header[0] + 12 * header[19]
        assert header[11] == 32 and self._stride == 4 * self.width

    def now(self):
        return self._memory[self._start:self._start + self._stride * self.height]

    def pixel(self, frame, x, y):
        at = y * self._stride + 4 * x
        return int.from_bytes(frame[at:at + 3], "little")

    def row(self, frame, y):
        """The colours of a row, without what is no colour."""
        line = bytearray(frame[y * self._stride:(y + 1) * self._stride])
        line[3::4] = bytes(self.width)
        return memoryview(bytes(line)).cast("I")


class FirstFrames(BlackBox):
    def setUp(self):
        super().setUp()
        paint_behind(BEHIND)
        self.addCleanup(paint_behind, 0)
        self.memory = Screen(self.screen.folder)

    def frames(self, *arguments):
        """Starts the program. Returns every picture of the screen that differs from the one before."""
        empty = self.memory.now()
        self.assertEqual(self.memory.pixel(empty, 600, 500), BEHIND)
        self.output_file = self.folder / "program.out"
        with open(self.output_file, "wb") as output:
            self.program = processes.start([self.bin / PROGRAM.name, *arguments], env=self.environment(),
                                           cwd=self.folder, stdin=subprocess.DEVNULL, stdout=output, stderr=output)
        found, last = [], empty
        given_up = time.monotonic() + w.SECONDS
        finished = None
        while finished is None or time.monotonic() < finished:
            now = self.memory.now()
            if now != last:
                found.append(now)
                last = now
                # The cursor blinks for the first time after half a second.
                finished = finished or time.monotonic() + 0.4
            if time.monotonic() > given_up:
                self.fail("no window has shown")
        self.window = w.Window(self.program.pid)
        return found

    def assert_calm(self, frames):
        """No pixel is ever anything else than what lies behind the window or what it ends as; but a ring
        comes around the search field as the window becomes active."""
        x, y, width, height = self.window.frame()
        left, top, across, down = self.window.area(self.window.all("text")[0])
        ring_columns, ring_rows = range(left - 3, left + across + 3), range(top - 3, top + down + 3)
        final = [self.memory.row(frames[-1], row) for row in range(self.memory.height)]
        self.assertEqual(final[y + height - 2][x + width - 2], GREY, "the window has come")
        self.assertEqual(final[ring_rows[0]][left + across // 2], RING, "the window is active")
        self.assertFalse(any(BEHIND in row[x:x + width].tolist() for row in final[y:y + height]),
                         "the window is complete")
        for number, frame in enumerate(frames, 1):
            for at in range(self.memory.height):
                row = self.memory.row(frame, at)
                if row == final[at]:
                    continue
                for column, (colour, end) in enumerate(zip(row, final[at])):
                    if colour not in (end, BEHIND) and not (at in ring_rows and column in ring_columns):
                        self.fail(f"picture {number} of {len(frames)} has #{colour:06x} at {column - x}, {at - y} of "
                                  f"the window, which ends as #{end:06x}")

    def test_place_mode_neither_flashes_nor_jumps(self):
        frames = self.frames()
        self.window.says(READY)
        self.assert_calm(frames)

    def test_route_mode_neither_flashes_nor_jumps(self):
        frames = self.frames("--route")
        self.window.says(ROUTE_READY)
        self.assert_calm(frames)

    def test_a_window_that_reads_from_the_right_neither_flashes_nor_jumps(self):
        file = self.home / "Library/Application Support/Norvaxel/Preferences/3d-language.txt"
        file.parent.mkdir(parents=True)
        file.write_text("ar\n")
        self.assert_calm(self.frames())


if __name__ == "__main__":
    unittest.main()
