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
import sys
import tempfile
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1]))
from product import PRODUCT, UNINSTALL_KEY_NAME  # noqa: E402

ENGINE = os.path.abspath(os.environ.get("STANDIN_ENGINE", "standin-setup"))

PAYLOAD_COUNT = 48
LIMIT = 15  # seconds for anything that should be over at once

KEY = r"SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall" + "\\" + UNINSTALL_KEY_NAME
MACHINE_KEY = "HKEY_LOCAL_MACHINE\\" + KEY
USER_KEY = "HKEY_CURRENT_USER\\" + KEY

BOM = b"\xef\xbb\xbf"
STAMPED = re.compile(r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}   (\S.*)$")
INDENTED = re.compile(r"^ {26}(\S.*)$")
BOX_MARK = "Defaulting to OK for suppressed message box (OK):"


def files_below(folder):
    return sorted(str(p.relative_to(folder)) for p in folder.rglob("*") if p.is_file())


class StandinEngine(unittest.TestCase):
    """Each test has its own home, desktop, registry, install folder and scenario."""

    def setUp(self):
        # In memory where there is such a folder: a disk flushes each rewritten status file.
        scratch = tempfile.TemporaryDirectory(dir="/dev/shm" if os.path.isdir("/dev/shm") else None)
        self.addCleanup(scratch.cleanup)
        self.root = Path(scratch.name).resolve()
        self.home = self.root / "home"
        self.home.mkdir()
        self.folder = self.root / "apps" / PRODUCT["name"]
        self.status = self.root / "status.ini"
        self.log = self.root / "setup.log"
        self.registry = self.root / "registry.json"
        self.shortcut = self.home / "Desktop" / f"{PRODUCT['name']}.desktop"
        self.environment = {
            "PATH": os.environ["PATH"],
            "HOME": str(self.home),
            "VARNEL_REGISTRY_JSON": str(self.registry),
            "VARNEL_ENGINE_DELAY_MS": "0",
            **{name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")},
        }

    def arguments(self, *more, folder=True, tasks=""):
        result = ["/VERYSILENT", "/SUPPRESSMSGBOXES", "/NORESTART"]
        if folder:
            result.append(f"/DIR={self.folder}")
        return result + [f"/TASKS={tasks}", f"/STATUSFILE={self.status}", f"/LOG={self.log}", *more]

    def start(self, scenario="", program=ENGINE, arguments=None, **options):
        environment = dict(self.environment)
        if scenario:
            path = self.root / "scenario.txt"
            path.write_text(scenario, encoding="utf-8")
            environment["VARNEL_ENGINE_SCENARIO"] = str(path)
        process = subprocess.Popen(
            [str(program)] + (self.arguments() if arguments is None else arguments),
            env=environment, **options)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        return process

    def run_engine(self, scenario="", **options):
        """Runs to the end; the exit code, negative for a signal."""
        return self.start(scenario, **options).wait(LIMIT)

    def install(self, scenario="", **arguments):
        self.assertEqual(self.run_engine(scenario, arguments=self.arguments(**arguments)), 0)

    def uninstall(self, scenario=""):
        return self.run_engine(scenario, program=self.folder / "unins000.exe",
                               arguments=["/VERYSILENT", f"/STATUSFILE={self.status}"])

    def read_status(self):
        """The keys of the status file as the wizard reads them; empty when there is none."""
        try:
            text = self.status.read_bytes().decode("utf-8-sig", errors="replace")
        except OSError:
            return {}
        pairs = (line.partition("=") for line in text.splitlines() if "=" in line)
        return {key.strip(): value.strip() for key, _, value in pairs}

    def watch(self, process):
        """Every status seen until the process ends, repetitions left out."""
        seen = []
        running = True
        while running:
            running = process.poll() is None
            status = self.read_status()
            if len(status) == 3 and (not seen or seen[-1] != status):
                seen.append(status)
            time.sleep(0.001)
        percents = [float(status["progress"]) for status in seen]
        self.assertEqual(percents, sorted(percents))
        self.assertGreater(len(percents), 8)
        self.assertEqual(percents[-1], 100)
        return seen

    def wait_for(self, condition, what):
        deadline = time.monotonic() + LIMIT
        while not condition():
            self.assertLess(time.monotonic(), deadline, what)
            time.sleep(0.002)

    def log_texts(self):
        """The log's lines without stamps; a continuation line begins with a tab here."""
        data = self.log.read_bytes()
        self.assertTrue(data.startswith(BOM) and data.endswith(b"\r\n"))
        texts = []
        for line in data[len(BOM):].decode("utf-8").split("\r\n")[:-1]:
            stamped, indented = STAMPED.match(line), INDENTED.match(line)
            self.assertTrue(stamped or indented, line)
            texts.append(stamped[1] if stamped else "\t" + indented[1])
        return texts

    def boxes(self):
        texts = self.log_texts()
        return [texts[i + 1].lstrip("\t") for i, text in enumerate(texts) if text == BOX_MARK]

    def registry_content(self):
        return json.loads(self.registry.read_text())

    def test_install(self):
        self.folder = self.root / "Schaltpläne 回路 %1"
        process = self.start(arguments=self.arguments(tasks="first,DesktopIcon"),
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.assertEqual(process.communicate(timeout=LIMIT)[0], b"")
        self.assertEqual(process.returncode, 0)
        files = files_below(self.folder)
        self.assertEqual(len(files), PAYLOAD_COUNT + 2)
        self.assertIn(PRODUCT["executable"], files)
        for name in files:
            self.assertGreater((self.folder / name).stat().st_size, 0, name)
        self.assertEqual(self.status.read_text(encoding="utf-8"),
                         "[status]\nprogress=100.0\nfile=\nstatus=Creating shortcuts…\n")
        self.assertIn(f'Exec="{self.folder}/{PRODUCT["executable"]}"', self.shortcut.read_text())
        self.assertEqual(self.registry_content(), {MACHINE_KEY: {
            "DisplayName": f"{PRODUCT['name']} version {PRODUCT['version']}",
            "DisplayVersion": PRODUCT["version"],
            "Publisher": PRODUCT["publisher"],
            "InstallLocation": f"{self.folder}/",
            "UninstallString": f'"{self.folder}/unins000.exe"',
        }})

        texts = self.log_texts()
        self.assertEqual(texts[0], "Log opened. (Time zone: UTC+00:00)")
        self.assertEqual(texts[-1], "Log closed.")
        self.assertIn("Installation process succeeded.", texts)
        named = [text.removeprefix("Dest filename: ") for text in texts
                 if text.startswith("Dest filename: ")]
        installed = [str(self.folder / name) for name in files if not name.startswith("unins000")]
        self.assertEqual(sorted(named), sorted(installed + [str(self.shortcut)]))
        suspicious = re.compile("exception|error|failed|unknown|suppressed message box", re.IGNORECASE)
        self.assertEqual([text for text in texts if suspicious.search(text)], [])

    def test_status_file_along_the_runs(self):
        self.status.write_text("x" * 10_000)
        number = self.status.stat().st_ino
        at_leisure = "files = 12\ndelay-ms = 100"  # to be seen on a busy machine too
        seen = self.watch(self.start(at_leisure))
        self.assertEqual(self.status.stat().st_ino, number, "rewritten in place")
        self.assertEqual(list(dict.fromkeys(status["status"] for status in seen)),
                         ["Extracting application files…", "Installing WebView2 Runtime…",
                          "Registering .sch and .pcb file types…", "Creating shortcuts…"])
        self.assertTrue(any(float(status["progress"]) % 1 for status in seen), "no decimals")
        files = {status["file"] for status in seen if status["file"]}
        self.assertGreater(len(files), 8)
        self.assertEqual([name for name in files if not Path(name).is_file()], [])

        self.status.unlink()
        seen = self.watch(self.start(at_leisure, program=self.folder / "unins000.exe",
                                     arguments=[f"/STATUSFILE={self.status}"]))
        self.assertEqual(list(dict.fromkeys(status["status"] for status in seen)),
                         ["Removing application files…", "Removing shortcuts…",
                          "Unregistering file types…"])

    def test_update(self):
        self.install("files = 30", tasks="desktopicon")
        self.install()
        ours, theirs = self.folder / "LICENSE.txt", self.folder / "symbols" / "mine.lib"
        original = ours.read_bytes()
        ours.write_text("old")
        theirs.write_text("precious")
        self.install()
        self.assertEqual(ours.read_bytes(), original)
        self.assertEqual(self.log_texts().count("Dest file exists."), PAYLOAD_COUNT)
        # It removes what all three have made, and nothing else.
        self.assertEqual(self.uninstall(), 0)
        self.assertEqual(files_below(self.folder), ["symbols/mine.lib"])
        self.assertFalse(self.shortcut.exists())

    def test_uninstall_leaves_nothing_of_its_own(self):
        before = sorted(self.root.iterdir())
        self.install(tasks="desktopicon")
        (self.folder / "LICENSE.txt").unlink()
        shutil.rmtree(self.folder / "symbols")
        self.assertEqual(self.uninstall(), 0)
        self.assertEqual(set(self.root.iterdir()) - set(before),
                         {self.status, self.log, self.registry})
        self.assertEqual(list(self.home.iterdir()), [])
        self.assertEqual(self.registry_content(), {})

    def test_switches(self):
        unknown = ["/SP-", "/GROUP=x", "stray", "/VERYSILENT=1", "/DIR", ""]
        self.assertEqual(self.run_engine(arguments=[
            "/verysilent", "/SuppressMsgBoxes", "/norestart", "/dir=elsewhere", *unknown,
            f'/Dir="{self.folder}"', f'/StatusFile="{self.status}"', f'/log="{self.log}"']), 0)
        self.assertTrue((self.folder / "LICENSE.txt").is_file())
        self.assertTrue(self.status.is_file())
        logged = [text.removeprefix("Unknown switch, ignored: ")
                  for text in self.log_texts() if text.startswith("Unknown switch")]
        self.assertEqual(logged, unknown)

    def test_no_folder_means_the_registered_one_or_the_home(self):
        registered = self.root / "registered"
        for registry, folder in (({}, self.home / PRODUCT["name"]),
                                 ({MACHINE_KEY: {"InstallLocation": f"{registered}/"}}, registered),
                                 ({USER_KEY: {"InstallLocation": f"{registered}/"}}, registered)):
            with self.subTest(registry):
                self.registry.write_text(json.dumps(registry))
                self.assertEqual(self.run_engine(arguments=self.arguments(folder=False)), 0)
                self.assertEqual(len(files_below(folder)), PAYLOAD_COUNT + 2)
                shutil.rmtree(folder)

    def test_everything_else_stays(self):
        others = {r"HKEY_CURRENT_USER\Key": {"Text": "\"quoted\" \\ \t ü 回 😀 \u0001", "Number": 4890},
                  "nested": {"list": [1, -2.5, True, None, {}, []]}}
        self.registry.write_bytes(BOM + json.dumps(others).encode())
        self.install()
        content = self.registry_content()
        self.assertEqual(content.pop(MACHINE_KEY)["DisplayVersion"], PRODUCT["version"])
        self.assertEqual(content, others)
        self.assertEqual(self.uninstall(), 0)
        self.assertEqual(self.registry_content(), others)

    def test_a_broken_file_is_left_alone(self):
        for content in ("{", "[]", "{} {}"):
            self.registry.write_text(content)
            self.assertEqual(self.run_engine(), 5)
            self.assertEqual(self.registry.read_text(), content)
            self.assertIn("it holds no JSON object", self.boxes()[0])

    def test_status_file_and_log_that_cannot_be_written(self):
        self.status = self.log = self.root / "missing" / "file"
        process = self.start(stderr=subprocess.PIPE)
        self.assertEqual(process.communicate(timeout=LIMIT)[1], b"")
        self.assertEqual(process.returncode, 0)

    # stage: is there a folder, a status, how many files of the payload
    STAGES = {"start": (False, None, 0), "before-status": (True, None, 0),
              "half": (True, "44.4", PAYLOAD_COUNT // 2), "end": (True, "100.0", PAYLOAD_COUNT)}

    def test_stages(self):
        for kind, code in (("exit-code = 7", 7), ("crash = SEGV", -signal.SIGSEGV)):
            for stage, (folder, progress, count) in self.STAGES.items():
                with self.subTest(kind=kind, stage=stage):
                    self.assertEqual(self.run_engine(f"{kind}\nstage = {stage}"), code)
                    self.assertEqual(self.folder.exists(), folder)
                    self.assertEqual(self.read_status().get("progress"), progress)
                    files = [name for name in files_below(self.folder)
                             if not name.startswith("unins000")]
                    self.assertEqual(len(files), count)
                    self.assertFalse(self.registry.exists())
                    self.assertEqual("Log closed." in self.log_texts(), code == 7)
                    shutil.rmtree(self.folder, ignore_errors=True)
                    self.status.unlink(missing_ok=True)

    def test_boxes_and_lines(self):
        for end, code in (("exit-code = 3\nstage = start", 3), ("", 0),
                          ("crash = KILL\nstage = half", -signal.SIGKILL)):
            with self.subTest(end):
                self.assertEqual(self.run_engine(
                    f"{end}\nmessage-box = ä <b>100 %</b> = 0\\nmore\nmessage-box = two\n"
                    "log-line = Something failed early.\nlog-line = And more."), code)
                self.assertEqual(self.boxes(), ["ä <b>100 %</b> = 0", "two"])
                texts = self.log_texts()
                self.assertIn("\tmore", texts)
                self.assertEqual(texts[texts.index("Something failed early.") + 1], "And more.")

    def test_log_size(self):
        self.assertEqual(self.run_engine("log-size = 5M\nexit-code = 4\nmessage-box = big"), 4)
        self.assertGreaterEqual(self.log.stat().st_size, 5 << 20)
        self.assertLess(self.log.stat().st_size, (5 << 20) + 50_000)
        self.assertEqual(self.boxes(), ["big"])

    def test_status_styles(self):
        plain = "[status]\nprogress=100.0\nfile=\nstatus=Creating shortcuts…\n".encode()
        for style, content in {
            "plain": plain,
            "no-final-newline": plain[:-1],
            "half": plain[:len(plain) // 2],
            "upper-section": plain.replace(b"[status]", b"[STATUS]"),
            "no-section": plain.replace(b"[status]\n", b""),
            "bom, crlf, blanks": BOM + plain.replace(b"=", b" = ").replace(b"\n", b"\r\n"),
        }.items():
            with self.subTest(style):
                self.assertEqual(self.run_engine(f"status-style = {style}"), 0)
                self.assertEqual(self.status.read_bytes(), content)
        self.assertEqual(self.run_engine("status-style = torn"), -signal.SIGKILL)
        self.assertTrue(self.status.read_bytes().startswith(b"[status]\nprogress=5"))

    def test_status_places(self):
        self.assertEqual(self.run_engine("status-path = directory"), 0)
        self.status.rmdir()
        self.assertEqual(self.run_engine("status-path = fifo"), 0)
        self.assertTrue(stat.S_ISFIFO(self.status.stat().st_mode))
        self.status.unlink()
        self.assertEqual(self.run_engine("status-path = deleted\nexit-code = 2\nstage = half"), 2)
        self.assertEqual(self.read_status()["progress"], "44.4")
        self.assertEqual(self.run_engine("status-path = deleted"), 0)
        self.assertFalse(self.status.exists())

    def test_played_values(self):
        values = ["55", "abc", ""]
        played = "".join(f"progress = {value}\n" for value in values)
        for turn, value in enumerate(values + [""]):
            # Half of the files are done after the first write and one for each file.
            self.assertEqual(self.run_engine(f"{played}file = a=b\nstatus = <b>bold</b>\n"
                                             f"files = {2 * turn or 1}\nexit-code = 2\nstage = half"), 2)
            self.assertEqual(self.status.read_text(),
                             f"[status]\nprogress={value}\nfile=a=b\nstatus=<b>bold</b>\n")

    def test_flood(self):
        process = self.start("flood-stdout = 3M", stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.wait_for(self.status.exists, "no status")
        with self.assertRaises(subprocess.TimeoutExpired):
            process.wait(0.2)
        output, errors = process.communicate(timeout=LIMIT)
        self.assertEqual(process.returncode, 0)
        self.assertEqual(len(output) + len(errors), 3 << 20)
        self.assertAlmostEqual(len(output), len(errors), delta=64 * 1024)

    def test_hold_pipes(self):
        began = time.monotonic()
        process = self.start("crash = KILL\nhold-pipes = 0.5",
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.assertEqual(process.wait(LIMIT), -signal.SIGKILL)
        self.assertEqual((process.stdout.read(), process.stderr.read()), (b"", b""))
        self.assertGreaterEqual(time.monotonic() - began, 0.5)

    def test_where_the_scenario_comes_from(self):
        program = self.root / "bin" / "standin-setup"
        program.parent.mkdir()
        shutil.copy2(ENGINE, program)
        (program.parent / "standin-setup.scenario").write_text("exit-code = 2")
        self.assertEqual(self.run_engine(program=program), 2)
        self.assertEqual(self.run_engine("exit-code = 3", program=program), 3)
        other = self.root / "other.txt"
        other.write_text("# comment = 1\r\n\r\n   \n  #exit-code = 9\n  exit-code   =   6  \r\n")
        self.assertEqual(self.run_engine("exit-code = 3", program=program,
                                         arguments=self.arguments(f"/SCENARIO={other}")), 6)

    def test_what_cannot_be_understood_ends_the_run(self):
        for text in ("exit-kode = 3", "exit-code", "exit-code = 3x", "stage = middle", "crash = NOPE",
                     "stall = -1", "stall = nan", "flood-stdout = 3T", "log-size = ", "log-none = maybe",
                     "files = 0", "status-style = bold", "status-path = roof", "delay-ms = -1"):
            with self.subTest(text):
                process = self.start(text, stderr=subprocess.PIPE)
                self.assertIn(text.strip().encode(), process.communicate(timeout=LIMIT)[1])
                self.assertEqual(process.returncode, 64)
                self.assertFalse(self.log.exists())
        self.environment["VARNEL_ENGINE_SCENARIO"] = str(self.root / "nowhere")
        self.assertEqual(self.run_engine(stderr=subprocess.DEVNULL), 64)


unittest.main()
