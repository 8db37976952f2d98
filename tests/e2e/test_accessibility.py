"""What assistive technology is told, page by page, over the real accessibility bus; and the keyboard."""

import os
import signal
import unittest

from faults import FaultTestCase
from testcase import ENGINE
from wizard import Atspi, GLib, wait_until

DECLINE = "I do not accept the agreement"
ACCEPT = "I accept the license agreement"
SHORTCUT = "Create a desktop shortcut"
PREFERENCES = "Also delete my preferences and cached data"

# What can be used has one of these roles; the rest is read out, or only holds others together.
CONTROLS = ("push button", "radio button", "check box", "text")
BOX = "filler"
DECORATION = "image"


def button(name, *states):
    return ("push button", name, *states)


def has(node, state):
    return node.get_state_set().contains(getattr(Atspi.StateType, state.upper()))


class Accessibility(FaultTestCase):
    def setUp(self):
        super().setUp()
        del self.sandbox.environment["VARNEL_REDUCED_MOTION"]

    def controls(self, wizard):
        """(role, name, states) of every control, in reading order."""
        return [(role, name, *[state for state in ("checked", "focused") if has(node, state)],
                 *([] if has(node, "enabled") else ["disabled"]))
                for node, role, name in wizard.widgets() if role in CONTROLS]

    def assert_page(self, wizard, text, *controls):
        """The page that shows `text`, with its controls and those of the footer. What else it shows is
        only looked at for its states."""
        wizard.wait_text(text)
        everything = [button("Minimize"), button("Close"), *controls]
        wait_until(lambda: len(self.controls(wizard)) == len(everything), f"the controls of {text!r}")
        wizard.wait_settled()
        self.assertEqual(self.controls(wizard), everything)
        for node, role, name in wizard.widgets():
            if role == BOX:  # confetti is one, and may land meanwhile
                continue
            what = f"{role} {name!r}"
            self.assertTrue(has(node, "showing"), what)
            if role in CONTROLS:
                self.assertTrue(name, "a control without a name")
                self.assertTrue(has(node, "focusable"), what)
            if role == DECORATION:
                self.assertEqual(name, "")
                self.assertFalse(has(node, "focusable"), what)
            if role in ("label", "list item"):
                self.assertTrue(has(node, "read_only"), what)

    def node(self, wizard, role, name=None):
        return next(node for node, shown, text in wizard.widgets()
                    if shown == role and name in (None, text))

    def focus(self, wizard):
        """Name of what has the focus."""
        return next((item[1] for item in self.controls(wizard) if "focused" in item), None)

    def wait_focus(self, wizard, name):
        wait_until(lambda: self.focus(wizard) == name, f"the focus on {name!r}")

    def test_pages_before_an_installation(self):
        wizard = self.start("--install", "--setup-exe", ENGINE)
        on = button("Back"), button("Next", "focused")
        self.assert_page(wizard, "Welcome to the", button("Cancel"), button("Next", "focused"))
        wizard.press("Return")
        self.assert_page(wizard, "License Agreement", ("text", "License Agreement"),
                         ("radio button", DECLINE, "checked", "focused"), ("radio button", ACCEPT),
                         button("Back"), button("Next", "disabled"))
        view = self.node(wizard, "text")
        self.assertTrue(has(view, "read_only") and has(view, "multi_line"))
        self.assertIn("Varnel Schematics", Atspi.Text.get_text(view, 0, -1))
        wizard.press("Down")
        self.assert_page(wizard, "License Agreement", ("text", "License Agreement"),
                         ("radio button", DECLINE), ("radio button", ACCEPT, "checked", "focused"),
                         button("Back"), button("Next"))
        wizard.press("Return")
        wait_until(lambda: len(wizard.rows()) == 9, "all nine findings")
        self.assert_page(wizard, "Checking your system", *on)
        wizard.press("Return")
        self.assert_page(wizard, "Select Destination Location", button("Change"), *on)
        wizard.press("Return")
        self.assert_page(wizard, "Select Additional Tasks", ("check box", SHORTCUT, "checked"), *on)
        wizard.press("Return")
        self.assert_page(wizard, "Ready to Install", button("Back"), button("Install", "focused"))
        wizard.press("Escape")
        wizard.wait_text("Select Additional Tasks")

    def test_run_and_finish(self):
        self.sandbox.scenario("pause = half")
        shown, values, notifications = [], [], []

        def hear(event):
            if event.type.startswith("object:property-change:accessible-value"):
                values.append(event.source.get_role_name())
            elif event.detail1:
                is_told = event.source.get_role_name() == "notification"
                (notifications if is_told else shown).append(event.source.get_name())

        def listen():
            while GLib.MainContext.default().iteration(False):
                pass
            return shown + values

        listener = Atspi.EventListener.new(hear)
        for kind in "object:state-changed:showing", "object:property-change:accessible-value":
            listener.register(kind)
            self.addCleanup(listener.deregister, kind)
        wizard = self.start_installation()
        # A step is spoken of once when the page comes, as a part of it, and again when it is reached.
        wait_until(lambda: listen().count("Installing WebView2 Runtime") >= 2, "the second step's news")
        wait_until(lambda: "progress bar" in listen(), "news of the bar")
        # A screen reader speaks of it when it is told: not of rows, but of notifications.
        wait_until(lambda: listen() and any("Installing WebView2 Runtime." in text
                                            for text in notifications), "the notification")
        self.assertEqual(shown.count("Creating shortcuts"), 1)

        engine = self.wait_paused(wizard)
        bar = wait_until(lambda: self.node(wizard, "progress bar", "Installing"), "the bar")
        self.assertEqual((Atspi.Value.get_minimum_value(bar), Atspi.Value.get_maximum_value(bar)),
                         (0.0, 100.0))
        self.assertFalse(has(bar, "focusable"))
        cancel = self.node(wizard, "push button", "Cancel")
        self.assertFalse(has(cancel, "enabled") or has(cancel, "sensitive"))
        self.assertIsNone(self.focus(wizard))
        wizard.press("Return", "Escape", "space")  # which do nothing now
        os.kill(engine, signal.SIGCONT)
        self.assert_page(wizard, "is installed", button("Close"),
                         button("Open Varnel Schematics", "focused"))
        wizard.press("Escape")
        self.assertEqual(wizard.wait_end(), 0)
        self.assertEqual(self.sandbox.launches(), [])

    def test_removal(self):
        wizard = self.start("--uninstall", "--uninstaller", self.uninstaller())

        def assert_choice(*states):
            self.assert_page(
                wizard, "Uninstall Varnel Schematics", ("check box", PREFERENCES, *states),
                button("Cancel", *(["focused"] if "focused" not in states else [])),
                button("Uninstall"))

        assert_choice()
        wizard.press("shift+Tab")
        self.wait_focus(wizard, PREFERENCES)
        wizard.press("space")
        assert_choice("checked", "focused")
        wizard.press("Return")  # never what destroys something, unless it has the focus
        wizard.press("space")
        assert_choice("focused")
        wizard.press("Tab", "Tab")
        self.wait_focus(wizard, "Uninstall")
        wizard.press("Return")
        self.assert_page(wizard, "See You Later!", button("Close", "focused"))

    def test_controls_work_by_assistive_technology(self):
        wizard = self.start("--install", "--setup-exe", ENGINE)

        def act(role, name):
            self.assertTrue(Atspi.Action.do_action(self.node(wizard, role, name), 0))

        act("push button", "Next")
        wizard.wait_text("License Agreement")
        wizard.wait_settled()
        accept = self.node(wizard, "radio button", ACCEPT)
        act("radio button", ACCEPT)
        wait_until(lambda: has(accept, "checked"), "the licence to be accepted")
        self.assertFalse(has(self.node(wizard, "radio button", DECLINE), "checked"))
        wizard.wait_button("Next")
        act("push button", "Close")
        self.assertEqual(wizard.wait_end(), 0)


if __name__ == "__main__":
    unittest.main()
