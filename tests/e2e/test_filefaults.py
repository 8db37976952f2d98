"""The files of a run turn into something else, and the temp folder fills up or goes: for each, what
the user sees and what is left on disk."""

import os
import shutil
import signal
import subprocess
import time
import unittest
from pathlib import Path

from faults import FATAL, MEGABYTE, POLLS, FaultTestCase
from wizard import wait_until

IS_ROOT = os.geteuid() == 0

LONG = 300  # seconds for a log of a gigabyte, which takes some on an idle machine


def put(make):
    """Puts what `make` makes in a file's place at one stroke, as a rename does."""
    def change(path):
        beside = path.with_name("beside")
        make(beside)
        if path.is_dir():
            path.rmdir()
        beside.rename(path)
    return change


def sparse(path):
    path.write_text("progress=60\nstatus=One gigabyte\n")
    os.truncate(path, 1024 * MEGABYTE)


class StatusFile(FaultTestCase):
    def test_run_survives_a_replaced_status_file(self):
        secret = self.sandbox.root / "secret.txt"
        secret.write_text("progress=80\nstatus=A secret\n")
        wizard, engine = self.start_paused_update()
        status = self.status_file()
        changes = [("another file", put(lambda path: path.write_text("progress=55\nstatus=Another file\n"))),
                   ("nothing", Path.unlink),
                   ("a folder", Path.mkdir),
                   ("a FIFO", put(os.mkfifo)),
                   ("a link to a device", put(lambda path: path.symlink_to("/dev/zero"))),
                   ("a link to a file", put(lambda path: path.symlink_to(secret))),
                   ("one gigabyte", put(sparse))]
        before = wizard.bar_value()
        for name, change in changes:
            with self.subTest(place=name):
                change(status)
                time.sleep(POLLS)
                if name == "another file":
                    wizard.wait_text("Another file")
                    wait_until(lambda: abs(wizard.bar_value() - 55) <= 1, "its progress")
                if name == "one gigabyte":
                    wizard.wait_text("One gigabyte")
                    wait_until(lambda: abs(wizard.bar_value() - 60) <= 1, "its progress")
                value = wizard.bar_value()
                self.assertGreaterEqual(value, before)
                before = value
                self.assertFalse(wizard.has_text("A secret"))
        self.assert_small(wizard)
        os.kill(engine, signal.SIGCONT)
        self.assert_updated(wizard)
        self.assertEqual(self.sandbox.temp_files(), [])


class Log(FaultTestCase):
    BOX = ("exit-code = 4", "message-box = The disk is full.")

    def explained(self):
        return f"{FATAL}  The disk is full.  (log: {self.sandbox.kept_log()})"

    def test_while_it_is_read(self):
        secret = self.sandbox.root / "secret.txt"
        secret.write_text("Message box (OK):\nA secret.\nUser chose OK.\nA secret error.\n")
        kept_log = self.sandbox.kept_log()
        for change, message, left in (
                (lambda path: os.truncate(path, 0), self.explained(), [kept_log.name]),
                (put(lambda path: path.symlink_to(secret)), FATAL, [])):
            with self.subTest(message=message):
                wizard, engine = self.start_paused_update(*self.BOX)
                change(self.log())
                time.sleep(POLLS)
                os.kill(engine, signal.SIGCONT)
                self.assert_failure(wizard, message)
                self.assertEqual(self.sandbox.temp_files(), left)
                kept_log.unlink(missing_ok=True)

    def test_hole_of_a_gigabyte(self):
        wizard, engine = self.start_paused_update(*self.BOX)
        log = self.log()
        # Which names no file, so that the log's stays on screen.
        self.status_file().write_text("progress=60\n")
        os.truncate(log, 1024 * MEGABYTE)
        with open(log, "ab") as file:
            file.write(b"\n2026-01-01 00:00:00.000   Dest filename: C:\\after the hole.dll\r\n")
        wizard.wait_text("after the hole.dll")
        os.kill(engine, signal.SIGCONT)
        wizard.wait_text(FATAL, LONG)
        self.assert_small(wizard)
        self.assert_failure(wizard, self.explained())


class TempFolder(FaultTestCase):
    def behind_mount(self, options, prepare="true"):
        """Lets the wizard see a file system of its own in the temp folder's place."""
        if not IS_ROOT or subprocess.run(["unshare", "-m", "true"]).returncode != 0:
            self.skipTest("This user may not mount anything.")
        inner = self.sandbox.root / "inner"
        inner.write_text(f'#!/bin/sh\nmount -t tmpfs -o {options} none "$TMPDIR"\n{prepare}\n'
                         f'exec "{os.environ["VARNEL_SETUP"]}" "$@"\n')
        outer = self.sandbox.root / "outer"
        outer.write_text(f'#!/bin/sh\nexec unshare -m "{inner}" "$@"\n')
        for script in (inner, outer):
            script.chmod(0o755)
        self.program = str(outer)

    def seen_by(self, wizard):
        return Path(f"/proc/{wizard.process.pid}/root{self.sandbox.root}/temp")

    def assert_told(self, detail):
        self.sandbox.scenario("exit-code = 4", "message-box = The disk is full.")
        self.assert_failure(self.start_update(), FATAL + detail)

    def test_is_not_there(self):
        (self.sandbox.root / "temp").rmdir()
        # Qt then takes the working folder for it.
        kept = self.sandbox.root / "varnel_setup_last.log"
        self.assert_told(f"  The disk is full.  (log: {kept})")
        self.assertTrue(kept.exists())
        self.assertEqual(list(self.sandbox.root.glob("varnel_setup_*.ini*")), [])
        self.assertFalse((self.sandbox.root / "temp").exists())

    def test_cannot_be_written(self):
        if IS_ROOT:
            self.behind_mount("ro")  # root does not mind modes
        else:
            (self.sandbox.root / "temp").chmod(0o500)
        self.assert_updated(self.start_update())
        self.assert_told("")

    def test_is_full_from_the_start(self):
        self.behind_mount("size=4k", 'head -c 4096 /dev/zero > "$TMPDIR/filler"')
        # Names are still to be had, but not a byte to go with them.
        self.assert_told(f"  Log: {self.sandbox.kept_log()}")

    def fill(self, folder):
        """Leaves no room for a single byte."""
        with open(folder / "filler", "wb", buffering=0) as file:
            try:
                while True:
                    file.write(b"." * 512)
            except OSError:
                pass

    def test_fills_up(self):
        self.behind_mount("size=64k")
        wizard, engine = self.start_paused_update("exit-code = 4", "message-box = Full.",
                                                  "log-size = 20K")
        temp = self.seen_by(wizard)
        self.fill(temp)
        os.kill(engine, signal.SIGCONT)
        message = wizard.wait_text(FATAL)
        self.assertTrue(message.endswith(f"(log: {self.sandbox.kept_log()})"), message)
        # What could not be kept whole has not been left in parts either.
        kinds = {name if name == "filler" else Path(name).suffix
                 for name in os.listdir(temp)}
        self.assertLessEqual(kinds, {"filler", ".ini", ".log"})
        self.assertFalse([name for name in os.listdir(temp) if name.startswith("qt_temp")])
        self.end(wizard, "Close")

    def test_goes_during_a_run(self):
        wizard, engine = self.start_paused_update("exit-code = 4")
        shutil.rmtree(self.sandbox.root / "temp")
        time.sleep(POLLS)
        os.kill(engine, signal.SIGCONT)
        self.assert_failure(wizard, FATAL)
        self.assertFalse((self.sandbox.root / "temp").exists())


if __name__ == "__main__":
    unittest.main()
