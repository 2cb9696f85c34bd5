#!/usr/bin/env python3
"""What the whole program costs: its start beside a bare window, its idle time, and its memory.

    benchmarks/program.py BUILD_FOLDER [start|idle|memory]...

BUILD_FOLDER holds trimora, bare_window and benchmark_picture (build/bench). Needs Xvfb for all but the memory.
"""

import contextlib
import json
import os
import pathlib
import resource
import statistics
import subprocess
import sys
import tempfile
import time

ROUNDS = 15
REST = 6  # seconds until the program has nothing left to do
WATCHED = 20  # seconds


@contextlib.contextmanager
def screen():
    read, write = os.pipe()
    with subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1600x1000x24", "-noreset"],
                          pass_fds=[write], stderr=subprocess.DEVNULL) as server:
        os.close(write)
        with os.fdopen(read) as number:
            display = ":" + number.readline().strip()
        try:
            yield display
        finally:
            server.terminate()


def environment(home, **more):
    own = {name: str(home) for name in ("HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME",
                                        "XDG_RUNTIME_DIR")}
    return {**os.environ, **own, "QT_QPA_PLATFORM": "xcb", "DBUS_SESSION_BUS_ADDRESS": "disabled:", **more}


def start_time(build, command, env):
    """Milliseconds from the start of a program until its window shows something."""
    out = subprocess.run([build / "first_picture", *command], env=env, check=True, capture_output=True)
    return float(out.stdout)


def start(build, home):
    with screen() as display:
        env = environment(home, DISPLAY=display)
        ours, bare = [], []
        for _ in range(ROUNDS):
            ours.append(start_time(build, [build / "trimora"], env))
            bare.append(start_time(build, [build / "bare_window"], env))
    ours, bare = statistics.median(ours[1:]), statistics.median(bare[1:])
    print(f"start to first frame: Trimora {ours:.0f} ms, a bare window {bare:.0f} ms: {ours / bare:.2f}x")


def wakeups(process):
    """How often threads of the process went to sleep until now, by thread."""
    counts = {}
    for thread in pathlib.Path(f"/proc/{process}/task").iterdir():
        for line in (thread / "status").read_text().splitlines():
            if line.startswith("voluntary_ctxt_switches"):
                counts[thread.name + " " + (thread / "comm").read_text().strip()] = int(line.split()[1])
    return counts


def make_picture(build, width, height, file):
    subprocess.run([build / "benchmark_picture", str(width), str(height), file], check=True)
    return file


def idle(build, home):
    picture = make_picture(build, 6000, 4000, home / "picture.jpg")
    with screen() as display, subprocess.Popen([build / "trimora", picture],
                                               env=environment(home, DISPLAY=display)) as program:
        time.sleep(REST)
        before = wakeups(program.pid)
        time.sleep(WATCHED)
        after = wakeups(program.pid)
        program.terminate()
    total = 0
    for thread, count in after.items():
        woken = count - before.get(thread, 0)
        total += woken
        if woken:
            print(f"  {thread}: {woken}")
    print(f"idle with a picture open: {total / WATCHED:.2f} wake-ups a second")


def memory(build, home):
    width, height = 12000, 8334
    pixels = 4 * width * height
    picture = make_picture(build, width, height, home / "large.jpg")
    steps = [
        {"do": "view", "size": [1400, 900]},
        {"do": "open", "files": [str(picture)], "wait": False}, {"do": "settle"},
        {"do": "set", "property": "brushDiameter", "value": 200},
        {"do": "stroke", "points": [[300, 300], [900, 600], [1100, 400]]}, {"do": "settle"},
        {"do": "perform", "on": "editor", "selector": "chooseBlurMode:"}, {"do": "settle"},
        {"do": "stroke", "points": [[400, 500], [800, 300]]}, {"do": "settle"},
        {"do": "answer", "panel": "save", "with": str(home / "cut.png")},
        {"do": "perform", "on": "editor", "selector": "save_pressed:"}, {"do": "settle"},
    ]
    most = []
    for count in (3, 6, 8, len(steps)):
        script = home / "script.jsonl"
        script.write_text("".join(json.dumps(step) + "\n" for step in steps[:count]))
        process = subprocess.Popen([build / "trimora", "run", script],
                                   env=environment(home, QT_QPA_PLATFORM="offscreen"))
        _, status, usage = os.wait4(process.pid, 0)
        if status != 0:
            sys.exit(f"trimora ended with {status}")
        most.append(usage.ru_maxrss * 1024 / pixels)
    print("memory, 100 MP, most in use / size of the pixels: open {:.2f}, stroke {:.2f}, blur {:.2f}, save {:.2f}"
          .format(*most))


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    for name in sys.argv[2:] or ["start", "idle", "memory"]:
        with tempfile.TemporaryDirectory() as home:
            {"start": start, "idle": idle, "memory": memory}[name](build, pathlib.Path(home))


if __name__ == "__main__":
    main()
