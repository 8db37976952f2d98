"""The life of a user with the real setup engine: install, open, update, remove."""

import contextlib
import re
import unittest

from screen import PRIMARY, Watch
from testcase import (EARLIER_ENGINE, EARLIER_SETUP_AT_WORK, EARLIER_VERSION, ENGINE,
                      SETUP_AT_WORK, SILENT, UNINSTALLER_AT_WORK, UNINSTALLERS_FOLDER, VERSION,
                      WindowsTestCase)
from world import dos, wait_until

DESKTOP_LINK = "C:\\users\\Public\\Desktop\\Varnel Schematics.lnk"
MENU_LINK = "C:\\ProgramData\\Microsoft\\Windows\\Start Menu\\Programs\\Varnel Schematics.lnk"
CLASSES = "hkey_local_machine\\software\\classes\\"


class Life(WindowsTestCase):
    def assert_installed(self, folder, version, desktop_shortcut):
        world = self.world
        files = world.files_below(folder)
        for name in ("VarnelSolutions.exe", "LICENSE.txt", "unins000.exe", "unins000.dat",
                     "examples/blinker.sch", "examples/blinker.pcb", "parts/part-300.part"):
            self.assertIn(name, files)
        self.assertIn(version, (world.path(folder) / "parts/part-001.part").read_text())
        self.assertEqual(world.path(DESKTOP_LINK).exists(), desktop_shortcut)
        self.assertTrue(world.path(MENU_LINK).exists())

        entry = world.uninstall_entry()
        self.assertEqual(entry["DisplayName"], "Varnel Schematics")
        self.assertEqual(entry["DisplayVersion"], version)
        self.assertEqual(entry["Publisher"], "Varnel Solutions Team")
        self.assertEqual(entry["InstallLocation"], folder + "\\")
        self.assertEqual(entry["UninstallString"].strip('"'), folder + "\\unins000.exe")
        keys = world.keys()
        for kind in ("sch", "pcb"):
            self.assertIn(f'"VarnelSchematics.{kind}"=""', keys[f"{CLASSES}.{kind}\\openwithprogids"])
            command = keys[f"{CLASSES}varnelschematics.{kind}\\shell\\open\\command"]
            self.assertEqual(world.values(command)["@"],
                             f'"{folder}\\VarnelSolutions.exe" "%1"')

    def assert_seen_moving(self, watch):
        """Several different things have been reported and shown."""
        fractions = watch.fractions()
        self.assertEqual(fractions, sorted(fractions))
        self.assertGreater(len(set(fractions)), 3)
        self.assertGreater(len(watch.distinct("file")), 3)
        self.assertGreater(len(watch.distinct("status")), 1)
        self.assertGreater(len(watch.looks), 3)
        percentages = watch.percentages()
        self.assertEqual(percentages, sorted(percentages))
        self.assertGreater(len(set(percentages)), 2, percentages)

    def start_removal(self):
        wizard = self.wizard("--uninstall", title="Varnel Schematics uninstall")
        wizard.wait_page("Administrator rights required")
        return wizard

    def watch_run(self, wizard, text, program, **brake):
        """Watches until the engine, whose `program` works, is done and the last page is there."""
        watch = Watch(wizard)
        with self.world.braked(program, **brake):
            watch.until(lambda: watch.reports
                        and watch.reports[-1]["status"].startswith("Varnel Schematics is "))
        self.assertEqual(watch.reports[-1]["progress"], "100.0")
        wizard.wait_page(text)
        self.assert_seen_moving(watch)
        return watch

    def test_install_with_shortcut_then_open(self):
        folder = "C:\\My Apps\\Varnel 100% it's"
        wizard = self.wizard("--install", "--setup-exe", ENGINE)
        wizard.walk_to_ready(folder)
        self.assertIn("C:\\My Apps", wizard.page)
        wizard.click_at(PRIMARY)
        watch = self.watch_run(wizard, "Finished in 51 seconds", SETUP_AT_WORK)
        self.assert_installed(folder, VERSION, desktop_shortcut=True)
        # The WebView2 Runtime is missing in a fresh Windows, and its setup came with the engine.
        self.assertIn("Installing WebView2 Runtime...", watch.distinct("status"))
        self.assertEqual([line.rsplit("\\", 1)[1] for line in self.world.records()],
                         ['WebView2Setup.exe" /silent /install'])

        wizard.click_at(PRIMARY)
        self.assertEqual(wizard.wait_end(), 0)
        started = self.world.path(folder) / "started.txt"
        wait_until(lambda: started.exists() and started.read_text().endswith("\n"), "the start")
        wait_until(lambda: not self.world.processes("VarnelSolutions.exe"), "its end")
        lines = started.read_text().splitlines()
        self.assertEqual(len(lines), 1)
        working_folder, command = lines[0].split("\t")
        self.assertEqual(working_folder.rstrip("\\"), folder)
        self.assertEqual(command.strip().strip('"'), f"{folder}\\VarnelSolutions.exe")
        self.assertEqual(self.world.temp_files(), [])
        started.unlink()

        # Only the folder was there before, so it stays, with nothing in it.
        wizard = self.start_removal()
        wizard.click_at(PRIMARY)
        wizard.wait_page("Uninstalled in 24 seconds")
        wait_until(lambda: not list(self.world.path(folder).iterdir()), "an empty folder")
        self.assertFalse(self.world.path(DESKTOP_LINK).exists())
        self.assertFalse(self.world.path(MENU_LINK).exists())
        self.assertEqual(wizard.close(), 0)

    def test_install_without_shortcut_update_and_remove(self):
        world = self.world
        folder = "C:\\Tools\\Varnel"
        wizard = self.wizard("--install", "--setup-exe", EARLIER_ENGINE)
        wizard.walk_to_ready(folder, desktop_shortcut=False)
        wizard.click_at(PRIMARY)
        self.watch_run(wizard, "Finished in 51 seconds", EARLIER_SETUP_AT_WORK)
        self.assert_installed(folder, EARLIER_VERSION, desktop_shortcut=False)
        self.assertEqual(wizard.close(), 0)

        # What others keep there, and what the application keeps for its user.
        (world.path(folder) / "mine.sch").write_text("mine")
        preferences = world.user_folder("AppData", "Roaming", "Varnel Schematics")
        (preferences / "Varnel Schematics").mkdir(parents=True)
        (preferences / "Varnel Schematics" / "settings.ini").write_text("[window]\n")
        neighbour = world.user_folder("AppData", "Roaming", "Varnel Schematics", "Other")
        neighbour.mkdir()

        # Started without a mode, it offers an update of what it has found. All of it by keyboard.
        wizard = self.wizard("--setup-exe", ENGINE)
        page = wizard.wait_page("Update Available")
        self.assertIn(EARLIER_VERSION, page)
        self.assertIn(VERSION, page)
        wizard.press("Return")
        wizard.wait_page("Review before you update")
        self.assertIn(folder, wizard.page)
        wizard.press("shift+Tab", "space")  # to "Back" and there
        wizard.wait_page("Update Available")
        wizard.press("Return")
        wizard.wait_page("Review before you update")
        wizard.press("Return")
        self.watch_run(wizard, "Updated in 38 seconds", SETUP_AT_WORK)
        self.assert_installed(folder, VERSION, desktop_shortcut=False)
        self.assertEqual(wizard.close(), 0)

        wizard = self.start_removal()
        wizard.click("Also delete")
        wizard.settle()
        wizard.picture("with-preferences")
        wizard.click_at(PRIMARY)
        self.watch_run(wizard, "Uninstalled in 24 seconds", UNINSTALLER_AT_WORK, pause=0.2)
        wait_until(lambda: [path.name for path in world.path(folder).iterdir()] == ["mine.sch"],
                   "an empty folder")
        wait_until(lambda: not world.uninstall_entry(), "the entry to go")
        machine = world.registry()
        self.assertNotIn("VarnelSchematics.", machine)
        self.assertNotIn("VarnelSolutions.exe", machine)
        self.assertFalse(world.path(MENU_LINK).exists())
        self.assertFalse((preferences / "Varnel Schematics").exists())
        self.assertTrue(neighbour.exists())
        self.assertEqual(wizard.close(), 0)
        self.assertEqual(world.temp_files(UNINSTALLERS_FOLDER), [])


class Names(WindowsTestCase):
    def test_the_engine_reports_files_as_its_log_names_them(self):
        """The wizard shows both, and two spellings of one name would flicker."""
        # Too long for the label on setup's own page.
        folder = "C:\\Apps\\" + "A name that fills the line " * 4 + "up"
        status, log = self.world.temp / "status.ini", self.world.temp / "setup.log"
        names = set()
        with self.world.braked(SETUP_AT_WORK):
            engine = self.world.start(ENGINE, *SILENT, f"/DIR={folder}",
                                      f"/STATUSFILE={dos(status)}", f"/LOG={dos(log)}")
            while engine.poll() is None:
                with contextlib.suppress(FileNotFoundError, UnicodeDecodeError):
                    names.update(re.findall(r"^file=(.+)\n", status.read_text(), re.MULTILINE))
        self.assertEqual(engine.returncode, 0)
        logged = re.findall("Dest filename: (.+)", log.read_text(encoding="utf-8-sig"))
        self.assertGreater(len(names), 3)
        self.assertLessEqual(names, set(logged))
        self.assertTrue(any(name.startswith(f"{folder}\\parts\\part-") for name in names), names)


if __name__ == "__main__":
    unittest.main()
