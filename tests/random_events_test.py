#!/usr/bin/env python3
"""Real events at random on the program's real window, bad files, sheets, other sizes, quitting and starting again
among them.   random_events_test.py PROGRAM SAMPLE FOLDER [TEST...]
TRIMORA_SEED repeats a run as far as the machine lets it; TRIMORA_DEPTH makes it long."""

import os
import random
import re
import subprocess

from desktop import wait_for
from desktop_case import DesktopCase, main, make_picture

EVENTS = 20_000 if int(os.environ.get("TRIMORA_DEPTH") or 1) > 1 else 400
BETWEEN_LOOKS = 1000
OPEN, SAVE, WINDOW = "Open picture", "Save picture", "Trimora"

# No key of these chooses a file, quits or hides the window: that is done apart.
KEYS = """ctrl+z ctrl+shift+z ctrl+shift+r ctrl+c ctrl+v ctrl+plus ctrl+minus ctrl+0 ctrl+1 Tab shift+Tab space Left Right
    Up Down Home End bracketleft bracketright b e h i x Delete BackSpace 7 F10 Escape alt+f alt+e alt+v alt+t""".split()
# More than a program has that has shown each of its menus, tips and sheets once.
MOST_MORE = {"windows": 60, "pixmaps": 30}


class RandomEvents(DesktopCase):
    def setUp(self):
        super().setUp()
        seed = int(os.environ.get("TRIMORA_SEED") or random.SystemRandom().randrange(2**32))
        print("seed", seed, flush=True)
        self.random = random.Random(seed)
        self.done = self.starts = self.panels = self.sheets = self.offers = 0
        self.sound = [self.picture, make_picture(os.path.join(self.home, "wide.png"), "rgb(200,40,40)", "1500x300"),
                      make_picture(os.path.join(self.home, "tall.jpg"), "rgb(40,40,200)", "300x900")]
        self.bad = self.broken_files()
        self.path = self.launcher_of_pages()

    def broken_files(self):
        files = {"empty.png": b"", "words.jpg": b"no picture at all", "half.png": None, "zeros.gif": b"\0" * 100_000}
        with open(self.picture, "rb") as whole:
            data = whole.read()
        files["half.png"] = data[:len(data) // 2]
        for name, content in files.items():
            with open(os.path.join(self.home, name), "wb") as file:
                file.write(content)
        os.mkdir(os.path.join(self.home, "folder.png"))
        os.mkfifo(os.path.join(self.home, "pipe.png"))
        return [os.path.join(self.home, name) for name in (*files, "folder.png", "pipe.png", "nothing.png")]

    def launcher_of_pages(self):
        """A program that takes the pages of Help as a browser would, and shows nothing; the path to be found on."""
        folder = os.path.join(self.home, "bin")
        os.mkdir(folder)
        with open(os.path.join(folder, "xdg-open"), "w") as launcher:
            launcher.write("#!/bin/sh\n")
            os.chmod(launcher.fileno(), 0o755)
        return folder + os.pathsep + os.environ["PATH"]

    def begin(self):
        self.starts += 1
        self.trimora = self.start(self.random.choice(self.sound), PATH=self.path)
        self.look_where_the_window_is()

    def begin_again_after_its_end(self):
        if self.trimora.process.poll() is not None:
            self.assertEqual((self.trimora.ended(), self.trimora.said()), (0, ""))
            self.begin()

    def look_where_the_window_is(self):
        self.left, self.top, self.width, self.height = self.desktop.geometry(self.trimora.window)

    # ── Events ─────────────────────────────────────────────────────────────────────────────────

    def place(self):
        x = self.left + self.random.randrange(max(1, self.width))
        y = self.top + self.random.randrange(max(1, self.height))
        return min(max(x, 0), self.desktop.size[0] - 1), min(max(y, 0), self.desktop.size[1] - 1)

    def chain(self):
        """Some events of which the last may open something: moves, a stroke, wheel, keys, a click."""
        words = []
        for _ in range(self.random.randrange(4)):
            words += self.random.choice((lambda: ["mousemove", *self.place()],
                                         lambda: ["key", "--delay", 0, self.random.choice(KEYS)],
                                         lambda: ["click", self.random.choice((4, 5))]))()
        if self.random.random() < 0.7:
            button = self.random.choice((1, 1, 1, 1, 2, 3))
            words += ["mousemove", *self.place(), "mousedown", button]
            for _ in range(self.random.randrange(6)):
                words += ["mousemove", *self.place()]
            words += ["mouseup", button]
        return words

    def act(self, windows):
        """One chain, or one of the things that happen less often."""
        if self.answer_what_is_open(windows):
            return
        rare = self.random.random()
        if rare < 0.04:
            self.offer()
        elif rare < 0.07:
            size = self.random.randrange(200, 1600), self.random.randrange(150, 900)
            self.desktop.ask("windowsize", self.trimora.window, *size)
            self.look_where_the_window_is()
        elif rare < 0.17:
            self.desktop.ask("key", self.random.choice(("F11", "ctrl+o", "ctrl+s", "ctrl+n")))
        elif rare < 0.24:
            self.desktop.ask("key", self.random.choice(("ctrl+w", "ctrl+q")))
        else:
            words = self.chain()
            self.desktop.ask(*words)
            self.done += sum(words.count(word) for word in ("mousemove", "mousedown", "mouseup")) + \
                2 * sum(words.count(word) for word in ("key", "click"))
        self.done += 1

    def offer(self):
        """A second start of the program hands over a file."""
        self.offers += 1
        self.assertEqual(self.trimora.launch_again(self.random.choice(self.sound + self.bad)), 0)

    def active_title(self):
        return (self.desktop.ask("getactivewindow", "getwindowname") or "").strip()

    def windows(self):
        """What the window manager manages, the newest last: the program's window, sheets and panels. Sheets have no
        name of their own to be found by."""
        listed = subprocess.run(["xprop", "-root", "_NET_CLIENT_LIST"], env=self.desktop.env, capture_output=True,
                                text=True, check=True).stdout
        found = [str(int(number, 16)) for number in re.findall("0x[0-9a-f]+", listed)]
        if len(found) == 1:
            self.trimora.window = found[0]
        return found

    def answer_what_is_open(self, windows):
        """A panel is answered at once, lest random presses wander about in the file system."""
        title = self.active_title()
        if title in (OPEN, SAVE):
            self.panels += 1
            file = os.path.join(self.home, "saved.png") if title == SAVE else self.random.choice(self.sound + self.bad)
            if self.random.random() < 0.5:
                self.desktop.ask("key", "ctrl+a", "type", file)
                self.desktop.ask("key", "Return")
            self.leave(title)
            return True
        if title == WINDOW and len(windows) == 1:
            return False
        self.sheets += 1
        self.desktop.ask("key", *self.random.choice((["Escape"], ["Return"], ["Tab", "space"], ["Tab", "Tab", "space"])))
        self.done += 4
        return True

    def leave(self, title):
        """Until the panel has gone: what it asks on top of itself (a file of this name is there) is refused."""
        def gone():
            if not self.desktop.ask("search", "--onlyvisible", "--name", f"^{title}$"):
                return True
            self.desktop.ask("key", "Escape")
            return False
        wait_for(f"the end of the panel {title}", gone)

    # ── What must hold ─────────────────────────────────────────────────────────────────────────

    def bring_to_rest(self):
        """Lets go of everything, closes whatever is open and brings the window back."""
        self.desktop.ask("mouseup", 1, "mouseup", 2, "mouseup", 3)

        def alone():
            self.begin_again_after_its_end()
            windows = self.windows()
            if self.active_title() == WINDOW and len(windows) == 1:
                return True
            self.desktop.ask("key", "Escape")
            if not windows:
                self.show_again()
            return False
        wait_for("the window alone", alone)
        self.desktop.ask("key", "Escape", "key", "Escape")

    def show_again(self):
        """Starts the program once more, which shows the window. A program that was just ending does not hear of it:
        then the later one is alone, and is ended too."""
        later = self.desktop.start([self.trimora.program], env=self.trimora.env)
        wait_for("a second start to be heard of",
                 lambda: later.poll() is not None or self.trimora.process.poll() is not None)
        if later.poll() is None:
            later.terminate()
            later.wait(60)

    def x_resources(self):
        """What the X server keeps for the program."""
        table = subprocess.run(["xrestop", "-b", "-m", "1"], env=self.desktop.env, capture_output=True, text=True,
                               check=True).stdout
        counts, base, is_ours = {}, None, False
        for line in table.splitlines():
            name, _, value = (part.strip() for part in line.partition(":"))
            if name == "res_base":
                base = int(value, 16)
            elif name == "res_mask":
                is_ours = int(self.trimora.window) & ~int(value, 16) == base
            elif is_ours and name in MOST_MORE:
                counts[name] = int(value)
        return counts

    def test_leave_the_program_in_order(self):
        self.begin()
        self.desktop.rest()
        first = self.x_resources()
        self.assertGreater(first["windows"], 0)
        looked = 0
        while self.done < EVENTS:
            self.begin_again_after_its_end()
            windows = self.windows()
            if windows:
                self.act(windows)
            else:
                self.show_again()
            if self.done // BETWEEN_LOOKS > looked:
                looked = self.done // BETWEEN_LOOKS
                self.bring_to_rest()
                self.assertEqual(self.trimora.said(), "")
        self.bring_to_rest()
        self.assertEqual(self.trimora.launch_again(self.picture), 0)
        last = self.x_resources()
        print(f"{self.done} events, {self.starts} starts, {self.panels} panels, {self.sheets} keys for sheets, "
              f"{self.offers} offers; {first} {last}")
        for kind, most in MOST_MORE.items():
            self.assertLess(last[kind], first[kind] + most, kind)


if __name__ == "__main__":
    main()
