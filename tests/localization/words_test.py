"""Tests that words.py finds what it is there to find, in PO files made for each case."""

import pathlib
import tempfile
import unittest

import polib

import words

def of(language, faults):
    return [fault for fault in faults if fault.startswith(f"{language}: ")]


class WordsTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        (self.folder / "program").mkdir()
        for name in ["glossary", "exceptions", "international"]:
            self.table(name)

    def table(self, name, lines=""):
        columns = {"glossary": "term\tlanguage\tforms", "exceptions": "check\tlanguage\tGerman\twhy",
                   "international": "word\tlanguages"}
        (self.folder / f"{name}.tsv").write_text(f"{columns[name]}\n{lines}", encoding="utf-8")

    def faults(self, check, *rows, **texts):
        """Of rows (German, English), with the last row's texts of single languages given as ru="..."."""
        for language in words.LANGUAGES:
            po = polib.POFile()
            po.metadata = {
                "Project-Id-Version": "x", "PO-Revision-Date": "2026-11-21 12:00+0000", "Last-Translator": "x",
                "Language-Team": "x", "Language": language, "MIME-Version": "1.0",
                "Content-Type": "text/plain; charset=UTF-8", "Content-Transfer-Encoding": "8bit",
            }
            po += [polib.POEntry(msgid=german, msgstr=text, flags=["objc-format"]) for german, text in rows]
            po[-1].msgstr = texts.get(language.replace("-", "_"), po[-1].msgstr)
            po.save(str(self.folder / "program" / f"{language}.po"))
        return words.faults(check, self.folder)

    def test_cell_that_breaks_a_rule_and_one_that_breaks_none(self):
        roof, choose, load = ("Dach", "Roof"), ("Wähle »Dach«.", "Choose “Dach”."), ("Lädt …", "Loading …")
        package = ("Das Norvaxel-3D-Paket: origin.nxd", "The Norvaxel 3D package: origin.nxd")
        # A Latin "o" among Cyrillic letters looks right and is not.
        for language, check, row, good, *bads in [
            ("ru", "script", roof, "Москва", "Мoсква"), ("zh_Hans", "script", roof, "屋顶 GPU", "屋顶ですか"),
            ("ja", "script", roof, "ルーフ屋根の", "지붕"), ("ko", "script", roof, "지붕", "屋頂"),
            ("ar", "script", roof, "سقف", "سقف x"), ("hi", "script", roof, "छत", "छत x"),
            ("pl", "script", roof, "Żółć", "Ñandú"), ("tr", "script", roof, "İĞDIR ılık", "Łódź"),
            ("es", "script", roof, "Ñandú", "Ça va"), ("fr", "script", roof, "Œuvre", "Straße"),
            ("pt", "script", roof, "Ação", "Größe"), ("it", "script", roof, "Perché", "Ölçü"),
            ("fr", "punctuation", choose, "Choisis «\u00a0D\u00a0».", "Choisis «D».", "Choisis “D”.", "Choisis D."),
            ("pl", "punctuation", choose, "„D”", "“D”", "„D“", "„D” „D”"),
            ("ja", "punctuation", choose, "「D」", "『D』", "“D”", "「D"),
            ("ar", "punctuation", choose, "«D»", '"D"', "»D"),
            ("pl", "punctuation", load, "Ładuje…", "Ładuje ...", "Ładuje …", "Ładuje", "Ładuje……"),
            ("en", "punctuation", load, "Loading …", "Loading"),
            ("fr", "punctuation", roof, "l’eau\u00a0: 1\u202f! À 12:30", "l'eau", "un - deux", "deux  espaces",
             "Fin !", "Fin: a", "in\u00advisible"),
            ("ru", "names", package, package[1], "Norvaxel: origin.nxd", "Norvaxel 3D: origen.nxd",
             "Нορвaxel 3D: origin.nxd"),
        ]:
            code = language.replace("_", "-")
            with self.subTest(language, check=check, text=good):
                self.assertEqual(of(code, self.faults(check, row, **{language: good})), [])
            for bad in bads:
                with self.subTest(language, check=check, text=bad):
                    self.assertNotEqual(of(code, self.faults(check, row, **{language: bad})), [])

    def test_cell_that_is_the_german_or_the_english_text(self):
        found = self.faults("oversight", ("Dach", "Roof"), pl="Dach", it="Tetto")
        self.assertIn("the German text", of("pl", found)[0])
        self.assertIn("the English text", of("fr", found)[0])
        self.assertEqual(of("it", found) + of("en", found), [])
        self.assertIn("the German text", of("en", self.faults("oversight", ("Dach", "Dach")))[0])

    def test_names_formats_and_units_are_no_oversight(self):
        self.assertEqual(self.faults("oversight", ("%@ · %lu", "%@ · %lu"), ("GPU", "GPU")), [])
        rows = [(text, text) for text in ["2 km", "%@ km/h", "%ld h %ld min", " m"]]
        self.assertEqual(of("fr", self.faults("oversight", *rows)), [])
        for bad in ["2 kmh", "2 Hm", "m", "2 Minuten", "Dach m"]:
            found = self.faults("oversight", (bad, bad))
            self.assertEqual(len(of("fr", found)), 1, bad)

    def test_unit_is_written_in_the_letters_of_the_language(self):
        row = ("%@ m, 2 km/h (mi)", "%@ m, 2 km/h (mi)")
        for check in ["oversight", "script"]:
            self.assertEqual(of("ja", self.faults(check, row)), [])
        for language in ["ru", "ar", "hi", "zh-Hans"]:
            self.assertNotEqual(of(language, self.faults("script", row)), [], language)
        self.assertNotEqual(of("tr", self.faults("oversight", ("2 km/h", "2 km/h"))), [])
        self.assertNotEqual(of("ja", self.faults("script", ("x", "屋根m"))), [])

    def test_international_word_is_no_oversight_in_the_languages_that_have_it(self):
        row = ("Smog %@", "Smog %@")
        self.table("international", "smog\ten fr\n")
        found = self.faults("oversight", row)
        self.assertEqual(of("en", found) + of("fr", found), [])
        self.assertEqual(len(of("pl", found)), 1)
        self.assertNotEqual(of("fr", self.faults("oversight", ("Smogwolke", "Smogwolke"))), [])
        self.table("international", "Smog\t" + " ".join(words.LANGUAGES) + "\nNeon\tit\n")
        self.assertEqual(self.faults("oversight", row), ["international.tsv: no row needs 'Neon' for it"])

    def test_quoted_title_that_is_not_the_title(self):
        rows = [("Laden", "Load"), ("Klicke »Laden«.", "Click “Load”.")]
        for text, count in [("Fai clic su “Load”.", 0), ("Fai clic su “Carica”.", 1)]:
            self.assertEqual(len(of("it", self.faults("titles", *rows, it=text))), count, text)

    def term(self, term, **forms):
        """The lines of a term whose form is "x" in every language but those given."""
        return "".join(f"{term}\t{language}\t{forms.get(language, 'x')}\n"
                       for language in ["de", *words.LANGUAGES])

    def test_term_that_the_glossary_names_otherwise(self):
        self.table("glossary", self.term("roof", de="Dach|!Dachs", en="roof|thatch"))
        for german, english, fault in [("Dachform", "Roof shape", "fr: "), ("Dach", "Thatch", "fr: "),
                                       ("Dachs", "Badger", "glossary.tsv: no row has the term roof")]:
            found = self.faults("glossary", (german, english))
            self.assertEqual(of("en", found), [])
            self.assertTrue(any(each.startswith(fault) for each in found), german)

    def test_glossary_says_each_term_once_in_each_language(self):
        lines = self.term("roof", de="Dach")
        for glossary, what in [
            (lines, None), (lines.replace("roof\tpl\tx\n", ""), "roof lacks pl"),
            (lines + "roof\tpl\ty\n", "roof stands twice for pl"),
            (lines.replace("roof\tpl\tx", "roof\tpl\t"), "roof lacks pl"),
            (lines + "roof\tnb\ttak\n", "is no term, language and forms"),
        ]:
            with self.subTest(what):
                self.table("glossary", glossary)
                found = "\n".join(self.faults("glossary", ("Dach", "x")))
                self.assertTrue(what in found if what else not found, found)

    def test_file_that_differs_in_its_rows_or_in_what_stands_above_them(self):
        rows = [("Dach", "Roof"), ("Wand", "Wall")]
        self.assertEqual(self.faults("files", *rows), [])
        path = self.folder / "program/it.po"
        good = path.read_text(encoding="utf-8")
        wall = good[good.index("#, objc-format\nmsgid \"Wand"):]
        for bad, what in [
            (good.replace(wall, ""), "no row"),
            (good.replace(wall, "").replace("#, objc", wall + "\n#, objc", 1), "('Wand'"),
            (good.replace("#, objc", "#. Shown in: menus\n#, objc", 1), "('Dach', 'Shown in: menus')"),
        ]:
            with self.subTest(what):
                path.write_text(bad, encoding="utf-8")
                found = words.faults("files", self.folder)
                self.assertEqual(len(found), 1, found)
                self.assertIn("it.po", found[0])
                self.assertIn(what, found[0])

    def test_what_msgfmt_finds(self):
        self.assertEqual(self.faults("msgfmt", ("%@ Dach", "%@ roof")), [])
        self.assertNotEqual(self.faults("msgfmt", ("%@ Dach", "%ld roof")), [])

    def test_exception_excuses_one_row_and_must_be_needed(self):
        row = ("Sepia", "Sepia")
        excuses = "".join(f"oversight\t{code}\tSepia\ta loan word\n" for code in words.LANGUAGES)
        self.table("exceptions", excuses)
        self.assertEqual(self.faults("oversight", row), [])
        self.assertEqual(len(self.faults("oversight", row, pl="Sepja")), 1)
        self.table("exceptions", "oversight\tpl\tDach\tno such row\n")
        self.assertIn("no such", self.faults("oversight", row)[-1])

    def test_folder_without_words(self):
        self.assertNotEqual(words.faults("script", self.folder), [])


if __name__ == "__main__":
    unittest.main()
