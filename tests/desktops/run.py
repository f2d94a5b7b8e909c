"""Tries the built program on one desktop after the other: `./test desktops`, `./test desktops xfwm4`.

Each desktop and each size of screen has a process, a display, a session bus and a home of its own. What was
seen goes into the table of docs/desktops.md; the rows of the desktops that were not asked for stay.
"""
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
HERE = pathlib.Path(__file__).resolve().parent
PAPER = HERE.parents[1] / "docs/desktops.md"
sys.path.insert(0, str(HERE))
import desktops  # noqa: E402

# By a case's name: its column's heading, and what the legend says of it.
COLUMNS = {
    "a_place_with_mouse_and_keyboard": ("place", "a place is typed, searched, chosen and imported"),
    "a_failure_shows_its_alert": ("failure", "an import that fails shows its alert; Return closes it"),
    "the_list_of_languages_is_where_it_belongs": (
        "list", "how often of all times the language dialog is where it says, and its list over its control"),
    "a_click_on_what_a_sheet_covers": ("click", "after a click on the window behind it, Return closes an alert and "
                                       "Escape the dialog"),
    "the_keyboard_is_where_it_was_after_the_window_was_left": (
        "back", "the dialog has the keyboard again after a click behind it, another window (two ways back) and "
        "another workspace"),
    "nothing_behind_it_is_there_for_assistive_technology": ("reader", "a screen reader finds the dialog alone"),
    "a_sheet_moves_with_its_window": ("move", "the dialog stays in the middle of the window that moves"),
    "an_alert_of_a_minimised_window_is_there_when_it_comes_back": (
        "icon", "an alert that came while the window was minimised is there afterwards"),
    "zoom_and_back": ("zoom", "the menu maximises the window and restores it, the dialog is in its middle both times"),
    "the_task_bar_shows_that_a_job_has_ended_in_a_window_that_is_not_active": (
        "attention", "a job that ends, well or badly, while another window is active asks for attention"),
    "a_job_that_ends_in_the_active_window_asks_for_nothing": ("quiet", "in the active window it asks for nothing"),
    "an_alert_does_not_keep_the_program_from_ending": ("end", "the program ends while an alert is open: by Ctrl+Q, "
                                                       "Ctrl+W, the frame's button and SIGTERM"),
    "closing_ends_the_job_first": ("job", "closing in the middle of an import ends the importer, then the program, "
                                   "with status 0 and nothing left"),
}
# Width, height, scale of the text and of everything else.
SCREENS = ((1366, 768, 1), (1280, 720, 1), (1920, 1080, 1.5))
TITLE_BAR = "where the title bar is, from and to which line, below another program's bar of 40 lines; and how much of "
TITLE_BAR += "the window's end is cut (on Wayland the compositor places windows)"
MAIN_SCREEN = (1280, 1024, 1)


def heading(screen):
    width, height, scale = screen
    return f"{width} × {height}" + (f" at {scale:.0%}" if scale != 1 else "").replace("%", " %")


def debian():
    words = pathlib.Path("/etc/os-release").read_text(encoding="utf-8")
    return re.search(r'^VERSION_ID="?(\d+)', words, re.MULTILINE)[1]


class Seen(unittest.TextTestResult):
    """What the table says of each case."""

    def __init__(self, *arguments, **named):
        super().__init__(*arguments, **named)
        self.cells, self.reasons = {}, {}

    def _no(self, case, error):
        lines = [line for line in str(error[1]).splitlines() if line.strip()]
        column = case._testMethodName.removeprefix("test_")
        self.cells[column] = "**no**" if case.saw == "yes" else f"**{case.saw}**"
        self.reasons.setdefault(column, lines[0] if lines else error[0].__name__)

    def addFailure(self, test, error):
        super().addFailure(test, error)
        self._no(test, error)

    def addError(self, test, error):
        super().addError(test, error)
        self._no(test, error)

    def addSubTest(self, test, subtest, error):
        super().addSubTest(test, subtest, error)
        if error:
            self._no(test, (error[0], f"{subtest._message}: {error[1]}"))

    def addSkip(self, test, reason):
        super().addSkip(test, reason)
        column = test._testMethodName.removeprefix("test_")
        self.cells[column], self.reasons[column] = "–", reason

    def addSuccess(self, test):
        super().addSuccess(test)
        self.cells[test._testMethodName.removeprefix("test_")] = test.saw


def child(name, screen, file):
    """Runs the cases of one desktop on one screen, and writes what was seen into the file."""
    if name in desktops.X11:
        import on_x11 as cases
        theme = cases.Sheets if screen == MAIN_SCREEN else cases.Screens
        of = desktops.X11[name]
    else:
        import on_wayland as cases
        theme, of = cases.Sheets, desktops.WAYLAND[name]
    cases.begin(theme, of, screen)
    loaded = unittest.defaultTestLoader.loadTestsFromTestCase(theme)
    result = unittest.TextTestRunner(resultclass=Seen, verbosity=2).run(loaded)
    if screen != MAIN_SCREEN:
        for found in (result.cells, result.reasons):
            if "title_bar" in found:
                found[heading(screen)] = found.pop("title_bar")
    pathlib.Path(file).write_text(json.dumps([result.cells, result.reasons]), encoding="utf-8")


def try_on(name, screen):
    """What was seen of one desktop on one screen: (by case what the table says, by case why)."""
    print(f"\n== {name}, {heading(screen)}", flush=True)
    with tempfile.NamedTemporaryFile() as file:
        words = [sys.executable, "-B", __file__, "--child", name, json.dumps(screen), file.name]
        status = subprocess.run(words, stdin=subprocess.DEVNULL).returncode
        found = pathlib.Path(file.name).read_text(encoding="utf-8")
    return json.loads(found) if found else [{}, {heading(screen): f"the run ended with status {status}"}]


def read_paper():
    """The rows and the remarks that the paper has already, by desktop and release of Debian."""
    rows, remarks = {}, {}
    text = PAPER.read_text(encoding="utf-8") if PAPER.exists() else ""
    for line in text.splitlines():
        row = re.match(r"\| (\w+) \S+ \| (\d+) \|", line)
        remark = re.match(r"\| (\w+) \| (\d+) \|", line)
        if row:
            rows[row[1], row[2]] = line
        if remark:
            remarks.setdefault((remark[1], remark[2]), []).append(line)
    return rows, remarks


def write_paper(rows, remarks):
    headings = [short for short, _ in COLUMNS.values()] + [heading(each) for each in SCREENS]
    names = [*desktops.X11, *desktops.WAYLAND]
    order = sorted(rows, key=lambda key: (names.index(key[0]), key[1]))
    legend = [f"| {short} | {text} |" for short, text in COLUMNS.values()]
    legend += [f"| {heading(SCREENS[0])} and the others | {TITLE_BAR} |"]
    said = [line for key in order for line in remarks.get(key, [])]
    PAPER.write_text("\n".join([
        "# The program on desktops", "",
        "`./test desktops` tries the built program under each of these window managers (X11) and compositors",
        "(Wayland), with the local geocoder and the stand-in importer, and writes this page. `./test desktops",
        "NAME` tries one and leaves the other rows as they are. How each is started, and what of its settings is",
        "changed: `tests/desktops/desktops.py`. All run on a virtual screen of X; a compositor is a window that",
        "fills it, and has its keyboard and mouse. Assistive technology listens all the time.", "",
        f"| desktop | Debian | {' | '.join(headings)} |", "| --- " * (len(headings) + 2) + "|",
        *[rows[key] for key in order], "",
        "**no**, or a bold number: not as expected. –: cannot be tried there. Why, for both:", "",
        "| desktop | Debian | column | why |", "| --- | --- | --- | --- |", *said, "",
        "| column | what it says |", "| --- | --- |", *legend, ""]), encoding="utf-8")


def main(names):
    known = {**desktops.X11, **desktops.WAYLAND}
    unknown = [name for name in names if name not in known]
    if unknown:
        sys.exit(f"There is no desktop {unknown[0]}; there are {', '.join(known)}.")
    counts = {"yes": 0, "no": 0}
    for name in names or known:
        cells, reasons = {}, {}
        for screen in (MAIN_SCREEN, *(SCREENS if name in desktops.X11 else ())):
            for into, found in zip((cells, reasons), try_on(name, screen)):
                into.update(found)
        if name in desktops.WAYLAND:
            cells.update((heading(each), "–") for each in SCREENS)
        for column in [*COLUMNS, *map(heading, SCREENS)]:
            bad = cells.get(column, "**no**").startswith("**")
            counts["no" if bad else "yes"] += cells.get(column) != "–"
            if column not in cells:
                cells[column] = "**no**"
        key = name, debian()
        rows, remarks = read_paper()
        shown = " | ".join(cells[column] for column in [*COLUMNS, *map(heading, SCREENS)])
        rows[key] = f"| {name} {known[name].version()} | {key[1]} | {shown} |"
        remarks[key] = [f"| {name} | {key[1]} | {COLUMNS.get(column, (column,))[0]} | {reason} |"
                        for column, reason in [*reasons.items(), *known[name].known.items()]]
        write_paper(rows, remarks)
    print(f"\n{counts['yes']} passed, {counts['no']} failed")
    return 1 if counts["no"] else 0


if __name__ == "__main__":
    if sys.argv[1:2] == ["--child"]:
        child(sys.argv[2], tuple(json.loads(sys.argv[3])), sys.argv[4])
    else:
        sys.exit(main(sys.argv[1:]))
