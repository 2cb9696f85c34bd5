#!/usr/bin/env python3
"""The program on Wayland: the compositor has its screen in a window of the X server's, so that the mouse and
the keys of the test are real ones for it, and hands them on to the program; or has no screen at all.

    wayland_test.py PROGRAM SAMPLE FOLDER [TEST...]"""

import json
import os
import subprocess
import tempfile

from desktop import PATIENCE, Image, wait_for
from desktop_case import ALONG, EMPTY, GREY, PROGRAM, UNSAVED, DesktopCase, alpha, main
from session import StandIn
from trimora import Trimora

LITTLE, MUCH = 1000, 100000  # pixels: of letters that happen to have a colour, and of a picture


class OnWayland(Trimora):
    def shown(self):
        self.session.item("Trimora", "frame")


class WaylandCase(DesktopCase):
    VARIABLES = {"WAYLAND_DISPLAY": "wayland-test", "QT_QPA_PLATFORM": "wayland", "DISPLAY": ""}

    def compositor(self, backend, shell, *options):
        socket = os.path.join(self.session.folder, "wayland-test")
        compositor = self.session.quietly(["weston", f"--backend={backend}-backend.so", f"--shell={shell}-shell.so",
                                           "--use-pixman", "--no-config", "--socket=wayland-test", "--idle-time=0",
                                           "--width=1300", "--height=850", *options])
        self.addCleanup(self.desktop.end, compositor)
        wait_for("the compositor", lambda: os.path.exists(socket))

    def start(self, *arguments, **_):
        trimora = OnWayland(self.session, PROGRAM, os.path.join(self.home, "home"), *arguments, **self.VARIABLES)
        self.programs.append(trimora)
        return trimora


class Wayland(WaylandCase):
    def setUp(self):
        super().setUp()
        # A shell that gives a program the whole screen: a program does not know where its window lies.
        self.compositor("x11", "kiosk")
        screen = wait_for("its screen", lambda: (self.desktop.ask("search", "--onlyvisible", "--class", "weston") or
                                                 "").split())[-1]
        self.desktop.do("windowactivate", "--sync", screen)
        self.session.offset = self.desktop.geometry(screen)[:2]

    def test_a_picture_is_opened_cut_and_saved(self):
        trimora = self.start(self.picture)
        trimora.wait("Undo", "showing")
        self.shot("opened")
        trimora.stroke(*ALONG)
        trimora.wait("Undo", "enabled")
        self.assertNotEqual(self.shot("cut").pixel(*trimora.picture().at()), GREY)
        trimora.keys("ctrl+z")
        wait_for("the stroke to go", lambda: self.desktop.look().pixel(*trimora.picture().at(0.5, 0.5)) == GREY)
        trimora.keys("ctrl+shift+z")
        wait_for("the stroke to come back",
                 lambda: self.desktop.look().pixel(*trimora.picture().at(0.5, 0.5)) != GREY)
        target = os.path.join(self.home, "cut.png")
        trimora.keys("ctrl+s")
        trimora.item("Cancel", "push button")
        self.shot("save-panel")
        self.desktop.do("key", "ctrl+a", "type", target)
        self.desktop.do("key", "Return")
        wait_for("the saved file", lambda: os.path.exists(target))
        self.assertEqual(subprocess.check_output(["identify", "-format", "%m %w %h", target], text=True),
                         "PNG 600 400")
        self.assertEqual((alpha(target, 300, 200), alpha(target, 300, 20)), (0, 255))
        self.shot("saved")
        trimora.menu("File", "New")
        trimora.item(UNSAVED, "alert")
        self.shot("new-asks")
        self.desktop.do("key", "Escape")
        self.session.gone(UNSAVED)
        trimora.item("Picture")


class WaylandWithoutAScreen(WaylandCase):
    """A compositor that shows its screen nowhere, and so has neither mouse nor keys: what can be done without
    them, and what the compositor itself says is on its screen."""

    def setUp(self):
        super().setUp()
        self.compositor("headless", "desktop", "--debug")  # which lets anybody take pictures of the screen
        self.env = self.desktop.env | self.VARIABLES

    def seen(self, name=None):
        """How many pixels of the compositor's screen have the colour of the picture."""
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run(["weston-screenshooter"], cwd=folder, env=self.env, check=True, timeout=PATIENCE)
            image = Image.read(os.path.join(folder, os.listdir(folder)[0]))
        if name:
            self.desktop.keep(image, name)
        return image.data.count(bytes(GREY))

    def test_a_file_reaches_the_running_program_and_new_takes_it_away(self):
        trimora = self.start()
        trimora.item(EMPTY)
        self.assertLess(self.seen("empty"), LITTLE)
        self.assertEqual(trimora.launch_again(self.picture), 0)
        trimora.wait("Undo", "showing")
        wait_for("the picture", lambda: self.seen() > MUCH)
        self.seen("opened")
        trimora.choose_in_the_launcher("new")
        trimora.item(EMPTY)
        wait_for("the picture to go", lambda: self.seen() < LITTLE)

    def test_a_script_opens_cuts_and_saves_in_the_window(self):
        program = StandIn(self.desktop.start(
            [PROGRAM, "run", "--show", "--home", os.path.join(self.home, "home"), "-"], env=self.env, text=True,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE))

        def state_after(*steps):
            for step in (*steps, {"do": "settle"}, {"do": "state"}):
                program.tell(json.dumps(step))
            return json.loads(program.heard())
        state = state_after({"do": "view", "size": [900, 600]}, {"do": "open", "files": [self.picture]})
        self.assertEqual((state["image"], state["windowVisible"]), ([600, 400], True))
        wait_for("the picture", lambda: self.seen() > MUCH)
        whole = self.seen("opened-by-a-script")
        state_after({"do": "stroke", "points": [[270, 300], [630, 300]]})
        wait_for("the cut", lambda: MUCH < self.seen() < whole)
        self.seen("cut-by-a-script")
        target = os.path.join(self.home, "cut.png")
        state_after({"do": "answer", "panel": "save", "with": target},
                    {"do": "perform", "on": "window", "selector": "save_pressed:"})
        self.assertEqual((alpha(target, 300, 200), alpha(target, 300, 20)), (0, 255))
        program.process.stdin.close()
        self.assertEqual(program.process.wait(PATIENCE), 0)


if __name__ == "__main__":
    main()
