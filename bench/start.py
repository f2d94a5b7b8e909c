#!/usr/bin/python3
"""The program's start against a plain window of the same toolkit, interleaved in one run.

    bench/start.py [BUILD-FOLDER]     (default build/bench; needs Xvfb, and valgrind for instructions)

Prints for both: median time to the first painted frame of 15 starts, resident memory when quiet,
instructions until quiet; and the ratios beside their limits."""
import os
import pathlib
import re
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ROOT / "build" / "bench")
PROGRAMS = {"ours": BUILD / "bin" / "bench_start_program", "plain": BUILD / "bin" / "bench_start_plain"}
STARTS = 15
LIMITS = {"time": 1.2, "resident": 1.1, "instructions": 1.2}


def start(command, environment):
    """Runs to the end. Returns (seconds to the first frame, resident KiB)."""
    begin = time.perf_counter()
    with subprocess.Popen(command, env=environment, stdout=subprocess.PIPE, text=True,
                          stderr=subprocess.DEVNULL) as child:
        painted = resident = None
        for line in child.stdout:
            if line.startswith("painted"):
                painted = time.perf_counter() - begin
            elif line.startswith("resident"):
                resident = int(line.split()[1])
    if painted is None or child.returncode != 0:
        raise SystemExit(f"{command[-1]} painted nothing (status {child.returncode})")
    return painted, resident


def instructions(program, environment, folder):
    out = folder / "callgrind"
    command = ["valgrind", "--tool=callgrind", f"--callgrind-out-file={out}", str(program)]
    start(command, environment)
    return int(re.search(r"^(?:summary|totals): (\d+)", out.read_text(), re.M).group(1))


def main():
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        read, write = os.pipe()
        server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x1024x24",
                                   "-nolisten", "tcp"], pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        display = os.read(read, 16).decode().strip()
        environment = {**os.environ, "DISPLAY": f":{display}", "HOME": name, "LANGUAGE": "de",
                       "XDG_RUNTIME_DIR": name, "QT_QPA_PLATFORM": "xcb"}
        environment.pop("WAYLAND_DISPLAY", None)
        try:
            measured = {which: {"time": [], "resident": []} for which in PROGRAMS}
            for which, program in PROGRAMS.items():
                start([str(program)], environment)  # warms the disk's cache, writes the preference
            for _ in range(STARTS):
                for which, program in PROGRAMS.items():
                    painted, resident = start([str(program)], environment)
                    measured[which]["time"].append(painted * 1000)
                    measured[which]["resident"].append(resident / 1024)
            result = {which: {key: statistics.median(values) for key, values in data.items()}
                      for which, data in measured.items()}
            for which, program in PROGRAMS.items():
                result[which]["instructions"] = instructions(program, environment, folder) / 1e6
        finally:
            server.terminate()
            server.wait()
    units = {"time": "ms", "resident": "MiB", "instructions": "million"}
    for key, limit in LIMITS.items():
        ours, plain = result["ours"][key], result["plain"][key]
        print(f"{key:13} ours {ours:8.1f}  plain {plain:8.1f} {units[key]:8}"
              f" ratio {ours / plain:.3f} (at most {limit})")


main()
