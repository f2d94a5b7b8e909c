#!/usr/bin/env python3
"""Puts small faults into a copy of the program, one at a time, and asks its tests whether they notice.

    tests/mutants/run.py                          every fault of every list beside this file
    tests/mutants/run.py search jobs/slug-of-43-characters   the faults of a list; one fault
    tests/mutants/run.py --sample 20              so many of them, chosen at random
    tests/mutants/run.py --check                  only: does each fault's old text still stand once?

README.md beside this file says what a list looks like and what the words of the report mean.
"""
import argparse
import ctypes
import fcntl
import json
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]


class Fault:
    def __init__(self, name):
        self.name, self.file, self.survives = name, "", ""
        self.old, self.new, self.tests = [], [], []

    def applied(self, folder):
        """The file's text without and with the fault; None for the second if the first has changed."""
        path = folder / self.file
        text = path.read_text(encoding="utf-8") if path.is_file() else ""
        pattern = r"\s*\n\s*".join(map(re.escape, self.old))
        changed, count = re.subn(pattern, lambda _: "\n".join(self.new), text) if self.old else ("", 0)
        return text, changed if count == 1 and changed != text else None


def read_list(path):
    faults = []
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        kind, _, rest = (part.strip() for part in line.partition(" "))
        if kind == "#":
            faults.append(Fault(f"{path.stem}/{rest}"))
        elif kind in ("-", "+") and faults:
            (faults[-1].old if kind == "-" else faults[-1].new).append(rest)
        elif kind in ("file:", "tests:", "survives:") and faults:
            setattr(faults[-1], kind[:-1], rest.split() if kind == "tests:" else rest)
        elif line.strip():
            sys.exit(f"{path}:{number}: not understood: {line}")
    return faults


def chosen_faults(options):
    lists = {path.stem: read_list(path) for path in sorted(HERE.glob("*.faults"))}
    faults = [fault for each in lists.values() for fault in each]
    names = [fault.name for fault in faults]
    if doubled := {each for each in names if names.count(each) > 1}:
        sys.exit("More than one fault has the name " + ", ".join(doubled))
    if unknown := set(options.names) - set(names) - set(lists):
        sys.exit("There is no list and no fault named " + ", ".join(unknown))
    if wanted := set(options.names):
        faults = [each for each in faults if {each.name, each.name.split("/")[0]} & wanted]
    if options.sample:
        print(f"The sample of --seed {options.seed}")
        random.seed(options.seed)
        faults = random.sample(faults, min(options.sample, len(faults)))
    # What changes one file comes together: less to compile.
    return sorted(faults, key=lambda each: each.file)


class Copy:
    """A copy of this checkout, uncommitted changes included, with a build of its own."""

    def __init__(self, folder, jobs):
        self.folder, self.jobs, self.build_folder = folder, jobs, folder / "build" / "dev"
        self.build_folder.mkdir(parents=True, exist_ok=True)
        self.lock = open(folder / "build" / "lock", "w", encoding="utf-8")
        fcntl.flock(self.lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        listed = self.run("git", "ls-files", "-coz", "--exclude-standard", cwd=ROOT).stdout
        files = {each for each in listed.split("\0") if (ROOT / each).is_file()}
        for part in folder.iterdir():
            for path in [part, *part.rglob("*")] if part.name != "build" else []:
                if path.is_file() and str(path.relative_to(folder)) not in files:
                    path.unlink()
        for each in files:
            source, target = ROOT / each, folder / each
            if not target.is_file() or target.read_bytes() != source.read_bytes():
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(source, target)

    def run(self, *command, cwd=None, **more):
        return subprocess.run(command, cwd=cwd or self.folder, capture_output=True, text=True, errors="replace", **more)

    def configure(self):
        """Every test of the build as CTest describes it."""
        launcher = {"CMAKE_CXX_COMPILER_LAUNCHER": "ccache"} if shutil.which("ccache") else {}
        self.run("cmake", "--preset", "dev", env={**os.environ, **launcher}, check=True)
        for _ in range(2):
            listed = self.run("ctest", "--preset", "dev", "--show-only=json-v1", check=True).stdout
            tests = {each["name"]: each for each in json.loads(listed)["tests"]}
            if all("command" in each for each in tests.values()):
                return tests
            self.build()  # CTest tells no command of a program that was never built
        sys.exit("The program does not build without a fault either.")

    def put(self, file, text):
        if (self.folder / file).read_text(encoding="utf-8") != text:
            (self.folder / file).write_text(text, encoding="utf-8")

    def build(self, *targets):
        wanted = ["--target", *targets] if targets else []
        return self.run("cmake", "--build", "--preset", "dev", *wanted, "--", f"-j{self.jobs}").returncode == 0


class Test:
    def __init__(self, copy, described):
        properties = {each["name"]: each["value"] for each in described.get("properties", [])}
        self.name, self.command, self.is_sound = described["name"], list(described["command"]), None
        self.folder = properties.get("WORKING_DIRECTORY", copy.build_folder)
        self.limit = float(properties.get("TIMEOUT", 300))
        settings = dict(each.split("=", 1) for each in properties.get("ENVIRONMENT", []))
        self.environment = {**os.environ, **settings, "GTEST_FAIL_FAST": "1"}
        if "unittest" in self.command:
            self.command.insert(self.command.index("unittest") + 1, "-f")
        # What it runs of the build has to be built: a file there is named after its target.
        used = [pathlib.Path(each) for each in [*self.command, *settings.values()]]
        self.targets = {each.name for each in used if copy.build_folder in each.parents and each.is_file()}
        if self.name.startswith("packaging"):
            self.targets.add("desktop_files")

    def run(self, *more):
        """The test case that failed, or what else there is to say of a failure; empty if it passed."""
        with tempfile.TemporaryFile() as output:
            child = subprocess.Popen([*self.command, *more], cwd=self.folder, env=self.environment,
                                     stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT)
            child.returncode = status = wait_for(child.pid, self.limit)
            output.seek(0)
            said = output.read().decode(errors="replace")
        if status in (0, None):
            return "" if status == 0 else "no end within its time"
        failed = re.findall(r"^(?:\[  FAILED  \]|FAIL:|ERROR:) ([^\s,]+)", said, re.MULTILINE)[:1]
        begun = re.findall(r"^\[ RUN      \] (\S+)", said, re.MULTILINE)
        return (failed or begun or [f"status {status}"])[-1]

    def notices(self):
        """As run(), but a failure that does not come again is none: it has another reason."""
        for _ in range(2):
            failure = self.run()
            case = ["-k", failure] if failure.startswith("test_") else [f"--gtest_filter={failure}"]
            again = case if re.search("^test_|[.]", failure) else []
            if not failure or failure.startswith("no end") or self.run(*again):
                return failure
        return ""

    def settle(self, copy):
        """Finds out whether it passes without a fault. Once, before it is asked for the first time."""
        since = time.monotonic()
        if failure := self.notices() if copy.build(*self.targets) else "does not build":
            print(f"{self.name} fails without a fault ({failure}) and is not asked.", flush=True)
        self.is_sound = not failure
        # A fault may slow a test down, and so may whoever else uses the machine.
        self.limit = min(self.limit, 60 + 5 * (time.monotonic() - since))


def wait_for(pid, limit):
    """The exit status, None after the limit. Reaps and at last ends whatever the test leaves behind."""
    status, end = None, time.monotonic() + limit
    while status is None and time.monotonic() < end:
        gone, how = os.waitpid(-1, os.WNOHANG)
        if gone == pid:
            status = os.waitstatus_to_exitcode(how)
        elif gone == 0:
            time.sleep(0.01)
    mine = ["ps", "-o", "pid=,comm=", "--ppid", str(os.getpid())]
    while left := re.findall(r"(\d+) (?!ps$)", subprocess.run(mine, stdout=subprocess.PIPE, text=True).stdout, re.M):
        for each in map(int, left):
            os.kill(each, signal.SIGKILL)
            os.waitpid(each, 0)
    return status


def judge(fault, copy, tests):
    """What became of the fault, in a word, and what more there is to say."""
    text, changed = fault.applied(copy.folder)
    if changed is None:
        return "STALE", fault.file
    asked = []
    try:
        for name in dict.fromkeys(each for wanted in fault.tests for each in tests if re.fullmatch(wanted, each)):
            test = tests[name]
            if test.is_sound is None:
                copy.put(fault.file, text)
                test.settle(copy)
            if not test.is_sound:
                continue
            asked.append(name)
            copy.put(fault.file, changed)
            if not copy.build(*test.targets):
                return "DOES NOT BUILD", name
            if failure := test.notices():
                return "noticed", f"{name}: {failure}"
    finally:
        copy.put(fault.file, text)
    if not asked:
        return "UNTESTED", "none of its tests passes without a fault"
    return ("survived", fault.survives) if fault.survives else ("SURVIVED", " ".join(asked))


def main():
    words = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    words.add_argument("names", nargs="*", help="a list, or a fault of a list")
    words.add_argument("--sample", type=int, help="so many of them, chosen at random")
    words.add_argument("--seed", type=int, default=int(time.time()), help="of a sample to have once more")
    words.add_argument("--check", action="store_true", help="runs nothing, only tells what is stale")
    words.add_argument("-j", "--jobs", type=int, default=2, help="how many compilers at once")
    options = words.parse_args()
    faults, counts, begin = chosen_faults(options), {}, time.monotonic()
    if options.check:
        stale = [each for each in faults if each.applied(ROOT)[1] is None]
        print(*(f"STALE     {each.name:44} {each.file}" for each in stale),
              f"{len(faults)} faults, {len(stale)} STALE", sep="\n")
        return bool(stale)
    os.nice(19)
    signal.signal(signal.SIGINT, signal.default_int_handler)  # a job in the background ignores it, and so would tests
    if sys.platform == "linux":
        ctypes.CDLL(None).prctl(36, 1)  # PR_SET_CHILD_SUBREAPER: what a test leaves behind comes to us
    copy = Copy(ROOT / "build" / "mutants", options.jobs)
    tests = {name: Test(copy, each) for name, each in copy.configure().items()}
    wanted = {each for fault in faults for each in fault.tests}
    if strangers := [each for each in wanted if not any(re.fullmatch(each, name) for name in tests)]:
        sys.exit("There is no test named " + ", ".join(strangers))
    for fault in faults:
        since = time.monotonic()
        word, more = judge(fault, copy, tests)
        counts[word] = counts.get(word, 0) + 1
        print(f"{word:9} {fault.name:44} {more} ({time.monotonic() - since:.0f} s)", flush=True)
    totals = (f"{counts[word]} {word}" for word in sorted(counts))
    print(f"{len(faults)} faults", *totals, f"{time.monotonic() - begin:.0f} s", sep=", ")
    return any(word.isupper() for word in counts)  # "noticed" and "survived", for its reason, are well


if __name__ == "__main__":
    sys.exit(main())
