"""What every black-box case stands on.

Each case gets the built program in a folder of its own beside the stand-in importer, its own home,
data and temporary folder and its own geocoder; all cases of one run share a virtual desktop. The
program is used through the accessibility interface and judged by what is on the disk, what reached
the geocoder, and what the importer saw. Every case also fails when the program prints anything, ends
badly, or leaves a process behind.
"""
import atexit
import json
import os
import pathlib
import shlex
import shutil
import signal
import stat
import subprocess
import sys
import tempfile
import unittest
import urllib.parse

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "sandbox"))
# A wait ends with its condition: how long it may take says nothing of the program.
os.environ.setdefault("NORVAXEL_PATIENCE", "60")
import desktop  # noqa: E402
import processes  # noqa: E402
import window as w  # noqa: E402

PROGRAM = pathlib.Path(os.environ.get("NORVAXEL_PROGRAM", ROOT / "build/dev/bin/norvaxel-orte-und-routen"))
STAND_IN = ROOT / "sandbox/Norvaxel-Ortsimport"
GEOCODER = ROOT / "sandbox/geocoder"
QUICK = "0.3"  # seconds of a stand-in's download, where a case does not need longer

READY = "Gib einen Ort ein und starte die Suche."
CHOOSE = "Wähle einen Treffer aus. Gleichnamige Orte stehen mit Region und Land in der Liste."
CHOSEN = "Ort ausgewählt. Umkreis festlegen und Ortsdaten laden."
FINISHED = "Norvaxel-3D-Paket fertig – im Plugin »Letzten Import laden« wählen."
CANCELLED = "Import abgebrochen. Du kannst einen anderen Ort oder Umkreis wählen."
LOADING = "Ortsdaten, Gebäude und Gelände werden für Norvaxel 3D geladen. Das kann etwas dauern …"

_screen = None


def screen(size=desktop.SCREEN):
    """The desktop that all cases of this process share; its size is that of the first call."""
    global _screen
    if _screen is None:
        processes.adopt_orphans()
        folder = tempfile.mkdtemp(prefix="norvaxel-desktop-")
        _screen = desktop.Desktop(folder, size)
        # The accessibility library of this process looks for the same desktop.
        os.environ.update(_screen.environment)
        w.desktop()

        def end():
            _screen.end()
            processes.end_all()
            shutil.rmtree(folder, ignore_errors=True)
        atexit.register(end)
    return _screen


def mode(path):
    return stat.S_IMODE(os.lstat(path).st_mode)


class BlackBox(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        if not PROGRAM.exists():
            self.fail(f"{PROGRAM} is not built")
        self.screen = screen()
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="norvaxel-case-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.bin, self.home, self.data, self.temporary = (
            self.folder / name for name in ("bin", "home", "data", "temporary"))
        for each in (self.home, self.data, self.temporary):
            each.mkdir(mode=0o700)
        if (PROGRAM.parent / "qt.conf").exists():  # it is found beside the program, and the rest by it
            shutil.copytree(PROGRAM.parent, self.bin, copy_function=os.link)
        else:
            self.bin.mkdir(mode=0o700)
            shutil.copy2(PROGRAM, self.bin)
        self.importer = self.bin / STAND_IN.name
        shutil.copy2(STAND_IN, self.importer)
        self.record_file = self.folder / "importer.jsonl"
        self.behaviour_file = self.folder / "behaviour.json"
        self.program = None
        self.window = None
        self.geocoder = None
        self.expected_exit = 0
        self.addCleanup(self._end)

    def tearDown(self):
        """The case is over: what did the program say, how did it end, what did it leave?"""
        if self.program is None:
            return
        if self._has_failed():
            self._keep_evidence()
        if self.program.poll() is None:
            self.program.terminate()
        try:
            self.program.wait(w.SECONDS)
        except subprocess.TimeoutExpired:
            self.fail("the program does not end when it is asked to")
        if not self._has_failed():
            self.assert_ended_well()

    def assert_ended_well(self):
        """The program ends of itself now, has printed nothing, and leaves nothing running."""
        self.assertEqual(self.program.wait(w.SECONDS), self.expected_exit, "how the program ended")
        self.assertEqual(self.printed(), "", "the program prints nothing")
        w.until(lambda: not self.strangers(), "nothing of the program is left running", w.SECONDS,
                lambda: "\n".join(map(processes.command_line, self.strangers())))

    def _end(self):
        for child in (self.program, self.geocoder):
            if child is not None:
                processes.end(child)
        if self.geocoder is not None:
            self.geocoder.stdin.close()
            self.geocoder.stdout.close()
        for pid in self.strangers():
            os.kill(pid, signal.SIGKILL)
        processes.reap()

    def _has_failed(self):
        return any(error for _, error in self._outcome.result.failures + self._outcome.result.errors
                   if _ is self) or not self._outcome.success

    def _keep_evidence(self):
        picture = pathlib.Path(tempfile.gettempdir()) / f"norvaxel-{self._testMethodName}.png"
        self.screen.picture(picture)
        print(f"\n{self.id()}: the screen is in {picture}; the program printed: {self.printed()!r}")
        if self.window is not None and self.program.poll() is None:
            print(self.window.describe())

    # --- the surroundings ---

    def environment(self, **changes):
        """The program's environment. A change to None takes the variable away."""
        found = dict(self.screen.environment, HOME=str(self.home), XDG_DATA_HOME=str(self.data),
                     TMPDIR=str(self.temporary), LANGUAGE="de", QT_QPA_PLATFORM="xcb",
                     QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", NORVAXEL_SANDBOX_SECONDS=QUICK,
                     NORVAXEL_SANDBOX_RECORD=str(self.record_file))
        found.update(self.start_geocoder())
        for name, value in changes.items():
            if value is None:
                found.pop(name, None)
            else:
                found[name] = str(value)
        return found

    def start_geocoder(self):
        """Starts the case's geocoder once. Returns the variables that lead curl to it."""
        folder = self.folder / "geocoder"
        if self.geocoder is None:
            self.geocoder = processes.start(
                [GEOCODER, "--folder", folder, "--behaviour", self.behaviour_file],
                stdin=subprocess.PIPE, stdout=subprocess.PIPE)
            words = self.geocoder.stdout.readline().split()
            self.assertEqual(words[:1], [b"ready"], "the geocoder starts")
            self._port = int(words[1])
        return {"https_proxy": f"http://127.0.0.1:{self._port}", "no_proxy": "",
                "CURL_CA_BUNDLE": str(folder / "authority.pem")}

    def geocoder_behaves(self, how, query="*"):
        """From now on the geocoder answers `query` (else every query) in that way."""
        rules = json.loads(self.behaviour_file.read_text()) if self.behaviour_file.exists() else {}
        rules[query] = how
        fresh = self.behaviour_file.with_suffix(".new")
        fresh.write_text(json.dumps(rules))
        fresh.rename(self.behaviour_file)

    def importer_behaves(self, mode="", **variables):
        """The importer's next starts go wrong in that way; see the stand-in's first lines."""
        lines = ["#!/bin/sh"]
        for name, value in {"IMPORT": mode, **variables}.items():
            lines.append(f"export NORVAXEL_SANDBOX_{name}={shlex.quote(str(value))}")
        lines.append(f'exec {shlex.quote(str(STAND_IN))} "$@"')
        fresh = self.importer.with_suffix(".new")
        fresh.write_text("\n".join(lines) + "\n", encoding="utf-8")
        fresh.chmod(0o755)
        fresh.rename(self.importer)

    def start(self, *arguments, wrapper=(), **environment):
        """Starts the program and waits for its window."""
        self.output_file = self.folder / "program.out"
        with open(self.output_file, "wb") as output:
            self.program = processes.start([*wrapper, self.bin / PROGRAM.name, *arguments],
                                           env=self.environment(**environment), cwd=self.folder,
                                           stdin=subprocess.DEVNULL, stdout=output, stderr=output)
        self.window = w.Window(self.program.pid)
        return self.window

    def printed(self):
        return self.output_file.read_text(errors="replace")

    def strangers(self):
        """What runs below this process and belongs neither to the desktop nor to the geocoder."""
        ours = {helper.pid for helper in self.screen._helpers}
        if self.geocoder is not None:
            ours.add(self.geocoder.pid)
        processes_below = [pid for pid in processes.descendants() if processes.command_line(pid)]
        for pid in list(ours):
            ours.update(processes.descendants(pid))
        return [pid for pid in processes_below
                if pid not in ours and "at-spi" not in processes.command_line(pid)
                and "dbus-daemon" not in processes.command_line(pid)]

    # --- the window ---

    def search(self, text, answer=CHOOSE):
        """Searches text and waits for what the window says of it."""
        self.window.type(w.QUERY, text)
        self.window.press(w.SEARCH)
        self.window.says(answer)

    def rows(self):
        return self.window.rows(w.RESULTS)

    def import_first(self, text="Berlin", answer=FINISHED):
        """Searches text, imports its first result and waits for what the window says at the end."""
        self.search(text)
        self.window.select(w.RESULTS, 0)
        self.window.press(w.DOWNLOAD)
        self.window.says(answer)

    def assert_alert(self, title, message):
        """An alert shows exactly this; it is answered and goes."""
        self.assertEqual(self.window.dialog(), [title, message])
        self.window.press(w.OK)
        w.until(lambda: self.window.find(w.OK) is None, "the alert has gone")

    def peak_memory(self):
        """The most memory that the program has had so far, in bytes."""
        for line in pathlib.Path(f"/proc/{self.program.pid}/status").read_text().splitlines():
            if line.startswith("VmHWM:"):
                return int(line.split()[1]) * 1024
        raise AssertionError("the peak of the memory cannot be read")

    def assert_says_in_red(self, text):
        """The status line shows text as an error."""
        label = self.window.says(text)
        w.until(lambda: self._has_red(label), f"“{text}” is red")

    def assert_says_in_grey(self, text):
        label = self.window.says(text)
        w.until(lambda: not self._has_red(label), f"“{text}” is not red")

    def _has_red(self, label):
        x, y, width, height = self.window.area(label)
        _, _, rows = self.screen.pixels()
        for row in rows[y:y + height]:
            line = row[3 * x:3 * (x + width)]
            if any(r > 200 and g < 150 and b < 150
                   for r, g, b in zip(line[0::3], line[1::3], line[2::3])):
                return True
        return False

    # --- what is left ---

    @property
    def support(self):
        return self.data / "Norvaxel" / "Norvaxel 3D"

    def packages(self):
        return sorted((self.support / "Ortsdaten").glob("*"))

    def requests(self, kind="request"):
        lines = (self.folder / "geocoder" / "requests.jsonl").read_text(encoding="utf-8").splitlines()
        return [each for each in map(json.loads, lines) if each["kind"] == kind]

    def asked(self):
        """The query texts that reached the geocoder, in order."""
        return [urllib.parse.parse_qs(each["query"])["q"][0] for each in self.requests()]

    def importer_events(self, event="started"):
        if not self.record_file.exists():
            return []
        lines = self.record_file.read_text(encoding="utf-8").splitlines()
        return [each for each in map(json.loads, lines) if each["event"] == event]

    def importer_event(self, event="started", number=0):
        """The fact of that number, counted from 0, of what importers recorded."""
        w.until(lambda: len(self.importer_events(event)) > number, f"the importer has {event}")
        return self.importer_events(event)[number]

    def assert_group_gone(self, leader):
        """Nothing is left of an importer and of what it started."""
        w.until(lambda: not processes.group(leader), f"the group of {leader} is gone", w.SECONDS,
                lambda: "\n".join(map(processes.command_line, processes.group(leader))))

    def assert_nothing_temporary(self):
        self.assertEqual(list(self.temporary.iterdir()), [], "no temporary folder is left")
