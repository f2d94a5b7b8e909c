"""Tests that joined.py joins as the examples say, and finds what makes no sentence."""

import pathlib
import tempfile
import unittest

import joined
import words


class Joined(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        (self.folder / "plugin").mkdir()
        self.shown = []

    def faults(self, rows, *languages):
        """Of rows (comment, German, text), the same text in every language."""
        entries = "".join(f'#. {comment}\nmsgid "{german}"\nmsgstr "{text}"\n\n'.replace("|", "\n#. ")
                          for comment, german, text in rows)
        for language in words.LANGUAGES:
            path = self.folder / "plugin" / f"{language}.po"
            path.write_text('msgid ""\nmsgstr ""\n\n' + entries, encoding="utf-8")
        return joined.read(self.folder, languages or ["de", "pl"], self.shown.append)

    def sight(self, example, text=" przy %@", fragment=" bei %@"):
        """Rows with one fragment that has this example."""
        return [(f"fragment|{example}", fragment, text), ("window", "Nebel", "Mgła"),
                ("window", "%@ Meilen", "%@ mil"), ("window", "%@ %@", "%@ %@")]

    def test_rows_what_fills_them_and_what_comes_from_elsewhere_are_joined(self):
        rows = self.sight('Joined: Halle + " · " + "Nebel" + " bei 8 Meilen"')
        rows.append(('window|Joined: "Nebel" + " · " + Halle', " · ", " · "))
        self.assertEqual(self.faults(rows), [])
        self.assertIn("  de      Halle · Nebel bei 8 Meilen", self.shown)
        self.assertIn("  pl      Halle · Mgła przy 8 mil", self.shown)
        self.assertIn("  pl      Mgła · Halle", self.shown)

    def test_numbers_and_line_feeds(self):
        rows = [('fragment|Joined: "Nebel" + "\\nBild 12 von 80: 1.5000"', "\\nBild %lu von %ld: %.4f",
                 "\\nKlatka %lu z %ld: %.4f"), ("window", "Nebel", "Mgła")]
        self.assertEqual(self.faults(rows), [])
        self.assertIn("  pl      Mgła\n          Klatka 12 z 80: 1.5000", self.shown)

    def test_fragment_without_an_example_or_with_one_that_the_rows_do_not_make(self):
        for rows, what in [(self.sight("for sight"), "no example"),
                           ([("window", " · offline", " · offline")], "no example"),
                           ([("window", "offline", "offline")], "holds no fragments"),
                           (self.sight('Joined: "Regen" + " bei 8 Meilen"'), "no row reads like 'Regen'"),
                           (self.sight('Joined: "Nebel" + Halle'), "made of other rows")]:
            with self.subTest(rows[0]):
                self.assertIn(what, self.faults(rows)[0])

    def test_what_makes_no_sentence(self):
        example = 'Joined: "Nebel" + " bei 8 Meilen"'
        self.assertEqual(self.faults(self.sight(example)), [])
        for bad, what in [("przy %@", "a space is missing in 'Mgłaprzy 8 mil'"),
                          (" , %@", "do not follow"), (" ( %@)", "do not follow"),
                          ("  przy %@", "double space"), (" 'przy' %@", "typewriter")]:
            with self.subTest(bad):
                found = self.faults(self.sight(example, bad))
                self.assertEqual(len(found), 1, found)
                self.assertIn("pl: ", found[0])
                self.assertIn(what, found[0])

    def test_scripts_that_write_no_spaces_or_join_the_word_for_and(self):
        without_spaces = self.sight('Joined: "Nebel" + " bei 8 Meilen"', "在%@")
        halle_and = 'fragment|Joined: Halle + " und " + Jena', " und "
        # A vowel sign is a part of the word as well.
        vowel_sign = self.sight('Joined: Halle + " bei " + "Nebel"', " में", " bei ")
        for language, rows, count in [("ja", without_spaces, 0), ("ko", without_spaces, 1), ("hi", vowel_sign, 1),
                                      ("ar", [(*halle_and, " و")], 0), ("ar", [(*halle_and, " إ")], 1)]:
            with self.subTest(language, rows=rows):
                self.assertEqual(len(self.faults(rows, language)), count)


if __name__ == "__main__":
    unittest.main()
