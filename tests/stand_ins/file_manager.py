#!/usr/bin/python3
"""A file manager as far as other programs see one: it shows nothing, and prints a line of JSON for each
call: the addresses that it was to show, and the token. An empty line says that it is there."""

import json

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME = "org.freedesktop.FileManager1"


class FileManager(dbus.service.Object):
    @dbus.service.method(NAME, in_signature="ass")
    def ShowItems(self, addresses, token):  # noqa: N802  the interface's own name
        print(json.dumps([list(map(str, addresses)), str(token)]), flush=True)


def main():
    bus = dbus.SessionBus(mainloop=DBusGMainLoop())
    name = dbus.service.BusName(NAME, bus)
    manager = FileManager(name, "/org/freedesktop/FileManager1")
    print(flush=True)
    GLib.MainLoop().run()
    manager.remove_from_connection()


main()
