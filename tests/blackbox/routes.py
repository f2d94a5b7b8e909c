"""What the cases of a route share: its sentences, and the way to a list of stations."""
import walk
from harness import BlackBox, w

BERLIN, MUNICH, LEIPZIG = walk.STATIONS
FINISHED = walk.FINISHED_ROUTE
CANCELLED = "Routenberechnung abgebrochen. Deine Stationen bleiben erhalten."
CHOSEN = "Treffer ausgewählt. Füge ihn deiner Route als Station hinzu."
FIRST = "Start gesetzt. Suche jetzt dein Ziel und füge es als Station hinzu."
ADDED = "Station hinzugefügt. Reihenfolge prüfen und Route berechnen."
MOVED = "Reihenfolge geändert. Die Route wird in dieser Reihenfolge berechnet."
REMOVED = "Station entfernt. Mindestens zwei Stationen bilden eine Route."
PROGRESS = "{} und Gelände werden für Norvaxel 3D geladen. Lange Strecken brauchen einige Minuten …"
COMPUTING = PROGRESS.format("Route, Gebäude")


def numbered(*names):
    return [f"{number} · {name}" for number, name in enumerate(names, 1)]


class RouteCase(BlackBox):
    """The window in route mode."""

    def start_route(self, *stations, **environment):
        """Starts the program and adds the first result of each search as a station."""
        self.start("--route", **environment)
        for text in stations:
            self.search(text)
            self.window.select(w.RESULTS, 0)
            self.add_selected()

    def start_round_trip(self, **environment):
        """The quickest way to two stations: there and back."""
        self.start_route(BERLIN, **environment)
        self.add_selected()

    def add_selected(self):
        number = len(self.window.rows(w.STATIONS)) + 1
        self.window.press(w.ADD_STATION)
        self.window.says(f"Stationen · {number} / 32")

    def stations(self):
        """The rows of the station list, as far as a station's name goes."""
        return [row.split("\n")[0] for row in self.window.rows(w.STATIONS)]

    def compute(self, answer=FINISHED):
        self.window.press(w.CALCULATE)
        self.window.says(answer)

    def start_computing(self, number=0, text=COMPUTING):
        """Presses “Route berechnen” and returns the process of the importer that this case starts as
        the number-th, counted from 0. Only for an importer that takes its time."""
        self.window.press(w.CALCULATE)
        self.window.says(text)
        return self.importer_event(number=number)["pid"]

    def assert_idle(self):
        """Everything can be used again."""
        for control in (w.QUERY, w.SEARCH, w.CALCULATE, w.LANGUAGE, w.ROUTING_FIELD, w.TRAIN):
            self.assertTrue(self.window.enabled(control), control[1])
        self.assertIsNone(self.window.find(w.CANCEL))

    def packages(self):
        return sorted((self.support / "Routen").glob("*"))
