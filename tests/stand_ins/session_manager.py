#!/usr/bin/python3
"""A session manager of X11, on the system's own libraries. It prints its address, and then follows one word
a line: "ask" has every program put its data away for a log-out, "cancel" takes that back, "die" ends them.
It prints "registered" for each program that comes, and "saved" for each that has put its data away."""

import ctypes
import select
import sys
from ctypes import CFUNCTYPE, POINTER, Structure, byref, c_char_p, c_int, c_ulong, c_void_p

ICE = ctypes.CDLL("libICE.so.6")
SM = ctypes.CDLL("libSM.so.6")
LOCAL, GLOBAL = 1, 0  # whose data is put away: the programs' own, or what others see too
NO_TALK, ANY_TALK = 0, 2  # whether a program may ask the person something

for library, names in ((ICE, ("IceComposeNetworkIdList", "IceAcceptConnection")), (SM, ("SmsGenerateClientID",))):
    for name in names:
        getattr(library, name).restype = c_void_p

TRUSTING = CFUNCTYPE(c_int, c_char_p)
REGISTER = CFUNCTYPE(c_int, c_void_p, c_void_p, c_void_p)
EVENT = CFUNCTYPE(None, c_void_p, c_void_p, c_void_p, c_void_p)


class Callback(Structure):
    _fields_ = [("call", c_void_p), ("data", c_void_p)]


# In the order of the library's own structure: register, interact request and done, save request and phase 2,
# save done, close, set, delete and get properties.
Callbacks = Callback * 10
NEW_CLIENT = CFUNCTYPE(c_int, c_void_p, c_void_p, POINTER(c_ulong), POINTER(Callbacks), c_void_p)

programs, keep = [], []


def say(*words):
    print(*words, flush=True)


@REGISTER
def register(program, _data, _former):
    number = c_void_p(SM.SmsGenerateClientID(c_void_p(program)))
    SM.SmsRegisterClientReply(c_void_p(program), number)
    SM.SmsSaveYourself(c_void_p(program), LOCAL, 0, NO_TALK, 0)
    programs.append(program)
    say("registered")
    return 1


@EVENT
def saved(program, _data, _success, _more):
    SM.SmsSaveComplete(c_void_p(program))
    say("saved")


@EVENT
def nothing(_program, _data, _more, _still_more):
    pass


@EVENT
def closed(program, _data, _count, _reasons):
    programs.remove(program)


@NEW_CLIENT
def new_client(_program, _data, mask, callbacks, _reason):
    mask[0] = (1 << 10) - 1
    calls = [register, nothing, nothing, nothing, nothing, saved, closed, nothing, nothing, nothing]
    for place, call in enumerate(calls):
        callbacks[0][place] = Callback(ctypes.cast(call, c_void_p), None)
    return 1


@TRUSTING
def trust(_host):
    return 1


def listen():
    count, places, trouble = c_int(), c_void_p(), ctypes.create_string_buffer(256)
    assert SM.SmsInitialize(b"Test", b"1", new_client, None, trust, 256, trouble), trouble.value
    assert ICE.IceListenForConnections(byref(count), byref(places), 256, trouble), trouble.value
    found = [c_void_p(place) for place in ctypes.cast(places, POINTER(c_void_p))[:count.value]]
    for place in found:
        ICE.IceSetHostBasedAuthProc(place, trust)
    keep.append(places)
    say(ctypes.string_at(ICE.IceComposeNetworkIdList(count, places)).decode())
    return {ICE.IceGetListenConnectionNumber(place): place for place in found}


def obey(word):
    for program in list(programs):
        if word == "ask":
            SM.SmsSaveYourself(c_void_p(program), GLOBAL, 1, ANY_TALK, 0)
        elif word == "cancel":
            SM.SmsShutdownCancelled(c_void_p(program))
        elif word == "die":
            SM.SmsDie(c_void_p(program))


def main():
    places, connections = listen(), {}
    while True:
        ready, _, _ = select.select([sys.stdin, *places, *connections], [], [])
        for source in ready:
            if source is sys.stdin:
                obey(sys.stdin.readline().strip())
            elif source in places:
                status = c_int()
                connection = c_void_p(ICE.IceAcceptConnection(places[source], byref(status)))
                connections[ICE.IceConnectionNumber(connection)] = connection
            elif ICE.IceProcessMessages(connections[source], None, None) != 0:
                del connections[source]


main()
