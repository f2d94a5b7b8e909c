"""make_catalog_test.py LOCALIZATION_FOLDER LANGUAGE_PROBE

Tests the step that turns the PO files into the compiled-in catalogue.
"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

import polib

FOLDER = pathlib.Path(sys.argv[1])
PROBE = sys.argv[2]
sys.path.insert(0, str(FOLDER / "tools"))
from languages import TRANSLATED as LANGUAGES  # noqa: E402


def header(language, charset="UTF-8"):
    return (
        f'msgid ""\nmsgstr ""\n"Language: {language}\\n"\n'
        f'"Content-Type: text/plain; charset={charset}\\n"\n\n'
    )


def entry(german, translation):
    return f'msgid "{german}"\nmsgstr "{translation}"\n\n'


class MakeCatalog(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.program = self.folder / "program"
        self.plugin = self.folder / "plugin"
        self.output = self.folder / "Catalog.cpp"
        self.write(self.program, entry("Suchen", "Suchen"))

    def write(self, folder, entries, only=None):
        """Gives every language, or the only one named, a file with these entries."""
        folder.mkdir(exist_ok=True)
        for language in [only] if only else LANGUAGES:
            (folder / f"{language}.po").write_text(header(language) + entries, encoding="utf-8")

    def make(self, *options):
        return subprocess.run(
            [sys.executable, "-B", FOLDER / "tools/make_catalog.py", "--output", self.output, *options,
             self.program, self.plugin],
            capture_output=True, encoding="utf-8", check=False,
        )

    def assert_fails_naming(self, *words, options=()):
        result = self.make(*options)
        self.assertNotEqual(result.returncode, 0)
        self.assertNotIn("Traceback", result.stderr)
        for word in words:
            self.assertIn(word, result.stderr)
        self.assertFalse(self.output.exists())

    def assert_makes(self, *options):
        result = self.make(*options)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        return self.output.read_text(encoding="utf-8")

    def test_rows_of_both_folders_are_in_the_order_of_their_bytes(self):
        keys = ["~", "Über", "a", "\\nZeile", " x", "Z", "Ü😀", "Ü｡", "Üß"]
        self.write(self.program, "".join(entry(key, key) for key in keys[:5]))
        self.write(self.plugin, "".join(entry(key, key) for key in keys[5:]))
        text = self.assert_makes()
        found = [line[5:-1] for line in text.split("\n") if line.startswith('    {"')]
        self.assertEqual(
            found,
            [f'"{key}"' for key in ["\\nZeile", " x", "Z", "a", "~", "Über", "Üß", "Ü｡", "Ü😀"]],
        )

    def test_signs_that_cpp_reads_differently_are_escaped(self):
        self.write(self.program, entry('a\\"b\\\\c\\td\x017', 'a\\"b\\\\c\\td\x017'))
        self.assertIn('{"a\\"b\\\\c\\td\\0017",', self.assert_makes())

    def test_fault_of_a_row_is_named_with_its_file_and_text(self):
        figures = "%@ hat %lu von %ld, %.4f"
        rows = [("en", "Suchen", entry("Suchen", "Search") + entry("Suchen", "Find"), "second time"),
                ("ko", "Suchen", "", "missing"),
                ("ru", "Suchen", "#, fuzzy\n" + entry("Suchen", "Zoek"), "fuzzy"),
                ("ru", "Suchen", 'msgctxt "menu"\n' + entry("Suchen", "Zoek"), "context"),
                ("fr", "Suchen", entry("Suchen", "chercher e\u0301"), "NFC"),
                ("tr", "Suchen", entry("Suchen", "ara\0ma"), "cut it short")]
        rows += [(language, "Suchen", entry("Suchen", cell), "translation")
                 for language in ["ar", "en"] for cell in ["", " "]]
        rows += [("ja", figures, entry(figures, translation), "placeholders")
                 for translation in ["%@ has %lu of %ld", "%lu %@ %ld %.4f", "%@ %ld %lu %.4f",
                                     "%@ %lu %ld %.4f %@", "%@ %lu %ld %.3f", "none"]]
        rows += [("pl", german, entry(german, cell), "at an end")
                 for german, cell in [("a", "a "), ("a", " a"), ("a", "a\\n"), ("a ", "a  "), (" a", "\\na"),
                                      ("\\na", "a"), ("a", "\u00a0a")]]
        for language, german, entries, why in rows:
            with self.subTest(language, entries=entries):
                self.write(self.program, entry(german, german))
                self.write(self.program, entries, only=language)
                self.assert_fails_naming(f"{language}.po:", f'"{german}"', why)

    def test_row_that_no_language_may_have_is_named(self):
        for key, why in [("ß", "sort"), ("über", "sort"), ("…", "sort"), ("\\tx", "sort"), ("Gro\u0308ße", "NFC")]:
            with self.subTest(key):
                self.write(self.program, entry(key, "x"))
                self.assert_fails_naming(key, why)

    def test_row_of_another_folder_is_named(self):
        self.write(self.plugin, entry("Suchen", "Find"))
        self.assert_fails_naming("plugin", '"Suchen"')

    def test_bytes_that_are_not_utf8_are_named_with_their_row(self):
        path = self.program / "fr.po"
        path.write_bytes(path.read_bytes() + b'msgid "Gr\xc3\xb6\xc3\x9fe"\nmsgstr "taille \xe9"\n')
        self.assert_fails_naming("fr.po:10:", '"Größe"', "UTF-8")

    def test_file_of_another_charset_or_language_and_missing_or_foreign_file_are_named(self):
        for name, content, *why in [("pl", header("pl", "ISO-8859-2"), "charset"), ("hi", None),
                                    ("pl", header("it"), "Language: pl"), ("nb", header("nb"))]:
            with self.subTest(name, why=why):
                path = self.program / f"{name}.po"
                self.write(self.program, entry("Suchen", "x"))
                path.write_text((content or "") + entry("Suchen", "x"))
                if content is None:
                    path.unlink()
                self.assert_fails_naming(f"{name}.po", *why)

    def test_every_empty_cell_is_named_with_its_language_line_and_text(self):
        self.write(self.program, entry("Suchen", "x") + entry("Öffnen", "") + entry("Ende", ""))
        self.write(self.program, entry("Suchen", "x") + entry("Öffnen", "x"), only="it")
        words = [f'{self.program}/{language}.po:{line}: the row "{text}" has no translation\n'
                 for line, text in [(9, "Öffnen"), (12, "Ende")]
                 for language in LANGUAGES if language != "it"]
        self.assert_fails_naming(f'{self.program}/it.po: the row "Ende" is missing', *words)

    def test_space_at_an_end_may_be_missing_where_a_script_writes_none(self):
        self.write(self.program, entry(" und ", " x "))
        self.write(self.program, entry(" und ", "和"), only="zh-Hans")
        self.assertIn('"和"', self.assert_makes())

    def test_figures_of_the_whole_catalogue_are_held(self):
        self.write(self.program, entry("Route", "Route") + entry("Größe\\n", "Size\\n"))
        figures = ["rows: 2", "bytes of the longest German text: 8", "rows with a line feed: 1",
                   "rows whose English is the German: 1"]
        counts = self.folder / "counts.txt"
        counts.write_text("# Kept.\n\n" + "\n".join(figures) + "\n", encoding="utf-8")
        self.assert_makes("--counts", counts)
        self.output.unlink()
        for figure, name in zip(figures, ["2 in ", '"Größe', '"Größe', '"Route"']):
            with self.subTest(figure):
                what, count = figure.split(": ")
                wrong = "\n".join(figures).replace(figure, f"{what}: 9")
                counts.write_text(wrong, encoding="utf-8")
                self.assert_fails_naming(f"counts.txt: {what}: {count} instead of 9", name,
                                         f"write {count} there", options=["--counts", counts])
        for wrong in ["\n".join(figures[1:]), "\n".join(figures + ["columns: 14"]),
                      "\n".join(figures + figures), "\n".join(figures).replace("2", "two")]:
            with self.subTest(wrong):
                counts.write_text(wrong, encoding="utf-8")
                self.assert_fails_naming("counts.txt: ", options=["--counts", counts])

    def test_catalogue_without_rows_is_refused(self):
        self.write(self.program, "")
        self.assert_fails_naming("no rows")


class CompiledCatalog(unittest.TestCase):
    def test_every_cell_is_what_the_files_say(self):
        expected = {}
        for position, language in enumerate(LANGUAGES, start=1):
            for folder in ["program", "plugin"]:
                path = FOLDER / "po" / folder / f"{language}.po"
                for row in polib.pofile(str(path)) if path.exists() else []:
                    cells = expected.setdefault(row.msgid, [row.msgid] + [None] * len(LANGUAGES))
                    cells[position] = row.msgstr
        output = subprocess.run([PROBE, "catalog"], capture_output=True, check=True).stdout
        cells = output.decode("utf-8").split("\0")[:-1]
        width = len(LANGUAGES) + 1
        rows = [cells[start : start + width] for start in range(0, len(cells), width)]
        self.assertEqual(rows, [expected[key] for key in sorted(expected, key=str.encode)])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
