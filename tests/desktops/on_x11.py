"""What the program does under a window manager of X."""
import pathlib
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "blackbox"))
import test_window  # noqa: E402
import x11  # noqa: E402
from harness import CHOOSE, CHOSEN, FINISHED, BlackBox, processes, screen, w  # noqa: E402

PANEL = (0x2F, 0x2F, 0x33)
ZOOM = ("menu item", "Zoomen")
ALERT = "Ortsdaten konnten nicht geladen werden"


def centre(area):
    x, y, width, height = area
    return x + width // 2, y + height // 2


def same(some, others, most=1):
    return max(abs(one - other) for one, other in zip(some, others)) <= most


def launch(theme, of, home, **environment):
    """Starts what every case of this process is under; `home` is its home folder."""
    theme.of = of
    # Nothing of its own is read here, and a toolkit that tells of it by a connection of its own can make the library
    # that listens (libatspi 2.46 and 2.56) wait for itself for ever.
    environment["NO_AT_BRIDGE"] = "1"
    for name, text in of.files.items():
        file = pathlib.Path(home, name)
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)
    with open(screen().folder / "manager.log", "wb") as log:
        theme.manager = processes.start(of.command, env=dict(screen().environment, HOME=str(home), **environment),
                                        stdin=subprocess.DEVNULL, stdout=log, stderr=log)


def log():
    return (screen().folder / "manager.log").read_text(errors="replace")


def begin(theme, of, size):
    """Starts the window manager that every case of this process is under."""
    width, height, theme.scale = size
    launch(theme, of, screen((width, height)).folder)
    w.until(takes_windows, f"{of.name} is there", w.SECONDS, log)


def takes_windows():
    """Whether the window manager takes what comes: some say that they are there before they do."""
    try:
        with x11.another_window(5, 5, 90, 90) as is_active:
            return w.until(is_active, "a window becomes active", 2)
    except w.NotThere:
        return False


def is_service(pid):
    """Whether the session bus has started it, which then leaves it to whoever adopts it."""
    try:
        return b"DBUS_STARTER_BUS_TYPE=" in pathlib.Path(f"/proc/{pid}/environ").read_bytes()
    except OSError:
        return False


class Managed(BlackBox):
    """Under the desktop `of`, at that scale of everything: begin() sets them."""
    of = manager = None
    scale = 1

    def setUp(self):
        BlackBox.setUp(self)
        self.saw = "yes"
        reason = self.of.lacks.get(self._testMethodName.removeprefix("test_"))
        if reason:
            self.skipTest(reason)

    def environment(self, **changes):
        return BlackBox.environment(self, QT_SCALE_FACTOR=self.scale, **changes)

    def strangers(self):
        ours = {self.manager.pid, *processes.descendants(self.manager.pid)}
        return [pid for pid in BlackBox.strangers(self) if pid not in ours and not is_service(pid)]


class Sheets(Managed, test_window.Sheets):
    """The cases of the black box's window manager under every other one, and more."""
    openings = 60
    test_the_list_of_languages_opens_over_its_control = None  # it opens more often below

    # --- how the desktop is used ---

    def tell(self, words):
        return subprocess.run(words, check=True, env=self.screen.environment, capture_output=True, text=True).stdout

    def go_to_workspace(self, number):
        if self.of.workspace:
            self.tell([word.format(number + 1) for word in self.of.workspace])
        else:
            super().go_to_workspace(number)

    def asks_for_attention(self):
        return '"urgent":true' in self.tell(self.of.tree) if self.of.tree else super().asks_for_attention()

    def area(self, control, row=None):
        """Where a control, or a row of a list, is on the screen."""
        found = self.window.control(control)
        return self.window.area(found if row is None else found.get_child_at_index(row))

    def panel(self):
        """Where the sheet that is open says that it is."""
        return self.window.area(next(each for each in self.window.all() if w.role_of(each) in ("dialog", "alert")))

    def menu_bar(self):
        return self.window.area(self.window.all("menu bar")[0])[3]

    def is_sheet_right(self):
        """Whether the sheet says that it is in the middle of the content, and is seen there."""
        x, y, width, height = x11.place(self.program.pid)
        left, top, panel_width, panel_height = self.panel()
        found = centre((left, top, panel_width, panel_height))
        content = x, y + self.menu_bar(), width, height - self.menu_bar()
        if self.window.frame() != (x, y, width, height) or not same(found, centre(content)):
            return False
        _, _, rows = self.screen.pixels()
        inside, outside = 3 * (left + 8), 3 * (left - 8)
        line = rows[found[1]]
        return tuple(line[inside:inside + 3]) == PANEL != tuple(line[outside:outside + 3])

    def where(self):
        return f"the window is at {x11.place(self.program.pid)}, it says {self.window.frame()}, sheet {self.panel()}"

    def assert_sheet_right(self):
        w.until(self.is_sheet_right, "the sheet is in the middle", w.SECONDS, self.where)

    def move(self, x, y):
        before = x11.place(self.program.pid)
        x11.move(self.program.pid, x, y)
        w.until(lambda: x11.place(self.program.pid)[:2] != before[:2], "the window has moved")

    def open_list(self):
        """Opens the list of languages. Returns where it is on the screen."""
        x11.press("Alt+Down")
        return w.until(lambda: x11.popped_up(self.program.pid), "the list is open")

    def is_list_open(self):
        return x11.popped_up(self.program.pid)

    def size(self):
        return x11.place(self.program.pid)[2:]

    def zoom(self):
        w.Atspi.Action.do_action(next(each for each in self.window.everything()
                                      if (w.role_of(each), each.get_name()) == ZOOM), 0)

    # --- cases ---

    def test_a_place_with_mouse_and_keyboard(self):
        self.start()
        x11.click(*centre(self.area(w.QUERY)))
        for letter in "berlin":
            x11.press(letter)
        x11.press("Return")
        self.window.says(CHOOSE)
        x11.click(*centre(self.area(w.RESULTS, 0)))
        self.window.says(CHOSEN)
        x11.click(*centre(self.area(w.DOWNLOAD)))
        self.window.says(FINISHED)
        self.assertEqual(len(self.packages()), 1)

    def test_a_failure_shows_its_alert(self):
        self.start_import()
        self.end_import()
        self.assertEqual(self.window.dialog()[0], ALERT)
        self.assert_sheet_right()
        self.close("Return", w.OK)

    def test_the_list_of_languages_is_where_it_belongs(self):
        self.start()
        wrong = []
        for number in range(self.openings):
            if number:
                self.move(20 + number * 37 % 400, 40 + number * 23 % 150)
            self.ask()
            self.assert_sheet_right()
            left, top, width, height = opened = self.open_list()
            x, y, box_width, box_height = control = self.area(self.LANGUAGES)
            if not same((left, width), (x, box_width)) or not top <= y + box_height // 2 < top + height:
                wrong.append(f"{number + 1}: the list at {opened}, its control at {control}")
            x11.press("Escape")
            w.until(lambda: not self.is_list_open(), "the list has closed")
            self.close("Escape", self.APPLY)
            self.saw = f"{number + 1 - len(wrong)} / {number + 1}"
        self.assertEqual(wrong, [])

    def test_a_click_on_what_a_sheet_covers(self):
        self.start_import()
        self.end_import()
        self.window.control(w.OK)
        x11.click(*self.middle())
        self.close("Return", w.OK)
        self.ask()
        x11.click(*self.middle())
        self.close("Escape", self.APPLY)

    def test_a_sheet_moves_with_its_window(self):
        self.start()
        self.ask()
        for x, y in ((60, 60), (300, 180), (0, 40), (410, 30)):
            self.move(x, y)
            self.assert_sheet_right()
        self.close("Escape", self.APPLY)

    def test_zoom_and_back(self):
        self.start()
        before = self.size()
        for _ in range(2):
            self.zoom()
            w.until(lambda: self.size()[0] > self.screen.size[0] - 20, "the window is maximised")
            self.ask()
            self.assert_sheet_right()
            self.close("Escape", self.APPLY)
            self.zoom()
            w.until(lambda: self.size() == before, "the window is as it was", w.SECONDS,
                    lambda: f"{self.size()}, it was {before}")

    def test_closing_ends_the_job_first(self):
        self.start_import("")
        leader = self.importer_event()["pid"]
        self.press_close_button()
        self.assert_ended_well()
        self.assert_group_gone(leader)
        self.assertFalse((self.support / "last-import.txt").exists())
        self.assert_nothing_temporary()


class Screens(Managed):
    """On a screen with another program's bar at its upper end."""
    BAR = 40

    def test_title_bar(self):
        with x11.bar(self.screen.size[0], self.BAR) as is_known:
            w.until(is_known, "the bar is there")
            self.start()
            w.until(lambda: x11.is_active(self.program.pid), "the window is the active one")
            x, y, width, height = x11.place(self.program.pid)
            left, right, top, bottom = x11.frame(self.program.pid)
            _, screen_height = self.screen.size
            below = max(0, y + height + bottom - screen_height)
            self.saw = f"{y - top}–{y}" + (f", {below} px below" if below else "")
            self.assertGreaterEqual(y - top, self.BAR, "the bar covers it")
            self.assertGreaterEqual(x - left, 0)
            self.assertLessEqual(x + width + right, self.screen.size[0])
