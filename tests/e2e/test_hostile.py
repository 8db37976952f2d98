"""Odd files, folders, registry values and users: the wizard stays upright and literal."""

import os
import shutil
import subprocess
import unittest
from pathlib import Path

from testcase import ENGINE, WizardTestCase
from wizard import Wizard, wait_until

BUILT_IN = "Varnel Schematics — License Agreement"


class Hostile(WizardTestCase):
    def setUp(self):
        super().setUp()
        self.programs = self.sandbox.root / "setup" / "bin"
        self.programs.mkdir(parents=True)
        # Nothing here is about how pages come and go, but for one test, which says so.
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

    def install_below(self, folder, engine=ENGINE):
        """Walks to the run with `folder` for the program files; returns the wizard and the target."""
        self.sandbox.environment["ProgramFiles"] = str(folder)
        target = folder / "Varnel Schematics"
        wizard = self.start("--install", "--setup-exe", engine)
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

    def test_destination_without_write_access(self):
        closed = self.sandbox.root / "closed"
        closed.mkdir(mode=0o555)
        wizard, target = self.install_below(closed, self.engine_without_privileges())
        message = wizard.wait_text("Setup failed while preparing to install.")
        self.assertIn(f"(log: {self.sandbox.kept_log()})", message)
        self.assertFalse(target.exists())
        self.end(wizard, "Close")

    def engine_without_privileges(self):
        """The engine as a user runs it who may not write everywhere."""
        if os.geteuid() != 0:
            return ENGINE
        engine = self.sandbox.root / "engine"
        shutil.copy(ENGINE, engine)
        self.sandbox.root.chmod(0o755)
        (self.sandbox.root / "temp").chmod(0o777)
        record = self.sandbox.root / "engine-runs.txt"
        record.touch()
        record.chmod(0o666)
        become_nobody = "setpriv --reuid=65534 --regid=65534 --clear-groups"
        if subprocess.run([*become_nobody.split(), "test", "-x", engine]).returncode != 0:
            self.skipTest("This user can neither be kept from writing nor become another.")
        script = self.sandbox.root / "setup.exe"
        script.write_text(f'#!/bin/sh\nexec {become_nobody} "{engine}" "$@"\n')
        script.chmod(0o755)
        return script

    def test_registry_values(self):
        folder = self.sandbox.root / "installed"
        folder.mkdir()
        long = "9." * 5000
        for version, shown in ((7, "not found"), (long, long), ("<b>1</b>&", "<b>1</b>&")):
            with self.subTest(version=str(version)[:20]):
                self.sandbox.record_installation(DisplayVersion=version,
                                                 InstallLocation=f"{folder}//")
                wizard = self.start()
                wizard.wait_text("Update Available for Varnel Schematics")
                wizard.wait_text(f"Installed version: {shown}")
                self.end(wizard, "Skip")
        for location in (str(folder / "gone"), 5, long):
            with self.subTest(location=str(location)[:20]):
                self.sandbox.record_installation(DisplayVersion="1.0", InstallLocation=location)
                wizard = self.start()
                wizard.wait_text("Welcome to the Varnel Schematics Setup Wizard")
                self.end(wizard, "Cancel")

    def test_recorded_uninstaller_that_is_gone(self):
        gone = self.sandbox.root / "gone"
        self.sandbox.record_installation(DisplayVersion="   ", InstallLocation=str(gone),
                                         UninstallString=f'"{gone}/unins000.exe" /SILENT')
        wizard = self.start("--uninstall")
        wizard.wait_text("This will remove Varnel Schematics from your computer.")
        wizard.click("Uninstall")
        wizard.wait_text("See You Later!")  # after a simulated run
        self.assertEqual(self.sandbox.engine_runs(), [])
        self.end(wizard, "Close")

    def test_odd_places_of_the_preferences(self):
        self.sandbox.preferences.mkdir(parents=True)
        settings = self.sandbox.preferences / "settings.ini"
        settings.write_text("[ui]\n")
        self.sandbox.scenario("delay-ms = 0")
        # The wizard's working folder is the sandbox, so the last one would lead there.
        for place in (None, "", "/", self.sandbox.preferences.parents[1].name):
            with self.subTest(place=place):
                self.sandbox.environment.pop("APPDATA", None)
                if place is not None:
                    self.sandbox.environment["APPDATA"] = place
                uninstaller = self.uninstaller()
                wizard = self.start("--uninstall", "--uninstaller", uninstaller)
                wizard.click("Also delete my preferences and cached data")
                wizard.click("Uninstall")
                wizard.wait_text("See You Later!")
                self.assertFalse(uninstaller.exists())
                self.assertEqual(settings.read_text(), "[ui]\n")
                self.end(wizard, "Close")

    def test_linked_preferences_are_left_alone(self):
        precious = self.sandbox.root / "precious"
        precious.mkdir()
        (precious / "thesis.txt").write_text("mine")
        self.sandbox.preferences.parent.mkdir(parents=True)
        self.sandbox.preferences.symlink_to(precious)
        wizard = self.start("--uninstall", "--uninstaller", self.uninstaller())
        wizard.click("Also delete my preferences and cached data")
        wizard.click("Uninstall")
        wizard.wait_text("See You Later!")
        self.assertEqual((precious / "thesis.txt").read_text(), "mine")
        self.end(wizard, "Close")

    def test_ten_quick_presses_leave_one_page(self):
        del self.sandbox.environment["VARNEL_REDUCED_MOTION"]
        wizard = self.start("--install", "--setup-exe", ENGINE)
        wizard.go("Next", "License Agreement")
        wizard.click("I accept the license agreement")
        wizard.go("Next", "Checking your system")
        wizard.press(*["Return", "Escape"] * 5)
        wizard.wait_text("Checking your system")
        self.assertEqual(self.only_page(wizard), "Checking your system")
        wait_until(lambda: len(wizard.rows()) == 9, "the nine findings")

        # A click may hit nothing while the page changes, so only how it ends is certain.
        wizard.click_in_turn(*["Next", "Back"] * 5)
        self.only_page(wizard)
        wizard.click("Close")
        self.assertEqual(wizard.wait_end(), 0)

    def only_page(self, wizard):
        """The title of the one page that is left when everything has come to rest."""
        wizard.wait_settled()
        titles = [text for text in wizard.texts() if text in (
            "License Agreement", "Checking your system", "Select Destination Location",
            "Select Additional Tasks")]
        self.assertEqual(len(titles), 1, titles)
        self.assertEqual(wizard.buttons(),
                         {"Minimize": True, "Close": True, "Back": True, "Next": True})
        return titles[0]

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
        wizard.go("Back", "Checking your system")
        wizard.go("Back", "License Agreement")
        wizard.click("Close")
        self.assertEqual(wizard.wait_end(), 0)


if __name__ == "__main__":
    unittest.main()
