#!/usr/bin/env python3
"""Runs a long script of random steps, and looks at every state of it that comes to rest for what must always be
so.   stress_test.py PROGRAM FOLDER [STEPS]     TRIMORA_SEED repeats a run."""

import json
import math
import os
import random
import shutil
import subprocess
import sys

PROGRAM, FOLDER = map(os.path.abspath, sys.argv[1:3])
STEPS = int(sys.argv[3]) if len(sys.argv) > 3 else 10_000
LOOK_EVERY = 50
PICTURES = {"cat.png": (600, 400), "dog.jpg": (400, 600), "wide.png": (3000, 1000)}
EDITOR = """hand_pressed_new: brush_pressed_new: invertBrush_pressed_new: handSelected: brushSelected:
    invertBrushSelected: swapBrushes: smallerBrush: largerBrush: hideViewWithSizeCursor brush_pressed:
    invertBrush_pressed: blur_pressed: brushDiameter_changed: chooseEraserMode: chooseColorMode: chooseBlurMode:
    back_pressed: forward_pressed: reset_pressed: resetImage openPicture: open_pressed: save_pressed: askForSave
    resetState copy: paste: hideInterface hideInterfaceNoAnimation showInterface zoomIn: zoomOut: zoomToFit:
    actualSize:""".split()
WINDOW = "open_pressed: save_pressed: back_pressed: forward_pressed: reset_pressed: updateHistoryButtons:".split()
APP = """new_pressed: openPicture: save_pressed: undo_pressed: redo_pressed: showWindowAction:
    applicationDidChangeOcclusionState:""".split()
CUT_VIEW = """prevHistoryState nextHistoryState clearHistory recordHistoryState resetMask updateMap updateCursor
    drawBackground limitDrag getResult""".split()


def steps(random_source):
    pick, number = random_source.choice, random_source.uniform

    def point():
        return [round(number(-50, 1000), pick((0, 2))), round(number(-50, 700), pick((0, 2)))]

    def colour():
        return pick((None, [number(0, 1) for _ in range(4)]))
    files = [*PICTURES, "nothing.png"]
    kinds = [
        (1, lambda: {"do": "view", "size": [random_source.randint(150, 1200), random_source.randint(100, 900)]}),
        (2, lambda: {"do": "open", "files": random_source.sample(files, 2), "wait": pick((True, False))}),
        (1, lambda: {"do": "drop", "files": [pick(files[:3])]}),
        (20, lambda: {"do": "stroke", "points": [point() for _ in range(random_source.randint(1, 4))],
                      "button": pick(("left", "left", "right"))}),
        (8, lambda: {"do": "mouse", "type": pick(("down", "drag", "drag", "up", "move", "enter", "exit")),
                     "at": point(), "delta": [number(-30, 30), number(-30, 30)], "button": pick(("left", "right"))}),
        (4, lambda: {"do": "mouse", "type": "scroll", "at": point(), "delta": [0, number(-30, 30)]}),
        (2, lambda: {"do": "modifiers", "held": random_source.sample(["option", "command"], pick((0, 0, 1, 2)))}),
        (2, lambda: {"do": "key", "code": pick((34, 6, 0, 65535))}),
        (1, lambda: {"do": "set", "property": pick(("brushDiameter", "brushDiameterSilent")),
                     "value": number(-300, 300)}),
        (1, lambda: {"do": "set", "property": pick(("brushHardness", "brushAlphaValue")), "value": number(0, 1)}),
        (1, lambda: {"do": "set", "property": "scale", "value": number(0.5, 2)}),
        (1, lambda: {"do": "set", "property": "brushColor", "value": colour()}),
        (1, lambda: {"do": "set", "property": pick(("blurOn", "blurMode", "colorMode", "colorOn", "imageFit",
                                                    "dragMode")), "value": pick((True, False))}),
        (10, lambda: {"do": "perform", "on": "editor", "selector": pick(EDITOR)}),
        (3, lambda: {"do": "perform", "on": "window", "selector": pick(WINDOW)}),
        (3, lambda: {"do": "perform", "on": "app", "selector": pick(APP)}),
        (3, lambda: {"do": "perform", "on": "cutView", "selector": pick(CUT_VIEW)}),
        (1, lambda: {"do": "answer", "panel": "open", "with": pick((None, [pick(files[:3])]))}),
        (1, lambda: {"do": "answer", "panel": "save", "with": pick((None, "saved.png"))}),
        (1, lambda: {"do": "answer", "panel": "alert", "with": pick((1000, 1001, 1002))}),
        (1, lambda: {"do": "answer", "panel": "warning", "with": pick(("yes", "no"))}),
        (2, lambda: {"do": "slider", "which": pick(("eraserSize", "invertSize", "sldBrushDiameter2")),
                     "value": number(0, 250)}),
        (1, lambda: {"do": "slider", "which": pick(("eraserSize", "invertSize")),
                     "typed": pick(("", "7", "70", "999", "4.", "x", "50%"))}),
        (1, lambda: {"do": "color", "hue": number(0, 1), "shade": [number(0, 1), number(0, 1)]}),
        (6, lambda: {"do": "settle"}),
        (3, lambda: {"do": "advance", "seconds": number(0, 2)}),
    ]
    weights = [weight for weight, _ in kinds]
    while True:
        yield random_source.choices(kinds, weights)[0][1]()


def plane(width, height):
    """The size of the mask and how many of its pixels lie in a point of the picture."""
    if width > height:
        fitted = (2000, height * 2000 / width)
    else:
        fitted = (width * 2000 / height, 2000)
    if width <= fitted[0]:
        return [width, height], 1
    return [int(fitted[0]), int(fitted[1])], fitted[0] / width


def faults(state):
    """What is wrong with a state that has come to rest."""
    length, current, index = (state[key] for key in ("historyLength", "historyCurrentState", "historyFileIndex"))
    files, on, image = state["historyFiles"], state["enabled"], state["image"]
    checks = {
        "the brush": 10 <= state["brushDiameter"] <= 200 and state["brushDiameter"] % 1 == 0,
        "the hardness": 0 <= state["brushHardness"] <= 1,
        "the transform": all(map(math.isfinite, state["transform"])),
        "the drop area": state["hidden"]["viDrug"] == (image is not None),
        "Open": on["btnOpen"],
        "the pointer": state["cursor"] == "arrow" or image is not None,
    }
    if image is not None:
        size, scale = plane(*image)
        checks.update({
            "the counters": 0 <= current < length <= 30 and 0 <= index <= 30,
            "the ring": f"{index}.his" in files and length <= len(files) <= 31,
            "the planes": state["planes"] == size and abs(state["maskScale"] - scale) < 1e-4,
            "Back": on["btnBack"] == (current != 0),
            "Forward": on["btnForward"] == (current < length - 1),
            "Restore": on["btnRestoreImage"] == (length >= 2),
            "the zoom": state["transform"][0] == state["transform"][3] > 0,
        })
    else:
        checks.update({"no planes": state["planes"] is None, "Save": not on["btnSave"]})
    return [name for name, well in checks.items() if not well]


def write_script(script, random_source):
    source = steps(random_source)
    looks = 0
    with open(script, "w") as lines:
        for count in range(1, STEPS + 1):
            lines.write(json.dumps(next(source)) + "\n")
            if count % LOOK_EVERY == 0:
                lines.write('{"do":"settle"}\n{"do":"state"}\n')
                looks += 1
    return looks


def main():
    seed = int(os.environ.get("TRIMORA_SEED") or random.SystemRandom().randrange(2**32))
    print("seed", seed, flush=True)
    shutil.rmtree(FOLDER, ignore_errors=True)
    os.makedirs(FOLDER)
    for name, (width, height) in PICTURES.items():
        subprocess.run(["convert", "-size", f"{width}x{height}", "gradient:orange-navy", os.path.join(FOLDER, name)],
                       check=True)
    script = os.path.join(FOLDER, "random.jsonl")
    looks = write_script(script, random.Random(seed))
    done = subprocess.run([PROGRAM, "run", "--home", "home", script], cwd=FOLDER, capture_output=True, text=True,
                          timeout=1500, check=False)
    states = [json.loads(line) for line in done.stdout.splitlines()]
    assert done.returncode in (0, 1), (done.returncode, done.stderr[-2000:])
    assert len(states) == looks, f"{len(states)} of {looks} states"
    for number, state in enumerate(states, start=1):
        wrong = faults(state)
        assert not wrong, f"after {number * LOOK_EVERY} steps: {', '.join(wrong)}: {state}"
    pictures = sum(state["image"] is not None for state in states)
    deepest = max(state["historyLength"] for state in states)
    assert pictures > looks // 4 and deepest >= 5, f"a dull script: {pictures} pictures, {deepest} states"
    # A file that is none, and a step of history that an empty editor counted without having a mask to keep.
    expected = ("nothing.png could not be opened", "NO DATA PROVIDER")
    failed = [line for line in done.stderr.splitlines() if not any(part in line for part in expected)]
    assert not failed, failed[:10]
    print(f"{STEPS} steps, {looks} states looked at, {pictures} with a picture, up to {deepest} steps of history")


main()
