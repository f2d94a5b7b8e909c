"""What the program does under a compositor of Wayland.

The compositor is a window that fills the virtual screen: its keyboard and its mouse are those of the screen.
Nobody is told where a window lies, so places are read from the picture of the screen.
"""
import atexit
import contextlib
import pathlib
import re
import shutil
import statistics
import subprocess
import tempfile
import time

import on_x11
import x11
from harness import CHOSEN, FINISHED, processes, screen, w
from on_x11 import PANEL, centre, same

x11.held = 300  # a compositor opens a list for a key that is still down, and moves a window with one
RING = (0x3E, 0x9B, 0xFF)  # around the search field that has the keyboard
DIMMED = (0x1C, 0x1C, 0x1E)  # the content behind a sheet
OUTLINE = 1  # around a sheet, in a colour of its own


def begin(theme, of, size):
    """Starts the compositor that every case of this process is under."""
    width, height, theme.scale = size
    screen((width, height))
    # Not below the screen's folder: a socket's path may not be long.
    theme.runtime = pathlib.Path(tempfile.mkdtemp(prefix="norvaxel-wl-"))
    atexit.register(shutil.rmtree, theme.runtime, ignore_errors=True)
    on_x11.launch(theme, of, theme.runtime, XDG_RUNTIME_DIR=str(theme.runtime))
    w.until(lambda: socket(theme.runtime), f"{of.name} is there", w.SECONDS, on_x11.log)


def socket(folder):
    return next((each for each in folder.glob("wayland-*") if each.suffix != ".lock"), None)


def qt():
    return subprocess.run(["dpkg-query", "-W", "-f", "${source:Upstream-Version}", "qt6-wayland"], text=True,
                          capture_output=True).stdout.partition("+")[0]


class Sheets(on_x11.Sheets):
    """The same cases."""
    openings = 20
    runtime = None

    def setUp(self):
        super().setUp()
        self.more = {}  # for the program's environment

    def printed(self):
        """Without what Qt 6.8 says of itself, in every program, when mutter 48 closes a list."""
        of_the_toolkit = r"qt\.qpa\.wayland\.textinput: .*zwp_text_input_v3_leave.* surface 0x0 .*\n"
        return re.sub(of_the_toolkit, "", super().printed())

    def environment(self, **changes):
        return super().environment(QT_QPA_PLATFORM="wayland", DISPLAY=None, WAYLAND_DISPLAY=socket(self.runtime),
                                   **self.more, **changes)

    def start(self, *arguments, **environment):
        super().start(*arguments, **environment)
        w.until(self.see_window, "the window is seen")

    # --- what is seen ---

    def box(self, colour, run=100):
        """The smallest (x, y, width, height) that holds every line of at least so many pixels of that colour."""
        wanted, marks = bytes(colour) * run, []
        for y, row in enumerate(self.screen.pixels()[2]):
            if wanted in row:
                marks += [(row.find(wanted) // 3, y), (row.rfind(wanted) // 3 + run - 1, y)]
        if not marks:
            return None
        xs, ys = zip(*marks)
        return min(xs), min(ys), max(xs) - min(xs) + 1, max(ys) - min(ys) + 1

    def see_window(self):
        """Notes where the window is: the ring around the search field tells it."""
        ring, query = self.box(RING, 1), self.window.find(w.QUERY)
        field = self.window.area(query) if ring and query else None
        if not field or not same(ring[2:], (field[2] + 6, field[3] + 6)):
            return False
        self.origin = ring[0] + 3 - field[0], ring[1] + 3 - field[1]
        return True

    def area(self, control, row=None):
        x, y, width, height = super().area(control, row)
        return x + self.origin[0], y + self.origin[1], width, height

    def is_sheet_right(self):
        """Whether the sheet is seen in the middle of the content, and says that it is there in the window."""
        content, seen = self.box(DIMMED), self.box(PANEL)
        if content is None or seen is None or not same(centre(content), centre(seen)):
            return False
        window_x, window_y, _, _ = self.window.frame()
        self.origin = content[0] - window_x, content[1] - self.menu_bar() - window_y
        x, y, width, height = self.panel()
        return same(seen, (x + self.origin[0] + OUTLINE, y + self.origin[1] + OUTLINE, width - 2 * OUTLINE,
                           height - 2 * OUTLINE))

    def where(self):
        return f"the content is seen at {self.box(DIMMED)}, the sheet at {self.box(PANEL)}, it says {self.panel()}"

    def changed(self):
        """The box of the lines that are not as in the picture `before`, as far as they follow one another up and
        down from the control's middle: the window's frame may change, too. As wide as most of them: the pointer may
        have gone. A step of a shade is no change: mutter 48 draws its background once more, a little different."""
        spans = {}
        for y, (old, new) in enumerate(zip(self.before, self.screen.pixels()[2])):
            if old != new:
                xs = [x for x in range(0, len(new), 3) if old[x:x + 3] != new[x:x + 3]
                      and max(abs(a - b) for a, b in zip(old[x:x + 3], new[x:x + 3])) > 2]
                if xs:
                    spans[y] = xs[0] // 3, xs[-1] // 3
        middle = first = last = centre(self.area(self.LANGUAGES))[1]
        while first - 1 in spans:
            first -= 1
        while last + 1 in spans:
            last += 1
        if middle not in spans:
            return None
        left, right = (statistics.mode(side) for side in zip(*(spans[y] for y in range(first, last + 1))))
        return left, first, right - left + 1, last - first + 1

    def open_list(self):
        """What the opening changes in the picture is the list.

        Not with Alt+Down: mutter 48 does not tell a list that Alt is up again, and Alt+Escape closes none.
        """
        x11.click(*(side - 1 for side in self.screen.size), times=0)  # the pointer's picture out of the way
        _, _, self.before = self.screen.pixels()
        x11.press("space")
        # In the end it changes no more: a compositor may let it appear little by little.
        return w.until(lambda: self.is_list_open() and self.still(), "the list is open")

    def still(self):
        first = self.changed()
        time.sleep(w.PAUSE)
        return first if self.changed() == first else None

    def is_list_open(self):
        if self.window.find(self.LANGUAGES) is None:
            raise w.NotThere("the key that closes the list closes the dialog as well")
        box = self.changed()
        return box is not None and box[3] > 100

    def is_active(self):
        return self.window.all("frame")[0].get_state_set().contains(w.Atspi.StateType.ACTIVE)

    def size(self):
        return self.window.frame()[2:]

    # --- what is done ---

    def middle(self):
        x, y, width, height = self.window.frame()
        return x + self.origin[0] + width - 30, y + self.origin[1] + height - 30

    def move(self, x, y):
        """With the mouse, wherever it is in the window."""
        start, origin = self.middle(), self.origin
        x11.drag(start, (start[0] + x - origin[0], start[1] + y - origin[1]), "Super")
        w.until(lambda: (self.see_window() or self.is_sheet_right()) and self.origin != origin, "the window has moved")

    def press_close_button(self):
        x11.press("Alt+F4")

    def select_first(self):
        x11.click(*centre(self.area(w.RESULTS, 0)))
        self.window.says(CHOSEN)

    @contextlib.contextmanager
    def another_window(self):
        """A window of another program, as long as the context lasts; the keyboard is there."""
        other = processes.start(["weston-flower"], env=self.environment(), stdin=subprocess.DEVNULL,
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            w.until(lambda: not self.is_active(), "another window is active")
            yield
        finally:
            processes.end(other)

    def leave_and_enter(self):
        def click():
            x11.click(*self.middle())

        def back_to_it(enter):
            with self.another_window():
                enter()
                w.until(self.is_active, "the window is active again")

        def workspaces():
            there, back = self.of.workspace
            x11.press(there)
            w.until(lambda: not self.is_active(), "another workspace shows")
            x11.press(back)
            w.until(self.is_active, "the window is active again")
        yield "a click on what it covers", click
        yield "another window, then a click", lambda: back_to_it(click)
        yield "another window, then the keys for that", lambda: back_to_it(lambda: x11.press("Alt+Tab"))
        yield "another workspace", workspaces

    # --- cases that differ ---

    def test_an_alert_of_a_minimised_window_is_there_when_it_comes_back(self):
        self.start_import()
        x11.press("Ctrl+m")
        w.until(lambda: not self.is_active(), "the window is an icon")
        self.end_import()
        self.window.says(re.compile("Download fehlgeschlagen: .*", re.DOTALL))
        x11.press("Alt+Tab")
        w.until(self.is_active, "the window is active again")
        self.assert_sheet_right()
        self.close("Return", w.OK)

    def calls_for_attention(self):
        return re.findall(r"-> xdg_activation_v1[@#]\d+\.activate", self.printed())

    def end(self):
        """What the protocol's listener wrote is not the program's word."""
        self.program.terminate()
        self.program.wait(w.SECONDS)
        self.output_file.write_text("")
        self.assert_ended_well()

    def is_urgent(self):
        """Whether the compositor shows that the window has asked; sway alone tells."""
        if not self.of.tree:
            return True
        where = next(self.runtime.glob("sway-ipc.*.sock"))
        return '"urgent": true' in self.tell([*self.of.tree, "-s", where])

    def test_the_task_bar_shows_that_a_job_has_ended_in_a_window_that_is_not_active(self):
        if qt().startswith("6.4."):
            self.skipTest(f"Qt {qt()} has no means for that on Wayland")
        self.more["WAYLAND_DEBUG"] = "1"
        for how in ("missing-file", ""):
            with self.subTest(how), contextlib.ExitStack() as at_last:
                self.start_import(how)
                at_last.callback(self.end)
                with self.another_window():
                    before = len(self.calls_for_attention())
                    self.end_import()
                    self.window.control(w.OK) if how else self.window.says(FINISHED)
                    w.until(lambda: len(self.calls_for_attention()) > before and self.is_urgent(),
                            "the window asks for attention", 10)
                    self.assertFalse(self.is_active(), "and leaves the keyboard where it is")
