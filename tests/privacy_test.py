#!/usr/bin/env python3
"""Nothing that the program records, sends, logs or says in a crash names the person, their machine or their
files.   privacy_test.py PROGRAM FOLDER"""

import glob
import json
import os
import shutil
import signal
import subprocess
import sys
import unittest

from usage_service import UsageService

PROGRAM, FOLDER = map(os.path.abspath, sys.argv[1:3])
CANARY = "CANARY"
HOME = os.path.join(FOLDER, CANARY + "-ann")
PATIENCE = 240  # seconds


class PrivacyTest(unittest.TestCase):
    def setUp(self):
        shutil.rmtree(FOLDER, ignore_errors=True)
        os.makedirs(os.path.join(HOME, "runtime"), mode=0o700)
        self.picture = os.path.join(HOME, CANARY + "-picture.png")
        self.photo = os.path.join(HOME, CANARY + "-photo.jpg")
        said = ["-set", "Title", CANARY, "-set", "comment", CANARY, "-set", "Author", CANARY]
        for file in (self.picture, self.photo):
            subprocess.run(["convert", "-size", "300x200", "gradient:orange-navy", *said, file], check=True)
        with open(self.picture, "rb") as file:
            self.assertIn(CANARY.encode(), file.read())
        with open(self.picture, "rb") as file, open(os.path.join(HOME, CANARY + "-half.png"), "wb") as half:
            half.write(file.read()[:200])
        self.service = UsageService(FOLDER)
        self.logged = ""

    def start(self):
        people = {name: f"{CANARY}-ann" for name in ("USER", "LOGNAME", "USERNAME", "SUDO_USER")}
        env = dict(os.environ, **people, **self.service.variables, HOME=HOME, PWD=HOME, HOSTNAME=CANARY + "-host",
                   XDG_RUNTIME_DIR=os.path.join(HOME, "runtime"), LC_ALL="", LANG=f"en_US@{CANARY}",
                   TRIMORA_LOG="debug", TZ="UTC")
        return subprocess.Popen([PROGRAM, "run", "--home", "home", "-"], cwd=HOME, text=True, env=env,
                                stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def tell(self, process, *steps):
        for step in steps:
            process.stdin.write(json.dumps(step) + "\n")
        process.stdin.flush()

    def end(self, process):
        values, errors = process.communicate(timeout=PATIENCE)
        self.logged += errors
        return values

    def work(self, process):
        settle = {"do": "settle"}
        self.tell(process, {"do": "consent", "answer": True})
        for file in (self.picture, self.photo, os.path.join(HOME, CANARY + "-half.png")):
            self.tell(process, {"do": "open", "files": [file]}, settle,
                      {"do": "stroke", "points": [[200, 200], [260, 240]]}, settle)
        self.tell(process, {"do": "answer", "panel": "save", "with": os.path.join(HOME, CANARY + "-saved.png")},
                  {"do": "perform", "on": "editor", "selector": "save_pressed:"}, settle,
                  {"do": "perform", "on": "editor", "selector": "copy:"}, settle, {"do": "events"})
        return process.stdout.readline()

    def test_no_canary_sings(self):
        texts = {}
        crashed = self.start()
        texts["the record"] = self.work(crashed)
        crashed.send_signal(signal.SIGSEGV)
        self.end(crashed)
        later = self.start()
        texts["the record with the crash"] = self.work(later)
        for _ in range(20):
            self.tell(later, {"do": "advance", "seconds": 60}, {"do": "settle"})
        self.assertEqual(self.end(later), "")
        self.assertGreater(len(self.service.posts), 0)
        texts["what was sent"] = "".join(post.decode() for post in self.service.posts)
        self.assertIn("app_crash", texts["what was sent"])
        texts["the log"] = "\n".join(line for line in self.logged.splitlines() if ": line " not in line)
        for file in glob.glob(os.path.join(HOME, "home", "**", "telemetrix*"), recursive=True):
            with open(file, "rb") as store:
                texts[file] = store.read().decode("latin-1")
        with open(os.path.join(HOME, CANARY + "-saved.png"), "rb") as saved:
            texts["the saved picture"] = saved.read().decode("latin-1")
        for name, text in texts.items():
            self.assertNotIn(CANARY, text, name)
        print(f"{len(self.service.posts)} posts, {len(texts['the log'].splitlines())} lines of the log")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
