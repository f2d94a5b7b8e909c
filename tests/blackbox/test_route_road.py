"""A route from its stations to its package, and every trace of it."""
import json
import pathlib
import unittest

from harness import mode, w
from routes import BERLIN, FINISHED, MUNICH, PROGRESS, RouteCase, numbered
from test_place_road import UUID, assert_handed_over

ROUTING = "https://routing.openstreetmap.de/routed-car/route/v1/driving"


class RouteRoad(RouteCase):
    def test_a_route_leaves_exactly_the_package_the_pointer_and_the_log(self):
        gate = self.folder / "gate"
        self.start_route(BERLIN, MUNICH, NORVAXEL_SANDBOX_GATE=gate)
        self.window.press(w.TRAIN)
        self.window.press(w.CALCULATE)
        self.assert_says_in_grey(PROGRESS.format("Gleisverlauf, Gebäude"))
        started = self.importer_event()
        self.assert_started_as_agreed(started)
        gate.touch()
        self.assert_says_in_grey(FINISHED)
        self.assert_finished(pathlib.Path(started["argv"][5]))
        self.assert_idle()
        self.assertEqual(self.stations(), numbered(BERLIN, MUNICH), "the stations stay")

    def assert_started_as_agreed(self, started):
        job, output = pathlib.Path(started["cwd"]), pathlib.Path(started["argv"][5])
        self.assertEqual(job.parent, self.temporary)
        self.assertRegex(job.name, f"^Norvaxel-Route-{UUID}$")
        self.assertEqual(mode(job), 0o700)
        self.assertEqual(started["argv"], [str(self.importer), "--route", "--stations", f"{job}/stations.json",
                                           "--output", str(output), "--endpoint", ROUTING, "--3d",
                                           "--travel", "rail"])
        self.assertEqual(output.parent, self.support / "Routen")
        self.assertRegex(output.name,
                         r"^berlin-hauptbahnhof-munchen-hauptbahnhof-\d{8}-\d{6}-[0-9A-F]{8}$")
        self.assertEqual(started["descriptors"], {"0": "/dev/null", "1": f"{job}/route.log",
                                                  "2": f"{job}/route.log"}, "and no other descriptor")
        self.assertEqual(set(started["hand_over"]), {"route.log", "stations.json"})
        assert_handed_over(self, started, "stations")
        expected = {"stations": [{"lat": 52.5251, "lon": 13.3694, "name": BERLIN},
                                 {"lat": 48.1402, "lon": 11.5583, "name": MUNICH}]}
        self.assertEqual((job / "stations.json").read_bytes(),
                         (json.dumps(expected, ensure_ascii=False, indent=4) + "\n").encode())
        self.assertEqual(started["parent"], self.program.pid)

    def assert_finished(self, package):
        files = {str(file.relative_to(package)) for file in package.rglob("*") if file.is_file()}
        self.assertEqual(files, {"route.nxd", "stations.nxd", "basemap/origin.nxd", "basemap/norvaxel3d.json"},
                         "no record of a choice is written for a route")
        self.assertEqual(json.loads((package / "route.nxd").read_text())["travel"], "rail")
        self.assertEqual((self.support / "last-route.txt").read_bytes(), f"{package}/route.nxd\n".encode())
        self.assertEqual(sorted(each.name for each in self.support.iterdir()),
                         ["Routen", "last-route.txt", "letzter-import.log"])
        log = self.support / "letzter-import.log"
        self.assertTrue(log.read_text(encoding="utf-8").startswith("Route: 0 %\n"))
        self.assertTrue(log.read_text(encoding="utf-8").endswith("Fertig: 100 %\n"))
        self.assertEqual(mode(log) & 0o077, 0, "the log stays private")
        self.assert_nothing_temporary()
        self.window.control(w.FINDER)


if __name__ == "__main__":
    unittest.main()
