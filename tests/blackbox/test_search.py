"""What a search makes of a geocoder that misbehaves, through the real curl."""
import time
import unittest

from harness import BlackBox, w

BUSY = "Die Ortssuche antwortet gerade nicht. Bitte später erneut versuchen."
UNREACHABLE = "Die Ortssuche ist nicht erreichbar. Prüfe die Verbindung und versuche es erneut."
TOO_LARGE = "Die Antwort der Ortssuche ist zu groß. Bitte präziser suchen."
UNREADABLE = "Die Ortssuche hat eine unlesbare Antwort geliefert."
TIMED_OUT = "Zeitlimit der Ortssuche erreicht. Prüfe die Verbindung und versuche es erneut."
LIMIT = 1048576


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

    def test_each_way_to_fail_is_told(self):
        self.assert_each([
            ("a status", {"status": 503}, BUSY),
            ("a redirection", {"status": 302, "location": "/api/?q=x"}, BUSY),
            ("a cut answer", {"cut_after": 300}, UNREACHABLE),
            ("too large", {"size": LIMIT + 1}, TOO_LARGE),
            ("too large, in chunks", {"size": LIMIT + 1, "chunked": True}, TOO_LARGE),
            ("no answer of a geocoder", {"body": "<html>Wartung</html>"}, UNREADABLE)])

    def test_an_answer_of_exactly_a_mebibyte_is_shown(self):
        self.start()
        # Another text each time, so that the status of the first is not taken for that of the second.
        for text, how in (("Berlin", {"size": LIMIT}), ("berlin", {"size": LIMIT, "chunked": True})):
            with self.subTest(how):
                self.geocoder_behaves(how)
                self.search(text)
                self.assertEqual(len(self.rows()), 8)

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
        self.window.says(TIMED_OUT)
        self.assertGreater(time.monotonic() - begin, 19)


if __name__ == "__main__":
    unittest.main()
