"""A day of work in one run of the program: `./test day`, or `tests/day/run.py --searches 400 --imports 100`.

2,000 searches and 500 imports, most of which go well: some searches find nothing, fail, or are given up
before their answer; some imports fail or are cancelled, and some are routes. Whenever fifty searches are
done the program is left alone until nothing of it works any more, and looked at from outside.

The first tenth, and at least WARM_UP searches, warm it up. From then on, at rest, there are no more
descriptors, threads and children than at the first look after that, and the private memory grows by less
than LEAK bytes a search (the slope of the straight line through all looks, so that no single one decides).
Private memory is what belongs to no file, so that no other program that comes or goes changes it.
A leak shows once it no longer fits into the room that the heap has: a short run may be too short for it.
"""
import argparse
import collections
import os
import pathlib
import random
import statistics
import sys
import time
import unittest

sys.dont_write_bytecode = True
ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests/blackbox"))
import harness  # noqa: E402
import routes  # noqa: E402
from harness import w  # noqa: E402

SEED = 20261122
LOOK = 50  # searches from one look to the next
WARM_UP = 100
LEAK = 1024  # bytes of private memory a search: 2 MB a day
REST = 5  # seconds that the program may take to come to rest: more than a stopped child is waited for

FOUND = ("Berlin", "Hamburg", "München", "Köln", "Frankfurt", "Leipzig", "Dresden")
NOTHING = "Kein Ort gefunden. Ergänze den Namen um Land oder Region."
# What is typed, how the geocoder then behaves, and what the window says.
FAILURES = {
    "Nirgendwo 4711": ({}, NOTHING),
    "Störung": ({"status": 503}, "Die Ortssuche antwortet gerade nicht. Bitte später erneut versuchen."),
    "Unsinn": ({"body": '{"features":['}, "Die Ortssuche hat eine unlesbare Antwort geliefert."),
    "Riese": ({"size": 1_200_000}, "Die Antwort der Ortssuche ist zu groß. Bitte präziser suchen."),
    "Abriss": ({"cut_after": 5},
               "Die Ortssuche ist nicht erreichbar. Prüfe die Verbindung und versuche es erneut."),
}
SILENT = ("Stille", "Schweigen")  # these are never answered
SEARCHING = "Orte werden gesucht …"
SEARCH_CANCELLED = "Suche abgebrochen."
BAD_IMPORTS = ("fail", "fail-silently", "exit-7", "missing-file", "crash-by-signal")

# How often of a hundred.
SEARCHES = {"found": 76, "failed": 16, "replaced": 4, "cancelled": 4}
IMPORTS = {"place": 58, "place failed": 10, "place cancelled": 10,
           "route": 14, "route failed": 4, "route cancelled": 4}

Look = collections.namedtuple("Look", "searches seconds resident shared private descriptors threads children")
LINE = "{:>8} {:>6.0f} {:>8} {:>8} {:>10} {:>11} {:>7} {:>8}"


def fields(pid, name):
    """The numbers of a file such as /proc/PID/status, by the word before their colon."""
    lines = (line.split() for line in pathlib.Path(f"/proc/{pid}/{name}").read_text().splitlines())
    return {words[0].rstrip(":"): int(words[1]) for words in lines if len(words) > 1 and words[1].isdigit()}


def unless_gone(read, path):
    """What is read there; nothing if that has gone since it was listed."""
    try:
        return read(path)
    except OSError:
        return ""


def slope(looks, name):
    """Bytes a search by which the memory of that name grows."""
    return statistics.linear_regression([each.searches for each in looks],
                                        [1024 * getattr(each, name) for each in looks]).slope


class Day(routes.RouteCase):
    searches, imports = 2000, 500

    def test_nothing_grows(self):
        self.random = random.Random(SEED)
        self.counts = collections.Counter()
        self.looks, self.base, self.typed = [], None, None
        self.warm_up = max(self.searches // 10, WARM_UP)
        for text, (how, _) in [*FAILURES.items(), *((each, ({"hang": True}, "")) for each in SILENT)]:
            self.geocoder_behaves(how, text)
        self.start(NORVAXEL_SANDBOX_SECONDS="0")
        self.began = time.monotonic()
        print(LINE.replace(".0f", "").format("searches", "s", "RSS kB", "PSS kB", "private kB", "descriptors",
                                             "threads", "children"), flush=True)
        for number in range(1, self.searches + 1):
            # Evenly spread, whatever the two numbers are.
            if number * self.imports // self.searches > (number - 1) * self.imports // self.searches:
                self.one_import()
            else:
                self.one_search()
            w.hear()
            if number % LOOK == 0:
                self.look(number)
        print("\n".join(f"{count:6} {what}" for what, count in sorted(self.counts.items())))
        self.assert_all_was_done()
        self.assert_flat()

    def any_of(self, shares):
        (name,) = self.random.choices(list(shares), list(shares.values()))
        return name

    def another(self, *texts):
        """One of the texts, but not that which the field holds: nothing would change when it is typed again,
        and what the window says of the last search would be taken for what it says of this one."""
        self.typed = self.random.choice([each for each in texts if each != self.typed])
        return self.typed

    # --- the work ---

    def one_search(self):
        kind = self.any_of(SEARCHES)
        self.counts[f"search {kind}"] += 1
        if kind == "found":
            self.search(self.another(*FOUND))
        elif kind == "failed":
            text = self.another(*FAILURES)
            self.search(text, FAILURES[text][1])
        else:
            self.search(self.another(*SILENT), SEARCHING)
            if kind == "cancelled":
                self.window.press(w.CANCEL)
                self.window.says(SEARCH_CANCELLED)
            else:
                self.window.type(w.QUERY, self.another("etwas anderes"))
                self.window.says(harness.READY)

    def one_import(self):
        kind = self.any_of(IMPORTS)
        self.counts[f"import {kind}"] += 1
        if kind.endswith("failed"):
            self.importer_behaves(self.random.choice(BAD_IMPORTS))
        else:
            self.importer_behaves(SECONDS=60 if kind.endswith("cancelled") else 0)
        self.one_route(kind) if kind.startswith("route") else self.one_place(kind)

    def one_place(self, kind):
        self.search(self.another(*FOUND))
        self.window.select(w.RESULTS, 0)
        self.window.press(w.DOWNLOAD)
        self.see_end(kind, harness.FINISHED, harness.CANCELLED)

    def one_route(self, kind):
        """There and back."""
        self.window.press(w.ROUTE_MODE)
        self.search(self.another(*FOUND))
        self.window.select(w.RESULTS, 0)
        self.add_selected()
        self.add_selected()
        self.window.press(w.CALCULATE)
        self.see_end(kind, routes.FINISHED, routes.CANCELLED)
        for left in (1, 0):
            self.window.select(w.STATIONS, 0)
            self.window.press(w.REMOVE_STATION)
            self.window.says(f"Stationen · {left} / 32")
        self.window.press(w.PLACE_MODE)

    def see_end(self, kind, finished, cancelled):
        """Sees a job to the end that its kind says."""
        if kind.endswith("failed"):
            self.window.press(w.OK)
        elif kind.endswith("cancelled"):
            self.window.press(w.CANCEL)
            self.window.says(cancelled)
        else:
            self.window.says(finished)

    # --- the looks ---

    def look(self, searches):
        """What is there now that the program has nothing to do; it is given REST seconds to come to that."""
        deadline = time.monotonic() + REST
        counts = self.count()
        if self.base is None and searches >= self.warm_up:
            # The least of all that is seen in this time is what it is at rest.
            while time.monotonic() < deadline:
                time.sleep(w.PAUSE)
                counts = min(counts, self.count())
            self.base = counts
        while self.base is not None and self.exceeds(counts) and time.monotonic() < deadline:
            time.sleep(w.PAUSE)
            counts = self.count()
        memory = fields(self.program.pid, "smaps_rollup")
        look = Look(searches, time.monotonic() - self.began, memory["Rss"], memory["Pss"],
                    memory["Anonymous"] + memory["Swap"], *counts)
        self.looks.append(look)
        print(LINE.format(*look), flush=True)

    def exceeds(self, counts):
        return any(now > then for now, then in zip(counts, self.base))

    def count(self):
        """How many descriptors, threads and children it has."""
        tasks = pathlib.Path(f"/proc/{self.program.pid}/task")
        children = " ".join(unless_gone(pathlib.Path.read_text, each) for each in tasks.glob("*/children")).split()
        # The toolkit's pool of threads, and what wakes them, comes and goes with what it draws.
        descriptors = [each for each in pathlib.Path(f"/proc/{self.program.pid}/fd").iterdir()
                       if unless_gone(os.readlink, each) != "anon_inode:[eventfd]"]
        threads = [each for each in tasks.glob("*/comm")
                   if unless_gone(pathlib.Path.read_text, each) != "Thread (pooled)\n"]
        return len(descriptors), len(threads), len(children)

    # --- the judgement ---

    def assert_all_was_done(self):
        """The counts are not only this script's own: the geocoder, the importer and the disk tell the same."""
        given_up = self.counts["search replaced"] + self.counts["search cancelled"]
        cancelled = self.counts["import place cancelled"] + self.counts["import route cancelled"]
        silent = sum(each in SILENT for each in self.asked())
        self.assertEqual(len(self.asked()) - silent, self.searches - given_up)
        self.assertLessEqual(silent, given_up, "one may have been given up before it got there")
        self.assertIn(self.imports - len(self.importer_events()), range(cancelled + 1), "likewise")
        self.assertEqual(len(list((self.support / "Ortsdaten").glob("*/import-choice.json"))),
                         self.counts["import place"])
        self.assert_nothing_temporary()

    def assert_flat(self):
        looks = [each for each in self.looks if each.searches >= self.warm_up]
        grown = slope(looks, "private")
        print(f"after the warm-up: private memory {grown:+.0f} bytes a search, RSS {slope(looks, 'resident'):+.0f}")
        faults = [f"{counts} after {each.searches} searches, at first {self.base}" for each in looks
                  for counts in [(each.descriptors, each.threads, each.children)] if self.exceeds(counts)]
        if grown >= LEAK:
            faults.append(f"{grown:.0f} bytes of private memory a search")
        self.assertEqual(faults, [], "descriptors, threads and children; memory")


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("--searches", type=int, default=Day.searches)
    options.add_argument("--imports", type=int, default=Day.imports, help="so many of the searches lead to one")
    chosen = options.parse_args()
    Day.searches, Day.imports = chosen.searches, chosen.imports
    result = unittest.TextTestRunner().run(Day("test_nothing_grows"))
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
