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
    def test_before_a_run(self):
        for way, close in (("cross", lambda wizard: wizard.click("Close")),
                           ("Escape", lambda wizard: wizard.press("Escape")),
                           ("window manager", lambda wizard: wizard.press("alt+F4"))):
            with self.subTest(way):
                wizard = self.start("--setup-exe", ENGINE)
                close(wizard)
                self.assertEqual(wizard.wait_end(), 0)
                self.assertEqual(self.sandbox.temp_files(), [])

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
