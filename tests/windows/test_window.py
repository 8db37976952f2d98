"""The wizard's window among others."""

import subprocess
import unittest

from screen import TITLE_BUTTONS, Wizard
from testcase import WindowsTestCase
from world import wait_until

TITLE = "Varnel Schematics setup"


class Window(WindowsTestCase):
    def facts(self):
        return self.world.window_facts(TITLE)

    def activate(self, window):
        subprocess.run(["xdotool", "windowactivate", "--sync", window], check=True)

    def test_comes_to_the_front_once(self):
        self.world.start("notepad")
        notepad = wait_until(lambda: Wizard.search("--name", "Notepad$"), "another window")
        self.activate(notepad)
        wizard = self.wizard("--install")
        wait_until(lambda: self.facts()["foreground"] == "1", "the wizard in front")
        wizard.wait_page("Welcome to the Varnel Schematics Setup Wizard")
        self.activate(notepad)
        wait_until(lambda: self.facts()["foreground"] == "0", "the wizard to step back")
        # Each look takes some tenths of a second.
        self.assertEqual({self.facts()["foreground"] for _ in range(10)}, {"0"})

    def test_native_style(self):
        wizard = self.wizard("--install")
        wizard.settle()
        facts = self.facts()
        self.assertEqual((facts["minimize-box"], facts["system-menu"], facts["caption"]),
                         ("1", "1", "0"))

    def test_minimises_and_comes_back(self):
        wizard = self.wizard("--install")
        wizard.wait_page("Welcome to the Varnel Schematics Setup Wizard")
        wizard.next("License Agreement")
        before = wizard.pixels()
        wizard.click_at(TITLE_BUTTONS["minimize"])
        wait_until(lambda: self.facts()["iconic"] == "1", "the window to be minimised")
        self.assertIsNone(Wizard.search("--name", f"^{TITLE}$"))
        self.activate(wizard.window)
        wait_until(lambda: self.facts()["iconic"] == "0", "the window to come back")
        wizard.settle()
        self.assertEqual(wizard.pixels(), before)
        wizard.click("I accept the license agreement")
        wizard.next("requirement(s) checked")


if __name__ == "__main__":
    unittest.main()
