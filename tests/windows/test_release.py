"""A release, made by the one command from a copy of the project in another folder, signed with a certificate made
for the occasion, whose key is on a token, and with the time; and the finished file, used by mouse."""

import hashlib
import os
import re
import shutil
import struct
import subprocess
import sys
import unittest
from pathlib import Path

import yaml

from keys import DAYS, Keys, TimeStampServer
from screen import PRIMARY, TITLE_BUTTONS, Wizard
from testcase import WindowsTestCase
from world import PATIENCE, dos, wait_until

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "support"))
from product import PRODUCT, UNINSTALL_KEY_NAME  # noqa: E402

PROGRAM = Path(os.environ["VARNEL_SETUP"])
FOLDER = Path(os.environ["VARNEL_WORLDS"]) / "release in another folder"
COPY = FOLDER / "copy"
RELEASE = COPY / "build/release"
WORK = COPY / "build/windows-release/release"
SETUP = RELEASE / f"VarnelSchematicsSetup-{PRODUCT['version']}.exe"
ENGINE = WORK / "engine" / f"VarnelEngine-{PRODUCT['version']}.exe"
RELINK = RELEASE / f"relink-{PRODUCT['version']}.tar.xz"
PACKAGE = "VarnelSolutionsTeam.VarnelSchematics"

KEYS = Keys(PRODUCT["publisher"])
TOKEN = KEYS.to_token()
STAMPS = TimeStampServer(KEYS)


def setUpModule():
    unittest.addModuleCleanup(KEYS.end)
    unittest.addModuleCleanup(STAMPS.end)
    shutil.rmtree(FOLDER, ignore_errors=True)
    # Not the times of the files: those of a new clone are others too.
    shutil.copytree(ROOT, COPY, ignore=shutil.ignore_patterns("build", ".git"), copy_function=shutil.copy)
    (FOLDER / "it's ours").mkdir()
    (FOLDER / "it's ours" / PRODUCT["executable"]).write_bytes(b"MZ")
    release()


def run_release(time_stamps):
    variables = {**KEYS.variables, **TOKEN, "VARNEL_TIMESTAMP_URL": time_stamps, "no_proxy": "127.0.0.1"}
    certificate = variables.pop("VARNEL_CERTIFICATE")
    return subprocess.run(
        [COPY / "tools/windows/release", "--payload", FOLDER / "it's ours", "--without-webview2",
         "--without-vcredist", "--certificate", certificate],
        env=os.environ | variables, stdin=subprocess.DEVNULL, capture_output=True, text=True)


def release():
    """Makes a release of what lies in the payload's folder."""
    result = run_release(STAMPS.url)
    if result.returncode != 0:
        raise AssertionError(f"release ended with {result.returncode}:\n{result.stdout[-4000:]}{result.stderr}")


class Release(unittest.TestCase):
    def test_the_wizard_is_the_same_in_every_folder(self):
        built = COPY / "build/windows-release/bin/VarnelSetup.exe"
        self.assertEqual(hashlib.sha256(built.read_bytes()).hexdigest(),
                         hashlib.sha256(PROGRAM.read_bytes()).hexdigest())

    def test_the_download_carries_the_engine(self):
        data = SETUP.read_bytes()
        marker = data.index(b"VARNEL-ENGINE-1:") + 16
        offset, size = struct.unpack_from("<qq", data, marker)
        self.assertEqual(data[offset:offset + size], ENGINE.read_bytes())

    def test_the_download_is_checked_like_the_wizard(self):
        # Apart from its size.
        result = subprocess.run(
            [COPY / "tools/windows/check-program", SETUP, SETUP, "requireAdministrator"],
            text=True, capture_output=True)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertIn("ok      load configuration", result.stdout)

    def test_signatures_outlive_the_certificate(self):
        for program in SETUP, ENGINE, WORK / "VarnelSetup.exe":
            with self.subTest(program=program.name):
                verified = KEYS.verify(program, 2 * DAYS)
                self.assertEqual(verified.returncode, 0, verified.stdout + verified.stderr)

    def test_without_a_time_stamp_it_has_to_be_told(self):
        result = run_release("")
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("--without-timestamp", result.stderr)

    def test_sums(self):
        sums = dict(reversed(line.split("  ")) for line in (RELEASE / "SHA256SUMS").read_text().splitlines())
        self.assertEqual(sums, {name: hashlib.sha256((RELEASE / name).read_bytes()).hexdigest()
                                for name in (SETUP.name, RELINK.name, "THIRD-PARTY-NOTICES.txt")})

    def test_winget_manifests(self):
        version, installer, locale = (
            yaml.safe_load((RELEASE / "winget" / f"{PACKAGE}{kind}.yaml").read_text(encoding="utf-8"))
            for kind in ("", ".installer", ".locale.en-US"))
        for manifest, kind in (version, "version"), (installer, "installer"), (locale, "defaultLocale"):
            self.assertEqual((manifest["PackageIdentifier"], manifest["PackageVersion"], manifest["ManifestType"]),
                             (PACKAGE, PRODUCT["version"], kind))
            self.assertEqual(manifest["ManifestVersion"], version["ManifestVersion"])
        self.assertEqual(version["DefaultLocale"], locale["PackageLocale"])
        for key, value in (("Publisher", "publisher"), ("PackageName", "name")):
            self.assertEqual(locale[key], PRODUCT[value])
        only, = installer["Installers"]
        self.assertEqual(only["InstallerSha256"].lower(), hashlib.sha256(SETUP.read_bytes()).hexdigest())
        self.assertEqual(only["InstallerUrl"], f"https://{PRODUCT['address']}/{SETUP.name}")
        self.assertEqual(installer["ProductCode"], UNINSTALL_KEY_NAME)
        entry, = installer["AppsAndFeaturesEntries"]
        self.assertEqual(entry["ProductCode"], UNINSTALL_KEY_NAME)
        # What the wizard knows as silent, as a word of its own.
        self.assertEqual(installer["InstallerSwitches"]["Silent"].split()[0], "/VERYSILENT")
        self.assertEqual(installer["InstallerSwitches"]["SilentWithProgress"].split()[0], "/SILENT")
        self.assertEqual(installer["MinimumOSVersion"], f"10.0.{PRODUCT['oldest_build']}.0")

    def test_notices_name_every_library_and_font(self):
        commands = subprocess.run(["ninja", "-C", PROGRAM.parents[1], "-t", "commands", "VarnelSetup"], check=True,
                                  capture_output=True, text=True).stdout
        words = commands.splitlines()[-1].split()
        libraries = {f"lib{word[2:]}.a" for word in words if word.startswith("-l")}
        libraries |= {Path(word).name for word in words if word.endswith(".a") and not word.startswith("-")}
        libraries = {name for name in libraries if not name.startswith("libvarnel_")}
        self.assertGreater(len(libraries), 30)
        notices = (RELEASE / "THIRD-PARTY-NOTICES.txt").read_text(encoding="utf-8")
        named = set(re.findall(r"\S+", " ".join(re.findall(r"^    Files: (.*)$", notices, re.MULTILINE))))
        fonts = {path.name for path in (ROOT / "resources/fonts").glob("*.ttf")}
        self.assertEqual((libraries | fonts) - named, set())
        # A sentence of each text that has to be there.
        for words in ("GNU LESSER GENERAL PUBLIC LICENSE", "GNU GENERAL PUBLIC LICENSE",
                      "GCC RUNTIME LIBRARY EXCEPTION", "SIL OPEN FONT LICENSE", "Jean-loup Gailly",
                      "PCRE2 LICENCE", "HarfBuzz is licensed", "The FreeType Project LICENSE",
                      "PNG Reference Library License"):
            self.assertIn(words, notices)

    def test_notices_refuse_a_library_that_nobody_knows(self):
        linker_map = FOLDER / "strange.map"
        linker_map.write_text("LOAD objects/main.obj\nLOAD qt/lib/libQt6Core.a\nLOAD /opt/strange/libstrange.a\n")
        result = subprocess.run([COPY / "tools/windows/notices", linker_map, FOLDER, FOLDER / "notices.txt"],
                                capture_output=True, text=True)
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("/opt/strange/libstrange.a is linked", result.stderr)
        self.assertFalse((FOLDER / "notices.txt").exists())

    def test_linked_from_the_archive_it_is_the_same(self):
        subprocess.run(["tar", "-C", FOLDER, "-xf", RELINK], check=True)
        folder = FOLDER / RELINK.name.removesuffix(".tar.xz")
        subprocess.run([folder / "relink"], check=True)
        self.assertEqual((folder / "VarnelSetup.exe").read_bytes(), PROGRAM.read_bytes())

    def test_only_what_has_changed_is_made_again(self):
        def times():
            return {path: path.stat().st_mtime_ns for path in (WORK / "VarnelSetup.exe", ENGINE, SETUP, RELINK)}

        before = times()
        release()
        self.assertEqual(times(), before)
        (FOLDER / "it's ours" / "new.txt").write_text("new")
        release()
        self.assertEqual({path.name for path, time in times().items() if time != before[path]},
                         {ENGINE.name, SETUP.name})


class FinishedFile(WindowsTestCase):
    def test_installs_and_is_removed_by_mouse(self):
        self.world.trust(KEYS)
        wizard = self.wizard(program=dos(SETUP))
        wizard.walk_to_ready("C:\\My Apps")
        wizard.click_at(PRIMARY)
        wizard.wait_page("Finished in 51 seconds", patience=120)
        self.assertEqual(wizard.close(), 0)
        self.assertEqual(self.world.temp_files(), [])
        self.assertEqual(self.world.path(f"C:\\My Apps\\{PRODUCT['executable']}").read_bytes(), b"MZ")

        command = self.world.uninstall_entry()["UninstallString"]
        uninstaller = self.world.start(command.strip('"'))
        wizard = Wizard(self.world, title="Varnel Schematics uninstall", started_by=uninstaller)
        self.assertEqual(uninstaller.wait(timeout=PATIENCE), 1)
        wizard.wait_page("Administrator rights required")
        wizard.click_at(PRIMARY)
        wizard.wait_page("Uninstalled in 24 seconds", patience=120)
        # The folder itself was there before.
        wait_until(lambda: not self.world.files_below("C:\\My Apps"), "the end of the removal")
        self.assertFalse(self.world.uninstall_entry())
        wizard.click_at(TITLE_BUTTONS["close"])


if __name__ == "__main__":
    unittest.main()
