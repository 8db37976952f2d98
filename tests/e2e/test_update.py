"""An update of a recorded copy."""

import unittest

from testcase import ENGINE, WizardTestCase
from wizard import UNINSTALL_KEY, wait_until


class Update(WizardTestCase):
    def setUp(self):
        super().setUp()
        self.installed = self.sandbox.root / "elsewhere" / "Varnel"
        self.installed.mkdir(parents=True)
        self.sandbox.record_installation(DisplayVersion="1.6.8", InstallLocation=f"{self.installed}/")

    def test_recorded_copy_is_found_updated_and_opened(self):
        wizard = self.start("--setup-exe", ENGINE)
        wizard.wait_text("Update Available for Varnel Schematics")
        wizard.wait_text("Installed version: 1.6.8")
        wizard.wait_text("Available version: 1.6.9")
        wizard.wait_text("Recommended — includes performance fixes")
        wizard.go("Update Now", "Ready to Update")
        self.assertIn(str(self.installed), wizard.wait_text("Destination location:"))
        wizard.click("Update")
        wizard.wait_text("Varnel Schematics has been updated")
        wizard.wait_text("Now running version 1.6.9.\nYour settings were preserved.")
        wizard.wait_text("Updated in 38 seconds")

        (run,) = self.sandbox.engine_runs()
        self.assertEqual(run[4:6], [f"/DIR={self.installed}", "/TASKS="])
        self.assertIn("VarnelSolutions.exe", self.files_below(self.installed))
        self.assertEqual(self.sandbox.registry()[UNINSTALL_KEY]["DisplayVersion"], "1.6.9")
        self.end(wizard, "Open Varnel Schematics")
        wait_until(self.sandbox.launches, "the start of the application")
        self.assertEqual(self.sandbox.launches()[0][1], str(self.installed))
        self.assertEqual(self.sandbox.temp_files(), [])

    def test_skip_changes_nothing(self):
        wizard = self.start("--setup-exe", ENGINE)
        self.end(wizard, "Skip")
        self.assertEqual(self.sandbox.engine_runs(), [])
        self.assertEqual(self.files_below(self.installed), [])

    def test_copy_whose_folder_is_gone_is_installed_afresh(self):
        self.installed.rmdir()
        wizard = self.start("--setup-exe", ENGINE)
        wizard.wait_text("Welcome to the Varnel Schematics Setup Wizard")
        self.end(wizard, "Cancel")

    def test_mode_options_win_over_what_is_recorded(self):
        wizard = self.start("--setup-exe", ENGINE, "--INSTALL")
        wizard.wait_text("Welcome to the Varnel Schematics Setup Wizard")
        self.end(wizard, "Cancel")


if __name__ == "__main__":
    unittest.main()
