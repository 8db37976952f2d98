"""The registry as the wizard reads it: which of several installed copies it finds, and that nothing
becomes of the reading."""

import re
import unittest

from testcase import ENGINE, WindowsTestCase
from world import UNINSTALL, wait_until

VIEW_32 = UNINSTALL.replace("SOFTWARE", "SOFTWARE\\Wow6432Node")
PLACES = {
    "HKEY_LOCAL_MACHINE\\" + UNINSTALL: "7.7.7",
    "HKEY_LOCAL_MACHINE\\" + VIEW_32: "5.5.5",
    "HKEY_CURRENT_USER\\" + UNINSTALL: "3.3.3",
}


class Registry(WindowsTestCase):
    def offered_version(self, keys):
        """The version in the update offer when these keys are there."""
        self.world.path("C:\\Apps").mkdir(exist_ok=True)
        self.world.import_registry(keys)
        wizard = self.wizard("--setup-exe", ENGINE)
        wizard.wait_page("performance fixes")
        found = [version for version in PLACES.values() if version in wizard.page]
        self.assertEqual(wizard.close(), 0)
        return found

    def test_first_of_three_places_wins(self):
        keys = {}
        for key, version in reversed(PLACES.items()):
            keys[key] = {"DisplayVersion": version, "InstallLocation": "C:\\Apps\\"}
            with self.subTest(version=version):
                self.assertEqual(self.offered_version(keys), [version])

    def test_reading_leaves_no_trace(self):
        def visit_every_page():
            wizard = self.wizard("--setup-exe", ENGINE)
            wizard.wait_page("Welcome to the Varnel Schematics Setup Wizard")
            wizard.next("License Agreement")
            wizard.click("I accept the license agreement")
            wizard.next("requirement(s) checked")
            wizard.next("Select Destination Location")
            self.assertEqual(wizard.close(), 0)

        def everything():
            return {root: re.sub(r"\r", "", self.world.registry(root))
                    for root in ("HKEY_LOCAL_MACHINE", "HKEY_CURRENT_USER", "HKEY_CLASSES_ROOT")}

        # Windows itself notes a thing or two when a program runs for the first time.
        visit_every_page()
        before = everything()
        visit_every_page()
        after = everything()
        self.assertGreater(len(before["HKEY_LOCAL_MACHINE"]), 100_000)
        for root, text in before.items():
            changed = set(text.split("\n")) ^ set(after[root].split("\n"))
            self.assertEqual(changed, set(), root)
        for word in ("Varnel", "4F1C2A77"):
            self.assertNotIn(word, "".join(after.values()))

    def test_choosing_a_folder_leaves_nothing_of_qt(self):
        wizard = self.wizard("--install")
        wizard.wait_page("Welcome to the Varnel Schematics Setup Wizard")
        wizard.next("License Agreement")
        wizard.click("I accept the license agreement")
        wizard.next("requirement(s) checked")
        wizard.next("Select Destination Location")
        wizard.choose_folder("C:\\Tools")
        wizard.click("Change")
        wait_until(lambda: wizard.search("--name", "^Select "), "the folder dialog")
        wizard.press("Escape")
        wait_until(lambda: not wizard.search("--name", "^Select "), "the end of the folder dialog")
        self.assertEqual(wizard.close(), 0)
        # What Windows itself remembers of its dialogs is not ours.
        self.assertEqual([key for key in self.world.keys("HKEY_CURRENT_USER")
                          if "qtproject" in key], [])


if __name__ == "__main__":
    unittest.main()
