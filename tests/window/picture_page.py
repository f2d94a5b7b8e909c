"""picture_page.py FOLDER: writes FOLDER/index.html, where a person leafs through the pictures that
the tests left: one line for each state of the window, one picture for each language."""

import html
import itertools
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "localization/tools"))
import languages  # noqa: E402

LANGUAGES = [each.code for each in languages.LANGUAGES]
STYLE = """body { background: #18181a; color: #ddd; font: 14px sans-serif }
figure { display: inline-block; margin: 4px } img { width: 410px; display: block }"""


def state_and_language(path):
    """From names such as "zh-Hans-route-780-5-importing.png"."""
    language, state = re.fullmatch(r"(.+?)-((?:place|route)-.*)", path.stem).groups()
    return state, LANGUAGES.index(language)


def main(folder):
    pictures = sorted(folder.glob("*.png"), key=state_and_language)
    lines = ["<!doctype html><meta charset=utf-8><title>The window in every language</title>",
             f"<style>{STYLE}</style>"]
    for state, group in itertools.groupby(pictures, lambda path: state_and_language(path)[0]):
        lines.append(f"<h2>{html.escape(state)}</h2>")
        for path in group:
            name = html.escape(path.name, quote=True)
            caption = LANGUAGES[state_and_language(path)[1]]
            lines.append(f'<figure><a href="{name}"><img loading="lazy" src="{name}" '
                         f'alt="{name}"></a>{caption}</figure>')
    (folder / "index.html").write_text("\n".join(lines), encoding="utf-8")
    print(f"{len(pictures)} pictures: {folder / 'index.html'}")


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]))
