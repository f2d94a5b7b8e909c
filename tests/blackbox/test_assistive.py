"""The window used through the accessibility interface, nearly always without a key and without the
mouse: what is told there, and what can be done from there.

A screen reader reads out an announcement, wherever the focus is. A toolkit before 6.8 has none: there it
reads out what comes to show with the role “notification”. One that lies in an alert is an error.
"""
import unittest

import x11
from harness import CANCELLED, CHOOSE, CHOSEN, FINISHED, LOADING, READY, BlackBox, w
from routes import ADDED, BERLIN, COMPUTING, FIRST, LEIPZIG, MOVED, MUNICH, REMOVED, numbered
from routes import CHOSEN as PLACE_CHOSEN
from routes import FINISHED as ROUTE_FINISHED
from test_window import PREFERENCE, ROUTE_READY
from window import Atspi, GLib

EMPTY_QUERY = "Bitte einen Ortsnamen mit höchstens 300 Zeichen eingeben."
NEXT_PLACE = "Neuen Ort suchen. Deine bisherigen Stationen bleiben erhalten."
SEARCHING = "Orte werden gesucht …"
SEARCH_CANCELLED = "Suche abgebrochen."
TRAVEL = ("Auto: Straßenroute über den Routingdienst. Zug: entlang echter Gleise aus OpenStreetMap. Flug: Bogen "
          "in der Höhe zwischen den Stationen. Gebäude und Gelände kommen immer mit.")
ROUTING = ("Optional: eigener kompatibler HTTPS-Routingdienst ohne Zugangsdaten. Die Standardadresse verwendet "
           "öffentliche OSM-Daten.")
PACKAGE = ("Norvaxel 3D lädt zu jeder Route Gebäude und Straßen entlang der ganzen Strecke sowie das Gelände. "
           "Benötigt Internet; danach rendert das Paket offline.")
POLITE, ASSERTIVE = "polite", "assertive"


class Listener:
    """Hears what the programs on the desktop say, in order."""

    EVENTS = ("object:announcement", "object:state-changed:focused")
    # What a reader reads out anew where it is.
    REREAD = ("object:property-change:accessible-name", "object:property-change:accessible-value",
              "object:text-selection-changed")

    def __init__(self):
        self.announced = []  # (urgency, text)
        self.focused = []  # (role, name)
        self.reread = []  # (role, name)
        self._listener = Atspi.EventListener.new(self._hear)
        for event in self.EVENTS:
            self._listener.register(event)
        w.told.append(self._hear)

    def hear_what_is_reread(self):
        """Not where dialogs come and go: the toolkit complains of who asks after what is no more."""
        for event in self.REREAD:
            self._listener.register(event)

    def end(self):
        for event in self.EVENTS + self.REREAD:
            self._listener.deregister(event)
        w.told.remove(self._hear)

    def _hear(self, event):
        try:
            if event.type.startswith("object:announcement"):
                is_error = event.detail1 == int(Atspi.Live.ASSERTIVE)
                self.announced.append((ASSERTIVE if is_error else POLITE, event.any_data))
                return
            if event.type.startswith(self.REREAD):
                self.reread.append((w.role_of(event.source), event.source.get_name()))
                return
            if not event.detail1:
                return
            role = w.role_of(event.source)
            if event.type.startswith("object:state-changed:focused"):
                self.focused.append((role, event.source.get_name()))
            elif role == "notification":
                is_error = w.role_of(event.source.get_parent()) == "alert"
                self.announced.append((ASSERTIVE if is_error else POLITE, event.source.get_name()))
        except GLib.Error:
            pass  # it has gone meanwhile

    def waits_for(self, *said, seconds=w.SECONDS):
        """Waits until the last of this is announced, and returns all that was since the last time."""
        def all_said():
            w.hear()
            return len(self.announced) >= len(said) and self.announced[-1] == said[-1]
        w.until(all_said, f"{said[-1]} is announced", seconds, lambda: "\n".join(map(str, self.announced)))
        heard, self.announced = self.announced, []
        return heard


class Assistive(BlackBox):
    def start(self, *arguments, **environment):
        super().start(*arguments, **environment)
        self.listener = Listener()
        self.addCleanup(self.listener.end)
        # The program learns in its own time that somebody listens.
        w.until(self.is_heard, "the program announces", w.SECONDS, self.window.describe)
        self.window.type(w.QUERY, "x")
        self.listener.waits_for((POLITE, READY))
        self.window.type(w.QUERY, "")

    def is_heard(self):
        """Makes the program say something; whether it is heard soon."""
        self.window.press(w.SEARCH)
        try:
            return self.listener.waits_for((ASSERTIVE, EMPTY_QUERY), seconds=1)
        except w.NotThere:
            return None

    def assert_announced(self, *said):
        self.assertEqual(self.listener.waits_for(*said), list(said))

    def assert_focused(self, *controls):
        """The focus ends on that way."""
        w.until(lambda: w.hear() or self.listener.focused[-1:] == [controls[-1]], f"{controls[-1]} has the focus",
                w.SECONDS, lambda: self.listener.focused)
        self.assertEqual(self.listener.focused[-len(controls):], list(controls))
        self.listener.focused.clear()

    def choose_row(self, control, row):
        """Selects a row as a screen reader does, without a pointer."""
        self.assertTrue(Atspi.Table.add_row_selection(self.window.control(control), row))
        self.assertEqual(self.window.selected_row(control), row)

    def is_busy(self, text):
        return self.window.says(text).get_state_set().contains(Atspi.StateType.BUSY)

    def description(self, control):
        return self.window.control(control).get_description()

    def search_without_keys(self, text, hint=READY):
        """Searches and waits until the results are announced. An edit has its own hint, which is
        announced where it does not stand there already."""
        is_new = self.window.find(("label", hint)) is None
        self.window.type(w.QUERY, text)
        if is_new:
            self.assert_announced((POLITE, hint))
        self.window.press(w.SEARCH)
        self.assert_announced((POLITE, SEARCHING), (POLITE, CHOOSE))

    def test_a_place_is_imported(self):
        gate = self.folder / "gate"
        self.start(NORVAXEL_SANDBOX_GATE=gate)
        self.window.press(w.SEARCH)
        self.assert_announced((ASSERTIVE, EMPTY_QUERY))
        self.window.press(w.SEARCH)
        self.assert_announced((ASSERTIVE, EMPTY_QUERY))

        self.search_without_keys("Berlin")
        self.assertTrue(self.window.focused(w.QUERY), "no word takes the focus")
        self.assertEqual(self.rows()[0], "Berlin\nDeutschland · 52.5174, 13.3951")
        self.choose_row(w.RESULTS, 0)
        self.assert_announced((POLITE, CHOSEN))

        self.listener.focused.clear()
        self.window.press(w.DOWNLOAD)
        self.assert_announced((POLITE, LOADING))
        self.assertTrue(self.is_busy(LOADING))
        self.assertTrue(self.window.focused(w.CANCEL), "the search field is locked")
        self.assertEqual(self.listener.focused, [w.CANCEL], "nothing else had the focus on the way")
        gate.touch()
        self.assert_announced((POLITE, FINISHED))
        self.assertFalse(self.is_busy(FINISHED))
        self.assertTrue(self.window.focused(w.QUERY), "back where it was")
        self.assertTrue(self.window.enabled(w.FINDER))
        self.assertEqual(len(self.packages()), 1)

    def test_radius_service_and_language_are_chosen(self):
        self.start()
        self.window.step_to(w.RADIUS, "2 km")
        self.window.step_to(w.RADIUS, "400 m")
        self.window.step_to(w.ENDPOINT, "Eigene HTTPS-Adresse")
        self.assertTrue(self.window.editable(w.ENDPOINT_FIELD))
        self.window.type(w.ENDPOINT_FIELD, "https://maps.example.org/map")
        self.search_without_keys("Berlin")
        self.choose_row(w.RESULTS, 0)
        self.assert_announced((POLITE, CHOSEN))
        self.window.press(w.DOWNLOAD)
        self.assert_announced((POLITE, LOADING), (POLITE, FINISHED))
        arguments = self.importer_event()["argv"]
        self.assertIn("https://maps.example.org/map", arguments)
        self.window.press(w.LANGUAGE)
        self.window.step_to(("combo box", "Sprache wählen"), "Français")
        self.window.press(("push button", "Übernehmen"))
        self.window.press(w.OK)
        w.until(lambda: (self.home / PREFERENCE).read_text() == "fr\n", "French is stored")

    def test_a_search_is_busy_until_it_is_cancelled(self):
        self.start()
        self.geocoder_behaves({"hang": True})
        self.window.type(w.QUERY, "Berlin")
        self.window.press(w.SEARCH)
        self.assert_announced((POLITE, SEARCHING))
        self.assertTrue(self.is_busy(SEARCHING))
        self.window.press(w.CANCEL)
        self.assert_announced((POLITE, SEARCH_CANCELLED))
        self.assertFalse(self.is_busy(SEARCH_CANCELLED))

    def test_an_import_is_cancelled(self):
        self.start(NORVAXEL_SANDBOX_SECONDS="60")
        self.search_without_keys("Berlin")
        self.choose_row(w.RESULTS, 1)
        self.assert_announced((POLITE, CHOSEN))
        self.window.press(w.DOWNLOAD)
        self.assert_announced((POLITE, LOADING))
        self.window.press(w.CANCEL)
        self.assertEqual(self.listener.waits_for((POLITE, CANCELLED))[-1], (POLITE, CANCELLED))
        self.assertFalse(self.is_busy(CANCELLED))

    def test_a_failed_import_is_announced_and_its_alert_is_answered(self):
        self.importer_behaves("fail-silently")
        self.start()
        self.search_without_keys("Berlin")
        self.choose_row(w.RESULTS, 0)
        self.assert_announced((POLITE, CHOSEN))
        self.window.press(w.DOWNLOAD)
        self.assert_announced((POLITE, LOADING))
        title, _ = self.window.dialog()
        alert = next(each for each in self.window.all() if w.role_of(each) == "alert")
        self.assertEqual(alert.get_name(), title)
        self.window.press(w.OK)
        w.until(lambda: self.window.find(w.OK) is None, "the alert has gone")
        self.window.type(w.QUERY, "x")
        self.assert_announced((POLITE, READY))  # and not what the alert has said

    def test_who_works_elsewhere_hears_of_a_failed_import(self):
        gate = self.folder / "gate"
        self.importer_behaves("missing-file")
        self.start(NORVAXEL_SANDBOX_GATE=gate)
        self.search_without_keys("Berlin")
        self.choose_row(w.RESULTS, 0)
        self.window.press(w.DOWNLOAD)
        self.assert_announced((POLITE, CHOSEN), (POLITE, LOADING))
        w.until(lambda: self.window.focused(w.CANCEL), "the window has the keyboard")
        x11.take_the_keyboard()
        w.until(lambda: not self.window.focused(w.CANCEL), "the window has the keyboard no more")
        gate.touch()
        _, message = self.window.dialog()
        self.assert_announced((ASSERTIVE, message))

    def test_what_the_arrows_choose_is_told_once(self):
        self.start()
        self.listener.hear_what_is_reread()
        self.search_without_keys("Berlin")
        self.listener.focused.clear()
        x11.press("Down")
        self.assert_announced((POLITE, CHOSEN))
        self.assert_focused(w.RESULTS, ("list item", "Berlin\nDeutschland · 52.5174, 13.3951"))
        x11.press("Tab")
        self.assert_focused(w.RADIUS)
        for key, entry in (("Down", "1,2 km"), ("Down", "2 km"), ("Down", None), ("Up", "1,2 km")):
            x11.press(key)
            if entry is not None:
                self.assert_announced((POLITE, entry))
                self.assertEqual(self.window.value(w.RADIUS), entry)
        self.assertNotIn(w.RADIUS, self.listener.reread, "its entry is announced")
        self.listener.focused.clear()
        self.window.choose(w.RADIUS, "400 m")
        w.until(lambda: w.hear() or self.listener.focused[-1:] == [w.RADIUS], "the menu gives the keyboard back")
        x11.press("Down")
        self.assert_announced((POLITE, "800 m"))

    def test_what_tab_selects_in_a_field_is_told_with_its_focus_alone(self):
        self.start()
        self.listener.hear_what_is_reread()
        self.window.type(w.QUERY, "Berlin")
        x11.press("Tab")
        self.assert_focused(w.SEARCH)
        self.listener.reread.clear()
        x11.press("Shift+Tab")
        self.assert_focused(w.QUERY)
        self.assertEqual(self.listener.reread, [])
        text = self.window.control(w.QUERY)
        self.assertEqual(Atspi.Text.get_n_selections(text), 1)
        run = Atspi.Text.get_attribute_run(text, 0, False)[1:]
        self.assertEqual(run, (0, len("Berlin")), "up to the last letter")
        x11.press("Shift+Left")
        w.until(lambda: w.hear() or w.QUERY in self.listener.reread, "another selection is told of")

    def test_rows_out_of_view_count(self):
        self.start()
        self.search_without_keys("Berlin")
        results = self.window.control(w.RESULTS)
        _, top, _, height = self.window.area(results)
        rows = [results.get_child_at_index(number) for number in range(results.get_child_count())]
        self.assertEqual(len(rows), 8)
        self.assertGreater(self.window.area(rows[-1])[1], top + height, "the last one is out of view")
        for row in rows:
            self.assertTrue(row.get_state_set().contains(Atspi.StateType.SHOWING), row.get_name())
        self.choose_row(w.RESULTS, 7)
        self.assert_announced((POLITE, CHOSEN))
        w.until(lambda: self.window.area(rows[-1])[1] < top + height, "it is scrolled into view")

    def test_a_route_is_collected_ordered_and_computed(self):
        gate = self.folder / "gate"
        self.start(NORVAXEL_SANDBOX_GATE=gate)
        self.window.press(w.ROUTE_MODE)
        self.assert_announced((POLITE, ROUTE_READY))
        self.assertTrue(self.window.checked(w.ROUTE_MODE))
        for number, (text, said) in enumerate(((BERLIN, FIRST), (LEIPZIG, ADDED), (MUNICH, ADDED)), 1):
            self.search_without_keys(text, NEXT_PLACE)
            self.choose_row(w.RESULTS, 0)
            self.assert_announced((POLITE, PLACE_CHOSEN))
            self.window.press(w.ADD_STATION)
            self.assert_announced((POLITE, said))
            self.assertEqual(self.window.control(w.STATIONS).get_name(), f"Stationen · {number} / 32")
            self.assertEqual(self.window.selected_row(w.STATIONS), number - 1)
        self.window.press(w.STATION_UP)
        self.assert_announced((POLITE, MOVED))
        self.choose_row(w.STATIONS, 2)
        self.window.press(w.REMOVE_STATION)
        self.assert_announced((POLITE, REMOVED))
        self.assertEqual([row.split("\n")[0] for row in self.window.rows(w.STATIONS)], numbered(BERLIN, MUNICH))

        self.assertTrue(self.window.enabled(w.CALCULATE))
        self.window.press(w.CALCULATE)
        self.assert_announced((POLITE, COMPUTING))
        self.assertTrue(self.is_busy(COMPUTING))
        gate.touch()
        self.assert_announced((POLITE, ROUTE_FINISHED))
        self.assertFalse(self.is_busy(ROUTE_FINISHED))

    def test_typing_repeats_no_hint(self):
        self.start()
        for text in ("B", "Be", "Ber"):
            self.window.type(w.QUERY, text)
        # Whatever the letters say has been said by then.
        self.window.type(w.QUERY, "")
        self.window.press(w.SEARCH)
        self.assert_announced((ASSERTIVE, EMPTY_QUERY))

    def test_a_tooltip_is_a_description_and_a_caption_belongs_to_its_control(self):
        self.start()
        self.assertEqual(self.description(w.LANGUAGE), "Sprache auswählen und lokal speichern")
        for pop_up in (w.RADIUS, w.ENDPOINT):
            self.assertEqual(list(w.captions(self.window.control(pop_up))), [pop_up[1]])
            caption = self.window.control(("label", pop_up[1]))
            targets = [w.role_of(relation.get_target(0)) for relation in caption.get_relation_set()
                       if relation.get_relation_type() == Atspi.RelationType.LABEL_FOR]
            self.assertEqual(targets, ["combo box"])
            self.assertEqual(self.window.control(pop_up).get_name(), pop_up[1])
        self.assertEqual(self.window.value(w.RADIUS), "800 m")
        self.assertEqual(self.window.items(w.RADIUS), ["400 m", "800 m", "1,2 km", "2 km"])
        self.window.press(w.ROUTE_MODE)
        self.assertEqual(self.description(("panel", "Reiseart")), TRAVEL)
        self.assertEqual(self.description(w.ROUTING_FIELD), ROUTING)
        self.assertEqual(self.description(("check box", "3D-Paket: Gebäude, Straßen, Gelände")), PACKAGE)
        status = self.window.says(ROUTE_READY)
        self.assertEqual(status.get_description(), ROUTE_READY)


if __name__ == "__main__":
    unittest.main()
