"""A desktop that is scaled by a fraction."""

import unittest

from testcase import WizardTestCase
from wizard import wait_until


class Scale(WizardTestCase):
    def test_screen_is_told_in_its_own_pixels(self):
        self.sandbox.environment["QT_SCALE_FACTOR"] = "1.5"
        wizard = self.start("--install")
        # By keyboard: the places that the accessibility bus tells are not scaled.
        wizard.press("Return")
        wizard.wait_text("License Agreement")
        wizard.press("Down")
        wizard.wait_button("Next")
        wizard.press("Return")
        wizard.wait_text("Checking your system")
        wait_until(lambda: any("Graphics · display" in row and "1367 × 769" in row
                               for row in wizard.rows()), "the size of the screen")
        wizard.press("alt+F4")
        self.assertEqual(wizard.wait_end(), 0)


if __name__ == "__main__":
    unittest.main()
