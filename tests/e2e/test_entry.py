"""What the program sets up before its window is there: its name, icon, fonts and look."""

import json
import subprocess
import unittest

from testcase import ENGINE, WizardTestCase
from wizard import APPLICATION, Atspi, wait_until

ICON_SIDES = [16, 20, 24, 32, 40, 48, 64, 128, 256]

# The ground of stock windows, as long as no style sheet or palette of ours covers them.
STOCK_GROUND = "efefef"


def properties(wizard):
    """What the window tells the desktop about itself, by the property's name."""
    told = subprocess.run(["obxprop", "--id", wizard.window_id()],
                          check=True, capture_output=True, text=True).stdout
    lines = [line.split(" = ", 1) for line in told.splitlines() if " = " in line]
    return {name.split("(")[0]: json.loads(f"[{value}]") for name, value in lines
            if name.startswith(("WM_CLASS", "_NET_WM_ICON("))}


def place(wizard, text):
    """Where a text is on the screen."""
    node = next(node for node, role, name in wizard.widgets() if role == "label" and name == text)
    return Atspi.Component.get_extents(node, Atspi.CoordType.SCREEN)


def colour_on_screen(x, y):
    return subprocess.run(
        ["import", "-window", "root", "-crop", f"1x1+{x}+{y}", "-depth", "8", "rgb:-"],
        check=True, capture_output=True).stdout.hex()


class Entry(WizardTestCase):
    def setUp(self):
        super().setUp()
        self.wizard = self.start("--install", "--setup-exe", ENGINE)

    def test_name(self):
        self.assertEqual(self.wizard.application.get_name(), APPLICATION)
        _, window_class = properties(self.wizard)["WM_CLASS"]
        self.assertEqual(window_class, APPLICATION)

    def test_icon(self):
        pictures = properties(self.wizard)["_NET_WM_ICON"]
        sides = []
        while pictures:
            width, height, *pictures = pictures
            self.assertEqual(width, height)
            sides.append(width)
            picture, pictures = pictures[:width * height], pictures[width * height:]
            self.assertEqual(picture[0] >> 24, 0, "the mark has nothing in its corners")
            self.assertTrue(any(pixel >> 24 == 255 for pixel in picture), "an empty picture")
        self.assertEqual(sides, ICON_SIDES)

    def test_fonts(self):
        # In the font that stands in for ours this heading takes two lines.
        welcome = place(self.wizard, "Welcome to the Varnel Schematics Setup Wizard")
        self.wizard.go("Next", "License Agreement")
        self.assertEqual(welcome.height, place(self.wizard, "License Agreement").height)

    def test_folder_dialog_looks_stock_and_goes_alone(self):
        wizard = self.wizard
        wizard.go("Next", "License Agreement")
        wizard.click("I accept the license agreement")
        wizard.go("Next", "Checking your system")
        wizard.go("Next", "Select Destination Location")
        self.sandbox.destination.mkdir()  # it is where the dialog starts
        at_home = self.files_below(self.sandbox.root / "home")
        wizard.go("Change", "Files of type:")
        label = place(wizard, "Files of type:")
        beside = label.x - 3, label.y + label.height // 2
        wait_until(lambda: colour_on_screen(*beside) == STOCK_GROUND, "the stock ground", 10)
        wizard.press("Escape")
        wait_until(lambda: not wizard.has_text("Files of type:"), "the dialog to go")
        wizard.go("Change", "Files of type:")
        wizard.click("Choose")
        wait_until(lambda: not wizard.has_text("Files of type:"), "the dialog to go")
        wizard.go("Next", "Select Additional Tasks")
        self.end(wizard, "Close")
        self.assertEqual(self.files_below(self.sandbox.root / "home"), at_home)


if __name__ == "__main__":
    unittest.main()
