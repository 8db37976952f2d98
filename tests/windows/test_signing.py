"""Signing the program with a certificate made for the occasion, and without one."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = pathlib.Path(os.environ["VARNEL_SETUP"])


class Signing(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.program = self.folder / "VarnelSetup.exe"
        shutil.copy(PROGRAM, self.program)

    def sign(self, **variables):
        return subprocess.run([ROOT / "tools/windows/sign", self.program], text=True,
                              env=os.environ | variables, capture_output=True)

    def make_certificate(self):
        (self.folder / "password").write_text("secret")
        for command in (
            "openssl req -x509 -newkey rsa:2048 -nodes -keyout key.pem -out certificate.pem -days 2"
            " -subj /CN=Test -addext extendedKeyUsage=codeSigning",
            "openssl pkcs12 -export -inkey key.pem -in certificate.pem -out certificate.p12"
            " -passout file:password",
        ):
            subprocess.run(command.split(), cwd=self.folder, check=True, capture_output=True)

    def test_without_a_certificate_it_says_so_and_goes_on(self):
        result = self.sign(VARNEL_CERTIFICATE="")
        self.assertEqual(result.returncode, 0)
        self.assertIn("stays unsigned", result.stdout)
        self.assertEqual(self.program.read_bytes(), PROGRAM.read_bytes())

    def test_with_a_certificate_the_signature_holds(self):
        self.make_certificate()
        result = self.sign(VARNEL_CERTIFICATE=str(self.folder / "certificate.p12"),
                           VARNEL_CERTIFICATE_PASSWORD_FILE=str(self.folder / "password"))
        self.assertEqual(result.returncode, 0, result.stderr)
        verified = subprocess.run(
            ["osslsigncode", "verify", "-CAfile", self.folder / "certificate.pem", self.program],
            text=True, capture_output=True)
        self.assertEqual(verified.returncode, 0, verified.stdout + verified.stderr)

    def test_a_wrong_password_leaves_the_program_alone(self):
        self.make_certificate()
        (self.folder / "password").write_text("wrong")
        result = self.sign(VARNEL_CERTIFICATE=str(self.folder / "certificate.p12"),
                           VARNEL_CERTIFICATE_PASSWORD_FILE=str(self.folder / "password"))
        self.assertNotEqual(result.returncode, 0)
        self.assertEqual(self.program.read_bytes(), PROGRAM.read_bytes())
        self.assertEqual(list(self.folder.glob("VarnelSetup.exe?*")), [])


if __name__ == "__main__":
    unittest.main()
