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

    def arguments(self, tasks=""):
        return ["/VERYSILENT", "/SUPPRESSMSGBOXES", "/NORESTART", f"/DIR={self.folder}", f"/TASKS={tasks}",
                f"/STATUSFILE={self.status}", f"/LOG={self.log}"]

    def start(self, scenario="", program=ENGINE, arguments=None, **options):
        path = self.root / "scenario.txt"
        path.write_text(scenario, encoding="utf-8")
        process = subprocess.Popen(
            [str(program)] + (self.arguments() if arguments is None else arguments),
            env={**self.environment, "VARNEL_ENGINE_SCENARIO": str(path)}, **options)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        return process

    def run_engine(self, scenario="", **options):
        """Runs to the end; the exit code, negative for a signal."""
        return self.start(scenario, **options).wait(LIMIT)

    def read_status(self):
        """The keys of the status file as the wizard reads them; empty when there is none."""
        try:
            text = self.status.read_bytes().decode("utf-8-sig", errors="replace")
        except OSError:
            return {}
        pairs = (line.partition("=") for line in text.splitlines() if "=" in line)
        return {key.strip(): value.strip() for key, _, value in pairs}

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

    def registry_content(self):
        return json.loads(self.registry.read_text())

    def test_install_update_and_removal(self):
        others = {r"HKEY_CURRENT_USER\Key": {"Text": "\"quoted\" \\ ü 回", "Number": 4890}}
        self.registry.write_text(json.dumps(others))
        self.folder = self.root / "Schaltpläne 回路 %1"
        with_shortcut = self.arguments(tasks="first,DesktopIcon")
        self.assertEqual(self.run_engine(arguments=with_shortcut), 0)
        files = files_below(self.folder)
        self.assertEqual(len(files), PAYLOAD_COUNT + 2)
        self.assertIn(PRODUCT["executable"], files)
        self.assertEqual(self.status.read_text(encoding="utf-8"),
                         "[status]\nprogress=100.0\nfile=\nstatus=Creating shortcuts…\n")
        self.assertIn(f'Exec="{self.folder}/{PRODUCT["executable"]}"', self.shortcut.read_text())
        self.assertEqual(self.registry_content(), others | {MACHINE_KEY: {
            "DisplayName": f"{PRODUCT['name']} version {PRODUCT['version']}",
            "DisplayVersion": PRODUCT["version"],
            "Publisher": PRODUCT["publisher"],
            "InstallLocation": f"{self.folder}/",
            "UninstallString": f'"{self.folder}/unins000.exe"',
        }})
        texts = self.log_texts()
        self.assertEqual(texts[0], "Log opened. (Time zone: UTC+00:00)")
        self.assertEqual(texts[-1], "Log closed.")
        named = [text.removeprefix("Dest filename: ") for text in texts
                 if text.startswith("Dest filename: ")]
        installed = [str(self.folder / name) for name in files if not name.startswith("unins000")]
        self.assertEqual(sorted(named), sorted(installed + [str(self.shortcut)]))
        suspicious = re.compile("exception|error|failed|unknown|suppressed message box", re.IGNORECASE)
        self.assertEqual([text for text in texts if suspicious.search(text)], [])

        ours, theirs = self.folder / "LICENSE.txt", self.folder / "symbols" / "mine.lib"
        original = ours.read_bytes()
        ours.write_text("old")
        theirs.write_text("precious")
        self.assertEqual(self.run_engine(), 0)
        self.assertEqual(ours.read_bytes(), original)

        # It removes what both have made, and nothing else.
        self.assertEqual(self.run_engine(program=self.folder / "unins000.exe",
                                         arguments=[f"/STATUSFILE={self.status}"]), 0)
        self.assertEqual(files_below(self.folder), ["symbols/mine.lib"])
        self.assertEqual(list(self.home.iterdir()), [])
        self.assertEqual(self.registry_content(), others)

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

    def test_log_size(self):
        self.assertEqual(self.run_engine("log-size = 5M\nexit-code = 4\nmessage-box = big"), 4)
        self.assertAlmostEqual(self.log.stat().st_size, 5 << 20, delta=50_000)
        texts = self.log_texts()
        self.assertEqual(texts[texts.index(BOX_MARK) + 1], "\tbig")

    def test_status_styles(self):
        plain = "[status]\nprogress=100.0\nfile=\nstatus=Creating shortcuts…\n".encode()
        for style, content in {
            "no-final-newline": plain[:-1],
            "half": plain[:len(plain) // 2],
            "upper-section": plain.replace(b"[status]", b"[STATUS]"),
            "bom, crlf, blanks": BOM + plain.replace(b"=", b" = ").replace(b"\n", b"\r\n"),
        }.items():
            with self.subTest(style):
                self.assertEqual(self.run_engine(f"status-style = {style}"), 0)
                self.assertEqual(self.status.read_bytes(), content)

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

    def test_ignore_termination(self):
        process = self.start("ignore-termination = yes\nstall = 0.3\nstage = start")
        self.wait_for(self.log.exists, "no log")
        process.terminate()
        self.assertEqual(process.wait(LIMIT), 0)

    def test_what_cannot_be_understood_ends_the_run(self):
        for text in "exit-kode = 3", "exit-code", "exit-code = 3x", "stage = middle", "status-style = bold":
            with self.subTest(text):
                process = self.start(text, stderr=subprocess.PIPE)
                self.assertIn(text.encode(), process.communicate(timeout=LIMIT)[1])
                self.assertEqual(process.returncode, 64)
                self.assertFalse(self.log.exists())


unittest.main()
