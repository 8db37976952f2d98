"""What a machine can do to a run: the engine dies, its files turn into something else, the temp
folder fills up or goes, the clock jumps, the wizard itself is killed. Each with the real engine
process; for each, what the user sees and what is left on disk."""

import os
import shutil
import signal
import stat
import subprocess
import time
import unittest
from pathlib import Path

from testcase import ENGINE, WizardTestCase
from wizard import UNINSTALL_KEY, Atspi, GLib, Wizard, wait_until

MEGABYTE = 1024 * 1024
MEMORY_LIMIT = 100 * MEGABYTE
POLLS = 0.2  # seconds in which the wizard looks at the engine's files a few times

FATAL = "A fatal error occurred during installation."
UPDATED = "Varnel Schematics has been updated"
IS_ROOT = os.geteuid() == 0


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
        wizard = Wizard("--setup-exe", ENGINE, sandbox=self.sandbox, program=self.program)
        self.addCleanup(lambda: self.assertEqual(wizard.warnings(), ""))
        self.addCleanup(wizard.kill)
        wizard.go("Update Now", "Ready to Update")
        wizard.click("Update")
        return wizard

    def start_paused_update(self, *scenario):
        """One whose engine has been stopped in the middle of its work; with the engine's number."""
        self.sandbox.scenario("files = 20", "delay-ms = 50", *scenario)
        wizard = self.start_update()
        engine = self.engine_of(wizard)
        wait_until(lambda: 5 < (wizard.bar_value() or 0), "the bar to move")
        os.kill(engine, signal.SIGSTOP)
        self.addCleanup(self.end_process, engine)
        self.assertLess(wizard.bar_value(), 90)
        return wizard, engine

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
        wizard.wait_text(UPDATED)
        self.end(wizard, "Close")
        self.assertEqual(self.version(), "1.6.9")

    def version(self):
        return self.sandbox.registry()[UNINSTALL_KEY]["DisplayVersion"]

    def empty_temp(self):
        for path in (self.sandbox.root / "temp").iterdir():
            path.rmdir() if path.is_dir() and not path.is_symlink() else path.unlink()


def remove(path):
    path.rmdir() if path.is_dir() and not path.is_symlink() else path.unlink()


def put(make):
    """Puts what `make` makes in a file's place at one stroke, as a rename does."""
    def change(path):
        beside = path.with_name("beside")
        make(beside)
        if path.is_dir() or beside.is_dir():
            remove(path)
        beside.rename(path)
    return change


def sparse(size):
    def make(path):
        path.write_text("progress=60\nstatus=One gigabyte\n")
        os.truncate(path, size)
    return make


def zero_device(path):
    os.mknod(path, 0o666 | stat.S_IFCHR, os.makedev(1, 5))


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
        for stage in ("start", "before-status", "half"):
            with self.subTest(stage=stage):
                uninstaller = self.uninstaller()
                self.sandbox.scenario("crash = KILL", f"stage = {stage}")
                wizard = self.start("--uninstall")
                wizard.click("Uninstall")
                self.assert_failure(wizard, "Process crashed")
                self.assertEqual(self.sandbox.temp_files(), [])
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
        self.sandbox.scenario("files = 100000", "delay-ms = 0", "ignore-termination = yes")
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
        self.assertLess(wizard.peak_memory(), MEMORY_LIMIT)
        self.assert_failure(wizard, "Process crashed")
        self.assertEqual(self.sandbox.temp_files(), [])

    def test_dies_half_way_through_the_status_file(self):
        self.sandbox.scenario("status-style = half", "crash = KILL", "stage = half")
        self.assert_failure(self.start_update(), "Process crashed")
        self.assertEqual(self.sandbox.temp_files(), [])


class StatusFile(FaultTestCase):
    def test_whatever_takes_its_place_the_run_goes_on(self):
        wizard, engine = self.start_paused_update()
        status = self.status_file()
        text = put(lambda path: path.write_text("progress=55\nstatus=Another file\n"))
        changes = [("another file", text),
                   ("an older one", put(lambda path: path.write_text("progress=3\n"))),
                   ("nothing", remove),
                   ("a folder", lambda path: path.mkdir()),
                   ("a FIFO", put(os.mkfifo)),
                   ("a link to a device", put(lambda path: path.symlink_to("/dev/zero"))),
                   ("a link to itself", put(lambda path: path.symlink_to(path))),
                   ("a dangling link", put(lambda path: path.symlink_to("gone"))),
                   ("one gigabyte", put(sparse(1024 * MEGABYTE))),
                   ("binary", put(lambda path: path.write_bytes(os.urandom(100_000)))),
                   ("no more than its name", put(lambda path: path.write_text("")))]
        if IS_ROOT:
            changes.insert(0, ("a device", put(zero_device)))
        before = wizard.bar_value()
        for name, change in changes:
            with self.subTest(place=name):
                change(status)
                time.sleep(POLLS)
                value = wizard.bar_value()
                self.assertGreaterEqual(value, before)
                before = value
                if name == "another file":
                    self.assertAlmostEqual(value, 55, delta=1)
                    wizard.wait_text("Another file")
                if name == "one gigabyte":
                    self.assertAlmostEqual(value, 60, delta=1)
                    wizard.wait_text("One gigabyte")
        self.assertLess(wizard.peak_memory(), MEMORY_LIMIT)
        os.kill(engine, signal.SIGCONT)
        self.assert_updated(wizard)
        self.assertEqual(self.sandbox.temp_files(), [])

    def test_what_is_cleared_away(self):
        precious = self.sandbox.root / "precious.txt"
        precious.write_text("progress=1\nmine\n")
        for name, make, stays in (
                ("folder", lambda path: path.mkdir(), True),
                ("FIFO", os.mkfifo, False),
                ("link to a device", lambda path: path.symlink_to("/dev/zero"), False),
                ("link to a file", lambda path: path.symlink_to(precious), False)):
            with self.subTest(place=name):
                wizard, engine = self.start_paused_update()
                status = self.status_file()
                put(make)(status)
                time.sleep(POLLS)
                os.kill(engine, signal.SIGKILL)
                self.assert_failure(wizard, "Process crashed")
                # Somebody else's folder is not ours to clear away, with all that may be in it.
                self.assertEqual(self.sandbox.temp_files(), [status.name] if stays else [])
                self.empty_temp()
        self.assertEqual(precious.read_text(), "progress=1\nmine\n")
        self.assertTrue(Path("/dev/zero").is_char_device())

    def test_rewritten_without_a_pause(self):
        turns = 200_000  # which takes a few seconds
        wizard, engine = self.start_paused_update()
        status = self.status_file()
        writer = subprocess.Popen(
            ["/usr/bin/python3", "-c",
             "import os, sys\n"
             "file = os.open(sys.argv[1], os.O_WRONLY)\n"
             "for turn in range(int(sys.argv[2])):\n"
             "    os.ftruncate(file, 0)\n"
             "    text = f'progress={turn * 7 % 60}\\nstatus=Turn {turn} of many\\n'\n"
             "    os.pwrite(file, text.encode(), 0)\n",
             str(status), str(turns)])
        self.addCleanup(writer.wait)
        self.addCleanup(writer.kill)
        values = []
        while writer.poll() is None:
            values.append(wizard.bar_value())
        self.assertEqual(writer.returncode, 0)
        wizard.wait_text(f"Turn {turns - 1} of many")
        self.assertGreater(len(values), 3)
        self.assertEqual(values, sorted(values))
        os.kill(engine, signal.SIGCONT)
        self.assert_updated(wizard)
        self.assertEqual(self.sandbox.temp_files(), [])


class Log(FaultTestCase):
    BOX = ("exit-code = 4", "message-box = The disk is full.")

    def explained(self):
        return f"{FATAL}  The disk is full.  (log: {self.sandbox.kept_log()})"

    def test_while_it_is_read(self):
        for name, change, message, kept in (
                ("cut off", lambda path: os.truncate(path, 0), self.explained(), True),
                ("removed", remove, FATAL, False),
                ("folder", lambda path: (remove(path), path.mkdir()), FATAL, False),
                ("FIFO", put(os.mkfifo), FATAL, False),
                ("device", put(lambda path: path.symlink_to("/dev/zero")), FATAL, False),
                ("binary", put(lambda path: path.write_bytes(b"\0\xff\n" * MEGABYTE)), None, True)):
            with self.subTest(log=name):
                wizard, engine = self.start_paused_update(*self.BOX)
                change(self.log())
                time.sleep(POLLS)
                os.kill(engine, signal.SIGCONT)
                if message:
                    self.assert_failure(wizard, message)
                else:
                    shown = wizard.wait_text(FATAL)
                    self.assertTrue(shown.endswith(f"  (log: {self.sandbox.kept_log()})"), shown)
                    self.end(wizard, "Close")
                self.assertEqual(self.sandbox.kept_log().exists(), kept)
                self.empty_temp()

    def test_line_of_200_megabytes(self):
        for box in (self.BOX, self.BOX[:1]):
            with self.subTest(box=box):
                wizard, engine = self.start_paused_update(*box)
                with open(self.log(), "ab") as log:
                    log.write(b"\n")
                    for _ in range(200):
                        log.write(b"x" * MEGABYTE)
                time.sleep(POLLS)
                os.kill(engine, signal.SIGCONT)
                message = wizard.wait_text(FATAL)
                if box == self.BOX:
                    self.assertEqual(message, self.explained())
                self.assertLess(len(message), 100_000)
                self.assertTrue(message.endswith(f"(log: {self.sandbox.kept_log()})"))
                self.assertLess(wizard.peak_memory(), MEMORY_LIMIT)
                self.assertGreater(self.sandbox.kept_log().stat().st_size, 200 * MEGABYTE)
                self.end(wizard, "Close")
                self.empty_temp()

    def test_hole_of_a_gigabyte(self):
        wizard, engine = self.start_paused_update(*self.BOX)
        log = self.log()
        # Which names no file, so that the log's stays on screen.
        self.status_file().write_text("progress=60\n")
        os.truncate(log, 1024 * MEGABYTE)
        with open(log, "ab") as file:
            file.write(b"\n2026-01-01 00:00:00.000   Dest filename: C:\\after the hole.dll\r\n")
        wizard.wait_text("after the hole.dll")
        os.kill(engine, signal.SIGCONT)
        wizard.wait_text(FATAL)
        self.assertLess(wizard.peak_memory(), MEMORY_LIMIT)
        self.assert_failure(wizard, self.explained())


class TempFolder(FaultTestCase):
    def behind_mount(self, options, prepare="true"):
        """Lets the wizard see a file system of its own in the temp folder's place."""
        if not IS_ROOT or subprocess.run(["unshare", "-m", "true"]).returncode != 0:
            self.skipTest("This user may not mount anything.")
        inner = self.sandbox.root / "inner"
        inner.write_text(f'#!/bin/sh\nmount -t tmpfs -o {options} none "$TMPDIR"\n{prepare}\n'
                         f'exec "{os.environ["VARNEL_SETUP"]}" "$@"\n')
        outer = self.sandbox.root / "outer"
        outer.write_text(f'#!/bin/sh\nexec unshare -m "{inner}" "$@"\n')
        for script in (inner, outer):
            script.chmod(0o755)
        self.program = str(outer)

    def seen_by(self, wizard):
        return Path(f"/proc/{wizard.process.pid}/root{self.sandbox.root}/temp")

    def runs_well_and_fails_well(self, detail):
        self.assert_updated(self.start_update())
        self.sandbox.scenario("exit-code = 4", "message-box = The disk is full.")
        self.assert_failure(self.start_update(), FATAL + detail)

    def test_is_not_there(self):
        (self.sandbox.root / "temp").rmdir()
        # Qt then takes the working folder for it.
        kept = self.sandbox.root / "varnel_setup_last.log"
        self.runs_well_and_fails_well(f"  The disk is full.  (log: {kept})")
        self.assertTrue(kept.exists())
        self.assertEqual(list(self.sandbox.root.glob("varnel_setup_*.ini*")), [])
        self.assertFalse((self.sandbox.root / "temp").exists())

    def test_is_a_file(self):
        (self.sandbox.root / "temp").rmdir()
        (self.sandbox.root / "temp").write_text("mine")
        self.runs_well_and_fails_well("")
        self.assertEqual((self.sandbox.root / "temp").read_text(), "mine")

    def test_cannot_be_written(self):
        self.behind_mount("ro")
        self.runs_well_and_fails_well("")

    def test_is_full_from_the_start(self):
        self.behind_mount("size=4k", 'head -c 4096 /dev/zero > "$TMPDIR/filler"')
        # Names are still to be had, but not a byte to go with them.
        self.runs_well_and_fails_well(f"  Log: {self.sandbox.kept_log()}")

    def fill(self, folder):
        """Leaves no room for a single byte."""
        with open(folder / "filler", "wb", buffering=0) as file:
            try:
                while True:
                    file.write(b"." * 512)
            except OSError:
                pass

    def test_fills_up(self):
        self.behind_mount("size=64k")
        wizard, engine = self.start_paused_update("exit-code = 4", "message-box = Full.",
                                                  "log-size = 20K")
        temp = self.seen_by(wizard)
        self.fill(temp)
        os.kill(engine, signal.SIGCONT)
        message = wizard.wait_text(FATAL)
        self.assertTrue(message.endswith(f"(log: {self.sandbox.kept_log()})"), message)
        # What could not be kept whole has not been left in parts either.
        kinds = {name if name == "filler" else Path(name).suffix
                 for name in os.listdir(temp)}
        self.assertLessEqual(kinds, {"filler", ".ini", ".log"})
        self.assertFalse([name for name in os.listdir(temp) if name.startswith("qt_temp")])
        self.end(wizard, "Close")

    def test_goes_during_a_run(self):
        for scenario, outcome in ((), None), (("exit-code = 4",), FATAL):
            with self.subTest(scenario=scenario):
                (self.sandbox.root / "temp").mkdir(exist_ok=True)
                wizard, engine = self.start_paused_update(*scenario)
                shutil.rmtree(self.sandbox.root / "temp")
                time.sleep(POLLS)
                os.kill(engine, signal.SIGCONT)
                if outcome:
                    self.assert_failure(wizard, outcome)
                else:
                    self.assert_updated(wizard)
                self.assertFalse((self.sandbox.root / "temp").exists())


class KilledWizard(FaultTestCase):
    def test_before_a_run(self):
        self.sandbox.record_installation(DisplayVersion="1.6.8",
                                         InstallLocation=str(self.sandbox.root))
        wizard = self.start("--setup-exe", ENGINE)
        wizard.kill()
        self.assertEqual(self.sandbox.temp_files(), [])
        wizard = self.start("--setup-exe", ENGINE)
        wizard.go("Update Now", "Ready to Update")
        wizard.process.send_signal(signal.SIGTERM)
        wizard.wait_end()
        self.assertEqual(self.sandbox.temp_files(), [])
        self.assertEqual(self.sandbox.engine_runs(), [])

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

    def test_during_and_after_a_removal(self):
        uninstaller = self.uninstaller()
        self.sandbox.scenario("stall = 1", "stage = half")
        wizard = self.start("--uninstall")
        wizard.click("Uninstall")
        engine = self.engine_of(wizard)
        wait_until(lambda: (wizard.bar_value() or 0) > 40, "half of the run")
        wizard.kill()
        wait_until(lambda: not Path("/proc", str(engine)).exists(), "the engine's end")
        self.assertFalse(uninstaller.parent.exists())
        self.assertEqual(len(self.sandbox.temp_files()), 1)
        wizard = self.start()
        wizard.wait_text("Welcome to the Varnel Schematics Setup Wizard")
        self.end(wizard, "Cancel")

    def test_after_a_run(self):
        wizard = self.start_update()
        wizard.wait_text(UPDATED)
        wizard.kill()
        self.assertEqual(len(self.sandbox.temp_files()), 2)  # its status file and its log
        wizard = self.start()
        self.end(wizard, "Skip")
        self.assertEqual(len(self.sandbox.temp_files()), 2)


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
