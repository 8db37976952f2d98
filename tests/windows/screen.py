"""The wizard's window on the virtual screen: what it shows is read like a person does, by its looks,
since nothing else of a program in Wine can be seen from outside."""

import os
import re
import subprocess
import threading
import time

from world import PATIENCE, World, wait_until

SETUP = os.environ["VARNEL_SETUP"]
WIDTH, HEIGHT = 680, 474
# Where the pages are, and what is below them. The mark to the left of them never rests.
PANE = (197, 37, WIDTH - 197, 388)
STATUS = (10, 434, 390, 32)
TITLE_BUTTONS = {"minimize": (620, 18), "close": (660, 18)}
# The right button ends here on every page, however wide it is.
PRIMARY = (648, 450)
# Letters are read best at three times their size.
ZOOM = 3


# What looks alike in some font is one and the same.
ALIKE = str.maketrans({"|": "i", "l": "i", "1": "i", "!": "i", "0": "o"})


def compact(text):
    """Letters and digits only; the rest nobody reads reliably from a picture."""
    return re.sub(r"[^a-z0-9|!]", "", text.lower()).translate(ALIKE)


def find_written(wanted, letters):
    """Where `wanted` stands last in `letters`, or -1. One letter in ten may have been misread."""
    for position in range(len(letters) - len(wanted), -1, -1):
        there = letters[position:position + len(wanted)]
        if sum(a != b for a, b in zip(wanted, there)) <= len(wanted) // 10:
            return position
    return -1


class Words:
    """What is written on a page, with places in window coordinates."""

    def __init__(self):
        self.words = []

    def add(self, table, left, top):
        """Adds what was found in the part of the window that begins there."""
        for line in table.splitlines()[1:]:
            fields = line.split("\t")
            if len(fields) == 12 and fields[11].strip() and float(fields[10]) >= 0:
                x, y, width, height = (int(field) / ZOOM for field in fields[6:10])
                self.words.append((fields[11], round(left + x + width / 2),
                                   round(top + y + height / 2)))

    @property
    def text(self):
        return " ".join(word for word, _, _ in self.words)

    def __repr__(self):
        return repr(self.text)

    def __contains__(self, text):
        return find_written(compact(text), compact(self.text)) >= 0

    def place(self, text):
        """Centre of the word with which `text` begins, where it stands last."""
        letters, owners = "", []
        for index, (word, _, _) in enumerate(self.words):
            letters += compact(word)
            owners += [index] * len(compact(word))
        position = find_written(compact(text), letters)
        if position >= 0:
            return self.words[owners[position]][1:]
        raise AssertionError(f"{text!r} is not on screen: {self.text}")


def recognize(pixels, area, layout):
    """What the character recognition finds in an area, as its table of words."""
    _, _, width, height = area
    # Of the three colours green is the one in which every ink is dark.
    picture = subprocess.run(
        ["convert", "-size", f"{width}x{height}", "-depth", "8", "rgb:-", "-channel", "G",
         "-separate", "-auto-level", "-resize", f"{ZOOM * 100}%", "png:-"],
        input=pixels, capture_output=True).stdout
    return subprocess.run(
        ["tesseract", "-", "-", "--psm", layout, "tsv"], input=picture, capture_output=True,
        env={**os.environ, "OMP_THREAD_LIMIT": "1"}).stdout.decode()


class Wizard:
    def __init__(self, world: World, *arguments, title="Varnel Schematics setup", program=SETUP,
                 started_by=None):
        """Starts a wizard, or finds the one that another program has started."""
        self.world = world
        self.title = title
        self._pictures = 0
        self.output = world.folder / "wizard.txt"
        self.process = started_by or world.start(program, *arguments, output=self.output)
        self._may_end = started_by is not None
        self.window = wait_until(self._find_window, "the wizard's window")
        self.page = None

    def _find_window(self):
        if self.process.poll() is not None and not self._may_end:
            raise AssertionError(f"the wizard ended at once with {self.process.returncode}: "
                                 f"{self.output.read_text(errors='replace')}")
        return self.search("--name", f"^{self.title}$")

    @staticmethod
    def search(*criteria):
        """The first window on screen that xdotool finds by these criteria."""
        result = subprocess.run(["xdotool", "search", "--onlyvisible", *criteria],
                                capture_output=True, text=True)
        return result.stdout.split()[0] if result.stdout.split() else None

    # -- looking -----------------------------------------------------------------------------------

    def pixels(self, area=PANE):
        """The bytes of an area of the window, three per pixel; nothing if it is not on screen."""
        x, y, width, height = area
        return subprocess.run(
            ["import", "-silent", "-window", self.window, "-crop", f"{width}x{height}+{x}+{y}",
             "-depth", "8", "rgb:-"], capture_output=True).stdout

    def size(self):
        told = subprocess.run(["xdotool", "getwindowgeometry", "--shell", self.window], check=True,
                              capture_output=True, text=True).stdout
        values = dict(line.split("=") for line in told.splitlines())
        return int(values["WIDTH"]), int(values["HEIGHT"])

    def picture(self, name):
        self._pictures += 1
        subprocess.run(["import", "-silent", "-window", self.window,
                        str(self.world.pictures / f"{self._pictures:02}-{name}.png")])

    def settle(self, patience=PATIENCE):
        """Waits until the page is at rest, so that a click hits what it is meant for."""
        end = time.monotonic() + patience
        before = self.pixels()
        while time.monotonic() < end:
            time.sleep(0.25)
            now = self.pixels()
            if now == before and now:
                return
            before = now
        raise AssertionError("the page does not come to rest")

    def read(self):
        """Reads the page as it is now."""
        # The page as scattered texts, the status at the bottom as a single line.
        self.page = Words()
        self.page.add(recognize(self.pixels(PANE), PANE, "11"), *PANE[:2])
        self.page.add(recognize(self.pixels(STATUS), STATUS, "7"), *STATUS[:2])
        return self.page

    def wait_page(self, text, patience=PATIENCE / 2):
        """Waits until a page at rest says `text`."""
        end = time.monotonic() + patience
        while True:
            self.settle(max(end - time.monotonic(), 1))
            if text in self.read():
                self.picture(re.sub(r"\W+", "-", text.lower()))
                return self.page
            if time.monotonic() > end:
                self.picture("instead")
                raise AssertionError(f"waited in vain for {text!r}; on screen: {self.page.text}")

    # -- doing -------------------------------------------------------------------------------------

    def click_at(self, place):
        x, y = place
        subprocess.run(["xdotool", "mousemove", "--window", self.window, str(x), str(y),
                        "click", "1"], check=True)

    def click(self, text):
        """Clicks what the page that was read last says."""
        self.click_at(self.page.place(text))

    def press(self, *keys):
        subprocess.run(["xdotool", "key", "--clearmodifiers", *keys], check=True)

    def type(self, text):
        subprocess.run(["xdotool", "type", "--clearmodifiers", text], check=True)

    def next(self, text):
        """Clicks the right button and waits for the page that says `text`."""
        self.click_at(PRIMARY)
        return self.wait_page(text)

    def choose_folder(self, folder):
        """Chooses a folder in the system's own dialog, which takes only one that exists."""
        self.world.path(folder).mkdir(parents=True)
        self.click("Change")
        dialog = wait_until(lambda: self.search("--name", "^Select "), "the folder dialog")
        subprocess.run(["xdotool", "windowfocus", "--sync", dialog], check=True)
        self.press("Home", "shift+End")
        self.type(folder)
        self.press("Return")
        wait_until(lambda: not self.search("--name", "^Select "), "the end of the folder dialog")
        self.wait_page(folder)

    def walk_to_ready(self, folder=None, desktop_shortcut=True):
        """From the welcome page to the last one before an installation."""
        self.wait_page("Welcome to the Varnel Schematics Setup Wizard")
        self.next("License Agreement")
        self.click("I accept the license agreement")
        self.next("requirement(s) checked")
        self.next("Select Destination Location")
        if folder:
            self.choose_folder(folder)
        self.next("Select Additional Tasks")
        if not desktop_shortcut:
            self.click("Create a desktop shortcut")
        self.next("Ready to Install")

    def close(self):
        """Ends the wizard by its title bar; returns its exit code."""
        self.click_at(TITLE_BUTTONS["close"])
        return self.wait_end()

    def wait_end(self, patience=PATIENCE):
        return self.process.wait(timeout=patience)

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()


class Watch:
    """What was seen of a run while it went on: looks of the page and reports in the status file."""

    def __init__(self, wizard):
        self.wizard = wizard
        self.looks = []
        self.reports = []

    def until(self, condition, patience=PATIENCE):
        """Looks on until condition() is true."""
        # A picture takes a busy machine longer than the engine leaves its reports there.
        over = threading.Event()
        reader = threading.Thread(target=self._collect_reports, args=(over,))
        reader.start()
        try:
            end = time.monotonic() + patience
            while time.monotonic() < end:
                self._look()
                if condition():
                    return
        finally:
            over.set()
            reader.join()
        self.wizard.picture("watched")
        raise AssertionError(f"the run does not end; last report: {self.reports[-1:]}")

    def _look(self):
        look = self.wizard.pixels()
        if look and look not in self.looks:
            self.looks.append(look)
            if len(self.looks) in (5, 10, 20):
                self.wizard.picture("running")

    def _collect_reports(self, over):
        while not over.wait(0.01):
            for path in self.wizard.world.temp.glob("varnel_*.ini"):
                try:
                    lines = path.read_text(encoding="utf-8").splitlines()
                except (OSError, UnicodeDecodeError):
                    continue
                report = dict(line.split("=", 1) for line in lines if "=" in line)
                if report.keys() == {"progress", "file", "status"} and report not in self.reports:
                    self.reports.append(report)

    def percentages(self):
        """What some of the looks say in per cent, in order."""
        found = []
        for look in self.looks[::max(len(self.looks) // 8, 1)]:
            words = Words()
            words.add(recognize(look, PANE, "11"), *PANE[:2])
            # At the right margin, where no path reaches that has a per cent sign in it.
            found += [int(word[:-1]) for word, x, _ in words.words
                      if re.fullmatch(r"\d+%", word) and x > WIDTH - 65]
        return found

    def fractions(self):
        return [float(report["progress"]) for report in self.reports]

    def distinct(self, key):
        return {report[key] for report in self.reports if report[key]}
