"""words.py CHECK PO_FOLDER

Reads all words of the program and of the plug-in as an editor would who knows the rules of each
language but not the language, and says what breaks them. CHECK is one of

script       letters of another script or alphabet, names and units apart
oversight    a cell that is the German or the English text once more, of more than digits, units,
             placeholders and words of international.tsv
punctuation  foreign quotation marks, dots in place of an ellipsis, typewriter signs, French spacing
names        the name of a program, service or file that was changed
titles       a title quoted in a sentence that is not the title as it is shown
glossary     a term that the glossary gives another word for
files        files that differ in their rows, the order of these or what stands above them
msgfmt       what gettext's own tool complains of

Rows that may break a rule are in exceptions.tsv, one by one; one that breaks none is a fault too,
and so is a word in international.tsv that no row needs.
"""

import itertools
import pathlib
import re
import subprocess
import sys
import unicodedata

import polib

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "localization/tools"))
import languages  # noqa: E402

LANGUAGES = languages.TRANSLATED
SCRIPTS = {each.code: each.letters.split() for each in languages.LANGUAGES if each.letters != "LATIN"}
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
    "ACEScg", "origin.nxd", "route.nxd", "norvaxel3d.json", "OK", "3D", "JPEG", "Rec. 709", "8K",
]
ANY_NAME = "|".join(map(re.escape, sorted(NAMES, key=len, reverse=True)))
NAME = re.compile(rf"(?<![A-Za-z])(?:{ANY_NAME})(?![A-Za-z])")
# Ordinary words or abbreviations that a language may have its own for.
TRANSLATABLE = {"OK", "Open Database License", "3D", "CPU", "RGB", "GPU"}

# The units that a language writes in Latin letters, after a number or alone in brackets.
LATIN_UNITS = dict.fromkeys(["en", "es", "fr", "pt", "it", "pl"], "km/h km m h min s")
LATIN_UNITS |= {"tr": "km m", "ja": "km/h km m mi nmi ms", "ko": "km/h km m mi nmi", "zh-Hans": "MB GB"}


def unit_of(language):
    """What matches a unit of this language, of which only the one with a stroke stands anywhere."""
    units = LATIN_UNITS.get(language, "").split()
    anywhere = [re.escape(unit) for unit in units if "/" in unit]
    units = "|".join(map(re.escape, units)) or "(?!)"
    # A placeholder stands for a number; a fragment is joined after one.
    places = r"(?:(?:\d|%@|%lu|%ld|%\.4f)[ \u00a0]?|^ |[(（])"
    anywhere = "|".join(anywhere) or "(?!)"
    return re.compile(rf"{places}(?:{units})(?![A-Za-z])|(?<![A-Za-z])(?:{anywhere})(?![A-Za-z])")


UNIT = {language: unit_of(language) for language in LANGUAGES}


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
        self.international = {}  # (language, word) to whether a row needed it
        for word, languages in self.table(folder / "international.tsv")[1:]:
            for language in languages.split():
                self.international[language, word] = False
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
        found = [f"exceptions.tsv: {check}, {language}: {german!r} needs no exception"
                 for (kind, language, german), needed in self.exceptions.items() if kind == check and not needed]
        if check == "oversight":
            found += [f"international.tsv: no row needs {word!r} for {language}"
                      for (language, word), needed in self.international.items() if not needed]
        return found

    def without_international(self, language, text):
        """A text that is the same in another language, without the words that may be."""

        lowered = {word.lower(): (code, word) for code, word in self.international if code == language}

        def kept(match):
            if key := lowered.get(match[0].lower()):
                self.international[key] = True
            return "" if key else match[0]
        return re.sub(r"[^\W\d_]+", kept, text)


def without_names(language, text):
    return PLACEHOLDER.sub("", UNIT[language].sub("", NAME.sub("", text)))


def is_of(language, letter):
    if language in SCRIPTS:
        # Also the long vowel sign of the Japanese syllabaries.
        return unicodedata.name(letter, "").startswith((*SCRIPTS[language], "KATAKANA-HIRAGANA"))
    return letter.lower() in "abcdefghijklmnopqrstuvwxyz" + LETTERS[language] or letter == "İ"


def faults_of_script(language, german, text, words):
    foreign = [c for c in without_names(language, text) if c.isalpha() and not is_of(language, c)]
    if foreign:
        yield f"foreign letters {''.join(foreign)!r}"


def faults_of_oversight(language, german, text, words):
    sources = {"German": german, "English": german if language == "en" else words.cells["en", german]}
    same = [name for name, source in sources.items() if text == source]
    if same and any(map(str.isalpha, words.without_international(language, without_names(language, text)))):
        yield f"the {same[0]} text"


def faults_of_punctuation(language, german, text, words=None):
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


def faults_of_names(language, german, text, words):
    # German joins with hyphens: "Norvaxel-3D-Paket".
    wanted = set(NAME.findall(german.replace("Norvaxel-3D", "Norvaxel 3D"))) - TRANSLATABLE
    missing = sorted(name for name in wanted if name not in text)
    if missing:
        yield f"without {', '.join(missing)}"


def faults_of_titles(language, german, text, words):
    opening, closing = QUOTES[language]
    space = "\u00a0" if language == "fr" else ""
    for title in re.findall("»([^«]*)«", german):
        if (language, title) in words.cells and not PLACEHOLDER.search(title):
            quoted = opening + space + words.cells[language, title] + space + closing
            if quoted not in text:
                yield f"the title is {quoted}"


def terms(words):
    """Each term with its forms by language; what is wrong with the file is a fault."""
    header, *lines = words.glossary
    if header != ["term", "language", "forms"]:
        words.faults.append(f"glossary.tsv: its columns are {header}")
        return {}
    found = {}
    for line in lines:
        term, language, forms = (*line, "", "")[:3]
        if language not in ["de", *LANGUAGES] or not forms or len(line) != 3:
            words.faults.append(f"glossary.tsv: {line} is no term, language and forms")
        elif language in found.setdefault(term, {}):
            words.faults.append(f"glossary.tsv: {term} stands twice for {language}")
        else:
            found[term][language] = forms.split("|")
    for term, forms in found.items():
        missing = [language for language in ["de", *LANGUAGES] if language not in forms]
        if missing:
            words.faults.append(f"glossary.tsv: {term} lacks {', '.join(missing)}")
    return {term: forms for term, forms in found.items() if len(forms) == len(LANGUAGES) + 1}


def check_glossary(words):
    for term, forms in terms(words).items():
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


def check_files(words):
    """Each row stands at the same place in all files of a folder, below the same comments."""
    for folder in dict.fromkeys(path.parent for path in words.files):
        wanted = []
        for path in (path for path in words.files if path.parent == folder):
            found = [(entry.msgid, entry.comment) for entry in polib.pofile(str(path))]
            wanted = wanted or found
            if found == wanted:
                continue
            pairs = itertools.zip_longest(found, wanted, fillvalue=("no row", ""))
            own, other = next(pair for pair in pairs if pair[0] != pair[1])
            words.faults.append(f"{path}: {own}, where {folder.name}/ar.po has {other}")


def check_msgfmt(words):
    for path in words.files:
        result = subprocess.run(["msgfmt", "--check", "--output-file=/dev/null", path],
                                capture_output=True, encoding="utf-8", check=False)
        if result.returncode or result.stderr:
            words.faults.append(f"{path}: {result.stderr.strip()}")


# Those that look at one cell, and those that look at all the files.
OF_A_CELL = {"script": faults_of_script, "oversight": faults_of_oversight, "punctuation": faults_of_punctuation,
             "names": faults_of_names, "titles": faults_of_titles}
OF_ALL = {"glossary": check_glossary, "files": check_files, "msgfmt": check_msgfmt}


def faults(check, folder):
    words = Words(folder)
    if not words.rows:
        return [f"{folder} holds no words"]
    if check in OF_ALL:
        OF_ALL[check](words)
    else:
        for language in ["de", *LANGUAGES] if check == "punctuation" else LANGUAGES:
            for german, text in words.texts(language):
                for what in OF_A_CELL[check](language, german, text, words):
                    words.fault(check, language, german, what)
    unknown = [f"exceptions.tsv: no such check, language or row: {key}"
               for key in words.exceptions
               if key[0] not in OF_A_CELL | OF_ALL or key[1:] not in words.cells and key[1] != "de"]
    return words.faults + words.stale_exceptions(check) + unknown


if __name__ == "__main__":
    sys.exit("\n".join(faults(sys.argv[1], pathlib.Path(sys.argv[2]))) or 0)
