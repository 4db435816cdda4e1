"""A clipboard owner of any behaviour: owner.py [--silent] TARGET=HEX… takes CLIPBOARD and serves exactly these targets.

With --silent it owns the clipboard and answers nobody. Prints "owner" once it has it.
"""
import ctypes
import sys
from ctypes import byref, c_int, c_long, c_ulong, c_void_p

x = ctypes.CDLL("libX11.so.6")
x.XOpenDisplay.restype = c_void_p
x.XDefaultRootWindow.restype = x.XCreateSimpleWindow.restype = x.XInternAtom.restype = c_ulong


class Request(ctypes.Structure):  # XSelectionRequestEvent; the answer, XSelectionEvent, has the same fields but owner
    _fields_ = [("type", c_int), ("serial", c_ulong), ("send_event", c_int), ("display", c_void_p),
                ("owner", c_ulong), ("requestor", c_ulong), ("selection", c_ulong), ("target", c_ulong),
                ("property", c_ulong), ("time", c_ulong), ("room", c_long * 14)]


class Answer(ctypes.Structure):
    _fields_ = [("type", c_int), ("serial", c_ulong), ("send_event", c_int), ("display", c_void_p),
                ("requestor", c_ulong), ("selection", c_ulong), ("target", c_ulong), ("property", c_ulong),
                ("time", c_ulong), ("room", c_long * 15)]


def main(arguments):
    display = c_void_p(x.XOpenDisplay(None))

    def atom(name):
        return x.XInternAtom(display, name.encode(), 0)

    silent = "--silent" in arguments
    served = {atom(name): bytes.fromhex(value) for name, _, value in
              (argument.rpartition("=") for argument in arguments if argument != "--silent")}
    kinds = (c_long * (len(served) + 1))(atom("TARGETS"), *served)
    window = x.XCreateSimpleWindow(display, c_ulong(x.XDefaultRootWindow(display)), 0, 0, 1, 1, 0, c_ulong(0),
                                   c_ulong(0))
    x.XSetSelectionOwner(display, c_ulong(atom("CLIPBOARD")), c_ulong(window), c_ulong(0))
    x.XSync(display, 0)
    print("owner", flush=True)

    event = Request()
    while True:
        x.XNextEvent(display, byref(event))
        if event.type == 29:  # SelectionClear
            return
        if event.type != 30 or silent:
            continue
        kind, form, data, count = event.target, 8, served.get(event.target), 0
        if event.target == atom("TARGETS"):
            kind, form, data, count = atom("ATOM"), 32, kinds, len(kinds)
        if data is not None:
            x.XChangeProperty(display, c_ulong(event.requestor), c_ulong(event.property), c_ulong(kind), form, 0, data,
                              count or len(data))
        answer = Answer(type=31, requestor=event.requestor, selection=event.selection, target=event.target,
                        property=event.property if data is not None else 0, time=event.time)
        x.XSendEvent(display, c_ulong(event.requestor), 0, c_long(0), byref(answer))
        x.XFlush(display)


main(sys.argv[1:])
