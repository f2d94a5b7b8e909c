"""The papers tell of what there is: files, functions, sentences and addresses, and nothing else.

Where their links lead is held by ./check.
"""
import pathlib
import re
import subprocess
import unittest

import polib

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAPERS = [ROOT / "README.md", ROOT / "CONTRIBUTING.md", *sorted((ROOT / "docs").glob("*.md"))]
FOLDERS = ("app", "search", "jobs", "look", "localization", "platform", "sandbox", "tests", "cmake", "bench",
           "packaging")
# Sentences of a job that tell of no failure.
NO_FAILURE = re.compile("geladen\\. |^(Import|Routenberechnung) (wird beendet|abgebrochen)|-Paket fertig")


def text(path):
    return (ROOT / path).read_text(encoding="utf-8")


def literals(code):
    """The texts for the window in some code: one beginning with a capital and holding a blank."""
    found = (each.replace("\\n", "\n") for each in re.findall(r'"((?:[^"\\]|\\.)*)"', code))
    return [each for each in found if re.match("[A-ZÄÖÜ]", each) and " " in each]


def failures():
    """Every sentence that the program shows because something went wrong, from its sources."""
    found = []
    for function in ("badQueryStatus", "failureText", "noPlacesStatus", "languageNotSaved", "refusalText",
                     "startFailureText", "outcomeText", "failureTitle"):
        body = re.search(rf"^QString {function}\(.*?^}}", text("app/Sentences.cpp"), re.MULTILINE | re.DOTALL)
        found += [each for each in literals(body[0]) if not NO_FAILURE.search(each)]
    return sorted(set(found))


class Papers(unittest.TestCase):
    def test_every_name_in_the_architecture_exists(self):
        sources = "\n".join(file.read_text(encoding="utf-8", errors="replace")
                            for folder in FOLDERS for file in sorted((ROOT / folder).rglob("*"))
                            if file.suffix in (".h", ".cpp", ".py", ".txt", ".cmake") or file.name == "geocoder")
        words = set(re.findall(r"\w+", sources))
        names = [each.strip('"') for each in re.findall(r"`([^`\n]+)`", text("docs/architecture.md"))]
        self.assertGreater(len(names), 60)
        for name in names:
            with self.subTest(name):
                if "/" in name or name.endswith((".cpp", ".h")):
                    places = [name] if "/" in name else [f"{folder}/**/{name}" for folder in FOLDERS]
                    self.assertTrue(name == "./run" or any(list(ROOT.glob(each)) for each in places))
                    continue
                for word in name.split("::"):
                    self.assertIn(word, words)
                if "::" in name:
                    kind, member = name.split("::")
                    headers = (file for folder in FOLDERS for file in (ROOT / folder).rglob(f"{kind}.h"))
                    self.assertRegex(text(next(headers)), rf"\b{member}\b")

    def test_every_sentence_of_failure_is_explained(self):
        told = text("docs/troubleshooting.md").replace("**<br>**", "\n")
        found = failures()
        self.assertGreater(len(found), 35)
        for sentence in found:
            with self.subTest(sentence):
                self.assertIn(f"**{sentence.replace('%@', '…')}**", told)

    def test_every_explained_sentence_stands_in_the_catalogue_with_its_english(self):
        english = {row.msgid.replace("%@", "…"): row.msgstr.replace("%@", "…").replace("\n", " ")
                   for row in polib.pofile(str(ROOT / "localization/po/program/en.po"))}
        told = text("docs/troubleshooting.md")
        sentences = re.findall(r"^\| \*\*(.+?)\*\*<br>([^*|]+?) \|", told.replace("**<br>**", "\n"),
                               re.MULTILINE | re.DOTALL)
        self.assertGreater(len(sentences), 30)
        for german, translation in sentences:
            with self.subTest(german):
                self.assertEqual(english.get(german), translation)

    def test_every_service_is_described_by_its_host(self):
        code = re.sub(r"\w+\.example\.org", "", text("app/Services.h"))
        hosts = re.findall(r'"https://([^/"]+)/', code)
        self.assertEqual(len(hosts), 5)
        for host in hosts:
            self.assertIn(f"| `{host}` |", text("docs/services.md"))

    def test_the_sentences_about_the_services_are_the_programs(self):
        texts = [row.msgid for row in polib.pofile(str(ROOT / "localization/po/program/en.po"))]
        for quoted in re.findall(r"“([^”]+)”", " ".join(text("docs/services.md").split())):
            with self.subTest(quoted):
                begin = quoted.removesuffix("…").strip()
                self.assertTrue(any(each.startswith(begin) for each in texts))

    def test_no_line_is_wider_than_it_is_read(self):
        for paper in PAPERS:
            for number, line in enumerate(paper.read_text(encoding="utf-8").splitlines(), 1):
                if not line.startswith("|"):
                    self.assertLessEqual(len(line), 110, f"{paper.name}:{number}")

    def test_the_test_programs_that_are_named_exist(self):
        for word in re.findall(r"\b[A-Z]\w+Test\b", text("CONTRIBUTING.md")):
            self.assertTrue(list((ROOT / "tests").rglob(f"{word}.cpp")), word)
        listed = subprocess.run(["grep", "-rhoE", r"TEST(_F|_P)?\(\w+, *\w+", ROOT / "tests"],
                                capture_output=True, text=True, check=True).stdout
        for case in re.findall(r"\./test ([a-z]\w+_\w+\w)$", text("CONTRIBUTING.md"), re.MULTILINE):
            self.assertIn(case, listed)


if __name__ == "__main__":
    unittest.main()
