"""The life of a user with the program: install, find, update, remove, and nothing is left."""

import unittest

from testcase import ENGINE, WizardTestCase
from wizard import UNINSTALL_KEY, wait_until


class Life(WizardTestCase):
    def test_install_find_update_and_remove_with_preferences(self):
        self.sandbox.preferences.mkdir(parents=True)
        (self.sandbox.preferences / "settings.ini").write_text("[ui]\n")

        wizard = self.start("--setup-exe", ENGINE)
        wizard.wait_text("Welcome to the Varnel Schematics Setup Wizard")
        self.start_installation(wizard)
        wizard.wait_text("Varnel Schematics is installed")
        self.end(wizard, "Close")
        self.assertIn(UNINSTALL_KEY, self.sandbox.registry())

        # An older version is recorded by now, and one of its files has been damaged.
        registry = self.sandbox.registry()
        registry[UNINSTALL_KEY]["DisplayVersion"] = "1.5.0"
        self.sandbox.record_installation(**registry[UNINSTALL_KEY])
        library = self.sandbox.destination / "Qt6Core.dll"
        content = library.read_bytes()
        library.write_bytes(b"damaged")

        wizard = self.start("--setup-exe", ENGINE)
        wizard.wait_text("Installed version: 1.5.0")
        wizard.go("Update Now", "Ready to Update")
        wizard.click("Update")
        wizard.wait_text("Varnel Schematics has been updated")
        self.end(wizard, "Open Varnel Schematics")
        wait_until(self.sandbox.launches, "the start of the application")
        self.assertEqual(library.read_bytes(), content)
        self.assertEqual(self.sandbox.registry()[UNINSTALL_KEY]["DisplayVersion"], "1.6.9")
        self.assertTrue(self.sandbox.preferences.exists())

        wizard = self.start("--uninstall")
        wizard.wait_text("This will remove Varnel Schematics 1.6.9 from your computer.")
        wizard.click("Also delete my preferences and cached data")
        wizard.click("Uninstall")
        wizard.wait_text("Varnel Schematics and your preferences have been removed.")
        self.end(wizard, "Close")

        self.assertFalse(self.sandbox.destination.exists())
        self.assertFalse(self.sandbox.preferences.exists())
        self.assertNotIn(UNINSTALL_KEY, self.sandbox.registry())
        self.assertEqual(list((self.sandbox.root / "desktop").iterdir()), [])
        self.assertEqual(self.sandbox.temp_files(), [])
        self.assertEqual(len(self.sandbox.launches()), 1)

        wizard = self.start("--setup-exe", ENGINE)
        wizard.wait_text("Welcome to the Varnel Schematics Setup Wizard")
        self.end(wizard, "Cancel")


if __name__ == "__main__":
    unittest.main()
