"""Drives the built wizard from outside, as a user does.

What is on screen is read through the accessibility bus; clicks and keys come from the X server, at
the place where the control really is. Needs a desktop, see on-desktop.
"""

import json
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))
from product import PRODUCT, UNINSTALL_KEY_NAME  # noqa: E402
from waiting import wait_until  # noqa: E402

APPLICATION = PRODUCT["setup_name"]
UNINSTALL_KEY = ("HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\"
                 + UNINSTALL_KEY_NAME)

# How long something may take that normally takes a moment, in seconds.
PATIENCE = 30

# By default AT-SPI treats a program that takes longer than 0.8 s as gone.
Atspi.set_timeout(PATIENCE * 1000, PATIENCE * 1000)


class Sandbox:
    """A world of its own for one wizard: temp folder, home, desktop, preferences, registry."""

    def __init__(self, folder=None):
        self.root = Path(folder or tempfile.mkdtemp(prefix="varnel-e2e-"))
        for name in ("temp", "home", "desktop", "appdata", "programs"):
            (self.root / name).mkdir(parents=True, exist_ok=True)
        self.environment = {
            **os.environ,
            "TMPDIR": str(self.root / "temp"),
            "HOME": str(self.root / "home"),
            "XDG_CONFIG_HOME": str(self.root / "home" / ".config"),
            "XDG_DESKTOP_DIR": str(self.root / "desktop"),
            "APPDATA": str(self.root / "appdata"),
            "ProgramFiles": str(self.root / "programs"),
            "VARNEL_REGISTRY_JSON": str(self.root / "registry.json"),
            "VARNEL_LAUNCH_RECORD": str(self.root / "launches.txt"),
            "VARNEL_ENGINE_RECORD": str(self.root / "engine-runs.txt"),
            "VARNEL_ENGINE_DELAY_MS": "10",
            "LC_ALL": "C.UTF-8",
        }

    def remove(self):
        shutil.rmtree(self.root, ignore_errors=True)

    @property
    def destination(self):
        """Where the wizard installs unless told otherwise."""
        return self.root / "programs" / "Varnel Schematics"

    @property
    def preferences(self):
        return self.root / "appdata" / "Varnel Schematics" / "Varnel Schematics"

    def scenario(self, *lines):
        """How the engine behaves from now on, in lines of "key = value"."""
        path = self.root / "scenario.txt"
        path.write_text("\n".join(lines) + "\n")
        self.environment["VARNEL_ENGINE_SCENARIO"] = str(path)

    def engine_runs(self):
        """Argument lists of the engine's runs so far, the program first."""
        path = self.root / "engine-runs.txt"
        return [json.loads(line) for line in path.read_text().splitlines()] if path.exists() else []

    def launches(self):
        """(program, working folder) of each start of the installed application."""
        path = self.root / "launches.txt"
        lines = path.read_text().splitlines() if path.exists() else []
        return [tuple(line.split("\t")) for line in lines]

    def registry(self):
        path = self.root / "registry.json"
        return json.loads(path.read_text()) if path.exists() else {}

    def write_registry(self, keys):
        (self.root / "registry.json").write_text(json.dumps(keys))

    def record_installation(self, **values):
        self.write_registry({UNINSTALL_KEY: values})

    def temp_files(self):
        return sorted(path.name for path in (self.root / "temp").iterdir())

    def kept_log(self):
        return self.root / "temp" / "varnel_setup_last.log"


class Wizard:
    """One started wizard."""

    def __init__(self, *arguments, sandbox, program=None):
        self.sandbox = sandbox
        self.program = program or os.environ["VARNEL_SETUP"]
        self._clicked = 0  # x of the last click
        self.stderr_path = sandbox.root / "wizard-stderr.txt"
        with open(self.stderr_path, "ab") as stderr:
            self.process = subprocess.Popen(
                [self.program, *map(str, arguments)],
                env=sandbox.environment, cwd=sandbox.root, stdin=subprocess.DEVNULL,
                stdout=stderr, stderr=stderr)
        self.application = wait_until(self._find_application, "the wizard on the accessibility bus")
        wait_until(lambda: self.window_id(), "the wizard's window")
        self.wait_settled()

    # -- what is on screen -------------------------------------------------------------------------

    def _find_application(self):
        if self.process.poll() is not None:
            raise AssertionError(f"the wizard ended at once with {self.process.returncode}: "
                                 f"{self.warnings()}")
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(index)
            try:
                if child and child.get_process_id() == self.process.pid and child.get_child_count():
                    return child
            except GLib.Error:
                continue
        return None

    def widgets(self):
        """(accessible, role, name) of everything that is showing, in reading order."""
        found = []

        def visit(node):
            try:
                node.clear_cache()
                states = node.get_state_set()
                if not states.contains(Atspi.StateType.VISIBLE):
                    return
                found.append((node, node.get_role_name(), node.get_name() or ""))
                for index in range(node.get_child_count()):
                    child = node.get_child_at_index(index)
                    if child:
                        visit(child)
            except GLib.Error:
                pass  # it went while we looked

        for index in range(self.application.get_child_count()):
            window = self.application.get_child_at_index(index)
            if window:
                visit(window)
        return found

    def texts(self):
        """Every text on screen."""
        return [name for _, role, name in self.widgets() if role in ("label", "static") and name]

    def rows(self):
        """The painted rows (steps, findings) that are showing."""
        return [name for _, role, name in self.widgets() if role == "list item"]

    def buttons(self):
        """Names of the push buttons, title bar first, with whether each can be pressed."""
        return {name: node.get_state_set().contains(Atspi.StateType.ENABLED)
                for node, role, name in self.widgets() if role in ("push button", "button")}

    def bar_value(self):
        for node, role, _ in self.widgets():
            if role == "progress bar":
                return Atspi.Value.get_current_value(node)
        return None

    def has_text(self, text):
        return any(text in shown for shown in self.texts())

    def wait_text(self, text, patience=PATIENCE):
        """Waits for a text on screen that holds `text`; returns the whole of it."""
        def find():
            return next((shown for shown in self.texts() if text in shown), None)
        try:
            return wait_until(find, f"the text {text!r}", patience)
        except AssertionError as failure:
            raise AssertionError(f"{failure}; on screen: {self.texts()}") from None

    def wait_button(self, name):
        """Waits for a button that can be pressed."""
        return wait_until(lambda: self.buttons().get(name), f"the button {name!r}")

    def wait_settled(self):
        """Waits until nothing moves any more, so that a click hits what it is meant for."""
        def places():
            result = []
            for node, role, name in self.widgets():
                try:
                    extents = Atspi.Component.get_extents(node, Atspi.CoordType.SCREEN)
                    result.append((role, name, extents.x, extents.y))
                except (GLib.Error, AttributeError):
                    result.append(None)
            return result

        before = places()
        for _ in range(100):
            time.sleep(0.12)
            now = places()
            if now == before:
                return
            before = now
        raise AssertionError("the page does not come to rest")

    def warnings(self):
        """What the wizard wrote to its standard error."""
        return self.stderr_path.read_text(errors="replace") if self.stderr_path.exists() else ""

    # -- what a user does --------------------------------------------------------------------------

    def window_id(self):
        """X window of the wizard, if it is on screen."""
        result = subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--pid", str(self.process.pid),
             "--name", "^Varnel Schematics"],
            capture_output=True, text=True)
        return result.stdout.split()[0] if result.stdout.split() else None

    def centre_of(self, name):
        """Screen position of a control; of two with one name, the footer's, which comes last. Waits
        until it is there and stays where it is: the texts of a page come before its buttons."""
        roles = ("push button", "button", "check box", "radio button")
        seen = []

        def place():
            nodes = [node for node, role, shown in self.widgets()
                     if shown == name and role in roles]
            extents = None
            try:
                if nodes:
                    extents = Atspi.Component.get_extents(nodes[-1], Atspi.CoordType.SCREEN)
            except GLib.Error:
                pass  # it went while we looked
            seen.append(extents and (extents.x + extents.width // 2,
                                     extents.y + extents.height // 2))
            return len(seen) > 1 and seen[-1] == seen[-2] and seen[-1]

        return wait_until(place, f"the control {name!r}")

    def click(self, name):
        """Clicks a button, option or check box with the mouse. Nobody is so quick that two calls
        are one double click, and so they are a little apart, wherever the controls are."""
        middle, y = self.centre_of(name)
        self._clicked = max(middle - 8, middle + 8, key=lambda x: abs(x - self._clicked))
        subprocess.run(["xdotool", "mousemove", str(self._clicked), str(y), "click", "1"],
                       check=True)

    def press(self, *keys):
        """Presses keys by their X names."""
        subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True)

    def go(self, button, text):
        """Presses a button and waits for the page that shows `text`, at rest."""
        self.wait_button(button)
        self.click(button)
        self.wait_text(text)
        self.wait_settled()

    def walk_to_ready(self, desktop_shortcut=True):
        """From the welcome page to the last one before an installation."""
        self.go("Next", "License Agreement")
        self.click("I accept the license agreement")
        self.go("Next", "Checking your system")
        self.go("Next", "Select Destination Location")
        self.go("Next", "Select Additional Tasks")
        if not desktop_shortcut:
            self.click("Create a desktop shortcut")
        self.go("Next", "Ready to Install")

    def picture(self, path):
        """Saves what the window shows."""
        subprocess.run(["import", "-window", self.window_id(), str(path)], check=True)

    def wait_end(self, patience=PATIENCE):
        """Waits for the process to end; returns its exit code."""
        return self.process.wait(timeout=patience)

    def peak_memory(self):
        """The most bytes of memory that the wizard has held so far."""
        status = Path(f"/proc/{self.process.pid}/status").read_text()
        return int(re.search(r"VmHWM:\s+(\d+) kB", status).group(1)) * 1024

    def kill(self):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)
            self.process.wait()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.kill()
