"""What Orca says of the program while somebody uses it with the keyboard alone: each sentence once, in
order, in the language of the interface. Orca's own words ("combo box") are English here.

What is expected stands in LANGUAGE.orcaVERSION.txt, after each key what is heard of it. A sentence that
the next key or a moved focus breaks off is not heard. With NORVAXEL_TRANSCRIBE=1 the transcripts are
written anew, to be read before they are kept.
"""
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "blackbox"))
import x11  # noqa: E402
from harness import BlackBox, processes, w  # noqa: E402

VERSION = re.search(r"\d+", subprocess.run(["orca", "--version"], capture_output=True, text=True).stdout)
TRANSCRIBES = os.environ.get("NORVAXEL_TRANSCRIBE") == "1"
# What is not expected must have time to be said: that it comes late can only let a fault pass.
QUIET = 3 if TRANSCRIBES else 1


def transcript(language):
    return HERE / f"{language}.orca{VERSION.group()}.txt"


def kept(language, theme):
    """The steps of a theme, each with what is heard, as the transcript has them."""
    steps = []
    themes = transcript(language).read_text(encoding="utf-8").split("# ") if transcript(language).exists() else []
    for line in next((each for each in themes if each.startswith(theme + "\n")), "").splitlines()[1:]:
        if line.startswith("> "):
            steps.append((line[2:], []))
        elif line:
            steps[-1][1].append(line)
    return steps


class Spoken(BlackBox):
    def setUp(self):
        super().setUp()
        self.said_file = self.folder / "said.jsonl"
        self.said_file.touch()
        home = self.folder / "reader"
        (home / "orca").mkdir(parents=True)
        shutil.copy(HERE / "orca-customizations.py", home / "orca")
        # Orca looks for others of its kind, also on another desktop: it finds none.
        (home / "pgrep").symlink_to(shutil.which("true"))
        environment = dict(self.screen.environment, HOME=str(home), XDG_DATA_HOME=str(home), LANGUAGE="C",
                           NORVAXEL_SPOKEN=str(self.said_file))
        environment["PATH"] = f"{home}:{environment['PATH']}"
        self.others = []
        for words in (["openbox"], [shutil.which("orca")]):
            self.others.append(processes.start(words, env=environment, stdin=subprocess.DEVNULL,
                                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
            self.addCleanup(processes.end, self.others[-1])
        w.until(x11.is_managed, "the window manager is there")
        w.until(lambda: '"said"' in self.said_file.read_text(), "Orca speaks")
        self.known = len(self.said_file.read_text().splitlines())

    def strangers(self):
        ours = {pid for each in self.others for pid in (each.pid, *processes.descendants(each.pid))}
        return [pid for pid in super().strangers() if pid not in ours]

    def printed(self):
        """Without what the toolkit says of a reader that asks after what is no more."""
        of_the_toolkit = re.compile(r"qt\.accessibility\.atspi: |QSpiApplication::|WARNING QAccessible")
        return "".join(line for line in super().printed().splitlines(True) if not of_the_toolkit.match(line))

    def heard(self):
        """What has been said since the last step and was not broken off.

        Without a remark of Orca's own on the field that was left: what comes next breaks it off, or not.
        """
        found = []
        for line in self.said_file.read_text(encoding="utf-8").splitlines()[self.known:]:
            event = json.loads(line)
            found = found + [event["said"]] if "said" in event else []
        return [each for each in found if each != "Text unselected."]

    def step(self, name, act):
        """Acts, then waits until what is expected has been heard and Orca is quiet."""
        act()
        expected = next(self.expected, (None, []))[1]
        if not TRANSCRIBES:
            try:
                w.until(lambda: w.hear() or self.heard() == expected, name)
            except w.NotThere:
                pass  # the whole transcript is compared in the end
        size, since = 0, time.monotonic()
        while time.monotonic() < since + QUIET:
            w.hear()
            if self.said_file.stat().st_size != size:
                size, since = self.said_file.stat().st_size, time.monotonic()
            time.sleep(w.PAUSE)
        self.steps.append((name, self.heard()))
        self.known = len(self.said_file.read_text().splitlines())
        if not TRANSCRIBES:
            self.assertEqual((name, expected), self.steps[-1])

    def keys(self, *names):
        for name in names:
            self.step(name, lambda: x11.press(name))

    def type(self, text):
        """The first letter changes what the window says."""
        for part in filter(None, (text[0], text[1:])):
            self.step(f"“{part}”", lambda: [x11.press("space" if letter == " " else letter) for letter in part])

    def search(self, text):
        self.type(text)
        self.keys("Return")

    def open(self, theme, *arguments):
        self.steps, self.theme = [], theme
        self.expected = iter(kept(self.language, theme))
        self.gate = self.folder / "gate"
        self.step("the window opens", lambda: self.start(*arguments, LANGUAGE=self.language,
                                                         NORVAXEL_SANDBOX_GATE=self.gate))

    def close(self):
        if TRANSCRIBES:
            lines = [f"# {self.theme}"]
            for name, heard in self.steps:
                lines += [f"> {name}", *heard]
            mode = "w" if self.theme == "language" else "a"  # the first in the order of names
            with open(transcript(self.language), mode, encoding="utf-8") as file:
                file.write("\n".join(lines) + "\n\n")
        else:
            self.assertIsNone(next(self.expected, None), "the transcript ends with the walk")

    def walk_place(self):
        self.open("place")
        self.search("berlin")
        self.keys("Down", "Down", "Tab", "Down", "Tab", "Down", "Tab", "Tab", "Tab", "space")
        self.step("the import ends", self.gate.touch)
        self.gate.unlink()
        self.importer_behaves("missing-file")
        self.keys("space")
        self.step("the import fails", self.gate.touch)
        self.keys("space", "Tab", "Tab")
        self.search("xyzxyz")
        processes.end(self.geocoder)
        self.search("z")
        self.close()

    def walk_route(self):
        self.open("route", "--route")
        for town in ("berlin", "leipzig", "muenchen", "berlin"):
            self.search(town)
            self.keys("Down", "Tab", "space")
        self.keys(*["Tab"] * 4, *["Shift+Tab"] * 6, "space")
        self.step("the route is there", self.gate.touch)
        self.close()

    def walk_language(self):
        self.open("language")
        self.keys("Shift+Tab", "Shift+Tab", "space", "Down", "Tab", "space", "space")
        self.close()


for code in ("de", "en", "ar"):
    for theme in ("place", "route", "language"):
        def case(self, code=code, theme=theme):
            self.language = code
            getattr(self, f"walk_{theme}")()
        setattr(Spoken, f"test_{code}_{theme}", case)


if __name__ == "__main__":
    unittest.main()
