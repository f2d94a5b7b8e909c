#!/usr/bin/python3
"""Every call fails once: the built program goes its roads, and of all calls that its own work makes exactly
one fails: the first, the second, the third of each kind, with each error that it can give. Or the program is
killed at it; or its tool or its curl is killed, stopped or floods, at each stage. Then the program is judged:
what it says, what lies on the disk, what it has left open or running, and how it ends.

    tests/faults/run.py             everything: some ten minutes on two cores
    tests/faults/run.py --sample    a fixed part of it, for every day
    tests/faults/run.py --only TEXT the lines that hold TEXT ("place: write", "SIGKILL", "stage")
    tests/faults/run.py --write     everything, and docs/faults.md from it

One line for each fault, then the total. Which calls count says tests/faults/calls.cpp.
"""
import argparse
import collections
import contextlib
import errno
import json
import locale
import mmap
import multiprocessing
import os
import pathlib
import re
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import time
import typing

import polib

sys.dont_write_bytecode = True
ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "sandbox"))
import desktop  # noqa: E402
import processes  # noqa: E402

PROGRAM = pathlib.Path(os.environ.get("NORVAXEL_PROGRAM", ROOT / "build/dev/bin/norvaxel-orte-und-routen"))
LAID_OVER = PROGRAM.parents[1] / "tests/faults/libone_fault.so"
TOOL = ROOT / "sandbox/Norvaxel-Ortsimport"
LANGUAGE_FILE = "home/Library/Application Support/Norvaxel/Preferences/3d-language.txt"
PATIENCE = 30  # seconds for what has no limit of its own
QUIT = 3.0     # seconds that the program has to end
SAMPLE = 31    # of so many faults one is for every day

# What each call can give, by its kind and by what it is done to.
ERRORS = {
    "open": {"c": "ENOSPC EDQUOT EIO EROFS EACCES EMFILE ENFILE ENOMEM EINTR",
             "o": "EACCES EIO EMFILE ENFILE ENOMEM EINTR"},
    "read": {"f": "EIO EINTR HALF", "p": "EINTR HALF"},
    "write": {"f": "ENOSPC EDQUOT EIO EFBIG EINTR HALF", "p": "EINTR"},
    "fsync": {"f": "EIO ENOSPC EDQUOT EROFS EINTR"},
    "close": {"f": "EIO EINTR ENOSPC EDQUOT", "p": "EINTR", "n": "EINTR"},
    "rename": {"o": "ENOSPC EDQUOT EIO EROFS EACCES EXDEV EBUSY ENOMEM EPERM"},
    "mkdir": {"o": "ENOSPC EDQUOT EIO EROFS EACCES EMLINK ENOMEM EPERM"},
    "unlink": {"o": "EACCES EBUSY EIO EROFS EPERM ENOMEM"}, "opendir": {"f": "ENOMEM"},
    "pipe": {"o": "EMFILE ENFILE"}, "dup": {"o": "EBUSY EINTR EMFILE"}, "chdir": {"o": "EACCES EIO ENOENT ENOMEM"},
    "thread": {"o": "EAGAIN EPERM"}, "process": {"o": "EAGAIN ENOMEM"}, "poll": {"o": "EINTR ENOMEM"},
    "exec": {"o": "EACCES EAGAIN EIO ELOOP EMFILE ENFILE ENOENT ENOEXEC ENOMEM EPERM ETXTBSY E2BIG"},
}
FAIL, HALF, KILL = 1, 2, 3
HEAD, CALL = struct.Struct("7i8s256s"), struct.Struct("8sc119s")

# What the program says: how its sentences begin.
PLACE = {
    "done": "Norvaxel-3D-Paket fertig", "no-pointer": "Ortsdaten sind fertig. Die Verbindung zu Resolve konnte nicht",
    "folder": "Der Ordner für Ortsdaten", "temporary": "Der temporäre Importordner", "log": "Das Importprotokoll",
    "hand-over": "Das Suchergebnis konnte nicht", "start": "Der mitgelieferte Ortsimport konnte nicht starten: ",
    "failed": "Download fehlgeschlagen: ", "silent": "Die Ortsdaten konnten nicht", "cancelled": "Import abgebrochen."}
ROUTE = {
    "done": "Norvaxel-3D-Paket fertig: Route", "no-pointer": "Das Paket ist gespeichert.",
    "folder": "Der Ordner für gespeicherte Routen", "temporary": "Der temporäre Routenordner",
    "log": "Das Routenprotokoll", "output": "Der neue Routenordner", "hand-over": "Die ausgewählten Stationen konnten",
    "start": "Die mitgelieferte Routenberechnung konnte nicht starten.", "failed": "Berechnung fehlgeschlagen: ",
    "silent": "Das Norvaxel-3D-Paket konnte nicht", "cancelled": "Routenberechnung abgebrochen."}
SEARCH = {
    "found": "Wähle einen Treffer aus.", "not-started": "Der Systemtransport", "late": "Zeitlimit der Ortssuche",
    "unreadable": "Die Antwort der Ortssuche konnte", "too-large": "Die Antwort der Ortssuche ist zu groß",
    "unreachable": "Die Ortssuche ist nicht erreichbar", "cancelled": "Suche abgebrochen."}
LANGUAGE = {"saved": "Gib einen Ort ein", "not-saved": "Die Sprache konnte nicht lokal gespeichert werden."}

# What may be said when that call is hit, whatever its error; the first line counts.
JOB_FITS = (
    (r"mkdir o /temporary/Norvaxel-", "temporary"),
    (r"mkdir ", "done folder"),  # what is there already is not needed
    (r"\w+ . /temporary/Norvaxel-[^/]*/(\.new-|photon|stations)", "done hand-over"),
    (r"open c /temporary/.*\.log$", "log output"),
    (r"\w+ . /data/Norvaxel/Norvaxel 3D(/\.new-.*|/last-.*)?$", "done no-pointer"),
    (r"(exec|chdir|dup|process|thread|pipe) |open o /dev/null", "start"))
SEARCH_FITS = ((r"thread ", "found not-started"), (r"(open|pipe|dup|exec|process) ", "not-started"),
               (r"poll ", "found unreadable"))
LANGUAGE_FITS = (r"(open|write|fsync|rename) ", "not-saved"),
slack = 1  # how many times longer everything may take


class Wrong(Exception):
    """What the program did that it should not have done."""


def need(condition, otherwise):
    if not condition:
        raise Wrong(otherwise)


def until(condition, what, seconds=PATIENCE):
    deadline = time.monotonic() + seconds * slack
    while not (value := condition()):
        need(time.monotonic() < deadline, f"after {seconds:g} s still not: {what() if callable(what) else what}")
        time.sleep(0.005)
    return value


class Surroundings:
    """What the runs of one process share: a folder, the tool beside the program, a geocoder, a desktop."""

    def __init__(self, screen):
        signal.signal(signal.SIGINT, signal.SIG_IGN)
        processes.adopt_orphans()
        self.screen = screen
        self.catalogue = [re.compile(re.escape(row.msgid).replace("%@", ".*").replace("%lu", ".*"), re.DOTALL)
                          for row in polib.pofile(str(ROOT / "localization/po/program/en.po"))]
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="worker-"))
        (self.folder / "bin").mkdir()
        for each in (PROGRAM, TOOL):
            shutil.copy2(each, self.folder / "bin" / each.name)
        behaviour = self.folder / "behaviour.json"
        behaviour.write_text('{"Hamburg": {"hang": true}}')
        self.geocoder = processes.start([ROOT / "sandbox/geocoder", "--folder", self.folder / "geocoder", "--behaviour",
                                         behaviour], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.port = int(self.geocoder.stdout.readline().split()[1])


class Program:
    """The program in a case's folder, with what is laid over it."""

    def __init__(self, folder, road, **changes):
        self.folder, self.road = folder, road
        self.temporary, self.support = folder / "temporary", folder / "data/Norvaxel/Norvaxel 3D"
        (folder / "memory").write_bytes(bytes(HEAD.size + 1000 * CALL.size))
        with open(folder / "memory", "r+b") as file:
            self.memory = mmap.mmap(file.fileno(), 0)
        self.socket, other = socket.socketpair(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        self.socket.settimeout(PATIENCE)
        environment = {
            "PATH": f"{folder}:/usr/bin:/bin", "HOME": folder / "home", "XDG_DATA_HOME": folder / "data",
            "TMPDIR": self.temporary, "XDG_RUNTIME_DIR": around.folder, "LANG": "C.UTF-8", "LANGUAGE": "de",
            "DBUS_SESSION_BUS_ADDRESS": f"unix:path={folder}/no-bus", "QT_QPA_PLATFORM": "offscreen",
            "https_proxy": f"http://127.0.0.1:{around.port}",
            "CURL_CA_BUNDLE": around.folder / "geocoder/authority.pem", "NORVAXEL_SANDBOX_SECONDS": "0",
            "LD_PRELOAD": LAID_OVER, "NORVAXEL_ONE_FAULT_MEMORY": folder / "memory",
            "NORVAXEL_ONE_FAULT_SOCKET": other.fileno(),
            **(around.screen if road.on_screen else {}), **road.environment, **changes}
        with open(folder / "printed", "wb") as output:
            self.process = processes.start(
                [around.folder / "bin" / PROGRAM.name, *road.arguments], cwd=folder, stdin=subprocess.DEVNULL,
                env={name: str(value) for name, value in environment.items()}, stdout=output, stderr=output,
                pass_fds=(other.fileno(),))
        other.close()
        until(self.look, "the window is up")

    def look(self, *words):
        """Does that in the window, and says what it shows then; nothing while it starts."""
        try:
            self.socket.send("\t".join(map(str, words or ("look",))).encode())
            answer = self.socket.recv(65536)
        except OSError as error:
            raise Wrong(f"the window does not answer: {error}; printed: {self.printed()}") from None
        need(answer, "the program has gone; printed: " + self.printed())
        return json.loads(answer)

    def go(self, steps):
        """Goes a part of a road; returns what the window shows at its end."""
        for step in steps:
            need(step(self) is not False if callable(step) else self.look(*step)["done"], f"it cannot be done: {step}")
        return self.process.poll() is None and self.look()

    def idle(self, seconds=PATIENCE):
        until(lambda: self.look()["buttons"]["cancelButton"] == 0, "it is idle", seconds)

    def arm(self, kind="", number=0, action=0, error=0):
        self.before, self.armed, self.error = self.facts(), time.monotonic(), error
        for armed in (0, 1):
            HEAD.pack_into(self.memory, 0, armed, 0, 0, self.process.pid, action, error, number, kind.encode(),
                           str(self.folder).encode())

    def calls(self):
        """What has counted so far, as (kind, thing, what)."""
        return [tuple(part.rstrip(b"\0").decode(errors="replace") for part in CALL.unpack_from(self.memory, place))
                for place in range(HEAD.size, HEAD.size + HEAD.unpack_from(self.memory)[2] * CALL.size, CALL.size)]

    def hit(self):
        """The call that was hit, in words; nothing if none was."""
        place = HEAD.unpack_from(self.memory)[1]
        return " ".join(self.calls()[place - 1]) if place else None

    def facts(self):
        """What it has open, and its threads, as numbers by kind; the toolkit's own threads and events left out."""
        found = collections.Counter()
        folder = pathlib.Path(f"/proc/{self.process.pid}")
        for each in (*folder.glob("fd/*"), *folder.glob("task/*/comm")):
            with contextlib.suppress(OSError):
                if each.name == "comm":
                    found["threads"] += not each.read_text().startswith(("QDBus", "Thread (pooled)"))
                else:
                    found[re.sub(r"(pipe|socket):.*", r"\1", os.readlink(each))] += 1
        del found["anon_inode:[eventfd]"]
        return found

    def more(self):
        """What it has and had not when the road began, and its children."""
        return [*(self.facts() - self.before - self.road.leaves).items(),
                *map(processes.command_line, processes.descendants(self.process.pid))]

    def strangers(self):
        ours = {around.geocoder.pid, self.process.pid}
        return [line for pid in processes.descendants() if pid not in ours and (line := processes.command_line(pid))]

    def quit(self):
        self.process.send_signal(signal.SIGTERM)
        until(lambda: self.process.poll() is not None, "it ends", QUIT)
        need(self.process.returncode == 0, f"it ends with {self.process.returncode}")
        until(lambda: not self.strangers(), lambda: f"nothing is left running: {self.strangers()}", 2)

    def printed(self):
        """What it has printed; what the toolkit says of its platform and of an opener is left out."""
        return re.sub(r"(This plugin does not support|Launch failed \().*\n", "",
                      (self.folder / "printed").read_text(errors="replace"))

    def end(self):
        processes.end(self.process, 0.1)
        for pid in set(processes.descendants()) - {around.geocoder.pid}:
            os.kill(pid, signal.SIGKILL)
        processes.reap()
        self.socket.close()


def log_lines(program):
    return sum(each.read_bytes().count(b"\n") for each in program.temporary.glob("*/*.log"))


def folder_opens(program):
    """Or what was hit is the opening itself, and nothing is said."""
    opened = (program.folder / "opened").exists
    until(lambda: opened() or program.hit() and time.monotonic() > program.armed + slack / 2, "the folder is opened")
    need(opened() or not program.hit().startswith("close"), "a close keeps the folder from being opened")


class Road(typing.NamedTuple):
    """What is prepared before the calls count, what is done then, and what may come of it."""
    says: dict
    prepare: tuple
    act: tuple
    normally: str = "done"
    fits: tuple = ()
    arguments: tuple = ()
    environment: dict = {}
    is_first: bool = False  # nothing of earlier lies on the disk
    on_screen: bool = False
    pointer: str = ""       # the one that success writes anew
    leaves: collections.Counter = collections.Counter()

    def said(self, state):
        """The name of what the status says."""
        need(any(each.fullmatch(state["status"]) for each in around.catalogue), f"no sentence: {state['status']}")
        names = [name for name, begin in self.says.items() if state["status"].startswith(begin)]
        need(names, f"this road does not say “{state['status']}”")
        return names[0]


FIND = (("type", "query", "Berlin"), ("press", "searchButton"), Program.idle)
PICK = (*FIND, ("select", "table", 0))
BEGIN = ("press", "downloadButton")
JOB = (BEGIN, Program.idle)
WORK = (*PICK, BEGIN, lambda program: until(lambda: log_lines(program), "the tool works"))
SLOW, STUBBORN = {"NORVAXEL_SANDBOX_SECONDS": "60"}, {"NORVAXEL_SANDBOX_IMPORT": "ignore-term"}
PLACE_ROAD = Road(PLACE, PICK, JOB, "done", JOB_FITS, pointer="last-import.txt")
ROADS = {
    # The watchdog keeps the request until it would have given it up, and its thread is for ever.
    "search": Road(SEARCH, (), FIND, "found", SEARCH_FITS, leaves=collections.Counter({"pipe": 2, "threads": 1})),
    "place": PLACE_ROAD,
    "first place": PLACE_ROAD._replace(is_first=True),
    "route": Road(ROUTE, PICK + 2 * (("press", "addStationButton"),), JOB, "done", JOB_FITS, ("--route",),
                  pointer="last-route.txt"),
    "language": Road(LANGUAGE, (("press", "languageButton"), ("choose", "languages", 2)), (("press", "Übernehmen"),),
                     "saved", LANGUAGE_FITS),
    "cancel": Road(PLACE, WORK, (("press", "cancelButton"), Program.idle), "cancelled", environment=SLOW),
    "quit": Road(PLACE, WORK, (Program.quit,), environment=SLOW),
    "quit with a stubborn tool": Road(PLACE, WORK, (Program.quit,), environment=STUBBORN),
    "folder": Road(PLACE, PICK + JOB, (("press", "finderButton"), folder_opens), on_screen=True),
}


def judge_disk(program, killed=False):
    """Whole files, and pointers that lead to whole packages. Returns the pointers that are new."""
    new = []
    for pointer, files in (("last-import.txt", "origin.nxd norvaxel3d.json"),
                           ("last-route.txt", "route.nxd stations.nxd basemap/origin.nxd basemap/norvaxel3d.json")):
        if not (program.support / pointer).exists():
            need(not (program.support / "old").exists(), f"{pointer} has gone")
            continue
        text, main = (program.support / pointer).read_text(), files.split()[0]
        target = pathlib.Path(text[:-1])
        need(text == f"{target}\n" and target.name == main, f"{pointer} holds {text!r}")
        if target.parent != program.support / "old":
            new.append(pointer)
            need(all((target.parent / each).exists() for each in files.split()), f"{pointer} leads to nothing whole")
    need((program.folder / LANGUAGE_FILE).read_bytes() in (b"de\n", b"en\n"), "the language file holds something else")
    parts = [each for part in ("home", "data") for each in (program.folder / part).rglob("*")
             if each.name.startswith(".new-") or ".tmp." in each.name]
    need(killed or not parts, f"a part is left: {parts}")
    return new


def judge(program, road, state, expected=None):
    """Everything after one fault. Returns what the person sees."""
    hit = program.hit()
    new = judge_disk(program)
    left = list(program.temporary.iterdir())
    need(not left or re.match(r"unlink|opendir|open o /temporary/Norvaxel[^/]*$", hit or ""), f"left: {left}")
    said, seen = None, "the window goes"
    if state:
        said = road.said(state)
        expected = expected or next((words for call, words in road.fits if hit and re.match(call, hit)), road.normally)
        need(said in expected.split(), f"“{state['status'][:300]}” does not fit {hit}")
        need(bool(state["panel"]) == (said in ("saved", "failed", "silent")), f"the panel is {state['panel']}")
        need(state["buttons"]["finderButton"] == (said in ("done", "no-pointer")), "the folder is offered or not")
        need(said != "no-pointer" or list(program.support.rglob("norvaxel3d.json")), "there is no package")
        if said == "start" and road.says is PLACE:
            need(state["status"].endswith(": " + os.strerror(program.error)), f"the reason is wrong: {state['status']}")
        if road.says is LANGUAGE:
            language = (program.folder / LANGUAGE_FILE).read_bytes()
            need(language == (b"en\n" if said == "saved" else b"de\n"), "the language file is the other one")
        until(lambda: not program.more(), lambda: f"it has no more than before: {program.more()}", 3)
        program.quit()
        words = state["panel"][0] if said == "saved" else state["status"]
        seen = "“" + re.sub("(starten|geschlagen): .*", r"\1: …", words, flags=re.DOTALL) + "”"
    if road.on_screen:
        seen = "the folder opens" if (program.folder / "opened").exists() else "no folder opens"
    else:
        need(new == [road.pointer] * (said == "done"), f"new is {new}, and it says {said}")
    need(program.printed() == "", f"it prints {program.printed()!r}")
    return seen


@contextlib.contextmanager
def started(road, folder=None, keep=False, **environment):
    """The program at the end of the road's preparation; in a new folder if none is given, which may be kept."""
    if folder is None:
        folder = pathlib.Path(tempfile.mkdtemp(prefix="case-", dir=around.folder))
        old = folder / "data/Norvaxel/Norvaxel 3D/old"
        for each in (folder / "home", folder / "temporary", old):
            each.mkdir(parents=True)
        for main, pointer in (("origin.nxd", "last-import.txt"), ("route.nxd", "last-route.txt")):
            (old.parent / pointer).write_text(f"{old}/{main}\n")
        if road.is_first:
            shutil.rmtree(folder / "data")
        (folder / "xdg-open").write_text(f"#!/bin/sh\necho \"$1\" >'{folder}/opened'\n")
        (folder / "xdg-open").chmod(0o755)
    program = Program(folder, road, **environment)
    try:
        program.go(road.prepare)
        yield program
    finally:
        program.end()
        if not keep:
            shutil.rmtree(folder)


def clean(name):
    """Goes a road without a fault. Returns its calls, too."""
    road = ROADS[name]
    with started(road) as program:
        program.arm()
        judge(program, road, program.go(road.act))
        need(len(program.calls()) > 4, "hardly a call counts")
        return name, program.calls()


# What is done once: each returns the call that was hit, and what the person sees.
def one_fault(road, kind, number, error):
    with started(road) as program:
        program.arm(kind, number, HALF if error == "HALF" else FAIL, getattr(errno, error, 0))
        seen = judge(program, road, program.go(road.act))
        return program.hit(), seen


def one_kill(road, kind, number, _error):
    with started(road, keep=True) as program:
        program.arm(kind, number, KILL)
        with contextlib.suppress(Wrong):
            program.go((*road.act, Program.quit))
        if not (hit := program.hit()):
            return None, ""
        need(program.process.wait(PATIENCE) == -signal.SIGKILL, "it is not killed")
        until(lambda: not program.strangers(), lambda: f"its children go along: {program.strangers()}", 2)
        judge_disk(program, killed=True)
    again = ROADS["route"] if "--route" in road.arguments else PLACE_ROAD
    with started(again, program.folder) as program:
        program.go(again.act)
        need(again.pointer in judge_disk(program, killed=True), "the next start leaves the old pointer")
        program.quit()
        return hit, "the next start works"


def one_deed(road, deed, stage, _error):
    """Something happens to the road's child at a stage: so many lines in its log, or requests sent."""
    searches = road.says is SEARCH
    with started(road, NORVAXEL_SANDBOX_SECONDS="3") as program:
        program.arm()
        log = around.folder / "geocoder/requests.jsonl"
        before = log.read_bytes().count(b"\n")
        program.go((("type", "query", "Hamburg"), ("press", "searchButton")) if searches else (BEGIN,))
        until(lambda: stage <= (log.read_bytes().count(b"\n") - before if searches else log_lines(program)), "a stage")
        begins = "curl -q" if searches else f"{TOOL.name} --"
        (pid,) = until(lambda: [pid for pid in processes.descendants(program.process.pid)
                                if begins in processes.command_line(pid)], "the child")
        os.kill(pid, signal.SIGSTOP)
        if "flood" in deed:  # as if the child had written it
            with contextlib.suppress(BrokenPipeError), open(f"/proc/{pid}/fd/1", "ab") as file:
                file.write(bytes(2 << 20 if searches else 32 << 20).replace(b"\0", b"."))
        if "stop" not in deed:
            with contextlib.suppress(ProcessLookupError):  # who floods may have been stopped for good already
                os.kill(pid, signal.SIGKILL if "kill" in deed else signal.SIGCONT)
        if "quit" in deed:
            program.quit()
            return deed, judge(program, road, None)
        if "cancel" in deed:
            program.go((("press", "cancelButton"),))
        program.idle(3 if "cancel" in deed else PATIENCE)
        expected = {"stop, cancel": "cancelled", "stop": "late", "kill": "unreachable" if searches else "failed silent",
                    "flood": "too-large" if searches else "done", "flood, kill": "failed"}[deed]
        return deed, judge(program, road, program.look(), expected)


def begin(screen):
    global around
    around = Surroundings(screen)


def title(task):
    what, name, kind, number, error = task
    return f"{name}: {kind} at stage {number}" if what == "deed" else f"{name}: {kind} {number} {error or 'SIGKILL'}"


def work(task, is_second=False):
    """Does one task; what is only late is done again. Returns it, what was hit, what is seen, and what is wrong."""
    try:
        return task, *{"fault": one_fault, "kill": one_kill, "deed": one_deed}[task[0]](ROADS[task[1]], *task[2:]), ""
    except (Wrong, OSError, ValueError, IndexError) as problem:
        if "still not" in str(problem) and not is_second:
            return work(task, is_second=True)
        return task, None, "", f"WRONG: {type(problem).__name__} {problem}"


def plan(cleans):
    tasks = [("deed", "search", "stop", 2, "")]  # the longest: curl stands still until the watchdog comes
    deeds = ("kill", "stop, cancel", "stop, quit", "flood", "flood, kill")
    for name, stages, most in (("search", 3, 4), ("place", 6, 5), ("route", 6, 5)):
        tasks += [("deed", name, deed, stage, "") for stage in range(stages) for deed in deeds[:most]]
    for name, calls in cleans:
        numbers = collections.Counter()
        for kind, thing, _ in calls:
            numbers[kind] += 1
            tasks.append(("kill", name, kind, numbers[kind], ""))
            tasks += [("fault", name, kind, numbers[kind], error) for error in ERRORS[kind].get(thing, "").split()]
    return tasks


def paper(done, total):
    """docs/faults.md: what the person sees, by road, call and error."""
    lines = ["# What happens when a call fails (by `tests/faults/run.py --write`)", "",
             re.sub(r"\n\n    .*\n\n", "\n\n", __doc__, flags=re.DOTALL), total.replace(", and", ",\nand")]
    for name in ROADS:
        rows = collections.defaultdict(collections.Counter)
        for (what, road, kind, _, error), hit, seen in done:
            if road == name and hit:
                kind = {"fault": kind, "kill": "any, and SIGKILL", "deed": f"the child: {kind}"}[what]
                rows[what, kind, seen][error] += 1
        lines += ["", f"## {name.capitalize()}", "", "| Call | Error | Times | Seen |", "| --- | --- | --- | --- |"]
        lines += [f"| {kind} | {' '.join(sorted(errors))} | {errors.total()} | {seen.replace(chr(10), ' ')} |"
                  for (_, kind, seen), errors in sorted(rows.items())]
    (ROOT / "docs/faults.md").write_text("\n".join([*lines, ""]))


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("--sample", action="store_true")
    options.add_argument("--only", default="")
    options.add_argument("--write", action="store_true")
    chosen = options.parse_args()
    globals()["slack"] = 10 if chosen.sample else 1  # every day is no day to measure on
    folder = tempfile.tempdir = tempfile.mkdtemp(prefix="norvaxel-faults-")
    os.environ["LANGUAGE"] = "de"
    locale.setlocale(locale.LC_ALL, "C.UTF-8")  # the system's reasons, in the program's words
    screen = desktop.Desktop(pathlib.Path(folder) / "desktop")
    done, totals = [], collections.Counter()
    try:
        ours = {name: screen.environment[name] for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS")}
        # More than there are cores: they also wait.
        with multiprocessing.Pool(3 * os.cpu_count() // 2, begin, ({"QT_QPA_PLATFORM": "xcb", **ours},)) as pool:
            tasks = [task for task in plan(pool.map(clean, ROADS, 1)) if chosen.only in title(task)]
            tasks = tasks[SAMPLE // 2::SAMPLE] if chosen.sample else tasks
            for task, hit, seen, wrong in pool.imap_unordered(work, tasks):
                line = f"{title(task)} {hit} → {wrong or (seen if hit else 'not reached')}"
                print(line.replace("\n", " ")[:400], flush=True)
                totals["wrong" if wrong else task[0]] += bool(wrong or hit)
                done.append((task, hit, seen))
    finally:
        screen.end()
        shutil.rmtree(folder, ignore_errors=True)
    total = (f"{totals['fault']} calls failed, at {totals['kill']} the program was killed, and its tool or its curl was"
             f" {totals['deed']} times killed, stopped or made to flood; {totals['wrong']} times something was wrong.")
    print(total)
    if chosen.write and not totals["wrong"]:
        paper(done, total)
    sys.exit(totals["wrong"] > 0 or sum(totals.values()) <= 0.9 * len(done))


if __name__ == "__main__":
    main()
