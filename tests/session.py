"""What a person's desktop has beside its screen: a session bus with nothing on it but what a test puts
there, a screen reader, by whose eyes the tests find what they click, and other programs."""

import json
import os
import queue
import subprocess
import threading

from desktop import PATIENCE, wait_for

STAND_INS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "stand_ins")
PYTHON = "/usr/bin/python3"  # the system's own, to which the packages belong that the stand-ins use

# No folders of services: nothing of the machine is ever started by this bus.
BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


class Item:
    """One thing on the screen as a screen reader has it."""

    def __init__(self, facts, offset):
        self.facts = facts
        self.name, self.role, self.states = facts["name"], facts["role"], facts["states"]
        left, top, self.width, self.height = facts["place"]
        self.left, self.top = left + offset[0], top + offset[1]

    def at(self, x=0.5, y=0.5):
        """Screen pixel at these shares of its width and height."""
        return round(self.left + self.width * x), round(self.top + self.height * y)

    def has(self, state):
        return state in self.states

    def __repr__(self):
        return f"{self.role} {self.name!r} {self.states} {self.facts['place']}"


class StandIn:
    """Another program on the desktop, which says line by line what happens to it."""

    def __init__(self, process):
        self.process = process
        self.lines = queue.Queue()
        threading.Thread(target=self.listen, daemon=True).start()

    def listen(self):
        for line in self.process.stdout:
            self.lines.put(line.strip())

    def tell(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()

    def heard(self):
        """Its next line."""
        try:
            return self.lines.get(timeout=PATIENCE)
        except queue.Empty:
            raise AssertionError(f"waited in vain for a word of {self.process.args[1]}") from None


class Session:
    """A bus and a screen reader on a desktop. Everything that is started on it ends with the desktop."""

    def __init__(self, desktop, folder):
        self.desktop = desktop
        self.folder = folder
        self.offset = (0, 0)  # of the screen that the programs are on, where that is a window on this one
        self.address = "unix:path=" + os.path.join(folder, "bus")
        desktop.env.update(DBUS_SESSION_BUS_ADDRESS=self.address, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                           XDG_RUNTIME_DIR=folder, GTK_THEME="Adwaita", NO_AT_BRIDGE="1")
        with open(os.path.join(folder, "bus.conf"), "w") as file:
            file.write(BUS.format(os.path.join(folder, "bus")))
        self.quietly(["dbus-daemon", "--nofork", "--config-file", file.name])
        wait_for("the session bus", lambda: os.path.exists(os.path.join(folder, "bus")))
        self.quietly(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"])
        self.wait_for_name("org.a11y.Bus")
        self.reader = self.stand_in("screen_reader.py")

    def quietly(self, command):
        """Starts a program whose complaints are its own."""
        return self.desktop.start(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def stand_in(self, name, *arguments):
        return StandIn(self.desktop.start([PYTHON, os.path.join(STAND_INS, name), *arguments],
                                          stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                          stderr=subprocess.DEVNULL, text=True))

    def call(self, destination, path, method, *arguments):
        """Calls a method on the bus; its answer, none where it fails."""
        done = subprocess.run(["gdbus", "call", "--session", "--dest", destination, "--object-path", path,
                               "--method", method, *arguments],
                              env=self.desktop.env, capture_output=True, text=True, timeout=60, check=False)
        return done.stdout.strip() if done.returncode == 0 else None

    def has_name(self, name):
        answer = self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus.NameHasOwner",
                           name)
        return answer == "(true,)"

    def wait_for_name(self, name):
        wait_for(f"{name} on the bus", lambda: self.has_name(name))

    # ── What is on the screen ──────────────────────────────────────────────────────────────────

    def showing(self, program="Trimora"):
        """Every item of a program that is showing now."""
        self.reader.tell(program)
        return [Item(facts, self.offset) for facts in json.loads(self.reader.heard())]

    def find(self, name, role=None, program="Trimora"):
        """The item of this name that is showing, the last one where there are several; or none."""
        found = [item for item in self.showing(program) if item.name == name and role in (None, item.role)]
        return found[-1] if found else None

    def item(self, name, role=None, program="Trimora"):
        """The same, which must come."""
        return wait_for(f"{role or 'an item'} called {name!r}", lambda: self.find(name, role, program))

    def gone(self, name, role=None):
        wait_for(f"{name!r} to go", lambda: self.find(name, role) is None)
