"""A clipboard owner of any behaviour: owner.py WAY TARGET=HEX… takes CLIPBOARD and serves exactly these targets.

`honest` serves them well; what the other ways do to UTF8_STRING stands in `PIECES` and in `main`. Prints "owner" once it
has the clipboard and "asked" when somebody wants UTF8_STRING of it.
"""
import ctypes
import itertools
import os
import sys
import time
from ctypes import byref, c_int, c_long, c_ulong, c_void_p

x = ctypes.CDLL("libX11.so.6")
x.XOpenDisplay.restype = c_void_p
x.XDefaultRootWindow.restype = x.XCreateSimpleWindow.restype = x.XInternAtom.restype = c_ulong
PROPERTY, CLEAR, REQUEST, ANSWER = 28, 29, 30, 31
MIB = b"0123456789abcde\n" * (1 << 16)

# What is sent in chunks: the size that is announced and the chunks. The last one of a whole transfer is empty, and None
# is the owner's end.
PIECES = {
    "stops half-way": (100, [b"half"]),
    "goes on for ever": (100, itertools.repeat(MIB)),
    "lies about the size": (0xFFFFFFFF, [b"tiny", b""]),
    "sends 2 GB": (1 << 31, itertools.chain(itertools.repeat(MIB, 2048), [b""])),
    "dies in the middle": (100, [b"half", None]),
}


class Event(ctypes.Structure):  # XSelectionRequestEvent, the longest of those here
    _fields_ = [("type", c_int), ("serial", c_ulong), ("send_event", c_int), ("display", c_void_p),
                ("owner", c_ulong), ("requestor", c_ulong), ("selection", c_ulong), ("target", c_ulong),
                ("property", c_ulong), ("time", c_ulong), ("room", c_long * 14)]


class Change(ctypes.Structure):  # XPropertyEvent
    _fields_ = [("type", c_int), ("serial", c_ulong), ("send_event", c_int), ("display", c_void_p),
                ("window", c_ulong), ("atom", c_ulong), ("time", c_ulong), ("state", c_int)]


class Answer(ctypes.Structure):  # XSelectionEvent
    _fields_ = [("type", c_int), ("serial", c_ulong), ("send_event", c_int), ("display", c_void_p),
                ("requestor", c_ulong), ("selection", c_ulong), ("target", c_ulong), ("property", c_ulong),
                ("time", c_ulong), ("room", c_long * 15)]


class Owner:
    def __init__(self, way, targets):
        self.display = c_void_p(x.XOpenDisplay(None))
        self.window = x.XCreateSimpleWindow(self.display, c_ulong(x.XDefaultRootWindow(self.display)), 0, 0, 1, 1, 0,
                                            c_ulong(0), c_ulong(0))
        self.way = way
        self.served = {self.atom(name): data for name, data in targets.items()}
        self.size, pieces = PIECES.get(way, (0, []))
        self.pieces = iter(pieces)

    def atom(self, name):
        return x.XInternAtom(self.display, name.encode(), 0)

    def own(self, selection="CLIPBOARD", window=None):
        x.XSetSelectionOwner(self.display, c_ulong(self.atom(selection)),
                             c_ulong(self.window if window is None else window), c_ulong(0))
        x.XSync(self.display, 0)

    def next_event(self):
        event = Event()
        x.XNextEvent(self.display, byref(event))
        return event

    def put(self, request, kind, form, data, count):
        x.XChangeProperty(self.display, c_ulong(request.requestor), c_ulong(request.property), c_ulong(kind),
                          form, 0, data, count)

    def answer(self, request, has_data):
        answer = Answer(type=ANSWER, requestor=request.requestor, selection=request.selection, target=request.target,
                        property=request.property if has_data else 0, time=request.time)
        x.XSendEvent(self.display, c_ulong(request.requestor), 0, c_long(0), byref(answer))
        x.XFlush(self.display)

    def handle(self, request):
        is_text = request.target == self.atom("UTF8_STRING")
        if is_text:
            print("asked", flush=True)
        if self.way == "answers nothing" or self.way == "answers TARGETS only" and is_text:
            return
        if request.target == self.atom("TARGETS"):
            kinds = (c_long * (len(self.served) + 1))(request.target, *self.served)
            self.put(request, self.atom("ATOM"), 32, kinds, len(kinds))
        elif is_text and self.way in PIECES:
            x.XSelectInput(self.display, c_ulong(request.requestor), c_long(1 << 22))
            self.put(request, self.atom("INCR"), 32, (c_long * 1)(self.size), 1)
            self.transfer = request
        elif is_text and self.way == "sends a wrong type":
            self.put(request, self.atom("INTEGER"), 32, (c_long * 2)(1, 2), 2)
        elif request.target in self.served:
            data = self.served[request.target]
            self.put(request, request.target, 8, data, len(data))
        self.answer(request, request.target in self.served or request.target == self.atom("TARGETS"))

    def send_next(self):
        piece = next(self.pieces, self)  # itself: nothing more is sent, not even the end
        if piece is None:
            os._exit(0)
        if piece is not self:
            self.put(self.transfer, self.atom("UTF8_STRING"), 8, piece, len(piece))
            x.XFlush(self.display)

    def save_for_others(self):
        """A clipboard manager: takes over what it is asked to save."""
        self.own("CLIPBOARD_MANAGER")
        print("owner", flush=True)
        saving = self.next_event()
        x.XConvertSelection(self.display, c_ulong(self.atom("CLIPBOARD")), c_ulong(self.atom("UTF8_STRING")),
                            c_ulong(self.atom("SAVED")), c_ulong(self.window), c_ulong(0))
        while self.next_event().type != ANSWER:
            pass
        kind, form, count, rest, data = c_ulong(), c_int(), c_ulong(), c_ulong(), c_void_p()
        x.XGetWindowProperty(self.display, c_ulong(self.window), c_ulong(self.atom("SAVED")), c_long(0), c_long(9999),
                             0, c_ulong(0), byref(kind), byref(form), byref(count), byref(rest), byref(data))
        self.served = {self.atom("UTF8_STRING"): ctypes.string_at(data, count.value)}
        self.own()
        self.answer(saving, True)

    def serve(self):
        while True:
            event = self.next_event()
            if event.type == CLEAR:
                return
            if event.type == REQUEST:
                self.handle(event)
            elif event.type == PROPERTY and ctypes.cast(byref(event), ctypes.POINTER(Change)).contents.state == 1:
                self.send_next()


def main(way, *arguments):
    owner = Owner(way, {name: bytes.fromhex(value) for name, _, value in
                        (argument.rpartition("=") for argument in arguments)})
    if way == "saves for others":
        owner.save_for_others()
    elif way == "asks and takes nothing":
        x.XConvertSelection(owner.display, c_ulong(owner.atom("CLIPBOARD")), c_ulong(owner.atom("UTF8_STRING")),
                            c_ulong(owner.atom("SAVED")), c_ulong(owner.window), c_ulong(0))
        x.XSync(owner.display, 0)
        print("owner", flush=True)
    else:
        owner.own()
        print("owner", flush=True)
    while way == "takes and drops it all the time":
        owner.own()
        owner.own(window=0)
        time.sleep(0.0005)
    owner.serve()


main(*sys.argv[1:])
