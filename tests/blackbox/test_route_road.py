"""A route from its stations to its package: the list, the three ways to travel, every trace of it."""
import json
import pathlib
import unittest

from harness import mode, w
from routes import BERLIN, FINISHED, MUNICH, PROGRESS, RouteCase, numbered
from test_place_road import UUID, assert_handed_over

ROUTING = "https://routing.openstreetmap.de/routed-car/route/v1/driving"
TRAVEL = (("car", w.CAR, "Route, Gebäude", []), ("train", w.TRAIN, "Gleisverlauf, Gebäude", ["--travel", "rail"]),
          ("flight", w.FLIGHT, "Flugbogen, Gebäude", ["--travel", "flight"]))


class RouteRoad(RouteCase):
    def test_each_way_to_travel_leaves_exactly_the_package_the_pointer_and_the_log(self):
        gate = self.folder / "gate"
        self.start_route(BERLIN, MUNICH, NORVAXEL_SANDBOX_GATE=gate)
        for number, (travel, segment, along, words) in enumerate(TRAVEL):
            with self.subTest(travel):
                gate.unlink(missing_ok=True)
                self.window.press(segment)
                self.window.press(w.CALCULATE)
                self.assert_says_in_grey(PROGRESS.format(along))
                started = self.importer_event(number=number)
                self.assert_started_as_agreed(started, words)
                self.assert_locked()
                gate.touch()
                self.assert_says_in_grey(FINISHED)
                self.assert_finished(pathlib.Path(started["argv"][5]), travel)
                self.assert_idle()
        self.assertEqual(len(self.packages()), 3)
        self.assertEqual(self.stations(), numbered(BERLIN, MUNICH), "the stations stay")

    def assert_started_as_agreed(self, started, travel_words):
        job, output = pathlib.Path(started["cwd"]), pathlib.Path(started["argv"][5])
        self.assertEqual(job.parent, self.temporary)
        self.assertRegex(job.name, f"^Norvaxel-Route-{UUID}$")
        self.assertEqual(mode(job), 0o700)
        self.assertEqual(started["argv"], [str(self.importer), "--route", "--stations", f"{job}/stations.json",
                                           "--output", str(output), "--endpoint", ROUTING, "--3d", *travel_words])
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

    def assert_locked(self):
        for control in (w.QUERY, w.SEARCH, w.LANGUAGE, w.CALCULATING, w.PLACE_MODE, w.ROUTE_MODE, w.ADD_STATION,
                        w.REMOVE_STATION, w.STATION_UP, w.STATION_DOWN, w.ROUTING_FIELD, w.CAR, w.TRAIN, w.FLIGHT,
                        w.RESULTS, w.STATIONS):
            self.assertFalse(self.window.enabled(control), control[1])
        self.assertTrue(self.window.enabled(w.CANCEL))
        self.assertIsNone(self.window.find(w.FINDER), "there is no finished package while one is made")

    def assert_finished(self, package, travel):
        files = {str(file.relative_to(package)) for file in package.rglob("*") if file.is_file()}
        self.assertEqual(files, {"route.nxd", "stations.nxd", "basemap/origin.nxd", "basemap/norvaxel3d.json"},
                         "no record of a choice is written for a route")
        expected = {"car": "car", "train": "rail", "flight": "flight"}[travel]
        self.assertEqual(json.loads((package / "route.nxd").read_text())["travel"], expected)
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
