"""The program's window on a desktop, for tests of the whole program: what a person sees and does in it."""

import os

from desktop import wait_for

SHEETS = ("alert", "dialog")


class Trimora:
    """A running Trimora with a home of its own."""

    def __init__(self, session, program, home, *arguments, **variables):
        self.session, self.desktop = session, session.desktop
        self.program, self.home = program, home
        os.makedirs(home, exist_ok=True)
        self.env = dict(self.desktop.env, HOME=home, XDG_DATA_HOME=os.path.join(home, "data"),
                        XDG_CONFIG_HOME=os.path.join(home, "config"), XDG_CACHE_HOME=os.path.join(home, "cache"),
                        **variables)
        self.errors = os.path.join(home, "errors.txt")
        with open(self.errors, "w") as errors:
            self.process = self.desktop.start([program, *arguments], env=self.env, stderr=errors)
        self.window = self.shown()

    def shown(self):
        """Waits for the window, which is returned."""
        return self.desktop.window("^Trimora$")

    def is_visible(self):
        """Whether its window is on the screen; each time that it comes back it is another to the X server."""
        found = (self.desktop.ask("search", "--onlyvisible", "--name", "^Trimora$") or "").split()
        self.window = found[-1] if found else self.window
        return bool(found)

    def launch_again(self, *arguments):
        """Starts the program a second time; what it answers with."""
        return self.desktop.start([self.program, *arguments], env=self.env).wait(60)

    def choose_in_the_launcher(self, action):
        """Has the desktop's launcher tell the program one of its actions."""
        assert self.session.call("org.trimora.Trimora", "/org/trimora/Trimora",
                                 "org.freedesktop.Application.ActivateAction", action, "[]", "{}") is not None, action

    def said(self):
        with open(self.errors) as file:
            return file.read()

    def ended(self):
        """Waits for its end; the code."""
        wait_for("the program to end", lambda: self.process.poll() is not None)
        return self.process.returncode

    # ── By their names ─────────────────────────────────────────────────────────────────────────

    def item(self, name, role=None):
        return self.session.item(name, role)

    def has(self, name, state, role=None):
        item = self.session.find(name, role)
        return item is not None and item.has(state)

    def wait(self, name, state, role=None):
        wait_for(f"{name!r} to be {state}", lambda: self.has(name, state, role))

    def wait_not(self, name, state, role=None):
        wait_for(f"{name!r} not to be {state}", lambda: not self.has(name, state, role))

    def click(self, name, role=None, x=0.5, y=0.5):
        self.desktop.do("mousemove", *self.item(name, role).at(x, y), "click", 1)

    def sheet(self, question):
        """The sheet with this question, and its window; once it has the keyboard."""
        sheet = wait_for(f"the question {question!r}", lambda: next(
            (item for item in self.session.showing() if item.name == question and item.role in SHEETS), None))
        window = wait_for("its window to have the keyboard", lambda: next(
            (found for found in (self.desktop.ask("getactivewindow") or "").split() if found != self.window), None))
        return sheet, window

    def answer(self, question, answer):
        """Presses a button of a sheet, which then goes. Where a window without a frame lies is asked of the X
        server: not every window manager tells the program."""
        sheet, window = self.sheet(question)
        self.desktop.rest()
        showing = self.session.showing()
        button = [item for item in showing if item.name == answer and item.role == "push button"][-1]
        left, top = self.desktop.geometry(window)[:2]
        x, y = button.at()
        self.desktop.do("mousemove", left + x - sheet.left, top + y - sheet.top, "click", 1)
        self.session.gone(question)

    def menu(self, *names):
        """Chooses an item of a menu by the mouse."""
        for name in names:
            self.click(name, "menu item")

    def keys(self, *keys):
        for key in keys:
            self.desktop.do("key", key)

    def message(self):
        """What the line over the picture says; none where it is not there."""
        showing = self.session.showing()
        line = next((place for place, item in enumerate(showing) if item.name == "Message"), None)
        return None if line is None else next(item.name for item in showing[line:] if item.role == "label")

    # ── The picture ────────────────────────────────────────────────────────────────────────────

    def picture(self):
        return self.item("Picture")

    def stroke(self, *places):
        """Paints by the mouse along places given as shares of the view."""
        view = self.picture()
        points = [view.at(*place) for place in places]
        chain = ["mousemove", *points[0], "mousedown", 1]
        for (x0, y0), (x1, y1) in zip(points, points[1:]):
            for part in range(1, 9):
                chain += ["mousemove", x0 + (x1 - x0) * part // 8, y0 + (y1 - y0) * part // 8]
        self.desktop.do(*chain, "mouseup", 1)
