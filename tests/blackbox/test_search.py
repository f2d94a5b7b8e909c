"""Where the real curl decides: a search over real TLS, and what is left when it fails."""
import unittest

from harness import BlackBox, w

UNREACHABLE = "Die Ortssuche ist nicht erreichbar. Prüfe die Verbindung und versuche es erneut."
TOO_LARGE = "Die Antwort der Ortssuche ist zu groß. Bitte präziser suchen."


class SearchFailures(BlackBox):
    def test_a_failure_is_told_and_the_next_search_shows_that_all_is_well_again(self):
        self.start()
        # Without a length curl cannot refuse it: the program counts by itself.
        self.geocoder_behaves({"size": 1048577, "chunked": True})
        self.search("Berlin", TOO_LARGE)
        self.assert_says_in_red(TOO_LARGE)
        self.assertEqual(self.rows(), [])
        self.assertIsNone(self.window.find(w.CANCEL))
        self.geocoder_behaves({"size": 1048576, "chunked": True})
        self.search("Berlin")
        self.assertEqual(len(self.rows()), 8)

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


if __name__ == "__main__":
    unittest.main()
