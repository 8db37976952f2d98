"""The end of the session, which is asked to wait while something is being installed."""

import subprocess
import unittest

from screen import PRIMARY, Watch
from testcase import ENGINE, SETUP_AT_WORK, VERSION, WindowsTestCase
from world import HELPERS, PATIENCE, WINE, wait_until

TITLE = "Varnel Schematics setup"
FOLDER = "C:\\Program Files\\Varnel Schematics"


class Session(WindowsTestCase):
    def may_end(self):
        """What the window answers to a session that is about to end and then does not."""
        code, output = self.world.run(HELPERS / "endsession.exe", TITLE)
        self.assertEqual(code, 0, output)
        answers = output.split()
        self.assertEqual(len(answers), 2)
        self.assertEqual(len(set(answers)), 1, answers)
        return answers[0] == "1"

    def end_session(self):
        """Asks the programs one by one, up to the first that says no, and ends those asked."""
        process = self.world.start("wineboot", "--end-session")
        return process.wait(timeout=PATIENCE)

    def start_install(self):
        wizard = self.wizard("--install", "--setup-exe", ENGINE)
        wizard.walk_to_ready()
        self.assertTrue(self.may_end())
        wizard.click_at(PRIMARY)
        return wizard

    def wait_at_work(self, wizard):
        Watch(wizard).until(lambda: self.world.processes(SETUP_AT_WORK)
                            and self.world.path(FOLDER + "\\parts").exists())

    def assert_installed(self):
        files = self.world.files_below(FOLDER)
        for name in ("VarnelSolutions.exe", "parts/part-300.part", "unins000.dat"):
            self.assertIn(name, files)
        self.assertEqual(self.world.uninstall_entry()["DisplayVersion"], VERSION)

    def test_waits_for_an_installation(self):
        wizard = self.start_install()
        with self.world.braked(SETUP_AT_WORK):
            self.wait_at_work(wizard)
            self.assertFalse(self.may_end())
            self.end_session()
            self.assertFalse(self.may_end())
            self.assertTrue(self.world.processes(SETUP_AT_WORK))
        wizard.wait_page("Finished in 51 seconds", patience=PATIENCE)
        self.assert_installed()
        self.assertTrue(self.may_end())
        self.assertIsNone(wizard.process.poll())
        # And now it ends, without a question.
        self.end_session()
        wizard.wait_end()
        self.assertEqual(self.world.temp_files(), [])


if __name__ == "__main__":
    unittest.main()
