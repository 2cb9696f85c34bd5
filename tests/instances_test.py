#!/usr/bin/env python3
"""Many copies of the program at once in one home, some of which are killed.   instances_test.py PROGRAM FOLDER
TRIMORA_SEED repeats a run as far as the machine lets it."""

import json
import os
import random
import shutil
import subprocess
import sys
import unittest

from usage_service import UsageService

PROGRAM, FOLDER = map(os.path.abspath, sys.argv[1:3])
EDITORS = 8
WRITERS = 16  # of the record of use, the editors among them
STARTS = 3  # at most, after them, until all has been posted
PATIENCE = 240  # seconds
NOON = 1767268800000  # of the day on which every run begins, UTC; milliseconds


class Copy:
    """One running copy that does what it is told line by line."""

    def __init__(self, number, service):
        self.number = number
        self.strokes = number % 5 + 2 if number < EDITORS else 0
        runtime = os.path.join(FOLDER, "runtime")
        os.makedirs(runtime, mode=0o700, exist_ok=True)
        self.process = subprocess.Popen(
            [PROGRAM, "run", "--home", "home", "-"], cwd=FOLDER, text=True, stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            env=dict(os.environ, XDG_RUNTIME_DIR=runtime, TZ="UTC", **service.variables))

    def tell(self, *steps):
        for step in steps:
            self.process.stdin.write(json.dumps(step) + "\n")
        self.process.stdin.flush()

    def ask(self, step):
        self.tell({"do": step})
        return json.loads(self.process.stdout.readline())

    @property
    def mark(self):
        """What its session alone holds: the time of a press on a button."""
        return f"{NOON - 60000 * (self.number + 1)}"

    def begin(self):
        self.tell({"do": "consent", "answer": True},
                  {"do": "clock", "at": f"2026-01-01T11:{59 - self.number:02}:00"},
                  {"do": "perform", "on": "window", "selector": "open_pressed:"}, {"do": "settle"})
        if not self.strokes:
            return
        self.tell({"do": "open", "files": ["cat.png"]}, {"do": "settle"})
        for stroke in range(self.strokes):
            place = 200 + 12 * stroke
            self.tell({"do": "stroke", "points": [[place, 300], [place + 9, 380]]}, {"do": "settle"})
        self.undo()

    def undo(self):
        self.tell({"do": "perform", "on": "editor", "selector": "back_pressed:"}, {"do": "settle"})

    def end(self):
        """As by Quit; what it complained of."""
        _, errors = self.process.communicate(timeout=PATIENCE)
        return self.process.returncode, errors

    def kill(self):
        self.process.kill()
        self.process.communicate(timeout=PATIENCE)


class InstancesTest(unittest.TestCase):
    def setUp(self):
        shutil.rmtree(FOLDER, ignore_errors=True)
        os.makedirs(FOLDER)
        seed = int(os.environ.get("TRIMORA_SEED") or random.SystemRandom().randrange(2**32))
        print("seed", seed, flush=True)
        self.random = random.Random(seed)
        subprocess.run(["convert", "-size", "300x200", "gradient:orange-navy", os.path.join(FOLDER, "cat.png")],
                       check=True)
        self.service = UsageService(FOLDER)

    def look_at_undo(self, copy, undone):
        state = copy.ask("state")
        self.assertEqual((state["historyLength"], state["historyCurrentState"]),
                         (copy.strokes + 1, copy.strokes - undone), copy.number)
        self.assertEqual(state["historyFiles"], [f"{number}.his" for number in range(copy.strokes + 1)])

    def test_each_undo_is_its_own_and_each_session_is_posted_once(self):
        copies = [Copy(number, self.service) for number in range(WRITERS)]
        for copy in copies:
            copy.begin()
        for copy in copies:
            self.assertTrue(copy.ask("events"), "something is recorded")
            if copy.strokes:
                self.look_at_undo(copy, undone=1)
        killed = self.random.sample(copies, WRITERS // 2)
        for copy in killed:
            copy.kill()
        alive = [copy for copy in copies if copy not in killed]
        for copy in alive:
            if copy.strokes:
                copy.undo()
                self.look_at_undo(copy, undone=2)
        for copy in alive:
            self.assertEqual(copy.end(), (0, ""))
        # A start that comes to a session without events, as each end leaves one, sends no more.
        for start in range(STARTS):
            self.collect_what_is_left(WRITERS + start)
            bodies = [post.partition(b"\r\n\r\n")[2].decode() for post in self.service.posts]
            if all(any(copy.mark in body for body in bodies) for copy in copies):
                break
        for copy in copies:
            holding = [body for body in bodies if copy.mark in body]
            # Who ends does not wait for the answer to a post, and whoever comes later sends the same again.
            most = 1 if copy in killed else 2
            self.assertIn(len(holding), range(1, most + 1), f"copy {copy.number} of {most}")
            self.assertEqual(len(set(holding)), 1, f"what copy {copy.number} posted")
        self.assertEqual(os.listdir(os.path.join(FOLDER, "home", "data", "Trimora")).count("history"), 1)
        print(f"{WRITERS} copies, {len(killed)} killed, {len(bodies)} posts")

    def collect_what_is_left(self, number):
        """A later start finds the sessions of the dead and of those who ended."""
        later = Copy(number, self.service)
        later.begin()
        for _ in range(60):
            later.tell({"do": "advance", "seconds": 60}, {"do": "settle"})
        self.assertEqual(later.end(), (0, ""))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
