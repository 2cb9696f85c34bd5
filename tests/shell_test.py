#!/usr/bin/env python3
"""The program as a citizen of a desktop: the life of its window, menus, toolbar, the consent question, the
tray, and how it ends.   shell_test.py PROGRAM SAMPLE FOLDER [TEST...]"""

import json
import os
import signal
import subprocess

from desktop import wait_for
from desktop_case import ALONG, EMPTY, PROGRAM, UNSAVED, DesktopCase, alpha, main
from usage_service import UsageService

CONSENT = "May Trimora send usage data?"


class LifeOfTheWindow(DesktopCase):
    def test_launching_again_with_a_file_brings_the_window_back_with_it(self):
        trimora = self.start()
        trimora.item(EMPTY)
        self.close(trimora)
        self.assertEqual(trimora.launch_again(self.picture), 0)
        self.wait_for_message(trimora, "Opened grey.png")  # first, as it goes after a while
        trimora.wait("Undo", "showing")
        self.assertTrue(trimora.is_visible())

    def test_the_launchers_show_brings_it_back_with_its_picture_and_history(self):
        trimora = self.painted()
        before = self.shot()
        self.close(trimora)
        trimora.choose_in_the_launcher("show")
        wait_for("the window", lambda: trimora.is_visible())
        view = trimora.picture()
        crop = (view.left, view.top, view.width, view.height // 2)
        wait_for("the picture as it was", lambda: self.desktop.look().crop(*crop) == before.crop(*crop))
        self.assertTrue(trimora.item("Undo").has("enabled"))

    def test_new_from_the_launcher_begins_afresh_without_asking(self):
        trimora = self.painted()
        self.close(trimora)
        trimora.choose_in_the_launcher("new")
        wait_for("the window", lambda: trimora.is_visible())
        trimora.item(EMPTY)

    def test_launching_again_brings_it_back_where_there_is_no_bus(self):
        trimora = self.start(self.picture, DBUS_SESSION_BUS_ADDRESS="unix:path=" + os.path.join(self.home, "none"))
        self.desktop.rest()
        before = self.shot("without-a-bus")
        self.close(trimora)
        self.assertEqual(trimora.launch_again(), 0)
        wait_for("the window", trimora.is_visible)
        wait_for("the picture as it was", lambda: self.desktop.look().looks_like(before))

    def test_quit_with_nothing_drawn_ends_at_once(self):
        trimora = self.opened()
        trimora.keys("ctrl+q")
        self.assertEqual(trimora.ended(), 0)

    def test_quit_asks_and_each_answer_does_what_it_says(self):
        trimora = self.painted()
        target = self.cancel_then_save(trimora, "ctrl+q", "quit-asks")
        self.assertEqual(trimora.ended(), 0)
        self.assertEqual(alpha(target, 300, 200), 0)

    def test_quit_without_saving_ends(self):
        trimora = self.painted()
        trimora.menu("File", "Quit")
        trimora.sheet(UNSAVED)
        self.desktop.rest()
        trimora.keys("Tab", "Tab", "space")
        self.assertEqual(trimora.ended(), 0)

    def test_a_question_has_the_keyboard_whatever_is_done_beside_it(self):
        trimora = self.painted()
        place = trimora.picture().at(0.1, 0.9)
        for beside in (lambda: self.desktop.do("mousemove", *place, "click", 1),
                       lambda: self.assertEqual(trimora.launch_again(), 0)):
            trimora.keys("ctrl+q")
            trimora.sheet(UNSAVED)
            beside()
            self.desktop.rest()
            trimora.keys("Escape")
            self.session.gone(UNSAVED)
            self.desktop.rest()
        self.assertTrue(trimora.has("Undo", "enabled"))

    def test_a_panel_keeps_the_keyboard_when_something_beside_it_is_pressed(self):
        trimora = self.painted()
        place = trimora.picture().at(0.1, 0.9)
        trimora.keys("ctrl+s")
        self.desktop.window("Save picture")
        self.desktop.do("mousemove", *place, "click", 1)
        self.desktop.rest()
        trimora.keys("Escape")
        wait_for("the end of the panel",
                 lambda: not self.desktop.ask("search", "--onlyvisible", "--name", "^Save picture$"))

    def ends_cleanly_at(self, number):
        trimora = self.painted()
        trimora.process.send_signal(number)
        self.assertEqual(trimora.ended(), 0)
        sessions = subprocess.check_output(
            [os.path.join(os.path.dirname(PROGRAM), "trimora-telemetry")], env=trimora.env, text=True)
        used = [line for line in sessions.splitlines() if not line.endswith("  0 events")]
        self.assertTrue(used)
        for session in used:
            self.assertIn("  done  ", session)
        again = self.opened()
        folders = [name for name in os.listdir(os.path.join(again.home, "data", "Trimora")) if "history-" in name]
        self.assertEqual(folders, [], "the history folder was given back")

    def test_sigterm_ends_it_cleanly(self):
        self.ends_cleanly_at(signal.SIGTERM)

    def test_ctrl_c_ends_it_cleanly(self):
        self.ends_cleanly_at(signal.SIGINT)

    def test_full_screen_and_back(self):
        trimora = self.opened()
        trimora.keys("F11")
        wait_for("the whole screen", lambda: self.desktop.geometry(trimora.window)[2:] == self.desktop.size)
        trimora.item("Quit", "push button")
        self.shot("full-screen")
        trimora.keys("F11")
        wait_for("the window of before", lambda: self.desktop.geometry(trimora.window)[2:] != self.desktop.size)


class LogOut(DesktopCase):
    def setUp(self):
        super().setUp()
        self.manager = self.session.stand_in("session_manager.py")
        self.addCleanup(self.desktop.end, self.manager.process)
        self.address = self.manager.heard()

    def painted_in_the_session(self):
        trimora = self.start(self.picture, SESSION_MANAGER=self.address)
        self.assertEqual((self.manager.heard(), self.manager.heard()), ("registered", "saved"))
        trimora.wait("Undo", "showing")
        self.desktop.rest()
        trimora.stroke(*ALONG)
        trimora.wait("Undo", "enabled")
        return trimora

    def test_one_that_is_cancelled_leaves_the_program_as_it_was(self):
        trimora = self.painted_in_the_session()
        before = self.shot()
        self.manager.tell("ask")
        self.assertEqual(self.manager.heard(), "saved")
        self.manager.tell("cancel")
        view = trimora.picture()
        crop = (view.left, view.top, view.width, view.height // 2)
        self.assertEqual(self.shot("log-out-cancelled").crop(*crop), before.crop(*crop))
        trimora.keys("ctrl+z")
        trimora.wait("Redo", "enabled")
        self.assertIsNone(trimora.process.poll())

    def test_one_that_is_carried_out_ends_it_cleanly(self):
        trimora = self.painted_in_the_session()
        self.manager.tell("ask")
        self.assertEqual(self.manager.heard(), "saved")
        self.manager.tell("die")
        self.assertEqual(trimora.ended(), 0)


class MenusAndToolbar(DesktopCase):
    def test_menus_open_by_the_mouse(self):
        trimora = self.opened()
        for name, item in (("File", "New"), ("Edit", "Restore image"), ("View", "Full screen"), ("Tools", "Hand"),
                           ("Background", "Blur"), ("Help", "About Trimora")):
            trimora.click(name, "menu item")
            wait_for(f"the menu {name}", lambda item=item: self.in_menu(item))
            self.shot("menu-" + name.lower())
            trimora.keys("Escape")
            wait_for(f"the menu {name} to close", lambda item=item: not self.in_menu(item))

    def in_menu(self, name):
        return any(item.name == name and "menu item" in item.role for item in self.session.showing())

    def test_menus_open_by_the_keyboard(self):
        trimora = self.opened()
        trimora.keys("F10")
        wait_for("the first menu", lambda: self.in_menu("New"))
        trimora.keys("Right")
        wait_for("the second menu", lambda: self.in_menu("Paste"))
        trimora.keys("Escape", "Escape")
        wait_for("it to close", lambda: not self.in_menu("Paste"))
        trimora.keys("alt+t")
        wait_for("the menu of tools", lambda: self.in_menu("Restore brush"))
        trimora.keys("h")
        trimora.wait("Hand", "checked", "radio button")

    def states(self, trimora):
        buttons = {item.name: item.has("enabled") for item in self.session.showing() if item.role == "push button"}
        return tuple(buttons.get(name) for name in ("Open", "Save", "Undo", "Redo", "Restore image"))

    def test_the_toolbar_follows_a_pictures_life(self):
        trimora = self.start()
        trimora.item(EMPTY)
        self.assertEqual(self.states(trimora), (True, False, None, None, None))
        self.assertEqual(trimora.launch_again(self.picture), 0)
        trimora.wait("Undo", "showing")
        wait_for("a new picture's states", lambda: self.states(trimora) == (True, False, False, False, False))
        self.desktop.rest()
        trimora.stroke(*ALONG)
        wait_for("a stroke's states", lambda: self.states(trimora) == (True, True, True, False, True))
        trimora.click("Undo")
        wait_for("the states after an undo", lambda: self.states(trimora) == (True, True, False, True, True))
        trimora.click("Redo")
        wait_for("the states after a redo", lambda: self.states(trimora) == (True, True, True, False, True))
        trimora.keys("ctrl+n")
        trimora.answer(UNSAVED, "Don't save")
        trimora.item(EMPTY)
        wait_for("the states without a picture",
                 lambda: self.states(trimora)[:2] == (True, False) and not any(self.states(trimora)[2:]))
        self.desktop.look("empty-again")

    def test_tab_goes_through_what_is_seen_and_nothing_else(self):
        trimora = self.opened()
        view = trimora.item("Trimora", "frame")
        seen = []
        for _ in range(25):
            trimora.keys("Tab")
            self.desktop.rest()
            focused = [item for item in self.session.showing() if item.has("focused") and item.name]
            self.assertEqual(len(focused), 1, focused)
            seen.append(focused[0].name)
            self.assertTrue(view.left <= focused[0].left and focused[0].width > 0)
        self.assertIn("Mini-map", seen)
        self.assertNotIn("Brush or hand", seen)
        self.assertNotIn("Bring back", seen)


class Consent(DesktopCase):
    def setUp(self):
        super().setUp()
        self.service = UsageService(self.home)

    def asked(self):
        trimora = self.start(**self.service.variables)
        trimora.item(CONSENT)
        return trimora

    def sessions(self, trimora):
        """What the record holds, as the program for that tells."""
        done = subprocess.run([os.path.join(os.path.dirname(PROGRAM), "trimora-telemetry")], env=trimora.env,
                              capture_output=True, text=True, check=False)
        return done.stdout

    def end(self, trimora):
        trimora.keys("ctrl+q")
        self.assertEqual(trimora.ended(), 0)

    def test_the_question_leaves_the_window_usable_and_sends_nothing(self):
        trimora = self.asked()
        self.desktop.look("consent")
        trimora.menu("Help", "About Trimora")
        trimora.item("Close", "push button")
        self.desktop.look("consent-and-about")
        trimora.keys("Escape")
        self.session.gone("Close", "push button")
        self.end(trimora)
        self.assertTrue(self.sessions(trimora).strip())
        self.assertEqual(self.service.connections, 0)
        again = self.asked()  # not answered, so asked again
        again.keys("Escape")
        self.session.gone(CONSENT)
        self.end(again)
        self.assertEqual(self.service.connections, 0)

    def test_yes_sends_the_record(self):
        trimora = self.asked()
        self.assertEqual(self.service.connections, 0)
        trimora.click("Yes, send it", "push button")
        self.session.gone(CONSENT)
        self.end(trimora)
        again = self.start(**self.service.variables)
        wait_for("the record to arrive", lambda: self.service.posts)
        self.assertIn(b"POST /stat", self.service.posts[0])
        self.assertIsNone(self.session.find(CONSENT), "asked once")
        self.end(again)

    def test_no_empties_the_record_and_stops_it(self):
        trimora = self.asked()
        trimora.click("No, record nothing", "push button")
        self.session.gone(CONSENT)
        self.end(trimora)
        self.assertEqual(self.sessions(trimora).strip(), "")
        again = self.start(**self.service.variables)
        again.item(EMPTY)
        self.assertIsNone(self.session.find(CONSENT))
        self.end(again)
        self.assertEqual(self.sessions(again).strip(), "")
        self.assertEqual(self.service.connections, 0)

    def test_the_answer_can_be_changed(self):
        trimora = self.asked()
        trimora.click("Yes, send it", "push button")
        self.session.gone(CONSENT)
        trimora.menu("Help", "Usage data…")
        self.desktop.window("Usage data")
        trimora.wait("Yes, record and send to localhost", "checked")
        self.desktop.look("usage-data")
        trimora.click("No, record nothing and delete what is stored")
        trimora.wait("No, record nothing and delete what is stored", "checked")
        wait_for("an empty record", lambda: "Nothing." in [item.facts.get("text") for item in self.session.showing()])
        self.desktop.look("usage-data-no")
        trimora.keys("Escape")
        self.desktop.window("^Trimora$")
        self.end(trimora)
        self.assertEqual(self.sessions(trimora).strip(), "")


class Tray(DesktopCase):
    def test_the_trays_show_is_checked_while_the_window_is_seen_and_brings_it_back(self):
        panel = self.session.quietly(["trayer", "--edge", "bottom", "--align", "right", "--widthtype", "pixel",
                                      "--width", "60", "--heighttype", "pixel", "--height", "32"])
        self.addCleanup(self.desktop.end, panel)
        tray = wait_for("the panel", lambda: (self.desktop.ask("search", "--onlyvisible", "--class", "trayer") or
                                              "").split())[-1]
        trimora = self.opened()
        self.place = self.desktop.geometry(tray)
        self.assertGreater(len(set(self.shot("tray").crop(*self.place).data)), 8, "the item is drawn")
        menu = self.menu(trimora)
        self.assertTrue(self.has_check_mark(menu, "tray-menu"))
        trimora.keys("Escape")
        wait_for("the menu to close", lambda: not self.menus(trimora))
        self.close(trimora)
        menu = self.menu(trimora)
        self.assertFalse(self.has_check_mark(menu, "tray-menu-while-hidden"))
        left, top, width, height = self.desktop.geometry(menu)
        self.desktop.do("mousemove", left + width // 2, top + height // 2, "click", 1)
        trimora.item("Picture")
        self.assertTrue(trimora.is_visible())

    def menus(self, trimora):
        """Windows of the program, but for its own and that of the tray."""
        found = (self.desktop.ask("search", "--onlyvisible", "--class", "Trimora") or "").split()
        return [window for window in found if window != trimora.window and
                self.desktop.geometry(window)[2] > self.place[3]]

    def menu(self, trimora):
        left, top, width, height = self.place
        self.desktop.do("mousemove", left + width - height // 2, top + height // 2, "click", 3)
        return wait_for("the menu", lambda: self.menus(trimora))[-1]

    def has_check_mark(self, menu, name):
        """Whether anything is drawn where a menu has its check marks. No screen reader is told of this menu."""
        left, top, _, height = self.desktop.geometry(menu)
        return len(set(self.shot(name).crop(left + 4, top + 6, 18, height - 12).data)) > 1


class TrayOnTheBus(DesktopCase):
    """The tray of desktops that ask programs for their items over the session bus."""

    def setUp(self):
        super().setUp()
        self.tray = self.tray_comes()

    def tray_comes(self):
        tray = self.session.stand_in("tray_host.py")
        self.addCleanup(self.desktop.end, tray.process)
        self.assertEqual(tray.heard(), "ready")
        return tray

    def with_an_item(self, trimora):
        self.assertEqual(self.tray.heard(), "item")
        return trimora

    def answer(self, word):
        self.tray.tell(word)
        return json.loads(self.tray.heard())

    def test_the_item_says_whose_it_is_and_has_an_icon_and_a_menu(self):
        self.with_an_item(self.opened())
        facts = self.answer("facts")
        self.assertGreater(facts.pop("icons"), 0)
        self.assertEqual(facts, {"Id": "Trimora", "Title": "Trimora", "Status": "Active", "Menu": "/MenuBar",
                                 "Category": "ApplicationStatus"})

    def test_its_only_entry_is_checked_while_the_window_is_seen_and_brings_it_back(self):
        trimora = self.with_an_item(self.painted())
        self.assertEqual(self.answer("menu"), [["Show", True]])
        self.close(trimora)
        self.assertEqual(self.answer("menu"), [["Show", False]])
        self.tray.tell("choose 0")
        trimora.item("Picture")
        self.assertTrue(trimora.is_visible())
        self.assertTrue(trimora.has("Undo", "enabled"))
        self.assertEqual(self.answer("menu"), [["Show", True]])

    def test_a_click_on_it_brings_the_window_back(self):
        trimora = self.with_an_item(self.opened())
        self.close(trimora)
        self.tray.tell("activate")
        wait_for("the window", trimora.is_visible)

    def test_it_comes_again_with_a_panel_that_was_started_anew(self):
        trimora = self.with_an_item(self.opened())
        self.close(trimora)
        self.desktop.end(self.tray.process)
        self.tray = self.tray_comes()
        self.with_an_item(trimora)
        self.assertEqual(self.answer("menu"), [["Show", False]])
        self.tray.tell("choose 0")
        wait_for("the window", trimora.is_visible)


if __name__ == "__main__":
    main()
