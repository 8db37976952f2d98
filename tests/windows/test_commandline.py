"""The engine's command line, byte for byte as the engine gets it."""

import re
import shutil
import subprocess
import unittest
from pathlib import Path

from screen import PRIMARY, SETUP
from testcase import SILENT, WindowsTestCase
from world import HELPERS, UNINSTALL, dos, wait_until

ROOT = Path(__file__).resolve().parents[2]
# The program from its arguments, as QProcess puts them together when it gets them as one text.
GAP = "  "
RECORDER = HELPERS / "recordcommandline.exe"
ID = "0123456789abcdef" * 2


class CommandLine(WindowsTestCase):
    maxDiff = None

    def recorded(self, wizard, outcome):
        """The command line of the run that the wizard has just begun, with a known run id."""
        line = wait_until(self.world.records, "the engine's record")[-1]
        (self.world.folder / "record").unlink()
        wizard.wait_page(outcome)
        self.assertEqual(wizard.close(), 0)
        return re.sub(r"(varnel_\w+?_)[0-9a-f]{32}", r"\g<1>" + ID, line)

    def expected(self, program, folder, tasks=""):
        status = dos(self.world.temp / f"varnel_setup_{ID}.ini")
        return (f'{program}{GAP}{" ".join(SILENT)} /DIR="{folder}" /TASKS="{tasks}" '
                f'/STATUSFILE="{status}" /LOG="{status}.log"')

    def update(self, location, engine=RECORDER):
        """Lets the wizard update a copy in a folder that the registry names."""
        self.world.import_registry({f"HKEY_LOCAL_MACHINE\\{UNINSTALL}": {
            "DisplayVersion": "1.0", "InstallLocation": location}})
        wizard = self.wizard("--update", "--setup-exe", dos(engine))
        wizard.wait_page("performance fixes")
        wizard.next("Review before you update")
        wizard.click_at(PRIMARY)
        return self.recorded(wizard, "Updated in")

    def test_folders_of_an_update(self):
        for location, folder in (
                ("C:\\Program Files\\Varnel  Schematics", "C:\\Program Files\\Varnel  Schematics"),
                ("C:\\it's (a) & b^c; d=e, {f} !", "C:\\it's (a) & b^c; d=e, {f} !"),
                ("C:\\%1 %TEMP% 100% %5", "C:\\%1 %TEMP% 100% %5"),
                ("C:\\Übung\\Схема\\回路\\", "C:\\Übung\\Схема\\回路"),
                ("C:\\", "C:\\Varnel Schematics")):
            with self.subTest(folder=folder):
                self.assertEqual(self.update(location), self.expected(dos(RECORDER), folder))

    def test_engine_whose_path_has_blanks(self):
        engine = self.world.folder / "an engine.exe"
        shutil.copy(RECORDER, engine)
        self.assertEqual(self.update("C:\\Apps", engine),
                         self.expected(f'"{dos(engine)}"', "C:\\Apps"))

    def test_installation_with_the_shortcut(self):
        wizard = self.wizard("--install", "--setup-exe", dos(RECORDER))
        wizard.walk_to_ready()
        wizard.click_at(PRIMARY)
        self.assertEqual(
            self.recorded(wizard, "Finished in"),
            self.expected(dos(RECORDER), "C:\\Program Files\\Varnel Schematics", "desktopicon"))

    def test_removal(self):
        wizard = self.wizard("--uninstall", "--uninstaller", dos(RECORDER),
                             title="Varnel Schematics uninstall")
        wizard.wait_page("Administrator rights required")
        wizard.click_at(PRIMARY)
        status = dos(self.world.temp / f"varnel_uninst_{ID}.ini")
        self.assertEqual(self.recorded(wizard, "Uninstalled in"),
                         f'{dos(RECORDER)}{GAP}{" ".join(SILENT)} /STATUSFILE="{status}"')

    def test_silent_engine_gets_it_as_it_stands(self):
        download = self.world.folder / "a download.exe"
        subprocess.run([ROOT / "tools/bundle", SETUP, RECORDER, download], check=True, stdout=subprocess.DEVNULL)
        batch = self.world.folder / "start.bat"
        rest = '/VERYSILENT /DIR="C:\\a  b" "/TASKS=c d" 100% \\\\"'
        batch.write_text(f'@"{dos(download)}" {rest.replace("%", "%%")}\r\n')
        self.world.run("cmd", "/c", dos(batch))
        line = wait_until(self.world.records, "the engine's record")[-1]
        self.assertEqual(line.split("VarnelEngine.exe", 1)[1].lstrip('"').lstrip(), rest)


if __name__ == "__main__":
    unittest.main()
