"""words.py CHECK PO_FOLDER

Reads all words of the program and of the plug-in as an editor would who knows the rules of each
language but not the language, and says what breaks them. CHECK is one of

script       letters of another script or alphabet, names apart
oversight    a cell that is the German or the English text once more
punctuation  foreign quotation marks, dots in place of an ellipsis, typewriter signs, French spacing
names        the name of a program, service or file that was changed
titles       a title quoted in a sentence that is not the title as it is shown
glossary     a term that the glossary gives another word for
msgfmt       what gettext's own tool complains of

Rows that may break a rule are in exceptions.tsv, one by one; one that breaks none is a fault too.
"""

import pathlib
import re
import subprocess
import sys
import unicodedata

import polib

LANGUAGES = ["en", "ru", "es", "fr", "pt", "it", "pl", "tr", "zh-Hans", "ja", "ko", "ar", "hi"]

# As the names of Unicode's letters begin.
SCRIPTS = {
    "ru": ("CYRILLIC",),
    "zh-Hans": ("CJK",),
    "ja": ("CJK", "HIRAGANA", "KATAKANA"),
    "ko": ("HANGUL",),
    "ar": ("ARABIC",),
    "hi": ("DEVANAGARI",),
}
# What a Latin alphabet has beyond a to z.
LETTERS = {
    "en": "",
    "es": "áéíóúüñ",
    "fr": "àâæçéèêëîïôœùûüÿ",
    "pt": "áâãàçéêíóôõú",
    "it": "àèéìòù",
    "pl": "ąćęłńóśźż",
    "tr": "çğıöşüâîû",
}
QUOTES = {
    "de": "»«", "en": "“”", "ru": "«»", "es": "«»", "fr": "«»", "pt": "“”", "it": "“”", "pl": "„”",
    "tr": "“”", "zh-Hans": "“”", "ja": "「」", "ko": "“”", "ar": "«»", "hi": "“”",
}
ANY_QUOTE = re.compile("[«»“”„‟‘‚‹›「」『』\"]")
PLACEHOLDER = re.compile(r"%@|%lu|%ld|%\.4f")

# They read the same in every language.
NAMES = [
    "Norvaxel 3D", "Norvaxel 2D", "Norvaxel", "DaVinci Resolve", "Resolve", "OpenStreetMap",
    "OpenFreeMap", "OpenMapTiles", "Terrain Tiles", "AWS", "Photon", "OSRM", "OSM", "Overpass",
    "ODbL", "Open Database License", "HTTPS", "GPU", "CPU", "RGB", "RGBA", "PNG", "GeoJSON", "sRGB",
    "ACEScg", "origin.nxd", "route.nxd", "norvaxel3d.json", "OK", "3D",
]
NAME = re.compile(
    r"(?<![A-Za-z])(?:" + "|".join(map(re.escape, sorted(NAMES, key=len, reverse=True)))
    + r")(?![A-Za-z])"
)
# Ordinary words or abbreviations that a language may have its own for.
TRANSLATABLE = {"OK", "Open Database License", "3D", "CPU", "RGB", "GPU"}


class Words:
    """All cells, the glossary and the exceptions. Faults are collected with the cell's place."""

    def __init__(self, folder):
        self.cells = {}  # (language, German) to the text
        self.files = []
        for path in sorted(folder.glob("*/*.po")):
            self.files.append(path)
            for entry in polib.pofile(str(path)):
                self.cells[path.stem, entry.msgid] = entry.msgstr
        self.rows = list(dict.fromkeys(german for _, german in self.cells))
        self.glossary = self.table(folder / "glossary.tsv")
        self.exceptions = {}  # (check, language, German) to whether it was needed
        for check, language, german, _ in self.table(folder / "exceptions.tsv")[1:]:
            self.exceptions[check, language, german] = False
        self.faults = []

    @staticmethod
    def table(path):
        """The rows of a tab-separated file; "\\n" stands for a line feed."""
        lines = path.read_text(encoding="utf-8").splitlines()
        return [[cell.replace("\\n", "\n") for cell in line.split("\t")] for line in lines if line]

    def texts(self, language):
        """German and translation of every row."""
        for german in self.rows:
            yield german, german if language == "de" else self.cells[language, german]

    def fault(self, check, language, german, what):
        key = check, language, german
        if key in self.exceptions:
            self.exceptions[key] = True
        else:
            text = self.cells.get((language, german), "")
            self.faults.append(f"{language}: {german!r} is {text!r}: {what}")

    def stale_exceptions(self, check):
        return [
            f"exceptions.tsv: {check}, {language}: {german!r} needs no exception"
            for (kind, language, german), needed in self.exceptions.items()
            if kind == check and not needed
        ]


def without_names(text):
    return NAME.sub("", PLACEHOLDER.sub("", text))


def is_of(language, letter):
    if language in SCRIPTS:
        # Also the long vowel sign of the Japanese syllabaries.
        return unicodedata.name(letter, "").startswith((*SCRIPTS[language], "KATAKANA-HIRAGANA"))
    return letter.lower() in "abcdefghijklmnopqrstuvwxyz" + LETTERS[language] or letter == "İ"


def check_script(words):
    for language in LANGUAGES:
        for german, text in words.texts(language):
            foreign = [c for c in without_names(text) if c.isalpha() and not is_of(language, c)]
            if foreign:
                words.fault("script", language, german, f"foreign letters {''.join(foreign)!r}")


def check_oversight(words):
    for language in LANGUAGES:
        for german, text in words.texts(language):
            has_words = any(c.isalpha() for c in without_names(text))
            if has_words and text == german:
                words.fault("oversight", language, german, "the German text")
            elif has_words and language != "en" and text == words.cells["en", german]:
                words.fault("oversight", language, german, "the English text")


def faults_of_punctuation(language, german, text):
    opening, closing = QUOTES[language]
    foreign = [c for c in ANY_QUOTE.findall(text) if c not in QUOTES[language]]
    if foreign:
        yield f"foreign quotation marks {''.join(foreign)}"
    pairs = german.count("»")
    if (text.count(opening), text.count(closing)) != (pairs, pairs):
        yield f"{pairs} pairs of {opening}{closing} wanted"
    if "..." in text or text.count("…") != german.count("…"):
        yield "an ellipsis is … and stands where the German has one"
    # German and English have a space before it, where it stands for an action that goes on.
    if language not in ("de", "en") and re.search(r"\s…", text):
        yield "space before the ellipsis"
    if "'" in text or " - " in text or "  " in text:
        yield "a typewriter's apostrophe, dash or double space"
    if re.search("[\u00ad\u200b\u2060\ufeff]", text):
        yield "an invisible sign"
    if language == "fr":
        if re.search("«(?!\u00a0)|(?<!\u00a0)»", text):
            yield "a no-break space belongs inside the guillemets"
        if re.search(r"(?<![\u00a0\d]):(?!\d)", re.sub("^:", "", text)):
            yield "a no-break space belongs before the colon"
        if re.search("(?<!\u202f)[;!?]", text):
            yield "a narrow no-break space belongs before ; ! ?"


def check_punctuation(words):
    for language in ["de", *LANGUAGES]:
        for german, text in words.texts(language):
            for what in faults_of_punctuation(language, german, text):
                words.fault("punctuation", language, german, what)


def check_names(words):
    for language in LANGUAGES:
        for german, text in words.texts(language):
            # German joins with hyphens: "Norvaxel-3D-Paket".
            wanted = set(NAME.findall(german.replace("Norvaxel-3D", "Norvaxel 3D"))) - TRANSLATABLE
            missing = sorted(name for name in wanted if name not in text)
            if missing:
                words.fault("names", language, german, f"without {', '.join(missing)}")


def check_titles(words):
    known = set(words.rows)
    for language in LANGUAGES:
        opening, closing = QUOTES[language]
        space = "\u00a0" if language == "fr" else ""
        for german, text in words.texts(language):
            for title in re.findall("»([^«]*)«", german):
                if title not in known or PLACEHOLDER.search(title):
                    continue
                quoted = opening + space + words.cells[language, title] + space + closing
                if quoted not in text:
                    words.fault("titles", language, german, f"the title is {quoted}")


def check_glossary(words):
    header, *terms = words.glossary
    if header != ["term", "de", *LANGUAGES]:
        words.faults.append(f"glossary.tsv: its columns are {header}")
        return
    for term, *cells in terms:
        if len(cells) != len(header) - 1 or not all(cells):
            words.faults.append(f"glossary.tsv: {term} lacks a language")
            continue
        forms = dict(zip(header[1:], (cell.split("|") for cell in cells)))
        concerned = 0
        for german in words.rows:
            kept = german
            for form in forms["de"]:
                # "!" before words that hold the term and mean something else.
                if form.startswith("!"):
                    kept = kept.replace(form[1:], "")
            if not any(form in kept for form in forms["de"] if not form.startswith("!")):
                continue
            concerned += 1
            for language in LANGUAGES:
                text = words.cells[language, german].casefold()
                if not any(form.casefold() in text for form in forms[language]):
                    words.fault("glossary", language, german,
                                f"{term} is {' or '.join(forms[language])}")
        if not concerned:
            words.faults.append(f"glossary.tsv: no row has the term {term}")


def check_msgfmt(words):
    for path in words.files:
        result = subprocess.run(["msgfmt", "--check", "--output-file=/dev/null", path],
                                capture_output=True, encoding="utf-8", check=False)
        if result.returncode or result.stderr:
            words.faults.append(f"{path}: {result.stderr.strip()}")


CHECKS = {
    "script": check_script,
    "oversight": check_oversight,
    "punctuation": check_punctuation,
    "names": check_names,
    "titles": check_titles,
    "glossary": check_glossary,
    "msgfmt": check_msgfmt,
}


def faults(check, folder):
    words = Words(folder)
    if not words.rows:
        return [f"{folder} holds no words"]
    CHECKS[check](words)
    unknown = [f"exceptions.tsv: no such check, language or row: {key}"
               for key in words.exceptions
               if key[0] not in CHECKS or key[1:] not in words.cells and key[1] != "de"]
    return words.faults + words.stale_exceptions(check) + unknown


def main():
    found = faults(sys.argv[1], pathlib.Path(sys.argv[2]))
    if found:
        print(*found, sep="\n")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
