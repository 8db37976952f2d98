"""The one file that people download: the wizard with the setup engine inside, started without options."""

import os
import re
import shutil
import subprocess
import time
import unittest
from pathlib import Path

from screen import PRIMARY, SETUP, TITLE_BUTTONS, Wizard
from testcase import (EARLIER_ENGINE, EARLIER_VERSION, ENGINE, SILENT, UNINSTALLER_AT_WORK, UNINSTALLERS_FOLDER,
                      VERSION, WindowsTestCase)
from world import HELPERS, PATIENCE, UNINSTALL, dos, wait_until

ROOT = Path(__file__).resolve().parents[2]
ENGINE_FILE = Path(os.environ["VARNEL_ENGINE"])
SETUP_FILE = Path(SETUP)
FOLDER = "C:\\Apps\\Varnel"
DAMAGED = "This setup file is damaged. Please download it again."


def alter(program, place):
    """Changes the byte of a file that stands there."""
    with open(program, "r+b") as file:
        file.seek(place)
        byte = file.read(1)[0]
        file.seek(place)
        file.write(bytes([byte ^ 1]))


class DownloadTestCase(WindowsTestCase):
    def setUp(self):
        super().setUp()
        self.program = self.world.folder / f"VarnelSchematicsSetup-{VERSION}.exe"
        self.bundle(ENGINE_FILE)

    def bundle(self, engine, wizard=SETUP):
        subprocess.run([ROOT / "tools/bundle", wizard, engine, self.program], check=True,
                       stdout=subprocess.DEVNULL)

    def download(self):
        return self.wizard(program=dos(self.program))

    def private_folders(self):
        return [name for name in self.world.temp_files() if name.startswith("varnel_private_")]

    def unpacked(self):
        """The engine as the running wizard has unpacked it, once nobody writes it any more."""
        def find():
            return next((path for path in self.world.temp.glob("varnel_private_*/VarnelEngine.exe")
                         if path.read_bytes() == ENGINE_FILE.read_bytes()), None)
        return wait_until(find, "the unpacked engine")

    def signed(self, program, name, keys):
        copy = self.world.folder / name
        shutil.copy(program, copy)
        subprocess.run([ROOT / "tools/windows/sign", copy], env=os.environ | keys.variables, check=True,
                       stdout=subprocess.DEVNULL)
        return copy

    def assert_fails(self, wizard, *texts):
        for text in ("Setup could not finish", *texts):
            wizard.wait_page(text, patience=120)
        wizard.click_at(PRIMARY)
        self.assertEqual(wizard.wait_end(), 0)
        self.assertEqual(self.world.temp_files(), [])
        self.assertFalse(self.world.uninstall_entry())


class Life(DownloadTestCase):
    def test_installs_and_updates_by_double_click(self):
        wizard = self.download()
        wizard.walk_to_ready("C:\\My Apps")
        wizard.click_at(PRIMARY)
        wizard.wait_page("Finished in 51 seconds", patience=120)
        self.assertEqual(wizard.close(), 0)
        self.assertIn("VarnelSolutions.exe", self.world.files_below("C:\\My Apps"))
        self.assertEqual(self.world.temp_files(), [])

        wizard = self.download()
        wizard.wait_page("Update Available")
        wizard.press("Return")
        wizard.wait_page("Review before you update")
        wizard.press("Return")
        wizard.wait_page("Updated in 38 seconds", patience=120)
        self.assertEqual(wizard.close(), 0)
        self.assertEqual(self.world.temp_files(), [])

    def test_silent_as_administrators_use_it(self):
        log = self.world.folder / "log of setup.txt"
        code, _ = self.world.run(dos(self.program), "/VerySilent", *SILENT[1:],
                                 f"/DIR={FOLDER} {VERSION}", f"/LOG={dos(log)}")
        self.assertEqual(code, 0)
        self.assertIn("VarnelSolutions.exe", self.world.files_below(f"{FOLDER} {VERSION}"))
        self.assertIn("/VerySilent", log.read_text(encoding="utf-8-sig"))
        # No window opens for a folder that the engine refuses.
        code, _ = self.world.run(dos(self.program), *SILENT, "/DIR=Z:\\proc\\Varnel")
        self.assertNotEqual(code, 0)
        self.assertEqual(self.world.temp_files(), [])

    def test_silent_with_the_window_of_the_engine(self):
        with self.world.braked("VarnelEngine.tmp"):
            setup = self.world.start(dos(self.program), "/Silent", *SILENT[1:], f"/DIR={FOLDER}")
            wait_until(lambda: Wizard.search("--name", "^Setup - Varnel Schematics"), "the engine's window")
            self.assertIsNone(Wizard.search("--name", "^Varnel Schematics setup$"))
        self.assertEqual(setup.wait(timeout=PATIENCE), 0)
        self.assertIn("VarnelSolutions.exe", self.world.files_below(FOLDER))
        self.assertEqual(self.world.temp_files(), [])


class Removal(DownloadTestCase):
    """As Windows' list of programs starts it."""

    def install_and_remove(self):
        """The wizard that the uninstaller has called."""
        self.install(dos(self.program), FOLDER)
        command = self.world.uninstall_entry()["UninstallString"]
        self.assertEqual(command, f'"{FOLDER}\\unins000.exe"')
        uninstaller = self.world.start(command.strip('"'))
        wizard = Wizard(self.world, title="Varnel Schematics uninstall", started_by=uninstaller)
        # Nothing has been removed, which Windows takes for a user who has said no.
        self.assertEqual(uninstaller.wait(timeout=PATIENCE), 1)
        wizard.wait_page("Administrator rights required")
        return wizard

    def test_is_done_by_the_wizard_and_leaves_a_copy_at_most(self):
        wizard = self.install_and_remove()
        wizard.click_at(PRIMARY)
        wizard.wait_page("Uninstalled in 24 seconds", patience=120)
        wait_until(lambda: not self.world.path(FOLDER).exists(), "the end of the removal")
        self.assertFalse(self.world.uninstall_entry())
        wizard.click_at(TITLE_BUTTONS["close"])
        wait_until(lambda: not self.world.processes("VarnelSetup.exe"), "the wizard's end")
        (left,) = self.private_folders()
        self.assertEqual([path.name for path in (self.world.temp / left).iterdir()],
                         ["VarnelSetup.exe"])
        self.assertEqual(self.world.temp_files(UNINSTALLERS_FOLDER), [left])
        # Windows removes it when it starts the next time.
        key = "HKEY_LOCAL_MACHINE\\System\\CurrentControlSet\\Control\\Session Manager".lower()
        pending = "".join(self.world.keys()[key])
        self.assertIn(b"VarnelSetup.exe".hex(","), self.letters(pending))
        self.world.run("wineboot", "--restart")
        wait_until(lambda: not self.world.temp_files(), "the copies to go")

    @staticmethod
    def letters(lines):
        """The first bytes of the two-byte characters in an exported value."""
        values = re.sub(r"[^0-9a-f,]", "", lines.split("PendingFileRenameOperations", 1)[1].split(":", 1)[1])
        return ",".join(values.split(",")[::2])

    def test_nothing_happens_unless_it_is_confirmed(self):
        wizard = self.install_and_remove()
        before = self.world.files_below(FOLDER)
        wizard.press("Escape")
        wait_until(lambda: not self.world.processes("VarnelSetup.exe"), "the wizard's end")
        self.assertEqual(self.world.files_below(FOLDER), before)
        # The next setup takes the copy away.
        self.assertEqual(len(self.private_folders()), 1)
        self.install(dos(self.program), FOLDER)
        self.assertEqual(self.private_folders(), [])

    def test_the_installed_wizard_only_removes(self):
        self.install(dos(self.program), FOLDER)
        # In its own folder, as by a double click.
        started = self.world.start("cmd", "/c", f"cd /d {FOLDER} && VarnelSetup.exe")
        wizard = Wizard(self.world, title="Varnel Schematics uninstall", started_by=started)
        self.assertEqual(started.wait(timeout=PATIENCE), 0)
        wizard.wait_page("Administrator rights required")
        wizard.click_at(PRIMARY)
        wizard.wait_page("Uninstalled in 24 seconds", patience=120)
        wait_until(lambda: not self.world.path(FOLDER).exists(), "the end of the removal")


class Damage(DownloadTestCase):
    def test_cut_off_anywhere_behind_the_image(self):
        # Of an odd size, so that there is something between it and the certificate.
        content = ENGINE_FILE.read_bytes()
        content += bytes(1 + len(content) % 2)
        engine = self.world.folder / "engine.exe"
        engine.write_bytes(content)
        self.bundle(engine)
        begin = self.program.read_bytes().index(content)
        end = begin + len(content)
        whole = self.signed(self.program, "signed.exe", self.trusted_keys("Ours")).read_bytes()
        certificate = -(-end // 8) * 8
        self.assertLess(end, certificate)
        for length in (begin - 1, begin, begin + 1, (begin + end) // 2, end - 1, end, certificate,
                       certificate + 1, certificate + 8, len(whole) - 1):
            with self.subTest(length=length):
                self.program.write_bytes(whole[:length])
                wizard = self.download()
                wizard.wait_page(DAMAGED)
                wizard.click_at(PRIMARY)
                self.assertEqual(wizard.wait_end(), 0)
        self.assertEqual(self.world.temp_files(), [])
        self.assertFalse(self.world.uninstall_entry())

    def test_altered_byte(self):
        alter(self.program, self.program.stat().st_size - ENGINE_FILE.stat().st_size // 2)
        wizard = self.download()
        wizard.walk_to_ready()
        wizard.click_at(PRIMARY)
        self.assert_fails(wizard, DAMAGED)


class Attacks(DownloadTestCase):
    def refused(self, *command):
        """Whether the command fails."""
        return self.world.run("cmd", "/c", *command)[0] != 0

    def test_nobody_can_exchange_the_engine(self):
        other = dos(HELPERS / "recordcommandline.exe")
        wizard = self.download()
        wizard.walk_to_ready("C:\\Apps")
        unpacked = dos(self.unpacked())
        self.assertTrue(self.refused("copy", "/Y", other, unpacked))
        self.refused("del", unpacked)  # del returns 0 even if it fails
        self.assertEqual(dos(self.unpacked()), unpacked)
        self.assertTrue(self.refused("move", "/Y", unpacked, unpacked + ".old"))
        folder = unpacked.rsplit("\\", 1)[0]
        self.assertTrue(self.refused("move", "/Y", folder, folder + "-old"))
        wizard.click_at(PRIMARY)
        wizard.wait_page("Finished in 51 seconds", patience=120)
        self.assertEqual(wizard.close(), 0)
        self.assertIn("VarnelSolutions.exe", self.world.files_below("C:\\Apps"))

    def test_nobody_can_exchange_an_engine_given_by_name(self):
        engine = self.world.folder / ENGINE_FILE.name
        shutil.copy(ENGINE_FILE, engine)
        wizard = self.wizard("--setup-exe", dos(engine))
        wizard.wait_page("Welcome to the Varnel Schematics Setup Wizard")
        self.assertTrue(self.refused("copy", "/Y", dos(HELPERS / "recordcommandline.exe"), dos(engine)))
        self.assertEqual(wizard.close(), 0)

    def test_nobody_can_exchange_the_uninstaller(self):
        self.install(ENGINE, FOLDER)
        wizard = self.wizard("--uninstall", title="Varnel Schematics uninstall")
        wizard.wait_page("Administrator rights required")
        self.assertTrue(self.refused("copy", "/Y", dos(HELPERS / "recordcommandline.exe"),
                                     f"{FOLDER}\\unins000.exe"))
        # But it can remove itself.
        wizard.click_at(PRIMARY)
        wizard.wait_page("Uninstalled in 24 seconds", patience=120)
        wait_until(lambda: not self.world.path(FOLDER).exists(), "the end of the removal")
        self.assertEqual(wizard.close(), 0)


class Publishers(DownloadTestCase):
    """Where the wizard is signed, so must be what it starts, by the same name."""

    def update(self, wizard, engine):
        wizard = self.wizard("--update", "--setup-exe", dos(engine), program=dos(wizard))
        wizard.wait_page("performance fixes")
        wizard.next("Review before you update")
        wizard.click_at(PRIMARY)
        return wizard

    def test_only_an_engine_of_the_same_publisher_is_started(self):
        self.world.import_registry({f"HKEY_LOCAL_MACHINE\\{UNINSTALL}": {"InstallLocation": FOLDER}})
        self.world.path(FOLDER).mkdir(parents=True)
        ours, theirs = self.trusted_keys("Ours"), self.trusted_keys("Theirs")
        wizard = self.signed(SETUP, "wizard.exe", ours)
        altered = self.signed(ENGINE_FILE, "altered.exe", ours)
        alter(altered, altered.stat().st_size // 2)
        for engine in ENGINE_FILE, self.signed(ENGINE_FILE, "theirs.exe", theirs), altered:
            with self.subTest(engine=engine.name):
                refused = self.update(wizard, engine)
                refused.wait_page("The setup engine is not signed by Varnel Solutions Team.")
                refused.click_at(PRIMARY)
                self.assertEqual(refused.wait_end(), 0)
                self.assertEqual(self.world.files_below(FOLDER), [])
        done = self.update(wizard, self.signed(ENGINE_FILE, "ours.exe", ours))
        done.wait_page("Updated in 38 seconds", patience=120)
        self.assertEqual(done.close(), 0)

    def test_only_an_uninstaller_of_the_same_publisher_is_started(self):
        self.install(ENGINE, FOLDER)
        uninstaller = self.world.path(FOLDER) / "unins000.exe"
        ours, theirs = self.trusted_keys("Ours"), self.trusted_keys("Theirs")
        wizard = self.signed(SETUP, "wizard.exe", ours)
        foreign = self.signed(uninstaller, "theirs.exe", theirs)
        before = self.world.files_below(FOLDER)
        for program in uninstaller, foreign:
            with self.subTest(program=program.name):
                if program != uninstaller:
                    shutil.copy(program, uninstaller)
                refused = self.wizard("--uninstall", "--uninstaller", f"{FOLDER}\\unins000.exe",
                                      program=dos(wizard), title="Varnel Schematics uninstall")
                refused.wait_page("Administrator rights required")
                refused.click_at(PRIMARY)
                refused.wait_page("The setup engine is not signed by Varnel Solutions Team.")
                refused.click_at(PRIMARY)
                self.assertEqual(refused.wait_end(), 0)
                self.assertEqual(self.world.files_below(FOLDER), before)
                self.assertTrue(self.world.uninstall_entry())

    def test_silently_too(self):
        ours = self.trusted_keys("Ours")
        unsigned_inside = self.signed(self.program, "unsigned inside.exe", ours)
        self.bundle(self.signed(ENGINE_FILE, "engine.exe", ours))
        download = self.signed(self.program, "download.exe", ours)
        altered = self.world.folder / "altered.exe"
        shutil.copy(download, altered)
        alter(altered, SETUP_FILE.stat().st_size + ENGINE_FILE.stat().st_size // 2)
        for program, reason in (
            (unsigned_inside, "The setup engine is not signed by Varnel Solutions Team."),
            (altered, DAMAGED),
        ):
            with self.subTest(program=program.name):
                log = program.with_suffix(".txt")
                code, _ = self.world.run(dos(program), *SILENT, f"/DIR={FOLDER}", f"/LOG={dos(log)}")
                self.assertEqual(code, 3)
                self.assertIn(reason, log.read_text(encoding="utf-8"))
                self.assertFalse(self.world.uninstall_entry())
        code, _ = self.world.run(dos(download), *SILENT, f"/DIR={FOLDER}")
        self.assertEqual(code, 0)
        self.assertEqual(self.world.temp_files(), [])


class Ends(DownloadTestCase):
    def test_killed_while_it_unpacks(self):
        large = self.world.folder / "large.exe"
        shutil.copy(ENGINE_FILE, large)
        os.truncate(large, 1 << 30)
        self.bundle(large)
        self.download()
        wait_until(self.private_folders, "the folder of the engine")
        self.world.run(HELPERS / "endprogram.exe", self.program.name)
        self.assertEqual(len(self.private_folders()), 1)
        self.bundle(ENGINE_FILE)
        code, _ = self.world.run(dos(self.program), *SILENT, f"/DIR={FOLDER}")
        self.assertEqual(code, 0)
        self.assertEqual(self.world.temp_files(), [])

    def test_the_session_ends_meanwhile(self):
        wizard = self.download()
        self.unpacked()
        self.world.run(HELPERS / "windowcommand.exe", wizard.title, "signoff")
        wizard.wait_end()
        self.assertEqual(self.world.temp_files(), [])

    def test_two_at_once(self):
        first = self.download()
        self.unpacked()
        code, _ = self.world.run(dos(self.program), *SILENT, f"/DIR={FOLDER}")
        self.assertEqual(code, 0)
        self.assertEqual(len(self.private_folders()), 1)
        self.assertEqual(first.close(), 0)
        self.assertEqual(self.world.temp_files(), [])

    def run_application(self):
        """A copy whose application runs, of an earlier version; returns its files."""
        self.install(EARLIER_ENGINE, FOLDER)
        shutil.copy(HELPERS / "holdfile.exe", self.world.path(FOLDER) / "VarnelSolutions.exe")
        self.world.hold("C:\\windows\\win.ini", program=f"{FOLDER}\\VarnelSolutions.exe")
        return self.world.files_below(FOLDER)

    def test_update_beside_the_running_application(self):
        before = self.run_application()
        wizard = self.download()
        wizard.wait_page("Update Available")
        wizard.press("Return")
        wizard.wait_page("Review before you update")
        wizard.press("Return")
        wizard.wait_page("Varnel Schematics is running. Close it and try again.", patience=120)
        wizard.click_at(PRIMARY)
        self.assertEqual(wizard.wait_end(), 0)
        self.assertEqual(self.world.files_below(FOLDER), before)
        self.assertEqual(self.world.uninstall_entry()["DisplayVersion"], EARLIER_VERSION)

    def test_removal_beside_the_running_application(self):
        before = self.run_application()
        wizard = self.wizard("--uninstall", title="Varnel Schematics uninstall")
        wizard.wait_page("Administrator rights required")
        wizard.click_at(PRIMARY)
        wizard.wait_page("Varnel Schematics is running. Close it and try again.")
        wizard.click_at(PRIMARY)
        self.assertEqual(wizard.wait_end(), 0)
        self.assertEqual(self.world.files_below(FOLDER), before)

    def test_removal_waits_for_the_end_of_another(self):
        self.install(ENGINE, FOLDER)
        before = self.world.files_below(FOLDER)
        # As the uninstaller that has called the wizard does until it has ended.
        self.world.hold(f"{FOLDER}\\unins000.dat", "alone")
        wizard = self.wizard("--uninstall", title="Varnel Schematics uninstall")
        wizard.wait_page("Administrator rights required")
        wizard.click_at(PRIMARY)
        wait_until(lambda: "Administrator rights" not in wizard.read(), "the run's page")
        for _ in range(10):
            time.sleep(0.1)
            for name in "unins000.exe", UNINSTALLER_AT_WORK:
                self.assertEqual(self.world.processes(name), [])
        self.assertEqual(self.world.files_below(FOLDER), before)
        self.world.run(HELPERS / "endprogram.exe", "holdfile.exe")
        wizard.wait_page("Uninstalled in 24 seconds", patience=120)
        wait_until(lambda: not self.world.path(FOLDER).exists(), "the end of the removal")
        self.assertEqual(wizard.close(), 0)


class Room(DownloadTestCase):
    """A temp folder without room, and one that nothing can be written to."""

    def setUp(self):
        self.disk = self.small_disk()
        super().setUp()
        self.world.environment["TMPDIR"] = str(self.disk)

    def assert_fails_silently(self):
        log = self.world.folder / "log.txt"
        code, _ = self.world.run(dos(self.program), *SILENT, f"/DIR={FOLDER}", f"/LOG={dos(log)}")
        self.assertEqual(code, 3)
        self.assertIn("The setup engine cannot be unpacked", log.read_text(encoding="utf-8"))
        self.assertFalse(self.world.path(FOLDER).exists())

    def test_full(self):
        wizard = self.download()
        wizard.walk_to_ready()
        wizard.click_at(PRIMARY)
        megabytes = -(-ENGINE_FILE.stat().st_size // (1 << 20))
        wizard.wait_page("Setup could not finish")
        self.assertIn("The setup engine cannot be unpacked", wizard.page)
        self.assertIn(f"It needs {megabytes} MB in", wizard.page)
        wizard.click_at(PRIMARY)
        self.assertEqual(wizard.wait_end(), 0)
        self.assert_fails_silently()
        self.assertEqual(list(self.disk.iterdir()), [])

    def test_read_only(self):
        subprocess.run(["mount", "-o", "remount,ro", self.disk], check=True)
        wizard = self.download()
        wizard.walk_to_ready()
        wizard.click_at(PRIMARY)
        wizard.wait_page("Setup could not finish")
        self.assertIn("The setup engine cannot be unpacked", wizard.page)
        wizard.click_at(PRIMARY)
        self.assertEqual(wizard.wait_end(), 0)
        self.assert_fails_silently()


if __name__ == "__main__":
    unittest.main()
