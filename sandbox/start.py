"""Opens the window in the sandbox. `./run` has built the program before; `./run --help` says more."""
import argparse
import os
import pathlib
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import time

sys.dont_write_bytecode = True
HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent
sys.path.insert(0, str(HERE))
import processes  # noqa: E402

PROGRAM = ROOT / "build" / "release" / "bin" / "norvaxel-orte-und-routen"
STAND_IN = HERE / "Norvaxel-Ortsimport"
# What the sandbox sets for curl; the importer that someone brings along gets the old values back.
SANDBOX_VARIABLES = ("https_proxy", "no_proxy", "CURL_CA_BUNDLE")


def say(text=""):
    print(text, flush=True)


def assemble(folder, importer):
    """Puts the program and its importer into one folder, as they lie in the plug-in's package.

    A copy, not a link: the program looks beside its own real path. The importer is called through
    a line of shell, so that it finds its own neighbours where it lies."""
    folder.mkdir(mode=0o700)
    program = folder / PROGRAM.name
    try:
        os.link(PROGRAM, program)
    except OSError:
        shutil.copy2(PROGRAM, program)
    lines = ["#!/bin/sh"]
    if importer != STAND_IN:
        for name in SANDBOX_VARIABLES:
            old = os.environ.get(name)
            lines.append(f"unset {name}" if old is None else f"export {name}={shlex.quote(old)}")
    lines.append(f'exec {shlex.quote(str(importer))} "$@"')
    wrapper = folder / "Norvaxel-Ortsimport"
    wrapper.write_text("\n".join(lines) + "\n", encoding="utf-8")
    wrapper.chmod(0o755)
    return program


def start_geocoder(folder):
    """Starts the local geocoder. Returns the variables that lead curl to it."""
    child = processes.start([HERE / "geocoder", "--folder", folder], stdin=subprocess.PIPE,
                            stdout=subprocess.PIPE)
    words = child.stdout.readline().split()
    if words[:1] != [b"ready"]:
        raise SystemExit("The local geocoder did not start.")
    return {"https_proxy": f"http://127.0.0.1:{int(words[1])}", "no_proxy": "",
            "CURL_CA_BUNDLE": str(folder / "authority.pem")}


def forget_proxies(environment):
    """The sandbox's proxy counts alone, also where the person's own environment has others."""
    for name in ("HTTPS_PROXY", "ALL_PROXY", "all_proxy", "NO_PROXY"):
        environment.pop(name, None)


def has_display():
    return sys.platform == "darwin" or bool(os.environ.get("DISPLAY") or os.environ.get("WAYLAND_DISPLAY"))


def support_folder(environment):
    data = environment.get("XDG_DATA_HOME", "")
    base = pathlib.Path(data) if os.path.isabs(data) else pathlib.Path(environment["HOME"]) / ".local/share"
    if sys.platform == "darwin":
        base = pathlib.Path(environment["HOME"]) / "Library/Application Support"
    return base / "Norvaxel" / "Norvaxel 3D"


def with_display(words, environment):
    """Opens the window for the person who sits there; ends when it is closed."""
    say(f"Packages go to          {support_folder(environment)}")
    say("Close the window, or press Ctrl-C here, to end.")
    status = processes.start(words, env=environment).wait()
    return status if status >= 0 else 128 - status


def without_display(words, environment, folder, route):
    """Shows the window on a screen that nobody sees and goes the whole way in it."""
    import desktop
    screen = desktop.Desktop(folder / "desktop")
    environment.update(screen.environment, HOME=str(folder / "home"), TMPDIR=str(folder / "temporary"),
                       LANGUAGE="de", QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
    for name in ("home", "temporary"):
        (folder / name).mkdir(mode=0o700)
    os.environ.update(screen.environment)
    import walk
    import window
    window.desktop()
    say("No display is at hand: a script uses the window on a virtual one.")
    child = processes.start(words, env=environment)
    picture = folder / "window.png"
    try:
        shown = window.Window(child.pid, seconds=60)
        (walk.route if route else walk.place)(shown, say)
    except window.NotThere as surprise:
        say(f"The window did not do what was expected: {surprise}")
        screen.picture(picture)
        say(f"A picture of the screen  {picture}")
        return 1
    else:
        screen.picture(picture, shown.frame())
        say(f"A picture of the window  {picture}")
    finally:
        # Before its screen goes: the program shall end as it does for a person.
        processes.end(child)
    support = support_folder(environment)
    pointer = support / ("last-route.txt" if route else "last-import.txt")
    package = pathlib.Path(pointer.read_text(encoding="utf-8").strip()).parent
    say(f"The package              {package}")
    for file in sorted(package.rglob("*")):
        if file.is_file():
            say(f"                           {file.relative_to(package)}  {file.stat().st_size} bytes")
    say(f"The pointer to it        {pointer}")
    return 0


def main():
    options = argparse.ArgumentParser(prog="./run", description="Builds the program and opens its window, "
                                      "in a sandbox: a local geocoder, a stand-in importer, no network.")
    options.add_argument("--live", action="store_true", help="ask the real geocoder")
    options.add_argument("--importer", metavar="FILE", type=pathlib.Path,
                         help="another importer tool; it gets your own environment, and its packages "
                              "go to your own folders")
    options.add_argument("--route", action="store_true", help="open in route mode")
    options.add_argument("--prepare", action="store_true",
                         help="install what is missing and build, then stop")
    options.add_argument("--check", action="store_true", help=argparse.SUPPRESS)
    chosen = options.parse_args()
    importer = STAND_IN
    if chosen.importer:
        importer = chosen.importer.resolve()
        if not (importer.is_file() and os.access(importer, os.X_OK)):
            options.error(f"{chosen.importer} is not an executable file")
    if chosen.check or chosen.prepare:
        return 0

    runs = ROOT / "build" / "run"
    runs.mkdir(parents=True, exist_ok=True)
    folder = pathlib.Path(tempfile.mkdtemp(prefix=time.strftime("%Y%m%d-%H%M%S-"), dir=runs))
    say(f"This run's own folder   {folder}")
    program = assemble(folder / "bin", importer)
    environment = dict(os.environ)
    if not chosen.live:
        forget_proxies(environment)
        environment.update(start_geocoder(folder / "geocoder"))
    if not chosen.importer:
        # What the stand-in makes is no map: it must not become the plug-in's last import.
        environment["XDG_DATA_HOME"] = str(folder / "data")
        (folder / "data").mkdir(mode=0o700)
    words = [program] + (["--route"] if chosen.route else [])
    if has_display():
        return with_display(words, environment)
    return without_display(words, environment, folder, chosen.route)


def stop(number, _frame):
    raise SystemExit(128 + number)


if __name__ == "__main__":
    processes.adopt_orphans()
    for each in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(each, stop)
    try:
        status = main()
    finally:
        # From here on nothing interrupts: what was started is ended, whatever came before.
        for each in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            signal.signal(each, signal.SIG_IGN)
        processes.end_all()
    sys.exit(status)
