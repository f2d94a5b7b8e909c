"""texts_and_rows.py CHECK PROJECT_FOLDER

Holds the German texts in the code against the rows of the catalogue, of which a typing error on
either side would part them: the text would stay German in every language, and nobody would be told.

every_text_has_a_row   each text that the code hands to NXLocal or localText has a row
every_row_has_a_text   each row of the program stands somewhere in the code as a text, which finds
                       what reaches NXLocal through a table or a variable
"""

import pathlib
import re
import sys

import polib

FOLDERS = ["localization", "platform", "search", "jobs", "look", "app"]

LITERAL = r'(?:u8|[uUL])?"(?:[^"\\\n]|\\.)*"(?:_qs|_s)?'
# The compiler joins neighbouring literals, and so does this.
LITERALS = re.compile(rf"{LITERAL}(?:\s*{LITERAL})*")
LOOKUP = re.compile(
    r"\b(?:NXLocal|localText)\(\s*(?:QStringLiteral\(|QStringView\(|QString\()?\s*"
    rf"(?P<text>{LITERALS.pattern})"
)
# Comments and raw strings are left out; ordinary strings are matched first, to be kept.
COMMENT = re.compile(rf"(?P<text>{LITERAL})|'(?:[^'\\]|\\.)+'|//[^\n]*|/\*.*?\*/", re.DOTALL)

ESCAPES = {"n": "\n", "t": "\t", '"': '"', "\\": "\\", "'": "'"}


def value(literals):
    """The text that neighbouring C++ literals make together."""
    bodies = re.findall(r'"((?:[^"\\\n]|\\.)*)"', literals)
    return re.sub(r"\\(.)", lambda match: ESCAPES.get(match[1], match[0]), "".join(bodies))


def without_comments(code):
    return COMMENT.sub(lambda match: match["text"] or re.sub(r"[^\n]", " ", match[0]), code)


def lookups(code):
    """The texts looked up in this code, each with its line."""
    code = without_comments(code)
    return [(value(match["text"]), code.count("\n", 0, match.start()) + 1) for match in LOOKUP.finditer(code)]


def texts(code):
    """Every text in this code."""
    return {value(match[0]) for match in LITERALS.finditer(without_comments(code))}


def sources(project):
    for folder in FOLDERS:
        for path in sorted((project / folder).rglob("*")):
            if path.suffix in {".h", ".cpp", ".mm"}:
                yield path, path.read_text(encoding="utf-8")


def main(check, project):
    po = polib.pofile(str(project / "localization/po/program/en.po"))
    rows = {entry.msgid for entry in po}
    problems = []
    if check == "every_text_has_a_row":
        for path, code in sources(project):
            problems += [
                f"{path}:{line}: no row for {text!r} (localization/tools/add_text.py adds one)"
                for text, line in lookups(code)
                if text and text not in rows
            ]
    elif check == "every_row_has_a_text":
        found = set().union(*(texts(code) for _, code in sources(project)))
        problems = [f"{po.fpath}: no text in the code is {row!r}" for row in sorted(rows - found)]
    else:
        sys.exit(f"unknown check {check}")
    return "\n".join(problems) or 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], pathlib.Path(sys.argv[2])))
