"""What every test of the whole program on a desktop needs: the desktop, a home, the running program.

Read by programs that are called with   PROGRAM SAMPLE FOLDER [TEST...]"""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

from desktop import Desktop, wait_for
from session import Session
from trimora import Trimora

PROGRAM, SAMPLE, FOLDER = sys.argv[1:4]
SCREEN = (1700, 950)
UNSAVED = "Do you want to save result?"
EMPTY = "Drop a picture here or open one"
GREY = (128, 128, 128)  # the picture of most tests, all over
ALONG = ((0.3, 0.5), (0.7, 0.5))  # a stroke through the middle of the view


def make_picture(path, colour="rgb(128,128,128)", size="600x400"):
    subprocess.run(["convert", "-size", size, "xc:" + colour, path], check=True)
    return path


def alpha(path, x, y):
    """How opaque a pixel of a saved picture is, of 255; none where there is no picture."""
    done = subprocess.run(["convert", path, "-format", f"%[fx:round(255*p{{{x},{y}}}.a)]", "info:"],
                          capture_output=True, text=True, check=False)
    return int(done.stdout) if done.returncode == 0 and done.stdout else None


class DesktopCase(unittest.TestCase):
    """A desktop for all tests of a class, and a home of its own for each."""

    @classmethod
    def setUpClass(cls):
        folder = os.path.join(FOLDER, cls.__name__)
        os.makedirs(folder)
        cls.root = cls.enterClassContext(tempfile.TemporaryDirectory())
        cls.desktop = cls.enterClassContext(Desktop(folder, *SCREEN))
        cls.session = Session(cls.desktop, cls.root)

    def setUp(self):
        self.home = tempfile.mkdtemp(dir=self.root)
        self.picture = make_picture(os.path.join(self.home, "grey.png"))
        self.programs = []

    def tearDown(self):
        for program in self.programs:
            # Once: a second signal would end it at once, before a sanitizer has had its say.
            if program.process.poll() is None:
                program.process.terminate()
            self.assertEqual((program.ended(), program.said()), (0, ""), "the program complained")

    def start(self, *arguments, **variables):
        trimora = Trimora(self.session, PROGRAM, os.path.join(self.home, "home"), *arguments, **variables)
        self.programs.append(trimora)
        return trimora

    def opened(self, picture=None):
        """The program with a picture in it."""
        trimora = self.start(picture or self.picture)
        trimora.wait("Undo", "showing")
        self.desktop.rest()
        return trimora

    def painted(self):
        """The same with a stroke on it."""
        trimora = self.opened()
        trimora.stroke(*ALONG)
        trimora.wait("Undo", "enabled")
        self.desktop.rest()
        return trimora

    def close(self, trimora):
        trimora.keys("ctrl+w")
        wait_for("the window to go", lambda: not trimora.is_visible())
        self.assertIsNone(trimora.process.poll(), "closing ends nothing")

    def shot(self, name=None):
        return self.desktop.rest(name)

    def wait_for_message(self, trimora, words):
        wait_for(f"the message {words!r}", lambda: words in (trimora.message() or ""))

    def save_as(self, target):
        """Answers the save panel."""
        self.desktop.window("Save picture")
        self.desktop.do("key", "ctrl+a", "type", target)
        self.desktop.do("key", "Return")

    def cancel_then_save(self, trimora, key, name):
        """Presses a key that asks about unsaved work, and takes both ways that keep the work; where it was saved."""
        trimora.keys(key)
        trimora.sheet(UNSAVED)
        self.shot(name)
        trimora.answer(UNSAVED, "Cancel")
        self.assertTrue(trimora.has("Undo", "enabled"))
        trimora.keys(key)
        trimora.answer(UNSAVED, "Save")
        target = os.path.join(self.home, "kept.png")
        self.save_as(target)
        return target


def main():
    shutil.rmtree(FOLDER, ignore_errors=True)
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]], verbosity=2)
