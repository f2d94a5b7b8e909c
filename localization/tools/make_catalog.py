"""Turns the PO files into the C++ source of the catalogue.

Each folder given holds one <code>.po per language other than German, or no PO file at all. The
folders together make one table, so a German text may stand in one of them only. Whatever would let a
wrong text reach the screen ends the build with a message that names the row.
"""

import argparse
import pathlib
import re
import sys

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
        wanted = PLACEHOLDER.findall(entry.msgid)
        found = PLACEHOLDER.findall(entry.msgstr)
        if entry.msgstr and wanted != found:
            raise CatalogError(f"{where} needs the placeholders {wanted} in this order, not {found}")
        rows[entry.msgid] = entry.msgstr
    return rows


def read_folder(folder, allow_unwritten):
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
            if not column[key] and (language == "en" or not allow_unwritten):
                raise CatalogError(f"{where} has no translation")
    return {key: [columns[code][key] for code in LANGUAGES] for key in keys}


def read_catalog(folders, allow_unwritten):
    catalog = {}
    for folder in folders:
        for key, cells in read_folder(folder, allow_unwritten).items():
            if key in catalog:
                raise CatalogError(f"{folder}: the row {quoted(key)} stands in another folder too")
            catalog[key] = cells
    if not catalog:
        raise CatalogError("no rows: " + ", ".join(map(str, folders)))
    return catalog


def source(catalog):
    lines = [
        "// Made from the PO files by make_catalog.py: change those instead.",
        '#include "Translation.h"',
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
        cells = [quoted(cell) if cell else "nullptr" for cell in (key, *catalog[key])]
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
    parser.add_argument(
        "--allow-unwritten",
        action="store_true",
        help="let cells other than English be empty: English stands in for them",
    )
    parser.add_argument("folders", type=pathlib.Path, nargs="+", help="folders of PO files")
    arguments = parser.parse_args()
    try:
        text = source(read_catalog(arguments.folders, arguments.allow_unwritten))
    except CatalogError as error:
        sys.exit(f"{error}")
    arguments.output.write_text(text, encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main()
