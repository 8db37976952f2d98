"""The wizard's window on the desktop: it can be moved, minimised and brought back, and opens a dialog."""

import subprocess
import unittest

from testcase import ENGINE, WizardTestCase
from wizard import APPLICATION, Atspi, wait_until

# A system that moves a window may leave it behind by how far the pointer went before it took over.
TOLERANCE = 3

# The ground of stock windows, as long as no style sheet or palette of ours covers them.
STOCK_GROUND = "efefef"


def xdotool(*words):
    return subprocess.run(["xdotool", *map(str, words)], check=True, capture_output=True,
                          text=True).stdout


def place(window):
    """Position of a window on the screen."""
    told = xdotool("getwindowgeometry", "--shell", window)
    values = dict(line.split("=") for line in told.splitlines())
    return int(values["X"]), int(values["Y"])


class Window(WizardTestCase):
    def setUp(self):
        super().setUp()
        self.wizard = self.start("--setup-exe", ENGINE)
        self.window = self.wizard.window_id()
        self.addCleanup(xdotool, "mouseup", 1)

    def press(self, x, y):
        xdotool("mousemove", x, y, "mousedown", 1)

    def press_the_bar(self):
        """Presses the title bar and begins to move; returns where. From then on it is the desktop
        that moves the window."""
        left, top = place(self.window)
        self.press(left + 300, top + 18)
        xdotool("mousemove", left + 301, top + 18)
        wait_until(lambda: place(self.window) == (left + 1, top), "the first step")
        self.wizard.wait_settled()
        return left + 300, top + 18

    def wait_place(self, x, y, pointer=None):
        """Waits until the window is there, with a hand that is never quite still."""
        shiver = [0, 1]

        def is_there():
            if pointer:
                shiver.reverse()
                xdotool("mousemove", pointer[0] + shiver[0], pointer[1])
            left, top = place(self.window)
            return abs(left - x) <= TOLERANCE and abs(top - y) <= TOLERANCE

        wait_until(is_there, f"the window at {x}, {y}")

    def drag(self, *way):
        left, top = place(self.window)
        x, y = self.press_the_bar()
        for part in (0.5, 1):
            dx, dy = (int(length * part) for length in way)
            self.wait_place(left + dx, top + dy, pointer=(x + dx, y + dy))
        xdotool("mouseup", 1)

    def assert_stays(self):
        """Not even the pointer that wanders over the bar takes the window along."""
        before = place(self.window)
        left, top = before
        for x in (320, 120, 220):
            xdotool("mousemove", left + x, top + 18)
        self.wizard.wait_settled()
        self.assertEqual(place(self.window), before)

    def test_bar_moves_the_window(self):
        for way in ((120, 60), (-150, -40)):
            self.drag(*way)
            self.assert_stays()
        self.end(self.wizard, "Cancel")

    def test_a_jump_of_the_pointer_is_a_drag_too(self):
        left, top = place(self.window)
        self.press(left + 300, top + 18)
        xdotool("mousemove", left + 400, top + 68, "mouseup", 1)
        self.wait_place(left + 100, top + 50)
        self.assert_stays()

    def test_escape_calls_the_move_off(self):
        """As it is the system that moves the window. The page does not hear of the key."""
        before = place(self.window)
        x, y = self.press_the_bar()
        self.wait_place(before[0] + 100, before[1] + 50, pointer=(x + 100, y + 50))
        xdotool("key", "Escape")  # Wizard.press() would let go of the mouse too
        self.wait_place(*before)
        xdotool("mouseup", 1)
        self.assert_stays()
        self.drag(80, 30)
        self.end(self.wizard, "Cancel")

    def test_minimised_and_back(self):
        self.wizard.click("Minimize")
        wait_until(lambda: not self.wizard.window_id(), "the window to go")
        xdotool("windowactivate", self.window)
        wait_until(self.wizard.window_id, "the window to come back")
        self.end(self.wizard, "Cancel")

    def test_folder_dialog_looks_stock_and_goes_alone(self):
        def colour_on_screen(x, y):
            return subprocess.run(
                ["import", "-window", "root", "-crop", f"1x1+{x}+{y}", "-depth", "8", "rgb:-"],
                check=True, capture_output=True).stdout.hex()

        wizard = self.wizard
        self.assertEqual(wizard.application.get_name(), APPLICATION)
        wizard.go("Next", "License Agreement")
        wizard.click("I accept the license agreement")
        wizard.go("Next", "Checking your system")
        wizard.go("Next", "Select Destination Location")
        self.sandbox.destination.mkdir()  # it is where the dialog starts
        at_home = self.files_below(self.sandbox.root / "home")
        for leave in (lambda: wizard.press("Escape"), lambda: wizard.click("Choose")):
            wizard.go("Change", "Files of type:")
            label = next(node for node, role, name in wizard.widgets()
                         if role == "label" and name == "Files of type:")
            area = Atspi.Component.get_extents(label, Atspi.CoordType.SCREEN)
            wait_until(lambda: colour_on_screen(area.x - 3, area.y + area.height // 2) == STOCK_GROUND,
                       "the stock ground", 10)
            leave()
            wait_until(lambda: not wizard.has_text("Files of type:"), "the dialog to go")
        wizard.go("Next", "Select Additional Tasks")
        self.end(wizard, "Close")
        self.assertEqual(self.files_below(self.sandbox.root / "home"), at_home)


if __name__ == "__main__":
    unittest.main()
