"""Checks the stand-in setup engine from outside, as a real process.

STANDIN_ENGINE names the built program. Needs nothing but the standard library.
"""

import json
import os
import re
import shutil
import signal
import stat
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

ENGINE = os.path.abspath(os.environ.get("STANDIN_ENGINE", "standin-setup"))

PAYLOAD_COUNT = 48
STEPS_AFTER_FILES = 6
LIMIT = 15  # seconds for anything that should be over at once

PARENT = r"SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall" + "\\"
KEY_NAME = "{4F1C2A77-0B3D-4E52-9A61-7C2E8D90B4F3}_is1"
MACHINE_KEY = "HKEY_LOCAL_MACHINE\\" + PARENT + KEY_NAME
USER_KEY = "HKEY_CURRENT_USER\\" + PARENT + KEY_NAME

BOM = b"\xef\xbb\xbf"
STAMPED = re.compile(r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}   (\S.*)$")
INDENTED = re.compile(r"^ {26}(\S.*)$")
BOX_MARK = "Defaulting to OK for suppressed message box (OK):"

STATUS_TEXTS = [
    "Extracting application files…",
    "Installing WebView2 Runtime…",
    "Registering .sch and .pcb file types…",
    "Creating shortcuts…",
]


def scratch_parent():
    """In memory where programs may run there: a disk flushes each rewritten status file."""
    memory = "/dev/shm"
    if os.access(memory, os.W_OK) and not os.statvfs(memory).f_flag & os.ST_NOEXEC:
        return memory
    return None


def files_below(folder):
    return sorted(str(p.relative_to(folder)) for p in Path(folder).rglob("*") if p.is_file())


def read_status(path):
    """The keys of a status file as the wizard reads them; empty when there is none."""
    try:
        text = path.read_bytes().decode("utf-8-sig", errors="replace")
    except OSError:
        return {}
    pairs = (line.partition("=") for line in text.splitlines() if "=" in line)
    return {key.strip(): value.strip() for key, _, value in pairs}


class EngineTest(unittest.TestCase):
    """Gives each test its own home, desktop, registry, install folder and scenario."""

    # Every status stays for long enough to be seen on a busy machine.
    AT_LEISURE = "files = 12\ndelay-ms = 100"

    def setUp(self):
        scratch = tempfile.TemporaryDirectory(prefix="standin-", dir=scratch_parent())
        self.addCleanup(scratch.cleanup)
        self.root = Path(scratch.name).resolve()
        self.home = self.root / "home"
        self.home.mkdir()
        self.folder = self.root / "apps" / "Varnel Schematics"
        self.status = self.root / "status.ini"
        self.log = self.root / "setup.log"
        self.registry = self.root / "registry.json"
        self.shortcut = self.home / "Desktop" / "Varnel Schematics.desktop"
        self.environment = {
            "PATH": os.environ["PATH"],
            "HOME": str(self.home),
            "VARNEL_REGISTRY_JSON": str(self.registry),
            "VARNEL_ENGINE_DELAY_MS": "0",
        }
        for name in ("ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"):
            if name in os.environ:
                self.environment[name] = os.environ[name]

    def write_scenario(self, text):
        path = self.root / "scenario.txt"
        path.write_text(text, encoding="utf-8")
        return path

    def arguments(self, tasks="", log=True, folder=True):
        result = ["/VERYSILENT", "/SUPPRESSMSGBOXES", "/NORESTART"]
        if folder:
            result.append(f"/DIR={self.folder}")
        result += [f"/TASKS={tasks}", f"/STATUSFILE={self.status}"]
        if log:
            result.append(f"/LOG={self.log}")
        return result

    def start(self, scenario="", program=ENGINE, arguments=None, **options):
        environment = dict(self.environment)
        if scenario:
            environment["VARNEL_ENGINE_SCENARIO"] = str(self.write_scenario(scenario))
        process = subprocess.Popen(
            [str(program)] + (self.arguments() if arguments is None else arguments),
            env=environment, **options)
        self.addCleanup(self.end, process)
        return process

    @staticmethod
    def end(process):
        if process.poll() is None:
            process.kill()
            process.wait()
        for channel in (process.stdin, process.stdout, process.stderr):
            if channel and not channel.closed:
                channel.close()

    def run_engine(self, scenario="", **options):
        """Runs to the end; the exit code, negative for a signal."""
        return self.start(scenario, **options).wait(LIMIT)

    def install(self, scenario="", **arguments):
        code = self.run_engine(scenario, arguments=self.arguments(**arguments))
        self.assertEqual(code, 0)

    def uninstall(self, scenario=""):
        return self.run_engine(
            scenario, program=self.folder / "unins000.exe",
            arguments=["/VERYSILENT", "/SUPPRESSMSGBOXES", "/NORESTART",
                       f"/STATUSFILE={self.status}"])

    def watch(self, process):
        """Every status seen until the process ends, repetitions left out."""
        seen = []
        while True:
            running = process.poll() is None
            status = read_status(self.status)
            if len(status) == 3 and (not seen or seen[-1] != status):
                seen.append(status)
            if not running:
                return seen
            time.sleep(0.001)

    def wait_for(self, condition, what):
        deadline = time.monotonic() + LIMIT
        while not condition():
            self.assertLess(time.monotonic(), deadline, what)
            time.sleep(0.002)

    def log_texts(self):
        """The log's lines without stamps; a continuation line begins with a tab here."""
        data = self.log.read_bytes()
        self.assertTrue(data.startswith(BOM))
        self.assertTrue(data.endswith(b"\r\n"))
        lines = data[len(BOM):].decode("utf-8").split("\r\n")[:-1]
        texts = []
        for line in lines:
            self.assertNotIn("\n", line)
            stamped, indented = STAMPED.match(line), INDENTED.match(line)
            self.assertTrue(stamped or indented, line)
            texts.append(stamped[1] if stamped else "\t" + indented[1])
        return texts

    def boxes(self):
        texts = self.log_texts()
        return [texts[i + 1].lstrip("\t") for i, text in enumerate(texts) if text == BOX_MARK]

    def registry_content(self):
        return json.loads(self.registry.read_text(encoding="utf-8"))


class HonestInstall(EngineTest):
    def test_installs_every_file(self):
        self.install()
        files = files_below(self.folder)
        self.assertEqual(len(files), PAYLOAD_COUNT + 2)
        for name in ("VarnelSolutions.exe", "libEGL.dll", "Qt6Core.dll", "symbols/ieee.lib",
                     "config/pcb_themes_builtin.json", "unins000.exe", "unins000.dat"):
            self.assertIn(name, files)
        for name in files:
            self.assertGreater((self.folder / name).stat().st_size, 0, name)
        for path in self.folder.rglob("*.json"):
            json.loads(path.read_text(encoding="utf-8"))

    def test_two_installs_are_equal(self):
        self.install()
        first = {name: (self.folder / name).read_bytes() for name in files_below(self.folder)
                 if name != "unins000.dat"}
        self.folder = self.root / "other"
        self.install()
        for name, content in first.items():
            self.assertEqual((self.folder / name).read_bytes(), content, name)

    def test_says_nothing_on_its_channels(self):
        process = self.start(stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        output, _ = process.communicate(timeout=LIMIT)
        self.assertEqual((process.returncode, output), (0, b""))

    def test_status_file_along_the_run(self):
        process = self.start(self.AT_LEISURE)
        seen = self.watch(process)
        self.assertEqual(process.returncode, 0)
        percents = [float(status["progress"]) for status in seen]
        self.assertEqual(percents, sorted(percents))
        self.assertGreater(len(percents), 8)
        self.assertTrue(any(percent % 1 for percent in percents), "no decimals")
        self.assertEqual(seen[-1]["progress"], "100.0")

        texts = [status["status"] for status in seen]
        self.assertEqual(list(dict.fromkeys(texts)), STATUS_TEXTS)
        files = {status["file"] for status in seen if status["file"]}
        self.assertGreater(len(files), 8)
        for name in files:
            self.assertTrue(Path(name).is_file(), name)

    def test_final_status_file(self):
        self.install()
        self.assertEqual(self.status.read_text(encoding="utf-8"),
                         "[status]\nprogress=100.0\nfile=\nstatus=Creating shortcuts…\n")

    def test_log(self):
        self.install(tasks="desktopicon")
        texts = self.log_texts()
        self.assertEqual(texts[0], "Log opened. (Time zone: UTC+00:00)")
        self.assertTrue(texts[1].startswith("Setup version: "))
        self.assertEqual(texts[-1], "Log closed.")
        self.assertIn("Installation process succeeded.", texts)
        self.assertIn(f"Creating directory: {self.folder}", texts)
        self.assertIn(f"Creating directory: {self.folder}/symbols", texts)

        named = [text.removeprefix("Dest filename: ") for text in texts
                 if text.startswith("Dest filename: ")]
        installed = [str(self.folder / name) for name in files_below(self.folder)
                     if not name.startswith("unins000")]
        self.assertEqual(sorted(named), sorted(installed + [str(self.shortcut)]))
        for line in ("-- File entry --", "Installing the file.",
                     "Successfully installed the file."):
            self.assertEqual(texts.count(line), PAYLOAD_COUNT, line)
        self.assertEqual(sum(t.startswith("Time stamp of our file: ") for t in texts),
                         PAYLOAD_COUNT)
        suspicious = re.compile("exception|error|failed|suppressed message box", re.IGNORECASE)
        self.assertEqual([text for text in texts if suspicious.search(text)], [])

    def test_log_names_paths_beyond_ascii(self):
        self.folder = self.root / "Schaltpläne 回路 %1"
        self.install()
        self.assertIn(f"Dest filename: {self.folder}/symbols/ieee.lib", self.log_texts())

    def test_installed_application_records_its_launch(self):
        self.install()
        application = self.folder / "VarnelSolutions.exe"
        record = self.root / "launches"
        for environment in ({}, {"VARNEL_LAUNCH_RECORD": str(record)}):
            subprocess.run([application], check=True, cwd=self.folder / "symbols",
                           env={**self.environment, **environment})
        self.assertEqual(record.read_text(), f"{application}\t{self.folder}/symbols\n")

    def test_default_pace_can_be_followed(self):
        del self.environment["VARNEL_ENGINE_DELAY_MS"]
        began = time.monotonic()
        self.start()
        self.wait_for(lambda: float(read_status(self.status).get("progress") or 0) >= 10,
                      "never came to 10 %")
        self.assertGreater(time.monotonic() - began, 0.5)


class Switches(EngineTest):
    def test_names_ignore_case_and_values_may_be_quoted(self):
        code = self.run_engine(arguments=[
            "/verysilent", "/SuppressMsgBoxes", "/norestart", f'/dir="{self.folder}"',
            '/Tasks="DesktopIcon"', f'/StatusFile="{self.status}"', f'/log="{self.log}"'])
        self.assertEqual(code, 0)
        self.assertTrue((self.folder / "LICENSE.txt").is_file())
        self.assertTrue(self.shortcut.is_file())
        self.assertTrue(self.status.is_file())
        self.assertFalse([text for text in self.log_texts() if "Unknown switch" in text])

    def test_unknown_ones_are_logged_and_ignored(self):
        unknown = ["/SP-", "/GROUP=x", "stray", "/VERYSILENT=1", "/DIR", ""]
        self.assertEqual(self.run_engine(arguments=self.arguments() + unknown), 0)
        logged = [text.removeprefix("Unknown switch, ignored: ")
                  for text in self.log_texts() if text.startswith("Unknown switch")]
        self.assertEqual(logged, unknown)

    def test_the_last_of_two_equal_switches_wins(self):
        other = self.root / "other"
        self.run_engine(arguments=self.arguments() + [f"/DIR={other}"])
        self.assertTrue(other.is_dir())
        self.assertFalse(self.folder.exists())

    def test_no_folder_means_the_home(self):
        for argument in ([], ["/DIR="], ['/DIR=""']):
            with self.subTest(argument):
                self.registry.unlink(missing_ok=True)
                code = self.run_engine(arguments=self.arguments(folder=False) + argument)
                self.assertEqual(code, 0)
                folder = self.home / "Varnel Schematics"
                self.assertEqual(len(files_below(folder)), PAYLOAD_COUNT + 2)
                shutil.rmtree(folder)

    def test_no_folder_means_the_registered_one(self):
        for key in (MACHINE_KEY, USER_KEY, MACHINE_KEY.replace("SOFTWARE", "software")):
            with self.subTest(key):
                folder = self.root / "registered"
                self.registry.write_text(json.dumps({key: {"InstallLocation": f"{folder}/"}}))
                self.assertEqual(self.run_engine(arguments=self.arguments(folder=False)), 0)
                self.assertEqual(len(files_below(folder)), PAYLOAD_COUNT + 2)
                shutil.rmtree(folder)

    def test_folder_is_tidied(self):
        self.install()
        dotted = self.arguments(folder=False)
        dotted.append(f"/DIR={self.folder}/../second/./")
        self.assertEqual(self.run_engine(arguments=dotted), 0)
        self.assertIn(f"Dest filename: {self.folder.parent}/second/LICENSE.txt", self.log_texts())

    def test_runs_without_status_file_and_log(self):
        self.assertEqual(self.run_engine(arguments=[f"/DIR={self.folder}"]), 0)
        self.assertFalse(self.status.exists() or self.log.exists())


class Update(EngineTest):
    def test_overwrites_its_own_files_and_leaves_others(self):
        self.install()
        ours, theirs = self.folder / "LICENSE.txt", self.folder / "symbols" / "mine.lib"
        original = ours.read_bytes()
        ours.write_text("old")
        theirs.write_text("precious")
        self.install()
        self.assertEqual(ours.read_bytes(), original)
        self.assertEqual(theirs.read_text(), "precious")
        texts = self.log_texts()
        self.assertEqual(texts.count("Dest file exists."), PAYLOAD_COUNT)
        self.assertFalse([text for text in texts if text.startswith("Creating directory")])

    def test_uninstall_after_it_removes_what_both_made(self):
        self.install("files = 30", tasks="desktopicon")
        self.install()
        self.assertTrue((self.folder / "data" / "000000" / "file-000029.bin").is_file())
        self.assertEqual(self.uninstall(), 0)
        self.assertFalse(self.folder.exists())
        self.assertFalse(self.shortcut.exists())


class Uninstall(EngineTest):
    def test_leaves_nothing_of_its_own(self):
        before = sorted(self.root.iterdir())
        self.install(tasks="desktopicon")
        self.assertEqual(self.uninstall(), 0)
        added = set(self.root.iterdir()) - set(before)
        self.assertEqual(added, {self.status, self.log, self.registry})
        self.assertEqual(list(self.home.iterdir()), [])
        self.assertEqual(self.registry_content(), {})

    def test_keeps_what_others_made(self):
        self.install()
        (self.folder / "symbols" / "mine.lib").write_text("precious")
        (self.folder / "empty").mkdir()
        self.assertEqual(self.uninstall(), 0)
        left = sorted(str(p.relative_to(self.folder)) for p in self.folder.rglob("*"))
        self.assertEqual(left, ["empty", "symbols", "symbols/mine.lib"])

    def test_keeps_folders_that_were_there_before(self):
        (self.folder / "config").mkdir(parents=True)
        self.install()
        self.assertEqual(self.uninstall(), 0)
        self.assertEqual(list(self.folder.rglob("*")), [self.folder / "config"])

    def test_removes_the_install_folder_when_empty(self):
        self.folder.mkdir(parents=True)
        self.install()
        self.assertEqual(self.uninstall(), 0)
        self.assertFalse(self.folder.exists())
        self.assertTrue(self.folder.parent.exists())

    def test_status_file_along_the_run(self):
        self.install()
        self.status.unlink()
        process = self.start(self.AT_LEISURE, program=self.folder / "unins000.exe",
                             arguments=["/VERYSILENT", f"/STATUSFILE={self.status}"])
        seen = self.watch(process)
        self.assertEqual(process.returncode, 0)
        percents = [float(status["progress"]) for status in seen]
        self.assertEqual(percents, sorted(percents))
        self.assertGreater(len(percents), 8)
        self.assertEqual(seen[-1]["progress"], "100.0")
        self.assertEqual(list(dict.fromkeys(status["status"] for status in seen)),
                         ["Removing application files…", "Removing shortcuts…",
                          "Unregistering file types…"])

    def test_tolerates_files_that_are_gone(self):
        self.install()
        (self.folder / "LICENSE.txt").unlink()
        shutil.rmtree(self.folder / "symbols")
        self.assertEqual(self.uninstall(), 0)
        self.assertFalse(self.folder.exists())

    def test_without_its_list_it_does_not_start(self):
        self.install()
        for content in (None, b"", b"{ broken", b"[]"):
            with self.subTest(content):
                (self.folder / "unins000.dat").unlink(missing_ok=True)
                if content is not None:
                    (self.folder / "unins000.dat").write_bytes(content)
                self.assertEqual(self.uninstall(), 1)
                self.assertTrue((self.folder / "LICENSE.txt").is_file())

    def test_scenario_applies_to_it(self):
        self.install()
        self.assertEqual(self.uninstall("exit-code = 5\nstage = half"), 5)
        self.assertEqual(len(files_below(self.folder)), PAYLOAD_COUNT // 2 + 2)
        self.assertIn(MACHINE_KEY, self.registry_content())
        self.assertEqual(self.uninstall("crash = SEGV\nstage = end"), -signal.SIGSEGV)
        self.assertEqual(files_below(self.folder), ["unins000.dat", "unins000.exe"])
        self.assertEqual(self.uninstall(), 0)
        self.assertFalse(self.folder.exists())


class Shortcut(EngineTest):
    def test_only_when_asked_for(self):
        for tasks, expected in (("", False), ("other", False), ("desktopicon", True)):
            with self.subTest(tasks):
                self.install(tasks=tasks)
                self.assertEqual(self.shortcut.exists(), expected)

    def test_names_the_executable_and_its_folder(self):
        self.folder = self.root / 'odd "$name" 100% \\ `x`'
        self.install(tasks="first,desktopicon")
        entry = dict(line.split("=", 1) for line in self.shortcut.read_text().splitlines()[1:])
        self.assertEqual(self.shortcut.read_text().splitlines()[0], "[Desktop Entry]")
        self.assertEqual(entry["Name"], "Varnel Schematics")
        self.assertEqual(entry["Path"].replace("\\\\", "\\"), str(self.folder))
        value = entry["Exec"].replace("\\\\", "\\").replace("%%", "%")
        self.assertEqual(re.sub(r'\\(["`$\\])', r"\1", value.strip('"')),
                         str(self.folder / "VarnelSolutions.exe"))
        self.assertTrue(os.access(self.shortcut, os.X_OK))

    def test_desktop_folder_of_the_environment(self):
        desktop = self.root / "elsewhere" / "Desk"
        self.environment["XDG_DESKTOP_DIR"] = str(desktop)
        self.install(tasks="desktopicon")
        self.assertTrue((desktop / "Varnel Schematics.desktop").is_file())
        self.assertFalse(self.shortcut.exists())


class Registry(EngineTest):
    OTHERS = {
        r"HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows NT\CurrentVersion": {
            "ProductName": "Windows 11 Pro", "CurrentBuild": "22631", "UBR": 4890, "Big": 1e300},
        r"HKEY_CURRENT_USER\Control Panel": {"Text": "\"quoted\" \\ \t ü 回 😀 \u0001", "Empty": ""},
        "nested": {"list": [1, -2.5, True, None, {}, []]},
    }

    def test_entry_of_an_installation(self):
        self.install()
        self.assertEqual(self.registry_content(), {MACHINE_KEY: {
            "DisplayName": "Varnel Schematics version 1.6.9",
            "DisplayVersion": "1.6.9",
            "Publisher": "Varnel Solutions Team",
            "InstallLocation": f"{self.folder}/",
            "UninstallString": f'"{self.folder}/unins000.exe"',
        }})

    def test_everything_else_stays(self):
        for ascii_only in (True, False):
            with self.subTest(ascii_only):
                self.registry.write_text(json.dumps(self.OTHERS, ensure_ascii=ascii_only))
                self.install()
                content = self.registry_content()
                self.assertEqual(list(content), list(self.OTHERS) + [MACHINE_KEY])
                self.assertEqual(content.pop(MACHINE_KEY)["DisplayVersion"], "1.6.9")
                self.assertEqual(content, self.OTHERS)
                self.assertEqual(self.uninstall(), 0)
                self.assertEqual(self.registry_content(), self.OTHERS)

    def test_update_renews_the_entry(self):
        key = MACHINE_KEY.lower()
        self.registry.write_text(json.dumps({key: {"displayversion": "1.5.0", "Language": "de"}}))
        self.install()
        values = self.registry_content()[key]
        self.assertEqual(values["displayversion"], "1.6.9")
        self.assertEqual(values["Language"], "de")
        self.assertEqual(values["Publisher"], "Varnel Solutions Team")

    def test_missing_empty_and_marked_files_are_fine(self):
        for content in (None, b"", b" \r\n", BOM + b"{}"):
            with self.subTest(content):
                self.registry.unlink(missing_ok=True)
                if content is not None:
                    self.registry.write_bytes(content)
                self.install()
                self.assertEqual(list(self.registry_content()), [MACHINE_KEY])

    def test_a_broken_file_is_left_alone(self):
        for content in ("{", "[]", "{} {}", '{"a": nope}', '{"a": "\\ud800"}', "[" * 5000):
            with self.subTest(content[:20]):
                self.registry.write_text(content)
                self.assertEqual(self.run_engine(), 5)
                self.assertEqual(self.registry.read_text(), content)
                self.assertIn("it holds no JSON object", self.boxes()[0])

    def test_without_the_variable_there_is_none(self):
        del self.environment["VARNEL_REGISTRY_JSON"]
        self.install()
        self.assertEqual(self.uninstall(), 0)
        self.assertFalse(self.registry.exists())

    def test_a_failed_run_leaves_no_entry(self):
        self.assertEqual(self.run_engine("exit-code = 4"), 4)
        self.assertFalse(self.registry.exists())


class RealErrors(EngineTest):
    def test_file_where_the_folder_should_be(self):
        self.folder.parent.mkdir()
        self.folder.write_text("in the way")
        self.assertEqual(self.run_engine(), 3)
        self.assertEqual(len(self.boxes()), 1)
        self.assertIn(f'unable to create the directory "{self.folder}": ', self.boxes()[0])
        self.assertNotIn("Success", self.boxes()[0])
        self.assertFalse(self.status.exists())
        self.assertEqual(self.folder.read_text(), "in the way")

    def test_file_where_a_folder_of_the_payload_should_be(self):
        self.folder.mkdir(parents=True)
        (self.folder / "symbols").write_text("in the way")
        self.assertEqual(self.run_engine(), 5)
        self.assertIn(f'the directory "{self.folder}/symbols"', self.boxes()[0])
        self.assertEqual(self.log_texts()[-1], "Log closed.")

    def test_folder_where_a_file_should_be(self):
        (self.folder / "libEGL.dll").mkdir(parents=True)
        self.assertEqual(self.run_engine(), 5)
        self.assertEqual(self.boxes(), [
            f'Setup was unable to write the file "{self.folder}/libEGL.dll": Is a directory.'])

    @unittest.skipIf(os.geteuid() == 0, "root may write everywhere")
    def test_no_write_access(self):
        self.folder.mkdir(parents=True)
        self.folder.chmod(0o500)
        self.assertEqual(self.run_engine(), 5)
        self.assertIn("Permission denied", self.boxes()[0])
        self.folder = self.folder / "below"
        self.assertEqual(self.run_engine(), 3)
        self.assertIn("Permission denied", self.boxes()[0])
        self.folder.parent.chmod(0o700)

    def test_status_file_and_log_that_cannot_be_written(self):
        self.status = self.root / "missing" / "status.ini"
        self.log = self.root / "missing" / "setup.log"
        self.assertEqual(self.run_engine(), 0)
        self.assertEqual(len(files_below(self.folder)), PAYLOAD_COUNT + 2)

    def test_no_home(self):
        del self.environment["HOME"]
        self.assertEqual(self.run_engine(arguments=self.arguments(folder=False)), 3)
        self.assertEqual(self.run_engine(arguments=self.arguments(tasks="desktopicon")), 5)


class ExitCodes(EngineTest):
    def test_each_code(self):
        for code in list(range(9)) + [9, 255]:
            with self.subTest(code):
                self.assertEqual(self.run_engine(f"exit-code = {code}"), code)
                self.assertEqual(self.log_texts()[-1], "Log closed.")
                self.assertNotIn("Installation process succeeded.", self.log_texts())

    def test_negative_code(self):
        self.assertEqual(self.run_engine("exit-code = -1"), 255)

    def test_stages(self):
        # stage: is there a folder, a status, how many files of the payload
        expected = {"start": (False, None, 0), "before-status": (True, None, 0),
                    "half": (True, "44.4", PAYLOAD_COUNT // 2),
                    "end": (True, "100.0", PAYLOAD_COUNT)}
        for key in ("stage", "exit-stage"):
            for stage, (folder, progress, count) in expected.items():
                with self.subTest(key=key, stage=stage):
                    self.assertEqual(self.run_engine(f"exit-code = 7\n{key} = {stage}"), 7)
                    self.assertEqual(self.folder.exists(), folder)
                    self.assertEqual(read_status(self.status).get("progress"), progress)
                    files = [name for name in files_below(self.folder)
                             if not name.startswith("unins000")]
                    self.assertEqual(len(files), count)
                    shutil.rmtree(self.folder, ignore_errors=True)
                    self.status.unlink(missing_ok=True)

    def test_pause(self):
        process = self.start("pause = half\nexit-code = 7")
        change = os.waitid(os.P_PID, process.pid, os.WSTOPPED | os.WEXITED | os.WNOWAIT)
        self.assertEqual(change.si_status, signal.SIGSTOP)
        self.assertEqual(read_status(self.status)["progress"], "44.4")
        process.send_signal(signal.SIGCONT)
        self.assertEqual(process.wait(LIMIT), 7)
        self.assertEqual(read_status(self.status)["progress"], "100.0")

    def test_own_stage_goes_before_the_common_one(self):
        self.run_engine("exit-stage = start\nstage = end\nexit-code = 2")
        self.assertFalse(self.folder.exists())

    def test_finish_at_once(self):
        for code in (0, 8):
            with self.subTest(code):
                self.assertEqual(
                    self.run_engine(f"finish-at-once = yes\nexit-code = {code}"), code)
                self.assertFalse(self.folder.exists())
                self.assertFalse(self.status.exists())
                self.assertFalse(self.log.exists())
        self.assertEqual(self.run_engine("finish-at-once = yes"), 0)
        self.assertEqual(self.run_engine("finish-at-once = no"), 0)
        self.assertTrue(self.folder.exists())


class Messages(EngineTest):
    def test_box_in_the_log(self):
        self.run_engine("exit-code = 5\nmessage-box = The disk is full: ä <b>100 %</b> = 0")
        texts = self.log_texts()
        at = texts.index(BOX_MARK)
        self.assertEqual(texts[at + 1], "\tThe disk is full: ä <b>100 %</b> = 0")
        self.assertEqual(texts[-1], "Log closed.")

    def test_several_boxes_and_lines(self):
        self.run_engine("message-box = one\\nmore of one\nmessage-box = two\nexit-code = 4\n"
                        "stage = half")
        self.assertEqual(self.boxes(), ["one", "two"])
        self.assertIn("\tmore of one", self.log_texts())

    def test_box_before_each_kind_of_end(self):
        for scenario, code in (("exit-code = 3\nstage = start", 3), ("", 0),
                               ("crash = KILL\nstage = half", -signal.SIGKILL)):
            with self.subTest(scenario):
                self.assertEqual(self.run_engine(scenario + "\nmessage-box = why"), code)
                self.assertEqual(self.boxes(), ["why"])

    def test_extra_log_lines(self):
        self.run_engine("log-line = Something failed early.\nlog-line = And more.\n"
                        "exit-code = 4\nstage = start")
        texts = self.log_texts()
        at = texts.index("Something failed early.")
        self.assertEqual(texts[at + 1], "And more.")

    def test_no_log(self):
        self.assertEqual(self.run_engine("log-none = yes\nmessage-box = lost"), 0)
        self.assertFalse(self.log.exists())

    def test_log_size(self):
        self.assertEqual(self.run_engine("log-size = 5M\nexit-code = 4\nmessage-box = big"), 4)
        size = self.log.stat().st_size
        self.assertGreaterEqual(size, 5 << 20)
        self.assertLess(size, (5 << 20) + 50_000)
        self.assertEqual(self.boxes(), ["big"])

    def test_log_is_padded_after_the_first_status(self):
        process = self.start("log-size = 2M\nstall = forever\nstage = before-status")
        self.wait_for(lambda: (self.folder).is_dir(), "no folder")
        self.assertLess(self.log.stat().st_size, 1 << 20)
        self.end(process)
        self.assertEqual(self.run_engine("log-size = 2M\nexit-code = 1\nstage = half"), 1)
        self.assertGreater(self.log.stat().st_size, 2 << 20)


class Crashes(EngineTest):
    def test_signals(self):
        for name in ("SEGV", "SIGABRT", "sigill", "FPE", "BUS", "KILL", "TERM", "9", "11"):
            number = int(name) if name.isdigit() else signal.Signals[
                "SIG" + name.upper().removeprefix("SIG")]
            with self.subTest(name):
                self.assertEqual(self.run_engine(f"crash = {name}", cwd=self.root), -number)
                self.assertFalse([p for p in self.root.iterdir() if p.name.startswith("core")])

    def test_stages(self):
        expected = {"start": 0, "before-status": 0, "half": PAYLOAD_COUNT // 2,
                    "end": PAYLOAD_COUNT + 2}
        for key in ("stage", "crash-stage"):
            for stage, count in expected.items():
                with self.subTest(key=key, stage=stage):
                    code = self.run_engine(f"crash = SEGV\n{key} = {stage}")
                    self.assertEqual(code, -signal.SIGSEGV)
                    self.assertEqual(len(files_below(self.folder)), count)
                    self.assertNotIn("Log closed.", self.log_texts())
                    shutil.rmtree(self.folder, ignore_errors=True)


class Stalls(EngineTest):
    def test_some_seconds(self):
        for stage in ("start", "before-status", "half", "end"):
            with self.subTest(stage):
                began = time.monotonic()
                self.assertEqual(self.run_engine(f"stall = 0.2\nstall-stage = {stage}"), 0)
                self.assertGreaterEqual(time.monotonic() - began, 0.2)

    def test_with_another_end_afterwards(self):
        began = time.monotonic()
        self.assertEqual(self.run_engine("stall = 0.2\nexit-code = 6\nstage = half"), 6)
        self.assertGreaterEqual(time.monotonic() - began, 0.2)

    def stalled(self, scenario=""):
        process = self.start(f"stall = forever\n{scenario}")
        self.wait_for(lambda: read_status(self.status).get("progress") == "44.4", "no half")
        return process

    def test_forever(self):
        process = self.stalled()
        with self.assertRaises(subprocess.TimeoutExpired):
            process.wait(0.2)
        self.assertEqual(len(files_below(self.folder)), PAYLOAD_COUNT // 2)
        process.terminate()
        self.assertEqual(process.wait(LIMIT), -signal.SIGTERM)

    def test_ignore_termination(self):
        process = self.stalled("ignore-termination = yes")
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            process.send_signal(number)
        with self.assertRaises(subprocess.TimeoutExpired):
            process.wait(0.2)
        process.kill()
        self.assertEqual(process.wait(LIMIT), -signal.SIGKILL)

    def test_crash_of_an_ignored_signal(self):
        self.assertEqual(self.run_engine("ignore-termination = yes\ncrash = TERM"),
                         -signal.SIGTERM)


class StatusFile(EngineTest):
    PLAIN = "[status]\nprogress=100.0\nfile=\nstatus=Creating shortcuts…\n".encode()

    def test_styles(self):
        plain = self.PLAIN
        expected = {
            "plain": plain,
            "bom": BOM + plain,
            "crlf": plain.replace(b"\n", b"\r\n"),
            "no-final-newline": plain[:-1],
            "half": plain[:len(plain) // 2],
            "upper-section": plain.replace(b"[status]", b"[STATUS]"),
            "no-section": plain.replace(b"[status]\n", b""),
            "blanks": plain.replace(b"=", b" = "),
            "bom, crlf, blanks": BOM + plain.replace(b"=", b" = ").replace(b"\n", b"\r\n"),
        }
        for style, content in expected.items():
            with self.subTest(style):
                self.assertEqual(self.run_engine(f"status-style = {style}"), 0)
                self.assertEqual(self.status.read_bytes(), content)

    def test_places(self):
        checks = {
            "normal": lambda: self.status.read_bytes() == self.PLAIN,
            "directory": self.status.is_dir,
            "fifo": lambda: stat.S_ISFIFO(self.status.stat().st_mode),
            "never": lambda: not self.status.exists(),
            "deleted": lambda: not self.status.exists(),
        }
        for place, check in checks.items():
            with self.subTest(place):
                self.assertEqual(self.run_engine(f"status-path = {place}"), 0)
                self.assertTrue(check())
                if self.status.is_dir():
                    self.status.rmdir()
                else:
                    self.status.unlink(missing_ok=True)

    def test_deleted_was_there_before(self):
        self.assertEqual(self.run_engine("status-path = deleted\nexit-code = 2\nstage = half"), 2)
        self.assertEqual(read_status(self.status)["progress"], "44.4")

    def test_it_is_rewritten_in_place(self):
        self.status.write_text("x" * 10_000)
        number = self.status.stat().st_ino
        self.install()
        self.assertEqual(self.status.read_bytes(), self.PLAIN)
        self.assertEqual(self.status.stat().st_ino, number)

    def test_played_values(self):
        values = ["55", "40", "150", "abc", "nan", "-5", "42,5", ""]
        played = "\n".join(f"progress = {value}" for value in values)
        for turn, value in enumerate(values + [""]):
            with self.subTest(turn=turn):
                # Half of the files are done after the first write and one for each file.
                scenario = f"{played}\nfiles = {2 * turn or 1}\nexit-code = 2\nstage = half"
                self.assertEqual(self.run_engine(scenario), 2)
                self.assertEqual(read_status(self.status)["progress"], value)

    def test_played_texts(self):
        self.run_engine("status = <b>bold</b>\nfile = a=b\nexit-code = 2\nstage = half")
        self.assertEqual(self.status.read_text(),
                         "[status]\nprogress=44.4\nfile=a=b\nstatus=<b>bold</b>\n")


class Channels(EngineTest):
    def test_flood_on_both_channels(self):
        process = self.start("flood-stdout = 3M", stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        output, errors = process.communicate(timeout=LIMIT)
        self.assertEqual(process.returncode, 0)
        self.assertEqual(len(output) + len(errors), 3 << 20)
        self.assertAlmostEqual(len(output), len(errors), delta=64 * 1024)

    def test_flood_that_nobody_reads_waits(self):
        process = self.start("flood-stdout = 3M", stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.wait_for(self.status.exists, "no status")
        with self.assertRaises(subprocess.TimeoutExpired):
            process.wait(0.2)
        self.assertEqual(read_status(self.status)["progress"], "0.0")

    def test_flood_into_closed_pipes_goes_on(self):
        process = self.start("flood-stdout = 3M", stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        process.stdout.close()
        process.stderr.close()
        self.assertEqual(process.wait(LIMIT), 0)

    def test_hold_pipes(self):
        pipes = {"stdin": subprocess.PIPE, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE}
        for scenario, code in (("finish-at-once = yes\nexit-code = 3", 3),
                               ("crash = KILL", -signal.SIGKILL)):
            with self.subTest(scenario):
                began = time.monotonic()
                process = self.start(f"{scenario}\nhold-pipes = 0.5", **pipes)
                self.assertEqual(process.wait(LIMIT), code)
                process.stdin.write(b"still open")
                process.stdin.flush()
                self.assertEqual(process.stdout.read(), b"")
                self.assertEqual(process.stderr.read(), b"")
                self.assertGreaterEqual(time.monotonic() - began, 0.5)
                # The system closes the three in any order, so this one may take a moment more.
                with self.assertRaises(BrokenPipeError):
                    while time.monotonic() - began < LIMIT:
                        process.stdin.write(b"closed")
                        process.stdin.flush()
                        time.sleep(0.01)
                try:
                    process.stdin.close()
                except BrokenPipeError:
                    pass


class SecondProcess(EngineTest):
    def test_goes_on_after_the_first(self):
        for scenario, code in (("", 0), ("exit-code = 4", 4), ("crash = KILL", -signal.SIGKILL)):
            with self.subTest(scenario):
                record = self.root / "record"
                record.unlink(missing_ok=True)
                self.assertEqual(
                    self.run_engine(f"{scenario}\nsecond-process = 0.5\nrecord = {record}"), code)
                self.wait_for(lambda: "Second process" in self.status.read_text(), "no report")
                self.wait_for(lambda: b"Dest filename: second" in self.log.read_bytes(), "no log")
                # What is gone stays gone.
                self.status.unlink()
                self.wait_for(lambda: "is done" in record.read_text(), "no end")
                self.assertFalse(self.status.exists())
                lines = [json.loads(line) for line in record.read_text().splitlines()]
                self.assertEqual(lines[0][0], "second process")
                self.assertTrue(lines[0][1].isdigit())
                self.assertEqual(lines[1][1:], self.arguments())
                self.assertEqual(lines[2], ["second process is done"])


class Pace(EngineTest):
    def test_delay(self):
        for scenario, environment in (("delay-ms = 10", "0"), ("", "10")):
            with self.subTest(scenario):
                self.environment["VARNEL_ENGINE_DELAY_MS"] = environment
                began = time.monotonic()
                self.assertEqual(self.run_engine(f"files = 20\n{scenario}"), 0)
                self.assertGreaterEqual(time.monotonic() - began,
                                        0.01 * (20 + STEPS_AFTER_FILES))

    def test_number_of_files(self):
        for count in (1, 2, 1500):
            with self.subTest(count):
                self.install(f"files = {count}")
                self.assertEqual(len(files_below(self.folder)), count + 2)
                self.assertTrue(os.access(self.folder / "VarnelSolutions.exe", os.X_OK))
                self.assertEqual(self.uninstall(), 0)
                self.assertFalse(self.folder.exists())


class Scenarios(EngineTest):
    def test_record_of_the_arguments(self):
        first, second = self.root / "first", self.root / "second"
        self.environment["VARNEL_ENGINE_RECORD"] = str(second)
        scenario = f"record = {first}\nfinish-at-once = yes"
        lists = [["/DIR=a \"b\"\\c\n\t", "", "/TASKS=", "/LOG=ü%1"], []]
        for arguments in lists:
            self.run_engine(scenario, arguments=arguments)
        for file in (first, second):
            lines = file.read_text(encoding="utf-8").splitlines()
            self.assertEqual([json.loads(line) for line in lines],
                             [[ENGINE] + arguments for arguments in lists])

    def test_where_the_scenario_comes_from(self):
        program = self.root / "bin" / "standin-setup"
        program.parent.mkdir()
        shutil.copy2(ENGINE, program)
        self.assertEqual(self.run_engine(program=program), 0)
        (program.parent / "standin-setup.scenario").write_text("exit-code = 2")
        self.assertEqual(self.run_engine(program=program), 2)
        self.assertEqual(self.run_engine("exit-code = 3", program=program), 3)
        other = self.root / "other.txt"
        other.write_text("exit-code = 4")
        self.assertEqual(self.run_engine("exit-code = 3", program=program,
                                         arguments=self.arguments() + [f"/SCENARIO={other}"]), 4)

    def test_layout_of_the_file(self):
        self.assertEqual(self.run_engine(
            "# comment = 1\r\n\r\n   \n  #exit-code = 9\n  exit-code   =   6  \r\n"), 6)
        self.assertEqual(self.run_engine("# nothing but a comment"), 0)

    def test_what_cannot_be_understood_ends_the_run(self):
        for text in ("exit-kode = 3", "exit-code", "exit-code = x", "exit-code = 3x",
                     "stage = middle", "crash = NOPE", "crash = 0", "stall = soon", "stall = -1",
                     "stall = nan", "flood-stdout = 3T", "log-size = ", "log-none = maybe",
                     "files = 0", "status-style = bold", "status-path = roof", "delay-ms = -1"):
            with self.subTest(text):
                process = self.start(text, stderr=subprocess.PIPE)
                _, errors = process.communicate(timeout=LIMIT)
                self.assertEqual(process.returncode, 64)
                self.assertIn(text.strip().encode(), errors)
                self.assertFalse(self.log.exists())

    def test_a_missing_file_ends_the_run(self):
        self.environment["VARNEL_ENGINE_SCENARIO"] = str(self.root / "nowhere")
        process = self.start(stderr=subprocess.PIPE)
        _, errors = process.communicate(timeout=LIMIT)
        self.assertEqual(process.returncode, 64)
        self.assertIn(b"nowhere", errors)


if __name__ == "__main__":
    unittest.main()
