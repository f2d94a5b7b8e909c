"""What a person does in the window, step by step, each step told before it is done."""
import window as w

FINISHED_PLACE = "Norvaxel-3D-Paket fertig – im Plugin »Letzten Import laden« wählen."
FINISHED_ROUTE = ("Norvaxel-3D-Paket fertig: Route, Gebäude und Gelände – im Plugin »Letzten Import laden« "
                  "wählen. Das Paket rendert offline.")
STATIONS = ("Berlin Hauptbahnhof", "Leipzig Hauptbahnhof", "München Hauptbahnhof")
DOWNLOAD_SECONDS = 120


def search(window, text, say):
    """Searches text and waits until there are results; returns their rows."""
    say(f"Types “{text}” and presses “Suchen”")
    window.type(w.QUERY, text)
    window.press(w.SEARCH)
    w.until(lambda: window.find(w.SEARCH) and window.enabled(w.SEARCH) and results(window),
            f"“{text}” is found", w.SECONDS, window.describe)
    rows = results(window)
    for row in rows:
        say("    " + row.replace("\n", " · "))
    return rows


def results(window):
    """The rows of the results list, as far as there are any."""
    return window.rows(w.RESULTS) if window.find(w.RESULTS) else []


def place(window, say):
    """Imports the first place that “Berlin” finds."""
    search(window, "Berlin", say)
    say("Selects the first result")
    window.select(w.RESULTS, 0)
    say("Presses “Ortsdaten laden”")
    window.press(w.DOWNLOAD)
    window.says(FINISHED_PLACE, DOWNLOAD_SECONDS)
    say(f"The window says “{FINISHED_PLACE}”")


def add_station(window, text, say):
    """Searches text and adds its first result as a station."""
    search(window, text, say)
    window.select(w.RESULTS, 0)
    say("Presses “Als Station hinzufügen”")
    window.press(w.ADD_STATION)


def route(window, say):
    """Computes a route over three stations."""
    for text in STATIONS:
        add_station(window, text, say)
    window.says(f"Stationen · {len(STATIONS)} / 32")
    say("Presses “Route berechnen”")
    window.press(w.CALCULATE)
    window.says(FINISHED_ROUTE, DOWNLOAD_SECONDS)
    say(f"The window says “{FINISHED_ROUTE}”")
