"""The stand-in importer: what it accepts, and how little it takes to be refused."""
import json
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "sandbox"))
import processes  # noqa: E402

IMPORTER = ROOT / "sandbox/Norvaxel-Ortsimport"
UUID = "01234567-89AB-CDEF-0123-456789ABCDEF"
BERLIN = {"type": "Feature", "properties": {"name": "Berlin"},
          "geometry": {"type": "Point", "coordinates": [13.3951, 52.5174]}}
STATIONS = {"stations": [{"lat": 52.5251, "lon": 13.3694, "name": "Berlin Hauptbahnhof"},
                         {"lat": 48.1402, "lon": 11.5583, "name": "München Hauptbahnhof"}]}


class Importing(unittest.TestCase):
    job_name, log_name = f"Norvaxel-Ortsimport-{UUID}", "import.log"

    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory())).resolve()
        self.place_job(self.job_name)
        self.packages = self.folder / "Ortsdaten"
        self.packages.mkdir()
        self.output = self.packages / "berlin-20260102-030405-0A1B2C"
        self.environment = {"NORVAXEL_SANDBOX_SECONDS": "0"}

    def place_job(self, name):
        self.job = self.folder / name
        self.job.mkdir(mode=0o700, exist_ok=True)
        self.write("photon-selected.json", {"type": "FeatureCollection", "features": [BERLIN]})
        self.write("photon-search.json", {"type": "FeatureCollection", "features": [BERLIN, BERLIN]})

    def write(self, name, content, **how):
        (self.job / name).write_text(json.dumps(content, **how), encoding="utf-8")

    def words(self):
        return ["--fetch", "--place", "Berlin", "--geocoder-input", str(self.job / "photon-selected.json"),
                "--result-index", "1", "--radius-km", "0.8", "--output", str(self.output), "--osm-api", "--3d"]

    def start(self, words=None, log_mode=0o600, stdin=subprocess.DEVNULL, **streams):
        descriptor = os.open(self.job / self.log_name, os.O_CREAT | os.O_WRONLY | os.O_TRUNC, log_mode)
        try:
            return processes.start([IMPORTER, *(self.words() if words is None else words)], cwd=self.job,
                                   stdin=stdin, **{"stdout": descriptor, "stderr": descriptor, **streams},
                                   env=self.environment)
        finally:
            os.close(descriptor)

    def finish(self, **how):
        """(exit status, log) of an import."""
        with self.start(**how) as child:
            return child.wait(30), self.log()

    def log(self):
        return (self.job / self.log_name).read_text(encoding="utf-8", errors="replace")

    def assert_refused(self, because, **how):
        status, log = self.finish(**how)
        self.assertEqual(status, 1, log)
        self.assertRegex(log, r"\AFEHLER: [^\n]+\n\Z")
        self.assertIn(because, log)
        self.assertFalse(self.output.exists() and any(self.output.iterdir()), "nothing was written")

    def assert_refused_with(self, because, *changes):
        """Refused with each change (position, word) of the right command line."""
        for position, *instead in changes:
            with self.subTest(position=position, instead=str(instead)[:40]):
                right = self.words()
                self.assert_refused(because, words=right[:position] + instead + right[position + 1:])

    def assert_every_word_matters(self):
        for position, word in enumerate(self.words()):
            self.assert_refused_with("", (position,), (position, word, word), (position, word + " "))

    def files(self):
        return {str(each.relative_to(self.output)) for each in self.output.rglob("*") if each.is_file()}


class RouteImporting(Importing):
    job_name, log_name = f"Norvaxel-Route-{UUID}", "route.log"

    def setUp(self):
        super().setUp()
        (self.folder / "Routen").mkdir()
        self.output = self.folder / "Routen" / "berlin-munchen-20260102-030405-0A1B2C3D"
        self.write_stations(STATIONS)

    def write_stations(self, document):
        self.write("stations.json", document, indent=4)

    def words(self):
        return ["--route", "--stations", str(self.job / "stations.json"), "--output", str(self.output),
                "--endpoint", "https://example.org/route/v1/driving", "--3d"]


class PlaceImport(Importing):
    def test_a_right_import_leaves_a_package(self):
        status, log = self.finish()
        self.assertEqual(status, 0, log)
        self.assertTrue(log.endswith("Fertig: 100 %\n"))
        self.assertNotIn("FEHLER", log)
        self.assertEqual(self.files(), {"origin.nxd", "norvaxel3d.json", "buildings.nxd", "roads.nxd", "terrain.nxd"})
        origin = json.loads((self.output / "origin.nxd").read_text(encoding="utf-8"))
        self.assertEqual((origin["name"], origin["lon"], origin["lat"], origin["radius_m"]),
                         ("Berlin", 13.3951, 52.5174, 800))

    def test_a_data_service_is_accepted_in_place_of_the_direct_one(self):
        self.assert_refused_with("HTTPS", *((11, "--endpoint", address) for address in (
            "http://example.org/", "https://a@example.org/", "https://a:b@example.org/", "https://", "example.org")))
        words = self.words()
        words[11:12] = ["--endpoint", "https://example.org/api?x=1"]
        self.assertEqual(self.finish(words=words)[0], 0)

    def test_every_word_of_the_command_line_matters(self):
        self.assert_every_word_matters()
        right = self.words()
        for first in range(0, len(right) - 1):
            with self.subTest(exchanged=right[first]):
                self.assert_refused("", words=[*right[:first], right[first + 1], right[first], *right[first + 2:]])
        self.assert_refused("", words=[])

    def test_a_wrong_value_is_told(self):
        for position, value, because in (
                (2, "", "Ort"), (2, "x" * 301, "zu lang"), (8, "0.5", "Umkreis"), (8, "2", "Umkreis"),
                (6, "2", "Argument 7"), (4, "photon-selected.json", "Arbeitsordner"),
                (4, "/etc/photon-selected.json", "Arbeitsordner"), (10, "berlin", "voller Pfad"),
                (10, str(self.folder / "Routen" / self.output.name), "Ortsdaten fehlt")):
            self.assert_refused_with(because, (position, value))

    def test_a_package_folder_has_its_agreed_name_and_is_new(self):
        for name in ("Berlin-20260102-030405-0A1B2C", "berlin-20260102-030405-0a1b2c", "berlin-20260102-030405",
                     "-berlin-20260102-030405-0A1B2C", "ber--lin-20260102-030405-0A1B2C",
                     "x" * 43 + "-20260102-030405-0A1B2C", "berlin-20260102-030405-0A1B2C3D"):
            with self.subTest(name):
                self.output = self.packages / name
                self.assert_refused("ungewöhnlich")
        self.output = self.packages / ("x" * 42 + "-20260102-030405-0A1B2C")
        self.output.mkdir()
        self.assert_refused("besteht schon")
        self.output.rmdir()
        self.assertEqual(self.finish()[0], 0)

    def test_the_hand_over_must_hold_the_one_chosen_place(self):
        collection = {"type": "FeatureCollection", "features": [BERLIN]}
        for selected, because in (
                ({**collection, "features": [BERLIN, BERLIN]}, "nicht genau einen"),
                ({**collection, "features": [{"geometry": {"type": "Point", "coordinates": [13, 91]}}]},
                 "nicht auf der Erde"),
                ({**collection, "features": [{"type": "Feature"}]}, "kein Punkt"),
                ({**collection, "features": [{"geometry": {"type": "Point"}}]}, "keine Koordinaten"),
                ({**collection, "features": [{**BERLIN, "id": 1}]}, "steht nicht in der Antwort")):
            with self.subTest(because):
                self.write("photon-selected.json", selected)
                self.assert_refused(because)
        self.write("photon-selected.json", collection, indent=1)
        self.assert_refused("nicht kompakt")
        (self.job / "photon-selected.json").write_text("{")
        self.assert_refused("kein JSON")
        for name in ("photon-selected.json", "photon-search.json"):
            self.place_job(self.job_name)
            (self.job / name).unlink()
            self.assert_refused(f"{name} fehlt")

    def test_the_job_folder_must_be_private_and_named_as_agreed(self):
        self.job.chmod(0o755)
        self.assert_refused("nicht privat")
        for name in (UUID, f"Norvaxel-Ortsimport-{UUID.lower()}", f"Norvaxel-Route-{UUID}"):
            with self.subTest(name):
                self.place_job(name)
                self.assert_refused("Arbeitsordner")

    def test_the_streams_must_be_as_agreed(self):
        self.assert_refused("Nullgerät", stdin=None if os.isatty(0) else subprocess.PIPE)
        with open(self.folder / "other", "wb") as other:
            self.assertEqual(self.finish(stderr=other)[0], 1)
        self.assertIn("nicht nach import.log", self.log())
        (self.job / "import.log").unlink()
        self.assert_refused("nicht privat", log_mode=0o644)


class RouteImport(RouteImporting):
    def test_a_right_route_leaves_a_package_for_each_way_to_travel(self):
        for number, travel in enumerate(([], ["--travel", "rail"], ["--travel", "flight"])):
            with self.subTest(travel):
                self.output = self.output.with_name(f"a-20260102-030405-0000000{number}")
                status, log = self.finish(words=self.words() + travel)
                self.assertEqual(status, 0, log)
                self.assertEqual(self.files(), {"route.nxd", "stations.nxd", "basemap/origin.nxd",
                                                "basemap/norvaxel3d.json"})
                route = json.loads((self.output / "route.nxd").read_text(encoding="utf-8"))
                self.assertEqual(route["travel"], travel[1] if travel else "car")
                self.assertEqual(route["line"], [[13.3694, 52.5251], [11.5583, 48.1402]])

    def test_every_word_of_the_command_line_matters(self):
        self.assert_every_word_matters()
        self.assert_refused_with("", (8, "--travel"), (8, "--travel", "car"), (8, "--travel", "rail "),
                                 (8, "--travel ", "rail"), (8, "rail"), (8, "--with-map"))

    def test_a_routing_address_is_bare(self):
        self.assert_refused_with("Routingdienst", *((6, address) for address in (
            "https://example.org/?", "https://example.org/?a=b", "https://example.org/#", "https://example.org/#a",
            "http://example.org/", "https://a@example.org/")))

    def test_the_stations_must_be_right(self):
        one, two = STATIONS["stations"]
        for stations, because in (
                ([one], "2 bis 32"), ([one, {"lat": 1, "lon": 2}], "Schlüssel"),
                ([one, {"name": "a", "lat": 1, "lon": 2}], "Reihenfolge"), ([one, {**two, "name": ""}], "Stationsname"),
                ([one, {**two, "lat": 90.5}], "nicht auf der Erde")):
            with self.subTest(because):
                self.write_stations({"stations": stations})
                self.assert_refused(because)
        self.write_stations({**STATIONS, "more": 1})
        self.assert_refused("enthält anderes")
        self.write("stations.json", STATIONS)
        self.assert_refused("nicht eingerückt")
        self.write_stations({"stations": [one, {**two, "name": "a" * 200}] * 16})
        self.assertEqual(self.finish()[0], 0, "32 stations and a name of 200 are accepted")


class Conduct(Importing):
    def test_it_takes_its_time(self):
        self.environment["NORVAXEL_SANDBOX_SECONDS"] = "1"
        begin = time.monotonic()
        self.assertEqual(self.finish()[0], 0)
        self.assertGreaterEqual(time.monotonic() - begin, 1)

    def test_it_ends_at_once_when_asked_and_leaves_everything_as_it_lies(self):
        self.environment["NORVAXEL_SANDBOX_SECONDS"] = "60"
        child = self.start()
        while not self.output.exists():
            self.assertIsNone(child.poll())
        child.terminate()
        self.assertEqual(child.wait(30), -signal.SIGTERM)
        self.assertTrue(self.output.exists() and (self.job / "photon-selected.json").exists())

    def test_each_way_to_fail_does_what_it_says(self):
        for mode, status, in_log in (("fail", 1, "FEHLER: Der Datendienst"), ("fail-many", 1, "FEHLER: Nur dieser"),
                                     ("fail-silently", 3, "Es wird nichts"), ("fail-mute", 3, ""),
                                     ("latin1-log", 1, "Gr\ufffd\ufffde"), ("crash-by-signal", -signal.SIGSEGV, ""),
                                     ("fail-long", 1, "🎬 <b>Ende</b>"), ("no-such-mode", 1, "unbekannte")):
            with self.subTest(mode):
                self.environment["NORVAXEL_SANDBOX_IMPORT"] = mode
                ended, log = self.finish()
                self.assertEqual(ended, status)
                self.assertIn(in_log, log)
                self.assertFalse(self.output.exists())

    def test_a_package_can_lack_its_description(self):
        self.environment["NORVAXEL_SANDBOX_IMPORT"] = "missing-file"
        self.assertEqual(self.finish()[0], 0)
        self.assertTrue((self.output / "origin.nxd").exists())
        self.assertFalse((self.output / "norvaxel3d.json").exists())

    def test_it_can_write_a_log_of_any_size(self):
        self.environment.update(NORVAXEL_SANDBOX_IMPORT="flood", NORVAXEL_SANDBOX_BYTES="5000000")
        status, log = self.finish()
        self.assertEqual(status, 1)
        self.assertEqual(len(log.encode()), 5000000 + len("\nFEHLER: Nach vielen Zeilen gescheitert\n"))

    def test_it_can_ignore_the_request_to_end(self):
        record = self.folder / "record.jsonl"
        self.environment.update(NORVAXEL_SANDBOX_IMPORT="ignore-term", NORVAXEL_SANDBOX_RECORD=str(record))
        child = self.start()
        while not record.exists() or '"ignoring"' not in record.read_text():
            self.assertIsNone(child.poll())
        child.terminate()
        with self.assertRaises(subprocess.TimeoutExpired):
            child.wait(0.3)
        child.kill()
        child.wait()

    def test_it_records_how_it_was_started(self):
        record = self.folder / "record.jsonl"
        self.environment["NORVAXEL_SANDBOX_RECORD"] = str(record)
        self.assertEqual(self.finish()[0], 0)
        started, finished = map(json.loads, record.read_text(encoding="utf-8").splitlines())
        self.assertEqual((started["event"], finished["event"]), ("started", "finished"))
        self.assertEqual(started["argv"], [str(IMPORTER), *self.words()])
        self.assertEqual(started["cwd"], str(self.job))
        self.assertEqual(started["descriptors"], {"0": "/dev/null", "1": str(self.job / "import.log"),
                                                  "2": str(self.job / "import.log")})
        self.assertLessEqual({"NORVAXEL_SANDBOX_RECORD", "NORVAXEL_SANDBOX_SECONDS"}, set(started["environment"]))
        self.assertEqual(started["hand_over"]["photon-search.json"]["mode"], "0o644")


if __name__ == "__main__":
    unittest.main()
