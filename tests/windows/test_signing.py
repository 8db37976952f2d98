"""Signing programs with a certificate made for the occasion, and without one."""

import http.server
import os
import pathlib
import shutil
import subprocess
import tempfile
import threading
import time
import unittest

from testcase import SETUP_AT_WORK, SILENT, VERSION, WindowsTestCase
from world import PATIENCE, dos, wait_until

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = pathlib.Path(os.environ["VARNEL_SETUP"])
DAYS = 2

TIME_STAMP_SETTINGS = """
[tsa]
default_tsa = authority
[authority]
serial = serial
signer_cert = stamps.pem
signer_key = stamps.key
certs = root.pem
signer_digest = sha256
digests = sha256
default_policy = 1.2.3.4
ess_cert_id_alg = sha256
"""


class Keys:
    """A publisher's certificate and its key, an authority and a root above it, in a temporary folder."""

    def __init__(self):
        self._folder = tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self._folder.name)
        self.password = self.folder / "password"
        self.password.write_text("secret")
        self.openssl("req -x509 -newkey rsa:2048 -nodes -keyout root.key -out root.pem -subj /CN=Root",
                     "-days", str(30 * DAYS))
        self.issue("authority", "basicConstraints=critical,CA:true", 30 * DAYS)
        self.issue("publisher", "extendedKeyUsage=codeSigning", DAYS, by="authority")
        with open(self.folder / "publisher.pem", "a", encoding="ascii") as chain:
            chain.write((self.folder / "authority.pem").read_text())
        self.openssl("pkcs12 -export -inkey publisher.key -in publisher.pem -out publisher.p12",
                     "-passout", "file:password")
        self.variables = {"VARNEL_CERTIFICATE": str(self.folder / "publisher.p12"),
                          "VARNEL_CERTIFICATE_PASSWORD_FILE": str(self.password),
                          "VARNEL_CERTIFICATE_KEY": "", "VARNEL_TIMESTAMP_URL": ""}

    def end(self):
        self._folder.cleanup()

    def openssl(self, command, *arguments):
        subprocess.run(["openssl", *command.split(), *arguments], cwd=self.folder, check=True,
                       capture_output=True)

    def issue(self, name, extension, days, by="root"):
        (self.folder / "extensions").write_text(extension)
        self.openssl(f"req -newkey rsa:2048 -nodes -keyout {name}.key -out request -subj /CN={name}")
        self.openssl(f"x509 -req -in request -CA {by}.pem -CAkey {by}.key -CAcreateserial",
                     "-extfile", "extensions", "-out", f"{name}.pem", "-days", str(days))

    def to_token(self):
        """Moves the key to a token in software; returns what tells tools/windows/sign of it."""
        (self.folder / "tokens").mkdir()
        settings = self.folder / "softhsm2.conf"
        settings.write_text(f"directories.tokendir = {self.folder}/tokens\n")
        for command in ("--init-token --free --label publisher --so-pin secret --pin secret",
                        "--import publisher.key --token publisher --label code --id 01 --pin secret"):
            subprocess.run(["softhsm2-util", *command.split()], cwd=self.folder, check=True,
                           capture_output=True, env={**os.environ, "SOFTHSM2_CONF": str(settings)})
        (self.folder / "publisher.key").unlink()
        return {"SOFTHSM2_CONF": str(settings),
                "VARNEL_PKCS11_MODULE": "/usr/lib/softhsm/libsofthsm2.so",
                "VARNEL_CERTIFICATE": str(self.folder / "publisher.pem"),
                "VARNEL_CERTIFICATE_KEY": "pkcs11:token=publisher;object=code;type=private"}

    def verify(self, program, days=0):
        """What osslsigncode thinks of the signature that many days from now."""
        root = self.folder / "root.pem"
        return subprocess.run(
            ["osslsigncode", "verify", "-CAfile", root, "-TSA-CAfile", root,
             "-time", str(int(time.time()) + days * 24 * 3600), program],
            text=True, capture_output=True)


class TimeStampServer:
    """A time stamp authority on this machine."""

    def __init__(self, keys):
        keys.issue("stamps", "extendedKeyUsage=critical,timeStamping", 20 * DAYS)
        (keys.folder / "tsa.cnf").write_text(TIME_STAMP_SETTINGS)
        (keys.folder / "serial").write_text("01")

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_POST(self):
                length = int(self.headers["Content-Length"])
                (keys.folder / "query").write_bytes(self.rfile.read(length))
                keys.openssl("ts -reply -config tsa.cnf -queryfile query -out reply")
                self.send_response(200)
                self.send_header("Content-Type", "application/timestamp-reply")
                self.end_headers()
                self.wfile.write((keys.folder / "reply").read_bytes())

            def log_message(self, *arguments):
                pass

        self._server = http.server.HTTPServer(("127.0.0.1", 0), Handler)
        self.url = f"http://127.0.0.1:{self._server.server_port}/"
        threading.Thread(target=self._server.serve_forever).start()

    def end(self):
        self._server.shutdown()
        self._server.server_close()


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
