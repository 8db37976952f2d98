"""The wizard with its engine inside, as people download it: one file, started without options."""

import os
import shutil
import subprocess
import unittest
from pathlib import Path

from testcase import ENGINE, WizardTestCase
from wizard import UNINSTALL_KEY, wait_until

BUNDLER = Path(__file__).resolve().parents[2] / "tools" / "bundle"
DAMAGED = "This setup file is damaged. Please download it again."


class BundleTestCase(WizardTestCase):
    def setUp(self):
        super().setUp()
        self.program = self.sandbox.root / "VarnelSchematicsSetup.exe"
        self.bundle(ENGINE)

    def bundle(self, engine):
        subprocess.run([BUNDLER, os.environ["VARNEL_SETUP"], engine, self.program], check=True,
                       stdout=subprocess.DEVNULL)
        self.engine_size = os.path.getsize(engine)

    def start(self, *arguments):
        return super().start(*arguments, program=str(self.program))

    def engine_place(self):
        return self.program.read_bytes().index(Path(ENGINE).read_bytes())

    def alter(self, place):
        with self.program.open("r+b") as file:
            file.seek(place)
            byte = file.read(1)[0]
            file.seek(place)
            file.write(bytes([byte ^ 1]))

    def large_bundle(self, size):
        """One with an engine that takes a while to unpack."""
        engine = self.sandbox.root / "large"
        shutil.copy(ENGINE, engine)
        os.truncate(engine, size)
        self.bundle(engine)

    def silently(self, *arguments):
        return subprocess.run([self.program, *arguments], env=self.sandbox.environment,
                              cwd=self.sandbox.root, timeout=60).returncode


class ByMouse(BundleTestCase):
    def test_installs_then_updates(self):
        wizard = self.start()
        wizard.walk_to_ready()
        wizard.click("Install")
        wizard.wait_text("is installed")
        self.end(wizard, "Close")
        self.assertTrue((self.sandbox.destination / "VarnelSolutions.exe").exists())
        self.assertEqual(self.sandbox.temp_files(), [])

        wizard = self.start()
        wizard.wait_text("Update Available")
        wizard.go("Update Now", "Ready to Update")
        wizard.click("Update")
        wizard.wait_text("Updated in 38 seconds")
        self.end(wizard, "Close")
        self.assertEqual(len(self.sandbox.engine_runs()), 2)
        self.assertEqual(self.sandbox.temp_files(), [])

    def test_an_engine_given_by_name_wins(self):
        other = shutil.copy(ENGINE, self.sandbox.root / "other-engine")
        wizard = self.start_installation(self.start("--setup-exe", other))
        wizard.wait_text("is installed")
        self.assertEqual(self.sandbox.engine_runs()[0][0], str(other))
        self.end(wizard, "Close")

    def test_an_engine_given_by_name_needs_nothing_of_the_file(self):
        os.truncate(self.program, self.engine_place())
        wizard = self.start("--setup-exe", ENGINE)
        wizard.wait_text("Welcome to the Varnel Schematics Setup Wizard")
        self.end(wizard, "Cancel")
        # But it is a download all the same, which simulates nothing.
        wizard = self.start("--setup-exe", ENGINE, "--uninstall")
        wizard.click("Uninstall")
        wizard.wait_text("The uninstaller could not be found.")
        self.end(wizard, "Close")

    def test_beside_the_application_it_updates(self):
        self.sandbox.record_installation(InstallLocation=str(self.program.parent))
        wizard = self.start()
        wizard.wait_text("Update Available")
        self.end(wizard, "Skip")

    def test_older_than_the_installed_version(self):
        self.sandbox.record_installation(DisplayVersion="1.10.0", InstallLocation=str(self.sandbox.root))
        wizard = self.start()
        wizard.wait_text("Varnel Schematics 1.10.0 is installed, which is newer than 1.6.9.\n"
                         "Remove it first if you want the older version.")
        self.assertEqual(wizard.buttons(), {"Minimize": True, "Close": True})
        self.end(wizard, "Close")
        # Removing it is no matter of versions, nor is an engine that was given.
        for arguments, page in (("--uninstall",), "Uninstall Varnel Schematics"), (
                ("--setup-exe", ENGINE), "Update Available"):
            wizard = self.start(*arguments)
            wizard.wait_text(page)
            self.end(wizard, "Skip" if page == "Update Available" else "Cancel")

    def test_cut_off(self):
        whole = self.program.read_bytes()
        begin = self.engine_place()
        for length in (begin + self.engine_size - 1, begin + 1, begin):
            with self.subTest(length=length):
                self.program.write_bytes(whole[:length])
                wizard = self.start()
                wizard.wait_text(DAMAGED)
                self.assertEqual(wizard.buttons(), {"Minimize": True, "Close": True})
                self.end(wizard, "Close")
        self.assertEqual(self.sandbox.engine_runs(), [])
        self.assertEqual(self.sandbox.temp_files(), [])

    def test_one_altered_byte(self):
        self.alter(self.engine_place() + self.engine_size // 2)
        wizard = self.start_installation(self.start())
        self.assert_failure(wizard, DAMAGED)
        self.assertEqual(self.sandbox.engine_runs(), [])
        self.assertEqual(self.sandbox.temp_files(), [])


class Killed(BundleTestCase):
    def test_what_a_killed_wizard_has_left_goes_with_the_next(self):
        self.large_bundle(256 << 20)
        wizard = self.start()
        wait_until(self.sandbox.temp_files, "the folder of the engine")
        wizard.kill()
        self.assertEqual(len(self.sandbox.temp_files()), 1)

        # Two at once do not take each other's engine away.
        self.bundle(ENGINE)
        first, second = self.start(), self.start()
        wait_until(lambda: len(self.sandbox.temp_files()) == 2, "two folders")
        for wizard in (first, second):
            wizard.kill()
        wait_until(lambda: self.silently("/VERYSILENT", f"/DIR={self.sandbox.destination}") == 0,
                   "a silent run")
        self.assertEqual(self.sandbox.temp_files(), [])


class Silent(BundleTestCase):
    def test_the_engine_gets_the_command_line_and_its_exit_code_is_ours(self):
        self.sandbox.scenario("exit-code = 8")
        folder = self.sandbox.root / "a folder"
        # There is no display here to open a window on.
        self.sandbox.environment.pop("DISPLAY")
        self.assertEqual(self.silently("/VerySilent", "/SUPPRESSMSGBOXES", f"/DIR={folder}"), 8)
        (run,) = self.sandbox.engine_runs()
        self.assertEqual(run[1:], ["/VerySilent", "/SUPPRESSMSGBOXES", f"/DIR={folder}"])
        self.assertEqual(self.sandbox.temp_files(), [])

    def test_what_fails_before_the_engine_is_in_the_log(self):
        self.alter(self.engine_place())
        log = self.sandbox.root / "setup log.txt"
        self.assertEqual(self.silently("/SILENT", f"/log={log}"), 3)
        self.assertIn(DAMAGED, log.read_text())
        self.assertEqual(self.sandbox.engine_runs(), [])
        self.assertEqual(self.sandbox.temp_files(), [])
        self.assertNotIn(UNINSTALL_KEY, self.sandbox.registry())


if __name__ == "__main__":
    unittest.main()
