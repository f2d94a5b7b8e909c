"""An import that cannot start or that fails: what is said, and that nothing is left."""
import os
import pathlib
import unittest

from harness import FINISHED, BlackBox, mode, processes, w

TITLE = "Ortsdaten konnten nicht geladen werden"
NO_IMPORTER = "Der Ortsimport fehlt im Norvaxel-Paket. Bitte das vollständige Plugin installieren."
NO_HAND_OVER = "Das Suchergebnis konnte nicht für den Import gespeichert werden."
NO_POINTER = ("Ortsdaten sind fertig. Die Verbindung zu Resolve konnte nicht gespeichert werden. Öffne den "
              "Ordner und wähle origin.nxd im Plugin.")


def failed(detail):
    return (f"Download fehlgeschlagen: {detail}\n"
            "Versuche einen kleineren Umkreis oder einen anderen Datendienst.")


def on_small_disks(*folders, size="64k"):
    """Words before a command: it sees each folder as a disk of its own with so much room.

    Nobody else sees these disks, and they go with the command. Skips where that is not allowed."""
    mounts = " && ".join(f"mount -t tmpfs -o mode=0700,size={size} tmpfs '{folder}'" for folder in folders)
    unshare = ["unshare", "--mount"] + ([] if os.geteuid() == 0 else ["--map-root-user"])
    words = [*unshare, "sh", "-c", f'{mounts} && exec "$@"', "sh"]
    probe = processes.start([*words, "true"], stderr=-3)
    if probe.wait() != 0:
        raise unittest.SkipTest("this machine does not allow private mounts")
    return words


class ImportRefused(BlackBox):
    """What is found out before the importer is started."""

    def test_a_missing_importer_is_told_and_an_added_one_found(self):
        hidden = self.importer.rename(self.folder / "hidden")
        self.start()
        self.import_first(answer=NO_IMPORTER)
        self.assert_says_in_red(NO_IMPORTER)
        self.assertEqual(self.importer_events(), [])
        self.assertTrue(self.window.enabled(w.DOWNLOAD), "it can be tried again")
        self.assertIsNone(self.window.find(w.CANCEL))
        self.assertEqual(list(self.data.iterdir()), [], "nothing was created")
        self.assert_nothing_temporary()
        hidden.rename(self.importer)
        self.window.press(w.DOWNLOAD)
        self.window.says(FINISHED)

    def test_a_full_disk_at_the_hand_over_leaves_nothing(self):
        self.geocoder_behaves({"size": 200000})
        self.start(wrapper=on_small_disks(self.temporary))
        self.import_first(answer=NO_HAND_OVER)
        self.assertEqual(self.importer_events(), [])
        inside = pathlib.Path(f"/proc/{self.program.pid}/root{self.temporary}")
        self.assertEqual(list(inside.iterdir()), [])


class ImportFailed(BlackBox):
    """What is found out from how the importer ended."""

    def test_what_the_importer_said_is_told_without_the_service(self):
        message = failed("Der Datendienst ([Datendienst] antwortet nicht.\nStatus 504 nach drei Versuchen")
        self.start(NORVAXEL_SANDBOX_IMPORT="fail")
        self.import_first(answer=message)
        self.assert_alert(TITLE, message)
        self.assert_says_in_red(message)
        self.assertTrue(self.window.enabled(w.DOWNLOAD), "it can be tried again")
        self.assertIsNone(self.window.find(w.FINDER))
        self.assertFalse((self.support / "last-import.txt").exists())
        self.assertEqual(mode(self.support / "letzter-import.log") & 0o077, 0)
        self.assert_nothing_temporary()

    def test_a_huge_log_costs_no_memory(self):
        size = 256 << 20
        self.start(NORVAXEL_SANDBOX_IMPORT="flood", NORVAXEL_SANDBOX_BYTES=size)
        self.search("Berlin")
        self.window.select(w.RESULTS, 0)
        before = self.peak_memory()
        self.window.press(w.DOWNLOAD)
        message = failed("Nach vielen Zeilen gescheitert")
        self.window.says(message)
        self.assertLess(self.peak_memory() - before, 64 << 20)
        self.assertGreater((self.support / "letzter-import.log").stat().st_size, size)
        self.assert_alert(TITLE, message)
        self.assert_nothing_temporary()

    def test_a_full_disk_leaves_the_older_pointer_whole(self):
        self.start(wrapper=on_small_disks(self.data, size="256k"), NORVAXEL_SANDBOX_IMPORT="fill-disk")
        support = pathlib.Path(f"/proc/{self.program.pid}/root{self.support}")
        support.mkdir(parents=True)
        (support / "last-import.txt").write_text("/an/older/origin.nxd\n")
        self.import_first(answer=NO_POINTER)
        self.assertEqual((support / "last-import.txt").read_text(), "/an/older/origin.nxd\n")
        self.assertEqual([each.name for each in support.iterdir() if each.name.startswith("last-import")],
                         ["last-import.txt"], "no half-written file is left beside it")


if __name__ == "__main__":
    unittest.main()
