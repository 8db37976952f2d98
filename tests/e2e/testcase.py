"""What the end-to-end tests share: a sandbox each, and a wizard that has to keep quiet."""

import os
import subprocess
import unittest
from pathlib import Path

from wizard import Sandbox, Wizard

ENGINE = os.environ["STANDIN_ENGINE"]


class WizardTestCase(unittest.TestCase):
    def setUp(self):
        self.sandbox = Sandbox()
        self.addCleanup(self.sandbox.remove)

    def start(self, *arguments, program=None):
        """Starts a wizard; whatever becomes of the test, it ends with it and without a warning."""
        wizard = Wizard(*arguments, sandbox=self.sandbox, program=program)
        self.addCleanup(lambda: self.assertEqual(wizard.warnings(), ""))
        self.addCleanup(wizard.kill)
        return wizard

    def start_installation(self, wizard=None):
        """A wizard that has just been told to install."""
        wizard = wizard or self.start("--install", "--setup-exe", ENGINE)
        wizard.walk_to_ready()
        wizard.click("Install")
        return wizard

    def uninstaller(self):
        """An uninstaller that an installation has left."""
        folder = self.sandbox.root / "left"
        if not folder.exists():
            honest = dict(self.sandbox.environment)
            honest.pop("VARNEL_ENGINE_SCENARIO", None)
            subprocess.run([ENGINE, "/VERYSILENT", f"/DIR={folder}"], check=True, env=honest)
        return folder / "unins000.exe"

    def end(self, wizard, button):
        """Ends the wizard by a button; it must end well."""
        wizard.wait_button(button)
        wizard.click(button)
        self.assertEqual(wizard.wait_end(), 0)

    def assert_failure(self, wizard, message):
        """The failure screen shows exactly `message`, and closing is all that is left to do."""
        self.assertEqual(wizard.wait_text(message.split("  ")[0]), message)
        self.assertTrue(wizard.has_text("Setup could not finish"))
        self.assertEqual(wizard.buttons(), {"Minimize": True, "Close": True})
        self.end(wizard, "Close")

    def assert_small(self, wizard):
        """It has never held much memory, whatever it had to read."""
        if "libasan" in Path(f"/proc/{wizard.process.pid}/maps").read_text():
            return  # the sanitizer keeps freed memory on purpose
        self.assertLess(wizard.peak_memory(), 100 * 1024 * 1024)

    def files_below(self, folder):
        return sorted(str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file())
