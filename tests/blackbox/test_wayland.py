"""The program on a Wayland compositor: the same window and the same work as on X."""
import ctypes
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

from harness import CHOOSE, CHOSEN, FINISHED, READY, BlackBox, processes, w

SOCKET = "wayland-norvaxel"
APP_ID = "de.norvaxel.orteundrouten"
APPLY = ("push button", "Übernehmen")
FAILED = ("Download fehlgeschlagen: Es wird nichts erklärt\n"
          "Versuche einen kleineren Umkreis oder einen anderen Datendienst.")
# Who draws the window's frame.
FRAMES = {"frame of its own": {}, "no frame of its own": {"QT_WAYLAND_DISABLE_WINDOWDECORATION": "1"}}


class HeldThread:
    """One thread of a child, stopped as a debugger does it, while the others go on (see ptrace(2))."""
    SEIZE, INTERRUPT, DETACH = 0x4206, 0x4207, 17
    ANY_THREAD = 0x40000000  # __WALL

    def __init__(self, pid, name):
        tasks = pathlib.Path(f"/proc/{pid}/task").iterdir()
        self.number = next(int(task.name) for task in tasks if (task / "comm").read_text() == name + "\n")
        self.trace = ctypes.CDLL(None, use_errno=True).ptrace
        self.trace.argtypes = [ctypes.c_long, ctypes.c_long, ctypes.c_void_p, ctypes.c_void_p]

    def __enter__(self):
        if self.trace(self.SEIZE, self.number, None, None) != 0:
            raise unittest.SkipTest("this machine lets nobody debug: " + os.strerror(ctypes.get_errno()))
        self.trace(self.INTERRUPT, self.number, None, None)
        os.waitpid(self.number, self.ANY_THREAD)
        return self

    def has_ended(self):
        """Its process waits until somebody has asked."""
        return os.waitpid(self.number, os.WNOHANG | self.ANY_THREAD)[0] == self.number

    def __exit__(self, *_failure):
        self.trace(self.DETACH, self.number, None, None)


class OnWayland(BlackBox):
    backend = ()

    def setUp(self):
        super().setUp()
        if shutil.which("weston") is None:
            self.fail("weston is missing")
        # Not below the case's folder: a socket's path may not be long.
        self.runtime = pathlib.Path(tempfile.mkdtemp(prefix="norvaxel-wl-"))  # of mode 0700
        self.addCleanup(shutil.rmtree, self.runtime, ignore_errors=True)
        log = self.runtime / "weston.log"
        self.compositor = processes.start(
            ["weston", *self.backend, f"--socket={SOCKET}", "--no-config", "--idle-time=0", "--width=1280",
             "--height=1024", f"--log={log}"],
            env=dict(self.screen.environment, XDG_RUNTIME_DIR=str(self.runtime)), stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(processes.end, self.compositor)
        w.until(lambda: (self.runtime / SOCKET).exists(), "the compositor is there", w.SECONDS,
                lambda: log.read_text(errors="replace") if log.exists() else "")

    def environment(self, **changes):
        found = super().environment(QT_QPA_PLATFORM="wayland", XDG_RUNTIME_DIR=self.runtime, DISPLAY=None,
                                    WAYLAND_DISPLAY=SOCKET)
        found.update({name: str(value) for name, value in changes.items()})
        return found

    def strangers(self):
        ours = {self.compositor.pid, *processes.descendants(self.compositor.pid)}
        return [pid for pid in super().strangers() if pid not in ours]

    def end(self):
        self.program.terminate()
        self.assert_ended_well()


class Wayland(OnWayland):
    """Without a screen and without any input device: rows are selected through the interface for assistive
    technology instead of being clicked. Pop-ups stay closed here: where there is no input device at all, the
    toolkit itself ends badly when one opens."""
    backend = ("--backend=headless-backend.so",)

    def select(self, row):
        self.assertTrue(w.Atspi.Table.add_row_selection(self.window.control(w.RESULTS), row))
        w.until(lambda: self.window.selected_row(w.RESULTS) == row, f"row {row} is selected")

    def test_a_search_and_an_import(self):
        for name, frame in FRAMES.items():
            with self.subTest(name):
                self.start(**frame)
                self.window.says(READY)
                self.search("Berlin")
                self.assertTrue(self.rows()[0].startswith("Berlin\n"))
                self.select(0)
                self.window.says(CHOSEN)
                self.window.press(w.DOWNLOAD)
                self.window.says(FINISHED)
                self.assertEqual(len(self.packages()), 1)
                self.end()
                shutil.rmtree(self.support)

    def test_dialogs_open_and_close(self):
        self.importer_behaves("fail-silently")
        for name, frame in FRAMES.items():
            with self.subTest(name):
                self.start(**frame)
                self.window.press(w.LANGUAGE)
                self.window.control(APPLY)
                self.assertEqual(self.window.dialog(),
                                 ["Sprache wählen", "Die Sprache wird nur auf diesem Gerät gespeichert."])
                self.window.press(w.CANCEL)
                w.until(lambda: self.window.find(APPLY) is None, "the dialog has gone")
                self.search("Berlin")
                self.select(0)
                self.window.press(w.DOWNLOAD)
                self.assert_alert("Ortsdaten konnten nicht geladen werden", FAILED)
                self.window.says(FAILED)
                self.end()

    def test_a_thread_of_the_toolkit_does_not_hold_up_the_end(self):
        """On a busy machine that thread can be waiting for one that has gone."""
        self.start()
        self.window.says(READY)
        with HeldThread(self.program.pid, "WaylandEventThr") as thread:
            self.program.terminate()
            w.until(thread.has_ended, "the program ends")
        self.assert_ended_well()

    def test_closing_in_the_middle_of_an_import_leaves_nothing(self):
        self.start(NORVAXEL_SANDBOX_GATE=self.folder / "gate")
        self.search("Berlin")
        self.select(0)
        self.window.press(w.DOWNLOAD)
        leader = self.importer_event()["pid"]
        self.end()
        self.assert_group_gone(leader)

    def test_the_layout_is_that_of_x(self):
        controls = [w.QUERY, w.SEARCH, w.RESULTS, w.RADIUS, w.ENDPOINT, w.ENDPOINT_FIELD, w.LANGUAGE, w.DOWNLOAD]

        def sizes():
            return {control[1]: self.window.area(self.window.control(control))[2:] for control in controls}
        self.start()
        here = sizes()
        here_frame = self.window.frame()[2:]
        self.end()
        self.start(QT_QPA_PLATFORM="xcb", **{name: self.screen.environment[name]
                                             for name in ("DISPLAY", "XDG_RUNTIME_DIR")})
        self.assertEqual(here, sizes())
        self.assertEqual(here_frame, self.window.frame()[2:])

    def test_what_the_compositor_is_told(self):
        """The name by which a desktop finds the icon, the title, and the least size."""
        # Of a frame that the toolkit draws, it tells the compositor a second size from 6.8 on.
        self.start(WAYLAND_DEBUG="1", **FRAMES["no frame of its own"])
        self.window.says(READY)
        menu_bar = self.window.area(self.window.all("menu bar")[0])[3]
        self.program.terminate()
        self.assertEqual(self.program.wait(w.SECONDS), 0)
        told = self.printed()
        self.assertEqual(re.findall(r'set_app_id\("(.*)"\)', told), [APP_ID])
        self.assertEqual(re.findall(r'set_title\("(.*)"\)', told), ["Norvaxel 3D · Orte und Routen"])
        self.assertEqual(re.findall(r"set_min_size\((\d+), (\d+)\)", told), [("780", str(730 + menu_bar))])
        # Only what the protocol's listener wrote: the program itself prints nothing.
        self.assertEqual([line for line in told.splitlines() if not re.match(r"\[ *\d+\.\d+\] ", line)], [])
        self.output_file.write_text("")


class WaylandKeyboard(OnWayland):
    """The compositor is itself a window on the virtual screen, and its keyboard that of the screen."""
    backend = ("--backend=x11-backend.so", "--use-pixman")

    def test_a_place_is_found_and_chosen_with_the_keyboard(self):
        for name, frame in FRAMES.items():
            with self.subTest(name):
                self.start(**frame)
                w.until(lambda: self.window.focused(w.QUERY), "the search field has the keyboard")
                self.window.type(w.QUERY, "Neustadt")
                self.window.key(w.KEY_RETURN)
                self.window.says(CHOOSE)
                self.window.key(w.KEY_DOWN)
                self.window.says(CHOSEN)
                self.window.press(w.DOWNLOAD)
                self.window.says(FINISHED)
                self.end()

    def test_escape_closes_the_dialog(self):
        for name, frame in FRAMES.items():
            with self.subTest(name):
                self.start(**frame)
                w.until(lambda: self.window.focused(w.QUERY), "the search field has the keyboard")
                self.window.press(w.LANGUAGE)
                self.window.control(APPLY)
                with self.window.leaving(APPLY):
                    self.window.key(w.KEY_ESCAPE)
                w.until(lambda: self.window.find(APPLY) is None, "the dialog has gone")
                self.end()


if __name__ == "__main__":
    unittest.main()
