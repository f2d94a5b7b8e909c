"""An import at the limits of the machine: a log without an end, a disk without room."""
import os
import pathlib
import unittest

from harness import BlackBox, processes, w

TITLE = "Ortsdaten konnten nicht geladen werden"
NO_POINTER = ("Ortsdaten sind fertig. Die Verbindung zu Resolve konnte nicht gespeichert werden. Öffne den "
              "Ordner und wähle origin.nxd im Plugin.")


def on_a_small_disk(folder):
    """Words before a command: it sees the folder as a disk of its own with 256 KiB of room.

    Nobody else sees this disk, and it goes with the command. Skips where that is not allowed."""
    unshare = ["unshare", "--mount"] + ([] if os.geteuid() == 0 else ["--map-root-user"])
    words = [*unshare, "sh", "-c", f"mount -t tmpfs -o mode=0700,size=256k tmpfs '{folder}' && exec \"$@\"", "sh"]
    if processes.start([*words, "true"], stderr=-3).wait() != 0:
        raise unittest.SkipTest("this machine does not allow private mounts")
    return words


class ImportFailed(BlackBox):
    def test_a_huge_log_costs_no_memory(self):
        size = 256 << 20
        self.start(NORVAXEL_SANDBOX_IMPORT="flood", NORVAXEL_SANDBOX_BYTES=size)
        self.search("Berlin")
        self.window.select(w.RESULTS, 0)
        before = self.peak_memory()
        self.window.press(w.DOWNLOAD)
        message = ("Download fehlgeschlagen: Nach vielen Zeilen gescheitert\n"
                   "Versuche einen kleineren Umkreis oder einen anderen Datendienst.")
        self.window.says(message)
        self.assertLess(self.peak_memory() - before, 64 << 20)
        self.assertGreater((self.support / "letzter-import.log").stat().st_size, size)
        self.assert_alert(TITLE, message)
        self.assert_nothing_temporary()

    def test_a_full_disk_leaves_the_older_pointer_whole(self):
        self.start(wrapper=on_a_small_disk(self.data), NORVAXEL_SANDBOX_IMPORT="fill-disk")
        support = pathlib.Path(f"/proc/{self.program.pid}/root{self.support}")
        support.mkdir(parents=True)
        (support / "last-import.txt").write_text("/an/older/origin.nxd\n")
        self.import_first(answer=NO_POINTER)
        self.assertEqual((support / "last-import.txt").read_text(), "/an/older/origin.nxd\n")
        self.assertEqual([each.name for each in support.iterdir() if each.name.startswith("last-import")],
                         ["last-import.txt"], "no half-written file is left beside it")


if __name__ == "__main__":
    unittest.main()
