"""Stopping a route by “Abbrechen”, whatever the importer does about it, and going on afterwards."""
import os
import pathlib
import signal
import time
import unittest

from harness import processes, w
from routes import CANCELLED, COMPUTING, FINISHED, RouteCase


class Stopping(RouteCase):
    def cancel(self):
        self.window.press(w.CANCEL)

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
            self.cancel()
            self.importer_event("obeyed", number)
            self.assert_stopped(leader)

    def test_an_importer_that_ignores_the_request_is_killed_after_two_seconds(self):
        self.importer_behaves("ignore-term")
        self.start_round_trip()
        leader = self.start_computing()
        self.importer_event("ignoring")
        begin = time.monotonic()
        self.cancel()
        self.window.says(CANCELLED)
        self.assertGreater(time.monotonic() - begin, 1.9, "it is given its time")
        self.assert_stopped(leader)

    def test_children_of_an_importer_that_obeys_are_ended_with_it(self):
        self.importer_behaves("children", SECONDS=60)
        self.start_round_trip()
        leader = self.start_computing()
        child = self.importer_event("child")["pid"]
        self.assertEqual(sorted(processes.group(leader)), sorted([leader, child]))
        self.cancel()
        self.assert_stopped(leader)

    def test_children_of_an_importer_that_ends_by_itself_are_left_alone(self):
        self.importer_behaves("children", SECONDS=0)
        self.start_round_trip()
        self.compute()
        leader, child = self.importer_event()["pid"], self.importer_event("child")["pid"]
        self.assertEqual(processes.group(leader), [child], "it was nobody's wish to stop it")
        os.kill(child, signal.SIGKILL)
        self.assert_group_gone(leader)

    def test_an_importer_that_floods_its_log_is_stopped(self):
        self.importer_behaves("flood-on")
        self.start_round_trip()
        leader = self.start_computing()
        self.importer_event("flooding")
        self.cancel()
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
        self.cancel()
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

    def test_a_cancel_while_nothing_runs_has_no_effect(self):
        self.start_round_trip()
        said = self.window.labels()
        self.window.key(w.KEY_ESCAPE)
        # A key that comes later and is seen.
        self.window.select(w.STATIONS, 1)
        self.window.key(w.KEY_HOME)
        w.until(lambda: self.window.selected_row(w.STATIONS) == 0, "the key moves the selection")
        self.assertEqual(self.window.labels(), said)
        self.assert_idle()

    def test_a_cancelled_search_leaves_the_stations_and_can_be_repeated(self):
        self.start_round_trip()
        self.geocoder_behaves({"hang": True})
        self.window.press(w.SEARCH)
        w.until(lambda: len(self.requests()) == 2, "the search is under way")
        self.cancel()
        self.assert_says_in_grey("Suche abgebrochen.")
        self.window.says("Suche abgebrochen")
        w.until(lambda: self.requests("abandoned"), "curl was stopped")
        self.assert_idle()
        self.assertEqual(len(self.stations()), 2)
        self.geocoder_behaves({})
        self.search("Wien")
        self.compute()


if __name__ == "__main__":
    unittest.main()
