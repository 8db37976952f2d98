"""What the desktop has to do with an installation: the session waits for it, the computer stays awake,
the task bar shows it."""

import re
import unittest

from screen import PRIMARY, Watch
from testcase import ENGINE, SETUP_AT_WORK, VERSION, WindowsTestCase
from world import HELPERS, PATIENCE

TITLE = "Varnel Schematics setup"
FOLDER = "C:\\Program Files\\Varnel Schematics"

# Calls that Wine does not implement, but logs.
SPOKEN = "-all,fixme+all,trace+explorerframe,warn+ntdll"
ASKED = ("ShutdownBlockReasonCreate", "ShutdownBlockReasonDestroy", "NtSetThreadExecutionState",
         "taskbar_list_HrInit", "taskbar_list_SetProgressState", "taskbar_list_SetProgressValue")


class Session(WindowsTestCase):
    def start_wizard(self):
        self.world.environment["WINEDEBUG"] = SPOKEN
        wizard = self.wizard("--install", "--setup-exe", ENGINE)
        del self.world.environment["WINEDEBUG"]
        return wizard

    def may_end(self):
        """What the window answers to a session that is about to end and then does not."""
        code, output = self.world.run(HELPERS / "windowcommand.exe", TITLE, "endsession")
        self.assertEqual(code, 0, output)
        answers = output.split()
        self.assertEqual(len(answers), 2)
        self.assertEqual(len(set(answers)), 1, answers)
        return answers[0] == "1"

    def end_session(self):
        """Asks the programs one by one, up to the first that says no, and ends those asked."""
        self.world.start("wineboot", "--end-session").wait(timeout=PATIENCE)

    @staticmethod
    def told(wizard):
        """What the wizard asked of the desktop, with the first number or text of it; the engine,
        which writes into the same output, does the like."""
        lines = re.findall(r"^(\w+):\w+:\w+:(\w+) (.*)$",
                           wizard.output.read_text(errors="replace"), re.MULTILINE)
        own = {thread for thread, _, words in lines if "Varnel Schematics is being" in words}
        told = []
        for thread, function, words in lines:
            if thread in own and function in ASKED:
                value = re.search(r'L"(.*)"|\((0x\w+)|flags (\d+)', words)
                told.append((function, *filter(None, value.groups() if value else ())))
        return told

    def test_waits_for_an_installation(self):
        wizard = self.start_wizard()
        wizard.walk_to_ready()
        self.assertTrue(self.may_end())
        # The task bar's library is not loaded before a run.
        self.assertNotIn("explorerframe", wizard.output.read_text(errors="replace"))
        wizard.click_at(PRIMARY)
        with self.world.braked(SETUP_AT_WORK):
            Watch(wizard).until(lambda: self.world.path(FOLDER + "\\parts").exists()
                                and ("taskbar_list_SetProgressValue",) in self.told(wizard))
            self.assertFalse(self.may_end())
            self.end_session()
            self.assertFalse(self.may_end())
            code, _ = self.world.run(HELPERS / "windowcommand.exe", TITLE, "taskbarcreated")
            self.assertEqual(code, 0)
            self.assertTrue(self.world.processes(SETUP_AT_WORK))
        wizard.wait_page("Finished in 51 seconds", patience=PATIENCE)
        files = self.world.files_below(FOLDER)
        for name in ("VarnelSolutions.exe", "parts/part-300.part", "unins000.dat"):
            self.assertIn(name, files)
        self.assertEqual(self.world.uninstall_entry()["DisplayVersion"], VERSION)
        # Wine logs only the first call of each method. The second HrInit is the answer to
        # TaskbarButtonCreated.
        self.assertEqual(self.told(wizard), [
            ("ShutdownBlockReasonCreate", "Varnel Schematics is being installed."),
            ("NtSetThreadExecutionState", "0x80000001"),
            ("taskbar_list_HrInit",),
            ("taskbar_list_SetProgressState", "1"),
            ("taskbar_list_SetProgressValue",),
            ("taskbar_list_HrInit",),
            ("ShutdownBlockReasonDestroy",),
            ("NtSetThreadExecutionState", "0x80000000")])

        # And now the session ends without a question.
        self.assertTrue(self.may_end())
        self.assertIsNone(wizard.process.poll())
        self.end_session()
        wizard.wait_end()
        self.assertEqual(self.world.temp_files(), [])


if __name__ == "__main__":
    unittest.main()
