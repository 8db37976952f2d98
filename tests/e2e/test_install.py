"""An installation from the first page to the started application."""

import re
import unittest

from testcase import ENGINE, WizardTestCase
from wizard import UNINSTALL_KEY, wait_until


class Install(WizardTestCase):
    def test_files_arrive_and_the_screen_tells_how(self):
        self.sandbox.environment["VARNEL_ENGINE_DELAY_MS"] = "150"
        wizard = self.start("--setup-exe", ENGINE)
        self.assertTrue(wizard.has_text("Welcome to the Varnel Schematics Setup Wizard"))
        wizard.walk_to_ready()
        summary = wizard.wait_text("Destination location:")
        self.assertIn(str(self.sandbox.destination), summary)
        self.assertIn("Create a desktop shortcut", summary)
        self.assertEqual(self.sandbox.temp_files(), [])

        wizard.click("Install")
        wizard.wait_text("Do not turn off your PC")
        bars, files, states = [], set(), set()

        def look():
            texts = wizard.texts()
            bars.append(wizard.bar_value() or 0)
            files.update(text for text in texts if text.startswith(str(self.sandbox.destination)))
            states.update(text for text in texts if text.endswith("…"))
            percent = [text for text in texts if re.fullmatch(r"\d+%", text)]
            self.assertLessEqual(len(percent), 1)
            self.assertIs(wizard.buttons().get("Cancel", False), False)
            return any("is installed" in text for text in texts)

        wait_until(look, "the last page")
        while bars and bars[-1] == 0:
            bars.pop()  # the last page has no bar
        self.assertEqual(bars, sorted(bars), "the bar went back")
        self.assertGreater(len(set(bars)), 3, "the bar did not move")
        self.assertGreater(len(files), 3, "the file names did not change")
        self.assertIn("Extracting application files…", states)

        (run,) = self.sandbox.engine_runs()
        self.assertEqual(run[4:6], [f"/DIR={self.sandbox.destination}", "/TASKS=desktopicon"])
        installed = self.files_below(self.sandbox.destination)
        self.assertIn("VarnelSolutions.exe", installed)
        self.assertIn("unins000.exe", installed)
        self.assertGreater(len(installed), 40)
        self.assertEqual([path.name for path in (self.sandbox.root / "desktop").iterdir()],
                         ["Varnel Schematics.desktop"])
        self.assertEqual(self.sandbox.registry()[UNINSTALL_KEY]["DisplayVersion"], "1.6.9")
        wizard.wait_text(f"Installed to {self.sandbox.destination}.\nA shortcut is on your desktop.")
        wizard.wait_text("Finished in 51 seconds")

        self.end(wizard, "Open Varnel Schematics")
        wait_until(self.sandbox.launches, "the start of the application")
        self.assertEqual(self.sandbox.launches(),
                         [(str(self.sandbox.destination / "VarnelSolutions.exe"),
                           str(self.sandbox.destination))])
        self.assertEqual(self.sandbox.temp_files(), [])


if __name__ == "__main__":
    unittest.main()
