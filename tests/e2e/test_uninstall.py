"""A removal by the uninstaller that an installation has left."""

import os
import subprocess
import unittest

from testcase import ENGINE, WizardTestCase
from wizard import UNINSTALL_KEY, wait_until


class Uninstall(WizardTestCase):
    def setUp(self):
        super().setUp()
        subprocess.run([ENGINE, "/VERYSILENT", f"/DIR={self.sandbox.destination}",
                        "/TASKS=desktopicon"],
                       env={**self.sandbox.environment, "VARNEL_ENGINE_RECORD": os.devnull},
                       check=True)
        self.sandbox.preferences.mkdir(parents=True)
        (self.sandbox.preferences / "settings.ini").write_text("[ui]\n")

    def test_all_of_ours_goes_and_nothing_else(self):
        foreign = self.sandbox.destination / "my-board.pcb"
        foreign.write_text("mine")
        # The last step is on screen for long enough to be seen.
        self.sandbox.scenario("delay-ms = 40", "stall = 3", "stage = end")
        wizard = self.start("--uninstall")
        wizard.wait_text("Uninstall Varnel Schematics")
        wizard.wait_text("This will remove Varnel Schematics 1.6.9 from your computer.")
        wizard.wait_text("This cannot be undone.")
        self.assertTrue(wizard.has_text("Varnel Schematics uninstall"))
        wizard.click("Uninstall")
        wizard.wait_text("Removing Varnel Schematics from your computer.")
        rows = []
        wait_until(lambda: rows.extend(wizard.rows()) or wizard.has_text("See You Later!"),
                   "the farewell")
        self.assertEqual(list(dict.fromkeys(rows)),
                         ["Stopping Varnel Schematics", "Removing application files",
                          "Removing shortcuts", "Unregistering file types"])
        wizard.wait_text("Your preferences were kept in case you're back soon.")
        wizard.wait_text("Uninstalled in 24 seconds")

        (run,) = self.sandbox.engine_runs()
        self.assertEqual(run[0], str(self.sandbox.destination / "unins000.exe"))
        self.assertEqual(run[1:4], ["/VERYSILENT", "/SUPPRESSMSGBOXES", "/NORESTART"])
        self.assertRegex(run[4], r"^/STATUSFILE=.*/varnel_uninst_[0-9a-f]{32}\.ini$")
        self.assertEqual(len(run), 5)
        self.assertEqual(self.files_below(self.sandbox.destination), ["my-board.pcb"])
        self.assertNotIn(UNINSTALL_KEY, self.sandbox.registry())
        self.assertEqual(list((self.sandbox.root / "desktop").iterdir()), [])
        self.assertTrue((self.sandbox.preferences / "settings.ini").exists())
        self.end(wizard, "Close")
        self.assertEqual(self.sandbox.temp_files(), [])

    def test_given_uninstaller_wins_over_the_recorded_one(self):
        wizard = self.start("--uninstall", "--uninstaller", self.sandbox.root / "gone.exe")
        wizard.click("Uninstall")
        wizard.wait_text("The uninstaller could not be found.")
        wizard.wait_text("Setup could not finish")
        self.assertEqual(self.sandbox.engine_runs(), [])
        self.end(wizard, "Close")

    def test_without_an_uninstaller_the_removal_is_a_simulation(self):
        (self.sandbox.root / "registry.json").unlink()
        wizard = self.start("--uninstall")
        wizard.wait_text("This will remove Varnel Schematics from your computer.")
        wizard.click("Also delete my preferences and cached data")
        wizard.click("Uninstall")
        wizard.wait_text("See You Later!")
        self.assertTrue(self.sandbox.preferences.exists())
        self.assertIn("VarnelSolutions.exe", self.files_below(self.sandbox.destination))
        self.end(wizard, "Close")


if __name__ == "__main__":
    unittest.main()
