"""Walks through a whole installation on the present display, taking a picture of every page.

    walk.py <folder for the pictures> [<wizard option>...]

Without options the stand-in engine really installs, into a folder that is removed afterwards. With
options the wizard is started with them and the walk follows the buttons that it finds. Paths among
them count from the current folder.
"""

import os
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests" / "e2e"))
from wizard import Sandbox, Wizard, wait_until  # noqa: E402

# In the order in which they are looked for: the button that leads on from a page.
WAY_ON = ("Next", "Install", "Update Now", "Update", "Uninstall")
SUCCESSES = ("is installed", "has been updated", "See You Later!")
LAST_PAGES = (*SUCCESSES, "Setup could not finish")


class Album:
    """Numbered pictures in one folder."""

    def __init__(self, folder):
        self.folder = folder
        folder.mkdir(parents=True, exist_ok=True)
        for old in folder.glob("*.png"):
            old.unlink()
        self.count = 0

    def add(self, wizard, name):
        self.count += 1
        path = self.folder / f"{self.count:02d}-{name}.png"
        wizard.picture(path)
        print(f"  {path}", flush=True)

    def contact_sheet(self):
        sheet = self.folder / "contact-sheet.png"
        subprocess.run(["montage", *sorted(map(str, self.folder.glob("[0-9]*.png"))),
                        "-tile", "3x", "-geometry", "680x474+12+12", "-background", "#8899AA",
                        str(sheet)], check=True)
        return sheet


def page_name(wizard):
    """The page's headline as a file name: the first text after those of title bar and rail."""
    texts = wizard.texts()
    title = texts[next(i for i, text in enumerate(texts) if text.startswith("©")) + 1]
    return "-".join("".join(c if c.isalnum() else " " for c in title.lower()).split())


def walk(wizard, album):
    while not any(wizard.has_text(text) for text in LAST_PAGES):
        wizard.wait_settled()
        if "I accept the license agreement" in [name for _, _, name in wizard.widgets()]:
            wizard.click("I accept the license agreement")
            wizard.wait_button("Next")
        if wizard.has_text("Checking your system"):
            wait_until(lambda: len(wizard.rows()) == 9, "the nine findings")
        wizard.wait_settled()
        album.add(wizard, page_name(wizard))
        button = next((name for name in WAY_ON if wizard.buttons().get(name)), None)
        if not button:
            raise AssertionError(f"no way on from here: {wizard.texts()}")
        wizard.click(button)
        if button in ("Install", "Update", "Uninstall"):
            for percent in (10, 50, 90):
                wait_until(lambda: (wizard.bar_value() or 0) >= percent
                           or any(wizard.has_text(text) for text in LAST_PAGES),
                           f"a progress of {percent} %")
                album.add(wizard, f"{page_name(wizard)}-{percent}")
            wait_until(lambda: any(wizard.has_text(text) for text in LAST_PAGES), "the last page")
        else:
            wait_until(lambda: not wizard.buttons().get(button) or button == "Next", "the next page")
    wizard.wait_settled()
    album.add(wizard, page_name(wizard))


def main():
    album = Album(Path(sys.argv[1]))
    # The wizard starts in a folder of its own.
    options = [os.path.abspath(option) if os.path.exists(option) else option
               for option in sys.argv[2:]]
    arguments = options or ["--setup-exe", os.environ["STANDIN_ENGINE"]]
    sandbox = Sandbox()
    sandbox.environment["VARNEL_ENGINE_DELAY_MS"] = "120"
    try:
        with Wizard(*arguments, sandbox=sandbox) as wizard:
            walk(wizard, album)
            print(f"On the last page: {wizard.texts()[-3:]}")
            succeeded = any(wizard.has_text(text) for text in SUCCESSES)
            wizard.press("Escape")
            code = wizard.wait_end()
        installed = sum(path.is_file() for path in sandbox.destination.rglob("*"))
        print(f"The wizard ended with {code}; it had installed {installed} files.")
        print(f"Contact sheet: {album.contact_sheet()}")
        return 0 if succeeded and code == 0 else 1
    finally:
        sandbox.remove()


if __name__ == "__main__":
    sys.exit(main())
