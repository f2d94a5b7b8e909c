"""The local geocoder, asked with the real curl as the program asks it."""
import json
import os
import pathlib
import stat
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "sandbox"))
import gazetteer  # noqa: E402
import processes  # noqa: E402

BERLIN = "https://photon.komoot.io/api/?q=Berlin&limit=8&lang=de"


class Served(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.behaviour = self.folder / "behaviour.json"
        self.private = self.folder / "private"
        self.server = processes.start([ROOT / "sandbox/geocoder", "--folder", self.private,
                                       "--behaviour", self.behaviour],
                                      stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.addCleanup(self.end)
        ready, self.port = self.server.stdout.readline().split()
        self.assertEqual(ready, b"ready")

    def end(self):
        processes.end(self.server)
        self.server.stdin.close()
        self.server.stdout.close()

    def curl(self, *words, authority="authority.pem", **environment):
        """(exit status, standard output) of curl, led here by its environment alone."""
        led = {"PATH": os.environ["PATH"], "https_proxy": f"http://127.0.0.1:{int(self.port)}",
               "CURL_CA_BUNDLE": str(self.private / authority), **environment}
        done = subprocess.run(["curl", "-q", "--silent", "--max-time", "10", *words], env=led,
                              capture_output=True)
        return done.returncode, done.stdout

    def answer(self, address=BERLIN):
        status, output = self.curl("--write-out", "\n%{http_code}", address)
        self.assertEqual(status, 0)
        body, _, code = output.rpartition(b"\n")
        return int(code), body

    def behaves(self, how, query="*"):
        self.behaviour.write_text(json.dumps({query: how}))

    def records(self, kind):
        lines = (self.private / "requests.jsonl").read_text(encoding="utf-8").splitlines()
        return [each for each in map(json.loads, lines) if each["kind"] == kind]


class Answers(Served):
    def test_berlin_is_found_as_photon_would_say_it(self):
        code, body = self.answer()
        self.assertEqual(code, 200)
        found = json.loads(body)
        self.assertEqual((found["type"], len(found["features"])), ("FeatureCollection", 8))
        first = found["features"][0]
        self.assertEqual(first["geometry"], {"type": "Point", "coordinates": [13.3951, 52.5174]})
        self.assertLessEqual({"name": "Berlin", "country": "Deutschland"}.items(), first["properties"].items())

    def test_what_photon_would_not_accept_is_refused(self):
        for query, code in (("q=Berlin&lang=xx", 400), ("limit=8", 400), ("q=%20", 400),
                            ("q=Berlin&limit=x", 400), ("q=Berlin&limit=3", 200), ("q=%FF", 400)):
            with self.subTest(query):
                self.assertEqual(self.answer(f"https://photon.komoot.io/api/?{query}")[0], code)
        self.assertEqual(self.answer("https://photon.komoot.io/other")[0], 404)

    def test_a_plus_is_a_space_and_percent_is_decoded(self):
        found = json.loads(self.answer("https://photon.komoot.io/api/?q=M%C3%BCnchen+Hbf")[1])["features"]
        self.assertEqual([each["properties"]["name"] for each in found], ["München Hauptbahnhof"])

    def test_every_request_is_recorded_as_it_came(self):
        self.curl("--header", "Accept: application/json", "https://photon.komoot.io/api/?q=C%2B%2B&limit=8")
        (request,) = self.records("request")
        self.assertEqual((request["method"], request["path"], request["query"]),
                         ("GET", "/api/", "q=C%2B%2B&limit=8"))
        self.assertIn(["Accept", "application/json"], request["headers"])


class Trust(Served):
    def test_only_the_fresh_authority_vouches_for_it(self):
        status, _ = self.curl(BERLIN, CURL_CA_BUNDLE="/etc/ssl/certs/ca-certificates.crt")
        self.assertEqual(status, 60, "curl's status for a server that nobody vouches for")
        self.assertEqual(self.records("request"), [])

    def test_every_other_host_is_refused(self):
        for address in ("https://example.org/", "https://photon.komoot.io:444/api/?q=x",
                        "https://photon.komoot.io.example.org/"):
            with self.subTest(address):
                self.assertEqual(self.curl("--write-out", "%{http_connect}", address), (56, b"403"))
        self.assertEqual([each["allowed"] for each in self.records("connect")], [False] * 3)

    def test_without_tls_nothing_is_answered(self):
        _, output = self.curl("--write-out", "\n%{http_code}", "http://photon.komoot.io/api/?q=Berlin",
                              http_proxy=f"http://127.0.0.1:{int(self.port)}")
        self.assertTrue(output.endswith(b"\n403"))

    def test_the_folder_is_private_and_the_authority_cannot_sign_again(self):
        self.assertEqual(stat.S_IMODE(self.private.stat().st_mode), 0o700)
        self.assertEqual(sorted(each.name for each in self.private.iterdir()),
                         ["authority.pem", "host.key", "host.pem", "requests.jsonl"])
        self.assertEqual(stat.S_IMODE((self.private / "host.key").stat().st_mode), 0o600)

    def test_it_listens_on_loopback_alone(self):
        listening = [line.split()[1] for line in pathlib.Path("/proc/net/tcp").read_text().splitlines()[1:]
                     if line.split()[3] == "0A" and int(line.split()[1].split(":")[1], 16) == int(self.port)]
        self.assertEqual([each.split(":")[0] for each in listening], ["0100007F"])

    def test_it_ends_with_its_standard_input(self):
        self.server.stdin.close()
        self.assertEqual(self.server.wait(30), 0)


class Misbehaviour(Served):
    def test_an_answer_has_the_status_and_exactly_the_size_that_was_told(self):
        for how, code, size in (*(({"status": code}, code, 0) for code in (201, 204, 301, 404, 500)),
                                ({"size": 1048577}, 200, 1048577),
                                ({"size": 1048577, "chunked": True}, 200, 1048577)):
            with self.subTest(how):
                self.behaves(how)
                told, body = self.answer()
                self.assertEqual((told, len(body)), (code, size))
                self.assertTrue(not size or len(json.loads(body)["features"]) == 8)

    def test_chunks_announce_no_length(self):
        self.behaves({"size": 20000, "chunked": True})
        _, output = self.curl("--include", BERLIN)
        head = output.partition(b"\r\n\r\n")[2].partition(b"\r\n\r\n")[0].lower()
        self.assertIn(b"transfer-encoding: chunked", head)
        self.assertNotIn(b"content-length", head)

    def test_a_cut_answer_is_one_for_curl(self):
        for chunked in (False, True):
            with self.subTest(chunked=chunked):
                self.behaves({"cut_after": 100, "chunked": chunked})
                status, output = self.curl(BERLIN)
                self.assertEqual((status, len(output)), (18, 100))
        self.behaves({})
        self.assertEqual(self.answer()[0], 200)
        self.assertEqual(self.records("abandoned"), [], "it was the server that ended")

    def test_one_that_never_answers_notices_who_has_gone(self):
        self.behaves({"hang": True}, "Berlin")
        status, _ = self.curl("--max-time", "0.5", BERLIN)
        self.assertEqual(status, 28)
        while not self.records("abandoned"):
            self.assertIsNone(self.server.poll())
        self.assertEqual(self.answer("https://photon.komoot.io/api/?q=Wien")[0], 200, "others are answered")

    def test_a_delay_is_kept(self):
        self.behaves({"delay": 0.7})
        _, output = self.curl("--output", "/dev/null", "--write-out", "%{time_starttransfer}", BERLIN)
        self.assertGreaterEqual(float(output), 0.7)

    def test_a_body_comes_from_a_file_byte_for_byte(self):
        file = self.folder / "body"
        file.write_bytes(bytes(range(256)) * 300)
        self.behaves({"body_file": str(file)})
        self.assertEqual(self.answer(), (200, file.read_bytes()))


class Gazetteer(unittest.TestCase):
    def names(self, text, limit=8):
        return [place.name for place in gazetteer.search(gazetteer.load(), text, limit)]

    def test_case_and_accents_do_not_matter(self):
        for text, first in (*((text, "München") for text in ("münchen", "MUNCHEN", "Muenchen", "  mün ", "Munich")),
                            ("Saint petersburg", "Sankt Petersburg"), ("東京", "Tokio")):
            with self.subTest(text):
                self.assertEqual(self.names(text)[0], first)

    def test_further_words_choose_among_namesakes_and_nonsense_finds_nothing(self):
        for text, *found in (("strassburg", "Straßburg"), ("Frankfurt Brandenburg", "Frankfurt (Oder)"),
                             ("Berlin Hbf", "Berlin Hauptbahnhof"), ("xyzzy",), ("+",), ("&&&",),
                             ("C++ & #1 100% ä 東京 🎬",)):
            with self.subTest(text):
                self.assertEqual(self.names(text), found)
        self.assertEqual([place.state for place in gazetteer.search(gazetteer.load(), "Springfield Ohio", 8)],
                         ["Ohio"])

    def test_there_are_namesakes_to_choose_from(self):
        for text in ("Berlin", "Neustadt", "Springfield"):
            self.assertEqual(len(self.names(text)), 8, text)
        self.assertGreaterEqual(len(self.names("Frankfurt")), 4)

    def test_every_place_is_on_earth_and_named_in_full(self):
        places = gazetteer.load()
        self.assertGreater(len(places), 100)
        for place in places:
            self.assertTrue(place.name and place.country and len(place.countrycode) == 2, place)
            self.assertTrue(-90 <= place.lat <= 90 and -180 <= place.lon <= 180, place)
        spots = [(place.name, place.lat, place.lon) for place in places]
        self.assertEqual(len(spots), len(set(spots)))


if __name__ == "__main__":
    unittest.main()
