"""What UI Automation shows of the wizard, and the notifications of a run, which Wine only logs."""

import re
import unittest
from pathlib import Path

from screen import PRIMARY
from testcase import WindowsTestCase
from world import HELPERS, dos, wait_until

TITLE = "Varnel Schematics uninstall"


class ScreenReader(WindowsTestCase):
    def heard(self):
        """Names in the window, each with its help text."""
        code, output = self.world.run(HELPERS / "uiautomation.exe", TITLE)
        self.assertEqual(code, 0, output)
        return dict(re.findall(r"name=(.+)\|(.*)", output))

    def told(self, wizard, pattern):
        """What the program tells, in Wine's words."""
        return re.findall(pattern, wizard.output.read_text(errors="replace"))

    def await_notification(self, wizard, words):
        """Of another kind (4) than the known ones, read after what is being read (4)."""
        wait_until(lambda: self.told(
            wizard, rf'UiaRaiseNotificationEvent \(\w+, 4, 4, L"[^"]*{words}[^"]*", L"run"\)'), "a notification")

    def removal(self, *arguments):
        self.world.environment["WINEDEBUG"] = "fixme+uiautomation"
        wizard = self.wizard("--uninstall", *arguments, title=TITLE)
        wizard.wait_page("Administrator rights required")
        return wizard

    def test_names_and_help(self):
        wizard = self.removal()
        names = self.heard()
        for name in ("Minimize", "Uninstall Varnel Schematics", "Also delete my preferences and cached data",
                     "Administrator rights required", "Uninstall"):
            self.assertIn(name, names)
        wizard.click_at(PRIMARY)
        wizard.wait_page("Uninstalled in")
        self.assertTrue(self.heard()["Close"].startswith(
            "See You Later! Varnel Schematics has been removed from your computer."))
        # The bar's value.
        self.assertTrue(self.told(wizard, r"UiaRaiseAutomationPropertyChangedEvent .*30047.*VT_R8: 100"))
        wizard.close()

    def test_a_run_is_told(self):
        # A program that does not end by itself.
        wizard = self.removal("--uninstaller", "C:\\windows\\system32\\winemine.exe")
        self.heard()  # before somebody asks for it, nothing is told
        wizard.click_at(PRIMARY)
        program = wait_until(lambda: self.world.processes("winemine"), "the program")[0]
        status = re.search(r"varnel_uninst_\w+\.ini", Path(f"/proc/{program}/cmdline").read_text())[0]
        (self.world.temp / status).write_text("[setup]\nprogress=0.1\nfile=\nstatus=Looking around\n")
        self.await_notification(wizard, "Looking around")
        wizard.kill()

    def test_a_failure_is_told(self):
        self.world.environment["VARNEL_RECORD_CODE"] = "4"
        wizard = self.removal("--uninstaller", dos(HELPERS / "recordcommandline.exe"))
        wizard.click_at(PRIMARY)
        wizard.wait_page("Setup could not finish")
        self.assertIn("A fatal error occurred during installation.", self.heard()["Close"])
        self.assertEqual(wizard.close(), 0)


if __name__ == "__main__":
    unittest.main()
