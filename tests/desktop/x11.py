"""What the tests do on an X display: fingers on the keyboard, the mouse, a look at windows, a picture of the screen."""
import contextlib
import time
from typing import NamedTuple

from PIL import ImageGrab
from Xlib import XK, X, display, error
from Xlib.ext import xinput, xtest
from Xlib.protocol import event, rq

XK.load_keysym_group("xkb")


class Rect(NamedTuple):
    x: int
    y: int
    width: int
    height: int

    @property
    def centre(self):
        return self.x + self.width // 2, self.y + self.height // 2

    def holds(self, other):
        return (self.x <= other.x and self.y <= other.y and other.x + other.width <= self.x + self.width
                and other.y + other.height <= self.y + self.height)


class _DeviceKey(rq.Request):
    """XTEST's request for a key of one keyboard, for which the library has none."""

    _request = rq.Struct(rq.Card8("opcode"), rq.Opcode(2), rq.RequestLength(), rq.Card8("kind"), rq.Card8("key"),
                         rq.Pad(29), rq.Card8("device"))


class X11:
    """A connection of the test's own. A window that vanishes meanwhile gives empty answers, not an end of the test."""

    def __init__(self, name, hands=None):
        """`hands`: the connection to the server that this one is a window of; keys and clicks are made there."""
        self.name, self.display, self.hands = name, display.Display(name), hands
        self.display.set_error_handler(lambda *_: None)
        self.root_window = self.display.screen().root
        self.root = self.root_window.id
        if hands:
            self.key, self.move, self.button = hands.key, hands.move, hands.button
        else:
            # A device of its own beside the XTEST one, so the server takes its keys for a person's.
            devices = self.display.xinput_query_device(xinput.AllDevices).devices
            self.keyboard = next(device.deviceid for device in devices if device.name == "Xvfb keyboard")

    def close(self):
        for connection in filter(None, (self, self.hands)):
            with contextlib.suppress(error.ConnectionClosedError):
                connection.display.close()

    # Properties and windows

    def window(self, number):
        return self.display.create_resource_object("window", number)

    def atom(self, name):
        return self.display.get_atom(name)

    def property(self, window, name):
        try:
            return self.window(window).get_full_property(self.atom(name), X.AnyPropertyType).value
        except (error.BadWindow, AttributeError):
            return b""

    def numbers(self, window, name):
        return list(self.property(window, name))

    def owner(self, selection):
        owner = self.display.get_selection_owner(self.atom(selection))
        return owner and owner.id

    def wm_class(self, window):
        return [part.decode() for part in self.property(window, "WM_CLASS").split(b"\0")[:2]]

    def title(self, window):
        return (self.property(window, "_NET_WM_NAME") or self.property(window, "WM_NAME")).decode("utf-8", "replace")

    def tree(self, window=None):
        try:
            children = self.window(window or self.root).query_tree().children
        except error.BadWindow:
            return
        for child in children:
            yield child.id
            yield from self.tree(child.id)

    def rect(self, window):
        """Where the window is on the screen; none while it is not seen."""
        try:
            shown = self.window(window)
            if shown.get_attributes().map_state == X.IsViewable:
                size, place = shown.get_geometry(), self.root_window.translate_coords(shown, 0, 0)
                return Rect(place.x, place.y, size.width, size.height)
        except (error.BadWindow, error.BadDrawable):
            pass
        return None

    def windows(self, name, seen=True):
        """The windows with this class or instance, letter case aside, at any depth."""
        return [window for window in self.tree()
                if name.lower() in map(str.lower, self.wm_class(window)) and (self.rect(window) or not seen)]

    def clients(self):
        return self.numbers(self.root, "_NET_CLIENT_LIST")

    def active(self):
        return (self.numbers(self.root, "_NET_ACTIVE_WINDOW") or [0])[0]

    def activate(self, window):
        self.ask("_NET_ACTIVE_WINDOW", window, 2)

    def ask(self, name, window, *data, to=None):
        """A client message, to the window manager unless told."""
        message = event.ClientMessage(window=window, client_type=self.atom(name), data=(32, [*data, 0, 0, 0, 0, 0][:5]))
        mask = 0 if to else X.SubstructureNotifyMask | X.SubstructureRedirectMask
        self.window(to or self.root).send_event(message, mask)
        self.display.sync()

    # The keyboard

    def keys_down(self):
        """The codes of the keys that are down on any keyboard."""
        return {code for code in range(256) if self.display.query_keymap()[code // 8] >> code % 8 & 1}

    def keycode(self, keysym):
        """The key, and whether it takes Shift."""
        while self.display.pending_events():
            change = self.display.next_event()
            if change.type == X.MappingNotify:
                self.display.refresh_keyboard_mapping(change)
        value = ord(keysym) if len(keysym) == 1 else XK.string_to_keysym(keysym)
        code = self.display.keysym_to_keycode(value)
        if not value or not code:
            raise ValueError(f"no key for {keysym!r}")
        return code, self.display.keycode_to_keysym(code, 0) != value

    def key(self, keysym, down):
        kind = self.display.query_extension("XInputExtension").first_event + (1 if down else 2)
        _DeviceKey(display=self.display.display, opcode=self.display.display.get_extension_major(xtest.extname),
                   kind=kind, key=self.keycode(keysym)[0], device=self.keyboard)
        self.display.sync()

    def chord(self, *keysyms):
        for keysym in keysyms:
            self.key(keysym, True)
        for keysym in reversed(keysyms):
            self.key(keysym, False)

    def type(self, text):
        for character in text:
            keysym = "Return" if character == "\n" else character
            self.chord(*(["Shift_L"] if self.keycode(keysym)[1] else []), keysym)
            time.sleep(0.004)  # a fast typist; editors drop nothing at this pace

    def fake_key(self, keysym, down):
        """As programs do that bring somebody's keys here from another machine."""
        self._fake(X.KeyPress if down else X.KeyRelease, self.keycode(keysym)[0])

    def grab(self, keysym, modifiers):
        """Takes a combination away from everybody else; false when somebody has it already."""
        refusal = error.CatchError(error.BadAccess)
        self.root_window.grab_key(self.keycode(keysym)[0], modifiers, False, X.GrabModeAsync, X.GrabModeAsync, refusal)
        self.display.sync()
        return not refusal.get_error()

    # The mouse

    def _fake(self, kind, detail=0, x=0, y=0):
        self.display.xtest_fake_input(kind, detail, x=int(x), y=int(y))
        self.display.sync()

    def move(self, x, y):
        self._fake(X.MotionNotify, x=x, y=y)

    def button(self, number, down):
        self._fake(X.ButtonPress if down else X.ButtonRelease, number)

    def click(self, x, y, button=1):
        self.move(x, y)
        self.button(button, True)
        self.button(button, False)
        time.sleep(0.05)  # window managers hold a click back while they raise a window; no hand types before that

    # The screen

    def paint_root(self, colour):
        self.root_window.change_attributes(background_pixel=colour)
        self.root_window.clear_area()
        self.display.sync()

    def pixels(self, rect=None):
        """Blue, green, red and nothing, a byte each, of each point of the rectangle or of the screen."""
        return self.root_window.get_image(*(rect or self.rect(self.root)), X.ZPixmap, 0xFFFFFFFF).data

    def is_still(self):
        """Waits until nothing on the screen has moved for a moment."""
        seen, before = self.pixels(), None
        while seen != before:
            time.sleep(0.1)
            seen, before = self.pixels(), seen
        return True

    def screenshot(self, path, rect=None):
        x, y, width, height = rect or self.rect(self.root)
        ImageGrab.grab((x, y, x + width, y + height), xdisplay=self.name).save(path)
