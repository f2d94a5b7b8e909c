"""Tests that texts_and_rows.py sees the texts in C++ code."""

import unittest

import texts_and_rows


class TextsAndRows(unittest.TestCase):
    def test_lookups_are_found_however_they_are_written(self):
        for code in [
            'NXLocal(u"Suchen")',
            'NXLocal(QStringLiteral("Suchen"))',
            'NXLocal(u"Suchen"_qs)',
            'NXLocal(\n    u"Su"\n    u"chen")',
            'NXLocal(u"Su" /* in two */ "chen")',
            'localText(u"Suchen", "ja")',
            'f("// no comment", NXLocal(u"Suchen"))',
            "f('\"', NXLocal(u\"Suchen\"))",
        ]:
            with self.subTest(code):
                self.assertEqual([text for text, _ in texts_and_rows.lookups(code)], ["Suchen"])

    def test_escapes_and_lines_are_read(self):
        code = '\n// one\nNXLocal(u"a\\n\\"b\\" \\\\")'
        self.assertEqual(texts_and_rows.lookups(code), [('a\n"b" \\', 3)])

    def test_what_is_no_lookup_of_a_literal_is_left_out(self):
        for code in ['// NXLocal(u"a")', '/* NXLocal(u"a") */', "NXLocal(text)", 'myNXLocal(u"a")']:
            with self.subTest(code):
                self.assertEqual(texts_and_rows.lookups(code), [])

    def test_texts_are_joined_like_the_compiler_does(self):
        code = 'const Row rows[] = {{u"eins " u"zwei"}, {"drei"}}; // "vier"'
        self.assertEqual(texts_and_rows.texts(code), {"eins zwei", "drei"})


if __name__ == "__main__":
    unittest.main()
