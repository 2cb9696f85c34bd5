"""A desktop of its own for tests of the whole program: a virtual screen with a window manager, real
mouse and key events, and pictures of what is shown. It knows nothing of the windows that it shows.

Nothing waits for a fixed time. Either a test waits for the very thing that it expects, or it asks for
rest(): whether something is still going on is read from the system, which counts how often each thread
of the programs on this desktop has run. Every wait fails with words for what did not come."""

import contextlib
import os
import select
import subprocess
import time

CONFIGURATION = os.path.join(os.path.dirname(os.path.abspath(__file__)), "openbox.xml")
PATIENCE = 60  # seconds that any single thing may take on a busy machine
ALIKE = 1  # levels of 255 by which two pictures that look the same may differ, in the mean over all pixels
BETWEEN_FRAMES = 0.1  # seconds, more than pass between two pictures of an animation


def wait_for(what, condition, patience=PATIENCE):
    """Polls until the condition gives something true, which is returned."""
    end = time.monotonic() + patience
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"waited in vain for {what}")
        time.sleep(0.02)


def times_run(process):
    """How often each thread of a process has run so far; none while one of them runs, wants to, or comes
    and goes. Equal answers at two moments say that nothing ran in between."""
    times = {}
    try:
        for thread in os.listdir(f"/proc/{process.pid}/task"):
            with open(f"/proc/{process.pid}/task/{thread}/status") as status:
                fields = dict(line.split(":", 1) for line in status)
            if fields["State"].split()[0] != "S":
                return None
            times[thread] = int(fields["voluntary_ctxt_switches"]) + int(fields["nonvoluntary_ctxt_switches"])
    except (FileNotFoundError, ProcessLookupError, KeyError):
        return None
    return times


class Image:
    """A picture in memory: rows of red, green and blue."""

    def __init__(self, width, height, data):
        self.width, self.height, self.data = width, height, data

    @staticmethod
    def read(path):
        size = subprocess.check_output(["identify", "-format", "%w %h", path], text=True)
        width, height = map(int, size.split())
        return Image(width, height, subprocess.check_output(["convert", path, "-depth", "8", "rgb:-"]))

    def write(self, path):
        subprocess.run(["convert", "-size", f"{self.width}x{self.height}", "-depth", "8", "rgb:-", path],
                       input=self.data, check=True)

    def pixel(self, x, y):
        at = (y * self.width + x) * 3
        return tuple(self.data[at:at + 3])

    def crop(self, x, y, width, height):
        starts = [((y + row) * self.width + x) * 3 for row in range(height)]
        return Image(width, height, b"".join(self.data[start:start + width * 3] for start in starts))

    def looks_like(self, other):
        """Whether a person would take both for the same. Not every pixel counts: a letter that the toolkit has
        to draw anew, having forgotten what it looked like, may come out a little sharper or softer."""
        if (self.width, self.height) != (other.width, other.height):
            return False
        return sum(abs(a - b) for a, b in zip(self.data, other.data)) <= ALIKE * len(self.data)

    def __eq__(self, other):
        return (self.width, self.height, self.data) == (other.width, other.height, other.data)


class Desktop:
    """The virtual screen. Use as a context: everything that it started is ended with it."""

    def __init__(self, folder, width=1400, height=950):
        self.folder = folder
        self.size = (width, height)
        self.shots = 0
        self.children = []
        self.ending = contextlib.ExitStack()
        self.env = None

    def __enter__(self):
        try:
            self.start_screen()
            self.start(["openbox", "--sm-disable", "--config-file", CONFIGURATION])
            wait_for("the window manager", self.window_manager_runs)
        except BaseException:
            self.__exit__()
            raise
        return self

    def start_screen(self):
        """Starts the X server. Without -noreset it would begin anew, and drop whoever is just connecting,
        each time that its only client leaves: as the question after the window manager does. With -r a key that
        is held does not repeat: else nothing would come to rest meanwhile."""
        reading, writing = os.pipe()
        server = self.start(["Xvfb", "-displayfd", str(writing), "-noreset", "-r", "-nolisten", "tcp",
                             "-screen", "0", "%dx%dx24" % self.size], pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as number:
            wait_for("the virtual screen", lambda: select.select([number], [], [], 0)[0] or self.gone(server))
            display = number.readline().strip()
        assert display, "the virtual screen did not start"
        self.env = dict(os.environ, DISPLAY=":" + display)
        self.env.pop("WAYLAND_DISPLAY", None)
        self.env.pop("QT_QPA_PLATFORM", None)

    def __exit__(self, *_):
        self.ending.close()

    def start(self, command, **options):
        options.setdefault("env", self.env)
        child = subprocess.Popen(command, **options)
        self.children.append(child)
        self.ending.callback(self.end, child)
        return child

    def end(self, child):
        """Ends a process. An X server that is told just before it falls asleep does not hear it and sleeps on
        for ten minutes: it is told until it has gone."""
        try:
            wait_for(f"the end of {child.args[0]}", lambda: self.gone(child) or child.terminate())
        finally:
            child.kill()
            child.wait()

    @staticmethod
    def gone(child):
        return child.poll() is not None

    def ask(self, *words):
        """What one chain of xdotool's commands prints; none where it fails."""
        done = subprocess.run(["xdotool", *map(str, words)], env=self.env, capture_output=True, text=True,
                              timeout=PATIENCE, check=False)
        return done.stdout if done.returncode == 0 else None

    def do(self, *words):
        """Runs a chain of commands that must not fail."""
        assert self.ask(*words) is not None, f"xdotool {' '.join(map(str, words))} failed"

    def window_manager_runs(self):
        dead = [child.args[0] for child in self.children if self.gone(child)]
        assert not dead, f"{dead[0]} ended by itself"
        return self.ask("get_desktop") is not None

    def window(self, title):
        """The visible window whose title holds these words, once it is there and has the keyboard."""
        found = wait_for(f"a window called {title}",
                         lambda: (self.ask("search", "--onlyvisible", "--name", title) or "").split())[-1]
        self.do("windowactivate", found)
        wait_for(f"the window called {title} to have the keyboard",
                 lambda: (self.ask("getactivewindow") or "").strip() == found)
        return found

    def geometry(self, window):
        """Where the window's content is: left, top, width and height. Its own place is asked for by way of the
        pointer, as the tool counts a frame twice that the window manager has put round it."""
        def values(*words):
            return dict(line.split("=") for line in self.ask(*words).split())
        size = values("getwindowgeometry", "--shell", window)
        place = values("mousemove", "--window", window, 0, 0, "getmouselocation", "--shell")
        return int(place["X"]), int(place["Y"]), int(size["WIDTH"]), int(size["HEIGHT"])

    def look(self, name=None):
        """What the screen shows now. With a name the picture is left in the folder, numbered."""
        data = subprocess.check_output(["import", "-silent", "-window", "root", "-depth", "8", "rgb:-"],
                                       env=self.env, timeout=PATIENCE)
        image = Image(*self.size, data)
        assert len(data) == 3 * image.width * image.height, "the whole screen"
        if name:
            self.keep(image, name)
        return image

    def keep(self, image, name):
        """Leaves a picture in the folder, numbered."""
        self.shots += 1
        image.write(os.path.join(self.folder, f"{self.shots:02d}-{name}.png"))

    def rest(self, name=None):
        """What the screen shows once nobody has anything left to do: the programs have taken every event,
        painted what comes of it, and the screen has taken that."""
        def nothing_runs():
            alive = [child for child in self.children if not self.gone(child)]
            before = [times_run(child) for child in alive]
            if None in before:
                return False
            time.sleep(BETWEEN_FRAMES)
            return before == [times_run(child) for child in alive]
        wait_for("everything to come to rest", nothing_runs)
        return self.look(name)
