#!/usr/bin/python3
"""A panel with a tray on the session bus, as far as programs see one: it draws nothing, and does to the last
item that came what it reads, one word a line.

    facts       what the item says of itself, as JSON
    menu        its menu, told that it opens and then fetched: label and check mark of each entry, as JSON
    choose N    an entry of that menu, counted from 0
    activate    a click on the item itself

It prints "ready" once it is there, and "item" for each item that comes."""

import json
import sys

from gi.repository import Gio, GLib

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"
PATIENCE = 60000  # milliseconds
INTERFACE = f"""<node><interface name="{WATCHER}">
  <method name="RegisterStatusNotifierItem"><arg name="service" type="s" direction="in"/></method>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
</interface></node>"""


def say(word):
    print(word, flush=True)


class Tray:
    def __init__(self, bus):
        self.bus, self.owner, self.entries = bus, None, []
        description = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
        bus.register_object("/StatusNotifierWatcher", description, self.registers,
                            lambda *_: GLib.Variant("b", True), None)

    def registers(self, _bus, sender, _path, _interface, _method, _service, call):
        self.owner = sender
        call.return_value(None)
        say("item")

    def ask(self, path, interface, method, arguments=None):
        return self.bus.call_sync(self.owner, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                                  PATIENCE, None).unpack()

    def facts(self):
        told, = self.ask("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "GetAll",
                         GLib.Variant("(s)", (ITEM,)))
        facts = {name: told[name] for name in ("Id", "Title", "Status", "Category", "Menu")}
        say(json.dumps(facts | {"icons": len(told["IconPixmap"])}))

    def menu(self):
        self.ask("/MenuBar", MENU, "AboutToShow", GLib.Variant("(i)", (0,)))
        _, (_, _, self.entries) = self.ask("/MenuBar", MENU, "GetLayout", GLib.Variant("(iias)", (0, -1, [])))
        say(json.dumps([[facts["label"], facts.get("toggle-state") == 1] for _, facts, _ in self.entries]))

    def choose(self, number):
        self.ask("/MenuBar", MENU, "Event",
                 GLib.Variant("(isvu)", (self.entries[int(number)][0], "clicked", GLib.Variant("s", ""), 0)))

    def activate(self):
        self.ask("/StatusNotifierItem", ITEM, "Activate", GLib.Variant("(ii)", (0, 0)))

    def obey(self, source, _condition):
        word, *rest = source.readline().split()
        {"facts": self.facts, "menu": self.menu, "choose": self.choose, "activate": self.activate}[word](*rest)
        return True


def main():
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    tray = Tray(bus)
    Gio.bus_own_name_on_connection(bus, WATCHER, Gio.BusNameOwnerFlags.NONE, lambda *_: say("ready"), None)
    GLib.io_add_watch(sys.stdin, GLib.IO_IN, tray.obey)
    GLib.MainLoop().run()


main()
