"""Runs of the real setup engine that fail, and what the wizard says then."""

import os
import subprocess
import unittest
from pathlib import Path

from screen import PRIMARY, Watch, Wizard
from testcase import (EARLIER_ENGINE, EARLIER_VERSION, ENDED_ENGINES_FOLDERS, ENGINE, SETUP_AT_WORK,
                      UNINSTALLERS_FOLDER, WindowsTestCase)
from world import HELPERS, UNINSTALL, dos, wait_until

ENGINE_FILE = Path(os.environ["VARNEL_ENGINE"])


class FailureTestCase(WindowsTestCase):
    def update(self, engine=ENGINE, location=None):
        """A wizard that has just begun to update."""
        if location:
            self.world.import_registry({f"HKEY_LOCAL_MACHINE\\{UNINSTALL}": {
                "DisplayVersion": EARLIER_VERSION, "InstallLocation": location}})
        wizard = self.wizard("--update", "--setup-exe", engine)
        wizard.wait_page("performance fixes")
        wizard.next("Review before you update")
        wizard.click_at(PRIMARY)
        return wizard

    def kept_log(self):
        return (self.world.temp / "varnel_setup_last.log").read_text(encoding="utf-8-sig")

    def assert_failure(self, wizard, *texts):
        # The engine's last status, on the page of the run, is this title too.
        for text in ("Setup could not finish", *texts):
            wizard.wait_page(text, patience=120)
        wizard.click_at(PRIMARY)
        self.assertEqual(wizard.wait_end(), 0)


class Failures(FailureTestCase):
    def test_locked_file(self):
        self.install(EARLIER_ENGINE, "C:\\Apps")
        self.world.hold("C:\\Apps\\parts\\part-150.part")
        wizard = self.update()
        wizard.wait_page("cancelled during setup", patience=120)
        (report,) = self.world.temp.glob("varnel_setup_*.ini")
        self.assertIn("status=Setup could not finish.", report.read_text(encoding="utf-8-sig"))
        self.assert_failure(wizard, "cancelled during setup", "part-150", "varnel_setup_last.log")
        self.assertIn("Sharing violation", self.kept_log())
        self.assertEqual(self.world.uninstall_entry()["DisplayVersion"], EARLIER_VERSION)

    def test_folder_that_cannot_be_made(self):
        wizard = self.update(location="Z:\\proc\\Varnel")
        self.assert_failure(wizard, "varnel_setup_last.log")
        self.assertIn("Setup was unable to create the directory", self.kept_log())

    def damaged_engine(self, place):
        """A copy of the engine with a hole in it, at a fraction of its length."""
        content = bytearray(ENGINE_FILE.read_bytes())
        middle = int(len(content) * place)
        content[middle:middle + 4096] = bytes(4096)
        damaged = self.world.folder / "damaged.exe"
        damaged.write_bytes(content)
        return dos(damaged)

    def test_engine_with_damaged_files(self):
        wizard = self.update(self.damaged_engine(0.25), "C:\\Apps")
        self.assert_failure(wizard, "cancelled during setup", "C:\\Apps\\parts",
                            "varnel_setup_last.log")
        self.assertIn("The source file is corrupted", self.kept_log())
        self.assertEqual(self.world.files_below("C:\\Apps"), [])

    def test_engine_that_is_damaged_itself(self):
        # It fails before it has read /VERYSILENT, so it shows a box and writes no log.
        wizard = self.update(self.damaged_engine(0.9), "C:\\Apps")
        box = wait_until(lambda: Wizard.search("--class", "damaged.exe"), "the engine's own message")
        subprocess.run(["xdotool", "windowfocus", "--sync", box, "key", "Return"], check=True)
        self.assert_failure(wizard, "Setup could not start")

    def test_engine_that_is_no_program(self):
        text = self.world.folder / "text.exe"
        text.write_text("This is no program.\n")
        wizard = self.update(dos(text), "C:\\Apps")
        self.assert_failure(wizard, "Process failed to start")
        self.assertEqual(self.world.temp_files(), [])

    def test_engine_killed_half_way(self):
        wizard = self.update(location="C:\\Apps")
        watch = Watch(wizard)
        with self.world.braked(SETUP_AT_WORK):
            watch.until(lambda: watch.reports and watch.fractions()[-1] > 5)
            # The part that works, then the one that started it and waits for it.
            code, _ = self.world.run(HELPERS / "endprogram.exe", SETUP_AT_WORK)
        self.assertEqual(code, 0)
        self.world.run(HELPERS / "endprogram.exe", f"{ENGINE_FILE.stem}.exe")
        self.assert_failure(wizard, "Setup could not start", "varnel_setup_last.log")
        self.assertFalse(self.world.uninstall_entry().get("UninstallString"))

    def test_second_process_ends_with_the_first(self):
        wizard = self.update(location="C:\\Apps")
        with self.world.braked(SETUP_AT_WORK):
            Watch(wizard).until(lambda: self.world.processes(SETUP_AT_WORK)
                                and self.world.path("C:\\Apps\\parts").exists())
            code, _ = self.world.run(HELPERS / "endprogram.exe", f"{ENGINE_FILE.stem}.exe")
            self.assertEqual(code, 0)
            wizard.wait_page("Setup could not finish", patience=120)
            self.assertEqual(self.world.processes(SETUP_AT_WORK), [])
        self.assert_failure(wizard, "Setup could not start", "varnel_setup_last.log")
        self.assertEqual(self.world.temp_files(ENDED_ENGINES_FOLDERS), ["varnel_setup_last.log"])
        self.assertFalse(self.world.uninstall_entry().get("UninstallString"))

    def test_removal_finishes_when_the_window_closes(self):
        self.install(ENGINE, "C:\\Apps")
        wizard = self.wizard("--uninstall", title="Varnel Schematics uninstall")
        wizard.wait_page("Administrator rights required")
        wizard.click_at(PRIMARY)
        wait_until(lambda: self.world.processes("unins000.exe"), "the uninstaller")
        wait_until(lambda: not self.world.processes("unins000.exe"), "the end of its first process")
        self.assertEqual(wizard.close(), 0)
        wait_until(lambda: not self.world.path("C:\\Apps").exists(), "the end of the removal")
        self.assertEqual(self.world.temp_files(UNINSTALLERS_FOLDER), [])

    def test_closing_ends_all_of_the_engine(self):
        wizard = self.update(location="C:\\Apps")
        with self.world.braked(SETUP_AT_WORK):
            Watch(wizard).until(lambda: self.world.processes(SETUP_AT_WORK)
                                and self.world.path("C:\\Apps\\parts").exists())
            self.assertEqual(wizard.close(), 0)
            wait_until(lambda: not self.world.processes(ENGINE_FILE.stem), "the engine's end")
        self.assertEqual(self.world.temp_files(ENDED_ENGINES_FOLDERS), [])
        self.assertFalse(self.world.uninstall_entry().get("UninstallString"))


class FullDisk(FailureTestCase):
    def setUp(self):
        self.disk = self.small_disk()
        super().setUp()

    def test_no_room_for_all_files(self):
        wizard = self.update(location=dos(self.disk / "Varnel"))
        self.assert_failure(wizard, "cancelled during setup", "varnel_setup_last.log")
        # Wine calls it a write fault; Windows has a sentence of its own for a disk that is full.
        self.assertIn("An error occurred while trying to copy a file", self.kept_log())
        self.assertEqual(list(self.disk.iterdir()), [])


if __name__ == "__main__":
    unittest.main()
