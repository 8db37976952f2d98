"""An engine that fails or misbehaves: what the user is told, and what it costs."""

import unittest

from faults import FATAL, MEGABYTE, UPDATED, FaultTestCase


class Failures(FaultTestCase):
    def test_exit_code_ends_in_its_sentence_and_what_the_log_says(self):
        for code, sentence in ((2, "Installation was cancelled."),
                               (7, "Setup cannot install on this system."),
                               (255, "Setup exited with code 255.")):
            with self.subTest(code=code):
                self.sandbox.scenario(f"exit-code = {code}", "stage = half",
                                      "message-box = Too old.")
                self.assert_failure(self.start_update(),
                                    f"{sentence}  Too old.  (log: {self.sandbox.kept_log()})")
                self.assertEqual(self.sandbox.temp_files(), ["varnel_setup_last.log"])
                self.assertIn("Too old.", self.sandbox.kept_log().read_text(encoding="utf-8-sig"))

    def test_failed_removal_has_no_log(self):
        self.sandbox.scenario("stage = start", "exit-code = 4")
        wizard = self.start("--uninstall", "--uninstaller", self.uninstaller())
        wizard.click("Uninstall")
        self.assert_failure(wizard, FATAL)

    def test_child_of_the_engine_does_not_hold_up_the_end(self):
        self.sandbox.scenario("hold-pipes = 60")
        wizard = self.start_update()
        wizard.wait_text(UPDATED, patience=20)
        self.end(wizard, "Close")

    def test_flood_on_standard_output_costs_no_memory(self):
        self.sandbox.scenario("flood-stdout = 500M", "stall = 2", "stage = half")
        wizard = self.start_update()
        wizard.wait_text(UPDATED)
        self.assert_small(wizard)
        self.end(wizard, "Close")

    def test_huge_log_costs_no_memory_and_is_explained(self):
        self.sandbox.scenario("log-size = 1G", "exit-code = 4", "stage = half",
                              "message-box = Nothing fits any more.")
        wizard = self.start_update()
        message = wizard.wait_text(FATAL, patience=120)
        self.assertIn("Nothing fits any more.", message)
        self.assert_small(wizard)
        self.assertGreater(self.sandbox.kept_log().stat().st_size, 1000 * MEGABYTE)
        self.end(wizard, "Close")


if __name__ == "__main__":
    unittest.main()
