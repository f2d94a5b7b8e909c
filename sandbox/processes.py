"""Starting helpers and leaving none behind.

On Linux the process that calls adopt_orphans() inherits every descendant that loses its parent (the
services that a session bus starts, a child of a crashed importer), so that end_all() reaches them.
"""
import ctypes
import os
import pathlib
import signal
import subprocess
import sys
import time

PR_SET_PDEATHSIG = 1
PR_SET_CHILD_SUBREAPER = 36
LINUX = sys.platform.startswith("linux")
_prctl = ctypes.CDLL(None).prctl if LINUX else None


def adopt_orphans():
    if LINUX:
        _prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)


def _die_with_parent():
    _prctl(PR_SET_PDEATHSIG, signal.SIGKILL, 0, 0, 0)


def start(words, **how):
    """A child in a process group of its own, so that Ctrl-C reaches only whoever must tidy up."""
    return subprocess.Popen([str(word) for word in words], start_new_session=True,
                            preexec_fn=_die_with_parent if LINUX else None, **how)


def _facts():
    """(pid, state, parent, group) of each process that there is (Linux; elsewhere nothing)."""
    for entry in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            # "pid (name) state parent group": the name may hold anything, also a closing bracket.
            state, parent, group = entry.read_text(errors="replace").rpartition(")")[2].split()[:3]
        except (OSError, ValueError):
            continue  # it has ended meanwhile
        yield int(entry.parent.name), state, int(parent), int(group)


def parents():
    """The parent of each process that there is."""
    return {pid: parent for pid, _, parent, _ in _facts()}


def group(leader):
    """The members of a process group that still run."""
    return [pid for pid, state, _, of in _facts() if of == leader and state != "Z"]


def descendants(root=None):
    """The ids of all processes below root (this process if not given), ended ones not yet reaped too."""
    below, parent_of = [], parents()
    frontier = {root or os.getpid()}
    while frontier:
        frontier = {pid for pid, parent in parent_of.items() if parent in frontier}
        below.extend(frontier)
    return below


def command_line(pid):
    try:
        words = pathlib.Path(f"/proc/{pid}/cmdline").read_bytes().split(b"\0")
        return b" ".join(words).decode(errors="replace").strip()
    except OSError:
        return ""


def reap():
    """Takes the exit of every child that has ended and that no Popen object waits for."""
    try:
        while os.waitpid(-1, os.WNOHANG)[0]:
            pass
    except ChildProcessError:
        pass


def has_ended(pid):
    """Whether the process is no more; an orphan that came to this process is reaped."""
    try:
        os.waitpid(pid, os.WNOHANG)
    except ChildProcessError:
        pass  # not a child of this process, or reaped before
    return pid not in parents()


def end(child, patience=2.0):
    """Ends one child that start() made, and its group: politely, then not."""
    for number in (signal.SIGTERM, signal.SIGKILL):
        try:
            os.killpg(child.pid, number)
        except (ProcessLookupError, PermissionError):
            pass
        try:
            child.wait(patience)
            return
        except subprocess.TimeoutExpired:
            continue


def end_all(patience=2.0):
    """Ends every descendant of this process, politely, then not. Only for the very end."""
    for number in (signal.SIGTERM, signal.SIGKILL):
        deadline = time.monotonic() + patience
        for pid in descendants():
            try:
                os.kill(pid, number)
            except ProcessLookupError:
                pass
        while time.monotonic() < deadline:
            reap()
            if not descendants():
                return
            time.sleep(0.02)
