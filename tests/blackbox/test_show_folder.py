"""“Ordner zeigen”: what the desktop's file manager is asked, and what is opened where there is none."""
import time
import unittest
import urllib.parse

from gi.repository import Gio, GLib

from harness import w
from routes import RouteCase

NAME = "org.freedesktop.FileManager1"
INTERFACE = f"""<node><interface name="{NAME}"><method name="ShowItems">
<arg type="as" direction="in"/><arg type="s" direction="in"/></method></interface></node>"""


class FileManager:
    """A file manager on the desktop's bus, as long as the case lasts."""

    def __init__(self, case):
        self.asked = []
        self.waiting = []  # what has had no answer so far
        self.is_slow = False
        self._context = GLib.MainContext.default()
        self._bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        (interface,) = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces
        registration = self._bus.register_object("/org/freedesktop/FileManager1", interface, self._called, None, None)
        case.addCleanup(self._bus.unregister_object, registration)
        self._call("RequestName", GLib.Variant("(su)", (NAME, 4)))
        case.addCleanup(self._call, "ReleaseName", GLib.Variant("(s)", (NAME,)))

    def _call(self, method, arguments):
        return self._bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
                                   arguments, None, Gio.DBusCallFlags.NONE, 5000, None)

    def _called(self, _bus, _sender, _path, _interface, _method, arguments, invocation):
        self.asked.append(arguments.unpack())
        if self.is_slow:
            self.waiting.append(invocation)
        else:
            invocation.return_value(None)

    def has_been_asked(self):
        while self._context.iteration(False):
            pass
        return self.asked


class ShowFolder(RouteCase):
    def setUp(self):
        super().setUp()
        # All that needs care in an address.
        self.data = self.folder / "Meine Däten #1 100% & mehr? +ü;日本"
        self.data.mkdir()
        self.opened = self.folder / "opened"
        commands = self.folder / "commands"
        commands.mkdir()
        opener = commands / "xdg-open"
        opener.write_text("#!/bin/sh\n"
                          f"printf '%s\\n' \"$@\" >>'{self.opened}.new'\n"
                          f"mv '{self.opened}.new' '{self.opened}'\n")
        opener.chmod(0o755)
        self.path = f"{commands}:{self.screen.environment['PATH']}"

    def import_place(self):
        self.start(PATH=self.path)
        self.import_first()
        (package,) = (self.support / "Ortsdaten").iterdir()
        return package

    def assert_address(self, address, path):
        self.assertTrue(address.isascii(), address)
        parts = urllib.parse.urlsplit(address)
        self.assertEqual((parts.scheme, parts.netloc, parts.query, parts.fragment), ("file", "", "", ""), address)
        self.assertEqual(urllib.parse.unquote(parts.path, errors="strict"), str(path))
        self.assertEqual(Gio.File.new_for_uri(address).get_path(), str(path), "as file managers read it")

    def assert_opened(self, folder):
        w.until(self.opened.exists, "the folder is opened")
        (address,) = self.opened.read_text().splitlines()
        self.assert_address(address, folder)

    def test_the_file_manager_is_asked_to_select_the_main_file(self):
        manager = FileManager(self)
        package = self.import_place()
        self.window.press(w.FINDER)
        w.until(manager.has_been_asked, "the file manager is asked")
        ((addresses, startup),) = manager.asked
        self.assertEqual(len(addresses), 1)
        self.assert_address(addresses[0], package / "origin.nxd")
        self.assertEqual(startup, "")

        # The same for a route, and again, as often as one likes.
        self.window.press(w.ROUTE_MODE)
        self.add_selected()
        self.add_selected()
        self.compute()
        (route,) = self.packages()
        for number in (2, 3):
            self.window.press(w.FINDER)
            w.until(lambda: len(manager.has_been_asked()) == number, "the file manager is asked again")
            self.assert_address(manager.asked[-1][0][0], route / "route.nxd")
        self.assertFalse(self.opened.exists(), "the folder is not opened as well")

    def test_a_slow_file_manager_is_not_helped_out(self):
        manager = FileManager(self)
        manager.is_slow = True
        self.import_place()
        self.window.press(w.FINDER)
        w.until(manager.has_been_asked, "the file manager is asked")
        # Longer than a file manager takes that has to be read from a disk first.
        asked = time.monotonic()
        w.until(lambda: self.opened.exists() or time.monotonic() > asked + 6, "six seconds pass")
        manager.waiting[0].return_value(None)
        self.window.press(w.FINDER)
        w.until(lambda: len(manager.has_been_asked()) == 2, "the file manager is asked again")
        manager.waiting[1].return_value(None)
        self.assertFalse(self.opened.exists(), "the folder is not opened as well")

    def test_without_a_file_manager_the_folder_is_opened(self):
        bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        answer = bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                               "ListActivatableNames", None, None, Gio.DBusCallFlags.NONE, 5000, None)
        if NAME in answer.unpack()[0]:
            self.skipTest("this machine starts a file manager of its own")
        package = self.import_place()
        self.window.press(w.FINDER)
        self.assert_opened(package)


if __name__ == "__main__":
    unittest.main()
