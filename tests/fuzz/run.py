#!/usr/bin/env python3
"""Lets libFuzzer invent bytes for the program's readers, on every core (build the preset `fuzz` first: ./test fuzz).

    tests/fuzz/run.py                        a million runs of each target
    tests/fuzz/run.py HttpsAddress --runs 10000000      so many of one
    tests/fuzz/run.py --keep                 afterwards: what reached something new goes into the corpus

It begins with the target's corpus beside this file and goes on with what earlier runs have found (build/fuzz/found).
A finding ends its target and is named here; put its file into the corpus once it is mended. Each line tells how many
runs a target had, how many a second, and how much of the program's code they reached (edges, by libFuzzer's count).
"""
import argparse
import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time

HERE = pathlib.Path(__file__).resolve().parent
BUILD = HERE.parents[1] / "build" / "fuzz"
SLOW = 5000  # runs a second, below which a target is asked why
ENVIRONMENT = {
    **os.environ, "QT_QPA_PLATFORM": "offscreen", "UBSAN_OPTIONS": "print_stacktrace=1",
    # Leaks are looked for at the end, not after each run; freed memory is kept from use for a while, not for ever.
    "ASAN_OPTIONS": "quarantine_size_mb=16:malloc_context_size=8:detect_stack_use_after_return=0",
}


def folders(target):
    """Where new inputs go, and what to begin with."""
    found, corpus = BUILD / "found" / target, HERE / "corpus" / target
    found.mkdir(parents=True, exist_ok=True)
    return found, corpus


def options_of(target):
    dictionary = HERE / f"{target}.dict"
    longest = re.search(r"^// At most (\d+) bytes", (HERE / f"{target}Fuzz.cpp").read_text(encoding="utf-8"), re.M)
    return [f"-max_len={longest[1] if longest else 1024}", *([f"-dict={dictionary}"] if dictionary.exists() else [])]


def call(target, *more):
    return subprocess.run([BUILD / "bin" / f"{target}Fuzz", *more], cwd=BUILD, env=ENVIRONMENT, check=False,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          errors="replace")


def run(target, runs):
    """The runs, the seconds and what was found; empty if nothing was."""
    findings = BUILD / "findings" / target
    findings.mkdir(parents=True, exist_ok=True)
    begin = time.monotonic()
    child = call(target, *options_of(target), f"-runs={runs}", f"-artifact_prefix={findings}/", "-timeout=10",
                 "-rss_limit_mb=2048", "-detect_leaks=1", "-print_final_stats=1", *folders(target))
    seconds = time.monotonic() - begin
    (BUILD / f"{target}.log").write_text(child.stdout, encoding="utf-8")
    done = int((re.findall(r"stat::number_of_executed_units: +(\d+)", child.stdout) or [0])[-1])
    edges = (re.findall(r"cov: (\d+)", child.stdout) or ["?"])[-1]
    speed = done / seconds
    print(f"{target:20} {done:>11,} runs {seconds:6.0f} s {speed:8,.0f} a second{'  SLOW' if speed < SLOW else ''}"
          f" {edges:>6} edges", flush=True)
    if child.returncode == 0:
        return done, ""
    said = re.findall(r"^.*(?:promise was broken|ERROR: |runtime error: ).*$", child.stdout, re.M)
    files = re.findall(r"Test unit written to (.*)$", child.stdout, re.M)
    return done, f"{target}: {(said or [f'status {child.returncode}'])[0]} {' '.join(files)}".strip()


def keep(target):
    """The corpus, and beside it the smallest inputs that reach what the corpus does not."""
    found, corpus = folders(target)
    before = {each.name for each in corpus.iterdir()}
    merged = BUILD / "merged" / target
    shutil.rmtree(merged, ignore_errors=True)
    shutil.copytree(corpus, merged)
    child = call(target, "-merge=1", *options_of(target), merged, found)
    for each in merged.iterdir() if child.returncode == 0 else []:
        if each.name not in before:
            shutil.copy(each, corpus)
    print(f"{target:20} {len(before)} inputs before, {len(list(corpus.iterdir()))} now", flush=True)


def main():
    words = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    words.add_argument("targets", nargs="*", help="some of them, without the word Fuzz")
    words.add_argument("--runs", type=int, default=1_000_000, help="of each target")
    words.add_argument("--keep", action="store_true", help="run nothing; extend the corpus by what was found")
    options = words.parse_args()
    known = sorted(each.name.removesuffix("Fuzz.cpp") for each in HERE.glob("*Fuzz.cpp"))
    if unknown := set(options.targets) - set(known):
        sys.exit("There is no target " + ", ".join(sorted(unknown)))
    targets = options.targets or known
    if options.keep:
        for target in targets:
            keep(target)
        return 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as cores:
        results = list(cores.map(lambda target: run(target, options.runs), targets))
    findings = [finding for _, finding in results if finding]
    print(f"{sum(done for done, _ in results):,} runs, {len(findings)} findings", *findings, sep="\n")
    return bool(findings)


if __name__ == "__main__":
    sys.exit(main())
