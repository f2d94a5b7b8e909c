"""Writes the menu entry or the metainfo of the program in all its languages.

    make_desktop.py entry | metainfo PO_FOLDER ID VERSION DATE HOMEPAGE

All words come from the catalogue's PO files; none is typed a second time.
"""

import pathlib
import sys
from xml.sax.saxutils import escape

import polib

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "localization/tools"))
from languages import LANGUAGES  # noqa: E402

# English is the text that stands without a language.
LOCALES = {each.code: each.locale for each in LANGUAGES if each.code != "en"}
PROGRAM = "norvaxel-orte-und-routen"

NAME = "Norvaxel 3D · Orte und Routen"
COMMENT = "Orte und Routen mit Gebäuden und Gelände."
KEYWORDS = ["Ortskarte", "Route", "Auto", "Zug", "Flug"]
ROUTE = "Route"
DESCRIPTION = [
    "Norvaxel 3D lädt zu jeder Route Gebäude und Straßen entlang der ganzen Strecke sowie das "
    "Gelände. Benötigt Internet; danach rendert das Paket offline.",
    "Auto: Straßenroute über den Routingdienst. Zug: entlang echter Gleise aus OpenStreetMap. "
    "Flug: Bogen in der Höhe zwischen den Stationen. Gebäude und Gelände kommen immer mit.",
]


class Words:
    def __init__(self, folder):
        self.cells = {
            path.stem: {entry.msgid: entry.msgstr for entry in polib.pofile(str(path))}
            for path in folder.glob("*.po")
        }

    def of(self, language, german):
        return german if language == "de" else self.cells[language][german]

    def each(self, german):
        """(locale, text): English first, as the text of all other languages."""
        yield "", self.of("en", german)
        for language, locale in LOCALES.items():
            yield locale, self.of(language, german)


def without_stop(text):
    return text.rstrip(".。।")


def entry(words, identity):
    def lines(key, german):
        for locale, text in words.each(german):
            yield f"{key}[{locale}]={without_stop(text)}" if locale else f"{key}={without_stop(text)}"

    def keywords():
        for locale in ["", *LOCALES.values()]:
            texts = [dict(words.each(keyword))[locale] for keyword in KEYWORDS]
            yield f"Keywords{f'[{locale}]' if locale else ''}={';'.join(texts)};"

    return "\n".join([
        "[Desktop Entry]",
        "Type=Application",
        *lines("Name", NAME),
        *lines("Comment", COMMENT),
        *keywords(),
        f"Exec={PROGRAM}",
        f"Icon={identity}",
        "Terminal=false",
        "Categories=AudioVideo;Video;AudioVideoEditing;",
        "StartupNotify=true",
        f"StartupWMClass={PROGRAM}",
        "Actions=route;",
        "",
        "[Desktop Action route]",
        *lines("Name", ROUTE),
        f"Exec={PROGRAM} --route",
        "",
    ])


def metainfo(words, identity, version, date, homepage):
    def elements(name, german):
        for locale, text in words.each(german):
            mark = f' xml:lang="{locale}"' if locale else ""
            text = escape(text if name == "p" else without_stop(text))
            yield f"<{name}{mark}>{text}</{name}>"

    return "\n".join([
        '<?xml version="1.0" encoding="UTF-8"?>',
        '<component type="desktop-application">',
        f"  <id>{identity}</id>",
        "  <metadata_license>CC0-1.0</metadata_license>",
        "  <project_license>LicenseRef-proprietary</project_license>",
        *(f"  {line}" for line in elements("name", NAME)),
        *(f"  {line}" for line in elements("summary", COMMENT)),
        # The first is for AppStream before 1.0 (Debian 12), the second from then on.
        "  <developer_name>Norvaxel</developer_name>",
        '  <developer id="example.norvaxel"><name>Norvaxel</name></developer>',
        "  <description>",
        *(f"    {line}" for german in DESCRIPTION for line in elements("p", german)),
        "  </description>",
        f'  <url type="homepage">{homepage}</url>',
        f'  <launchable type="desktop-id">{identity}.desktop</launchable>',
        "  <provides>",
        f"    <binary>{PROGRAM}</binary>",
        "  </provides>",
        "  <requires>",
        '    <display_length compare="ge">780</display_length>',
        "    <internet>always</internet>",
        "  </requires>",
        "  <supports>",
        "    <control>keyboard</control>",
        "    <control>pointing</control>",
        "  </supports>",
        '  <content_rating type="oars-1.1"/>',
        "  <releases>",
        f'    <release version="{version}" date="{date}"/>',
        "  </releases>",
        "</component>",
        "",
    ])


def main(kind, folder, identity, version, date, homepage):
    words = Words(pathlib.Path(folder))
    if kind == "entry":
        text = entry(words, identity)
    else:
        text = metainfo(words, identity, version, date, homepage)
    sys.stdout.buffer.write(text.encode("utf-8"))


if __name__ == "__main__":
    main(*sys.argv[1:])
