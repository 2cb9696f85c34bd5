#!/usr/bin/env python3
"""The program under clocks that are years off, or jump while it runs: its sessions arrive once the clock is right.
clocks_test.py PROGRAM TELEMETRY FOLDER       TRIMORA_SEED repeats the jumps as far as the machine lets it."""

import concurrent.futures
import glob
import os
import random
import re
import shutil
import subprocess
import sys
import threading
import time
import unittest

from usage_service import UsageService

PROGRAM, TELEMETRY, FOLDER = map(os.path.abspath, sys.argv[1:4])
PATIENCE = 240  # seconds
AT_A_TIME = 4  # histories; each mostly waits
NOWHERE = "https://localhost:1/stat"

# What a history is called, the time zone of its first run and of its second, the clock when each begins, and whether
# it goes on jumping wherever it likes. "@" goes on from there, "+" is away from the right time, neither stands still.
HISTORIES = [
    ("ten years ahead", "UTC", "UTC", "+3650d", "+3650d", False),
    ("ten years behind", "UTC", "UTC", "-3650d", "-3650d", False),
    ("ahead, then behind", "UTC", "UTC", "+3650d", "-3650d", False),
    ("behind, then ahead", "UTC", "UTC", "-3650d", "+3650d", False),
    ("at the beginning of time", "UTC", "UTC", "@1970-01-01 00:00:20", "@1970-01-01 00:00:20", False),
    ("across 2038", "UTC", "UTC", "@2038-01-19 03:14:06", "@2038-01-19 03:14:06", False),
    ("back across 2038", "UTC", "UTC", "@2038-01-19 03:14:09", "@2038-01-19 03:13:00", False),
    ("across 2106", "UTC", "UTC", "@2106-02-07 06:28:14", "@2106-02-07 06:28:14", False),
    ("into a leap day", "UTC", "UTC", "@2028-02-28 23:59:59", "@2028-02-28 23:59:59", False),
    ("out of a leap day", "UTC", "UTC", "@2028-02-29 23:59:59", "@2028-02-29 23:59:59", False),
    ("a year without a leap day", "UTC", "UTC", "@2100-02-28 23:59:59", "@2100-02-28 23:59:59", False),
    ("a leap second", "UTC", "UTC", "@2016-12-31 23:59:59", "@2016-12-31 23:59:59", False),
    ("into summer", "Europe/Berlin", "Europe/Berlin", "@2026-03-29 01:59:59", "@2026-03-29 01:59:59", False),
    ("out of summer", "Europe/Berlin", "Europe/Berlin", "@2026-10-25 02:59:59", "@2026-10-25 02:00:00", False),
    ("a flight round the world", "Pacific/Kiritimati", "Pacific/Pago_Pago", "+0", "+0", False),
    ("odd zones", "America/St_Johns", "Asia/Kathmandu", "+300d", "-300d", False),
    ("a clock that stands still", "UTC", "UTC", "2030-06-01 12:00:00", "2030-06-01 12:00:00", False),
    ("jumps of years", "UTC", "UTC", "+0", "+0", True),
    ("jumps of years from the future", "UTC", "UTC", "+3000d", "+3000d", True),
    ("jumps of years from the past", "UTC", "Asia/Tokyo", "-3000d", "-3000d", True),
]

AHEAD_THEN_BEHIND = 2  # what was stuck once: in every run


def library():
    """What shows a program another clock."""
    found = glob.glob("/usr/lib/*/faketime/libfaketimeMT.so.1")
    return found[0] if found else None


def session_of(post):
    return re.search(rb"sid=([^;\r]+)", post)[1].decode()


class Service(UsageService):
    """Takes its time to answer, and knows whether anything comes twice meanwhile."""

    def __init__(self, folder, meanwhile):
        # For as long as any of the clocks may be off.
        super().__init__(folder, ("faketime", "1990-01-01", "openssl"), days=75000)
        self.meanwhile = meanwhile
        self.lock, self.under_way, self.twice, self.bodies = threading.Lock(), [], [], {}

    def before_answer(self, post):
        session = session_of(post)
        with self.lock:
            if session in self.under_way:
                self.twice.append(session)
            self.under_way.append(session)
            self.bodies.setdefault(session, set()).add(post.partition(b"\r\n\r\n")[2])
        self.meanwhile()
        time.sleep(0.3)
        with self.lock:
            self.under_way.remove(session)

    def is_idle(self):
        with self.lock:
            return not self.under_way


class History:
    """Runs of the program in one home, the last of them with the right clock."""

    def __init__(self, number, seed):
        self.name, *self.zones, self.first, self.second, self.jumps = HISTORIES[number]
        self.random = random.Random(seed + number)
        self.home = os.path.join(FOLDER, str(number))
        os.makedirs(os.path.join(self.home, "config", "Trimora"))
        os.mkdir(self.inside("run"), mode=0o700)
        self.write("config/Trimora/usage.ini", "usage_data_consent=yes\n")
        self.service = Service(self.home, self.jump)
        self.killed = number % 2 == 1
        self.said, self.starts, self.sent_while_wrong = "", 0, 0

    def inside(self, name):
        return os.path.join(self.home, name)

    def write(self, name, text):
        """Whole or not at all: the program looks at its clock at any moment."""
        with open(self.inside(name + ".new"), "w") as file:
            file.write(text)
        os.rename(self.inside(name + ".new"), self.inside(name))

    def jump(self):
        if self.jumps:
            self.write("clock", f"{self.random.randrange(-3650, 3650):+d}d\n")

    def variables(self, clock, zone, **others):
        env = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
        env.update(self.service.variables, HOME=self.home, XDG_DATA_HOME=self.inside("data"), TZ=zone,
                   XDG_CONFIG_HOME=self.inside("config"), XDG_CACHE_HOME=self.inside("cache"),
                   XDG_RUNTIME_DIR=self.inside("run"), QT_QPA_PLATFORM="offscreen",
                   DBUS_SESSION_BUS_ADDRESS="unix:path=" + self.inside("no-bus"), **others)
        if clock is not None:
            self.write("clock", clock + "\n")
            env.update(LD_PRELOAD=library(), FAKETIME_TIMESTAMP_FILE=self.inside("clock"), FAKETIME_NO_CACHE="1",
                       FAKETIME_DONT_FAKE_MONOTONIC="1")
        return env

    def start(self, clock, zone, **others):
        return subprocess.Popen([PROGRAM], cwd=self.home, env=self.variables(clock, zone, **others),
                                stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)

    def end(self, program):
        program.terminate()
        self.said += self.last_words(program)
        assert program.returncode == 0, f"{self.name}: ended with {program.returncode}"

    @staticmethod
    def last_words(program):
        """What it said until it was gone. What shows it its clock leaves something in shared memory then."""
        said = program.communicate(timeout=PATIENCE)[1]
        for left in glob.glob(f"/dev/shm/*faketime_*_{program.pid}"):
            os.remove(left)
        return said

    def sessions(self):
        """The number of events of each session in the store."""
        shown = subprocess.run([TELEMETRY], env=self.variables(None, "UTC"), capture_output=True, text=True)
        lines = (line.split("  ") for line in shown.stdout.splitlines())
        return {line[0]: int(line[3].split()[0]) for line in lines}

    def wait(self, what, holds):
        end = time.monotonic() + PATIENCE
        while not holds():
            assert time.monotonic() < end, f"{self.name}: still waiting for {what}"
            time.sleep(0.05)

    def record(self, clock, zone, **others):
        """A run that records a session of its own; what it is called."""
        before = self.sessions()
        program = self.start(clock, zone, **others)

        def fresh():
            return [name for name, events in self.sessions().items() if events and name not in before]
        self.wait("something to be recorded", fresh)
        return program, fresh()

    def go(self):
        first, recorded = self.record(self.first, self.zones[0], TRIMORA_ANALYTICS_URL=NOWHERE)
        self.jump()
        self.end(first)
        second, more = self.record(self.second, self.zones[1])
        recorded += more
        # Where the clock is before all certificates nothing can be sent, and elsewhere it need not be by now.
        soon = time.monotonic() + 2
        while not self.service.under_way and time.monotonic() < soon:
            time.sleep(0.05)
        if self.killed:
            second.kill()
            self.last_words(second)
        else:
            self.end(second)
        self.sent_while_wrong = len(self.service.posts)
        self.wait("the service to be done with it", self.service.is_idle)
        self.jumps = False
        self.wait_for_arrival(recorded)
        copies = [session for session in recorded if len(self.service.bodies[session]) != 1]
        assert not copies, f"{self.name}: copies differ"
        assert not self.service.twice, f"{self.name}: twice under way"
        assert self.said == "", f"{self.name}: {self.said}"
        return len(recorded)

    def wait_for_arrival(self, recorded):
        """Runs with the right clock; what one leaves, the next one sends."""
        end = time.monotonic() + PATIENCE

        def arrived():
            return set(recorded) <= set(self.service.bodies)
        while not arrived():
            assert time.monotonic() < end, f"{self.name}: stuck: {set(recorded) - set(self.service.bodies)}"
            program = self.start(None, "UTC")
            self.starts += 1
            patience = time.monotonic() + 5
            while not arrived() and time.monotonic() < patience:
                time.sleep(0.05)
            self.wait("the service to be done with it", self.service.is_idle)
            self.end(program)


class ClocksTest(unittest.TestCase):
    def test_sessions_arrive_once_the_clock_is_right(self):
        if library() is None:
            self.skipTest("no libfaketime on this machine")
        shutil.rmtree(FOLDER, ignore_errors=True)
        seed = int(os.environ.get("TRIMORA_SEED") or random.SystemRandom().randrange(2**32))
        print("seed", seed, flush=True)
        numbers = range(len(HISTORIES))
        if os.environ.get("TRIMORA_DEPTH", "1") == "1":
            numbers = sorted({AHEAD_THEN_BEHIND, *random.Random(seed).sample(numbers, 5)})
        histories = [History(number, seed) for number in numbers]
        with concurrent.futures.ThreadPoolExecutor(AT_A_TIME) as pool:
            sessions = sum(pool.map(History.go, histories))
        sent = sum(history.sent_while_wrong > 0 for history in histories)
        print(f"{len(histories)} histories, {sessions} sessions, {sent} sent some while the clock was wrong, "
              f"{sum(history.killed for history in histories)} killed, "
              f"{max(history.starts for history in histories)} starts at most until all was there")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
