"""A desktop that nobody sees: a virtual screen, a session bus and the accessibility bus on it."""
import os
import pathlib
import struct
import subprocess
import zlib

import processes

SCREEN = (1280, 1024)


class Desktop:
    """Runs from its creation to end(). `environment` is what a program needs to appear on it."""

    def __init__(self, folder, size=SCREEN):
        self.size = size
        self.folder = pathlib.Path(folder)
        self._helpers = []
        for name in ("runtime", "screen"):
            (self.folder / name).mkdir(parents=True, mode=0o700)
        base = {"PATH": os.environ.get("PATH", "/usr/bin:/bin"), "HOME": str(self.folder),
                "XDG_RUNTIME_DIR": str(self.folder / "runtime"), "LANG": "C.UTF-8",
                "GSETTINGS_BACKEND": "memory", "GVFS_DISABLE_FUSE": "1"}
        width, height = size
        display = self._announced(["Xvfb", "-displayfd", "{}", "-screen", "0", f"{width}x{height}x24",
                                   "-nolisten", "tcp", "-fbdir", self.folder / "screen"], base)
        base["DISPLAY"] = f":{display}"
        base["DBUS_SESSION_BUS_ADDRESS"] = self._announced(
            ["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address={}",
             f"--address=unix:path={self.folder}/runtime/bus"], base)
        self.environment = base

    def _announced(self, words, environment):
        """Starts a helper that writes one line to the descriptor given as {} once it is ready."""
        reading, writing = os.pipe()
        log = open(self.folder / f"{words[0]}.log", "wb")
        child = processes.start([str(word).replace("{}", str(writing)) for word in words],
                                env=environment, stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                                pass_fds=(writing,))
        log.close()
        os.close(writing)
        self._helpers.append(child)
        with os.fdopen(reading, "rb") as pipe:
            line = pipe.readline().decode().strip()
        if not line:
            reason = (self.folder / f"{words[0]}.log").read_text(errors="replace").strip()
            self.end()
            raise RuntimeError(f"{words[0]} did not start: {reason}")
        return line

    def pixels(self):
        """The screen as (width, height, rows), each row the bytes R, G, B of its pixels."""
        dump = (self.folder / "screen" / "Xvfb_screen0").read_bytes()
        header = struct.unpack(">25I", dump[:100])
        (header_size, _, _, _, width, height, _, byte_order, _, _, _, bits, stride) = header[:13]
        colours = header[19]
        if bits != 32 or byte_order != 0:
            raise RuntimeError(f"unexpected screen: {bits} bits, byte order {byte_order}")
        start = header_size + 12 * colours
        rows = []
        for y in range(height):
            line = dump[start + y * stride:start + y * stride + 4 * width]
            row = bytearray(3 * width)
            row[0::3], row[1::3], row[2::3] = line[2::4], line[1::4], line[0::4]
            rows.append(bytes(row))
        return width, height, rows

    def picture(self, file, area=None):
        """Writes the screen, or its area (x, y, width, height), as a PNG file."""
        screen_width, screen_height, rows = self.pixels()
        x, y, width, height = area or (0, 0, screen_width, screen_height)
        width, height = min(width, screen_width - x), min(height, screen_height - y)
        raw = b"".join(b"\0" + row[3 * x:3 * (x + width)] for row in rows[y:y + height])

        def chunk(kind, data):
            return (struct.pack(">I", len(data)) + kind + data
                    + struct.pack(">I", zlib.crc32(kind + data)))

        pathlib.Path(file).write_bytes(
            b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(raw, 6)) + chunk(b"IEND", b""))

    def end(self):
        for helper in reversed(self._helpers):
            processes.end(helper)
        self._helpers.clear()
