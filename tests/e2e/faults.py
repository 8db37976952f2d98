"""What the tests of faults share: an update by the real engine process, which can be stopped half-way,
and a look at what is left on disk."""

import os
import signal
import subprocess
from pathlib import Path

from testcase import ENGINE, WizardTestCase
from wizard import UNINSTALL_KEY, wait_until

MEGABYTE = 1024 * 1024
POLLS = 0.2  # seconds in which the wizard looks at the engine's files a few times

FATAL = "A fatal error occurred during installation."


class FaultTestCase(WizardTestCase):
    def setUp(self):
        super().setUp()
        self.sandbox.environment["VARNEL_REDUCED_MOTION"] = "1"
        self.folder = self.sandbox.root / "installed"
        self.program = None  # another than the wizard itself, which leads to it

    def start_update(self):
        """A wizard that has just been told to update, which takes the fewest steps."""
        self.folder.mkdir(exist_ok=True)
        self.sandbox.record_installation(DisplayVersion="1.6.8", InstallLocation=str(self.folder))
        wizard = self.start("--setup-exe", ENGINE, program=self.program)
        wizard.go("Update Now", "Ready to Update")
        wizard.click("Update")
        return wizard

    def start_paused_update(self, *scenario):
        """One whose engine has stopped half-way, until SIGCONT; with the engine's number."""
        self.sandbox.scenario("files = 20", "delay-ms = 50", "pause = half", *scenario)
        wizard = self.start_update()
        engine = self.wait_paused(wizard)
        self.assertLess(wizard.bar_value(), 50)
        return wizard, engine

    def wait_paused(self, wizard):
        """Waits until its engine has stopped and the screen says so; returns the engine's number."""
        engine = self.engine_of(wizard)
        self.addCleanup(self.end_process, engine)
        state = Path("/proc", str(engine), "stat")
        wait_until(lambda: state.read_text().rsplit(")", 1)[1].split()[0] == "T", "the pause")
        wait_until(lambda: (wizard.bar_value() or 0) > 35, "half of the run")
        return engine

    def engine_of(self, wizard):
        def find():
            return subprocess.run(["pgrep", "-P", str(wizard.process.pid)],
                                  capture_output=True, text=True).stdout.split()
        (engine,) = wait_until(find, "the engine's process")
        return int(engine)

    def end_process(self, number):
        try:
            os.kill(number, signal.SIGKILL)
        except ProcessLookupError:
            pass

    def status_file(self):
        (path,) = (self.sandbox.root / "temp").glob("varnel_setup_*.ini")
        return path

    def log(self):
        (path,) = (self.sandbox.root / "temp").glob("varnel_setup_*.ini.log")
        return path

    def assert_updated(self, wizard):
        """The run goes well and leaves nothing in the temp folder."""
        wizard.wait_text("Varnel Schematics has been updated")
        self.end(wizard, "Close")
        self.assertEqual(self.version(), "1.6.9")

    def version(self):
        return self.sandbox.registry()[UNINSTALL_KEY]["DisplayVersion"]
