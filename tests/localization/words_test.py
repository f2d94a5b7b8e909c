"""Tests that words.py finds what it is there to find, in PO files made for each case."""

import pathlib
import tempfile
import unittest

import words

GLOSSARY = "term\tlanguage\tforms\n"
EXCEPTIONS = "check\tlanguage\tGerman\twhy\n"


def quoted(text):
    return '"' + text.replace('"', '\\"').replace("\n", "\\n") + '"'


class WordsTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        (self.folder / "program").mkdir()
        self.glossary("")
        self.exceptions("")
        self.international("")

    def international(self, lines):
        (self.folder / "international.tsv").write_text("word\tlanguages\n" + lines, encoding="utf-8")

    def glossary(self, lines):
        (self.folder / "glossary.tsv").write_text(GLOSSARY + lines, encoding="utf-8")

    def exceptions(self, lines):
        (self.folder / "exceptions.tsv").write_text(EXCEPTIONS + lines, encoding="utf-8")

    def faults(self, check, *rows, **texts):
        """Of rows (German, English), with the texts of single languages given as ru=[...]."""
        for language in words.LANGUAGES:
            own = texts.get(language.replace("-", "_"), [english for _, english in rows])
            entries = [
                f"#, objc-format\nmsgid {quoted(german)}\nmsgstr {quoted(text)}\n"
                for (german, _), text in zip(rows, own)
            ]
            fields = ["Project-Id-Version: x", "PO-Revision-Date: 2026-11-21 12:00+0000",
                      "Last-Translator: x", "Language-Team: x", f"Language: {language}",
                      "MIME-Version: 1.0", "Content-Type: text/plain; charset=UTF-8",
                      "Content-Transfer-Encoding: 8bit"]
            header = 'msgid ""\nmsgstr ""\n' + "".join(f'"{field}\\n"\n' for field in fields)
            path = self.folder / "program" / f"{language}.po"
            path.write_text("\n".join([header, *entries]), encoding="utf-8")
        return words.faults(check, self.folder)

    def of(self, language, faults):
        return [fault for fault in faults if fault.startswith(f"{language}: ")]

    def test_letters_of_another_script_or_alphabet(self):
        row = ("Dach", "Roof")
        # A Latin "o" among Cyrillic letters looks right and is not.
        for language, good, bad in [
            ("ru", "Москва", "Мoсква"), ("zh_Hans", "屋顶 GPU", "屋顶ですか"), ("ja", "ルーフ屋根の", "지붕"),
            ("ko", "지붕", "屋頂"), ("ar", "سقف", "سقف x"), ("hi", "छत", "छत x"),
            ("pl", "Żółć", "Ñandú"), ("tr", "İĞDIR ılık", "Łódź"), ("es", "Ñandú", "Ça va"),
            ("fr", "Œuvre", "Straße"), ("pt", "Ação", "Größe"), ("it", "Perché", "Ölçü"),
        ]:
            with self.subTest(language):
                code = language.replace("_", "-")
                found = self.faults("script", row, **{language: [good]})
                self.assertEqual(self.of(code, found), [])
                found = self.faults("script", row, **{language: [bad]})
                self.assertEqual(len(self.of(code, found)), 1, found)

    def test_cell_that_is_the_german_or_the_english_text(self):
        found = self.faults("oversight", ("Dach", "Roof"), pl=["Dach"], it=["Tetto"])
        self.assertIn("the German text", self.of("pl", found)[0])
        self.assertIn("the English text", self.of("fr", found)[0])
        self.assertEqual(self.of("it", found) + self.of("en", found), [])
        self.assertIn("the German text", self.of("en", self.faults("oversight", ("Dach", "Dach")))[0])

    def test_names_formats_and_units_are_no_oversight(self):
        self.assertEqual(self.faults("oversight", ("%@ · %lu", "%@ · %lu"), ("GPU", "GPU")), [])
        rows = [(text, text) for text in ["2 km", "%@ km/h", "%ld h %ld min", " m"]]
        self.assertEqual(self.of("fr", self.faults("oversight", *rows)), [])
        for bad in ["2 kmh", "2 Hm", "m", "2 Minuten", "Dach m"]:
            found = self.faults("oversight", (bad, bad))
            self.assertEqual(len(self.of("fr", found)), 1, bad)

    def test_unit_is_written_in_the_letters_of_the_language(self):
        row = ("%@ m, 2 km/h (mi)", "%@ m, 2 km/h (mi)")
        for check in ["oversight", "script"]:
            self.assertEqual(self.of("ja", self.faults(check, row)), [])
        for language in ["ru", "ar", "hi", "zh-Hans"]:
            self.assertNotEqual(self.of(language, self.faults("script", row)), [], language)
        self.assertNotEqual(self.of("tr", self.faults("oversight", ("2 km/h", "2 km/h"))), [])
        self.assertNotEqual(self.of("ja", self.faults("script", ("x", "屋根m"))), [])

    def test_international_word_is_no_oversight_in_the_languages_that_have_it(self):
        row = ("Smog %@", "Smog %@")
        self.international("smog\ten fr\n")
        found = self.faults("oversight", row)
        self.assertEqual(self.of("en", found) + self.of("fr", found), [])
        self.assertEqual(len(self.of("pl", found)), 1)
        self.assertNotEqual(self.of("fr", self.faults("oversight", ("Smogwolke", "Smogwolke"))), [])
        self.international("Smog\t" + " ".join(words.LANGUAGES) + "\nNeon\tit\n")
        self.assertEqual(self.faults("oversight", row), ["international.tsv: no row needs 'Neon' for it"])

    def test_quotation_marks(self):
        row = ("Wähle »Dach«.", "Choose “Dach”.")
        for language, good, bads in [
            ("fr", "Choisis «\u00a0D\u00a0».", ["Choisis «D».", "Choisis “D”.", "Choisis D."]),
            ("pl", "„D”", ["“D”", "„D“", "„D” „D”"]), ("ja", "「D」", ["『D』", "“D”", "「D"]),
            ("ar", "«D»", ['"D"', "»D«"[:-1]]),
        ]:
            with self.subTest(language):
                self.assertEqual(
                    self.of(language, self.faults("punctuation", row, **{language: [good]})), [])
                for bad in bads:
                    found = self.faults("punctuation", row, **{language: [bad]})
                    self.assertNotEqual(self.of(language, found), [], bad)

    def test_ellipsis(self):
        row = ("Lädt …", "Loading …")
        for bad in ["Ładuje ...", "Ładuje …", "Ładuje", "Ładuje……"]:
            self.assertNotEqual(self.of("pl", self.faults("punctuation", row, pl=[bad])), [], bad)
        found = self.faults("punctuation", row, pl=["Ładuje…"])
        self.assertEqual(self.of("pl", found) + self.of("en", found), [])

    def test_typewriter_signs_and_french_spacing(self):
        for bad in ["l'eau", "un - deux", "deux  espaces", "Fin !", "Fin: a", "in\u00advisible"]:
            found = self.faults("punctuation", ("Dach", "Roof"), fr=[bad])
            self.assertNotEqual(self.of("fr", found), [], bad)
        found = self.faults("punctuation", ("Dach", "Roof"), fr=["l’eau\u00a0: 1\u202f! À 12:30"])
        self.assertEqual(self.of("fr", found), [])

    def test_changed_name(self):
        row = ("Das Norvaxel-3D-Paket: origin.nxd", "The Norvaxel 3D package: origin.nxd")
        self.assertEqual(self.faults("names", row), [])
        for bad in ["Norvaxel: origin.nxd", "Norvaxel 3D: origen.nxd", "Нορвaxel 3D: origin.nxd"]:
            found = self.faults("names", row, ru=[bad])
            self.assertEqual(len(self.of("ru", found)), 1, bad)

    def test_quoted_title_that_is_not_the_title(self):
        rows = [("Laden", "Load"), ("Klicke »Laden«.", "Click “Load”.")]
        self.assertEqual(
            self.of("it", self.faults("titles", *rows, it=["Carica", "Fai clic su “Carica”."])), [])
        found = self.faults("titles", *rows, it=["Carica", "Fai clic su “Caricare”."])
        self.assertEqual(len(self.of("it", found)), 1)

    def term(self, term, **forms):
        """The lines of a term whose form is "x" in every language but those given."""
        return "".join(f"{term}\t{language}\t{forms.get(language, 'x')}\n"
                       for language in ["de", *words.LANGUAGES])

    def test_term_that_the_glossary_names_otherwise(self):
        lines = self.term("roof", de="Dach|!Dachs", en="roof|thatch")
        self.glossary(lines)
        row = ("Dachform", "Roof shape")
        self.assertEqual(self.of("en", self.faults("glossary", row)), [])
        self.assertEqual(self.of("en", self.faults("glossary", ("Dach", "Thatch"))), [])
        self.assertEqual(len(self.of("fr", self.faults("glossary", row))), 1)
        self.assertIn("no row has the term roof", self.faults("glossary", ("Dachs", "Badger"))[-1])

    def test_glossary_says_each_term_once_in_each_language(self):
        lines = self.term("roof", de="Dach")
        row = ("Dach", "x")
        for broken, what in [
            (lines.replace("roof\tpl\tx\n", ""), "roof lacks pl"),
            (lines + "roof\tpl\ty\n", "roof stands twice for pl"),
            (lines.replace("roof\tpl\tx", "roof\tpl\t"), "roof lacks pl"),
            (lines + "roof\tnb\ttak\n", "is no term, language and forms"),
        ]:
            with self.subTest(what):
                self.glossary(broken)
                self.assertIn(what, "\n".join(self.faults("glossary", row)))
        self.glossary(lines)
        self.assertEqual(self.faults("glossary", row), [])

    def test_file_that_differs_in_its_rows_or_in_what_stands_above_them(self):
        rows = [("Dach", "Roof"), ("Wand", "Wall")]
        self.assertEqual(self.faults("files", *rows), [])
        path = self.folder / "program/it.po"
        good = path.read_text(encoding="utf-8")
        wall = good[good.index("#, objc-format\nmsgid \"Wand"):]
        for bad, what in [
            (good.replace(wall, ""), "'Wand'"),
            (good.replace(wall, "").replace("#, objc", wall + "\n#, objc", 1), "the row 'Wand'"),
            (good.replace("#, objc", "#. Shown in: menus\n#, objc", 1), "'Shown in: menus' above 'Dach'"),
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
        self.exceptions(excuses)
        self.assertEqual(self.faults("oversight", row), [])
        self.assertEqual(len(self.faults("oversight", row, pl=["Sepja"])), 1)
        self.exceptions("oversight\tpl\tDach\tno such row\n")
        self.assertIn("no such", self.faults("oversight", row)[-1])

    def test_folder_without_words(self):
        self.assertNotEqual(words.faults("script", self.folder), [])


if __name__ == "__main__":
    unittest.main()
