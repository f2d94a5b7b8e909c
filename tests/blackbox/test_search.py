"""What a search makes of a geocoder that misbehaves, and of a person who does not wait."""
import json
import time
import unittest

from harness import READY, BlackBox, w

BUSY = "Die Ortssuche antwortet gerade nicht. Bitte später erneut versuchen."
UNREACHABLE = "Die Ortssuche ist nicht erreichbar. Prüfe die Verbindung und versuche es erneut."
TOO_LARGE = "Die Antwort der Ortssuche ist zu groß. Bitte präziser suchen."
UNREADABLE = "Die Ortssuche hat eine unlesbare Antwort geliefert."
NOTHING = "Kein Ort gefunden. Ergänze den Namen um Land oder Region."
TIMED_OUT = "Zeitlimit der Ortssuche erreicht. Prüfe die Verbindung und versuche es erneut."
BAD_QUERY = "Bitte einen Ortsnamen mit höchstens 300 Zeichen eingeben."
LIMIT = 1048576


def feature(name, longitude=13.0, latitude=52.0, **properties):
    return {"type": "Feature", "properties": {"name": name, **properties},
            "geometry": {"type": "Point", "coordinates": [longitude, latitude]}}


def collection(*features):
    return json.dumps({"type": "FeatureCollection", "features": features}, ensure_ascii=False)


class SearchFailures(BlackBox):
    def assert_each(self, cases):
        """Every (name, behaviour, message) ends as an error, without rows, and can be repeated."""
        self.start()
        for name, how, message in cases:
            with self.subTest(name):
                self.geocoder_behaves(how)
                self.search("Berlin", message)
                self.assert_says_in_red(message)
                self.assertEqual(self.rows(), [])
                self.window.says("Keine passenden Orte gefunden")
                self.assertTrue(self.window.enabled(w.SEARCH))
                self.assertIsNone(self.window.find(w.CANCEL))
                # The next search shows that all is well again.
                self.geocoder_behaves({})
                self.search("Berlin")
                self.assertEqual(len(self.rows()), 8)

    def test_a_status_that_is_not_200_is_a_service_that_does_not_answer(self):
        self.assert_each([(str(status), {"status": status, **more}, BUSY)
                          for status, more in ((404, {}), (500, {}), (301, {"location": "/api/?q=x"}),
                                               (302, {"location": "https://example.org/"}), (204, {}),
                                               (201, {"body": collection(feature("Berlin"))}))])

    def test_a_cut_answer_is_a_lost_connection(self):
        self.assert_each([("with a length", {"cut_after": 300}, UNREACHABLE),
                          ("in chunks", {"cut_after": 300, "chunked": True}, UNREACHABLE),
                          ("before its first byte", {"cut_after": 0}, UNREACHABLE)])

    def test_an_answer_over_a_mebibyte_is_too_large(self):
        self.assert_each([("with a length", {"size": LIMIT + 1}, TOO_LARGE),
                          ("in chunks", {"size": LIMIT + 1, "chunked": True}, TOO_LARGE),
                          ("eight times that", {"size": 8 * LIMIT, "chunked": True}, TOO_LARGE)])

    def test_an_answer_of_exactly_a_mebibyte_is_shown(self):
        self.start()
        for how in ({"size": LIMIT}, {"size": LIMIT, "chunked": True}):
            with self.subTest(how):
                self.geocoder_behaves(how)
                self.search("Berlin")
                self.assertEqual(len(self.rows()), 8)

    def test_an_unreadable_answer_is_told_as_such(self):
        self.assert_each([(body[:20] or "empty", {"body": body}, UNREADABLE) for body in (
            "", "<html>Wartung</html>", "[]", '{"features":{}}', '{"features":', "null", '"features"',
            '{"features":' + "[" * 100000 + "]" * 100000 + "}", "\ufeff\ufeff{}", '{"features":null}')])

    def test_an_address_that_nobody_answers_is_unreachable(self):
        self.start(https_proxy="http://127.0.0.1:9")
        self.search("Berlin", UNREACHABLE)
        self.assert_says_in_red(UNREACHABLE)

    def test_a_server_that_nobody_vouches_for_is_unreachable(self):
        self.start(CURL_CA_BUNDLE="/etc/ssl/certs/ca-certificates.crt")
        self.search("Berlin", UNREACHABLE)
        self.assertEqual(self.requests(), [], "nothing was asked of it")

    def test_a_curlrc_of_the_person_changes_nothing(self):
        (self.home / ".curlrc").write_text('user-agent = "mine"\nheader = "X-Mine: 1"\n')
        self.start()
        self.search("Berlin")
        headers = dict(self.requests()[0]["headers"])
        self.assertEqual(headers["User-Agent"], "Norvaxel-Ortsimport/0.5")
        self.assertNotIn("X-Mine", headers)

    def test_a_server_that_never_answers_ends_after_twenty_seconds(self):
        self.start()
        self.geocoder_behaves({"hang": True})
        begin = time.monotonic()
        self.window.type(w.QUERY, "Berlin")
        self.window.press(w.SEARCH)
        self.window.says("Orte werden gesucht …")
        self.window.says(TIMED_OUT, 25)
        self.assertGreater(time.monotonic() - begin, 19)

    def test_an_empty_or_too_long_query_asks_nobody(self):
        self.start()
        for text in ("", " \t ", "x" * 301):
            with self.subTest(text[:4]):
                self.window.type(w.QUERY, text)
                self.window.press(w.SEARCH)
                self.assert_says_in_red(BAD_QUERY)
        self.assertEqual(self.requests("connect"), [])
        self.search("x" * 300, NOTHING)
        self.assertEqual(self.asked(), ["x" * 300])


class SearchAnswers(BlackBox):
    def test_of_a_hundred_thousand_places_the_first_eight_are_shown(self):
        body = collection(*[{"type": "Feature"}] * 3, *(feature(str(n)) for n in range(20)))
        many = body[:-2] + ",0" * 100000 + "]}"
        self.geocoder_behaves({"body": many})
        self.start()
        self.search("viele")
        self.assertEqual([row.split("\n")[0] for row in self.rows()], [str(n) for n in range(8)])

    def test_what_a_server_calls_a_place_is_shown_literally_and_moves_nothing(self):
        names = ["<b>fett</b>", "%@ %1 %lu", "A & B", "<img src='file:///etc/passwd'>", "erste\nzweite",
                 "\u202erückwärts\u0007", "🎬" * 40, "lang" * 25600]
        self.geocoder_behaves({"body": collection(*(feature(name, city="<i>Ort</i>") for name in names))})
        self.start()
        frame = self.window.frame()
        areas = [self.window.area(self.window.control(control)) for control in (w.SEARCH, w.DOWNLOAD)]
        self.search("alles")
        for name, row in zip(names, self.rows()):
            with self.subTest(name[:8]):
                self.assertIn("<i>Ort</i> · 52.0000, 13.0000", row)
                if "\n" not in name and "\u0007" not in name:
                    self.assertTrue(row.startswith(name[:200]))
        for index in range(len(names)):
            self.window.select(w.RESULTS, min(index, 4))
        self.assertEqual(self.window.frame(), frame)
        self.assertEqual([self.window.area(self.window.control(control))
                          for control in (w.SEARCH, w.DOWNLOAD)], areas)

    def test_places_that_are_none_are_left_out(self):
        line = {"type": "Feature", "geometry": {"type": "LineString", "coordinates": [[1, 2], [3, 4]]}}
        self.geocoder_behaves({"body": collection(
            line, feature("a", 180.5, 0), feature("b", 0, 91), feature("c", "1", 2), feature("d", True, 1),
            feature("Pol", -180, 90), {"geometry": {"type": "Point", "coordinates": [1.5, 2.25, 9]}})})
        self.start()
        self.search("  Irgendwo ")
        self.assertEqual(self.rows(), ["Pol\n90.0000, -180.0000", "Irgendwo\n2.2500, 1.5000"])


class SearchPatience(BlackBox):
    def test_the_answer_to_an_older_search_changes_nothing(self):
        self.geocoder_behaves({"delay": 1.0}, "Köln")
        self.start()
        self.window.type(w.QUERY, "Köln")
        self.window.press(w.SEARCH)
        w.until(lambda: self.asked() == ["Köln"], "the first search is under way")
        self.search("Wien")
        shown = self.rows()
        w.until(lambda: len(self.asked()) == 2, "both were asked")
        deadline = time.monotonic() + 1.5
        while time.monotonic() < deadline:
            self.assertEqual(self.rows(), shown)

    def test_an_edit_drops_the_results_and_stops_the_request(self):
        self.geocoder_behaves({"hang": True}, "Köln")
        self.start()
        self.search("Wien")
        self.window.type(w.QUERY, "Köln")
        self.assertEqual(self.rows(), [])
        self.window.says("Suchergebnisse · wähle einen Ort aus")
        self.window.says(READY)
        self.window.press(w.SEARCH)
        w.until(lambda: self.asked()[-1:] == ["Köln"], "the search is under way")
        self.assertTrue(self.window.enabled(w.QUERY), "one can type on while it searches")
        self.assertFalse(self.window.enabled(w.SEARCH))
        self.window.type(w.QUERY, "Kö")
        w.until(lambda: self.requests("abandoned"), "curl was stopped")
        self.window.says(READY)

    def assert_stops_the_search(self, way):
        self.geocoder_behaves({"hang": True})
        self.start()
        self.window.type(w.QUERY, "Berlin")
        self.window.press(w.SEARCH)
        w.until(self.requests, "the search is under way")
        way()
        self.assert_says_in_grey("Suche abgebrochen.")
        self.window.says("Suche abgebrochen")
        w.until(lambda: self.requests("abandoned"), "curl was stopped", 3)
        self.assertIsNone(self.window.find(w.CANCEL))

    def test_cancel_stops_the_request_at_once(self):
        self.assert_stops_the_search(lambda: self.window.press(w.CANCEL))

    def test_escape_stops_the_request_at_once(self):
        self.assert_stops_the_search(lambda: self.window.key(w.KEY_ESCAPE))

    def test_the_program_can_be_ended_while_it_searches(self):
        self.geocoder_behaves({"hang": True})
        self.start()
        self.window.type(w.QUERY, "Berlin")
        self.window.press(w.SEARCH)
        w.until(self.requests, "the search is under way")
        self.program.terminate()
        self.program.wait(5)
        w.until(lambda: self.requests("abandoned"), "curl has ended as well", 3)


if __name__ == "__main__":
    unittest.main()
