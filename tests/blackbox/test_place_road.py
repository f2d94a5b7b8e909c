"""The whole road: a place is searched, chosen and imported, and every trace of it is looked at."""
import json
import pathlib
import re
import sys
import unittest

from harness import FINISHED, LOADING, ROOT, BlackBox, mode, w

sys.path.insert(0, str(ROOT / "tests/sandbox"))
import schemas  # noqa: E402

UUID = r"[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"


def assert_as_documented(case, name, text):
    """A file that the program has written is one that its schema describes."""
    case.assertEqual(schemas.problems(name, schemas.read(text)), [], name)


def assert_handed_over(case, started, *names):
    """The importer found these files, each private and as its schema describes, and its log."""
    found = started["hand_over"]
    case.assertEqual({name.removesuffix(".json") for name in found if not name.endswith(".log")}, set(names))
    case.assertEqual({name: facts["mode"] for name, facts in found.items()}, dict.fromkeys(found, "0o600"))
    for name in names:
        assert_as_documented(case, name, found[f"{name}.json"]["text"])


class PlaceRoad(BlackBox):
    def test_the_query_reaches_the_server_as_typed(self):
        self.start()
        self.search("  C++ & #1 100% ä 東京 🎬 ", "Kein Ort gefunden. Ergänze den Namen um Land oder Region.")
        self.assert_says_in_grey("Kein Ort gefunden. Ergänze den Namen um Land oder Region.")
        self.window.says("Keine passenden Orte gefunden")
        self.assertEqual([each["target"] for each in self.requests("connect")], ["photon.komoot.io:443"])
        (request,) = self.requests()
        self.assertEqual((request["method"], request["path"]), ("GET", "/api/"))
        self.assertEqual(request["query"], "q=C%2B%2B%20%26%20%231%20100%25%20%C3%A4%20%E6%9D%B1%E4%BA%AC"
                                           "%20%F0%9F%8E%AC&limit=8&lang=de")
        self.assertEqual(self.asked(), ["C++ & #1 100% ä 東京 🎬"])
        self.assertEqual({name: value for name, value in request["headers"]},
                         {"Host": "photon.komoot.io", "Accept": "application/json",
                          "User-Agent": "Norvaxel-Ortsimport/0.5"})

    def test_an_import_leaves_exactly_the_package_the_pointer_and_the_log(self):
        self.start()
        self.search("Berlin")
        self.window.select(w.RESULTS, 1)
        self.window.choose(w.RADIUS, "1,2 km")
        self.window.press(w.DOWNLOAD)
        self.window.says(FINISHED)
        self.assert_says_in_grey(FINISHED)

        (package,) = self.packages()
        self.assertRegex(package.name, r"^berlin-\d{8}-\d{6}-[0-9A-F]{6}$")
        self.assertEqual(sorted(file.name for file in package.iterdir()),
                         ["buildings.nxd", "import-choice.json", "norvaxel3d.json", "origin.nxd",
                          "photon-search.json", "roads.nxd", "terrain.nxd"])
        started = self.importer_event()
        assert_handed_over(self, started, "photon-selected", "photon-search")
        handed_over = started["hand_over"]
        self.assertEqual((package / "photon-search.json").read_text(encoding="utf-8"),
                         handed_over["photon-search.json"]["text"])
        answer = json.loads(handed_over["photon-search.json"]["text"])
        self.assertEqual(json.loads(handed_over["photon-selected.json"]["text"]),
                         {"type": "FeatureCollection", "features": [answer["features"][1]]})

        choice = (package / "import-choice.json").read_text(encoding="utf-8")
        assert_as_documented(self, "import-choice", choice)
        self.assertEqual(json.loads(choice), {
            "query": "Berlin", "selected_result": 2, "name": "Berlin", "radius_km": "1.2",
            "source": "OpenStreetMap direkt", "endpoint": "https://api.openstreetmap.org/api/0.6/map",
            "selected_feature_input": "geocoder.json", "cli_result_index": 1})
        keys = re.findall(r'^\s+"(\w+)":', choice, re.MULTILINE)
        self.assertEqual(keys, sorted(keys), "each key stands on a line of its own, sorted")
        self.assertEqual(len(keys), 8)

        pointer = self.support / "last-import.txt"
        self.assertEqual(pointer.read_bytes(), f"{package}/origin.nxd\n".encode())
        log = self.support / "letzter-import.log"
        self.assertTrue(log.read_text(encoding="utf-8").startswith("Ortslage: 0 %\n"))
        self.assertTrue(log.read_text(encoding="utf-8").endswith("Fertig: 100 %\n"))
        self.assertEqual(mode(log) & 0o077, 0, "the log stays private")
        self.assertEqual(mode(pointer) & 0o022, 0, "nobody else can redirect the pointer")
        self.assertEqual(sorted(each.name for each in self.support.iterdir()),
                         ["Ortsdaten", "last-import.txt", "letzter-import.log"])
        self.assert_nothing_temporary()
        self.window.control(w.FINDER)
        self.assertIsNone(self.window.find(w.CANCEL))

    def test_the_importer_is_started_as_agreed(self):
        gate = self.folder / "gate"
        self.start(NORVAXEL_SANDBOX_GATE=gate)
        self.search("Köln")
        self.window.select(w.RESULTS, 0)
        self.window.press(w.DOWNLOAD)
        self.window.says(LOADING)
        started = self.importer_event()
        job = pathlib.Path(started["cwd"])
        self.assertEqual(job.parent, self.temporary)
        self.assertRegex(job.name, f"^Norvaxel-Ortsimport-{UUID}$")
        self.assertEqual(mode(job), 0o700)
        output = started["argv"][11]
        self.assertEqual(started["argv"],
                         [str(self.importer), "--fetch", "--place", "Köln", "--geocoder-input",
                          f"{job}/photon-selected.json", "--result-index", "1", "--radius-km", "0.8",
                          "--output", output, "--osm-api", "--3d"])
        self.assertEqual(pathlib.Path(output).parent, self.support / "Ortsdaten")
        self.assertEqual(started["descriptors"], {"0": "/dev/null", "1": f"{job}/import.log",
                                                  "2": f"{job}/import.log"}, "and no other descriptor")
        self.assertEqual(set(started["hand_over"]),
                         {"import.log", "photon-search.json", "photon-selected.json"})
        self.assertEqual(started["hand_over"]["import.log"]["mode"], "0o600")
        self.assertEqual(int(started["signals"]["SigBlk"], 16), 0, "no signal is blocked")
        self.assertEqual(started["parent"], self.program.pid)
        self.assertEqual(set(started["environment"]) - set(self.environment()), {"NORVAXEL_SANDBOX_GATE"},
                         "the environment is the program's own")
        gate.touch()
        self.window.says(FINISHED)
        self.assertEqual(len(self.importer_events()), 1)
        self.assert_nothing_temporary()


if __name__ == "__main__":
    unittest.main()
