#!/usr/bin/env python3
"""The program on Wayland: the compositor has its screen in a window of the X server's, so that the mouse and
the keys of the test are real ones for it, and hands them on to the program.

    wayland_test.py PROGRAM SAMPLE FOLDER [TEST...]"""

import os
import subprocess

from desktop import wait_for
from desktop_case import ALONG, GREY, PROGRAM, UNSAVED, DesktopCase, alpha, main
from trimora import Trimora


class OnWayland(Trimora):
    def shown(self):
        self.session.item("Trimora", "frame")


class Wayland(DesktopCase):
    def setUp(self):
        super().setUp()
        socket = os.path.join(self.session.folder, "wayland-test")
        # A shell that gives a program the whole screen: a program does not know where its window lies.
        compositor = self.session.quietly(["weston", "--backend=x11-backend.so", "--use-pixman", "--no-config",
                                           "--shell=kiosk-shell.so", "--socket=wayland-test", "--idle-time=0",
                                           "--width=1300", "--height=850"])
        self.addCleanup(self.desktop.end, compositor)
        wait_for("the compositor", lambda: os.path.exists(socket))
        screen = wait_for("its screen", lambda: (self.desktop.ask("search", "--onlyvisible", "--class", "weston") or
                                                 "").split())[-1]
        self.desktop.do("windowactivate", "--sync", screen)
        self.session.offset = self.desktop.geometry(screen)[:2]

    def test_a_picture_is_opened_cut_and_saved(self):
        trimora = OnWayland(self.session, PROGRAM, os.path.join(self.home, "home"), self.picture,
                            WAYLAND_DISPLAY="wayland-test", QT_QPA_PLATFORM="wayland", DISPLAY="")
        self.programs.append(trimora)
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


if __name__ == "__main__":
    main()
