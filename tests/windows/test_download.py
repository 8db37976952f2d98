"""The one file that people download: the wizard with the setup engine inside, started without options."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from screen import PRIMARY, SETUP
from testcase import EARLIER_ENGINE, ENGINE, SILENT, VERSION, WindowsTestCase
from world import HELPERS, dos, wait_until

ROOT = Path(__file__).resolve().parents[2]
ENGINE_FILE = Path(os.environ["VARNEL_ENGINE"])
FOLDER = "C:\\Apps\\Varnel"
DAMAGED = "This setup file is damaged. Please download it again."


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

    def assert_fails(self, wizard, *texts):
        for text in ("Setup could not finish", *texts):
            wizard.wait_page(text, patience=120)
        wizard.click_at(PRIMARY)
        self.assertEqual(wizard.wait_end(), 0)
        self.assertEqual(self.world.temp_files(), [])
        self.assertFalse(self.world.path(FOLDER).exists())


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


class Damage(DownloadTestCase):
    def test_cut_off_anywhere_behind_the_image(self):
        whole = self.program.read_bytes()
        engine = ENGINE_FILE.read_bytes()
        begin = whole.index(engine)
        end = begin + len(engine)
        for length in (begin, begin + 1, end - 1):
            with self.subTest(length=length):
                self.program.write_bytes(whole[:length])
                wizard = self.download()
                wizard.wait_page(DAMAGED)
                wizard.click_at(PRIMARY)
                self.assertEqual(wizard.wait_end(), 0)
        self.assertEqual(self.world.temp_files(), [])

    def test_altered_byte(self):
        content = bytearray(self.program.read_bytes())
        content[-len(ENGINE_FILE.read_bytes()) // 2] ^= 1
        self.program.write_bytes(content)
        wizard = self.download()
        wizard.walk_to_ready()
        wizard.click_at(PRIMARY)
        self.assert_fails(wizard, DAMAGED)


class Attacks(DownloadTestCase):
    def refused(self, *command):
        """Whether Windows keeps somebody from doing this."""
        return self.world.run("cmd", "/c", *command)[0] != 0

    def test_nobody_can_exchange_the_engine(self):
        other = dos(HELPERS / "recordcommandline.exe")
        wizard = self.download()
        wizard.walk_to_ready("C:\\Apps")
        unpacked = dos(self.unpacked())
        self.assertTrue(self.refused("copy", "/Y", other, unpacked))
        self.assertTrue(self.refused("del", unpacked) or Path(self.unpacked()).exists())
        self.assertTrue(self.refused("move", "/Y", unpacked, unpacked + ".old"))
        folder = unpacked.rsplit("\\", 1)[0]
        self.assertTrue(self.refused("move", "/Y", folder, folder + "-old"))
        wizard.click_at(PRIMARY)
        wizard.wait_page("Finished in 51 seconds", patience=120)
        self.assertEqual(wizard.close(), 0)
        self.assertEqual(self.world.records(), [])

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

    def test_two_at_once(self):
        first = self.download()
        self.unpacked()
        code, _ = self.world.run(dos(self.program), *SILENT, f"/DIR={FOLDER}")
        self.assertEqual(code, 0)
        self.assertEqual(len(self.private_folders()), 1)
        self.assertEqual(first.close(), 0)
        self.assertEqual(self.world.temp_files(), [])

    def test_removal_beside_the_running_application(self):
        self.install(ENGINE, FOLDER)
        application = self.world.path(FOLDER) / "VarnelSolutions.exe"
        shutil.copy(HELPERS / "holdfile.exe", application)
        self.world.hold("C:\\windows\\win.ini", program=f"{FOLDER}\\VarnelSolutions.exe")
        before = self.world.files_below(FOLDER)
        wizard = self.wizard("--uninstall", title="Varnel Schematics uninstall")
        wizard.wait_page("Administrator rights required")
        wizard.click_at(PRIMARY)
        wizard.wait_page("Varnel Schematics is running. Close it and try again.")
        wizard.click_at(PRIMARY)
        self.assertEqual(wizard.wait_end(), 0)
        self.assertEqual(self.world.files_below(FOLDER), before)


class Room(DownloadTestCase):
    """A temp folder without room, and one that nothing can be written to."""

    def setUp(self):
        self.disk = Path(tempfile.mkdtemp(prefix="varnel-disk-"))
        self.addCleanup(self.disk.rmdir)
        mount = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=1m", "none", self.disk],
                               capture_output=True)
        if mount.returncode != 0:
            self.skipTest("This user may not mount anything.")
        self.addCleanup(subprocess.run, ["umount", "--lazy", self.disk], check=True)
        super().setUp()
        self.world.environment["TMPDIR"] = str(self.disk)

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


if __name__ == "__main__":
    unittest.main()
