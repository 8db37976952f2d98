"""tools/bundle refuses what it could not make a working download of; what it makes is run by the
tests of the whole program."""

import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

BUNDLE = Path(__file__).resolve().parents[2] / "tools" / "bundle"
MARKER = b"VARNEL-ENGINE-1:"
EMPTY = MARKER + bytes(48)
LARGEST = 1_900_000_000


def windows_program(certificates=(0, 0)):
    head = bytearray(0x200)
    head[:2] = b"MZ"
    struct.pack_into("<I", head, 0x3C, 0x80)
    head[0x80:0x84] = b"PE\0\0"
    struct.pack_into("<H", head, 0x98, 0x20B)
    struct.pack_into("<II", head, 0x98 + 112 + 32, *certificates)
    return bytes(head) + EMPTY


class Bundler(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.wizard = Path(folder.name) / "wizard.exe"
        self.engine = Path(folder.name) / "engine.exe"
        self.output = Path(folder.name) / "output.exe"
        self.engine.write_bytes(b"engine")

    def write_engine(self, size):
        """A sparse file with something at both ends."""
        with self.engine.open("wb") as engine:
            engine.write(b"first")
            engine.seek(size - 4)
            engine.write(b"last")

    def bundle(self, wizard):
        self.wizard.write_bytes(wizard)
        return subprocess.run([sys.executable, BUNDLE, self.wizard, self.engine, self.output],
                              capture_output=True, text=True)

    def assert_refused(self, wizard, reason):
        done = self.bundle(wizard)
        self.assertEqual(done.returncode, 1)
        self.assertIn(reason, done.stderr)
        self.assertEqual(sorted(path.name for path in self.output.parent.iterdir()),
                         ["engine.exe", "wizard.exe"])

    def test_what_comes_out_ends_where_a_certificate_can_follow(self):
        done = self.bundle(windows_program())
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(self.output.stat().st_size % 8, 0)

    def test_programs_that_cannot_carry_an_engine(self):
        self.assert_refused(b"MZ no marker".ljust(0x200, b"\0"), "0 markers")
        self.assert_refused(windows_program() + EMPTY, "2 markers")
        self.assert_refused(windows_program().replace(EMPTY, MARKER + b"\1" * 48), "already")
        self.assert_refused(windows_program((0x400, 8)), "is signed")

    def test_engines_of_impossible_size(self):
        self.engine.write_bytes(b"")
        self.assert_refused(windows_program(), "has 0 bytes")
        self.write_engine(LARGEST + 1)
        self.assert_refused(windows_program(), f"has {LARGEST + 1} bytes")

    def test_engine_of_the_largest_size(self):
        self.write_engine(LARGEST)
        done = self.bundle(windows_program())
        self.assertEqual(done.returncode, 0, done.stderr)
        with self.output.open("rb") as output:
            output.seek(len(windows_program()) - 48)
            offset, size = struct.unpack("<qq", output.read(16))
            self.assertEqual(size, LARGEST)
            output.seek(offset)
            self.assertEqual(output.read(5), b"first")
            output.seek(offset + size - 4)
            self.assertEqual(output.read().rstrip(b"\0"), b"last")


if __name__ == "__main__":
    unittest.main()
