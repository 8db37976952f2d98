"""What assistive technology is told, page by page, over the real accessibility bus; and the keyboard."""

import subprocess
import unittest

from testcase import ENGINE, WizardTestCase
from wizard import Atspi, GLib, wait_until

TITLE = "Varnel Schematics setup"
LEGAL = "© 2026 Varnel Solutions Team\nProprietary and confidential"
DECLINE = "I do not accept the agreement"
ACCEPT = "I accept the license agreement"
SHORTCUT = "Create a desktop shortcut"
PREFERENCES = "Also delete my preferences and cached data"

# What can be used or at least read out has one of these roles; the rest only holds them together.
BOX = "filler"
CONTROLS = ("push button", "button", "radio button", "check box", "text")
DECORATION = "image"


def label(text):
    return ("label", text)


def button(name, *states):
    return ("push button", name, *states)


def has(node, state):
    return node.get_state_set().contains(getattr(Atspi.StateType, state.upper()))


class Accessibility(WizardTestCase):
    """Everything on a page is (role, name, states), where the states are those out of STATES that
    the control has; "disabled" stands for the lack of being enabled."""

    STATES = ("checked", "focused")

    def page(self, wizard):
        """What is told of the page at present, in its order, without chrome and footer's frame."""
        shown = []
        for node, role, name in wizard.widgets():
            if role == BOX:
                continue
            states = [state for state in self.STATES if has(node, state)]
            if role in CONTROLS and not has(node, "enabled"):
                states.append("disabled")
            shown.append((role, name, *states))
        return shown

    def assert_page(self, wizard, *expected, title=TITLE, buttons):
        """The window, its chrome, the page's own `expected` items and the footer, in reading order."""
        chrome = [("dialog", title), label(title), button("Minimize"), button("Close"),
                  (DECORATION, ""), label("Varnel Schematics"), label("1.6.9 · 220 MB"),
                  label(LEGAL)]
        everything = [*chrome, *expected, *buttons]
        wait_until(lambda: len(self.page(wizard)) == len(everything), "all that is on the page")
        wizard.wait_settled()
        self.assertEqual(self.page(wizard), everything)
        self.assert_states(wizard)

    def assert_states(self, wizard):
        """Whatever is on the page is said to show; what can be pressed, to take the focus."""
        for node, role, name in wizard.widgets():
            if role == BOX:  # confetti is one, and may land meanwhile
                continue
            what = f"{role} {name!r}"
            self.assertTrue(has(node, "showing"), what)
            if role in ("push button", "button", "radio button", "check box"):
                self.assertTrue(name, "a control without a name")
                self.assertTrue(has(node, "focusable"), what)
                self.assertEqual(Atspi.Action.get_n_actions(node) > 0, has(node, "enabled"), what)
            if role == DECORATION:
                self.assertEqual(name, "")
                self.assertFalse(has(node, "focusable"), what)
            if role in ("label", "list item"):
                self.assertTrue(has(node, "read_only"), what)
            self.assertNotIn("<", node.get_description() or "", f"markup in the help of {what}")

    def node(self, wizard, role, name=None):
        return next(node for node, shown, text in wizard.widgets()
                    if shown == role and name in (None, text))

    def focus(self, wizard):
        """Name of what has the focus."""
        return next((name for node, role, name in wizard.widgets()
                     if has(node, "focused") and role in CONTROLS), None)

    def wait_focus(self, wizard, name):
        wait_until(lambda: self.focus(wizard) == name, f"the focus on {name!r}")

    def assert_tab_order(self, wizard, *names):
        """Tab walks over these and the title bar's buttons and starts over; Shift and Tab go back."""
        around = [*names, "Minimize", "Close"]
        start = self.focus(wizard)
        at = around.index(start)
        for name in [*around[at + 1:], *around[:at + 1]]:
            wizard.press("Tab")
            self.wait_focus(wizard, name)
        wizard.press("shift+Tab")
        self.wait_focus(wizard, around[at - 1])
        wizard.press("Tab")
        self.wait_focus(wizard, start)

    # -- page by page ------------------------------------------------------------------------------

    def test_pages_before_an_installation(self):
        wizard = self.start("--install", "--setup-exe", ENGINE)
        self.assert_page(
            wizard,
            label("Welcome to the Varnel Schematics Setup Wizard"),
            label("Setup will install Varnel Schematics version 1.6.9 on this computer.\n"
                  "We recommend closing any other applications before you continue."),
            label("Publisher: Varnel Solutions Team · varnel.example"),
            label("Administrator rights required"),
            buttons=[button("Cancel"), button("Next", "focused")])
        self.assert_tab_order(wizard, "Cancel", "Next")

        wizard.press("Return")
        wizard.wait_text("License Agreement")
        head = [label("License Agreement"),
                label("Please read the following important information before continuing."),
                ("text", "License Agreement")]
        footer = label("Read the license before continuing")
        self.assert_page(
            wizard, *head,
            ("radio button", DECLINE, "checked", "focused"), ("radio button", ACCEPT), footer,
            buttons=[button("Back"), button("Next", "disabled")])
        view = self.node(wizard, "text")
        self.assertTrue(has(view, "read_only") and has(view, "multi_line"))
        self.assertIn("Varnel Schematics", Atspi.Text.get_text(view, 0, -1))
        self.assert_tab_order(wizard, "License Agreement", DECLINE, "Back")
        wizard.press("Down")
        self.assert_page(
            wizard, *head,
            ("radio button", DECLINE), ("radio button", ACCEPT, "checked", "focused"), footer,
            buttons=[button("Back"), button("Next")])
        self.assert_tab_order(wizard, "License Agreement", ACCEPT, "Back", "Next")

        wizard.press("Return")
        wizard.wait_text("Checking your system")
        wait_until(lambda: len(wizard.rows()) == 9, "all nine findings")
        self.assert_page(
            wizard,
            label("Checking your system"),
            label("Verifying the requirements so you don't have to read them."),
            *[("list item", row) for row in wizard.rows()],
            label("9 requirement(s) checked"),
            buttons=[button("Back"), button("Next", "focused")])
        self.assertEqual(
            [row.split(": ")[0] for row in wizard.rows()],
            ["Operating system", "Processor", "Memory", "Disk space", "Graphics · display",
             ".NET Framework", "Visual C++ Runtime", "WebView2 Runtime", "Smart App Control"])
        self.assertTrue(all(row.split(": ", 1)[1] for row in wizard.rows()), "a row without finding")
        self.assert_tab_order(wizard, "Back", "Next")

        wizard.press("Return")
        wizard.wait_text("Select Destination Location")
        room = wizard.wait_text("220 MB required")
        self.assert_page(
            wizard,
            label("Select Destination Location"),
            label("Setup will install Varnel Schematics into the following folder."),
            label("INSTALL TO"), label(str(self.sandbox.destination)), button("Change"),
            label(room), label("Choose where Varnel Schematics lives"),
            buttons=[button("Back"), button("Next", "focused")])
        self.assert_tab_order(wizard, "Change", "Back", "Next")

        wizard.press("Return")
        wizard.wait_text("Select Additional Tasks")
        self.assert_page(
            wizard,
            label("Select Additional Tasks"),
            label("Which additional task should be performed while installing Varnel Schematics?"),
            ("check box", SHORTCUT, "checked"), label("Optional — safe to skip"),
            buttons=[button("Back"), button("Next", "focused")])
        self.assert_tab_order(wizard, SHORTCUT, "Back", "Next")

        wizard.press("Return")
        wizard.wait_text("Ready to Install")
        self.assert_page(
            wizard,
            label("Ready to Install"),
            label("Setup is now ready to begin installing Varnel Schematics on your computer."),
            label(f"Destination location:\n{self.sandbox.destination}\n\n"
                  f"Additional tasks:\n{SHORTCUT}"),
            label("Review before you install"),
            buttons=[button("Back"), button("Install", "focused")])
        self.assert_tab_order(wizard, "Back", "Install")

        for page in ("Select Additional Tasks", "Select Destination Location",
                     "Checking your system", "License Agreement", "Welcome to the"):
            wizard.press("Escape")
            wizard.wait_text(page)
        wizard.press("Escape")
        self.assertEqual(wizard.wait_end(), 0)

    def test_run_and_finish(self):
        self.sandbox.environment["VARNEL_ENGINE_DELAY_MS"] = "200"
        wizard = self.start_installation()
        wizard.wait_text("Do not turn off your PC")
        bar = wait_until(lambda: self.node(wizard, "progress bar", "Installing"), "the bar")
        self.assertEqual((Atspi.Value.get_minimum_value(bar), Atspi.Value.get_maximum_value(bar)),
                         (0.0, 100.0))
        self.assertFalse(has(bar, "focusable"))
        cancel = self.node(wizard, "push button", "Cancel")
        self.assertFalse(has(cancel, "enabled") or has(cancel, "sensitive"))
        self.assertIsNone(self.focus(wizard))

        values, steps = [], []

        def watch():
            rows = wizard.rows()
            if len(rows) > len(steps):
                steps[:] = rows
            values.append(wizard.bar_value() or 0.0)
            return wizard.has_text("is installed")

        wizard.press("Return", "Escape", "space")  # which do nothing now
        wait_until(watch, "the last page")
        values = [value for value in values if value]
        self.assertEqual(values, sorted(values))
        self.assertGreater(len(set(values)), 3, "the bar's value did not move")
        self.assertEqual(steps, ["Extracting application files", "Installing WebView2 Runtime",
                                 "Registering .sch and .pcb file types", "Creating shortcuts"])
        self.assert_page(
            wizard,
            (DECORATION, ""), label("Varnel Schematics is installed"),
            label(f"Installed to {self.sandbox.destination}.\nA shortcut is on your desktop."),
            label("Finished in 51 seconds"),
            buttons=[button("Close"), button("Open Varnel Schematics", "focused")])
        self.assert_tab_order(wizard, "Close", "Open Varnel Schematics")
        wizard.press("Escape")
        self.assertEqual(wizard.wait_end(), 0)
        self.assertEqual(self.sandbox.launches(), [])

    def test_steps_and_progress_are_announced(self):
        """Without being asked: what a screen reader speaks of by itself."""
        self.sandbox.scenario("stall = forever", "stage = half")
        shown, values, notifications = [], [], []

        def hear(event):
            if event.type.startswith("object:state-changed:showing") and event.detail1:
                is_told = event.source.get_role_name() == "notification"
                (notifications if is_told else shown).append(event.source.get_name())
            elif event.type.startswith("object:property-change:accessible-value"):
                values.append(event.source.get_role_name())

        listener = Atspi.EventListener.new(hear)
        kinds = "object:state-changed:showing", "object:property-change:accessible-value"
        for kind in kinds:
            listener.register(kind)
            self.addCleanup(listener.deregister, kind)
        wizard = self.start_installation()

        def listen():
            while GLib.MainContext.default().iteration(False):
                pass
            return shown + values + notifications

        # Every step is spoken of once when the page comes, as a part of it, and again when it is
        # reached.
        wait_until(lambda: listen().count("Installing WebView2 Runtime") >= 2,
                   "the second step's news")
        wait_until(lambda: "progress bar" in listen(), "news of the bar")
        # A screen reader speaks of it when it is told: not of rows, but of notifications.
        wait_until(lambda: listen() and any("Installing WebView2 Runtime." in text
                                            for text in notifications), "the notification")
        self.assertFalse(any("Creating shortcuts" in text for text in notifications))
        self.assertGreaterEqual(shown.count("Extracting application files"), 2)
        self.assertEqual(shown.count("Creating shortcuts"), 1)
        self.assertNotIn("Creating shortcuts", wizard.rows())

    def test_failure(self):
        self.sandbox.scenario("exit-code = 5", "stage = half")
        wizard = self.start_installation()
        message = wizard.wait_text("Installation was cancelled during setup.")
        shown = self.page(wizard)
        self.assertIn(label(message), shown)
        self.assertEqual(shown[-2:], [label("Setup could not finish"), button("Close", "focused")])
        wizard.press("Tab")
        self.wait_focus(wizard, "Minimize")
        wizard.press("Tab", "Tab")
        self.wait_focus(wizard, "Close")

        def close():
            wizard.press("Return")  # which does nothing while the failure is news
            return wizard.process.poll() is not None

        wait_until(close, "the end")
        self.assertEqual(wizard.wait_end(), 0)

    def test_update(self):
        folder = self.sandbox.root / "installed"
        folder.mkdir()
        self.sandbox.record_installation(DisplayVersion="1.6.8", InstallLocation=str(folder))
        self.sandbox.environment["VARNEL_ENGINE_DELAY_MS"] = "200"
        wizard = self.start("--setup-exe", ENGINE)
        self.assert_page(
            wizard,
            label("Update Available for Varnel Schematics"),
            label("A newer version is ready to install.\nYour settings and files will be kept."),
            label("Installed version: 1.6.8"), label("→"), label("Available version: 1.6.9"),
            label("Recommended — includes performance fixes"),
            buttons=[button("Skip"), button("Update Now", "focused")])
        wizard.press("Return")
        wizard.wait_text("Ready to Update")
        self.assert_page(
            wizard,
            label("Ready to Update"), label("Setup will update Varnel Schematics to version 1.6.9."),
            label(f"Destination location:\n{folder}\n\nYour preferences and license will be kept."),
            label("Review before you update"),
            buttons=[button("Back"), button("Update", "focused")])
        wizard.press("Return")
        wait_until(lambda: wizard.rows() and self.node(wizard, "progress bar", "Updating"),
                   "the update")
        self.assertEqual([item for item in self.page(wizard) if item[0] == DECORATION],
                         [(DECORATION, "")] * 2, "mark and badge are no more than pictures")
        wizard.wait_text("Varnel Schematics has been updated")
        self.assert_page(
            wizard,
            (DECORATION, ""), label("Varnel Schematics has been updated"),
            label("Now running version 1.6.9.\nYour settings were preserved."),
            label("Updated in 38 seconds"),
            buttons=[button("Close"), button("Open Varnel Schematics", "focused")])

    def test_uninstallation(self):
        title = "Varnel Schematics uninstall"
        wizard = self.start("--uninstall", "--uninstaller", self.uninstaller())

        def assert_choice(*states):
            self.assert_page(
                wizard,
                label("Uninstall Varnel Schematics"),
                label("This will remove Varnel Schematics 1.6.9 from your computer."),
                label("This cannot be undone. "
                      "Your project files (.sch, .pcb) will not be deleted."),
                ("check box", PREFERENCES, *states), label("Administrator rights required"),
                title=title,
                buttons=[button("Cancel", *(["focused"] if "focused" not in states else [])),
                         button("Uninstall")])

        assert_choice()
        self.assert_tab_order(wizard, PREFERENCES, "Cancel", "Uninstall")
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
        wizard.wait_text("See You Later!")
        self.assert_page(
            wizard,
            (DECORATION, ""), label("See You Later!"),
            label("Varnel Schematics has been removed from your computer.\n"
                  "Your preferences were kept in case you're back soon."),
            label("Uninstalled in 24 seconds"),
            title=title, buttons=[button("Close", "focused")])

    # -- by other means than keys and mouse --------------------------------------------------------

    def test_controls_obey_assistive_technology(self):
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
        for page in ("Checking your system", "Select Destination Location",
                     "Select Additional Tasks"):
            wizard.wait_button("Next")
            act("push button", "Next")
            wizard.wait_text(page)
            wizard.wait_settled()
        shortcut = self.node(wizard, "check box", SHORTCUT)
        act("check box", SHORTCUT)
        wait_until(lambda: not has(shortcut, "checked"), "the box to be cleared")
        wizard.click(SHORTCUT)
        wait_until(lambda: has(shortcut, "checked"), "the box to be checked")
        window = wizard.window_id()
        act("push button", "Minimize")
        wait_until(lambda: not wizard.window_id(), "the window to go")
        subprocess.run(["xdotool", "windowactivate", window], check=True)
        wait_until(wizard.window_id, "the window to come back")
        act("push button", "Close")
        self.assertEqual(wizard.wait_end(), 0)


if __name__ == "__main__":
    unittest.main()
