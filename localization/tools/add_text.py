"""add_text.py [--shown-in PLACE] [--joined EXAMPLE] GERMAN_TEXT

Gives a new German text its row in all 13 PO files of the program, in the same place in each: after the
rows that are shown in the same place, or at the end. The translations are empty, and the build names
each one until it is written.
"""

import argparse
import pathlib
import sys

import polib

import make_catalog

PO = pathlib.Path(__file__).resolve().parent.parent / "po"


class AddError(Exception):
    """The text cannot be added, and no file was changed. The message says why."""


def place_in(po, comment):
    """How many rows stand before a new one with this comment."""
    alike = [number for number, entry in enumerate(po, 1) if entry.comment.split("\n")[0] == comment]
    return alike[-1] if alike else len(po)


def line_of(content, german):
    """The line of a row in a file."""
    return next(entry.linenum for entry in polib.pofile(content) if entry.msgid == german)


def add(folder, german, shown_in, joined=""):
    """Adds the row to the program's files; returns the place of every empty translation."""
    if not german.strip():
        raise AddError("a text of white space alone says nothing")
    if fault := make_catalog.fault_of_key(german):
        raise AddError(f"the text {fault}")
    if german != german.strip() and not joined:
        raise AddError("a text that begins or ends with white space is joined to others: say to which "
                       "with --joined, as the other fragments do")
    comment = f"Shown in: {shown_in}"
    files = {}
    for path in sorted(folder.glob("*/*.po")):
        po = files[path] = polib.pofile(str(path), wrapwidth=0)
        if po.find(german):
            raise AddError(f"{path} has this text already")
    files = {path: po for path, po in files.items() if path.parent.name == "program"}
    if {path.stem for path in files} != set(make_catalog.LANGUAGES):
        raise AddError(f"{folder / 'program'} does not hold the 13 files")
    rows = [[(entry.msgid, entry.comment) for entry in po] for po in files.values()]
    if any(each != rows[0] for each in rows):
        raise AddError("the files differ in their rows (ctest -R words_files says where)")
    above = f"{comment}\nJoined: {joined}" if joined else comment
    flags = ["objc-format"] if make_catalog.PLACEHOLDER.search(german) else []
    for po in files.values():
        po.insert(place_in(po, comment), polib.POEntry(msgid=german, comment=above, flags=flags))
    for path, po in files.items():
        path.write_text(str(po), encoding="utf-8", newline="\n")
    return [f"{path}:{line_of(str(po), german)}" for path, po in files.items()]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[1])
    parser.add_argument("--shown-in", default="window", metavar="PLACE",
                        help='where people see it, as other rows say it above them (default "window")')
    parser.add_argument("--joined", default="", metavar="EXAMPLE",
                        help="for a fragment: the sentence in which it stands, as other fragments show it")
    parser.add_argument("text", metavar="GERMAN_TEXT", help=r'as it stands in the code; "\n" is a line feed')
    arguments = parser.parse_args()
    try:
        places = add(PO, arguments.text.replace("\\n", "\n"), arguments.shown_in, arguments.joined)
    except (AddError, OSError) as error:
        sys.exit(f"Nothing was added: {error}.")
    print("Its translations are wanted at", *places, sep="\n  ")
    print(f"Then write the new number of rows in {PO / 'counts.txt'}.")


if __name__ == "__main__":
    main()
