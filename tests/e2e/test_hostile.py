"""Odd files and folders: the wizard stays upright and literal."""

import os
import shutil
import unittest
from pathlib import Path

from testcase import ENGINE, WizardTestCase
from wizard import Wizard

BUILT_IN = "Varnel Schematics — License Agreement"


class Hostile(WizardTestCase):
    def setUp(self):
        super().setUp()
        self.programs = self.sandbox.root / "setup" / "bin"
        self.programs.mkdir(parents=True)
        # Nothing here is about how pages come and go.
        self.sandbox.environment["VARNEL_REDUCED_MOTION"] = "1"

    def license_shown(self):
        """The licence that a copy of the program shows which has ours for a neighbour."""
        program = self.programs / "VarnelSetup"
        if not program.exists():
            shutil.copy(os.environ["VARNEL_SETUP"], program)
        with Wizard("--install", sandbox=self.sandbox, program=str(program)) as wizard:
            wizard.go("Next", "License Agreement")
            text = wizard.document()
            self.end(wizard, "Close")
            self.assertEqual(wizard.warnings(), "")
        return text

    def test_license_files(self):
        beside = self.programs / "LICENSE.txt"
        above = self.programs.parent / "LICENSE.txt"

        beside.write_text(" \n\t\n")
        self.assertTrue(self.license_shown().startswith(BUILT_IN), "a blank one is none")
        above.write_text("from above")
        self.assertEqual(self.license_shown(), "from above")
        beside.unlink()
        beside.mkdir()
        self.assertEqual(self.license_shown(), "from above", "a folder is none")
        beside.rmdir()
        markup = "<h1>Terms</h1> &amp; <b>more</b> %1"
        beside.write_text(markup)
        self.assertEqual(self.license_shown(), markup)
        beside.write_bytes(b"caf\xe9 \xff ok")
        self.assertEqual(self.license_shown(), "caf\ufffd \ufffd ok")
        beside.write_text("A clause.\n" * (5 * 1024 * 1024 // 10))
        self.assertTrue(self.license_shown().startswith("A clause.\nA clause."))

    def install_below(self, folder):
        """Walks to the run with `folder` for the program files; returns the wizard and the target."""
        self.sandbox.environment["ProgramFiles"] = str(folder)
        target = folder / "Varnel Schematics"
        wizard = self.start("--install", "--setup-exe", ENGINE)
        wizard.walk_to_ready()
        self.assertIn(str(target), wizard.wait_text("Destination location:"))
        wizard.click("Install")
        return wizard, target

    def test_destinations_that_work(self):
        for name in ("%1 a&b <i>", "Схемы 回路図 it's ", "-" * 100 + "/" + "=" * 100):
            with self.subTest(name=name):
                wizard, target = self.install_below(self.sandbox.root / name)
                wizard.wait_text(f"Installed to {target}.")
                self.assertTrue((target / "VarnelSolutions.exe").is_file())
                self.end(wizard, "Close")

    def test_destinations_that_fail(self):
        (self.sandbox.root / "a file").write_text("")
        cannot_prepare = "Setup failed while preparing to install."
        for folder, sentence in (
                (self.sandbox.root / "a file", cannot_prepare),
                # Nothing can be made there, like on a drive that is gone.
                (Path("/proc/no such drive/Programs"), cannot_prepare),
                (self.sandbox.root / 'a "quoted" name',
                 "Setup cannot install into a folder whose name has a double quote.")):
            with self.subTest(folder=str(folder)):
                wizard, target = self.install_below(folder)
                wizard.wait_text(sentence)
                self.assertFalse(target.exists())
                self.end(wizard, "Close")

    def test_smart_app_control_warns_and_does_not_block(self):
        policy = "HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Control\\CI\\Policy"
        self.sandbox.write_registry({policy: {"VerifiedAndReputablePolicyState": 1}})
        wizard = self.start("--install", "--setup-exe", ENGINE)
        wizard.go("Next", "License Agreement")
        wizard.click("I accept the license agreement")
        wizard.go("Next", "Checking your system")
        wizard.wait_text("Smart App Control will block Varnel Schematics from starting.")
        self.assertIn("Smart App Control: On — blocks the app", wizard.rows())
        wizard.go("Next", "Select Destination Location")
        self.end(wizard, "Close")


if __name__ == "__main__":
    unittest.main()
