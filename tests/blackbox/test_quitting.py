"""Ending the program by every road there is, whatever it is doing at that moment."""
import signal
import time
import unittest

import x11
from harness import processes, w
from routes import RouteCase, failed

GONE_AFTER = 20  # seconds from the request, when the importer does not obey: two, and a busy machine


class Quitting(RouteCase):
    def roads(self):
        """(name, what asks the program to end) for each road."""
        yield "the window's button", lambda: x11.close_window(self.program.pid)
        yield "Ctrl+Q", lambda: x11.press("Ctrl+q")
        yield "Ctrl+W", lambda: x11.press("Ctrl+w")
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            yield number.name, lambda number=number: self.program.send_signal(number)

    def each_road(self, begin, check=lambda: None):
        """By each road: begins something, ends the program, checks what is left."""
        for name, road in self.roads():
            with self.subTest(name):
                begin()
                road()
                self.assert_ended_well()
                check()
                self.assert_nothing_temporary()

    def test_while_nothing_runs(self):
        def begin():
            self.start()
            w.until(lambda: self.window.focused(w.QUERY), "the window hears keys", w.SECONDS, self.window.describe)
        self.each_road(begin)

    def test_while_it_searches(self):
        def begin():
            self.start()
            seen = len(self.requests())
            self.window.type(w.QUERY, "Berlin")
            self.window.press(w.SEARCH)
            w.until(lambda: len(self.requests()) > seen, "the search is under way")

        def check():
            w.until(lambda: len(self.requests("abandoned")) == len(self.requests()), "curl has ended")
        self.start_geocoder()
        self.geocoder_behaves({"hang": True})
        self.each_road(begin, check)

    def test_while_a_job_runs(self):
        def begin():
            self.record_file.unlink(missing_ok=True)
            self.start_round_trip(NORVAXEL_SANDBOX_SECONDS="60")
            self.leader = self.start_computing()

        def check():
            self.assertEqual(processes.group(self.leader), [])
            self.assertTrue((self.support / "letzter-import.log").exists())
            self.assertFalse((self.support / "last-route.txt").exists())
        self.each_road(begin, check)

    def test_an_importer_that_resists_is_waited_for_and_killed(self):
        self.importer_behaves("ignore-term")
        for name, road in (("the window's button", lambda: x11.close_window(self.program.pid)),
                           ("SIGTERM", self.terminate)):
            with self.subTest(name):
                self.start_resisting()
                begin = time.monotonic()
                road()
                self.assert_waits(begin)

    def terminate(self):
        self.program.terminate()

    def start_resisting(self):
        self.record_file.unlink(missing_ok=True)
        self.start_round_trip()
        self.leader = self.start_computing()
        self.importer_event("ignoring")

    def assert_waits(self, begin):
        """The program ends with the importer, in time."""
        self.assert_ended_well()
        took = time.monotonic() - begin
        self.assertEqual(processes.group(self.leader), [])
        self.assertGreater(took, 1.9, "the importer was given its time")
        self.assertLess(took, GONE_AFTER)
        print(f"gone after {took:.2f} s", end=" ")
        self.assert_nothing_temporary()

    def test_what_the_importer_started_is_ended_as_well(self):
        self.importer_behaves("children", SECONDS=60)
        self.start_round_trip()
        leader = self.start_computing()
        self.importer_event("child")
        self.terminate()
        self.assert_ended_well()
        self.assertEqual(processes.group(leader), [])
        self.assert_nothing_temporary()

    def test_an_importer_that_has_just_ended_does_not_keep_the_program(self):
        gate = self.folder / "gate"
        self.start_round_trip(NORVAXEL_SANDBOX_GATE=gate)
        leader = self.start_computing()
        # Both wait for the program while it stands still: the importer's end, and the request.
        self.program.send_signal(signal.SIGSTOP)
        gate.touch()
        self.assert_group_gone(leader)
        self.terminate()
        self.program.send_signal(signal.SIGCONT)
        self.assert_ended_well()
        self.assert_nothing_temporary()

    def test_an_open_dialog_or_alert_does_not_hold_a_request_up(self):
        def language():
            self.start()
            self.window.press(w.LANGUAGE)
            self.window.control(("push button", "Übernehmen"))

        def alert():
            self.start_round_trip()
            self.compute(failed("Es wird nichts erklärt"))
            self.window.control(w.OK)
        self.importer_behaves("fail-silently")
        for name, begin in (("language", language), ("alert", alert)):
            with self.subTest(name):
                begin()
                self.terminate()
                self.assert_ended_well()

    def test_a_crash_takes_the_importer_along(self):
        self.start_round_trip(NORVAXEL_SANDBOX_SECONDS="60")
        leader = self.start_computing()
        self.program.kill()
        self.expected_exit = -signal.SIGKILL
        self.assert_ended_well()
        self.assert_group_gone(leader)


if __name__ == "__main__":
    unittest.main()
