"""Every exit code of the engine ends in its sentence, what the log says, and one way out."""

import unittest

from testcase import WizardTestCase

SENTENCES = {
    1: "Setup could not start.",
    2: "Installation was cancelled.",
    3: "Setup failed while preparing to install.",
    4: "A fatal error occurred during installation.",
    5: "Installation was cancelled during setup.",
    6: "Setup was stopped by a debugger.",
    7: "Setup cannot install on this system.",
    8: "A restart is required before setup can continue.",
    9: "Setup exited with code 9.",
    255: "Setup exited with code 255.",
}


class ExitCodes(WizardTestCase):
    def kept_log_remark(self, reason):
        return f"  {reason}  (log: {self.sandbox.kept_log()})"

    def test_each_exit_code_has_its_sentence_and_its_log(self):
        for code, sentence in SENTENCES.items():
            with self.subTest(code=code):
                self.sandbox.scenario(f"exit-code = {code}", "stage = half",
                                      "message-box = The disk is full.")
                wizard = self.start_installation()
                self.assert_failure(wizard, sentence + self.kept_log_remark("The disk is full."))
                self.assertEqual(self.sandbox.temp_files(), ["varnel_setup_last.log"])
                self.assertIn("The disk is full.",
                              self.sandbox.kept_log().read_text(encoding="utf-8-sig"))


if __name__ == "__main__":
    unittest.main()
