#!/usr/bin/env python3
"""The editor on a desktop as a person has it: drags from another program, the clipboard, notifications, the
file manager. Every input is a real event, every other program a real one but for the file manager.

    desktop_test.py PROGRAM SAMPLE FOLDER [TEST...]"""

import json
import os
import subprocess

from desktop import wait_for
from desktop_case import ALONG, EMPTY, GREY, SAMPLE, UNSAVED, DesktopCase, alpha, main, make_picture

NOTIFICATIONS = "org.freedesktop.Notifications"


class DragCase(DesktopCase):
    def partner(self, trimora, *what):
        """A program to drag from and to, beside the window."""
        folder = os.path.join(self.home, "dropped")
        os.mkdir(folder)
        program = self.session.stand_in("drag_partner.py", folder, *what)
        self.addCleanup(self.desktop.end, program.process)
        window = self.desktop.window("Partner")
        # The window with the arrow that bounces for ever never comes to rest.
        self.desktop.do("windowmove", window, 1500, 300)
        wait_for("the windows to lie side by side", lambda: self.desktop.geometry(window)[0] >= 1500)
        place = self.desktop.geometry(window)
        program.middle = (place[0] + place[2] // 2, place[1] + place[3] // 2)
        return program

    def drag(self, start, end):
        """Takes hold at one place and goes to another in steps, still holding."""
        chain = ["mousemove", *start, "mousedown", 1]
        for part in range(1, 13):
            chain += ["mousemove", *(start[i] + (end[i] - start[i]) * part // 12 for i in (0, 1)), "sleep", 0.02]
        self.desktop.do(*chain)

    def wait_until_lit(self, area):
        """Until the empty screen's frame shows that it would take what hangs over it: whoever lets go before
        the two programs have agreed drops nothing."""
        def is_lit():
            left, top = area.left + 30, area.top + area.height // 2
            return any(red > 150 and green < 100 for red, green, _ in
                       (self.desktop.look().pixel(left, top + row) for row in range(-12, 12, 4)))
        wait_for("the frame to light up", is_lit)


class BringingPicturesIn(DragCase):
    def test_a_new_user_sees_where_to_begin(self):
        trimora = self.start()
        trimora.item(EMPTY)
        self.assertTrue(trimora.item("Open", "push button").has("enabled"))
        self.assertFalse(trimora.item("Save", "push button").has("enabled"))
        for name in ("Undo", "Redo", "Restore image", "Brush", "Mini-map"):
            self.assertIsNone(self.session.find(name), name)
        self.desktop.look("empty")

    def test_a_file_dragged_from_a_file_manager_opens(self):
        trimora = self.start()
        partner = self.partner(trimora, "files", "file://" + SAMPLE)
        area = trimora.item(EMPTY)
        self.drag(partner.middle, area.at(0.5, 0.75))
        self.wait_until_lit(area)
        self.desktop.look("dragged-over")
        self.desktop.do("mouseup", 1)
        self.assertEqual(partner.heard(), "drag accepted")
        trimora.wait("Undo", "showing")
        self.wait_for_message(trimora, "Opened sample.jpg")
        self.shot("dropped")
        self.assertFalse(trimora.item("Save", "push button").has("enabled"))

    def test_a_drag_that_leaves_again_changes_nothing(self):
        trimora = self.start()
        partner = self.partner(trimora, "files", "file://" + SAMPLE)
        area = trimora.item(EMPTY)
        self.drag(partner.middle, area.at(0.5, 0.75))
        self.drag(area.at(0.5, 0.75), partner.middle)
        self.desktop.do("mouseup", 1)
        partner.heard()
        trimora.item(EMPTY)

    def test_a_picture_dragged_without_a_file_opens(self):
        trimora = self.start()
        partner = self.partner(trimora, "picture", self.picture)
        area = trimora.item(EMPTY)
        self.drag(partner.middle, area.at(0.5, 0.75))
        self.wait_until_lit(area)
        self.desktop.do("mouseup", 1)
        self.assertEqual(partner.heard(), "drag accepted")
        trimora.wait("Undo", "showing")
        view = trimora.picture()
        self.assertEqual(self.shot("promised").pixel(*view.at()), GREY)

    def test_of_three_dropped_files_the_only_picture_opens(self):
        words = []
        for number in (1, 2):
            words.append(os.path.join(self.home, f"words{number}.txt"))
            with open(words[-1], "w") as file:
                file.write("no picture")
        trimora = self.start()
        partner = self.partner(trimora, "files", *("file://" + path for path in (*words, self.picture)))
        area = trimora.item(EMPTY)
        self.drag(partner.middle, area.at(0.5, 0.75))
        self.wait_until_lit(area)
        self.desktop.do("mouseup", 1)
        trimora.wait("Undo", "showing")
        self.wait_for_message(trimora, "Opened grey.png")

    def test_words_are_not_taken(self):
        trimora = self.start()
        partner = self.partner(trimora, "text", "no picture")
        self.drag(partner.middle, trimora.item(EMPTY).at(0.5, 0.75))
        self.desktop.do("mouseup", 1)
        self.assertEqual(partner.heard(), "drag refused")
        trimora.item(EMPTY)

    def test_a_drop_on_unsaved_work_asks_first(self):
        trimora = self.painted()
        red = make_picture(os.path.join(self.home, "red.png"), "rgb(255,0,0)")
        partner = self.partner(trimora, "files", "file://" + red)
        for answer, colour in (("Cancel", GREY), ("Don't save", (255, 0, 0))):
            self.drag(partner.middle, trimora.picture().at(0.5, 0.3))
            self.desktop.rest()
            self.desktop.do("mouseup", 1)
            trimora.sheet(UNSAVED)
            self.shot("asked-at-a-drop")
            trimora.answer(UNSAVED, answer)
            view = trimora.picture()
            wait_for(f"{colour} after {answer}", lambda at=view.at(0.5, 0.35), colour=colour:
                     self.desktop.look().pixel(*at) == colour)

    def test_an_unreadable_file_is_named_and_the_work_stays(self):
        trimora = self.painted()
        bad = os.path.join(self.home, "broken.png")
        with open(bad, "w") as file:
            file.write("no picture")
        before = self.shot()
        trimora.keys("ctrl+o")
        self.desktop.window("Open picture")
        self.desktop.do("key", "ctrl+a", "type", bad)
        self.desktop.do("key", "Return")
        self.wait_for_message(trimora, "broken.png")
        after = self.shot("unreadable")
        view = trimora.picture()
        crop = (view.left, view.top, view.width, view.height // 2)
        self.assertEqual(after.crop(*crop), before.crop(*crop))
        self.assertTrue(trimora.item("Undo").has("enabled"))
        self.assertTrue(trimora.item("Save", "push button").has("enabled"))

    def test_a_copied_picture_is_pasted_and_the_result_copied(self):
        trimora = self.start()
        with open(self.picture, "rb") as file:
            subprocess.run(["xclip", "-selection", "clipboard", "-target", "image/png"], stdin=file,
                           stdout=subprocess.DEVNULL, env=self.desktop.env, check=True, timeout=60)
        trimora.keys("ctrl+v")
        trimora.wait("Undo", "showing")
        self.shot("pasted")
        trimora.stroke(*ALONG)
        trimora.wait("Undo", "enabled")
        trimora.keys("ctrl+c")
        copied = os.path.join(self.home, "copied.png")

        def paste():
            done = subprocess.run(["xclip", "-selection", "clipboard", "-target", "image/png", "-out"],
                                  capture_output=True, env=self.desktop.env, check=False, timeout=60)
            with open(copied, "wb") as file:
                file.write(done.stdout)
            return alpha(copied, 300, 200) == 0
        wait_for("the result on the clipboard", paste)
        self.assertEqual(alpha(copied, 300, 20), 255)


class Cutting(DragCase):
    def cut_at(self, trimora, x, y):
        """Whether the view shows no picture at this share of it: the test's picture is one flat grey."""
        return self.desktop.look().pixel(*trimora.picture().at(x, y)) != GREY

    def test_every_tool_does_what_it_is_for(self):
        trimora = self.opened()
        trimora.stroke((0.3, 0.5), (0.5, 0.5))
        wait_for("the cut", lambda: self.cut_at(trimora, 0.4, 0.5))
        self.shot("cut")
        trimora.click("Restore brush")
        trimora.wait("Restore brush", "checked")
        trimora.stroke((0.3, 0.5), (0.4, 0.5))
        wait_for("what comes back", lambda: not self.cut_at(trimora, 0.35, 0.5))
        self.assertTrue(self.cut_at(trimora, 0.48, 0.5))
        self.shot("brought-back")
        trimora.click("Hand", "radio button")
        trimora.wait("Hand", "checked", "radio button")
        trimora.keys("ctrl+plus", "ctrl+plus")
        before = self.shot()
        trimora.stroke((0.5, 0.5), (0.6, 0.6))
        wait_for("the picture to move", lambda: self.desktop.look() != before)
        self.assertTrue(trimora.has("Undo", "enabled"))
        self.shot("panned-by-hand")

    def width_of_a_stroke(self, trimora, y):
        trimora.stroke((0.3, y), (0.7, y))
        self.shot()
        view = trimora.picture()
        image = self.desktop.look()
        return sum(image.pixel(view.at(0.5)[0], row) != GREY
                   for row in range(view.at(0, y)[1] - 80, view.at(0, y)[1] + 80))

    def test_the_size_slider_sets_the_brush_and_shows_it_meanwhile(self):
        trimora = self.opened()
        small = self.width_of_a_stroke(trimora, 0.35)
        slider = trimora.item("Brush size", "slider")
        x, y = trimora.picture().at()

        def middle():
            return self.desktop.look().crop(x - 60, y - 60, 120, 120)
        before = middle()
        self.desktop.do("mousemove", *slider.at(0.2), "mousedown", 1, "mousemove", *slider.at(0.4),
                        "mousemove", *slider.at(0.6))
        wait_for("the preview", lambda: middle() != before)
        self.shot("brush-preview")
        self.desktop.do("mouseup", 1)
        wait_for("the preview to go", lambda: middle() == before)
        large = self.width_of_a_stroke(trimora, 0.65)
        self.assertGreater(large, small + 20)
        trimora.click("Restore brush")
        trimora.wait("Restore brush size", "showing", "slider")
        self.assertIsNone(self.session.find("Brush size", "slider"))

    def quick(self, trimora):
        """Whether the quick panels are out."""
        item = self.session.find("Brush or hand")
        return item is not None and item.left >= trimora.picture().left

    def test_every_background_shows_behind_the_cut(self):
        trimora = self.opened(SAMPLE)
        views = {"nothing cut": self.desktop.look().pixel(*trimora.picture().at(0.5, 0.5))}
        trimora.stroke(*ALONG)
        trimora.wait("Undo", "enabled")
        for name in ("Blurred background", "Coloured background", "Transparent background"):
            trimora.click(name)
            trimora.wait(name, "checked")
            if name == "Coloured background":
                trimora.wait("Colour", "showing")
                self.shot("colour-asked-for")
                self.choose_a_colour(trimora)
            self.desktop.do("mousemove", *trimora.item("Background", "label").at())
            views[name] = self.shot(name.split()[0].lower()).pixel(*trimora.picture().at(0.5, 0.5))
        self.assertEqual(len(set(views.values())), 4, views)

    def choose_a_colour(self, trimora):
        field = [item for item in self.session.showing() if "hade" in item.name or "olour" in item.name]
        shades = [item for item in field if item.height > 60 and item.width > 60][-1]
        self.desktop.do("mousemove", *shades.at(0.8, 0.3), "click", 1)

    def test_undo_and_redo_by_button_and_key(self):
        trimora = self.painted()
        trimora.click("Undo")
        wait_for("the stroke to go", lambda: not self.cut_at(trimora, 0.5, 0.5))
        trimora.wait("Redo", "enabled")
        trimora.click("Redo")
        wait_for("the stroke to come back", lambda: self.cut_at(trimora, 0.5, 0.5))
        trimora.keys("ctrl+z")
        wait_for("the stroke to go", lambda: not self.cut_at(trimora, 0.5, 0.5))
        trimora.keys("ctrl+y")
        wait_for("the stroke to come back", lambda: self.cut_at(trimora, 0.5, 0.5))

    def test_restoring_asks_and_only_yes_restores(self):
        trimora = self.painted()
        question = "Restore the whole picture?"
        for answer in ("No", "Escape", "Yes"):
            trimora.click("Restore image", "push button")
            trimora.sheet(question)
            self.shot("restore-" + answer.lower())
            if answer == "Escape":
                trimora.keys("Escape")
                self.session.gone(question)
            else:
                trimora.answer(question, answer)
            self.shot()
            self.assertEqual(self.cut_at(trimora, 0.5, 0.5), answer != "Yes", answer)
        trimora.keys("ctrl+z")
        wait_for("the cut to come back", lambda: self.cut_at(trimora, 0.5, 0.5))

    def test_wheel_and_mini_map_move_the_view(self):
        trimora = self.opened(SAMPLE)
        view = trimora.picture()
        whole = self.shot()
        self.desktop.do("mousemove", *view.at(), "click", 4, "click", 4, "click", 4)
        wait_for("the zoom", lambda: self.desktop.look().crop(view.left, view.top, view.width, view.height // 2) !=
                 whole.crop(view.left, view.top, view.width, view.height // 2))
        zoomed = self.shot("zoomed")
        area = trimora.item("Mini-map")
        self.desktop.do("mousemove", *area.at(0.3, 0.35), "click", 1)
        clicked = self.shot("map-clicked")
        self.assertNotEqual(clicked.pixel(*view.at(0.2, 0.2)), zoomed.pixel(*view.at(0.2, 0.2)))
        self.desktop.do("mousemove", *area.at(0.3, 0.35), "mousedown", 1, "mousemove", *area.at(0.5, 0.45),
                        "mousemove", *area.at(0.7, 0.6), "mouseup", 1)
        dragged = self.shot("map-dragged")
        self.assertNotEqual(dragged.pixel(*view.at(0.2, 0.2)), clicked.pixel(*view.at(0.2, 0.2)))
        trimora.click("Fit the picture")
        self.shot("fitted")

    def test_quick_panels_come_when_asked_for_and_go_with_a_stroke(self):
        trimora = self.opened()
        self.assertFalse(self.quick(trimora))
        trimora.menu("View", "Quick panels")
        wait_for("the panels", lambda: self.quick(trimora))
        self.shot("quick-panels")
        trimora.stroke(*ALONG)
        wait_for("the panels to go", lambda: not self.quick(trimora))
        self.shot("panels-gone")

    def test_the_result_is_dragged_out_of_the_mini_map(self):
        trimora = self.painted()
        partner = self.partner(trimora, "text", "nothing")
        self.drag(trimora.item("Mini-map").at(0.5, 0.5), partner.middle)
        self.desktop.rest()
        self.desktop.do("mouseup", 1)
        word, _, path = partner.heard().partition(" ")
        self.assertEqual(word, "drop")
        self.assertEqual(subprocess.check_output(["identify", "-format", "%m %w %h", path], text=True),
                         "PNG 600 400")
        self.assertEqual(alpha(path, 300, 200), 0)


class Saving(DesktopCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.manager = cls.session.stand_in("file_manager.py")
        cls.manager.heard()

    def with_notifications(self):
        server = self.session.quietly(["/usr/lib/notification-daemon/notification-daemon"])
        self.addCleanup(self.desktop.end, server)
        self.session.wait_for_name(NOTIFICATIONS)

    def saved(self, trimora, name="my cut.png"):
        target = os.path.join(self.home, name)
        trimora.keys("ctrl+s")
        self.save_as(target)
        wait_for("the saved file", lambda: os.path.exists(target))
        return target

    def shown_in_the_file_manager(self, target):
        address = "file://" + target.replace(" ", "%20")
        self.assertEqual(json.loads(self.manager.heard())[0], [address])

    def test_open_in_the_notification_shows_the_file_where_it_lies(self):
        self.with_notifications()
        trimora = self.painted()
        target = self.saved(trimora)
        self.wait_for_message(trimora, "Save complete: my cut.png")
        self.shot("notified")
        note = self.note_window()
        # The server's button lies at the lower right of its window.
        left, top, width, height = self.desktop.geometry(note)
        self.desktop.do("mousemove", left + width - 80, top + height - 38, "click", 1)
        self.shown_in_the_file_manager(target)

    def note_window(self):
        def found():
            return (self.desktop.ask("search", "--onlyvisible", "--class", "notification-daemon") or "").split()
        return wait_for("the notification", found)[-1]

    def test_without_a_server_the_window_offers_it(self):
        trimora = self.painted()
        target = self.saved(trimora)
        trimora.item("Open", "push button")
        wait_for("the offer", lambda: len([item for item in self.session.showing()
                                           if item.name == "Open" and item.role == "push button"]) == 2)
        self.shot("offered")
        trimora.click("Open", "push button")
        self.shown_in_the_file_manager(target)

    def test_new_asks_and_each_answer_does_what_it_says(self):
        trimora = self.painted()
        target = self.cancel_then_save(trimora, "ctrl+n", "new-asks")
        wait_for("the saved file", lambda: os.path.exists(target))
        trimora.item(EMPTY)
        self.assertEqual(alpha(target, 300, 200), 0, "the cut was saved, not the empty view")

    def test_new_without_saving_clears(self):
        trimora = self.painted()
        trimora.menu("File", "New")
        trimora.answer(UNSAVED, "Don't save")
        trimora.item(EMPTY)
        self.assertFalse(trimora.item("Save", "push button").has("enabled"))

    def test_new_with_nothing_drawn_clears_at_once(self):
        trimora = self.opened()
        trimora.keys("ctrl+n")
        trimora.item(EMPTY)

    def test_a_failed_save_says_why_and_nothing_is_lost(self):
        trimora = self.painted()
        trimora.keys("ctrl+s")
        self.save_as("/proc/cut.png")
        self.wait_for_message(trimora, "cut.png could not be saved")
        self.shot("save-failed")
        self.assertTrue(trimora.has("Undo", "enabled"))
        self.assertTrue(trimora.item("Save", "push button").has("enabled"))

    def test_another_ending_still_gets_a_png(self):
        trimora = self.painted()
        target = self.saved(trimora, "cut.jpg")
        self.assertEqual(subprocess.check_output(["identify", "-format", "%m", "png:" + target], text=True), "PNG")


if __name__ == "__main__":
    main()
