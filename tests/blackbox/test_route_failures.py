"""A route that fails: what is said, and what is left."""
import unittest

from harness import mode, w
from routes import BERLIN, FAILURE_TITLE, RouteCase, failed


class RouteFailed(RouteCase):
    """What is found out from how the importer ended."""

    def assert_fails(self, message):
        self.window.press(w.CALCULATE)
        w.until(lambda: self.window.find(("alert", FAILURE_TITLE)), "an alert shows", w.SECONDS, self.window.describe)
        self.assert_alert(FAILURE_TITLE, message)
        self.assert_says_in_red(message)
        self.assert_idle()
        self.assertIsNone(self.window.find(w.FINDER))
        self.assertFalse((self.support / "last-route.txt").exists())
        self.assert_nothing_temporary()

    def test_what_the_importer_said_is_told_and_its_log_kept_private(self):
        text = b"FEHLER: zuerst\nFEHLER: Station 2 (https://a.example/x?y=1) fehlt \nund mehr\n"
        log = self.folder / "log"
        log.write_bytes(text)
        self.importer_behaves("log", LOG=log)
        self.start_round_trip()
        self.assert_fails(failed("Station 2 ([Datendienst] fehlt"))
        kept = self.support / "letzter-import.log"
        self.assertEqual(kept.read_bytes(), text)
        self.assertEqual(mode(kept) & 0o077, 0)
        self.assertEqual(self.stations(), [f"1 · {BERLIN}", f"2 · {BERLIN}"])

    def test_a_huge_log_costs_no_memory(self):
        size = 256 << 20
        log = self.folder / "log"
        log.write_bytes(b"\nFEHLER: Zu viele Kacheln\n")
        self.importer_behaves("log", LOG=log, BYTES=size)
        self.start_round_trip()
        before = self.peak_memory()
        self.assert_fails(failed("Zu viele Kacheln"))
        self.assertLess(self.peak_memory() - before, 16 << 20)
        self.assertEqual((self.support / "letzter-import.log").stat().st_size, size + log.stat().st_size)


if __name__ == "__main__":
    unittest.main()
