"""The engine fails, dies or hangs, or the wizard does: what the user sees and what is left on disk."""

import os
import signal
import unittest
from pathlib import Path

from faults import FATAL, FaultTestCase
from wizard import UNINSTALL_KEY, wait_until


class Engine(FaultTestCase):
    def test_exit_code_ends_in_its_sentence_and_what_the_log_says(self):
        self.sandbox.scenario("exit-code = 7", "stage = half", "message-box = Too old.")
        self.assert_failure(self.start_update(), "Setup cannot install on this system.  Too old.  "
                            f"(log: {self.sandbox.kept_log()})")
        self.assertEqual(self.sandbox.temp_files(), ["varnel_setup_last.log"])
        self.assertIn("Too old.", self.sandbox.kept_log().read_text(encoding="utf-8-sig"))

    def test_killed_and_tried_again(self):
        self.sandbox.scenario("crash = KILL", "stage = half")
        self.assert_failure(self.start_update(), "Process crashed")
        self.assertEqual(self.sandbox.temp_files(), [])
        # Nothing has been noted down as done.
        self.assertEqual(self.version(), "1.6.8")
        self.sandbox.scenario("")
        self.assert_updated(self.start_update())

    def test_uninstaller_killed_and_tried_again(self):
        uninstaller = self.uninstaller()
        self.sandbox.scenario("crash = KILL", "stage = half")
        wizard = self.start("--uninstall")
        wizard.click("Uninstall")
        self.assert_failure(wizard, "Process crashed")
        self.assertEqual(self.sandbox.temp_files(), [])
        self.sandbox.scenario("")
        wizard = self.start("--uninstall")
        wizard.click("Uninstall")
        wizard.wait_text("See You Later!")
        self.end(wizard, "Close")
        self.assertFalse(uninstaller.parent.exists())
        self.assertNotIn(UNINSTALL_KEY, self.sandbox.registry())

    def test_hanging_engine_goes_with_the_window(self):
        self.sandbox.scenario("stall = forever", "stage = end", "ignore-termination = yes")
        wizard = self.start_update()
        engine = self.engine_of(wizard)
        wait_until(lambda: (wizard.bar_value() or 0) >= 90, "90 %")
        self.assertEqual(len(self.sandbox.temp_files()), 2)
        wizard.press("Escape")  # does nothing now
        wizard.click("Close")
        self.assertEqual(wizard.wait_end(), 0)
        self.assertFalse(Path("/proc", str(engine)).exists())
        self.assertEqual(self.sandbox.temp_files(), [])
        self.assertEqual(self.version(), "1.6.8")


class Wizards(FaultTestCase):
    def test_engine_of_a_killed_one_finishes_its_work(self):
        wizard, engine = self.start_paused_update()
        wizard.kill()
        left = [self.status_file().name, self.log().name]
        os.kill(engine, signal.SIGCONT)
        wait_until(lambda: not Path("/proc", str(engine)).exists(), "the engine's end")
        self.assertEqual(self.version(), "1.6.9")
        self.assertEqual(self.sandbox.temp_files(), left)

        # The next one neither minds nor touches what is left.
        self.sandbox.scenario("")
        self.assert_updated(self.start_update())
        self.assertEqual(self.sandbox.temp_files(), left)

    def test_two_at_once_show_their_own_errors(self):
        """The kept log has one name for all, and the last one to fail has it."""
        wizards = []
        for number in range(2):
            scenario = self.sandbox.root / f"scenario {number}"
            scenario.write_text("exit-code = 4\nstall = 3\nstage = end\nlog-size = 2M\n"
                                f"message-box = I am number {number}.\n")
            self.sandbox.environment["VARNEL_ENGINE_SCENARIO"] = str(scenario)
            wizards.append(self.start_update())
        kept = self.sandbox.kept_log()
        for number, wizard in enumerate(wizards):
            self.assertEqual(wizard.wait_text(FATAL),
                             f"{FATAL}  I am number {number}.  (log: {kept})")
        logs = [path.read_bytes() for path in (self.sandbox.root / "temp").glob("*.ini.log")]
        self.assertEqual(len(logs), 2)
        self.assertIn(kept.read_bytes(), logs)
        for wizard in wizards:
            self.end(wizard, "Close")
        self.assertEqual(self.sandbox.temp_files(), [kept.name])


if __name__ == "__main__":
    unittest.main()
