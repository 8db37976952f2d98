"""A Windows of its own for a test: a drive C:, a registry and a temp folder, and programs that run in
them. It is made anew for each test and stays behind in the build folder to be looked at.
"""

import contextlib
import fnmatch
import os
import re
import shutil
import signal
import subprocess
import sys
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))
from product import PRODUCT, UNINSTALL_KEY_NAME  # noqa: E402
from waiting import wait_until  # noqa: E402

WINE = os.environ["VARNEL_WINE"]
HELPERS = Path(os.environ["VARNEL_HELPERS"])
UNINSTALL = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" + UNINSTALL_KEY_NAME

# How long something may take that normally takes a few seconds, on a machine that is busy.
PATIENCE = 120


def dos(path):
    """The name that programs in Wine have for a file of this machine."""
    return "Z:" + str(path).replace("/", "\\")


class World:
    def __init__(self, name):
        self.folder = Path(os.environ["VARNEL_WORLDS"]) / name
        shutil.rmtree(self.folder, ignore_errors=True)
        self.temp = self.folder / "temp"
        self.temp.mkdir(parents=True)
        self.pictures = self.folder / "pictures"
        self.pictures.mkdir()
        self.environment = {**os.environ, "WINEPREFIX": str(self.folder / "prefix"),
                            "TMPDIR": str(self.temp), "VARNEL_RECORD": dos(self.folder / "record")}
        # It is meant for programs of this machine and would be handed on.
        self.environment.pop("QT_QPA_PLATFORM", None)
        self._started = []
        subprocess.run([WINE, "--prepare"], env=self.environment, check=True)
        # Waits for a key until the end, so that Wine need not start anew for every program. It is
        # waited for: while Wine starts, no second program should come.
        output = self.folder / "keeper.txt"
        self._keeper = self.start("cmd", "/c", "echo ready& pause", stdin=subprocess.PIPE,
                                  output=output)
        wait_until(lambda: "ready" in output.read_text(errors="replace"), "Wine's start")

    def end(self):
        """Ends every program; the files stay, apart from the gigabyte of Windows itself."""
        self._keeper.stdin.close()
        subprocess.run([WINE, "--end"], env=self.environment, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)
        for process in self._started:
            try:
                process.wait(timeout=PATIENCE)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        shutil.rmtree(self.folder / "prefix", ignore_errors=True)

    # -- programs ----------------------------------------------------------------------------------

    def start(self, program, *arguments, stdin=subprocess.DEVNULL, output=None):
        """Starts a program. Its output goes to a file: Wine's own services, which outlive it, would
        keep a pipe open."""
        with open(output or os.devnull, "wb") as stream:
            process = subprocess.Popen([WINE, str(program), *map(str, arguments)], stdin=stdin,
                                       stdout=stream, stderr=subprocess.STDOUT,
                                       env=self.environment, cwd=self.folder)
        self._started.append(process)
        return process

    def run(self, program, *arguments):
        """Runs a program to its end; returns exit code and output."""
        output = self.folder / "output.txt"
        code = self.start(program, *arguments, output=output).wait(timeout=PATIENCE)
        return code, output.read_text(errors="replace")

    def trust(self, keys):
        """Makes Windows trust the publisher that has these keys."""
        keys.openssl("x509 -in root.pem -outform DER -out root.der")
        code, output = self.run(HELPERS / "trustcertificate.exe", dos(keys.folder / "root.der"))
        assert code == 0, output

    def window_facts(self, title):
        code, output = self.run(HELPERS / "windowcommand.exe", title)
        return dict(line.split("=") for line in output.split()) if code == 0 else {}

    def hold(self, path, *options, program=HELPERS / "holdfile.exe"):
        """Starts a program that keeps a file open to the end of the test."""
        output = self.folder / "holder.txt"
        self.start(program, path, *options, output=output)
        wait_until(lambda: "held" in output.read_text(), f"a hold on {path}")

    def processes(self, name):
        """Process ids of the programs of this world that are called so."""
        found = []
        for folder in Path("/proc").iterdir():
            try:
                if (name in (folder / "cmdline").read_bytes().split(b"\0")[0].decode(errors="replace")
                        and f"WINEPREFIX={self.folder}/".encode() in
                        (folder / "environ").read_bytes()):
                    found.append(int(folder.name))
            except (OSError, ValueError):
                continue
        return found

    @contextlib.contextmanager
    def braked(self, name, pause=0.05):
        """Meanwhile the programs that are called so pause, for that many seconds, every few
        milliseconds. So one that takes a second or less can be followed, on a machine that is so
        fast that it takes far less, or so busy that a look takes as long."""
        over = threading.Event()

        def send(number, processes):
            for process in processes:
                with contextlib.suppress(ProcessLookupError):
                    os.kill(process, number)

        def brake():
            found = []
            while not over.is_set():
                send(signal.SIGSTOP, found)
                time.sleep(pause)
                looked = self.processes(name)
                send(signal.SIGCONT, found)
                found = looked
                time.sleep(0.005)

        thread = threading.Thread(target=brake)
        thread.start()
        try:
            yield
        finally:
            over.set()
            thread.join()

    def records(self):
        """The command lines that recordcommandline.exe was started with."""
        path = self.folder / "record"
        return path.read_text().splitlines() if path.exists() else []

    # -- files -------------------------------------------------------------------------------------

    def path(self, windows_path):
        """Where a file of drive C: is on this machine."""
        assert windows_path.upper().startswith("C:\\"), windows_path
        return self.folder / "prefix" / "drive_c" / windows_path[3:].replace("\\", "/")

    def files_below(self, windows_path):
        folder = self.path(windows_path)
        return sorted(str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file())

    def user_folder(self, *parts):
        """A folder of the one user; the name is the machine's business."""
        users = self.path("C:\\users")
        home = next(path for path in users.iterdir() if path.name != "Public")
        return home.joinpath(*parts)

    def temp_files(self, apart_from=""):
        """What is in the temp folder, which was empty at first."""
        return sorted(path.name for path in self.temp.iterdir()
                      if not fnmatch.fnmatch(path.name, apart_from))

    # -- the registry ------------------------------------------------------------------------------

    def registry(self, root="HKEY_LOCAL_MACHINE"):
        """The text of an export, without what Wine itself keeps changing."""
        file = self.folder / "export.reg"
        file.unlink(missing_ok=True)
        self.run("regedit", "/E", dos(file), root)
        return file.read_text(encoding="utf-16")

    def keys(self, root="HKEY_LOCAL_MACHINE"):
        """Every key of a root, in lower case, with the lines below it."""
        keys = {}
        for line in self.registry(root).splitlines():
            if line.startswith("["):
                lines = keys.setdefault(line.strip("[]").lower(), [])
            elif line and keys:
                lines.append(line)
        return keys

    @staticmethod
    def values(lines):
        """Names and texts among the lines of a key; the key's own text has the name @."""
        found = re.findall(r'^(?:"([^"]*)"|(@))="(.*)"$', "\n".join(lines), re.MULTILINE)
        return {name or at: re.sub(r"\\(.)", r"\1", text) for name, at, text in found}

    def import_registry(self, keys):
        """Writes keys: full path to a table of names and texts (or numbers)."""
        lines = ["Windows Registry Editor Version 5.00", ""]
        for key, values in keys.items():
            lines.append(f"[{key}]")
            for name, value in values.items():
                if isinstance(value, int):
                    lines.append(f'"{name}"=dword:{value:08x}')
                else:
                    text = value.replace("\\", "\\\\").replace('"', '\\"')
                    lines.append(f'"{name}"="{text}"')
            lines.append("")
        file = self.folder / "import.reg"
        file.write_text("\r\n".join(lines), encoding="utf-16")
        code, output = self.run("regedit", "/S", dos(file))
        assert code == 0, output

    def uninstall_entry(self):
        key = f"HKEY_LOCAL_MACHINE\\{UNINSTALL}".lower()
        return self.values(self.keys().get(key, []))
