"""An engine that misbehaves: what the user is told, and what it costs."""

import unittest

from testcase import ENGINE, WizardTestCase

MEGABYTE = 1024 * 1024


class Failures(WizardTestCase):
    def test_crash_reports_itself(self):
        self.sandbox.scenario("crash = SIGKILL", "stage = half")
        self.assert_failure(self.start_installation(), "Process crashed")
        self.assertEqual(self.sandbox.temp_files(), [])

    def test_failed_update_and_removal_are_told_alike(self):
        folder = self.sandbox.root / "installed"
        folder.mkdir()
        self.sandbox.record_installation(DisplayVersion="1.6.8", InstallLocation=str(folder))
        self.sandbox.scenario("exit-code = 7", "stage = half", "message-box = Too old.")
        wizard = self.start("--setup-exe", ENGINE)
        wizard.go("Update Now", "Ready to Update")
        wizard.click("Update")
        self.assert_failure(wizard, "Setup cannot install on this system.  Too old.  "
                            f"(log: {self.sandbox.kept_log()})")

        for lines, sentence in ((("exit-code = 4",), "A fatal error occurred during installation."),
                                (("crash = SIGKILL",), "Process crashed")):
            self.sandbox.scenario("stage = start", *lines)
            wizard = self.start("--uninstall", "--uninstaller", self.uninstaller())
            wizard.click("Uninstall")
            self.assert_failure(wizard, sentence)

    def test_missing_engine_is_reported(self):
        missing = self.sandbox.root / "gone" / "setup.exe"
        wizard = self.start("--setup-exe", missing)
        self.start_installation(wizard)
        self.assertIn("No such file or directory", wizard.wait_text("No such file or directory"))
        self.assertTrue(wizard.has_text("Setup could not finish"))
        self.end(wizard, "Close")

    def test_option_without_value_simulates(self):
        wizard = self.start_installation(self.start("--setup-exe"))
        wizard.wait_text("is installed")
        self.end(wizard, "Close")

    def test_no_write_access_is_told_by_the_engine(self):
        self.sandbox.destination.parent.rmdir()
        self.sandbox.destination.parent.write_text("a file where a folder should be")
        wizard = self.start_installation()
        message = wizard.wait_text("Setup failed while preparing to install.")
        self.assertIn(f"(log: {self.sandbox.kept_log()})", message)
        self.end(wizard, "Close")

    def test_odd_status_files_do_no_harm(self):
        for quirk in ("status-style = half", "status-style = bom, crlf",
                      "status-style = no-final-newline", "status-style = blanks, no-section",
                      "status-path = directory", "status-path = fifo", "status-path = deleted",
                      "status-path = never"):
            with self.subTest(quirk=quirk):
                self.sandbox.scenario(quirk)
                wizard = self.start_installation()
                wizard.wait_text("is installed")
                self.end(wizard, "Close")
                self.assertNotIn("varnel_setup_last.log", self.sandbox.temp_files())
                for leftover in (self.sandbox.root / "temp").iterdir():
                    leftover.rmdir()  # only a folder that the engine put in the file's place

    def test_engine_that_ends_at_once_is_done_at_once(self):
        self.sandbox.scenario("finish-at-once = yes")
        wizard = self.start_installation()
        wizard.wait_text("is installed")
        self.end(wizard, "Close")

    def test_child_of_the_engine_does_not_hold_up_the_end(self):
        self.sandbox.scenario("hold-pipes = 60")
        wizard = self.start_installation()
        wizard.wait_text("is installed", patience=20)
        self.end(wizard, "Close")

    def test_flood_on_standard_output_costs_no_memory(self):
        self.sandbox.scenario("flood-stdout = 500M", "stall = 2", "stage = half")
        wizard = self.start_installation()
        wizard.wait_text("is installed")
        self.assert_small(wizard)
        self.end(wizard, "Close")

    def test_huge_log_costs_no_memory_and_is_explained(self):
        self.sandbox.scenario("log-size = 1G", "exit-code = 4", "stage = half",
                              "message-box = Nothing fits any more.")
        wizard = self.start_installation()
        message = wizard.wait_text("A fatal error occurred during installation.", patience=120)
        self.assertIn("Nothing fits any more.", message)
        self.assert_small(wizard)
        self.assertGreater(self.sandbox.kept_log().stat().st_size, 1000 * MEGABYTE)
        self.end(wizard, "Close")


if __name__ == "__main__":
    unittest.main()
