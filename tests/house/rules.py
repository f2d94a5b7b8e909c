"""The rules of this house: each is a function from the files to what is wrong ("file:line: what").

./check runs them all; ./check NAME... these alone.
"""
import concurrent.futures
import fnmatch
import json
import os
import pathlib
import posixpath
import re
import subprocess
import sys
import urllib.parse

ROOT = pathlib.Path(__file__).resolve().parents[2]
# Which floor may stand on which; within a floor, a smaller library may be cut off below the rest.
STANDS_ON = {
    "localization": set(), "platform": set(), "look": set(),
    "search": {"localization", "platform"}, "jobs": {"localization", "platform"},
    "app": {"search", "jobs", "look", "localization", "platform"},
}
# Written before the rule of the subjects; what follows it is held to the rule.
LAST_UNRULED_COMMIT = "5d8d9f0"
UNTESTED = "tests/house/untested.tsv"
CORPUS = "tests/fuzz/corpus/"


def git(*arguments):
    """What git prints; nothing where there is no git or no repository (unpacked sources)."""
    try:
        # Whoever runs this runs these sources: whose folder it is does not matter.
        return subprocess.run(["git", "-c", "safe.directory=*", *arguments], cwd=ROOT, text=True,
                              capture_output=True, check=True).stdout
    except (OSError, subprocess.CalledProcessError):
        return ""


def read_tree():
    """Every file of the sources, with its text; a picture has none, nor has an input that a fuzzer found."""
    names = git("ls-files", "-z", "--cached", "--others", "--exclude-standard").split("\0")
    if names == [""]:
        found = (path.relative_to(ROOT).as_posix() for path in ROOT.rglob("*"))
        names = [each for each in found if not re.match(r"build/|\.git/", each) and "__pycache__" not in each]
    files = {}
    for name in sorted(set(names)):
        if (ROOT / name).is_file():
            content = (ROOT / name).read_bytes()
            is_foreign = b"\0" in content or name.startswith(CORPUS)
            files[name] = "" if is_foreign else content.decode("utf-8", errors="replace")
    return files


def of_kind(files, *patterns):
    return {name: text for name, text in files.items() if any(fnmatch.fnmatch(name, each) for each in patterns)}


def of_floors(files, *endings):
    return {name: text for name, text in files.items()
            if name.split("/")[0] in STANDS_ON and name.endswith(endings or (".h", ".cpp"))}


def places(files, pattern, what):
    """The faults of every line in which the pattern is found."""
    return [f"{name}:{number}: {what}: {found[0].strip() or 'here'}"
            for name, text in files.items() for number, line in enumerate(text.split("\n"), 1)
            for found in [re.search(pattern, line)] if found]


def format_(files):
    """clang-format 19 would change nothing."""
    done = subprocess.run(["clang-format-19", "--dry-run", "-Werror", *of_kind(files, "*.h", "*.cpp")],
                          cwd=ROOT, text=True, capture_output=True)
    found = re.findall(r"^(\S+:\d+):\d+: error: (?:code should be )?(.*) \[", done.stderr, re.MULTILINE)
    return [f"{place}: not {what}" for place, what in dict.fromkeys(found)] or ([done.stderr] if done.returncode else [])


def in_bench(*arguments):
    """What CMake, called with these, says that went wrong."""
    done = subprocess.run(["cmake", *arguments], cwd=ROOT, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return ["cmake " + " ".join(arguments) + ": " + done.stdout] if done.returncode else []


def release(files):
    """What people run builds without a warning, and so do the benchmarks."""
    return in_bench("--log-level=WARNING", "--preset", "bench") or in_bench("--build", "--preset", "bench")


def commands():
    """The compile commands of the product's sources, once for each; the preset must be configured."""
    for each in json.loads((ROOT / "build/bench/compile_commands.json").read_text(encoding="utf-8")):
        source = pathlib.Path(each["file"])
        if source.is_relative_to(ROOT) and source.relative_to(ROOT).parts[0] in STANDS_ON:
            yield source.relative_to(ROOT).as_posix(), each["command"]


def tidy(files):
    """clang-tidy 19 finds nothing of the list in .clang-tidy, in the product's sources and headers.

    The tests are left out: with them it takes two cores more than ten minutes instead of four.
    """
    if faults := in_bench("--log-level=WARNING", "--preset", "bench"):
        return faults
    sources = sorted({source for source, _ in commands()} & of_floors(files, ".cpp").keys())

    def of_one(source):
        one = subprocess.run(["clang-tidy-19", "-p", "build/bench", "--quiet", source], cwd=ROOT, text=True,
                             capture_output=True)
        found = re.findall(r"^(.*: (?:error|warning): .*)$", one.stdout, re.MULTILINE)
        return found or ([f"{source}: clang-tidy failed: {one.stderr}"] if one.returncode else [])
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        # A header's fault is found by each source that includes it.
        found = {each.replace(f"{ROOT}/", "") for some in pool.map(of_one, sources) for each in some}
    return sorted(found) if sources else ["no source of the product has a compile command"]


def commits(files, log=None):
    """Subjects say `Area: Do something`.

    Whether a word is an imperative cannot be known without knowing the language: the first word only
    must not end as "added", "adding" or "adds" do, but for the verbs that end so themselves.
    """
    if log is None:
        # Where a clone holds only the newest commits, these.
        known = git("rev-parse", "--quiet", "--verify", LAST_UNRULED_COMMIT + "^{commit}")
        log = git("log", "--no-merges", "--format=%h %s", f"{LAST_UNRULED_COMMIT}..HEAD" if known else "HEAD")
        if not log:
            print("    there is no commit to read")
    faults = []
    for commit, _, subject in (line.partition(" ") for line in log.splitlines()):
        parts = re.fullmatch(r"[A-Z][\w.-]*(?: \w+)?: ([A-Z][a-z]+)\b.*[^.]", subject)
        if not parts:
            faults.append(f"{commit}: not `Area: Say what changes`: {subject}")
        elif re.search("(ed|ing|[^s]s)$", parts[1]) and parts[1] not in (
                "Bring", "Embed", "Exceed", "Feed", "Focus", "Need", "Proceed", "Seed", "Speed", "Spring"):
            faults.append(f"{commit}: {parts[1]} is no imperative: {subject}")
        if len(subject) > 72:
            faults.append(f"{commit}: {len(subject)} columns, not 72: {subject}")
    return faults


def tests(files):
    """Each source of the product has a test of its own, or a line that says why not."""
    faults, reasons = [], {}
    for number, line in enumerate(files.get(UNTESTED, "").splitlines(), 1):
        source, _, reason = line.partition("\t")
        reasons[source] = f"{UNTESTED}:{number}"
        if not reason.strip():
            faults.append(f"{UNTESTED}:{number}: {source} without a reason")
        faults += [f"{UNTESTED}:{number}: {test} is not there" for test in re.findall(r"tests/[\w/]+\.\w+", reason)
                   if test not in files]
    sources = of_floors(files, ".cpp")
    for source in sources:
        test = f"tests/{source.split('/')[0]}/{posixpath.basename(source)[:-4]}Test.cpp"
        if test in files and source in reasons:
            faults.append(f"{reasons[source]}: {source} has a test: {test}")
        if test not in files and source not in reasons:
            faults.append(f"{source}: no {test}, and no reason in {UNTESTED}")
    return faults + [f"{place}: {source} is not there" for source, place in reasons.items() if source not in sources]


def libraries(files):
    """By name: the folder, the sources, the links and the place of each norvaxel_floor."""
    found = {}
    for name, text in of_kind(files, *(f"{floor}/CMakeLists.txt" for floor in STANDS_ON)).items():
        for call in re.finditer(r"^norvaxel_floor\((\w+)([^)]*)\)", re.sub("#.*", "", text), re.MULTILINE):
            sources, _, links = call[2].partition("LINKS")
            found[call[1]] = {"folder": name.split("/")[0], "links": links.split(),
                              "sources": {posixpath.splitext(posixpath.basename(each))[0] for each in sources.split()},
                              "place": f"{name}:{text[:call.start()].count(chr(10)) + 1}"}
    return found


def qt_modules():
    """The modules of Qt, by the headers that they offer."""
    found = {}
    for module in ("Core", "Gui", "Widgets", "DBus"):
        for folder in (*pathlib.Path("/usr/include").glob(f"*/qt6/Qt{module}"), pathlib.Path(f"/usr/include/qt6/Qt{module}")):
            found.update((each.name, f"Qt6::{module}") for each in folder.glob("*"))
    return found


def includes(files, modules=None):
    """What a floor includes it links, and what it links it includes; and its own header comes first."""
    modules = qt_modules() if modules is None else modules
    floors, used, faults = libraries(files), {}, []
    below = {"Qt6::Widgets": {"Qt6::Gui", "Qt6::Core"}, "Qt6::Gui": {"Qt6::Core"}, "Qt6::DBus": {"Qt6::Core"}}
    threads = {"thread", "mutex", "condition_variable", "atomic", "pthread.h"}

    def all_below(link):
        links = floors[link]["links"] if link in floors else below.get(link, ())
        return {link}.union(*map(all_below, links))

    def library(path, of=None):
        """A header without a source of its own belongs, within a folder, to what includes it."""
        folder, stem = path.split("/")[0], posixpath.splitext(posixpath.basename(path))[0]
        named = [each for each, it in floors.items() if it["folder"] == folder and stem in it["sources"]]
        return named[0] if named else of if of and floors[of]["folder"] == folder else folder

    for name, text in of_floors(files).items():
        own = library(name)
        if own not in floors:
            faults.append(f"{name}:1: no norvaxel_floor holds it")
            continue
        lines = [(number, found[1], found[2]) for number, line in enumerate(text.split("\n"), 1)
                 for found in [re.match(r'#include (["<])(.*)[">]', line)] if found]
        header = name[:-4] + ".h"
        if name.endswith(".cpp") and header in files and (not lines or lines[0][2] != header):
            faults.append(f"{name}:1: does not include its own header first: {header}")
        for number, kind, path in lines:
            place = f"{name}:{number}"
            if kind == '"':
                if path not in files or path.split("/")[0] not in STANDS_ON:
                    faults.append(f"{place}: no header of a floor: {path}")
                    continue
                other = library(path, own)
                used.setdefault(own, set()).add(other)
                if other not in [own, *floors[own]["links"]]:
                    faults.append(f"{place}: {own} does not link {other}: {path}")
            elif path in modules or path.startswith("Q"):
                module = modules.get(path)
                used.setdefault(own, set()).add(module)
                if module not in all_below(own):
                    faults.append(f"{place}: {own} does not link {module or 'what it comes from'}: {path}")
            else:
                if path in threads:
                    used.setdefault(own, set()).add("Threads::Threads")
                # The plug-in links nxui: C++, POSIX and, on macOS, what asks for the languages.
                if own == "nxui" and not re.fullmatch(r"\w+|\w+\.h|sys/\w+\.h|CoreFoundation/\w+\.h", path):
                    faults.append(f"{place}: {own} stands on the standard library and POSIX alone: {path}")
    for own, it in floors.items():
        for link in it["links"]:
            if link not in used.get(own, ()):
                faults.append(f"{it['place']}: {own} links {link} and includes nothing of it")
            if link in floors and floors[link]["folder"] not in STANDS_ON[it["folder"]] | {it["folder"]}:
                faults.append(f"{it['place']}: {own} may not stand on {link}")
    return faults


def links(files):
    """Every relative link in a paper leads to a file, a folder or a title."""
    faults = []
    for paper, text in of_kind(files, "*.md").items():
        for found in re.finditer(r"\]\(([^)\s]+)\)", text):
            address = urllib.parse.urlsplit(found[1])
            if address.scheme:
                continue
            target = posixpath.normpath(posixpath.join(posixpath.dirname(paper), address.path)) if address.path else paper
            titles = re.findall(r"^#+ (.*)$", files.get(target, ""), re.MULTILINE)
            anchors = [re.sub(r"[^\w -]", "", each).lower().replace(" ", "-") for each in titles]
            if not (target in files or any(each.startswith(target + "/") for each in files)) or (
                    address.fragment and address.fragment not in anchors):
                faults.append(f"{paper}:{text[:found.start()].count(chr(10)) + 1}: leads nowhere: {found[1]}")
    return faults


def style(files):
    """The lines of style that no tool holds, by a simple search."""
    code = of_kind(files, "*.h", "*.cpp")
    number = r"static_cast<(std::)?(u?int(8|16|32|64)?(_t)?|q?u?int(8|16|32|64)?|qsizetype|qreal|s?size_t|ptrdiff_t" \
             r"|double|float|long|short|char|uchar|unsigned|char16_t)>"
    return [
        *places(code, number, "a number becomes another as int(x)"),
        *places(code, r'QStringLiteral\( *"', 'a text literal is u"..."_s'),
        *places(code, r'QLatin1(String(View)?\( *"|Char\( *\')', 'a literal of ASCII is "..."_L1'),
        *(f"{name}:1: not in the namespace of its floor" for name, text in of_floors(files, ".h").items()
          if not re.search(rf"^namespace ({name.split('/')[0]}|nxui|nx)\b", text, re.MULTILINE)),
    ]


def painter(files):
    """Of the window's controls only app/ControlPainter.cpp enables, hides or titles one; a menu's item is none."""
    others = {name: text for name, text in of_kind(files, "app/*.cpp").items() if name != "app/ControlPainter.cpp"}
    return places(others, r"(?<!\bitem)(->|\.)(set(Enabled|Disabled|Visible|Hidden|ReadOnly|Title)|hide)\(",
                  "only ControlPainter does that")


def faults(files, report=None):
    """Each fault that the tests are asked about still fits its file."""
    if report is None:
        report = subprocess.run([sys.executable, "-B", "tests/mutants/run.py", "--check"], cwd=ROOT, text=True,
                                capture_output=True, check=False).stdout
    if not re.search(r"^\d+ faults", report, re.MULTILINE):
        return ["tests/mutants/run.py: says nothing"]
    return [f"tests/mutants: {line}" for line in report.splitlines() if line.startswith("STALE")]


def words(files):
    """What does not belong into the sources: paths of one machine, notes to oneself, loose blanks."""
    # In a table of values separated by tabs the last one may be empty.
    plain = {name: text for name, text in files.items() if not name.endswith(".tsv")}
    # The examples of files that are handed over are what is handed over, byte for byte.
    ending = {name: text for name, text in files.items() if text and not name.startswith("docs/schemas/examples/")}
    return [
        *places(files, r"(?<![\w.~-])/(work|root|mnt)/", "a path of one machine"),
        *places(files, r"\b(TO[D]O|FIX[M]E|XX[X])\b", "a note to oneself"),
        *places(plain, r"[ \t\r]+$", "white space at the end"),
        *places(of_kind(files, "*.h", "*.cpp", "*.py"), r"\t", "a tab"),
        *(f"{name}: no line feed at the end" for name, text in ending.items() if not text.endswith("\n")),
    ]


RULES = {"commits": commits, "tests": tests, "includes": includes, "links": links, "style": style,
         "painter": painter, "faults": faults, "words": words,
         "format": format_, "release": release, "tidy": tidy}


def main(names):
    if not RULES.keys() >= set(names):
        sys.exit(f"These are the rules: {' '.join(RULES)}")
    files, broken = read_tree(), 0
    for name in names or RULES:
        faults = RULES[name](files)
        broken += bool(faults)
        print(f"{name:<10}{RULES[name].__doc__.splitlines()[0] if not faults else f'broken: {len(faults)}'}", flush=True)
        for each in faults:
            print(f"    {each}", flush=True)
    print(f"{len(names or RULES) - broken} rules held, {broken} broken")
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
