"""add_text_test.py LOCALIZATION_FOLDER: tests the tool that gives a new text its rows."""

import pathlib
import shutil
import sys
import tempfile
import unittest

import polib

FOLDER = pathlib.Path(sys.argv[1])
sys.path.insert(0, str(FOLDER / "tools"))

import add_text  # noqa: E402
import make_catalog  # noqa: E402


class AddText(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        shutil.copytree(FOLDER / "po", self.folder, dirs_exist_ok=True)

    def contents(self):
        return {path: path.read_text(encoding="utf-8") for path in self.folder.glob("*/*.po")}

    def test_row_is_added_to_all_files_below_those_of_its_place_and_nothing_else_changes(self):
        before = self.contents()
        places = add_text.add(self.folder, "Drehen", "menus")
        self.assertEqual(len(places), 13)
        for path, content in self.contents().items():
            if path.parent.name == "plugin":
                self.assertEqual(content, before[path])
                continue
            row = '#. Shown in: menus\nmsgid "Drehen"\nmsgstr ""\n\n'
            self.assertEqual(content.replace(row, ""), before[path])
            rows = [(entry.msgid, entry.comment) for entry in polib.pofile(content)]
            place = rows.index(("Drehen", "Shown in: menus"))
            self.assertEqual(rows[place - 1][1], "Shown in: menus")
            self.assertNotIn("Shown in: menus", [comment for _, comment in rows[place + 1 :]])
            line = content[: content.index(row)].count("\n") + 1
            self.assertIn(f"{path}:{line}", places)

    def test_build_names_every_empty_translation(self):
        places = add_text.add(self.folder, "Drehen", "menus")
        with self.assertRaises(make_catalog.CatalogError) as raised:
            make_catalog.read_catalog([self.folder / "program", self.folder / "plugin"])
        for place in places:
            self.assertIn(f'{place}: the row "Drehen" has no translation', str(raised.exception))

    def test_row_of_a_new_place_stands_at_the_end(self):
        add_text.add(self.folder, "%lu Dreher\nDrehung", "somewhere else")
        last = polib.pofile(str(self.folder / "program/ko.po"))[-1]
        self.assertEqual((last.msgid, last.comment, last.flags),
                         ("%lu Dreher\nDrehung", "Shown in: somewhere else", ["objc-format"]))

    def test_fragment_carries_its_example(self):
        add_text.add(self.folder, " mit Drehung", "menus", 'Halle + " mit Drehung"')
        row = polib.pofile(str(self.folder / "program/ar.po")).find(" mit Drehung")
        self.assertEqual(row.comment, 'Shown in: menus\nJoined: Halle + " mit Drehung"')

    def test_what_cannot_be_added_changes_nothing(self):
        other = self.folder / "program/pl.po"
        before = self.contents()
        for text, why in [("Suchen", "already"), ("Kompass", "already"), (" ", "says nothing"),
                          (" und so", "--joined"), ("über", "sort"), ("Gro\u0308ße", "NFC")]:
            with self.subTest(text), self.assertRaisesRegex(add_text.AddError, why):
                add_text.add(self.folder, text, "menus")
            self.assertEqual(self.contents(), before)
        other.write_text(before[other].replace("Shown in: menus", "Shown in: the menus", 1),
                         encoding="utf-8")
        before = self.contents()
        with self.assertRaisesRegex(add_text.AddError, "differ"):
            add_text.add(self.folder, "Drehen", "menus")
        other.unlink()
        del before[other]
        with self.assertRaisesRegex(add_text.AddError, "13 files"):
            add_text.add(self.folder, "Drehen", "menus")
        self.assertEqual(self.contents(), before)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
