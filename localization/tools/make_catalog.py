"""Turns the PO files into the C++ source of the catalogue.

Each folder given holds one <code>.po per language other than German, or no PO file at all. The
folders together make one table, so a German text may stand in one of them only. Whatever would let a
wrong text reach the screen ends the build with a message that names the row.
"""

import argparse
import pathlib
import re
import sys
import unicodedata

import polib

# The columns behind the German one, which is the key.
from languages import TRANSLATED as LANGUAGES

# What the program fills in. The arguments come in the German order in every language.
PLACEHOLDER = re.compile(r"%@|%lu|%ld|%\.4f")


class CatalogError(Exception):
    """The PO files do not make a catalogue. The message says where and why."""


def quoted(text):
    """A C string literal that holds exactly the text's UTF-8 bytes."""
    escapes = {"\n": "\\n", "\t": "\\t", '"': '\\"', "\\": "\\\\"}
    # Three octal digits always, so that a digit that follows is not taken in.
    return '"' + "".join(
        escapes.get(c, f"\\{ord(c):03o}" if ord(c) < 32 or ord(c) == 127 else c) for c in text
    ) + '"'


def outer_space(text):
    """The white space before and after a text."""
    return text[: len(text) - len(text.lstrip())], text[len(text.rstrip()) :]


def fault_of_key(key):
    """What is wrong with a German text; empty if nothing is."""
    if unicodedata.normalize("NFC", key) != key:
        return "is not in Unicode's composed form (NFC)"
    # Line feed and space, which open the fragments that are appended to others, sort before all
    # letters, and "Ü" after them.
    if not (key[0] in "\n " or "!" <= key[0] <= "Ü"):
        return "begins with a sign that does not sort between the line feed and the Ü"
    return ""


def fault_of_cell(key, cell):
    """What is wrong with a translation that is there; empty if nothing is."""
    wanted = PLACEHOLDER.findall(key)
    found = PLACEHOLDER.findall(cell)
    if wanted != found:
        return f"needs the placeholders {wanted} in this order, not {found}"
    if unicodedata.normalize("NFC", cell) != cell:
        return "has a translation that is not in Unicode's composed form (NFC)"
    # Scripts that write no spaces may have less than the German.
    for have, may in zip(outer_space(cell), outer_space(key)):
        if have not in (may, may.replace(" ", "")):
            return f"has {quoted(have)} at an end of its translation, where the German has {quoted(may)}"
    return ""


def read_utf8(path):
    content = path.read_bytes()
    try:
        return content.decode("utf-8")
    except UnicodeDecodeError as error:
        before = content[: error.start].decode("utf-8")
        line = before.count("\n") + 1
        row = re.findall(r"^msgid (.*(?:\n\".*)*)", before, re.MULTILINE)[-1:] or ["the header"]
        raise CatalogError(f"{path}:{line}: not UTF-8, at the row {row[0]}") from error


def read_language(path, language):
    """The rows of one PO file: German text to translation, which may be empty, and line."""
    try:
        po = polib.pofile(read_utf8(path))
    except OSError as error:
        raise CatalogError(f"{path}: {error}") from error
    if po.metadata.get("Language") != language:
        raise CatalogError(f'{path}: the header does not say "Language: {language}"')
    if not po.metadata.get("Content-Type", "").lower().endswith("charset=utf-8"):
        raise CatalogError(f"{path}: the header does not say that the charset is UTF-8")
    rows = {}
    for entry in po:
        if entry.obsolete:
            continue
        where = f"{path}:{entry.linenum}: the row {quoted(entry.msgid)}"
        if entry.msgid in rows:
            raise CatalogError(f"{where} stands here a second time")
        if entry.msgctxt is not None or entry.msgid_plural:
            raise CatalogError(f"{where} has a context or a plural, which nothing looks up")
        if entry.fuzzy:
            raise CatalogError(f"{where} is marked fuzzy: check it or leave it empty")
        if "\0" in entry.msgid + entry.msgstr:
            raise CatalogError(f"{where} holds a NUL, which would cut it short")
        fault = fault_of_key(entry.msgid)
        if not fault and entry.msgstr:
            fault = fault_of_cell(entry.msgid, entry.msgstr)
        if fault:
            raise CatalogError(f"{where} {fault}")
        rows[entry.msgid] = entry.msgstr, entry.linenum
    return rows


def faults_of_folder(folder, columns, keys):
    """Every cell that is not there, with its file and line."""
    for key in keys:
        for language, column in columns.items():
            cell, line = column.get(key, ("", 0))
            if not line:
                yield f"{folder / language}.po: the row {quoted(key)} is missing"
            elif not cell.strip() and key.strip():
                yield f"{folder / language}.po:{line}: the row {quoted(key)} has no translation"


def read_folder(folder):
    """The rows of one folder: German text to its 13 translations."""
    present = {path.stem for path in folder.glob("*.po")}
    if not present:
        return {}
    for language in LANGUAGES:
        if language not in present:
            raise CatalogError(f"{folder}: {language}.po is missing")
    for stem in sorted(present - set(LANGUAGES)):
        raise CatalogError(f"{folder}: {stem}.po is of no language of the program")
    columns = {code: read_language(folder / f"{code}.po", code) for code in LANGUAGES}
    # In the order of the files, so that the first row complained about is the first in the file.
    keys = dict.fromkeys(key for column in columns.values() for key in column)
    faults = list(faults_of_folder(folder, columns, keys))
    if faults:
        raise CatalogError("\n".join(faults[:50]))
    return {key: [columns[code][key][0] for code in LANGUAGES] for key in keys}


def read_catalog(folders):
    catalog = {}
    for folder in folders:
        for key, cells in read_folder(folder).items():
            if key in catalog:
                raise CatalogError(f"{folder}: the row {quoted(key)} stands in another folder too")
            catalog[key] = cells
    if not catalog:
        raise CatalogError("no rows: " + ", ".join(map(str, folders)))
    return catalog


def promised_counts(path):
    """The figures in a file of lines "what: how many"."""
    counts = {}
    for line in path.read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            what, _, count = line.partition(": ")
            if not count.isdecimal() or what in counts:
                raise CatalogError(f"{path}: a figure stands there as \"rows: 3\", and once: {line}")
            counts[what] = int(count)
    return counts


def check_counts(catalog, path, folders):
    """Holds the whole catalogue against the figures that the plug-in is promised."""
    keys = sorted(catalog, key=lambda text: text.encode("utf-8"))
    longest = max(keys, key=lambda key: len(key.encode("utf-8")))
    line_feeds = [key for key in keys if "\n" in key]
    like_english = [key for key in keys if catalog[key][0] == key]
    found = {
        "rows": (len(keys), [f"{len(read_folder(folder))} in {folder}" for folder in folders]),
        "bytes of the longest German text": (len(longest.encode("utf-8")), [quoted(longest)]),
        "rows with a line feed": (len(line_feeds), map(quoted, line_feeds)),
        "rows whose English is the German": (len(like_english), map(quoted, like_english)),
    }
    promised = promised_counts(path)
    if set(promised) != set(found):
        raise CatalogError(f"{path}: the figures are {', '.join(found)}, not {', '.join(promised)}")
    faults = [
        f"{path}: {what}: {count} instead of {promised[what]}. If texts were added, changed or taken "
        f"away on purpose, write {count} there. Found: {'; '.join(rows)}"
        for what, (count, rows) in found.items()
        if count != promised[what]
    ]
    if faults:
        raise CatalogError("\n".join(faults))


def source(catalog):
    lines = [
        "// Made from the PO files by make_catalog.py: change those instead.",
        '#include "localization/Translation.h"',
        "",
        "namespace nxui {",
        "namespace {",
        "",
        "static_assert(languageCodes == std::array<std::string_view, 14>{",
        "    " + ", ".join(quoted(code) for code in ["de", *LANGUAGES]) + "});",
        "",
        "constexpr CatalogRow rows[] = {",
    ]
    # The order of strcmp, which compares unsigned bytes.
    for key in sorted(catalog, key=lambda text: text.encode("utf-8")):
        cells = [quoted(cell) for cell in (key, *catalog[key])]
        lines.append("    {" + ",\n     ".join(cells) + "},")
    lines += [
        "};",
        "",
        "} // namespace",
        "",
        "constinit const std::span<const CatalogRow> catalog = rows;",
        "",
        "} // namespace nxui",
        "",
    ]
    return "\n".join(lines)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--output", type=pathlib.Path, required=True, help="the file to write")
    parser.add_argument("--counts", type=pathlib.Path, help="the figures that the catalogue must have")
    parser.add_argument("folders", type=pathlib.Path, nargs="+", help="folders of PO files")
    arguments = parser.parse_args()
    try:
        catalog = read_catalog(arguments.folders)
        if arguments.counts:
            check_counts(catalog, arguments.counts, arguments.folders)
    except CatalogError as error:
        sys.exit(f"{error}")
    arguments.output.write_text(source(catalog), encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main()
