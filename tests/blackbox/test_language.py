"""The language dialog of the built program: what was chosen there is what the next start speaks."""
import unittest

from harness import BlackBox, w
from test_window import PREFERENCE


class Language(BlackBox):
    def test_the_next_start_speaks_the_chosen_language(self):
        self.start(LANGUAGE="de")
        self.window.press(w.LANGUAGE)
        self.window.choose(("combo box", "Sprache wählen"), "English")
        self.window.press(("push button", "Übernehmen"))
        w.until(lambda: self.window.find(w.OK), "the choice is confirmed", w.SECONDS, self.window.describe)
        self.assertEqual(self.window.dialog()[0], "Language saved")
        self.window.press(w.OK)
        self.assertTrue(self.window.find(w.SEARCH), "this window keeps its language")
        self.program.terminate()
        self.assert_ended_well()
        self.assertEqual((self.home / PREFERENCE).read_bytes(), b"en\n")
        self.start(LANGUAGE="de")
        self.window.press(("push button", "Language"))
        self.assertEqual(self.window.value(("combo box", "Choose language")), "English")

    def test_a_place_is_imported_in_arabic(self):
        query, search = ("text", "مدينة أو مكان أو عنوان حول العالم"), ("push button", "بحث")
        self.start(LANGUAGE="de")
        self.window.press(w.LANGUAGE)
        self.window.choose(("combo box", "Sprache wählen"), "العربية")
        self.window.press(("push button", "Übernehmen"))
        self.window.press(w.OK)
        self.program.terminate()
        self.assert_ended_well()
        self.start(LANGUAGE="de")
        self.window.type(query, "Berlin")
        self.window.press(search)
        self.window.select(("list", "نتائج البحث · اختر مكانًا"), 1)
        self.window.press(("push button", "تنزيل بيانات المكان"))
        self.window.says("أصبحت حزمة Norvaxel 3D جاهزة. اختر «تحميل آخر استيراد» في المكون الإضافي.")
        self.assertEqual(len(self.packages()), 1)
        (x, _, width, _), (field, *_) = map(self.window.area, map(self.window.control, (search, query)))
        self.assertLess(x + width, field, "the window runs from right to left")


if __name__ == "__main__":
    unittest.main()
