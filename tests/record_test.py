#!/usr/bin/env python3
"""Works in a real window that is recorded, replays the script without one, and compares the masks, pixel for
pixel.   record_test.py PROGRAM METRICS_HEADER FOLDER"""

import json
import os
import re
import shutil
import subprocess
import sys
import tempfile

from desktop import Desktop, wait_for

PROGRAM, METRICS, FOLDER = sys.argv[1:]


def metric(name):
    with open(METRICS) as header:
        return int(re.search(name + r" = (\d+)", header.read())[1])


def homes(home):
    os.makedirs(os.path.join(home, "runtime"), mode=0o700)
    return {"HOME": home, "XDG_DATA_HOME": os.path.join(home, "data"),
            "XDG_CONFIG_HOME": os.path.join(home, "config"), "XDG_CACHE_HOME": os.path.join(home, "cache"),
            "XDG_RUNTIME_DIR": os.path.join(home, "runtime")}


class Session:
    """A recorded window, and how a hand reaches into it."""

    def __init__(self, desktop, home, script, picture):
        self.desktop = desktop
        self.errors = open(os.path.join(FOLDER, "errors.txt"), "w+")
        self.process = desktop.start([PROGRAM, "--record", script, picture], env={**desktop.env, **homes(home)},
                                     stderr=self.errors)
        self.window = desktop.window("Trimora")
        desktop.rest("opened")
        x, y, width, height = desktop.geometry(self.window)
        self.left, self.right = x + metric("kToolPanelWidth"), x + width - metric("kRightPanelWidth")
        self.top, self.bottom = y + 120, y + height

    def at(self, share):
        return (round(self.left + share[0] * (self.right - self.left)),
                round(self.top + share[1] * (self.bottom - self.top)))

    def drag(self, shares, button=1):
        places = [self.at(share) for share in shares]
        chain = ["mousemove", *places[0], "mousedown", button]
        for (x0, y0), (x1, y1) in zip(places, places[1:]):
            for part in range(1, 6):
                chain += ["mousemove", x0 + (x1 - x0) * part // 5, y0 + (y1 - y0) * part // 5]
        self.desktop.do(*chain, "mouseup", button)
        self.desktop.rest()

    def keys(self, *names):
        for name in names:
            self.desktop.do("key", name)
            self.desktop.rest()

    def wheel(self, share, button, times, held=None):
        chain = ["mousemove", *self.at(share)] + (["keydown", held] if held else [])
        chain += ["click", button] * times + (["keyup", held] if held else [])
        self.desktop.do(*chain)
        self.desktop.rest()


def open_by_panel(session, picture):
    session.desktop.do("key", "ctrl+o")
    session.desktop.window("Open picture")
    session.desktop.rest("open-panel")
    session.desktop.do("type", picture)
    session.desktop.do("key", "Return")
    session.desktop.rest("opened-by-panel")


def work(session, other):
    session.drag([(0.2, 0.2), (0.5, 0.3), (0.6, 0.7)])
    open_by_panel(session, other)
    session.wheel((0.5, 0.5), 4, 3, held="alt")
    session.drag([(0.3, 0.3), (0.7, 0.35), (0.6, 0.6)])
    session.wheel((0.4, 0.5), 4, 4)
    session.drag([(0.4, 0.4), (0.6, 0.5)])
    session.drag([(0.5, 0.5), (0.35, 0.62)], button=3)
    session.keys("r", "bracketright", "bracketright")
    session.drag([(0.45, 0.35), (0.55, 0.55)])
    session.desktop.do("keydown", "space")
    session.drag([(0.5, 0.5), (0.6, 0.4)])
    session.desktop.do("keyup", "space")
    session.keys("b", "2", "3", "1")
    session.drag([(0.3, 0.6), (0.32, 0.7), (0.5, 0.72)])
    session.keys("ctrl+z", "ctrl+z", "ctrl+shift+z", "alt+i")
    session.drag([(0.6, 0.6), (0.4, 0.45)])
    session.keys("alt+i", "0")
    session.drag([(0.5, 0.25), (0.52, 0.6)])
    session.desktop.look("worked")


def pixels(png):
    return subprocess.check_output(["convert", png, "-depth", "8", "rgba:-"])


def replay(script, folder, home):
    """The mask that the script comes to, and what there is to see of the editor then."""
    with open(script, "a") as lines:
        lines.write('{"do":"settle"}\n{"do":"state"}\n{"do":"write","what":"mask","to":"mask.png"}\n')
    done = subprocess.run([PROGRAM, "run", script], cwd=folder, env={**os.environ, **homes(home)},
                          capture_output=True, text=True, timeout=300, check=False)
    assert (done.returncode, done.stderr) == (0, ""), (done.returncode, done.stderr)
    return pixels(os.path.join(folder, "mask.png")), json.loads(done.stdout)


def main():
    shutil.rmtree(FOLDER, ignore_errors=True)
    os.makedirs(FOLDER)
    with tempfile.TemporaryDirectory() as folder, Desktop(FOLDER) as desktop:
        first, other = (os.path.join(folder, name) for name in ("first.png", "other.png"))
        for picture, size in ((first, "800x500"), (other, "2400x1500")):
            subprocess.run(["convert", "-size", size, "gradient:orange-navy", picture], check=True)
        script = os.path.join(FOLDER, "session.jsonl")
        home = os.path.join(folder, "recorded")
        session = Session(desktop, home, script, first)
        work(session, other)
        session.process.terminate()
        wait_for("the program to end", lambda: session.process.poll() is not None)
        session.errors.seek(0)
        said = session.errors.read()
        assert said == "", "the program complained: " + said

        mask, state = replay(script, folder, os.path.join(folder, "replayed"))
        assert state["image"] == [2400, 1500] and state["planes"] == [2000, 1250], state
        assert state["historyLength"] == 6, state["historyLength"]
        kept = os.path.join(home, "data", "Trimora", "history", f"{state['historyFileIndex']}.his")
        painted = pixels("png:" + kept)
        cut = sum(1 for alpha in painted[3::4] if alpha == 0)
        assert cut > 50_000, f"only {cut} pixels are cut"
        assert mask[3::4] == painted[3::4], "the replay comes to another mask"
    print("the recorded script is", script)


main()
