"""The program with administrator rights, among files and settings that any program of the user can make."""

import os
import shutil
import unittest

from testcase import WindowsTestCase
from world import HELPERS

TITLE = "Varnel Schematics setup"


class Protection(WindowsTestCase):
    def test_planted_library(self):
        folder = self.world.folder / "download"
        folder.mkdir()
        programs = [folder / "VarnelSetup.exe", folder / "loadinto.exe"]
        for source, target in zip((os.environ["VARNEL_SETUP"], HELPERS / "loadinto.exe"), programs):
            shutil.copy(source, target)
        shutil.copy(HELPERS / "plantedlibrary.dll", folder)
        wizard = self.wizard("--install", program=programs[0])
        wizard.settle()
        code, output = self.world.run(programs[1], TITLE, "plantedlibrary.dll")
        self.assertEqual((code, output.split()), (0, ["here=1", "known=1", "there=0"]))
        self.assertEqual([path.name for path in folder.glob("*.loaded")], ["loadinto.exe.loaded"])
        wizard.close()

    def test_settings_of_qt(self):
        self.world.environment.update(WINEQT_SCALE_FACTOR="2", WINEQT_QPA_PLATFORM="nowhere")
        wizard = self.wizard("--install", "-platform", "nowhere", "-qwindowtitle", "Another")
        wizard.wait_page("Welcome to the Varnel Schematics Setup Wizard")
        self.assertEqual(wizard.size(), (680, 474))
        wizard.close()


if __name__ == "__main__":
    unittest.main()
