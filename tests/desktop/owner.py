"""A clipboard owner of any behaviour: owner.py WAY TARGET=HEX… takes CLIPBOARD and serves exactly these targets.

`honest` serves them well; what the other ways do to UTF8_STRING stands in `PIECES` and below. Prints "owner" once it
has the clipboard.
"""
import itertools
import os
import sys
import time

from Xlib import X, Xatom, display
from Xlib.protocol import event

CHUNK = b"0123456789abcde\n" * (1 << 13)

# What is sent in chunks. The last one of a whole transfer is empty, and None is the owner's end.
PIECES = {
    "stops half-way": [b"half"],
    "goes on for ever": itertools.repeat(CHUNK),
    "dies in the middle": [b"half", None],
}


class Owner:
    def __init__(self, way, targets):
        self.display, self.way = display.Display(), way
        self.window = self.display.screen().root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        self.atom = self.display.intern_atom
        self.text = self.atom("UTF8_STRING")
        self.served = {self.atom(name): data for name, data in targets.items()}
        self.pieces = iter(PIECES.get(way, []))
        self.transfer = None

    def own(self, selection="CLIPBOARD"):
        self.window.set_selection_owner(self.atom(selection), X.CurrentTime)
        self.display.sync()

    def convert(self):
        self.window.convert_selection(self.atom("CLIPBOARD"), self.text, self.atom("SAVED"), X.CurrentTime)
        self.display.sync()

    def answer(self, request, has_data):
        request.requestor.send_event(event.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection, target=request.target,
            property=request.property if has_data else X.NONE))
        self.display.flush()

    def handle(self, request):
        put, is_text = request.requestor.change_property, request.target == self.text
        if self.way == "answers nothing" or self.way == "answers TARGETS only" and is_text:
            return
        if request.target == self.atom("TARGETS"):
            put(request.property, Xatom.ATOM, 32, [request.target, *self.served])
        elif is_text and self.way in PIECES:
            request.requestor.change_attributes(event_mask=X.PropertyChangeMask)
            put(request.property, self.atom("INCR"), 32, [100])
            self.transfer = request
        elif request.target in self.served:
            put(request.property, request.target, 8, self.served[request.target])
        self.answer(request, request.target in (self.atom("TARGETS"), *self.served))

    def send_next(self):
        piece = next(self.pieces, b"")
        if piece is None:
            os._exit(0)
        if piece:  # else nothing more is sent, not even the end
            self.transfer.requestor.change_property(self.transfer.property, self.text, 8, piece)
            self.display.flush()

    def save_for_others(self, saving):
        """As a program does that keeps what others leave behind."""
        self.convert()
        while self.display.next_event().type != X.SelectionNotify:
            pass
        self.served = {self.text: self.window.get_full_property(self.atom("SAVED"), X.AnyPropertyType).value}
        self.own()
        self.answer(saving, True)

    def start(self):
        if self.way == "saves for others":
            self.own("CLIPBOARD_MANAGER")
        elif self.way == "asks and takes nothing":
            self.convert()
        else:
            self.own()
        print("owner", flush=True)
        nobody = self.display.create_resource_object("window", X.NONE)
        while self.way == "takes and drops it all the time":
            self.own()
            nobody.set_selection_owner(self.atom("CLIPBOARD"), X.CurrentTime)
            self.display.sync()
            time.sleep(0.0005)

    def serve(self):
        while (news := self.display.next_event()).type != X.SelectionClear:
            if news.type == X.SelectionRequest:
                is_saving = news.selection == self.atom("CLIPBOARD_MANAGER")
                self.save_for_others(news) if is_saving else self.handle(news)
            elif news.type == X.PropertyNotify and news.state == X.PropertyDelete and self.transfer:
                self.send_next()


pairs = (argument.rpartition("=") for argument in sys.argv[2:])
owner = Owner(sys.argv[1], {name: bytes.fromhex(value) for name, _, value in pairs})
owner.start()
owner.serve()
