"""What the tests of the Windows program share: a world each, and wizards that end with the test."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

from keys import Keys
from screen import Wizard
from world import World, dos

ENGINE = dos(os.environ["VARNEL_ENGINE"])
EARLIER_ENGINE = dos(os.environ["VARNEL_EARLIER_ENGINE"])
VERSION = ENGINE.rsplit("-", 1)[1].removesuffix(".exe")
EARLIER_VERSION = EARLIER_ENGINE.rsplit("-", 1)[1].removesuffix(".exe")

# As setup and uninstaller call the copies of themselves that do the work.
SETUP_AT_WORK = f"VarnelEngine-{VERSION}.tmp"
EARLIER_SETUP_AT_WORK = f"VarnelEngine-{EARLIER_VERSION}.tmp"
UNINSTALLER_AT_WORK = "_unins.tmp"
# Its folder in the temp folder, which Windows removes when it starts the next time.
UNINSTALLERS_FOLDER = "iu-*.tmp"
# Those that an engine leaves in the temp folder when it is ended from outside.
ENDED_ENGINES_FOLDERS = "is-*.tmp"

SILENT = ("/VERYSILENT", "/SUPPRESSMSGBOXES", "/NORESTART")


class WindowsTestCase(unittest.TestCase):
    def setUp(self):
        self.world = World(self.id().split(".", 1)[1].replace(".", "-"))
        self.addCleanup(self.world.end)

    def wizard(self, *arguments, **options):
        wizard = Wizard(self.world, *arguments, **options)
        self.addCleanup(wizard.kill)
        return wizard

    def trusted_keys(self, publisher):
        """The keys of a publisher that this world trusts."""
        keys = Keys(publisher)
        self.addCleanup(keys.end)
        self.world.trust(keys)
        return keys

    def small_disk(self, megabytes=1):
        """A disk of this size, for the time of the test. Programs that run already see none."""
        disk = Path(tempfile.mkdtemp(prefix="varnel-disk-"))
        self.addCleanup(disk.rmdir)
        mount = subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={megabytes}m", "none", disk],
                               capture_output=True)
        if mount.returncode != 0:
            self.skipTest("This user may not mount anything.")
        self.addCleanup(subprocess.run, ["umount", "--lazy", disk], check=True)
        return disk

    def install(self, engine, folder, tasks=""):
        """A copy that somebody installed before."""
        code, output = self.world.run(engine, *SILENT, f"/DIR={folder}", f"/TASKS={tasks}")
        self.assertEqual(code, 0, output)
