"""What a person does in the window, step by step, each step told before it is done."""
import window as w

FINISHED_PLACE = "Norvaxel-3D-Paket fertig – im Plugin »Letzten Import laden« wählen."
FINISHED_ROUTE = ("Norvaxel-3D-Paket fertig: Route, Gebäude und Gelände – im Plugin »Letzten Import laden« "
                  "wählen. Das Paket rendert offline.")
STATIONS = ("Berlin Hauptbahnhof", "München Hauptbahnhof", "Leipzig Hauptbahnhof")
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


def add_station(window, text, number, say):
    """Searches text and adds its first result as the station of that number."""
    search(window, text, say)
    say("Selects the first result")
    window.select(w.RESULTS, 0)
    say("Presses “Als Station hinzufügen”")
    window.press(w.ADD_STATION)
    window.says(f"Stationen · {number} / 32")


def route(window, say):
    """Computes a route by train over three stations, the last two of which change places."""
    for number, text in enumerate(STATIONS, 1):
        add_station(window, text, number, say)
    say("Presses “Hoch”: the station added last becomes the second")
    window.press(w.STATION_UP)
    first, last, middle = STATIONS
    expected = [f"{number} · {text}" for number, text in enumerate((first, middle, last), 1)]
    w.until(lambda: [row.split("\n")[0] for row in window.rows(w.STATIONS)] == expected,
            f"the stations are {expected}", w.SECONDS, window.describe)
    for row in window.rows(w.STATIONS):
        say("    " + row.replace("\n", " · "))
    say("Chooses “Zug” and presses “Route berechnen”")
    window.press(w.TRAIN)
    window.press(w.CALCULATE)
    window.says(FINISHED_ROUTE, DOWNLOAD_SECONDS)
    say(f"The window says “{FINISHED_ROUTE}”")
