"""The wizard's window among others."""

import re
import subprocess
import unittest

from screen import TITLE_BUTTONS, Wizard
from testcase import WindowsTestCase
from world import HELPERS, wait_until

TITLE = "Varnel Schematics setup"


class Window(WindowsTestCase):
    def facts(self):
        return self.world.window_facts(TITLE)

    def command(self, command):
        self.assertEqual(self.world.run(HELPERS / "windowcommand.exe", TITLE, command)[0], 0)

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
        self.world.environment["WINEDEBUG"] = "trace+win"
        wizard = self.wizard("--install")
        wizard.settle()
        del self.world.environment["WINEDEBUG"]
        # Windows is told that the frame is another, neither moved nor resized: 0x20 of these flags, and 0x03.
        told = re.split(r"set_window_long \w+ -16 ", wizard.output.read_text(errors="replace"))[-1]
        self.assertEqual(int(re.search(r"NtUserSetWindowPos .*flags (\w+)", told)[1], 16) & 0x23, 0x23)
        facts = self.facts()
        self.assertEqual((facts["minimize-box"], facts["system-menu"], facts["caption"]),
                         ("1", "1", "0"))

    def test_minimises_and_comes_back(self):
        wizard = self.wizard("--install")
        wizard.wait_page("Welcome to the Varnel Schematics Setup Wizard")
        wizard.next("License Agreement")
        before = wizard.pixels()
        for minimize, restore in (
                (lambda: wizard.click_at(TITLE_BUTTONS["minimize"]), lambda: self.activate(wizard.window)),
                # As the task bar and the system menu do.
                (lambda: self.command("minimize"), lambda: self.command("restore"))):
            minimize()
            wait_until(lambda: self.facts()["iconic"] == "1", "the window to be minimised")
            self.assertIsNone(Wizard.search("--name", f"^{TITLE}$"))
            restore()
            wait_until(lambda: self.facts()["iconic"] == "0", "the window to come back")
            wizard.settle()
            self.assertEqual(wizard.pixels(), before)
        wizard.click("I accept the license agreement")
        wizard.next("requirement(s) checked")

    def test_minimises_by_its_system_menu(self):
        self.world.environment["WINEDEBUG"] = "trace+menu"
        wizard = self.wizard("--install")
        del self.world.environment["WINEDEBUG"]
        wizard.wait_page("Welcome to the Varnel Schematics Setup Wizard")
        self.command("menu")

        def states():
            """Of the entry, set by Qt and then by Wine, which goes by the window's style; 0 is enabled."""
            return re.findall(r"NtUserEnableMenuItem \(\w+, f020, 000(\d)\)",
                              wizard.output.read_text(errors="replace"))

        wait_until(lambda: len(states()) > 1, "the menu")
        self.assertEqual(states(), ["0", "0"])
        wizard.press("n")
        wait_until(lambda: self.facts()["iconic"] == "1", "the window to be minimised")

    def place(self, window):
        told = subprocess.run(["xdotool", "getwindowgeometry", "--shell", window], check=True,
                              capture_output=True, text=True).stdout
        values = dict(line.split("=") for line in told.splitlines())
        return int(values["X"]), int(values["Y"])

    def drag(self, wizard, grip, way):
        """Drags by a place of the window; in small steps, as a hand does."""
        left, top = self.place(wizard.window)
        x, y = left + grip[0], top + grip[1]
        words = ["mousemove", x, y, "mousedown", 1]
        for step in range(1, 41):
            words += ["sleep", 0.02, "mousemove", x + way[0] * step // 40, y + way[1] * step // 40]
        words += ["sleep", 0.3, "mouseup", 1]
        subprocess.run(["xdotool", *map(str, words)], check=True)

    def test_is_moved_by_its_bar(self):
        wizard = self.wizard("--install")
        wizard.settle()
        bar = (300, 18)
        for way in ((80, 60), (-60, -40)):
            left, top = self.place(wizard.window)
            self.drag(wizard, bar, way)
            wait_until(lambda: abs(self.place(wizard.window)[0] - left - way[0]) <= 3
                       and abs(self.place(wizard.window)[1] - top - way[1]) <= 3, "the drag")
            before = self.place(wizard.window)
            # The pointer alone takes nothing along, nor does a press on a button.
            subprocess.run(["xdotool", "mousemove", str(before[0] + 200), str(before[1] + 18),
                            "mousemove", str(before[0] + 100), str(before[1] + 300)], check=True)
            for button in TITLE_BUTTONS.values():
                self.drag(wizard, button, (-200, 150))
            wizard.settle()
            self.assertEqual(self.place(wizard.window), before)
        wizard.close()


if __name__ == "__main__":
    unittest.main()
