#!/usr/bin/env python3
"""Runs the edit scripts of a folder, and those of the page about them, and compares what they print.
scripts_test.py PROGRAM SCRIPTS PAGE FOLDER

Beside NAME.jsonl lies NAME.expected: JSON Lines again. The first line says how the run ends: its exit status,
what each line of standard error holds ("errors"), and files that are there then. Each further line is a value
as it is printed. Of an object only the keys that are named are compared; "*" stands for anything, and a text
that begins with "~" for one that ends in the rest of it. Numbers are equal to a millionth, or to what the key
with a "~" before its name says."""

import glob
import json
import os
import subprocess
import sys
import tempfile
import unittest

PROGRAM, SCRIPTS, PAGE, FOLDER = map(os.path.abspath, sys.argv[1:])
EXACT = 1e-6


def difference(expected, printed, tolerance=EXACT, where="value"):
    """In what the printed value is another than the expected one; nothing where it is not."""
    if expected == "*":
        return None
    if isinstance(expected, dict):
        if not isinstance(printed, dict):
            return f"{where} is {printed!r}"
        for key, value in expected.items():
            if key.startswith("~"):
                continue
            found = difference(value, printed.get(key), expected.get("~" + key, EXACT), f"{where}.{key}")
            if found:
                return found
        return None
    if isinstance(expected, list):
        if not isinstance(printed, list) or len(expected) != len(printed):
            return f"{where} is {printed!r}, expected {expected!r}"
        each = (difference(a, b, tolerance, f"{where}[{i}]") for i, (a, b) in enumerate(zip(expected, printed)))
        return next((found for found in each if found), None)
    if isinstance(expected, str) and expected.startswith("~"):
        same = isinstance(printed, str) and printed.endswith(expected[1:])
    elif isinstance(expected, (int, float)) and not isinstance(expected, bool):
        same = isinstance(printed, (int, float)) and abs(expected - printed) <= tolerance
    else:
        same = expected == printed and type(expected) is type(printed)
    return None if same else f"{where} is {printed!r}, expected {expected!r}"


def make_pictures(folder):
    def picture(name, size, *colours):
        subprocess.run(["convert", "-size", size, *colours, os.path.join(folder, name)], check=True)
    picture("cat.png", "600x400", "gradient:red-blue")
    picture("dog.jpg", "400x600", "gradient:green-yellow")
    picture("wide.png", "3000x1000", "xc:gray")
    with open(os.path.join(folder, "nothing.txt"), "w") as text:
        text.write("no picture\n")


class Run:
    """What came of one script in a folder of its own."""

    def __init__(self, script, folder):
        env = {"PATH": os.environ["PATH"], "HOME": folder, "TZ": "UTC", "LC_ALL": "C.UTF-8",
               "XDG_RUNTIME_DIR": folder}
        env.update((name, os.environ[name]) for name in ("LSAN_OPTIONS", "LD_LIBRARY_PATH") if name in os.environ)
        done = subprocess.run([PROGRAM, "run", "--home", os.path.join(folder, "home"), script], cwd=folder, env=env,
                              capture_output=True, text=True, timeout=300, check=False)
        self.status, self.errors = done.returncode, done.stderr.splitlines()
        self.values = [json.loads(line) for line in done.stdout.splitlines()]


def read_lines(file):
    with open(file) as lines:
        return [json.loads(line) for line in lines if line.strip()]


class ScriptsTest(unittest.TestCase):
    def setUp(self):
        os.makedirs(FOLDER, exist_ok=True)
        temporary = tempfile.TemporaryDirectory(dir=FOLDER)
        self.addCleanup(temporary.cleanup)
        self.folder = temporary.name
        make_pictures(self.folder)

    def compare(self, script):
        end, *values = read_lines(script.removesuffix(".jsonl") + ".expected")
        run = Run(script, self.folder)
        said = "\n".join(run.errors)
        self.assertEqual(run.status, end["exit"], said)
        errors = end.get("errors", [])
        self.assertEqual(len(run.errors), len(errors), said)
        for line, part in zip(run.errors, errors):
            self.assertIn(part, line)
        self.assertEqual(len(run.values), len(values), run.values)
        for number, (expected, printed) in enumerate(zip(values, run.values), start=1):
            self.assertIsNone(difference(expected, printed, where=f"value {number}"))
        for name in end.get("files", []):
            self.assertTrue(os.path.exists(os.path.join(self.folder, name)), name)

    def test_the_page_is_a_script_that_runs(self):
        with open(PAGE) as page:
            blocks = page.read().split("```jsonl\n")[1:]
        script = os.path.join(self.folder, "page.jsonl")
        with open(script, "w") as lines:
            lines.writelines(block.split("```")[0] for block in blocks)
        run = Run(script, self.folder)
        self.assertEqual((run.status, run.errors), (0, []))
        steps = {line["do"] for line in read_lines(script)}
        self.assertEqual(len(steps), 21, "every step has an example")

    def test_scripts_in_one_process_begin_afresh(self):
        script = os.path.join(SCRIPTS, "open.jsonl")
        done = subprocess.run([PROGRAM, "run", "--home", "home", "--report", "report.json", script, "-", script],
                              cwd=self.folder, input='{"do":"log"}\n', capture_output=True, text=True, timeout=300,
                              check=True)
        values = [json.loads(line) for line in done.stdout.splitlines()]
        expected = read_lines(os.path.join(SCRIPTS, "open.expected"))[1:]
        self.assertEqual(len(values), 2 * len(expected) + 1)
        for value, again in zip(expected, values[len(expected) + 1:]):
            # The folder of the history is the first one's.
            self.assertIsNone(difference({**value, "historyFiles": "*"}, again))
        with open(os.path.join(self.folder, "report.json")) as report:
            told = json.load(report)
        self.assertEqual((told["exitStatus"], len(told["scripts"])), (0, 3))
        self.assertEqual(told["scripts"][1]["steps"][0]["do"], "log")

    def test_standard_input_is_answered_line_by_line(self):
        process = subprocess.Popen([PROGRAM, "run", "--home", "home", "-"], cwd=self.folder, text=True,
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        with process:
            for _ in range(3):
                process.stdin.write('{"do":"state"}\n')
                process.stdin.flush()
                self.assertIn("image", json.loads(process.stdout.readline()))
            process.stdin.close()
            self.assertEqual(process.wait(60), 0)

    def test_a_script_that_cannot_be_read_ends_the_run(self):
        done = subprocess.run([PROGRAM, "run", "missing.jsonl"], cwd=self.folder, capture_output=True, text=True,
                              timeout=60, check=False)
        self.assertEqual(done.returncode, 2)
        self.assertIn("missing.jsonl", done.stderr)


def add_tests():
    for script in sorted(glob.glob(os.path.join(SCRIPTS, "*.jsonl"))):
        name = os.path.splitext(os.path.basename(script))[0].replace("-", "_")
        setattr(ScriptsTest, "test_script_" + name, lambda self, script=script: self.compare(script))


if __name__ == "__main__":
    add_tests()
    unittest.main(argv=sys.argv[:1])
