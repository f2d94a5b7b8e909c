"""The window as it opens: language, defaults, what assistive technology is told, the keyboard."""
import unittest

from harness import CHOOSE, CHOSEN, READY, BlackBox, mode, w

PREFERENCE = "Library/Application Support/Norvaxel/Preferences/3d-language.txt"
ROUTE_READY = ("Stadt oder Adresse suchen, Treffer auswählen und als Station hinzufügen. Mindestens zwei "
               "Stationen sind nötig.")


class FirstStart(BlackBox):
    def test_the_language_of_the_system_is_kept_from_the_first_start(self):
        for language, code, search in (("en_GB.UTF-8", "en", "Search"), ("xx:de_AT", "de", "Suchen")):
            with self.subTest(language):
                file = self.home / PREFERENCE
                file.unlink(missing_ok=True)
                self.start(LANGUAGE=language)
                self.window.control(("push button", search))
                self.assertEqual(file.read_bytes(), f"{code}\n".encode())
                self.assertEqual(mode(file), 0o600)
                self.assertEqual([each.name for each in file.parent.iterdir()], [file.name])
                self.program.terminate()
                self.program.wait(w.SECONDS)

    def test_the_kept_language_decides_whatever_the_system_says(self):
        file = self.home / PREFERENCE
        file.parent.mkdir(parents=True)
        file.write_text("en\n")
        self.start(LANGUAGE="de")
        self.window.control(("push button", "Search"))
        self.window.control(("text", "City, place or address worldwide"))
        self.assertEqual(file.read_text(), "en\n")

    def test_a_linked_preference_is_neither_read_nor_replaced(self):
        file = self.home / PREFERENCE
        file.parent.mkdir(parents=True)
        target = self.folder / "target"
        target.write_text("en\n")
        file.symlink_to(target)
        self.start(LANGUAGE="de")
        self.window.control(w.SEARCH)
        self.assertEqual(target.read_text(), "en\n")
        self.assertTrue(file.is_symlink())

    def test_without_home_it_starts_all_the_same(self):
        self.start(HOME=None)
        self.window.says(READY)

    def test_place_mode_opens_with_its_defaults(self):
        self.start()
        self.window.says(READY)
        self.window.says("Ortsdaten mit Gebäuden und Gelände für Norvaxel 3D")
        self.assertTrue(self.window.checked(w.PLACE_MODE))
        self.assertEqual(self.window.value(w.RADIUS), "800 m")
        self.assertEqual(self.window.value(w.ENDPOINT), "OpenStreetMap direkt")
        self.assertEqual(self.window.text(w.ENDPOINT_FIELD), "https://api.openstreetmap.org/api/0.6/map")
        self.assertFalse(self.window.editable(w.ENDPOINT_FIELD))
        self.assertFalse(self.window.enabled(w.DOWNLOAD))
        for hidden in (w.CANCEL, w.FINDER, w.ADD_STATION, w.CALCULATE, w.ROUTING_FIELD):
            self.assertIsNone(self.window.find(hidden), hidden[1])

    def test_route_mode_opens_with_its_defaults(self):
        self.start("--route")
        self.window.says(ROUTE_READY)
        self.window.says("Deine Stationen. Straßen, Gebäude und Gelände entlang der Strecke.")
        self.window.says("Stationen · 0 / 32")
        self.assertTrue(self.window.checked(w.ROUTE_MODE))
        self.assertTrue(self.window.checked(("radio button", "Auto")))
        package = ("check box", "3D-Paket: Gebäude, Straßen, Gelände")
        self.assertTrue(self.window.checked(package))
        self.assertFalse(self.window.enabled(package))
        self.assertEqual(self.window.text(w.ROUTING_FIELD),
                         "https://routing.openstreetmap.de/routed-car/route/v1/driving")
        self.assertFalse(self.window.enabled(w.CALCULATE))
        for hidden in (w.CANCEL, w.FINDER, w.RADIUS, w.ENDPOINT, w.ENDPOINT_FIELD, w.DOWNLOAD):
            self.assertIsNone(self.window.find(hidden), hidden[1])

    def test_changing_the_mode_changes_what_shows_and_says(self):
        self.start()
        self.window.press(w.ROUTE_MODE)
        self.window.says(ROUTE_READY)
        self.window.control(w.ADD_STATION)
        self.assertIsNone(self.window.find(w.RADIUS))
        self.window.press(w.PLACE_MODE)
        self.window.says(READY)
        self.window.control(w.RADIUS)


class Keyboard(BlackBox):
    def test_return_searches_and_down_enters_the_results(self):
        self.start()
        self.window.type(w.QUERY, "Neustadt")
        self.window.key(w.KEY_RETURN)
        self.window.says(CHOOSE)
        self.window.key(w.KEY_DOWN)
        self.window.says(CHOSEN)

    def test_every_control_that_can_be_used_has_a_spoken_name(self):
        for arguments in ((), ("--route",)):
            with self.subTest(arguments):
                self.start(*arguments)
                self.window.control(w.SEARCH)
                for role in ("text", "push button", "list", "radio button", "check box"):
                    for each in self.window.all(role):
                        self.assertTrue(each.get_name(), role)
                for each in self.window.all("combo box"):
                    self.assertTrue(list(w.captions(each)), "a pop-up belongs to its caption")
                self.program.terminate()
                self.program.wait(w.SECONDS)


if __name__ == "__main__":
    unittest.main()
