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

# The order of nxui::languageCodes without German, which is the key.
LANGUAGES = ["en", "ru", "es", "fr", "pt", "it", "pl", "tr", "zh-Hans", "ja", "ko", "ar", "hi"]

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
    """The rows of one PO file: German text to translation, which may be empty."""
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
        rows[entry.msgid] = entry.msgstr
    return rows


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
    for key in keys:
        for language, column in columns.items():
            where = f"{folder / language}.po: the row {quoted(key)}"
            if key not in column:
                raise CatalogError(f"{where} is missing")
            if not column[key].strip() and key.strip():
                raise CatalogError(f"{where} has no translation")
    return {key: [columns[code][key] for code in LANGUAGES] for key in keys}


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


def check_figures(catalog, arguments):
    """Holds the whole catalogue against the figures that were agreed on with the plug-in."""

    def check(what, wanted, keys, figure=len):
        found = figure(keys)
        if wanted is not None and found != wanted:
            names = "; ".join(quoted(key) for key in keys[:50])
            raise CatalogError(f"{what}: {found} instead of {wanted}: {names}")

    keys = sorted(catalog, key=lambda text: text.encode("utf-8"))
    if arguments.rows is not None and len(keys) != arguments.rows:
        counts = ", ".join(f"{len(read_folder(folder))} in {folder}" for folder in arguments.folders)
        raise CatalogError(
            f"{len(keys)} rows instead of {arguments.rows} ({counts}), "
            f"from the row {quoted(keys[0])} to the row {quoted(keys[-1])}"
        )
    longest = sorted(keys, key=lambda key: len(key.encode("utf-8")))[-1:]
    check("bytes of the longest row", arguments.longest, longest,
          lambda keys: len(keys[0].encode("utf-8")))
    check("rows with a line feed", arguments.line_feeds, [key for key in keys if "\n" in key])
    check("rows whose English is the German", arguments.like_english,
          [key for key in keys if catalog[key][0] == key])


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
    figures = parser.add_argument_group("figures of the whole catalogue, each checked where it is given")
    figures.add_argument("--rows", type=int)
    figures.add_argument("--longest", type=int, help="bytes of the longest German text")
    figures.add_argument("--line-feeds", type=int, help="rows with a line feed in them")
    figures.add_argument("--like-english", type=int, help="rows whose English is the German")
    parser.add_argument("folders", type=pathlib.Path, nargs="+", help="folders of PO files")
    arguments = parser.parse_args()
    try:
        catalog = read_catalog(arguments.folders)
        check_figures(catalog, arguments)
    except CatalogError as error:
        sys.exit(f"{error}")
    arguments.output.write_text(source(catalog), encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main()
