#!/usr/bin/env python3
"""Drives the gallery of controls in a real window, with real mouse, wheel and key events, and holds what
the controls report and show against it.   gallery_test.py PROGRAM FOLDER [TEST...]"""

import os
import shutil
import sys
import time
import unittest

from desktop import Desktop, wait_for

PROGRAM, FOLDER = sys.argv[1:3]

BUTTON = "KrugButton, rest"
SLIDER = "ViewWithSliderTextField, rest"
OWN_SLIDER = "ViewWithSliderTextField, least"  # where no other test's preview is still to be hidden
UPRIGHT = "SliderVertical, rest"
PICKER = "ColorPickerView, rest"
TILE = "SelectableView, rest"
BAR = "KnobScrollBar, rest"
PANEL = "CustomViewWithButton, rest"
SAVE = "ButtonSaveAppearance, rest"
OPEN = "ButtonOpenAppereance, rest"
HALF_DISC = "PolukrugButton, rest"

# Where the parts of a control lie in it, as shares of its width and height from the upper left corner.
MIDDLE = (0.5, 0.5)
CORNER = (0.04, 0.04)
LINE = 0.5  # of the slider
FIELD = (0.85, 0.5)
HUES, SHADES, TEXT, EYEDROPPER = (0.06, 0.4), (0.5, 0.4), (0.4, 0.92), (0.92, 0.92)

# A slider's knob, and the colours along its line.
KNOB = 17
EDGE = 2  # points that a soft edge, and rounding to whole ones, may take away
BLACK, GREY, ACCENT = (0, 0, 0), (23, 23, 23), (230, 27, 85)

LEFT = "notification: rk.cutView.needsCursorUpdate"


class Gallery:
    """The gallery's window: what it has said, and where its controls are."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.spoken = os.path.join(FOLDER, "reports.txt")
        self.errors = os.path.join(FOLDER, "errors.txt")
        with open(self.spoken, "w") as out, open(self.errors, "w") as errors:
            runtime = os.path.join(FOLDER, "runtime")
            os.mkdir(runtime, 0o700)
            self.process = desktop.start([PROGRAM, "--gallery"], stdout=out, stderr=errors,
                                         env=dict(desktop.env, XDG_RUNTIME_DIR=runtime))
        window = desktop.window("Controls")
        wait_for("the gallery to be ready", lambda: "ready" in self.lines())
        self.left, self.top = desktop.geometry(window)[:2]
        self.places = {}
        for line in self.lines():
            if line.startswith("place: "):
                x, y, width, height, name = line.split(" ", 5)[1:]
                self.places[name] = tuple(map(int, (x, y, width, height)))
        desktop.look("gallery")

    def lines(self):
        with open(self.spoken) as file:
            return file.read().split("\n")[:-1]

    def at(self, name, share=MIDDLE):
        """Screen pixel of a place in a control."""
        x, y, width, height = self.places[name]
        return round(self.left + x + width * share[0]), round(self.top + y + height * share[1])

    def shown(self, name):
        """What the screen shows of a control now."""
        x, y, width, height = self.places[name]
        return self.desktop.look().crop(self.left + x, self.top + y, width, height)


def stretch(pixels, like):
    """Where the pixels that are like something begin and end."""
    places = [place for place, pixel in enumerate(pixels) if like(pixel)]
    return (places[0], places[-1] + 1) if places else None


def is_light(pixel):
    return min(pixel) > 150


class GalleryTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        shutil.rmtree(FOLDER, ignore_errors=True)
        os.makedirs(FOLDER)
        cls.desktop = cls.enterClassContext(Desktop(FOLDER, 2000, 900))
        cls.gallery = Gallery(cls.desktop)

    def setUp(self):
        self.begin()

    def begin(self):
        """From here on, what was done before is reported no more."""
        self.mark = len(self.gallery.lines())
        self.fence()
        self.mark = len(self.gallery.lines())

    def tearDown(self):
        self.assertIsNone(self.gallery.process.poll(), "the gallery has ended")
        with open(self.gallery.errors) as errors:
            self.assertEqual(errors.read(), "")

    def do(self, *words):
        self.desktop.do(*words)

    def move_out(self):
        self.do("mousemove", self.gallery.left + 3, self.gallery.top + 3)

    def move_to(self, name, share=MIDDLE):
        self.do("mousemove", *self.gallery.at(name, share))

    def click(self, name, share=MIDDLE, button=1):
        self.do("mousemove", *self.gallery.at(name, share), "click", button)

    def reports(self, of=None):
        """What was reported in this test so far: all, or what follows a control's name."""
        lines = self.gallery.lines()[self.mark:]
        return [line[len(of) + 2:] for line in lines if line.startswith(of + ": ")] if of else lines

    def values(self, slider):
        """What a slider or scroll bar reported as its values."""
        return [float(report.split()[1]) for report in self.reports(slider) if report.startswith("value ")]

    def field(self, slider=SLIDER):
        """What the slider's field shows since it was last changed in this test; none where it was not yet."""
        fields = [report[len("field "):] for report in self.reports(slider) if report.startswith("field ")]
        return fields[-1] if fields else None

    def wait_for_field(self, text, slider=SLIDER):
        wait_for(f"the field to show '{text}' after {self.reports(slider)}", lambda: self.field(slider) == text)

    def held_keys(self):
        """The last report of the modifier keys that are held."""
        return [report for report in self.reports() if report.startswith("keys:")][-1]

    def wait_for_report(self, line):
        wait_for(f"the report '{line}' after {self.reports()}", lambda: line in self.reports())

    def fence(self):
        """Returns when everything done before has been reported: a later click, on another tile, has been."""
        later = "SelectableView, selected"
        count = len(self.reports(later))
        self.click(later)
        wait_for("a later click", lambda: len(self.reports(later)) > count)

    def wait_until_shown(self, name, what, like):
        wait_for(f"{name} to look {what}", lambda: like(self.gallery.shown(name)))

    def settled(self, name):
        """What the screen shows of a control once all that was done before has been painted: a tile that is
        clicked afterwards shows it, and one window is painted in one go."""
        later = "SelectableView, selected"
        before = self.gallery.shown(later)
        self.fence()
        self.wait_until_shown(later, "turned over", lambda shown: not shown.looks_like(before))
        return self.gallery.shown(name)

    def type_number(self, text, slider=SLIDER):
        """Types over what the slider's field holds, and commits it."""
        self.click(slider, FIELD)
        self.do("key", "ctrl+a", "type", text)
        self.do("key", "Return")

    # Buttons

    def test_button_grows_under_the_pointer_and_shrinks_when_it_leaves(self):
        rest = self.gallery.shown(BUTTON)
        self.move_to(BUTTON)
        self.wait_until_shown(BUTTON, "grown", lambda shown: shown != rest)
        self.move_out()
        self.wait_for_report(LEFT)
        self.wait_until_shown(BUTTON, "as before", lambda shown: shown.looks_like(rest))

    def test_leaving_any_button_restores_the_brush_cursor(self):
        for name in self.gallery.places:
            if "Button" in name and name.endswith(", rest"):
                self.begin()
                self.move_to(name)
                self.move_out()
                self.wait_for_report(LEFT)

    def test_click_in_the_circle_fires(self):
        self.click(BUTTON)
        self.wait_for_report(f"{BUTTON}: clicked")

    def test_click_in_a_corner_of_the_square_does_nothing(self):
        self.click(BUTTON, CORNER)
        self.click(HALF_DISC, (0.04, 0.96))
        self.fence()
        self.assertNotIn("clicked", self.reports(BUTTON) + self.reports(HALF_DISC))
        # They are as enabled as they were.
        self.click(BUTTON)
        self.wait_for_report(f"{BUTTON}: clicked")
        self.click(HALF_DISC, (0.5, 0.3))
        self.wait_for_report(f"{HALF_DISC}: clicked")

    def test_half_disc_fires_inside_its_shape(self):
        self.click(HALF_DISC, (0.5, 0.3))
        self.wait_for_report(f"{HALF_DISC}: clicked")

    def test_release_outside_does_not_fire(self):
        self.do("mousemove", *self.gallery.at(BUTTON), "mousedown", 1,
                "mousemove", *self.gallery.at(BUTTON, (2, 2)), "mouseup", 1)
        self.fence()
        self.assertNotIn("clicked", self.reports(BUTTON))

    def test_held_button_looks_pressed(self):
        name = "TopBarButton, image, rest"
        rest = self.gallery.shown(name)
        self.move_to(name)
        self.wait_until_shown(name, "touched", lambda shown: shown != rest)
        touched = self.gallery.shown(name)
        self.do("mousedown", 1)
        self.wait_until_shown(name, "held", lambda shown: shown not in (rest, touched))
        self.do("mouseup", 1)
        self.wait_for_report(f"{name}: clicked")

    def test_disabled_button_does_nothing(self):
        self.click("KrugButton, disabled")
        self.click("ButtonSaveAppearance, disabled")
        self.fence()
        self.assertEqual(self.reports("KrugButton, disabled") + self.reports("ButtonSaveAppearance, disabled"), [])

    def test_resting_on_a_tool_opens_its_menu_and_moving_restarts_the_wait(self):
        self.move_to(BUTTON)
        began = time.monotonic()
        self.move_to(BUTTON, (0.45, 0.5))
        self.wait_for_report(f"{BUTTON}: menu")
        self.assertGreaterEqual(time.monotonic() - began, 1.5)

    def test_right_button_opens_the_menu_at_once_in_the_circle_only(self):
        self.click(BUTTON, CORNER, button=3)
        self.fence()
        self.assertNotIn("menu", self.reports(BUTTON))
        self.click(BUTTON, button=3)
        self.wait_for_report(f"{BUTTON}: menu")

    def test_calls_to_action_post_for_a_press_that_starts_and_ends_inside(self):
        for name, notification in ((SAVE, "savePictureWithHelpNotification"),
                                   (OPEN, "openPictureWithHelpNotification")):
            outside = self.gallery.at(name, (0.5, 1.4))
            self.do("mousemove", *self.gallery.at(name), "mousedown", 1, "mousemove", *outside, "mouseup", 1)
            self.do("mousemove", *outside, "mousedown", 1, "mousemove", *self.gallery.at(name), "mouseup", 1)
            self.fence()
            self.assertNotIn(f"notification: {notification}", self.reports())
            self.click(name)
            self.wait_for_report(f"notification: {notification}")

    def test_click_turns_a_tile_over(self):
        self.click(TILE)
        self.wait_for_report(f"{TILE}: selected")
        self.click(TILE)
        self.wait_for_report(f"{TILE}: not selected")

    def test_drag_moves_the_panel_by_what_the_pointer_moves(self):
        x, y = self.gallery.at(PANEL, (0.06, 0.5))
        before = self.gallery.shown(PANEL)
        self.do("mousemove", x, y, "mousedown", 1, "mousemove", x - 9, y + 2, "mousemove", x - 15, y + 4,
                "mouseup", 1)
        self.wait_for_report(f"{PANEL}: moved")
        left, top, width, height = self.gallery.places[PANEL]
        self.gallery.places[PANEL] = (left - 15, top + 4, width, height)
        self.move_out()
        self.wait_until_shown(PANEL, "the same at its new place", lambda shown: shown.looks_like(before))

    # Slider with field

    def test_drag_of_the_knob_reports_on_the_way_and_hides_the_preview_at_its_end(self):
        self.do("mousemove", *self.gallery.at(OWN_SLIDER, (0.25, LINE)), "mousedown", 1)
        for share in (0.3, 0.35, 0.4):
            count = len(self.values(OWN_SLIDER))
            self.move_to(OWN_SLIDER, (share, LINE))
            wait_for("a report of the drag", lambda: len(self.values(OWN_SLIDER)) > count)
        values = self.values(OWN_SLIDER)
        self.assertGreaterEqual(len(values), 3)
        self.assertEqual(values, sorted(values))
        # Python rounds a half to the even number too.
        self.assertEqual(self.field(OWN_SLIDER), f"{round(values[-1])}%")
        self.assertNotIn("hide preview", self.reports(OWN_SLIDER))
        self.do("mouseup", 1)
        self.wait_for_report(f"{OWN_SLIDER}: hide preview")

    def test_wheel_steps_the_slider(self):
        self.type_number("50")
        self.wait_for_report(f"{SLIDER}: value 50")
        self.click(SLIDER, (0.35, LINE), button=4)
        self.wait_for_report(f"{SLIDER}: value 53")
        self.do("click", 5)
        wait_for("the way back", lambda: self.reports(SLIDER).count("value 50") == 2)

    def assert_stretch(self, what, pixels, like, begin, end):
        found = stretch(pixels, like)
        if end - begin <= 2 * EDGE:
            self.assertLessEqual(found[1] - found[0] if found else 0, 2 * EDGE, f"{what} in {pixels}")
            return
        self.assertIsNotNone(found, f"{what} in {pixels}")
        self.assertAlmostEqual(found[0], begin, delta=EDGE, msg=f"{what} begins in {pixels}")
        self.assertAlmostEqual(found[1], end, delta=EDGE, msg=f"{what} ends in {pixels}")

    def assert_slider(self, pixels, fraction, is_filled, unfilled):
        """That a slider's line, from the end of its minimum, shows a value at this fraction of the range."""
        usable = len(pixels) - 1.5 * KNOB
        knob = KNOB * 0.25 + fraction * usable
        self.assert_stretch("knob", pixels, is_light, knob, knob + KNOB)
        inside = pixels[:round(knob)]
        self.assert_stretch("filled line", inside, is_filled, KNOB * 0.5, len(inside))
        outside = round(knob + KNOB)
        self.assert_stretch("unfilled line", pixels[outside:], lambda pixel: pixel == unfilled, 0,
                            len(pixels) - KNOB * 0.5 - outside)

    def test_line_and_knob_lie_where_the_value_says(self):
        part = f"{SLIDER} / slider"
        for value in (1, 50, 100):
            self.type_number(str(value))
            self.wait_for_report(f"{SLIDER}: value {value}")
            self.click(PICKER, TEXT)  # the knob without the ring of the keyboard
            shown = self.settled(part)
            row = [shown.pixel(x, shown.height // 2) for x in range(shown.width)]
            # Along the line the accent runs from one red to another.
            self.assert_slider(row, (value - 1) / 99, lambda pixel: pixel[0] > 240 and pixel[2] < 100, BLACK)

    def test_upright_line_and_knob_lie_where_the_value_says(self):
        for share in (0.99, 0.4, 0.01):
            count = len(self.values(UPRIGHT))
            self.click(UPRIGHT, (0.5, share))
            wait_for("a value", lambda: len(self.values(UPRIGHT)) > count)
            shown = self.settled(UPRIGHT)
            column = [shown.pixel(shown.width // 2, y) for y in reversed(range(shown.height))]
            self.assert_slider(column, (self.values(UPRIGHT)[-1] - 1) / 99, lambda pixel: pixel == ACCENT, GREY)

    def test_typed_numbers_are_clamped_and_fractions_are_rounded(self):
        for typed, value in (("250", 100), ("0", 1), ("12,7", 13), ("45", 45)):
            self.type_number(typed)
            self.wait_for_report(f"{SLIDER}: value {value}")
            self.assertEqual(self.field(), f"{value}%")

    def test_text_that_ends_in_a_separator_is_not_committed(self):
        self.type_number("20")
        self.wait_for_report(f"{SLIDER}: value 20")
        for unfinished in ("12.", "12,"):
            self.type_number(unfinished)
            self.wait_for_field(unfinished)
            self.do("key", "Escape")
        self.type_number("30")
        self.wait_for_report(f"{SLIDER}: value 30")
        self.assertEqual(self.values(SLIDER), [20, 30])

    def test_every_keystroke_is_shown_as_a_whole_percentage(self):
        self.click(SLIDER, FIELD)
        # The caret stays behind the digits: what is typed next goes on with the number.
        for typed, shown in (("ctrl+a", None), ("1", "1%"), ("2", "12%"), ("comma", "12,"), ("BackSpace", "12%")):
            self.do("key", typed)
            if shown:
                self.wait_for_field(shown)
        self.do("key", "ctrl+a", "type", "12,7")
        self.do("key", "Return")
        self.wait_for_report(f"{SLIDER}: value 13")

    def test_fifth_character_is_refused_and_small_letters_become_capitals(self):
        self.click(SLIDER, FIELD)
        self.do("key", "ctrl+a", "type", "12345")
        self.do("key", "End", "type", "6")
        self.fence()
        self.assertLessEqual(len(self.field()), 4)
        self.assertEqual(self.field(), "123%")
        self.do("key", "ctrl+a", "key", "period", "key", "Home", "key", "a")
        self.wait_for_field("A.")
        self.do("key", "Escape")

    def test_committed_number_hides_the_preview_a_moment_later(self):
        began = time.monotonic()
        self.type_number("33", OWN_SLIDER)
        self.wait_for_report(f"{OWN_SLIDER}: hide preview")
        self.assertGreaterEqual(time.monotonic() - began, 1.2)

    def test_keys_step_the_slider_once_return_gave_it_the_keyboard(self):
        self.type_number("50")
        self.wait_for_report(f"{SLIDER}: value 50")
        for key, value in (("Right", 51), ("Up", 52), ("Left", 51), ("Prior", 61), ("Next", 51), ("Home", 1),
                           ("End", 100)):
            self.do("key", key)
            self.wait_for_report(f"{SLIDER}: value {value}")

    def test_upright_slider_follows_the_pointer_upwards(self):
        self.click(UPRIGHT, (0.5, 0.8))
        wait_for("a low value", lambda: self.reports(UPRIGHT))
        self.click(UPRIGHT, (0.5, 0.2))
        wait_for("both values", lambda: self.values(UPRIGHT)[1:])
        self.assertGreater(self.values(UPRIGHT)[-1], 50)

    def test_every_step_of_a_fast_drag_is_reported(self):
        x, y = self.gallery.at(UPRIGHT, (0.5, 0.75))
        steps = 30
        chain = [word for step in range(1, steps + 1) for word in ("mousemove", x, y - step)]
        self.do("mousemove", x, y, "mousedown", 1, *chain, "mouseup", 1)
        self.fence()
        self.assertEqual(len(self.values(UPRIGHT)), 1 + steps)

    # Scroll bar and blockers

    def test_scroll_bar_is_dragged_and_seen_to_be_under_the_pointer(self):
        rest = self.gallery.shown(BAR)
        self.move_to(BAR, (0.3, 0.5))
        self.wait_until_shown(BAR, "under the pointer", lambda shown: shown != rest)
        self.do("mousedown", 1)
        self.move_to(BAR, (0.9, 0.5))
        self.wait_for_report(f"{BAR}: value 100")
        self.do("mouseup", 1, "click", 4)
        wait_for("a step back of the wheel", lambda: self.values(BAR)[-1] < 100)

    def test_blocked_panel_and_button_work_again_after_their_last_key(self):
        blocked = "RKBlocker, blocked", "ButtonBlocker, blocked"
        for key in ("First key, rest", "Second key, rest"):
            for name in blocked:
                self.click(name)
            self.fence()
            self.assertEqual([report for name in blocked for report in self.reports(name)], [])
            self.click(key)
            self.wait_for_report(f"{key}: clicked")
        for name in blocked:
            self.click(name)
            self.wait_for_report(f"{name}: clicked")

    # Colour picker

    def test_press_reports_a_colour_and_a_drag_only_where_it_begins_and_ends(self):
        x, y = self.gallery.at(PICKER, SHADES)
        self.do("mousemove", x, y, "mousedown", 1)
        wait_for("the press", lambda: self.reports(PICKER))
        self.do("mousemove", x + 5, y + 5, "mousemove", x + 10, y + 10, "mousemove", x - 20, y + 20, "mouseup", 1)
        wait_for("the end", lambda: len(self.reports(PICKER)) > 1)
        self.fence()
        self.assertEqual(len(self.reports(PICKER)), 2)
        self.assertNotEqual(*self.reports(PICKER))

    def test_press_or_drag_beyond_the_ends_keeps_the_marker_in_the_strip_of_hues(self):
        width, height, marker = 12, 84, 4  # of the strip, in the picker's upper left corner
        x, y = self.gallery.places[PICKER][:2]
        x, y = self.gallery.left + x + width // 2, self.gallery.top + y

        def marker_rows():
            strip = self.settled(PICKER)
            rows = [row for row in range(height) if strip.pixel(width // 2, row) == (255, 255, 255)]
            return rows[0], rows[-1]

        self.do("mousemove", x, y + height - 1, "click", 1)
        first, last = marker_rows()
        self.assertGreaterEqual(first, height - marker)
        self.do("mousemove", x, y + 40, "mousedown", 1, "mousemove", x, y - 20, "mousemove", x, y - 30, "mouseup", 1)
        first, last = marker_rows()
        self.assertLess(last, marker)
        self.do("mousemove", x, y + 40, "click", 1)
        strip = self.settled(PICKER)
        for row in (0, height - 1):
            red, green, blue = strip.pixel(width // 2, row)
            self.assertTrue(red > 250 and max(green, blue) < 16, f"{(red, green, blue)} at an end of the strip")

    def test_hue_press_reports_the_shade_of_the_hue_before(self):
        self.click(PICKER, SHADES)
        wait_for("the shade", lambda: self.reports(PICKER))
        shade = self.reports(PICKER)[-1]
        self.click(PICKER, (HUES[0], 0.2))
        wait_for("the hue", lambda: len(self.reports(PICKER)) == 2)
        self.assertEqual(self.reports(PICKER)[-1], shade)
        self.click(PICKER, SHADES)
        wait_for("the shade of the new hue", lambda: len(self.reports(PICKER)) == 3)
        self.assertNotEqual(self.reports(PICKER)[-1], shade)

    def test_colour_is_typed_and_taken_from_the_picture(self):
        self.click(PICKER, TEXT)
        self.do("key", "ctrl+a", "type", "#00ff80")
        self.do("key", "Return")
        self.wait_for_report(f"{PICKER}: colour #00FF80")
        self.click(PICKER, EYEDROPPER)
        self.wait_for_report(f"{PICKER}: colour #0080FF")

    def test_arrow_keys_move_the_markers(self):
        self.click(PICKER, SHADES)
        wait_for("the press", lambda: self.reports(PICKER))
        self.click(PICKER, TEXT)
        self.do("key", "shift+Tab")
        self.wait_for_report(f"keyboard: {PICKER} / Shade")
        for key in ("shift+Left", "Up"):
            count = len(self.reports(PICKER))
            self.do("key", key)
            wait_for("a colour", lambda: len(self.reports(PICKER)) > count)

    # Keyboard

    def test_held_modifier_keys_are_known(self):
        self.click(PICKER, TEXT)
        self.do("key", "shift+Tab")  # away from the text, which takes every key that is let go
        self.wait_for_report(f"keyboard: {PICKER} / Shade")
        for key, name in (("shift", "shift"), ("ctrl", "cmnd"), ("alt", "alt"), ("super", "ctrl")):
            self.do("keydown", key)
            wait_for(f"{key} to be held", lambda held=f"keys: {name}": self.held_keys() == held)
            self.do("keyup", key)
            wait_for(f"{key} to be let go", lambda: self.held_keys() == "keys:")

    def test_tab_reaches_every_enabled_control_and_each_shows_it(self):
        reached = []
        before = self.desktop.look()
        while True:
            self.do("key", "Tab")
            count = len(reached) + 1
            wait_for("the keyboard to move on", lambda: len(self.reports("keyboard")) >= count)
            now = self.reports("keyboard")[count - 1]
            if now in reached:
                self.assertEqual(now, reached[0], "Tab goes round")
                break
            reached.append(now)
            name = now.split(" / ")[0]
            x, y, width, height = self.gallery.places[name]
            frame = (self.gallery.left + x, self.gallery.top + y, width, height)
            old = before.crop(*frame)

            def screen_with_it():
                screen = self.desktop.look()
                return screen if screen.crop(*frame) != old else None

            before = wait_for(f"{name} to look reached", screen_with_it)
            if count % 12 == 1:
                self.desktop.keep(before, f"keyboard-{count}")
        without = ("ColorableView", "Text cell", "KnobScrollBar", "ButtonBlocker")  # the last comes and goes
        expected = {name for name in self.gallery.places
                    if not name.endswith((", disabled", " / slider")) and not name.startswith(without)}
        self.assertEqual({now.split(" / ")[0] for now in reached if not now.startswith(without)}, expected)
        parts = [now.split(" / ")[1] for now in reached if now.startswith(f"{PICKER} / ")]
        self.assertEqual(parts[:3], ["Hue", "Shade", "Colour as #RRGGBB"])

    def test_space_and_return_click_the_button_that_tab_reached(self):
        self.click(PICKER, TEXT)  # the keyboard is somewhere
        while BUTTON not in self.reports("keyboard"):
            count = len(self.reports("keyboard"))
            self.do("key", "Tab")
            wait_for("the keyboard to move on", lambda: len(self.reports("keyboard")) > count)
        self.do("key", "space")
        self.wait_for_report(f"{BUTTON}: clicked")
        self.do("key", "Return")
        wait_for("the second click", lambda: self.reports(BUTTON).count("clicked") == 2)
        self.do("key", "Menu")
        self.wait_for_report(f"{BUTTON}: menu")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:], verbosity=2)
