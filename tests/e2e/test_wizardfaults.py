"""The wizard itself is killed, its clock jumps, there are fifty of it: what the next one finds, and
what is left on disk."""

import os
import signal
import subprocess
import unittest
from pathlib import Path

from faults import FATAL, FaultTestCase
from testcase import ENGINE
from wizard import Atspi, GLib, Wizard, wait_until


class KilledWizard(FaultTestCase):

    def test_during_a_run_the_engine_finishes_its_work(self):
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

    def test_after_a_failure(self):
        self.sandbox.scenario("exit-code = 4", "message-box = The disk is full.")
        wizard = self.start_update()
        wizard.wait_text(FATAL)
        wizard.kill()
        left = self.sandbox.temp_files()
        self.assertEqual(len(left), 3)  # its status file, its log, and the log that it has kept
        self.assertIn(self.sandbox.kept_log().name, left)
        self.sandbox.scenario("")
        self.assert_updated(self.start_update())
        self.assertEqual(self.sandbox.temp_files(), left)

    def test_during_a_removal(self):
        uninstaller = self.uninstaller()
        self.sandbox.scenario("pause = half")
        wizard = self.start("--uninstall")
        wizard.click("Uninstall")
        engine = self.wait_paused(wizard)
        wizard.kill()
        os.kill(engine, signal.SIGCONT)
        wait_until(lambda: not Path("/proc", str(engine)).exists(), "the engine's end")
        self.assertFalse(uninstaller.parent.exists())
        self.assertEqual(len(self.sandbox.temp_files()), 1)
        wizard = self.start()
        wizard.wait_text("Welcome to the Varnel Schematics Setup Wizard")
        self.end(wizard, "Cancel")


class Clock(FaultTestCase):
    def test_runs_backwards(self):
        self.sandbox.environment.update(
            LD_PRELOAD=os.environ["CLOCK_RUNNING_BACK"],
            ASAN_OPTIONS="verify_asan_link_order=0")  # only of use where that is built in
        self.assert_updated(self.start_update())
        self.sandbox.scenario("exit-code = 4", "message-box = The disk is full.")
        self.assert_failure(self.start_update(), f"{FATAL}  The disk is full.  "
                            f"(log: {self.sandbox.kept_log()})")
        # Otherwise nobody has looked at that clock.
        stamps = [line.split("   ")[0] for line in
                  self.sandbox.kept_log().read_text(encoding="utf-8-sig").splitlines()
                  if line.startswith("2")]
        self.assertGreater(stamps[0], stamps[-1])


class TwoFailures(FaultTestCase):
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


class StartedWizard(Wizard):
    """One whose process and window are there already."""

    def __init__(self, process, application):
        self.process = process
        self.application = application

    def act(self, button):
        """Presses a button without the mouse, wherever its window is."""
        node = next(node for node, role, name in self.widgets()
                    if name == button and role in ("push button", "button"))
        Atspi.Action.do_action(node, 0)


class ManyWizards(FaultTestCase):
    COUNT = 50

    def test_at_once_they_keep_to_their_own_files(self):
        """One temp folder for all; each removes a copy of its own and tells its own story."""
        processes = [self.start_removal(number) for number in range(self.COUNT)]
        wizards = wait_until(lambda: self.all_on_the_bus(processes), "all wizards on the bus", 90)
        for wizard in wizards:
            wizard.act("Uninstall")
        for number, wizard in enumerate(wizards):
            wizard.wait_text(f"I am number {number}.")
        self.assertEqual(len(self.sandbox.temp_files()), self.COUNT)

        # The end of one is nobody else's.
        self.end_process(self.engine_of(wizards[7]))
        wizards[7].wait_text("Process crashed")
        wizards[7].act("Close")
        self.assertEqual(wizards[7].wait_end(), 0)
        self.assertEqual(len(self.sandbox.temp_files()), self.COUNT - 1)
        self.assertTrue(wizards[8].has_text("I am number 8."))
        del wizards[7]

        for wizard in wizards:
            wizard.act("Close")
        for wizard in wizards:
            self.assertEqual(wizard.wait_end(), 0)
        self.assertEqual(self.sandbox.temp_files(), [])
        self.assertEqual((self.sandbox.root / "stderr.txt").read_text(), "")

    def start_removal(self, number):
        root = self.sandbox.root
        copy = root / f"copy {number}"
        environment = {**self.sandbox.environment,
                       "VARNEL_REGISTRY_JSON": str(root / f"registry {number}")}
        subprocess.run([ENGINE, "/VERYSILENT", f"/DIR={copy}"], check=True,
                       env={**environment, "VARNEL_ENGINE_DELAY_MS": "0"})
        scenario = root / f"scenario {number}"
        scenario.write_text(f"stall = forever\nstage = half\nstatus = I am number {number}.\n")
        environment["VARNEL_ENGINE_SCENARIO"] = str(scenario)
        with open(root / "stderr.txt", "ab") as stderr:
            process = subprocess.Popen(
                [os.environ["VARNEL_SETUP"], "--uninstall", "--uninstaller", copy / "unins000.exe"],
                env=environment, cwd=root, stdin=subprocess.DEVNULL, stderr=stderr)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def all_on_the_bus(self, processes):
        applications = {}
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            try:
                child = desktop.get_child_at_index(index)
                if child and child.get_child_count():
                    applications[child.get_process_id()] = child
            except GLib.Error:
                continue
        if any(process.pid not in applications for process in processes):
            return None
        return [StartedWizard(process, applications[process.pid]) for process in processes]


if __name__ == "__main__":
    unittest.main()
