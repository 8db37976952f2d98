"""An installed copy is found, updated, started and removed."""

import os
import subprocess
import unittest

from testcase import ENGINE, WizardTestCase
from wizard import UNINSTALL_KEY, wait_until


class Life(WizardTestCase):
    def test_update_and_removal(self):
        folder = self.sandbox.root / "elsewhere" / "Varnel"
        subprocess.run([ENGINE, "/VERYSILENT", f"/DIR={folder}", "/TASKS=desktopicon"], check=True,
                       env={**self.sandbox.environment, "VARNEL_ENGINE_RECORD": os.devnull})
        self.sandbox.preferences.mkdir(parents=True)
        (self.sandbox.preferences / "settings.ini").write_text("[ui]\n")
        registry = self.sandbox.registry()
        registry[UNINSTALL_KEY]["DisplayVersion"] = "1.5.0"
        self.sandbox.write_registry(registry)
        library = folder / "Qt6Core.dll"
        content = library.read_bytes()
        library.write_bytes(b"damaged")

        wizard = self.start("--setup-exe", ENGINE)
        wizard.wait_text("Installed version: 1.5.0")
        wizard.wait_text("Available version: 1.6.9")
        wizard.go("Update Now", "Ready to Update")
        self.assertIn(str(folder), wizard.wait_text("Destination location:"))
        wizard.click("Update")
        wizard.wait_text("Varnel Schematics has been updated")
        wizard.wait_text("Now running version 1.6.9.\nYour settings were preserved.")
        wizard.wait_text("Updated in 38 seconds")
        (run,) = self.sandbox.engine_runs()
        self.assertEqual(run[4:6], [f"/DIR={folder}", "/TASKS="])
        self.assertEqual(library.read_bytes(), content)
        self.assertEqual(self.sandbox.registry()[UNINSTALL_KEY]["DisplayVersion"], "1.6.9")
        self.end(wizard, "Open Varnel Schematics")
        wait_until(self.sandbox.launches, "the start of the application")
        self.assertEqual(self.sandbox.launches()[0][1], str(folder))
        self.assertEqual(self.sandbox.temp_files(), [])
        self.assertTrue(self.sandbox.preferences.exists())

        (folder / "my-board.pcb").write_text("mine")
        wizard = self.start("--uninstall")
        wizard.wait_text("This will remove Varnel Schematics 1.6.9 from your computer.")
        wizard.click("Also delete my preferences and cached data")
        wizard.click("Uninstall")
        wizard.wait_text("Varnel Schematics and your preferences have been removed.")
        wizard.wait_text("Uninstalled in 24 seconds")
        self.end(wizard, "Close")
        run = self.sandbox.engine_runs()[-1]
        self.assertEqual(run[:4], [str(folder / "unins000.exe"), "/VERYSILENT", "/SUPPRESSMSGBOXES",
                                   "/NORESTART"])
        self.assertEqual(self.files_below(folder), ["my-board.pcb"])
        self.assertFalse(self.sandbox.preferences.exists())
        self.assertNotIn(UNINSTALL_KEY, self.sandbox.registry())
        self.assertEqual(list((self.sandbox.root / "desktop").iterdir()), [])
        self.assertEqual(self.sandbox.temp_files(), [])
        self.assertEqual(len(self.sandbox.launches()), 1)

    def test_given_uninstaller_goes_before_the_recorded_one(self):
        recorded = self.uninstaller()
        runs = self.sandbox.engine_runs()
        wizard = self.start("--uninstall", "--uninstaller", self.sandbox.root / "gone.exe")
        wizard.click("Uninstall")
        self.assert_failure(wizard, "The uninstaller could not be found.")
        self.assertEqual(self.sandbox.engine_runs(), runs)
        self.assertTrue(recorded.exists())


if __name__ == "__main__":
    unittest.main()
