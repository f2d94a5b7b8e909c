"""What is installed and packaged: it validates, and it works from wherever it lies."""
import configparser
import datetime
import functools
import gzip
import os
import pathlib
import re
import shlex
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests/blackbox"), str(ROOT / "localization/tools")]
import languages  # noqa: E402
from harness import CHOSEN, FINISHED, STAND_IN, BlackBox, w  # noqa: E402

BUILD = pathlib.Path(os.environ.get("NORVAXEL_BUILD", ROOT / "build/dev"))
CMAKE = os.environ.get("NORVAXEL_CMAKE", "cmake")
CPACK = os.environ.get("NORVAXEL_CPACK", "cpack")
ID = "de.norvaxel.orteundrouten"
PROGRAM = "norvaxel-orte-und-routen"
# English is the text that stands without a language.
LOCALES = [each.locale for each in languages.LANGUAGES if each.code != "en"]

# Each of lintian's findings that stays has its reason here.
LINTIAN_EXPLAINED = {
    # Binding every symbol at the start would cost a part of it at every start, and the program reads
    # no input with rights that its user does not have.
    "hardening-no-bindnow",
    # glibc's checks need an optimisation level that the tests' build lacks.
    "hardening-no-fortify-functions",
    "binary-has-unneeded-section",
    # Words of other languages that look like misspelt English.
    "spelling-error-in-binary",
}


def run(*command, **options):
    result = subprocess.run([str(part) for part in command], capture_output=True, encoding="utf-8",
                            check=False, **options)
    if result.returncode:
        raise AssertionError(f"{command}: {result.returncode}\n{result.stdout}{result.stderr}")
    return result.stdout + result.stderr


def install(component, prefix):
    run(CMAKE, "--install", BUILD, "--component", component, "--prefix", prefix)


def newest(field):
    """What the newest entry of the changelog says, as Debian's own tool reads it."""
    return run("dpkg-parsechangelog", "-l", ROOT / "packaging/changelog", "-S", field).strip()


@functools.cache
def package():
    """The .deb, made once for all cases."""
    folder = pathlib.Path(unittest.enterModuleContext(tempfile.TemporaryDirectory()))
    run(CPACK, "--config", BUILD / "CPackConfig.cmake", "-B", folder)
    (path,) = folder.glob("*.deb")
    return path


def entries(file):
    """The groups of a menu entry."""
    parser = configparser.RawConfigParser(delimiters="=")
    parser.optionxform = str
    parser.read(file, encoding="utf-8")
    return parser


def snapshot(folder):
    return {path.relative_to(folder): path.read_bytes() if path.is_file() else None
            for path in folder.rglob("*")}


def import_a_place(case):
    case.search("Berlin")
    case.window.select(w.RESULTS, 0)
    case.window.says(CHOSEN)
    case.window.press(w.DOWNLOAD)
    case.window.says(FINISHED, 30)


class Files(unittest.TestCase):
    """What the desktop reads."""

    @classmethod
    def setUpClass(cls):
        cls.prefix = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        install("desktop", cls.prefix)
        cls.entry = cls.prefix / f"share/applications/{ID}.desktop"
        cls.metainfo = cls.prefix / f"share/metainfo/{ID}.metainfo.xml"

    def test_menu_entry_and_metainfo_validate(self):
        self.assertEqual(run("desktop-file-validate", self.entry), "")
        self.assertIn("Validation was successful",
                      run("appstreamcli", "validate", "--pedantic", "--no-net", self.metainfo))

    def test_menu_entry_speaks_every_language(self):
        entry = entries(self.entry)["Desktop Entry"]
        for key in ("Name", "Comment", "Keywords"):
            texts = [entry[key]] + [entry[f"{key}[{locale}]"] for locale in LOCALES]
            self.assertTrue(all(texts), key)
            self.assertGreaterEqual(len(set(texts)), 12, f"{key} is translated")
        self.assertEqual(entry["Name"], "Norvaxel 3D · Places and Routes")
        self.assertEqual(entry["Name[de]"], "Norvaxel 3D · Orte und Routen")
        self.assertTrue(entry["Keywords[de]"].startswith("Ortskarte;Route;"))
        self.assertEqual(entry["StartupNotify"], "true")
        # What the toolkit writes on a window of X11, by which the desktop finds the entry.
        self.assertEqual(entry["StartupWMClass"], PROGRAM)

    def test_menu_entry_has_a_second_action_for_routes(self):
        groups = entries(self.entry)
        self.assertEqual(groups["Desktop Entry"]["Actions"], "route;")
        action = groups["Desktop Action route"]
        self.assertEqual(shlex.split(action["Exec"]), [PROGRAM, "--route"])
        self.assertTrue(all(action[f"Name[{locale}]"] for locale in LOCALES))

    def test_version_and_date_are_those_of_the_changelog(self):
        day = datetime.datetime.fromtimestamp(int(newest("Timestamp")), datetime.UTC).date()
        self.assertIn(f'<release version="{newest("Version")}" date="{day}"/>',
                      self.metainfo.read_text(encoding="utf-8"))
        with gzip.open(self.prefix / f"share/man/man1/{PROGRAM}.1.gz", "rt", encoding="utf-8") as page:
            self.assertIn(f'"{day}" "{newest("Version")}"', page.readline())

    def test_icons_are_there_in_every_size(self):
        icons = self.prefix / "share/icons/hicolor"
        for side in (16, 24, 32, 48, 64, 128, 256, 512):
            data = (icons / f"{side}x{side}/apps/{ID}.png").read_bytes()
            self.assertEqual(struct.unpack(">II", data[16:24]), (side, side))
        for path in (f"scalable/apps/{ID}.svg", f"symbolic/apps/{ID}-symbolic.svg"):
            self.assertIn("<svg", (icons / path).read_text())

    def test_small_icons_have_sharp_edges(self):
        # A hinted drawing's buildings stand on whole pixels.
        for side in (16, 24, 32, 48, 64):
            svg = run(sys.executable, ROOT / "packaging/make_icon.py", str(side))
            numbers = re.findall(r' (?:x|y|width|height)="([^"]*)"', svg)
            self.assertGreater(len(numbers), 40)
            self.assertEqual([each for each in numbers if not each.isdigit()], [])


class PluginComponent(BlackBox):
    """The program alone beside the importer tool, in a folder that was never planned for."""

    def setUp(self):
        super().setUp()
        shutil.rmtree(self.bin)
        self.bin = self.folder / "Plug-in Größe 東京 ‘3D’"
        install("plugin", self.bin)
        self.assertEqual([each.name for each in self.bin.iterdir()], [PROGRAM])
        self.importer = self.bin / STAND_IN.name
        shutil.copy2(STAND_IN, self.importer)

    def test_it_finds_the_tool_beside_itself(self):
        self.start()
        import_a_place(self)

    def test_started_through_a_link_it_finds_the_tool_beside_the_real_file(self):
        real = self.bin
        self.bin = self.folder / "links"
        self.bin.mkdir()
        (self.bin / PROGRAM).symlink_to(real / PROGRAM)
        self.start()
        import_a_place(self)


class Package(BlackBox):
    """The .deb in a root of its own."""

    def setUp(self):
        super().setUp()
        self.root = self.folder / "root"
        (self.root / "var/lib/dpkg/updates").mkdir(parents=True)
        (self.root / "var/lib/dpkg/info").mkdir()
        (self.root / "var/lib/dpkg/status").touch()

    def dpkg(self, *arguments):
        return run("dpkg", f"--root={self.root}", "--force-not-root", "--force-depends",
                   "--log=/dev/null", *arguments)

    def start_from_the_menu(self, group="Desktop Entry"):
        """Runs the entry's command as a desktop does: found on the path."""
        menu = entries(self.root / f"usr/share/applications/{ID}.desktop")
        command, *arguments = shlex.split(menu[group]["Exec"])
        self.bin = self.root / "usr/bin"
        self.assertEqual(command, PROGRAM)
        shutil.copy2(STAND_IN, self.root / "usr/lib/norvaxel-3d")
        return self.start(*arguments)

    def test_lintian_finds_nothing_that_is_not_explained(self):
        said = run("lintian", "--allow-root", "--display-info", "--pedantic", package())
        found = set(re.findall(r"^[EWIP]: \S+: (\S+)", said, re.MULTILINE))
        self.assertEqual(found - LINTIAN_EXPLAINED, set(), said)

    def test_it_names_what_it_needs(self):
        fields = run("dpkg-deb", "--field", package(), "Depends", "Version", "Package")
        for needed in ("curl", "ca-certificates", "libqt6widgets6 (>= 6.", "libqt6gui6", "libc6"):
            self.assertIn(needed, fields)
        self.assertIn(f"Version: {newest('Version')}\n", fields)

    def test_installed_used_upgraded_and_removed_it_leaves_the_users_files_alone(self):
        self.dpkg("--install", package())
        self.start_from_the_menu()
        import_a_place(self)
        self.program.terminate()
        self.assert_ended_well()
        self.assertEqual(len(self.packages()), 1)
        before = snapshot(self.home), snapshot(self.data)

        self.dpkg("--install", package())
        self.assertEqual((snapshot(self.home), snapshot(self.data)), before)
        self.start_from_the_menu("Desktop Action route")
        self.assertTrue(self.window.checked(w.ROUTE_MODE))
        self.program.terminate()
        self.assert_ended_well()

        (self.root / "usr/lib/norvaxel-3d" / STAND_IN.name).unlink()
        self.dpkg("--remove", PROGRAM)
        self.assertEqual((snapshot(self.home), snapshot(self.data)), before)
        left = [path for path in (self.root / "usr").rglob("*") if not path.is_dir()]
        self.assertEqual(left, [])


if __name__ == "__main__":
    unittest.main()
