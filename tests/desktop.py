"""A desktop of its own for tests of the whole program: a virtual screen with a window manager, real
mouse and key events, and pictures of what is shown. Nothing waits for a fixed time: every wait polls
something that can be seen, and fails with words for what did not come."""

import os
import subprocess
import time

CONFIGURATION = os.path.join(os.path.dirname(os.path.abspath(__file__)), "openbox.xml")
PATIENCE = 60  # seconds that any single thing may take on a busy machine
STILLNESS = 0.4  # seconds without a change that count as rest; a blinking caret changes more seldom


def wait_for(what, condition):
    """Polls until the condition gives something true, which is returned."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.05)
    raise AssertionError(f"waited in vain for {what}")


class Image:
    """A picture in memory: rows of red, green and blue."""

    def __init__(self, width, height, data):
        self.width, self.height, self.data = width, height, data

    @staticmethod
    def read(path):
        size = subprocess.check_output(["identify", "-format", "%w %h", path], text=True)
        width, height = map(int, size.split())
        return Image(width, height, subprocess.check_output(["convert", path, "-depth", "8", "rgb:-"]))

    def pixel(self, x, y):
        at = (y * self.width + x) * 3
        return tuple(self.data[at:at + 3])

    def crop(self, x, y, width, height):
        rows = [self.data[((y + row) * self.width + x) * 3:][:width * 3] for row in range(height)]
        return Image(width, height, b"".join(rows))

    def __eq__(self, other):
        return (self.width, self.height, self.data) == (other.width, other.height, other.data)


class Desktop:
    """The virtual screen. Use as a context: everything that it started is ended with it."""

    def __init__(self, folder, width=1400, height=950):
        self.folder = folder
        self.size = (width, height)
        self.shots = 0
        self.children = []

    def __enter__(self):
        reading, writing = os.pipe()
        self.start(["Xvfb", "-displayfd", str(writing), "-screen", "0", "%dx%dx24" % self.size,
                    "-nolisten", "tcp"], pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as number:
            self.env = dict(os.environ, DISPLAY=":" + number.readline().strip())
        self.env.pop("WAYLAND_DISPLAY", None)
        self.env.pop("QT_QPA_PLATFORM", None)
        self.start(["openbox", "--sm-disable", "--config-file", CONFIGURATION])
        wait_for("the window manager", self.window_manager_runs)
        return self

    def __exit__(self, *_):
        for child in reversed(self.children):
            if child.poll() is None:
                child.terminate()
            child.wait()

    def start(self, command, **options):
        options.setdefault("env", getattr(self, "env", None))
        child = subprocess.Popen(command, **options)
        self.children.append(child)
        return child

    def window_manager_runs(self):
        done = subprocess.run(["xdotool", "get_desktop"], env=self.env, capture_output=True)
        return done.returncode == 0

    def do(self, *words):
        """Runs one chain of xdotool's commands."""
        return subprocess.check_output(["xdotool", *map(str, words)], env=self.env, text=True)

    def window(self, title):
        """The visible window whose title holds these words, once it is there."""
        def found():
            done = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", title],
                                  env=self.env, capture_output=True, text=True)
            return done.stdout.split()
        return wait_for(f"a window called {title}", found)[-1]

    def geometry(self, window):
        lines = self.do("getwindowgeometry", "--shell", window).split()
        values = dict(line.split("=") for line in lines)
        return tuple(int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))

    def look(self, name=None):
        """What the screen shows. With a name the picture is left in the folder, numbered."""
        path = os.path.join(self.folder, "now.png")
        if name:
            self.shots += 1
            path = os.path.join(self.folder, f"{self.shots:02d}-{name}.png")
        subprocess.run(["import", "-silent", "-window", "root", path], env=self.env, check=True)
        return Image.read(path)

    def rest(self, name=None):
        """What the screen shows once it has stood still for a while, longer than any animation lasts
        and longer than a busy machine takes to answer."""
        last, since = self.look(), time.monotonic()

        def still():
            nonlocal last, since
            now = self.look()
            if now != last:
                last, since = now, time.monotonic()
            return time.monotonic() - since > STILLNESS
        wait_for("the screen to come to rest", still)
        return self.look(name)
