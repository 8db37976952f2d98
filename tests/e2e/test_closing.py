"""However the window is closed, the process ends, once and clean."""

import subprocess
import unittest
from pathlib import Path

from testcase import ENGINE, WizardTestCase
from wizard import wait_until


def children(wizard):
    """Process numbers of what the wizard has started."""
    return subprocess.run(["pgrep", "-P", str(wizard.process.pid)],
                          capture_output=True, text=True).stdout.split()


class Closing(WizardTestCase):
    def closes(self, close):
        wizard = self.start("--setup-exe", ENGINE)
        close(wizard)
        self.assertEqual(wizard.wait_end(), 0)
        self.assertEqual(self.sandbox.temp_files(), [])

    def test_by_the_cross(self):
        self.closes(lambda wizard: wizard.click("Close"))

    def test_by_escape(self):
        self.closes(lambda wizard: wizard.press("Escape"))

    def test_by_the_window_manager(self):
        self.closes(lambda wizard: wizard.press("alt+F4"))

    def test_two_quick_clicks_start_the_application_once(self):
        wizard = self.start_installation()
        wizard.wait_button("Open Varnel Schematics")
        wizard.wait_settled()
        wizard.click("Open Varnel Schematics", times=2)
        self.assertEqual(wizard.wait_end(), 0)
        wait_until(self.sandbox.launches, "the start of the application")
        self.assertEqual(len(self.sandbox.launches()), 1)

    def test_during_a_run_the_engine_goes_too(self):
        self.sandbox.scenario("stall = forever", "stage = half", "ignore-termination = yes")
        wizard = self.start_installation()
        wait_until(lambda: (wizard.bar_value() or 0) > 40, "half of the run")
        self.assertEqual(len(self.sandbox.temp_files()), 2)
        (engine,) = children(wizard)
        wizard.press("Escape")  # does nothing now
        wizard.click("Close")
        self.assertEqual(wizard.wait_end(), 0)
        self.assertFalse(Path("/proc", engine).exists())
        self.assertEqual(self.sandbox.temp_files(), [])


if __name__ == "__main__":
    unittest.main()
