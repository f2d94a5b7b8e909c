"""Stopping a route by “Abbrechen”, and by the end of the program."""
import pathlib
import signal
import time
import unittest

import x11
from harness import processes, w
from routes import CANCELLED, COMPUTING, FINISHED, RouteCase


class Stopping(RouteCase):
    def assert_stopped(self, leader):
        self.assert_says_in_grey(CANCELLED)
        self.assert_idle()
        self.assert_group_gone(leader)
        self.assertIsNone(self.window.find(w.OK), "there is no alert")
        self.assertIsNone(self.window.find(w.FINDER))
        self.assertFalse((self.support / "last-route.txt").exists())
        self.assertTrue((self.support / "letzter-import.log").exists())
        self.assertEqual(len(self.stations()), 2, "the stations stay")
        self.assert_nothing_temporary()

    def test_an_importer_that_obeys_is_followed_by_the_window(self):
        self.importer_behaves("tell-end", SECONDS=60)
        self.start_round_trip()
        for number in range(2):
            leader = self.start_computing(number)
            self.importer_event("listening", number)
            self.window.press(w.CANCEL)
            self.importer_event("obeyed", number)
            self.assert_stopped(leader)

    def test_a_cancel_that_meets_the_importers_end_leaves_one_of_two_whole_outcomes(self):
        gate = self.folder / "gate"
        self.start_round_trip(NORVAXEL_SANDBOX_GATE=gate)
        for number in range(4):
            with self.subTest(number):
                gate.unlink(missing_ok=True)
                leader = self.start_computing(number)
                # Both wait for the program while it stands still: the importer's end, and the key.
                self.program.send_signal(signal.SIGSTOP)
                gate.touch()
                self.importer_event("finished", number)
                self.assert_group_gone(leader)
                self.window.key(w.KEY_ESCAPE)
                self.program.send_signal(signal.SIGCONT)
                outcome = w.until(lambda: next((text for text in (CANCELLED, FINISHED)
                                                if self.window.find(("label", text))), None),
                                  "the route is cancelled or finished", w.SECONDS, self.window.describe)
                pointer = self.support / "last-route.txt"
                self.assertEqual(pointer.exists(), outcome == FINISHED)
                self.assertEqual(self.window.find(w.FINDER) is not None, outcome == FINISHED)
                self.assert_idle()
                self.assertIsNone(self.window.find(w.OK))
                self.assert_nothing_temporary()
                pointer.unlink(missing_ok=True)

    def test_the_end_of_a_stopped_route_does_not_touch_the_next(self):
        gate = self.folder / "gate"
        self.start_round_trip(NORVAXEL_SANDBOX_GATE=gate)
        first = self.start_computing()
        self.window.press(w.CANCEL)
        stopped = time.monotonic()
        second = self.start_computing(number=1)
        self.assert_group_gone(first)
        # Past the moment at which the first would have been killed had it not obeyed.
        while time.monotonic() < stopped + 2.3:
            self.window.says(COMPUTING, 0)
            self.assertTrue(self.window.enabled(w.CANCEL))
            self.assertEqual(processes.group(second), [second])
        gate.touch()
        self.window.says(FINISHED)
        self.assertEqual(len(self.importer_events("finished")), 1)
        package = pathlib.Path(self.importer_events()[1]["argv"][5])
        self.assertEqual((self.support / "last-route.txt").read_text(), f"{package}/route.nxd\n")
        self.assert_idle()
        self.assert_nothing_temporary()


class Quitting(RouteCase):
    def test_by_every_road_while_a_job_runs(self):
        roads = {"the window's button": lambda: x11.close_window(self.program.pid),
                 "Ctrl+Q": lambda: x11.press("Ctrl+q"), "Ctrl+W": lambda: x11.press("Ctrl+w")}
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            roads[number.name] = lambda number=number: self.program.send_signal(number)
        for name, road in roads.items():
            with self.subTest(name):
                self.record_file.unlink(missing_ok=True)
                self.start_round_trip(NORVAXEL_SANDBOX_SECONDS="60")
                leader = self.start_computing()
                road()
                self.assert_ended_well()
                self.assertEqual(processes.group(leader), [])
                self.assertTrue((self.support / "letzter-import.log").exists())
                self.assertFalse((self.support / "last-route.txt").exists())
                self.assert_nothing_temporary()

    def test_a_crash_takes_the_importer_along(self):
        self.start_round_trip(NORVAXEL_SANDBOX_SECONDS="60")
        leader = self.start_computing()
        self.program.kill()
        self.expected_exit = -signal.SIGKILL
        self.assert_ended_well()
        self.assert_group_gone(leader)


if __name__ == "__main__":
    unittest.main()
