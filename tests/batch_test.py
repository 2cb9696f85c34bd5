#!/usr/bin/env python3
"""Cuts real files with the program as a person at a terminal does, without a display, and holds the results
against what ImageMagick makes of them.   batch_test.py PROGRAM [TEST...]"""

import json
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PROGRAM = str(Path(sys.argv.pop(1)).resolve())
MEBIBYTE = 1 << 20


def magick(*words, **options):
    return subprocess.run(["convert", *map(str, words)], check=True, stdout=subprocess.PIPE, **options).stdout


def channel(path, *operations):
    """The bytes of one channel, top row first."""
    return magick(path, *operations, "-depth", "8", "gray:-")


def alpha(path):
    return channel(path, "-alpha", "extract")


def colours(path):
    return magick(path, "-alpha", "off", "-depth", "8", "rgb:-")


def size(path):
    words = subprocess.run(["identify", "-format", "%w %h", str(path)], check=True, stdout=subprocess.PIPE, text=True)
    return tuple(map(int, words.stdout.split()))


def chunks(path):
    """The types of the pieces of a PNG file."""
    data, at, found = Path(path).read_bytes(), 8, []
    while at < len(data):
        length, = struct.unpack_from(">I", data, at)
        found.append(data[at + 4:at + 8].decode())
        at += 12 + length
    return found


def resident(process):
    """Bytes of memory that the process holds."""
    status = Path(f"/proc/{process.pid}/status").read_text()
    return int(re.search(r"VmRSS:\s+(\d+)", status).group(1)) * 1024


class ProgramTest(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="trimora-batch-"))
        self.addCleanup(shutil.rmtree, self.folder)
        self.home = self.folder / "home"
        self.home.mkdir()
        # Whoever started the toolkit here would be told that there is no such platform, and be ended.
        self.environment = {
            "PATH": os.environ["PATH"], "HOME": str(self.home), "QT_QPA_PLATFORM": "nonsense",
            **{f"XDG_{kind}_HOME": str(self.home / kind) for kind in ("DATA", "CONFIG", "CACHE")},
            **{name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")}}

    def run_program(self, *words, status=0, **options):
        done = subprocess.run([PROGRAM, *map(str, words)], cwd=self.folder, env=self.environment, check=False,
                              capture_output=True, **options)
        self.assertEqual(done.returncode, status, done.stderr.decode())
        return done

    def begin(self, *words):
        return subprocess.Popen([PROGRAM, *map(str, words)], cwd=self.folder, env=self.environment,
                                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)

    def make(self, name, *words):
        magick(*words, self.folder / name)
        return self.folder / name

    def picture(self, name="in.png", width=160, height=120):
        return self.make(name, "-size", f"{width}x{height}", "-seed", 7, "plasma:red-blue", "-depth", 8, "-strip")

    def disc(self, name="disc.png", width=160, height=120):
        """A grey mask with soft edges."""
        middle = f"{width // 2},{height // 2}"
        return self.make(name, "-size", f"{width}x{height}", "xc:black", "-fill", "white", "-draw",
                         f"circle {middle} {width // 2},{height // 8}", "-blur", "0x3", "-depth", 8)

    def originals(self, width, height):
        """Some pictures of that size, each different."""
        return [self.make(f"original{i}.jpg", "-size", f"{width}x{height}", "-seed", i, "plasma:fractal", "-blur",
                          "0x2", "-quality", 85) for i in range(4)]

    def many(self, count, width, height, broken=()):
        """Names of so many pictures; those with these numbers are broken, each in another way."""
        originals, names = self.originals(width, height), []
        for i in range(count):
            name = f"p{i:04}.jpg"
            if i in broken:
                whole = originals[0].read_bytes()
                torn = (b"no picture at all", whole[:200], whole[:2] + bytes(len(whole)))[broken.index(i) % 3]
                (self.folder / name).write_bytes(torn)
            else:
                os.link(originals[i % len(originals)], self.folder / name)
            names.append(name)
        return names

    def memory_while_cutting(self, count, early):
        """Bytes held after so many pictures of two megapixels, and after the last but one."""
        names = self.many(count, 1632, 1224)
        process = self.begin("cut", *names, "--out-dir", "out", "--mask", self.disc(), "--jobs", "2")
        held = {}
        for line in process.stderr:
            found = re.match(r"\[(\d+)/", line)
            if not found:
                continue
            told = int(found.group(1))
            if told in (early, count - 1):
                held[told] = resident(process)
            (self.folder / re.search(r"cut, (\S+)", line).group(1)).unlink()
        self.assertEqual(process.wait(), 0)
        process.stderr.close()
        return held[early], held[count - 1]

    def assert_flat(self, early, late):
        self.assertLess(late, early * 1.1 + 16 * MEBIBYTE, f"{early / MEBIBYTE:.0f} MiB, then {late / MEBIBYTE:.0f} MiB")


class BatchTest(ProgramTest):
    # ── One picture ────────────────────────────────────────────────────────────────────────────

    def test_needs_no_display_and_leaves_nothing_in_the_home(self):
        self.run_program("cut", self.picture(), "-o", "r.png", "--mask", self.disc(), "--background", "blur")
        self.run_program("info", "r.png")
        self.assertEqual(list(self.home.iterdir()), [])

    def test_grey_mask_becomes_the_transparency_and_colours_stay(self):
        source, mask = self.picture(), self.disc()
        self.run_program("cut", source, "-o", "r.png", "--mask", mask)
        result = self.folder / "r.png"
        self.assertEqual(alpha(result), channel(mask))
        kept, before, after = channel(mask), colours(source), colours(result)
        for i in range(len(kept)):
            expected = before[3 * i:3 * i + 3] if kept[i] else b"\0\0\0"
            self.assertEqual(after[3 * i:3 * i + 3], expected, f"pixel {i}")

    def test_alpha_mask_counts_by_its_alpha_whatever_its_colours(self):
        source, mask = self.picture(), self.disc()
        red = self.make("red.png", "-size", "160x120", "xc:red", mask, "-alpha", "off", "-compose", "CopyOpacity",
                        "-composite")
        self.run_program("cut", source, "-o", "r.png", "--mask", red)
        self.assertEqual(alpha(self.folder / "r.png"), channel(mask))

    def test_masks_of_any_size_fit_the_picture(self):
        source = self.picture()
        for width, height in ((1, 1), (80, 60), (37, 91), (801, 299), (2500, 2500)):
            with self.subTest(size=(width, height)):
                mask = self.make("odd.png", "-size", f"{width}x{height}", "gradient:white-black", "-depth", 8)
                self.run_program("cut", source, "-o", "r.png", "--mask", mask, "--force")
                got = alpha(self.folder / "r.png")
                rows = [got[160 * y] for y in range(120)]
                self.assertEqual(rows, sorted(rows, reverse=True))
                if height > 1:
                    # Where a mask is smaller its outer halves of pixels repeat the edge.
                    for y in range(120):
                        exact = 255 * (1 - ((y + 0.5) / 120 * height - 0.5) / (height - 1))
                        self.assertAlmostEqual(rows[y], min(max(exact, 0), 255), delta=2.5)

    def test_colour_stands_behind_what_is_cut_away(self):
        source, mask = self.picture(), self.disc()
        self.run_program("cut", source, "-o", "r.png", "--mask", mask, "--background", "#20c040")
        cut = self.make("cut.png", source, mask, "-alpha", "off", "-compose", "CopyOpacity", "-composite")
        expected = magick("-size", "160x120", "xc:#20c040", cut, "-composite", "-depth", "8", "rgb:-")
        got = colours(self.folder / "r.png")
        self.assertLessEqual(max(abs(a - b) for a, b in zip(expected, got)), 1)
        self.assertEqual(set(alpha(self.folder / "r.png")), {255})

    def test_blur_behind_is_the_picture_out_of_focus(self):
        source = self.make("halves.png", "-size", "200x200", "xc:black", "-fill", "white", "-draw",
                           "rectangle 100,0 199,199", "-depth", 8)
        nothing = self.make("nothing.png", "-size", "8x8", "xc:black")
        self.run_program("cut", source, "-o", "r.png", "--mask", nothing, "--background", "blur")
        row = colours(self.folder / "r.png")[::3][200 * 100:200 * 101]
        self.assertEqual((row[90], row[110]), (0, 255))
        self.assertTrue(40 < row[99] < 128, row[99])
        self.assertAlmostEqual(row[99] + row[100], 255, delta=2)

    def test_crop_leaves_what_an_independent_program_would(self):
        source = self.picture()
        mask = self.make("box.png", "-size", "160x120", "xc:black", "-fill", "white", "-draw", "rectangle 30,20 99,79")
        self.run_program("cut", source, "-o", "whole.png", "--mask", mask)
        done = self.run_program("cut", source, "-o", "r.png", "--mask", mask, "--crop", "--json")
        self.assertEqual(json.loads(done.stdout)["box"], [30, 20, 70, 60])
        trimmed = self.make("trimmed.png", self.folder / "whole.png", "-trim", "+repage")
        self.assertEqual(size(self.folder / "r.png"), (70, 60))
        self.assertEqual(colours(self.folder / "r.png"), colours(trimmed))

    def test_written_mask_can_be_read_again(self):
        source, mask = self.picture(width=300, height=500), self.disc()
        self.run_program("cut", source, "-o", "r.png", "--mask", mask, "--write-mask")
        self.assertEqual(size(self.folder / "r.mask.png"), (300, 500))
        self.run_program("cut", source, "-o", "again.png", "--mask", "r.mask.png")
        self.assertEqual((self.folder / "again.png").read_bytes(), (self.folder / "r.png").read_bytes())

    def test_standard_streams_join_it_to_other_programs(self):
        source, mask = self.picture(), self.disc()
        done = self.run_program("cut", "-", "-o", "-", "--mask", mask, input=source.read_bytes())
        self.run_program("cut", source, "-o", "r.png", "--mask", mask)
        self.assertEqual(done.stdout, (self.folder / "r.png").read_bytes())
        told = self.run_program("info", "-", "--json", input=done.stdout)
        self.assertEqual(json.loads(told.stdout)["image"], [160, 120])

    def test_full_standard_output_is_told(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run([PROGRAM, "cut", str(self.picture()), "-o", "-"], env=self.environment, stdout=full,
                                  stderr=subprocess.PIPE, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertIn(b"standard output cannot be written", done.stderr)

    def test_nothing_of_the_source_but_its_pixels_is_in_the_result(self):
        source = self.make("in.jpg", self.picture(), "-set", "comment", "a secret", "-set", "exif:Artist", "somebody",
                           "-profile", self.metadata())
        self.assertIn(b"a secret", source.read_bytes())
        self.run_program("cut", source, "-o", "r.png", "--mask", self.disc(), "--write-mask")
        for name in ("r.png", "r.mask.png"):
            self.assertEqual(set(chunks(self.folder / name)), {"IHDR", "sRGB", "IDAT", "IEND"})

    def metadata(self):
        """A block of metadata as photo programs leave it."""
        block = self.folder / "block.xmp"
        block.write_text("<x:xmpmeta xmlns:x='adobe:ns:meta/'>somewhere</x:xmpmeta>")
        return block

    def test_strokes_of_a_script_do_what_they_do_in_the_editor(self):
        source = self.picture(width=900, height=700)
        strokes = [
            {"do": "view", "size": [640, 480]},
            {"do": "slider", "which": "eraserSize", "value": 60},
            {"do": "stroke", "points": [[100, 100], [300, 120.5], [310, 400]]},
            {"do": "set", "property": "brushHardness", "value": 0.3},
            {"do": "mouse", "type": "scroll", "at": [200, 200], "delta": [0, 12]},
            {"do": "stroke", "points": [[400, 100], [350, 80]], "button": "right"},
            {"do": "settle"},
            {"do": "mouse", "type": "down", "at": [420, 300]},
            {"do": "mouse", "type": "drag", "at": [200, 310]},
            {"do": "mouse", "type": "up", "at": [200, 310]},
            {"do": "set", "property": "brushAlphaValue", "value": 1},
            {"do": "slider", "which": "invertSize", "value": 25},
            {"do": "stroke", "points": [[150, 90], [320, 300]]},
        ]
        self.compare_with_the_editor(source, strokes)
        self.assertTrue({0, 255} < set(alpha(self.folder / "r.png")))
        self.compare_with_the_editor(source, [*strokes, {"do": "set", "property": "colorOn", "value": False},
                                              {"do": "set", "property": "blurOn", "value": False}])
        self.assertEqual(set(alpha(self.folder / "r.png")), {255})

    def compare_with_the_editor(self, source, strokes):
        whole = [strokes[0], {"do": "open", "files": [str(source)]}, {"do": "settle"}, *strokes[1:], {"do": "settle"},
                 {"do": "write", "what": "result", "to": str(self.folder / "editor.png")}]
        for name, steps in (("strokes.jsonl", strokes), ("whole.jsonl", whole)):
            (self.folder / name).write_text("".join(json.dumps(step) + "\n" for step in steps))
        self.run_program("cut", source, "-o", "r.png", "--strokes", "strokes.jsonl", "--force")
        self.run_program("run", "whole.jsonl")
        self.assertEqual(alpha(self.folder / "r.png"), alpha(self.folder / "editor.png"))
        self.assertEqual(colours(self.folder / "r.png"), colours(self.folder / "editor.png"))

    def test_script_that_needs_a_window_names_its_line(self):
        (self.folder / "s.jsonl").write_text('{"do":"settle"}\n{"do":"open","files":["a.png"]}\n')
        done = self.run_program("cut", self.picture(), "-o", "r.png", "--strokes", "s.jsonl", status=2)
        self.assertIn(b'line 2: the step "open" needs the editor\'s window', done.stderr)

    # ── Care for files ─────────────────────────────────────────────────────────────────────────

    def test_file_that_exists_stays_unless_forced(self):
        source, there = self.picture(), self.folder / "r.png"
        there.write_text("precious")
        done = self.run_program("cut", source, "-o", "r.png", status=1)
        self.assertIn(b"r.png: a file of that name exists", done.stderr)
        self.assertEqual(there.read_text(), "precious")
        self.run_program("cut", source, "-o", "r.png", "--force")
        self.assertEqual(size(there), (160, 120))

    def test_two_of_one_name_are_told_before_anything_is_done(self):
        self.picture("a.png")
        self.make("a.jpg", self.folder / "a.png")
        done = self.run_program("cut", "a.png", "a.jpg", "--out-dir", "out", status=2)
        self.assertIn(b"a.png and a.jpg would both be written to out/a.png", done.stderr)
        self.assertFalse((self.folder / "out").exists())

    def test_killed_in_the_middle_leaves_whole_files_alone(self):
        self.picture("p0.png", 900, 700)
        for i in range(1, 40):
            os.link(self.folder / "p0.png", self.folder / f"p{i}.png")
        process = self.begin("cut", *(f"p{i}.png" for i in range(40)), "--out-dir", "out", "--write-mask")
        for _ in range(5):
            process.stderr.readline()
        process.kill()
        process.communicate()
        written = sorted(path.name for path in (self.folder / "out").iterdir())
        self.assertGreaterEqual(len(written), 10)
        self.run_program("info", *(self.folder / "out" / name for name in written))
        # The instant between a file's being whole and its having its name may leave it under another one.
        self.assertLessEqual(len([name for name in written if not name.startswith("p")]), 4)

    def test_words_that_make_no_sense_end_it_with_two(self):
        for words in (["cut"], ["cut", "a.png"], ["cut", "a.png", "-o", "b", "--bogus"], ["info"], ["info", "--bogus"]):
            done = self.run_program(*words, status=2)
            self.assertTrue(done.stderr.startswith(b"trimora "), done.stderr)
            self.assertEqual(done.stdout, b"")

    def test_info_says_what_would_not_open(self):
        (self.folder / "text.png").write_text("no picture")
        source = self.make("turned.jpg", self.picture(), "-orient", "RightTop")
        done = self.run_program("info", source, "text.png", "--json", status=1)
        first, second = map(json.loads, done.stdout.splitlines())
        self.assertEqual((first["format"], first["stored"], first["opens"]), ("JPEG", [160, 120], True))
        self.assertEqual(second, {"file": "text.png", "opens": False,
                                  "error": "it is not a JPEG, PNG, TIFF or GIF picture"})

    # ── Many pictures ──────────────────────────────────────────────────────────────────────────

    def test_thousand_pictures_with_three_broken_ones_among_them(self):
        broken = (17, 500, 998)
        names = self.many(1000, 60, 40, broken)
        done = self.run_program("cut", *names, "--out-dir", "out", "--mask", self.disc(), "--json", status=1)
        lines = [json.loads(line) for line in done.stdout.splitlines()]
        self.assertEqual(sorted(line["input"] for line in lines), names)
        self.assertEqual(sorted(line["input"] for line in lines if not line["ok"]), [names[i] for i in broken])
        self.assertTrue(all(line["error"] for line in lines if not line["ok"]))
        self.assertEqual(len(list((self.folder / "out").iterdir())), 997)
        told = done.stderr.decode().splitlines()
        self.assertEqual(len(told), 1001)
        self.assertEqual(told[-1], "997 cut, 3 failed")
        for i in (0, 1, 999):
            self.assertEqual(size(self.folder / "out" / f"p{i:04}.png"), (60, 40))

    def test_memory_stays_flat(self):
        self.assert_flat(*self.memory_while_cutting(30, 8))


class LongBatchTest(ProgramTest):
    """What takes minutes."""

    def test_memory_stays_flat(self):
        early, late = self.memory_while_cutting(1000, 100)
        print(f"memory after 100 pictures {early / MEBIBYTE:.0f} MiB, after 999 {late / MEBIBYTE:.0f} MiB")
        self.assert_flat(early, late)


if __name__ == "__main__":
    unittest.main()
