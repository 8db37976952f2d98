"""The engine dies or hangs: for each stage, what the user sees and what is left on disk."""

import os
import signal
import time
import unittest
from pathlib import Path

from faults import POLLS, FaultTestCase
from wizard import UNINSTALL_KEY, wait_until


class Engine(FaultTestCase):
    def test_killed_at_every_stage(self):
        for stage, has_files in (("start", False), ("before-status", False), ("half", True),
                                 ("end", True)):
            with self.subTest(stage=stage):
                self.sandbox.scenario("crash = KILL", f"stage = {stage}")
                wizard = self.start_update()
                self.assert_failure(wizard, "Process crashed")
                self.assertEqual(self.sandbox.temp_files(), [])
                self.assertEqual(bool(self.files_below(self.folder)), has_files)
                # The update can be had again: nothing has been noted down as done.
                self.assertEqual(self.version(), "1.6.8")
        self.sandbox.scenario("")
        self.assert_updated(self.start_update())

    def test_uninstaller_killed_at_every_stage(self):
        for stage, has_files in (("start", True), ("before-status", True), ("half", True),
                                 ("end", False)):
            with self.subTest(stage=stage):
                uninstaller = self.uninstaller()
                self.sandbox.scenario("crash = KILL", f"stage = {stage}")
                wizard = self.start("--uninstall")
                wizard.click("Uninstall")
                self.assert_failure(wizard, "Process crashed")
                self.assertEqual(self.sandbox.temp_files(), [])
                left = set(self.files_below(uninstaller.parent))
                self.assertEqual(left > {"unins000.exe", "unins000.dat"}, has_files)
                # It can be had again, and takes the rest away.
                self.assertTrue(uninstaller.exists())
                self.assertIn(UNINSTALL_KEY, self.sandbox.registry())
        self.sandbox.scenario("")
        wizard = self.start("--uninstall")
        wizard.click("Uninstall")
        wizard.wait_text("See You Later!")
        self.end(wizard, "Close")
        self.assertFalse(uninstaller.parent.exists())
        self.assertNotIn(UNINSTALL_KEY, self.sandbox.registry())

    def test_hangs_at_every_stage(self):
        for stage, least in (("start", 0), ("before-status", 0), ("end", 90)):
            with self.subTest(stage=stage):
                self.sandbox.scenario("stall = forever", f"stage = {stage}", "delay-ms = 0")
                wizard = self.start_update()
                engine = self.engine_of(wizard)
                wait_until(lambda: (wizard.bar_value() or 0) >= least, f"{least} %")
                time.sleep(POLLS)
                # The window answers, and its cross ends both.
                wizard.click("Close")
                self.assertEqual(wizard.wait_end(), 0)
                self.assertFalse(Path("/proc", str(engine)).exists())
                self.assertEqual(self.sandbox.temp_files(), [])
                self.assertEqual(self.version(), "1.6.8")

    def test_dies_while_it_writes_as_fast_as_it_can(self):
        self.sandbox.scenario("files = 300000", "delay-ms = 0", "ignore-termination = yes")
        wizard = self.start_update()
        engine = self.engine_of(wizard)
        values = []
        end = time.monotonic() + 2
        while time.monotonic() < end:
            values.append(wizard.bar_value() or 0)
        wait_until(lambda: wizard.bar_value() > values[0], "the bar to move")
        os.kill(engine, signal.SIGTERM)  # to which it is deaf
        before = wizard.bar_value()
        wait_until(lambda: wizard.bar_value() > before, "the bar to move on")
        os.kill(engine, signal.SIGKILL)
        self.assertEqual(values, sorted(values))
        self.assert_small(wizard)
        self.assert_failure(wizard, "Process crashed")
        self.assertEqual(self.sandbox.temp_files(), [])

    def test_second_process_of_a_removal_finishes_when_the_window_closes(self):
        uninstaller = self.uninstaller()
        self.sandbox.scenario("second-process = 1.5")
        wizard = self.start("--uninstall")
        wizard.click("Uninstall")
        wait_until(lambda: not uninstaller.exists(), "the end of the first process")
        wizard.click("Close")
        self.assertEqual(wizard.wait_end(), 0)
        self.assertFalse(self.is_running(self.second_process()))
        self.assertEqual(self.sandbox.engine_runs()[-1], ["second process is done"])
        self.assertEqual(self.sandbox.temp_files(), [])


if __name__ == "__main__":
    unittest.main()
