"""The language dialog: what it offers, what it keeps, and that it keeps nothing unasked."""
import sys
import unittest

import polib

from harness import READY, ROOT, BlackBox, mode, w
from test_window import PREFERENCE

sys.path.insert(0, str(ROOT / "localization/tools"))
import languages  # noqa: E402

LANGUAGES = ("combo box", "Sprache wählen")
APPLY = ("push button", "Übernehmen")
CANCEL = ("push button", "Abbrechen")
AUTOMATIC = "Automatisch (Systemsprache)"
NAMES = [each.own_name for each in languages.LANGUAGES]
CODES = [each.code for each in languages.LANGUAGES]
SAVED = "Sprache gespeichert"
EXPLANATION = ("Die neue Sprache ist gespeichert. Dieses Suchfenster wird beim nächsten Öffnen aktualisiert. Bitte "
               "DaVinci Resolve neu starten.")
NOT_SAVED = "Die Sprache konnte nicht lokal gespeichert werden."


def translated(text, language):
    """What the translators wrote for text: in the language, else in English."""
    if language == "de":
        return text
    for code in (language, "en"):
        entry = polib.pofile(str(ROOT / f"localization/po/program/{code}.po")).find(text)
        if entry and entry.msgstr:
            return entry.msgstr
    return text


class Language(BlackBox):
    def setUp(self):
        super().setUp()
        self.preference = self.home / PREFERENCE

    def keep(self, content):
        self.preference.parent.mkdir(parents=True, exist_ok=True)
        self.preference.write_text(content)

    def open(self):
        self.window.press(w.LANGUAGE)
        self.window.control(APPLY)
        w.until(lambda: self.window.dialog() == ["Sprache wählen",
                                                 "Die Sprache wird nur auf diesem Gerät gespeichert."],
                "the dialog asks in German", w.SECONDS, self.window.describe)

    def choose(self, name):
        self.open()
        if self.window.value(LANGUAGES) != name:
            self.window.choose(LANGUAGES, name)
        self.window.press(APPLY)

    def assert_closed(self):
        w.until(lambda: not self.window.find(APPLY) and not self.window.find(w.OK), "no dialog shows", 5,
                self.window.describe)

    def assert_confirmed(self, code):
        expected = [translated(SAVED, code), translated(EXPLANATION, code)]
        w.until(lambda: self.window.find(w.OK), "the choice is confirmed", w.SECONDS, self.window.describe)
        self.assertEqual(self.window.dialog(), expected)
        self.window.press(w.OK)
        self.assert_closed()

    def assert_kept(self, code):
        self.assertEqual(self.preference.read_bytes(), f"{code}\n".encode())
        self.assertEqual(mode(self.preference), 0o600)
        self.assertEqual(sorted(each.name for each in self.preference.parent.iterdir()),
                         ["2d-language.txt", "3d-language.txt"])
        self.assertEqual((self.preference.parent / "2d-language.txt").read_text(), "pl\n", "the other plug-in's own")

    def test_a_chosen_language_is_kept_and_confirmed_in_that_language(self):
        self.keep("de\n")
        (self.preference.parent / "2d-language.txt").write_text("pl\n")
        self.start()
        # Turkish has a word of its own for OK; Arabic is read from the right.
        for name in ("日本語", "Türkçe", "العربية", "English", "Deutsch"):
            with self.subTest(name):
                code = CODES[NAMES.index(name)]
                self.choose(name)
                self.assert_confirmed(code)
                self.assert_kept(code)
                self.assertTrue(self.window.find(w.SEARCH), "this window keeps its language")
                self.window.says(READY, 0)

    def test_the_next_start_speaks_the_chosen_language(self):
        self.start()
        self.choose("English")
        self.assert_confirmed("en")
        self.program.terminate()
        self.assert_ended_well()
        self.start()
        self.window.control(("push button", "Language"))
        self.window.press(("push button", "Language"))
        self.assertEqual(self.window.value(("combo box", "Choose language")), "English")

    def test_it_offers_every_language_in_its_own_words_and_opens_on_the_kept_one(self):
        self.start()
        self.open()
        self.assertEqual(self.window.items(LANGUAGES), [AUTOMATIC, *NAMES])
        self.window.press(CANCEL)
        self.assert_closed()
        for code, name in zip(CODES, NAMES):
            with self.subTest(code):
                self.keep(code + "\n")
                self.open()
                self.assertEqual(self.window.value(LANGUAGES), name)
                with self.window.leaving(APPLY):
                    self.window.key(w.KEY_ESCAPE)
                self.assert_closed()

    def test_without_a_kept_language_it_opens_on_the_one_in_use(self):
        self.start(LANGUAGE="fr_CA")
        self.preference.unlink()
        # What has no French words yet is said in English.
        self.window.press(("push button", translated("Sprache", "fr")))
        asking = ("combo box", translated("Sprache wählen", "fr"))
        self.assertEqual(self.window.value(asking), "Français")
        self.window.press(("push button", translated("Abbrechen", "fr")))
        self.assertFalse(self.preference.exists())

    def test_the_automatic_entry_keeps_the_systems_language_of_now(self):
        for system, code in (("zh_TW:ja_JP", "ja"), ("xx", "en"), ("pt_BR:de", "pt")):
            with self.subTest(system):
                self.keep("de\n")
                self.start(LANGUAGE=system)
                self.choose(AUTOMATIC)
                self.assert_confirmed(code)
                self.assertEqual(self.preference.read_bytes(), f"{code}\n".encode())
                self.program.terminate()
                self.assert_ended_well()

    def test_cancelling_writes_nothing(self):
        self.keep("de\n")
        self.start()
        before = self.preference.stat()
        def press_escape():
            with self.window.leaving(APPLY):
                self.window.key(w.KEY_ESCAPE)
        for way in (lambda: self.window.press(CANCEL), press_escape):
            self.open()
            self.window.choose(LANGUAGES, "Polski")
            way()
            self.assert_closed()
        after = self.preference.stat()
        self.assertEqual((after.st_ino, after.st_mtime_ns), (before.st_ino, before.st_mtime_ns))
        self.assertEqual(self.preference.read_text(), "de\n")
        self.window.says(READY, 0)

    def assert_refused(self):
        self.choose("日本語")
        self.assert_says_in_red(NOT_SAVED)
        self.assert_closed()

    def test_a_folder_that_cannot_be_written_is_told(self):
        self.preference.parent.parent.mkdir(parents=True)
        self.preference.parent.write_text("a file in its place")
        self.start()
        self.assert_refused()
        self.assertEqual(self.preference.parent.read_text(), "a file in its place")

    def test_a_link_at_the_path_is_told_and_left_alone(self):
        target = self.folder / "target"
        target.write_text("en\n")
        self.preference.parent.mkdir(parents=True)
        self.preference.symlink_to(target)
        self.start()
        self.assert_refused()
        self.assertEqual(target.read_text(), "en\n")
        self.assertTrue(self.preference.is_symlink())
        self.assertEqual(list(self.preference.parent.iterdir()), [self.preference])

    def test_without_home_nothing_can_be_kept(self):
        self.start(HOME=None)
        self.assert_refused()
        self.choose(AUTOMATIC)
        self.assert_says_in_red(NOT_SAVED)
        self.assert_closed()

    def test_while_it_searches_or_imports_no_language_can_be_chosen(self):
        gate = self.folder / "gate"
        self.start(NORVAXEL_SANDBOX_GATE=gate)
        self.geocoder_behaves({"hang": True}, "Köln")
        self.window.type(w.QUERY, "Köln")
        self.window.press(w.SEARCH)
        w.until(self.requests, "the search is under way")
        self.assertFalse(self.window.enabled(w.LANGUAGE))
        self.window.press(w.CANCEL)
        self.window.says("Suche abgebrochen.")
        self.assertTrue(self.window.enabled(w.LANGUAGE))
        self.search("Berlin")
        self.window.select(w.RESULTS, 0)
        self.window.press(w.DOWNLOAD)
        self.importer_event()
        self.assertFalse(self.window.enabled(w.LANGUAGE))
        self.window.press(w.CANCEL)
        w.until(lambda: self.window.enabled(w.LANGUAGE), "it can be chosen again", w.SECONDS, self.window.describe)


if __name__ == "__main__":
    unittest.main()
