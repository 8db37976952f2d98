"""What the setup engine's own script does, without the wizard: started as administrators do."""

import pathlib
import shutil
import subprocess
import tempfile
import unittest

from screen import Wizard
from testcase import (EARLIER_ENGINE, EARLIER_VERSION, ENGINE, SILENT, UNINSTALLER_AT_WORK,
                      UNINSTALLERS_FOLDER, VERSION, WindowsTestCase)
from world import HELPERS, PATIENCE, PRODUCT, UNINSTALL, dos, wait_until

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDER = "C:\\Apps\\Varnel"


class EngineTestCase(WindowsTestCase):
    def run_logged(self, program, *arguments):
        """Runs setup or uninstaller silently; returns the exit code and the lines of the log."""
        log = self.world.temp / "engine.log"
        log.unlink(missing_ok=True)
        code, _ = self.world.run(program, *SILENT, *arguments, f"/LOG={dos(log)}")
        lines = log.read_text(encoding="utf-8-sig").splitlines() if log.exists() else []
        # Without the time.
        return code, [line[23:].strip() for line in lines]

    def setup(self, *arguments, engine=ENGINE):
        return self.run_logged(engine, f"/DIR={FOLDER}", *arguments)


class VcRuntime(EngineTestCase):
    def runs_of_its_setup(self, code):
        """Its command lines during an installation, in which it ends with that code, and what the
        engine's log says of it."""
        (self.world.folder / "record").unlink(missing_ok=True)
        self.world.environment["VARNEL_RECORD_CODE"] = str(code)
        result, log = self.setup()
        self.assertEqual(result, 0)
        runs = [line.split("\\")[-1] for line in self.world.records()]
        return ([run for run in runs if run.startswith("VcRuntime")],
                [line for line in log if line.startswith("Visual C++ Runtime:")])

    def test_is_installed_where_it_is_missing(self):
        self.assertEqual(self.runs_of_its_setup(0), ([], []))
        first, second = "vcruntime140.dll", "vcruntime140_1.dll"
        for missing, code, text in (
                (first, 0, "installed, code 0."),
                (second, 1638, "installed, code 1638."),
                (second, 1641, "installed, restart needed, code 1641."),
                (second, 3010, "installed, restart needed, code 3010."),
                (second, 1603, "not installed, its setup ended with code 1603.")):
            # What 64-bit programs use; that of 32-bit programs stays where it is.
            file = self.world.path("C:\\windows\\system32") / missing
            aside = file.rename(file.with_suffix(".aside"))
            with self.subTest(missing=missing, code=code):
                self.assertEqual(self.runs_of_its_setup(code),
                                 (['VcRuntimeSetup.exe" /install /quiet /norestart'],
                                  [f"Visual C++ Runtime: {text}"]))
            aside.rename(file)
        self.assertIn("VarnelSolutions.exe", self.world.files_below(FOLDER))


class OldWindows(EngineTestCase):
    def test_is_refused_from_the_build_on_that_the_check_page_refuses(self):
        oldest = int(PRODUCT["oldest_build"])
        for build, expected in ((oldest - 1, 1), (oldest, 0)):
            # Setup is a 32-bit program.
            self.world.import_registry({
                f"HKEY_LOCAL_MACHINE\\Software\\{view}Microsoft\\Windows NT\\CurrentVersion":
                    {"CurrentBuild": str(build), "CurrentBuildNumber": str(build)}
                for view in ("", "Wow6432Node\\")})
            with self.subTest(build=build):
                self.assertEqual(self.setup()[0], expected)
                self.assertEqual(self.world.path(FOLDER).exists(), expected == 0)


class InUse(EngineTestCase):
    SENTENCE = "Varnel Schematics is running. Close it and try again."

    def everything(self):
        return {path: path.stat().st_mtime_ns for path in self.world.path(FOLDER).rglob("*")}

    def assert_refused(self, program, code, file):
        before = self.everything()
        status = self.world.temp / "status.ini"
        result, log = self.run_logged(program, f"/STATUSFILE={dos(status)}")
        self.assertEqual(result, code)
        self.assertIn(f"{self.SENTENCE} In use: {FOLDER}\\{file}", log)
        self.assertIn(f"status={self.SENTENCE}", status.read_text(encoding="utf-8"))
        self.assertEqual(self.everything(), before)

    def test_nothing_is_changed_while_the_application_runs(self):
        folder = self.world.path(FOLDER)
        folder.mkdir(parents=True)
        for name in ("another.exe", "a.DLL"):
            (folder / name).write_bytes(b"")
        self.world.hold(f"{FOLDER}\\another.exe")
        self.assertEqual(self.setup(engine=EARLIER_ENGINE)[0], 0)
        self.world.run(HELPERS / "endprogram.exe", "holdfile.exe")

        application = folder / "VarnelSolutions.exe"
        shutil.copy(HELPERS / "holdfile.exe", application)
        output = self.world.folder / "application.txt"
        self.world.start(f"{FOLDER}\\{application.name}", "C:\\windows\\win.ini", output=output)
        wait_until(lambda: "held" in output.read_text(), "the application")
        self.assert_refused(f"{FOLDER}\\unins000.exe", 1, application.name)
        self.assert_refused(ENGINE, 5, application.name)
        self.world.run(HELPERS / "endprogram.exe", application.name)

        (folder / "a.DLL").rename(folder / "parts" / "a.DLL")
        self.world.hold(f"{FOLDER}\\parts\\a.DLL")
        self.assert_refused(f"{FOLDER}\\unins000.exe", 1, "parts\\a.DLL")
        self.assert_refused(ENGINE, 5, "parts\\a.DLL")
        self.world.run(HELPERS / "endprogram.exe", "holdfile.exe")
        self.assertEqual(self.world.uninstall_entry()["DisplayVersion"], EARLIER_VERSION)

        self.assertEqual(self.setup()[0], 0)
        self.assertEqual(self.run_logged(f"{FOLDER}\\unins000.exe")[0], 0)
        wait_until(lambda: self.world.files_below(FOLDER) == ["another.exe", "parts/a.DLL"],
                   "the removal's end")


class Downgrade(EngineTestCase):
    def test_takes_a_switch(self):
        def version():
            return self.world.uninstall_entry()["DisplayVersion"]

        self.setup()
        status = self.world.temp / "status.ini"
        code, log = self.setup(f"/STATUSFILE={dos(status)}", engine=EARLIER_ENGINE)
        sentence = (f"Varnel Schematics {VERSION} is installed, which is newer than {EARLIER_VERSION}. "
                    "Remove it first, or start setup with /SILENT /ALLOWDOWNGRADE.")
        self.assertEqual(code, 7)
        self.assertIn(sentence, " ".join(log))
        self.assertIn(f"status={sentence}", status.read_text(encoding="utf-8"))
        self.assertEqual(version(), VERSION)
        # The same version, a part of the number alone, and a newer one.
        self.assertEqual(self.setup()[0], 0)
        self.assertEqual(self.setup("/AllowDowngrade", engine=EARLIER_ENGINE)[0], 0)
        self.assertEqual(version(), EARLIER_VERSION)
        self.assertEqual(self.setup()[0], 0)
        # By the numbers, not by the letters.
        self.world.import_registry({f"HKEY_LOCAL_MACHINE\\{UNINSTALL}": {"DisplayVersion": "1.6.10"}})
        self.assertEqual(self.setup()[0], 7)


class RemovalTestCase(EngineTestCase):
    """Started by a person, in Windows' list of programs."""

    def answer(self, *keys):
        """To the uninstaller's box on screen."""
        box = wait_until(lambda: Wizard.search("--name", "^Varnel Schematics Uninstall$"), "a box")
        subprocess.run(["xdotool", "windowfocus", "--sync", box, "key", *keys], check=True)
        wait_until(lambda: Wizard.search("--name", "^Varnel Schematics Uninstall$") != box, "its end")

    def remove_without_the_wizard(self):
        """By the uninstaller's own windows; returns its log."""
        log = self.world.folder / "uninstaller.log"
        uninstaller = self.world.start(f"{FOLDER}\\unins000.exe", f"/LOG={dos(log)}")
        self.answer("alt+y")  # to remove it?
        # The window of its progress has the same title.
        wait_until(lambda: "successfully removed" in log.read_text(encoding="utf-8-sig"), "the last box")
        self.answer("Return")
        self.assertEqual(uninstaller.wait(timeout=PATIENCE), 0)
        wait_until(lambda: not self.world.processes(UNINSTALLER_AT_WORK), "the end of its copy")
        self.assertFalse(self.world.path(FOLDER).exists())
        return log.read_text(encoding="utf-8-sig")


class Removal(RemovalTestCase):
    def start(self, code):
        """The uninstaller, with a wizard that ends with this code."""
        (self.world.folder / "record").unlink(missing_ok=True)
        self.world.environment["VARNEL_RECORD_CODE"] = str(code)
        command = self.world.uninstall_entry()["UninstallString"]
        self.assertEqual(command, f'"{FOLDER}\\unins000.exe"')
        process = self.world.start(command.strip('"'))
        self.assertEqual(wait_until(self.world.records, "the wizard"),
                         [f'"{FOLDER}\\VarnelSetup.exe" --remove-with "{FOLDER}\\unins000.exe"'])
        return process

    def test_is_handed_to_the_wizard(self):
        self.setup()
        shutil.copy(HELPERS / "recordcommandline.exe", self.world.path(FOLDER) / "VarnelSetup.exe")
        before = self.world.files_below(FOLDER)
        self.assertIn("VarnelSetup.exe", before)
        self.assertEqual(self.start(code=0).wait(timeout=PATIENCE), 1)
        self.assertEqual(self.world.files_below(FOLDER), before)
        self.assertTrue(self.world.uninstall_entry())

        # Without the wizard it is the uninstaller's own affair.
        uninstaller = self.start(code=3)
        self.world.hold(f"{FOLDER}\\VarnelSolutions.exe")
        self.answer("alt+y")   # to remove it?
        self.answer("Escape")  # running; try again?
        self.assertEqual(uninstaller.wait(timeout=PATIENCE), 1)
        self.assertEqual(self.world.files_below(FOLDER), before)

        uninstaller = self.start(code=3)
        self.answer("alt+y")
        wait_until(lambda: Wizard.search("--name", "^Varnel Schematics Uninstall$"), "the question")
        self.world.run(HELPERS / "endprogram.exe", "holdfile.exe")
        self.answer("alt+r")
        self.answer("Return")  # removed
        self.assertEqual(uninstaller.wait(timeout=PATIENCE), 0)
        wait_until(lambda: not self.world.path(FOLDER).exists(), "the removal's end")

    def test_is_the_uninstallers_own_without_a_wizard(self):
        wizard = self.world.path(FOLDER) / "VarnelSetup.exe"
        self.setup()
        wizard.unlink()
        self.assertNotIn("The wizard", self.remove_without_the_wizard())
        self.setup()
        wizard.write_text("This is no program.\n")
        self.assertIn("The wizard could not be started", self.remove_without_the_wizard())

    def test_is_the_uninstallers_own_if_it_is_silent(self):
        self.setup()
        self.world.environment["VARNEL_RECORD_CODE"] = "0"
        (self.world.folder / "record").unlink(missing_ok=True)
        self.assertEqual(self.run_logged(f"{FOLDER}\\unins000.exe")[0], 0)
        wait_until(lambda: not self.world.path(FOLDER).exists(), "the removal's end")
        self.assertEqual(self.world.records(), [])


class RemovalWithoutRoom(RemovalTestCase):
    """A temp folder with room for the uninstaller's copy of itself, but not for the wizard's."""

    def setUp(self):
        self.disk = self.small_disk(megabytes=8)
        super().setUp()
        self.world.environment["TMPDIR"] = str(self.disk)

    def test_is_the_uninstallers_own(self):
        self.setup()
        self.assertIn("The wizard was asked to do the removal and ended with code 1.",
                      self.remove_without_the_wizard())
        self.assertEqual(list(self.disk.iterdir()), list(self.disk.glob(UNINSTALLERS_FOLDER)))

    def test_is_the_uninstallers_own_by_a_double_click_too(self):
        self.setup()
        code, _ = self.world.run(f"{FOLDER}\\VarnelSetup.exe")
        self.assertNotEqual(code, 0)
        self.answer("alt+n")  # remove it?
        self.assertIn("unins000.exe", self.world.files_below(FOLDER))


class Release(unittest.TestCase):
    def test_has_what_the_check_page_promises(self):
        def refusal(*options):
            with tempfile.TemporaryDirectory() as folder:
                result = subprocess.run(
                    [ROOT / "tools/windows/compile-engine", "--payload", folder, *options, folder],
                    capture_output=True, text=True, env={"XDG_CACHE_HOME": folder, "PATH": "/usr/bin:/bin"})
            self.assertNotEqual(result.returncode, 0)
            return result.stderr

        self.assertIn("--webview2", refusal("--vcredist", __file__))
        self.assertIn("--vcredist", refusal("--webview2", __file__))
        # Without a cache there is no compiler.
        for options in (("--webview2", __file__, "--vcredist", __file__),
                        ("--without-webview2", "--without-vcredist")):
            self.assertIn("There is no Wine yet", refusal(*options))


if __name__ == "__main__":
    unittest.main()
