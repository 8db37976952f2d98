"""Signing programs with a certificate made for the occasion, and without one."""

import os
import pathlib
import shutil
import subprocess
import unittest

from keys import DAYS, Keys, TimeStampServer
from testcase import SETUP_AT_WORK, SILENT, VERSION, WindowsTestCase
from world import PATIENCE, dos, wait_until

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = pathlib.Path(os.environ["VARNEL_SETUP"])
class Signing(unittest.TestCase):
    def setUp(self):
        self.keys = Keys()
        self.addCleanup(self.keys.end)
        self.program = self.keys.folder / "VarnelSetup.exe"
        shutil.copy(PROGRAM, self.program)

    def sign(self, **variables):
        return subprocess.run(
            [ROOT / "tools/windows/sign", self.program], text=True, stdin=subprocess.DEVNULL,
            env={**os.environ, "no_proxy": "127.0.0.1", **self.keys.variables, **variables},
            capture_output=True)

    def assert_signed(self, result):
        self.assertEqual(result.returncode, 0, result.stderr)
        verified = self.keys.verify(self.program)
        self.assertEqual(verified.returncode, 0, verified.stdout + verified.stderr)
        self.assertTrue(os.access(self.program, os.X_OK))

    def assert_untouched(self):
        self.assertEqual(self.program.read_bytes(), PROGRAM.read_bytes())
        self.assertEqual(list(self.keys.folder.glob("VarnelSetup.exe?*")), [])

    def test_without_a_certificate_it_says_so_and_goes_on(self):
        result = self.sign(VARNEL_CERTIFICATE="")
        self.assertEqual(result.returncode, 0)
        self.assertIn("stays unsigned", result.stdout)
        self.assert_untouched()

    def test_key_in_a_file(self):
        self.keys.password.write_text("wrong")
        self.assertNotEqual(self.sign().returncode, 0)
        self.assert_untouched()
        self.keys.password.write_text("secret")
        self.assert_signed(self.sign())
        # A signature without a time stamp ends with the certificate.
        self.assertNotEqual(self.keys.verify(self.program, 2 * DAYS).returncode, 0)

    def test_key_on_a_token(self):
        token = self.keys.to_token()
        self.keys.password.write_text("wrong")
        self.assertNotEqual(self.sign(**token).returncode, 0)
        self.assert_untouched()
        self.keys.password.write_text("secret")
        self.assert_signed(self.sign(**token))

    def test_time_stamp(self):
        server = TimeStampServer(self.keys)
        self.addCleanup(server.end)
        self.assert_signed(self.sign(VARNEL_TIMESTAMP_URL=server.url))
        verified = self.keys.verify(self.program, 2 * DAYS)
        self.assertEqual(verified.returncode, 0, verified.stdout + verified.stderr)

    def test_no_time_stamp_no_signature(self):
        self.assertNotEqual(self.sign(VARNEL_TIMESTAMP_URL="http://127.0.0.1:9/").returncode, 0)
        self.assert_untouched()


class SignedEngine(WindowsTestCase):
    def test_has_signed_programs_in_it(self):
        keys = Keys()
        self.addCleanup(keys.end)
        output = self.world.folder / "engine"
        made = subprocess.run([ROOT / "tools/windows/compile-engine", output], text=True,
                              env={**self.world.environment, **keys.variables}, capture_output=True)
        self.assertEqual(made.returncode, 0, made.stderr)
        engine = pathlib.Path(made.stdout.splitlines()[-1])
        self.assertEqual(sorted(path.name for path in output.iterdir()),
                         ["VarnelEngine-" + VERSION + ".exe", "compiler.log", "payload-" + VERSION])

        with self.world.braked(SETUP_AT_WORK):
            setup = self.world.start(dos(engine), *SILENT, "/DIR=C:\\Apps")
            wait_until(lambda: self.world.processes(SETUP_AT_WORK), "setup at work")
            at_work = next(self.world.temp.glob(f"*/{SETUP_AT_WORK}"))
            shutil.copy(at_work, self.world.folder / "at-work.exe")
        self.assertEqual(setup.wait(timeout=PATIENCE), 0)
        folder = self.world.path("C:\\Apps")
        self.assertTrue((folder / "unins000.msg").exists())
        for program in (engine, self.world.folder / "at-work.exe", folder / "unins000.exe"):
            with self.subTest(program=program.name):
                verified = keys.verify(program)
                self.assertEqual(verified.returncode, 0, verified.stdout + verified.stderr)

        self.assertEqual(self.world.run("C:\\Apps\\unins000.exe", *SILENT)[0], 0)
        wait_until(lambda: not folder.exists(), "the removal's end")


if __name__ == "__main__":
    unittest.main()
