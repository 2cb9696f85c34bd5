#!/usr/bin/python3
"""What a screen reader knows of the programs on this desktop. For each line that it reads, it prints a line
of JSON: everything that is showing now, with role, name, description, states and place on the screen.

A process of its own, because the library that it stands on ends the process whose bus goes away."""

import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

STATES = {"FOCUSED": "focused", "CHECKED": "checked", "ENABLED": "enabled", "SHOWING": "showing",
          "FOCUSABLE": "focusable", "ACTIVE": "active"}


def states_of(item):
    known = item.get_state_set()
    return [told for name, told in STATES.items() if known.contains(getattr(Atspi.StateType, name))]


def facts_of(item, program):
    place = item.get_extents(Atspi.CoordType.SCREEN)
    facts = {"program": program, "role": item.get_role_name(), "name": item.get_name(),
             "description": item.get_description(), "states": states_of(item),
             "place": [place.x, place.y, place.width, place.height]}
    interfaces = item.get_interfaces()
    if "Text" in interfaces:
        facts["text"] = Atspi.Text.get_text(item, 0, -1)
    if "Value" in interfaces:
        facts["value"] = Atspi.Value.get_current_value(item)
    return facts


def walk(item, program, found):
    try:
        item.clear_cache()
        facts = facts_of(item, program)
        if "showing" not in facts["states"]:
            return
        found.append(facts)
        for index in range(item.get_child_count()):
            child = item.get_child_at_index(index)
            if child is not None:
                walk(child, program, found)
    except GLib.Error:
        pass  # it went while it was looked at


def showing_of(name):
    found = []
    desktop = Atspi.get_desktop(0)
    desktop.clear_cache()
    for index in range(desktop.get_child_count()):
        program = desktop.get_child_at_index(index)
        if program is not None and program.get_name() == name:
            walk(program, name, found)
    return found


def main():
    Atspi.init()
    for line in sys.stdin:
        print(json.dumps(showing_of(line.strip())), flush=True)


main()
