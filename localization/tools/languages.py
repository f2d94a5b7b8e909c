"""The languages of the interface, as languages.inc lists them."""

import pathlib
import re
from typing import NamedTuple


class Language(NamedTuple):
    code: str
    own_name: str
    direction: str  # "ltr" or "rtl"
    locale: str
    letters: str  # how Unicode's names of its letters begin, separated by spaces


TABLE = pathlib.Path(__file__).resolve().parent.parent / "languages.inc"
LANGUAGES = [
    Language(*re.findall(r'"([^"]*)"', line))
    for line in TABLE.read_text(encoding="utf-8").splitlines() if line.startswith("{")
]
# German comes first: it is the source and has no file of translations.
TRANSLATED = [language.code for language in LANGUAGES[1:]]
