"""Certificates made for the occasion, and an authority that stamps the time."""

import http.server
import os
import pathlib
import subprocess
import tempfile
import threading
import time

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

    def __init__(self, publisher="Publisher"):
        self._folder = tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self._folder.name)
        self.password = self.folder / "password"
        self.password.write_text("secret")
        self.openssl("req -x509 -newkey rsa:2048 -nodes -keyout root.key -out root.pem -subj /CN=Root",
                     "-days", str(30 * DAYS))
        self.issue("authority", "basicConstraints=critical,CA:true", 30 * DAYS)
        self.issue("publisher", "extendedKeyUsage=codeSigning", DAYS, by="authority", subject=publisher)
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

    def issue(self, name, extension, days, by="root", subject=None):
        (self.folder / "extensions").write_text(extension)
        self.openssl(f"req -newkey rsa:2048 -nodes -keyout {name}.key -out request -subj",
                     f"/CN={subject or name}")
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
