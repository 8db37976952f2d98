"""Films an installation on the present display; tools/film makes one file of the pictures.

    film.py <folder for the pictures>

Leaves a picture whenever something has changed, and frames.txt, which says how long each is shown.
Expects the X server's picture of its screen in the folder VARNEL_SCREEN_FOLDER (Xvfb -fbdir): that can be
read as often as a film needs it.
"""

import mmap
import os
import struct
import subprocess
import sys
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests" / "e2e"))
from wizard import Sandbox, Wizard, wait_until  # noqa: E402

FRAMES_PER_SECOND = 12.5
WIDTH, HEIGHT = 680, 474

# How long a picture stays in which nothing moves, in seconds: to be read, but not to be waited for.
LONGEST_STILL = 1.2
LAST_STILL = 4.0

# A user's hand takes its time, in seconds.
GLIDE = 0.5
READING = 0.9


class Camera:
    """Takes pictures of a part of the screen until it is told to stop."""

    def __init__(self, folder, x, y):
        self.folder = folder
        self.place = (x, y)
        self.pictures = []  # (time, file)
        self.over = threading.Event()
        with open(Path(os.environ["VARNEL_SCREEN_FOLDER"]) / "Xvfb_screen0", "rb") as file:
            self.screen = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)
        # The format of xwd: sizes in words of four bytes, the largest first.
        header = struct.unpack_from(">25I", self.screen)
        self.pixels = header[0] + 12 * header[19]
        self.line = header[12]
        assert header[11] == 32, f"the screen has {header[11]} bits per pixel, not 32"
        self.thread = threading.Thread(target=self.run)

    def picture(self):
        x, y = self.place
        rows = []
        for row in range(y, y + HEIGHT):
            start = self.pixels + row * self.line + 4 * x
            data = self.screen[start:start + 4 * WIDTH]
            rgb = bytearray(3 * WIDTH)
            rgb[0::3], rgb[1::3], rgb[2::3] = data[2::4], data[1::4], data[0::4]
            rows.append(rgb)
        return b"".join(rows)

    def run(self):
        last = None
        start = time.monotonic()
        number = 0
        while not self.over.is_set():
            number += 1
            data = self.picture()
            if data != last:
                file = self.folder / f"{len(self.pictures):04d}.ppm"
                file.write_bytes(b"P6\n%d %d\n255\n" % (WIDTH, HEIGHT) + data)
                self.pictures.append((time.monotonic(), file))
                last = data
            time.sleep(max(0, start + number / FRAMES_PER_SECOND - time.monotonic()))

    def __enter__(self):
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.over.set()
        self.thread.join()

    def write_list(self):
        """How long each picture is shown: until the next one was taken, but not endlessly."""
        words = []
        for (taken, file), following in zip(self.pictures, [*self.pictures[1:], None]):
            shown = min(following[0] - taken, LONGEST_STILL) if following else LAST_STILL
            words.append(f"-d {round(1000 * shown)} {file.name}")
        (self.folder / "frames.txt").write_text("\n".join(words) + "\n")


class Hand:
    """The mouse, moved as a person does: slowly at both ends of the way."""

    BESIDE = (940, 700)  # the window, which is in the middle of the screen

    def __init__(self):
        self.x, self.y = self.BESIDE
        subprocess.run(["xdotool", "mousemove", *map(str, self.BESIDE)], check=True)

    def glide(self, x, y, duration=GLIDE):
        words = []
        steps = max(1, round(duration * 60))
        for step in range(1, steps + 1):
            way = step / steps
            way = way * way * (3 - 2 * way)
            words += ["mousemove", str(round(self.x + (x - self.x) * way)), str(round(self.y + (y - self.y) * way)),
                      "sleep", str(duration / steps)]
        subprocess.run(["xdotool", *words], check=True)
        self.x, self.y = x, y

    def click(self, wizard, name):
        x, y = wizard.centre_of(name)
        self.glide(x + 20, y + 8)  # so that the text can be read
        subprocess.run(["xdotool", "click", "1"], check=True)


def install(wizard, hand):
    for page in ("License Agreement", "Checking your system", "Select Destination Location",
                 "Select Additional Tasks", "Ready to Install"):
        time.sleep(READING)
        hand.click(wizard, "Next")
        wizard.wait_text(page)
        wizard.wait_settled()
        if page == "License Agreement":
            hand.click(wizard, "I accept the license agreement")
        if page == "Checking your system":
            wait_until(lambda: len(wizard.rows()) == 9, "the nine findings")
            wizard.wait_settled()
        wizard.wait_button("Next" if page != "Ready to Install" else "Install")
    time.sleep(READING)
    hand.click(wizard, "Install")
    hand.glide(*hand.BESIDE)
    wizard.wait_text("is installed")
    wizard.wait_settled()


def main():
    sandbox = Sandbox("/tmp/varnel-film")
    sandbox.environment["VARNEL_ENGINE_DELAY_MS"] = "90"
    hand = Hand()
    try:
        with Wizard("--setup-exe", os.environ["STANDIN_ENGINE"], sandbox=sandbox) as wizard:
            window = wait_until(wizard.window_id, "the window")
            place = dict(line.split("=") for line in subprocess.run(
                ["xdotool", "getwindowgeometry", "--shell", window], check=True, capture_output=True,
                text=True).stdout.split())
            with Camera(Path(sys.argv[1]), int(place["X"]), int(place["Y"])) as camera:
                install(wizard, hand)
                time.sleep(2)
            camera.write_list()
            wizard.press("Escape")
            return wizard.wait_end()
    finally:
        sandbox.remove()


if __name__ == "__main__":
    sys.exit(main())
