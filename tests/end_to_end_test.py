#!/usr/bin/env python3
"""Cuts the sample picture in a real window, with real mouse and key events, and reads the saved file
back with two libraries.   end_to_end_test.py PROGRAM SAMPLE METRICS_HEADER PNG_READER FOLDER"""

import os
import re
import shutil
import subprocess
import sys
import tempfile

from desktop import Desktop, Image, wait_for

PROGRAM, SAMPLE, METRICS, PNG_READER, FOLDER = sys.argv[1:]

# A way round the chick of the sample, in thousandths of the picture's width from its top left corner.
ROUND_THE_CHICK = [(250, 660), (225, 540), (240, 420), (245, 290), (285, 140), (380, 125), (520, 125),
                   (610, 140), (650, 290), (640, 390), (652, 440), (650, 540), (628, 640), (560, 705),
                   (400, 715), (250, 660)]
IN_THE_CHICK = (450, 520)
EYE = (390, 312)


def metric(name):
    with open(METRICS) as header:
        return int(re.search(name + r" = (\d+)", header.read())[1])


class Editor:
    """The program's window on the desktop, and where the picture lies in it."""

    def __init__(self, desktop, home):
        self.desktop = desktop
        self.history = os.path.join(home, "data", "Trimora", "history")
        runtime = os.path.join(home, "runtime")
        os.mkdir(runtime, 0o700)
        env = dict(desktop.env, HOME=home, XDG_DATA_HOME=os.path.join(home, "data"), XDG_RUNTIME_DIR=runtime)
        self.errors = open(os.path.join(FOLDER, "errors.txt"), "w+")
        self.process = desktop.start([PROGRAM, SAMPLE], env=env, stderr=self.errors)
        self.window = desktop.window("Trimora")
        self.place_view(desktop.rest("opened"))

    def place_view(self, screen):
        x, y, width, height = self.desktop.geometry(self.window)
        panel = (14, 14, 14)
        self.left = x + metric("kToolPanelWidth")
        self.right = x + width - metric("kRightPanelWidth")
        # From the view's middle up to the toolbar, which has a line of its own, and down to the window's edge.
        self.top = y + height // 2
        while screen.pixel(self.left + 3, self.top) != panel:
            self.top -= 1
        self.top += 2
        self.bottom = y + height
        self.messages = metric("kMessageHeight") + metric("kMessageDistance")
        picture = Image.read(SAMPLE)
        self.scale = min((self.right - self.left) / picture.width, (self.bottom - self.top) / picture.height)
        self.unit = self.scale * picture.width / 1000
        self.corner = ((self.left + self.right - self.scale * picture.width) / 2,
                       (self.top + self.bottom - self.scale * picture.height) / 2)

    def at(self, place):
        """Screen pixel of a place in the fitted picture."""
        return tuple(round(self.corner[i] + place[i] * self.unit) for i in (0, 1))

    def view(self, screen):
        """The cut view, without the strip where messages come and go by themselves."""
        return screen.crop(self.left, self.top, self.right - self.left, self.bottom - self.top - self.messages)

    def stroke(self, places):
        chain = ["mousemove", *places[0], "mousedown", 1]
        for (x0, y0), (x1, y1) in zip(places, places[1:]):
            for part in range(1, 9):
                chain += ["mousemove", x0 + (x1 - x0) * part // 8, y0 + (y1 - y0) * part // 8]
        self.desktop.do(*chain, "mouseup", 1)

    def wait_for_state(self, number):
        wait_for(f"history state {number}",
                 lambda: os.path.exists(os.path.join(self.history, f"{number}.his")))

    def key_that_changes_the_view(self, keys, name):
        before = self.view(self.desktop.rest())
        self.desktop.do("key", keys)
        wait_for(f"{keys} to change the view", lambda: self.view(self.desktop.look()) != before)
        return self.view(self.desktop.rest(name))


def paint_round_the_chick(desktop, editor):
    desktop.do("mousemove", *editor.at(EYE), "keydown", "alt", "click", 4, "click", 4, "keyup", "alt")
    states = 0
    for start in range(0, len(ROUND_THE_CHICK) - 1, 3):
        editor.stroke([editor.at(place) for place in ROUND_THE_CHICK[start:start + 4]])
        states += 1
        editor.wait_for_state(states)
    painted = editor.view(desktop.rest("painted"))
    return painted


def undo_and_redo(editor, painted):
    once = editor.key_that_changes_the_view("ctrl+z", "undone-once")
    twice = editor.key_that_changes_the_view("ctrl+z", "undone-twice")
    again = editor.key_that_changes_the_view("ctrl+shift+z", "redone")
    assert once != painted and twice != once, "each undo takes a stroke back"
    assert again == once, "a redo shows what the undo took away, to the pixel"


def zoom_and_pan(desktop, editor):
    eye = editor.at(EYE)
    before = desktop.look()
    desktop.do("mousemove", *eye, "click", 4, "click", 4, "click", 4)
    wait_for("the wheel to zoom", lambda: editor.view(desktop.look()) != editor.view(before))
    zoomed = desktop.rest("zoomed")
    # A patch inside the chick, which is all picture, moves with the pointer to the pixel.
    x, y = eye
    desktop.do("mousemove", x, y, "keydown", "space", "mousedown", 1, "mousemove", x + 20, y + 15,
               "mousemove", x + 60, y + 40, "mouseup", 1, "keyup", "space")
    wait_for("the pan to show", lambda: editor.view(desktop.look()) != editor.view(zoomed))
    panned = desktop.rest("panned")
    patch = zoomed.crop(x - 20, y - 20, 60, 60)
    assert panned.crop(x + 40, y + 20, 60, 60) == patch, "the picture follows the pointer"
    desktop.do("key", "0")
    desktop.rest("fitted")


def restore_a_part(desktop, editor):
    place = editor.at(ROUND_THE_CHICK[2])
    before = desktop.look()
    desktop.do("key", "r")
    editor.stroke([place, (place[0], place[1] - 30)])
    wait_for("the restored part", lambda: desktop.look().pixel(*place) != before.pixel(*place))
    desktop.rest("restored")


def save(desktop, editor, target):
    desktop.do("key", "ctrl+s")
    desktop.window("Save picture")
    desktop.rest("save-panel")
    desktop.do("key", "ctrl+a")
    desktop.do("type", target)
    desktop.rest("save-panel-with-name")
    desktop.do("key", "Return")
    wait_for("the saved file", lambda: os.path.exists(target))
    desktop.rest("saved")


def check_saved(target):
    by_magick = subprocess.check_output(["convert", target, "-depth", "8", "rgba:-"])
    by_libpng = subprocess.check_output([PNG_READER, target])
    assert by_magick == by_libpng, "both libraries read the same pixels"
    kind = subprocess.check_output(["identify", "-format", "%w %h %[png:IHDR.color_type] %[bit-depth]", target],
                                   text=True)
    assert kind.startswith("4000 3000 6") and kind.endswith(" 8"), kind

    def pixel(data, channels, place):
        at = (round(place[1] * 4) * 4000 + round(place[0] * 4)) * channels
        return data[at:at + 3]
    original = Image.read(SAMPLE).data
    assert pixel(by_libpng, 4, IN_THE_CHICK) == pixel(original, 3, IN_THE_CHICK), "the subject is untouched"
    assert set(by_libpng[3::4]) == {255}, "the blur fills what was cut away"
    changed = sum(pixel(by_libpng, 4, place) != pixel(original, 3, place) for place in ROUND_THE_CHICK)
    assert changed >= 8, f"only {changed} places round the subject are blurred"


def quit_without_saving(desktop):
    """The work has been saved, but Save stays on, so the program asks."""
    desktop.do("key", "ctrl+q")
    desktop.rest("asked")
    desktop.do("key", "Tab", "key", "Tab", "key", "space")


def main():
    shutil.rmtree(FOLDER, ignore_errors=True)
    os.makedirs(FOLDER)
    with tempfile.TemporaryDirectory() as home, Desktop(FOLDER) as desktop:
        editor = Editor(desktop, home)
        painted = paint_round_the_chick(desktop, editor)
        undo_and_redo(editor, painted)
        zoom_and_pan(desktop, editor)
        restore_a_part(desktop, editor)
        editor.key_that_changes_the_view("3", "blurred")
        target = os.path.join(home, "my cut.png")
        save(desktop, editor, target)
        check_saved(target)
        quit_without_saving(desktop)
        assert wait_for("the program to end", lambda: editor.process.poll() is not None)
        assert editor.process.returncode == 0, editor.process.returncode
        editor.errors.seek(0)
        said = editor.errors.read()
        assert said == "", "the program complained: " + said
    print("the screenshots are in", FOLDER)


main()
