"""joined.py PO_FOLDER [LANGUAGE...]

Prints, for people to read, the sentences that the plug-in joins from fragments, in every language or
those named, and says what makes no sentence.

Above each fragment in the PO files stands an example, of rows filled in, in quotation marks, and of
what comes from elsewhere, without:

    #. Joined: Erfurt + " bei 8 km Sichtweite"

What fills a row may be a row itself ("8 km" above is "%@ km"), and is then said in the language too.
A fragment is a row that is called one in its comment, or that begins or ends with white space.
"""

import pathlib
import re
import sys
import unicodedata

import polib

import words

# Their words are not parted by spaces, and their fragments need none.
WITHOUT_SPACES = {"zh-Hans", "ja"}
NUMBER = r"\d+(?:[.,]\d+)*"
PATTERNS = {"%@": r"(.+?)", "%lu": f"({NUMBER})", "%ld": f"(-?{NUMBER})", "%.4f": r"(-?\d+\.\d{4})"}


def pattern(german):
    """What the row looks like when it is filled in."""
    pieces = re.split(f"({words.PLACEHOLDER.pattern})", german)
    return re.compile("".join(PATTERNS.get(piece, re.escape(piece)) for piece in pieces), re.DOTALL)


def is_fragment(entry):
    return "fragment" in entry.comment.split("Joined:")[0] or entry.msgid != entry.msgid.strip()


class Catalog:
    """The rows in all languages, and the examples above the fragments."""

    def __init__(self, folder):
        self.cells = {}  # (language, German) to the text
        self.fragments = {}  # German to its example, which is empty where there is none
        for path in sorted(folder.glob("*/*.po")):
            for entry in polib.pofile(str(path)):
                self.cells[path.stem, entry.msgid] = entry.msgstr
                if is_fragment(entry):
                    example = re.search("^Joined: (.*)", entry.comment, re.MULTILINE)
                    self.fragments[entry.msgid] = example[1] if example else ""
        # What says most of the text first, so that "48 km" is "%@ km" rather than "%@ %@".
        rows = sorted(dict.fromkeys(german for _, german in self.cells),
                      key=lambda german: -len(words.PLACEHOLDER.sub("", german)))
        self.patterns = [(german, pattern(german)) for german in rows]

    def row_of(self, text):
        """The row that reads like this when it is filled in, and what fills it."""
        for german, regex in self.patterns:
            if match := regex.fullmatch(text):
                return german, match.groups()
        return None, ()

    def said(self, language, text):
        """What a filled-in row, or what fills one, is in a language."""
        german, values = self.row_of(text)
        if german is None or language == "de":
            return text
        filled = iter([self.said(language, value) for value in values])
        return words.PLACEHOLDER.sub(lambda _: next(filled), self.cells[language, german])

    def parts(self, language, example):
        """The parts of an example, each with its row, or None where it comes from elsewhere."""
        found = []
        for quoted, plain in re.findall(r'"([^"]*)"|([^"]+?)(?: \+ (?=")|$)', example):
            text = quoted.replace("\\n", "\n")
            if quoted:
                found.append((self.row_of(text)[0] or "", self.said(language, text)))
            elif plain.strip(" +"):
                found.append((None, plain.removeprefix(" + ")))
        return found

    def rows_in(self, text):
        """The row of a text and those of what fills it."""
        german, values = self.row_of(text)
        return [german, *(row for value in values for row in self.rows_in(value))] if german else []


def faults_of_sentence(language, german, sentence):
    yield from words.faults_of_punctuation(language, german, sentence)
    if words.PLACEHOLDER.search(sentence):
        yield "a placeholder is left"
    if re.search(r"\s[,.;)）。、，]|[(（]\s|[,;:]{2}|\)\(", sentence):
        yield "space or signs that do not follow each other"


def is_of_a_word(sign):
    return unicodedata.category(sign)[0] in "LMN"


def glued(language, german_parts, parts):
    """The words that become one where a translation lacks the space of the German."""
    if language in WITHOUT_SPACES:
        return
    texts = [text for _, text in parts]
    german = [text for _, text in german_parts]
    for before, after, part, next_part in zip(texts, texts[1:], german, german[1:]):
        if not (part[-1:].isspace() or next_part[:1].isspace()):
            continue
        # The Arabic "and" is written together with the next word.
        if before and after and not before.endswith(" و"):
            if is_of_a_word(before[-1]) and is_of_a_word(after[0]):
                yield before + after


def read(folder, languages, show=print):
    """Shows all sentences; returns what is wrong with them."""
    catalog = Catalog(folder)
    if not catalog.fragments:
        return [f"{folder} holds no fragments"]
    faults = []
    for fragment, example in catalog.fragments.items():
        if not example:
            faults.append(f"the fragment {fragment!r} has no example (#. Joined: …)")
            continue
        german_parts = catalog.parts("de", example)
        german = "".join(text for _, text in german_parts)
        unknown = [text for row, text in german_parts if row == ""]
        if unknown:
            faults.append(f"{fragment!r}: no row reads like {unknown[0]!r} in its example")
            continue
        if not any(fragment in catalog.rows_in(text) for row, text in german_parts if row):
            faults.append(f"{fragment!r}: its example is made of other rows: {example}")
        show(f"\n{fragment!r}")
        for language in languages:
            parts = catalog.parts(language, example)
            sentence = "".join(text for _, text in parts)
            show(f"  {language:8}" + sentence.replace("\n", "\n" + 10 * " "))
            faults += [f"{language}: {sentence!r}: {what}"
                       for what in faults_of_sentence(language, german, sentence)]
            faults += [f"{language}: {sentence!r}: a space is missing in {pair!r}"
                       for pair in glued(language, german_parts, parts)]
    return faults


def main():
    known = ["de", *words.LANGUAGES]
    languages = sys.argv[2:] or known
    if unknown := set(languages) - set(known):
        sys.exit(f"{', '.join(unknown)}: the languages are {', '.join(known)}")
    return "\n".join(read(pathlib.Path(sys.argv[1]), languages)) or 0


if __name__ == "__main__":
    sys.exit(main())
