"""The schemas of the hand-over files: their examples fit, little else does, and the stand-in agrees."""
import copy
import functools
import importlib.machinery
import importlib.util
import json
import operator
import re
import shutil
import unittest

import jsonschema

import schemas
import test_importer

REQUIRED = {"Ortsdaten": {"origin.nxd", "norvaxel3d.json"},
            "Routen": {"route.nxd", "stations.nxd", "basemap/origin.nxd", "basemap/norvaxel3d.json"}}
POINT = ("features/0", "features/0/geometry", "features/0/geometry/type", "features/0/geometry/coordinates",
         "features/0/geometry/coordinates/0", "features/0/geometry/coordinates/1")
# What must be there, and of its own type.
MEMBERS = {"photon-selected": ("type", "features", *POINT),
           "photon-search": ("features", *POINT),
           "stations": ("stations", "stations/0", "stations/1/lat", "stations/1/lon", "stations/1/name"),
           "import-choice": ("cli_result_index", "endpoint", "name", "query", "radius_km", "selected_feature_input",
                             "selected_result", "source")}
# Objects that have no other members than these.
CLOSED = {"photon-selected": ("",), "photon-search": (), "stations": ("", "stations/0"), "import-choice": ("",)}
OFF_THE_EARTH = [("features/0/geometry/coordinates/" + place) for place in (
    "0=180.001", "0=-180.001", "1=90.001", "1=-90.001")]
BLANKS = "\t\n\r \x85\xa0\u2003\u2028\u3000"
UNTRIMMED = ['""', *(json.dumps(text) for blank in BLANKS for text in (blank, blank + "a", "a" + blank))]
# Values out of their range, as JSON.
OUT_OF_RANGE = {
    "photon-selected": [*OFF_THE_EARTH, 'type="Feature"', "features=[]", 'features/0/geometry/type="LineString"'],
    "photon-search": [*OFF_THE_EARTH, "features=[]", 'features/0/geometry/type="Polygon"'],
    "stations": ["stations/0/lat=90.001", "stations/0/lat=-90.001", "stations/1/lon=180.001",
                 "stations/1/lon=-180.001", "stations=[]", f'stations/0/name="{"x" * 201}"',
                 *(f"stations/1/name={name}" for name in UNTRIMMED)],
    "import-choice": ["cli_result_index=0", "cli_result_index=2", "selected_result=0", "selected_result=9",
                      'radius_km="0.5"', 'radius_km="2"', 'selected_feature_input="photon-selected.json"',
                      'source=""', f'query="{"x" * 301}"', *(f"query={name}" for name in UNTRIMMED),
                      *(f"name={name}" for name in UNTRIMMED),
                      *(f'endpoint="{address}"' for address in (
                          "", "http://example.org/", "https://", "https:///api", "https://:443/",
                          "https://a@example.org/", "https://@example.org/", "https://a:b@example.org/",
                          "https://exa mple.org/", " https://example.org/", "https://example.org/ ",
                          "https://example.org/\\n"))]}
GONE = object()


def steps(path):
    return [int(step) if step.isdigit() else step for step in path.split("/") if step]


def at(document, path):
    return functools.reduce(operator.getitem, steps(path), document)


def changed(document, path, value):
    """A copy of the document with another value, or none, at the path."""
    if not path:
        return value
    document = copy.deepcopy(document)
    outer, _, _ = path.rpartition("/")
    if value is GONE:
        del at(document, outer)[steps(path)[-1]]
    else:
        at(document, outer)[steps(path)[-1]] = value
    return document


def right(name):
    """The example; of the answer's features only one, so that breaking it leaves no right one."""
    document = schemas.example(name)
    if name == "photon-search":
        document["features"] = document["features"][1:]
    return document


def broken(name):
    """(what is wrong, document) for every way in which a file of that name is to be refused."""
    document = right(name)
    for path in MEMBERS[name]:
        yield f"{path} is missing", changed(document, path, GONE)
    for path in ("", *MEMBERS[name]):
        for other in (None, True, 7.5, "x", [], {}):
            if type(other) is not type(at(document, path)):
                yield f"{path or 'all'} is {json.dumps(other)}", changed(document, path, other)
    for path in CLOSED[name]:
        yield f"{path or 'all'} has one member more", changed(document, f"{path}/more".strip("/"), 1)
    for change in OUT_OF_RANGE[name]:
        path, value = change.split("=", 1)
        yield change[:60], changed(document, path, json.loads(value))
    if name == "photon-selected":
        yield "two places", changed(document, "features", 2 * document["features"])
    if name == "stations":
        yield "33 stations", changed(document, "stations", 33 * document["stations"][:1])


class Schemas(unittest.TestCase):
    def test_there_is_a_schema_and_an_example_for_each_file_and_no_other(self):
        self.assertEqual({file.name for file in schemas.FOLDER.glob("*.json")},
                         {f"{name}.schema.json" for name in schemas.NAMES})
        self.assertEqual({file.name for file in (schemas.FOLDER / "examples").iterdir()},
                         {f"{name}.json" for name in schemas.NAMES})

    def test_each_schema_is_one(self):
        for name in schemas.NAMES:
            with self.subTest(name):
                schema = schemas.schema(name)
                self.assertEqual(schema["$schema"], jsonschema.Draft202012Validator.META_SCHEMA["$id"])
                jsonschema.Draft202012Validator.check_schema(schema)
                self.assertEqual(schema["title"], f"{name}.json")

    def test_each_example_fits_and_is_written_as_the_program_writes(self):
        for name in schemas.NAMES:
            with self.subTest(name):
                document = schemas.example(name)
                self.assertEqual(schemas.problems(name, document), [])
                raw = schemas.example_bytes(name).decode("utf-8")
                if name in ("stations", "import-choice"):
                    self.assertEqual(raw, json.dumps(document, ensure_ascii=False, indent=4, sort_keys=True) + "\n")
                elif name == "photon-selected":
                    self.assertEqual(raw, json.dumps(document, ensure_ascii=False, separators=(",", ":"),
                                                     sort_keys=True))
        self.assertIn(schemas.example("photon-selected")["features"][0], schemas.example("photon-search")["features"])

    def test_each_broken_example_is_refused(self):
        for name in schemas.NAMES:
            self.assertEqual(schemas.problems(name, right(name)), [])
            for what, document in broken(name):
                with self.subTest(name, wrong=what):
                    self.assertNotEqual(schemas.problems(name, document), [])

    def test_what_lies_on_a_limit_fits(self):
        edge = "features/0/geometry/coordinates"
        for name, path, value in (
                ("photon-selected", edge, [180, -90]), ("photon-selected", edge, [-180.0, 90, 34.5, 0]),
                ("photon-search", edge, [180, -90]), ("stations", "stations/0/lat", -90),
                ("stations", "stations/1/lon", 180), ("stations", "stations/0/name", "x" * 200),
                ("stations", "stations/0/name", "a b\nc"), ("import-choice", "selected_result", 1),
                ("import-choice", "selected_result", 8), ("import-choice", "radius_km", "0.4"),
                ("import-choice", "query", "--3d"), ("import-choice", "query", "🎬" * 150),
                ("import-choice", "endpoint", "HTTPS://[::1]:8443/api?zone=1#top"),
                ("import-choice", "endpoint", "https://karten.example.org")):
            with self.subTest(name, path=path, value=str(value)[:20]):
                self.assertEqual(schemas.problems(name, changed(right(name), path, value)), [])
        stations = schemas.example("stations")["stations"]
        self.assertEqual(schemas.problems("stations", {"stations": 16 * stations}), [])

    def test_what_the_geocoder_adds_or_leaves_out_is_its_own_affair(self):
        for name in ("photon-selected", "photon-search"):
            for path, value in (("features/0/type", GONE), ("features/0/properties", GONE),
                                ("features/0/properties", [1]), ("features/0/id", 7),
                                ("features/0/properties/name", None), ("features/0/geometry/more", {})):
                with self.subTest(name, path=path):
                    self.assertEqual(schemas.problems(name, changed(right(name), path, value)), [])
        answer = schemas.example("photon-search")
        answer["features"] += [None, {"geometry": None}, {"geometry": {"type": "Point", "coordinates": [200, 0]}}]
        self.assertEqual(schemas.problems("photon-search", {**answer, "type": 1, "more": 2}), [])


class StandInForPlaces(test_importer.Importing):
    """The stand-in keeps to the same papers as the importer itself has to."""

    parent, handed_over = "Ortsdaten", ("photon-selected", "photon-search")

    def place_examples(self):
        """And what a case left that was wrongly accepted does not stand in the next one's way."""
        shutil.rmtree(self.output, ignore_errors=True)
        for name in self.handed_over:
            (self.job / f"{name}.json").write_bytes(schemas.example_bytes(name))

    def test_the_examples_become_a_package_with_every_required_file(self):
        self.place_examples()
        self.assertEqual(self.finish()[0], 0, self.log())
        self.assertLessEqual(REQUIRED[self.parent], self.files())
        contract = (schemas.FOLDER.parent / "importer.md").read_text(encoding="utf-8")
        for name in REQUIRED[self.parent]:
            self.assertIn(f"`{name}`", contract)

    def test_a_broken_example_is_refused(self):
        for name, what, document in ((name, *each) for name in self.handed_over for each in broken(name)):
            with self.subTest(name, wrong=what):
                self.place_examples()
                if name == "stations":
                    self.write_stations(document)
                else:
                    self.write(f"{name}.json", document, separators=(",", ":"))
                if name == "photon-selected":
                    # The answer holds what was chosen, so that nothing but the fault itself is in the way.
                    chosen = document.get("features") if isinstance(document, dict) else None
                    answer = schemas.example("photon-search")["features"] + (chosen if type(chosen) is list else [])
                    self.write("photon-search.json", {"features": answer})
                self.assert_refused("")
                if name != "photon-search":
                    self.assertNotRegex(self.log(), "nicht eingerückt|nicht in der Antwort")


class StandInForRoutes(test_importer.RouteImporting, StandInForPlaces):
    parent, handed_over = "Routen", ("stations",)


class CommandLines(unittest.TestCase):
    """The command lines in the contract are the ones that the stand-in accepts."""

    def test_each_is_accepted(self):
        loader = importlib.machinery.SourceFileLoader("stand_in", str(test_importer.IMPORTER))
        stand_in = importlib.util.module_from_spec(importlib.util.spec_from_loader("stand_in", loader))
        loader.exec_module(stand_in)
        contract = (schemas.FOLDER.parent / "importer.md").read_text(encoding="utf-8")
        examples = [block.splitlines() for block in re.findall(r"```text\n(--.*?)\n```", contract, re.DOTALL)]
        self.assertEqual([words[0] for words in examples], ["--fetch", "--fetch", "--route", "--route"])
        for words in examples:
            with self.subTest(" ".join(words)):
                place = words[0] == "--fetch"
                asked = (stand_in.place_arguments if place else stand_in.route_arguments)(words)
                parent, digits = ("Ortsdaten", 6) if place else ("Routen", 8)
                folder, name = asked["output"].rsplit("/", 1)
                self.assertTrue(folder.endswith(f"/Norvaxel/Norvaxel 3D/{parent}"))
                self.assertRegex(name, f"^{stand_in.SLUG_AND_TIME}[0-9A-F]{{{digits}}}$")


if __name__ == "__main__":
    unittest.main()
