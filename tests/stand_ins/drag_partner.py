#!/usr/bin/python3
"""Another program to drag from and to, of another toolkit than ours: its window can be dragged out of, and
takes drops of files, which it copies into a folder as they come.

    drag_partner.py FOLDER TYPE VALUE...    TYPE files: addresses of files; picture: a file of which only
                                            the bytes are offered; text: words

It prints "drag WORD" when a drag out of it ends (accepted or refused), and "drop NAME" for each file."""

import shutil
import sys
import urllib.parse

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402

FOLDER, TYPE, *VALUES = sys.argv[1:]
TARGETS = {"files": "text/uri-list", "picture": "image/png", "text": "text/plain"}
FILES = Gtk.TargetEntry.new("text/uri-list", 0, 0)


def give(_widget, _context, data, _info, _time):
    if TYPE == "files":
        data.set_uris(VALUES)
    elif TYPE == "picture":
        with open(VALUES[0], "rb") as file:
            data.set(data.get_target(), 8, file.read())
    else:
        data.set_text(VALUES[0], -1)


def take(_widget, _context, _x, _y, data, _info, _time):
    for address in data.get_uris():
        path = urllib.parse.unquote(urllib.parse.urlparse(address).path)
        print("drop", shutil.copy(path, FOLDER), flush=True)


def main():
    window = Gtk.Window(title="Partner")
    window.set_default_size(160, 160)
    window.connect("destroy", Gtk.main_quit)
    area = Gtk.EventBox()
    area.add(Gtk.Label(label="drag me, drop on me"))
    window.add(area)
    area.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, [Gtk.TargetEntry.new(TARGETS[TYPE], 0, 0)],
                         Gdk.DragAction.COPY)
    area.connect("drag-data-get", give)
    refused = []
    area.connect("drag-failed", lambda *_: refused.append(True))
    area.connect("drag-end", lambda *_: print("drag", "refused" if refused else "accepted", flush=True))
    area.drag_dest_set(Gtk.DestDefaults.ALL, [FILES], Gdk.DragAction.COPY)
    area.connect("drag-data-received", take)
    window.show_all()
    Gtk.main()


main()
