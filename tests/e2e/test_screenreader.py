"""What Orca says in two flows and a failure, by keyboard alone."""

import importlib.util
import json
import os
import re
import signal
import subprocess
import sys
import unittest
from pathlib import Path

from faults import FaultTestCase
from testcase import ENGINE
from wizard import Wizard, wait_until

# On a busy machine Orca takes its time with every event.
PATIENCE = 120  # seconds

# Orca tells a progress bar's value by itself every few seconds.
PERCENT = re.compile(r"\d+ percent\.")

TITLE = "Varnel Schematics setup dialog "


class Orca:
    """Orca, and what it has said so far."""

    def __init__(self, sandbox):
        self._record = sandbox.root / "said.txt"
        self._errors = sandbox.root / "orca-stderr.txt"
        self._heard = 0  # utterances that were waited for, and those before them
        with open(self._errors, "wb") as errors:
            self._process = subprocess.Popen(
                [sys.executable, Path(__file__).with_name("orcavoice.py"), self._record,
                 sandbox.root / "orca"],
                env=sandbox.environment, stdin=subprocess.DEVNULL, stdout=errors, stderr=errors)
        self.wait_for("Screen reader on.")

    def said(self):
        if not self._record.exists():
            return []
        lines = self._record.read_text().split("\n")[:-1]  # the last one may be half-written
        return [text for text in map(json.loads, lines) if not PERCENT.fullmatch(text)]

    def wait_for(self, *texts):
        """Waits until exactly these utterances have followed each other since the last wait."""
        def find():
            said = self.said()
            for at in range(self._heard, len(said) - len(texts) + 1):
                if said[at:at + len(texts)] == list(texts):
                    self._heard = at + len(texts)
                    return True
            return False
        self._wait(find, f"the words {texts}")

    def wait_for_start(self, start):
        """Waits for an utterance that begins like that; returns the rest of it."""
        def find():
            for at, text in enumerate(self.said()[self._heard:], self._heard):
                if text.startswith(start):
                    self._heard = at + 1
                    return text.removeprefix(start)
            return None
        return self._wait(find, f"words that begin with {start!r}")

    def _wait(self, condition, what):
        try:
            return wait_until(condition, what, PATIENCE)
        except AssertionError as failure:
            raise AssertionError(f"{failure}; said: {self.said()}; Orca's errors: "
                                 f"{self._errors.read_text(errors='replace')[-2000:]}") from None

    def end(self):
        self._process.kill()
        self._process.wait()


@unittest.skipUnless(importlib.util.find_spec("orca"), "Orca is not installed; ./test installs it")
class ScreenReader(FaultTestCase):
    def setUp(self):
        super().setUp()
        self.orca = Orca(self.sandbox)
        self.addCleanup(self.orca.end)

    def start(self, *arguments):
        """A wizard that may complain of nothing but of a screen reader that is slow to take a key."""
        wizard = Wizard(*arguments, sandbox=self.sandbox)
        self.addCleanup(lambda: self.assertEqual(
            [line for line in wizard.warnings().splitlines() if "keyEventError" not in line], []))
        self.addCleanup(wizard.kill)
        return wizard

    def open(self, start, *arguments):
        """A wizard whose first page, which begins like that, is read out with its window."""
        wizard = self.start(*arguments)
        return wizard, self.orca.wait_for_start(start)

    def go(self, wizard, key, focus, text):
        """Presses a key; then the focus is said, and `text` with it."""
        wizard.press(key)
        self.orca.wait_for(*focus, text)

    def hear_run(self, wizard, text):
        """What is said until the run has come to its middle, where the engine pauses; then it goes on."""
        wizard.press("Return")
        self.orca.wait_for(text)
        engine = self.wait_paused(wizard)
        step = wizard.rows()[-1]
        self.orca.wait_for_start(f"notification {step}.")
        os.kill(engine, signal.SIGCONT)

    def assert_said_once(self, *titles):
        """Nor is the window read out once more, as with a notification that lay in it."""
        said = self.orca.said()
        for title in (" dialog ", *titles):
            self.assertEqual(sum(title in text for text in said), 1, f"{title!r} in {said}")

    def test_installation(self):
        self.sandbox.scenario("files = 20", "delay-ms = 50", "pause = half")
        folder = self.sandbox.destination
        wizard, rest = self.open(TITLE + "Welcome to the Varnel Schematics Setup Wizard",
                                 "--install", "--setup-exe", ENGINE)
        self.assertIn("Setup will install Varnel Schematics version 1.6.9 on this computer.", rest)
        self.orca.wait_for("Next push button.")
        self.go(wizard, "Return", ("I do not accept the agreement.", "selected radio button"),
                "License Agreement. Please read the following important information before "
                "continuing. Do you accept the license agreement?")
        self.go(wizard, "Down", ("I accept the license agreement.",), "selected radio button")

        wizard.press("Return")
        self.orca.wait_for("Next push button.")
        findings = self.orca.wait_for_start("Checking your system. Requirements checked: 9. ")
        wait_until(lambda: len(wizard.rows()) == 9, "all nine findings")
        told = [row for row in wizard.rows() if row in findings]
        self.assertTrue(findings.startswith("Need attention: ") if told
                        else findings == "All are met.", findings)
        self.assertTrue(all("Missing" not in row or row in told for row in wizard.rows()), findings)

        wizard.press("Return")
        self.orca.wait_for("Next push button.")
        room = self.orca.wait_for_start(
            "Select Destination Location. Setup will install Varnel Schematics into the following "
            f"folder. INSTALL TO. {folder}. ")
        self.assertIn("220 MB required", room)
        self.go(wizard, "Return", ("Next push button.",),
                "Select Additional Tasks. Which additional task should be performed while "
                "installing Varnel Schematics? Create a desktop shortcut, checked.")
        self.go(wizard, "Return", ("Install push button.",),
                "Ready to Install. Setup is now ready to begin installing Varnel Schematics on your "
                f"computer. Destination location: {folder}. Additional tasks: Create a desktop "
                "shortcut.")
        # When the button gets the focus again, only its name is said.
        self.go(wizard, "shift+Tab", (), "Back push button.")
        self.go(wizard, "Tab", (), "Install push button.")

        self.hear_run(wizard, "Installing. Roughly a minute. You can keep using your PC.")
        self.orca.wait_for("Open Varnel Schematics push button.",
                           f"Varnel Schematics is installed. Installed to {folder}. "
                           "A shortcut is on your desktop.")
        self.assert_said_once(
            "Welcome to the Varnel", "License Agreement.", "Checking your system",
            "Select Destination Location", "Select Additional Tasks", "Ready to Install",
            "Installing. ", "is installed")

    def test_removal(self):
        uninstaller = self.uninstaller()
        self.sandbox.scenario("delay-ms = 50", "pause = half")
        wizard, rest = self.open("Varnel Schematics uninstall dialog Uninstall Varnel Schematics",
                                 "--uninstall", "--uninstaller", uninstaller)
        self.assertIn("This will remove Varnel Schematics 1.6.9 from your computer.", rest)
        self.assertIn("This cannot be undone.", rest)
        self.orca.wait_for("Cancel push button.")
        self.go(wizard, "Tab", (), "Uninstall push button.")
        self.hear_run(wizard, "Uninstalling. Removing Varnel Schematics from your computer.")
        self.orca.wait_for("Close push button.",
                           "See You Later! Varnel Schematics has been removed from your computer. "
                           "Your preferences were kept in case you're back soon.")
        self.assert_said_once("Uninstall Varnel Schematics", "Uninstalling. ", "See You Later!")

    def test_failure(self):
        self.sandbox.scenario("exit-code = 5", "stage = half")
        self.folder.mkdir()
        self.sandbox.record_installation(DisplayVersion="1.6.8", InstallLocation=str(self.folder))
        wizard, _ = self.open(TITLE + "Update Available", "--setup-exe", ENGINE)
        self.orca.wait_for("Update Now push button.")
        wizard.press("Return")
        self.orca.wait_for("Update push button.")
        wizard.press("Return")
        message = wizard.wait_text("Installation was cancelled during setup.")
        self.orca.wait_for("Close push button.", message)
        self.go(wizard, "Tab", (), "Minimize push button.")
        self.go(wizard, "shift+Tab", (), "Close push button.")
        self.assert_said_once("Installation was cancelled during setup.")


if __name__ == "__main__":
    unittest.main()
