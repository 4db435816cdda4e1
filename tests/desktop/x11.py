"""What the tests do on an X display: fingers on the keyboard, the mouse, a look at windows, a picture of the screen."""
import ctypes
import struct
import time
import zlib
from ctypes import POINTER, byref, c_char_p, c_int, c_uint, c_ulong, c_void_p
from typing import NamedTuple


_x, _xi, _xtst = (ctypes.CDLL(name) for name in ("libX11.so.6", "libXi.so.6", "libXtst.so.6"))
_Handler = ctypes.CFUNCTYPE(c_int, c_void_p, c_void_p)


class _DeviceInfo(ctypes.Structure):
    _fields_ = [("id", c_ulong), ("type", c_ulong), ("name", c_char_p), ("classes", c_int), ("use", c_int),
                ("class_info", c_void_p)]


class _Attributes(ctypes.Structure):
    _fields_ = [("x", c_int), ("y", c_int), ("width", c_int), ("height", c_int), ("border", c_int), ("depth", c_int),
                ("visual", c_void_p), ("root", c_ulong), ("class_", c_int), ("bit_gravity", c_int),
                ("window_gravity", c_int), ("backing_store", c_int), ("planes", c_ulong), ("pixel", c_ulong),
                ("save_under", c_int), ("colormap", c_ulong), ("installed", c_int), ("map_state", c_int),
                ("all_masks", ctypes.c_long), ("mask", ctypes.c_long), ("no_propagate", ctypes.c_long),
                ("override_redirect", c_int), ("screen", c_void_p)]


class _KeyState(ctypes.Structure):
    _fields_ = [("class_", ctypes.c_ubyte), ("length", ctypes.c_ubyte), ("count", ctypes.c_short),
                ("keys", ctypes.c_ubyte * 32)]


class _DeviceState(ctypes.Structure):
    _fields_ = [("device", c_ulong), ("classes", c_int), ("first", POINTER(_KeyState))]


class _Image(ctypes.Structure):
    _fields_ = [("width", c_int), ("height", c_int), ("x_offset", c_int), ("format", c_int), ("data", c_void_p),
                ("byte_order", c_int), ("unit", c_int), ("bit_order", c_int), ("pad", c_int), ("depth", c_int),
                ("bytes_per_line", c_int), ("bits_per_pixel", c_int)]


class _ClientMessage(ctypes.Structure):
    _fields_ = [("type", c_int), ("serial", c_ulong), ("send_event", c_int), ("display", c_void_p),
                ("window", c_ulong), ("message", c_ulong), ("format", c_int), ("data", ctypes.c_long * 5),
                ("room", ctypes.c_long * 12)]


def _declare(library, result, *names):
    for name in names:
        getattr(library, name).restype = result


_declare(_x, c_void_p, "XOpenDisplay", "XGetImage")
_declare(_x, c_ulong, "XDefaultRootWindow", "XInternAtom", "XGetSelectionOwner", "XStringToKeysym",
         "XCreateSimpleWindow",
         "XkbKeycodeToKeysym")
_declare(_xi, POINTER(_DeviceInfo), "XListInputDevices")
_declare(_xi, c_void_p, "XOpenDevice")
_declare(_xi, POINTER(_DeviceState), "XQueryDeviceState")


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


class X11:
    """A connection of the test's own. A window that vanishes meanwhile gives empty answers, not an end of the test."""

    def __init__(self, name, hands=None):
        """`hands`: the connection to the server that this one is a window of; keys and clicks are made there."""
        self._error = 0
        self._handler = _Handler(self._note_error)  # kept: the library only borrows it
        _x.XSetErrorHandler(self._handler)
        self._display = c_void_p(_x.XOpenDisplay(name.encode()))
        if not self._display:
            raise RuntimeError(f"no X server on {name}")
        self.root = _x.XDefaultRootWindow(self._display)
        self._keyboard = self._open_keyboard()
        self._hands = hands
        if hands:
            self.key, self.move, self.button = hands.key, hands.move, hands.button

    def _note_error(self, _display, event):
        # XErrorEvent: int type, Display*, XID, unsigned long serial, then the code.
        self._error = ctypes.cast(event + 32, POINTER(ctypes.c_ubyte)).contents.value
        return 0

    def close(self):
        _x.XCloseDisplay(self._display)
        if self._hands:
            self._hands.close()

    # Properties and windows

    def atom(self, name):
        return _x.XInternAtom(self._display, name.encode(), 0)

    def property(self, window, name):
        """The property's bytes; 32-bit items are widened to 8 bytes each, as the library hands them out."""
        kind, form, count, rest, data = c_ulong(), c_int(), c_ulong(), c_ulong(), c_void_p()
        if _x.XGetWindowProperty(self._display, c_ulong(window), c_ulong(self.atom(name)), ctypes.c_long(0),
                                 ctypes.c_long(4096), 0, c_ulong(0), byref(kind), byref(form), byref(count),
                                 byref(rest), byref(data)) != 0 or not data:
            return b""
        value = ctypes.string_at(data, count.value * {8: 1, 16: 2, 32: 8}.get(form.value, 0))
        _x.XFree(data)
        return value

    def numbers(self, window, name):
        value = self.property(window, name)
        return list(struct.unpack(f"{len(value) // 8}L", value))

    def owner(self, selection):
        return _x.XGetSelectionOwner(self._display, c_ulong(self.atom(selection)))

    def wm_class(self, window):
        return [part.decode() for part in self.property(window, "WM_CLASS").split(b"\0")[:2]]

    def title(self, window):
        return (self.property(window, "_NET_WM_NAME") or self.property(window, "WM_NAME")).decode("utf-8", "replace")

    def children(self, window):
        root, parent, found, count = c_ulong(), c_ulong(), POINTER(c_ulong)(), c_uint()
        if not _x.XQueryTree(self._display, c_ulong(window), byref(root), byref(parent), byref(found), byref(count)):
            return []
        windows = found[:count.value] if count.value else []
        if found:
            _x.XFree(found)
        return windows

    def tree(self, window=None):
        for child in self.children(window or self.root):
            yield child
            yield from self.tree(child)

    def rect(self, window):
        """Where the window is on the screen; none while it is not seen."""
        seen, x, y, child = _Attributes(), c_int(), c_int(), c_ulong()
        if not _x.XGetWindowAttributes(self._display, c_ulong(window), byref(seen)) or seen.map_state != 2:
            return None
        _x.XTranslateCoordinates(self._display, c_ulong(window), c_ulong(self.root), 0, 0, byref(x), byref(y),
                                 byref(child))
        return Rect(x.value, y.value, seen.width, seen.height)

    def windows(self, name, seen=True):
        """The windows with this class or instance, letter case aside, at any depth."""
        return [window for window in self.tree()
                if name.lower() in map(str.lower, self.wm_class(window)) and (self.rect(window) or not seen)]

    def clients(self):
        return self.numbers(self.root, "_NET_CLIENT_LIST")

    def active(self):
        return (self.numbers(self.root, "_NET_ACTIVE_WINDOW") or [0])[0]

    def focus(self):
        window, revert = c_ulong(), c_int()
        _x.XGetInputFocus(self._display, byref(window), byref(revert))
        return window.value

    def activate(self, window):
        self.ask("_NET_ACTIVE_WINDOW", window, 2)

    def ask(self, name, window, *data):
        """A client message to the window manager."""
        message = _ClientMessage(type=33, window=window, message=self.atom(name), format=32)
        message.data[:len(data)] = data
        _x.XSendEvent(self._display, c_ulong(self.root), 0, ctypes.c_long(0x180000), byref(message))
        _x.XSync(self._display, 0)

    # The keyboard: a device of its own beside the XTEST one, so the server takes these keys for a person's

    def _keyboards(self):
        """The names and numbers of all keyboards that keys are pressed on."""
        count = c_int()
        devices = _xi.XListInputDevices(self._display, byref(count))
        found = {devices[i].name: devices[i].id for i in range(count.value) if devices[i].use == 3}
        _xi.XFreeDeviceList(devices)
        return found

    def _open_device(self, number):
        return c_void_p(_xi.XOpenDevice(self._display, c_ulong(number)))

    def _open_keyboard(self):
        number = self._keyboards().get(b"Xvfb keyboard")
        return self._open_device(number) if number else None

    def keys_down(self):
        """Pairs of a keyboard and a key that is down on it, the keyboard that applications see among them."""
        core = (ctypes.c_ubyte * 32)()
        _x.XQueryKeymap(self._display, core)
        down = {"core": core}
        for name, number in self._keyboards().items():
            state = _xi.XQueryDeviceState(self._display, self._open_device(number)).contents
            down[name.decode()] = state.first.contents.keys
        return [(name, key) for name, keys in down.items() for key in range(256) if keys[key // 8] >> key % 8 & 1]

    def _keycode(self, keysym):
        value = ord(keysym) if len(keysym) == 1 else _x.XStringToKeysym(keysym.encode())
        code = _x.XKeysymToKeycode(self._display, c_ulong(value))
        if not value or not code:
            raise ValueError(f"no key for {keysym!r}")
        return code, _x.XkbKeycodeToKeysym(self._display, code, 0, 0) != value

    def key(self, keysym, down):
        _xtst.XTestFakeDeviceKeyEvent(self._display, self._keyboard, self._keycode(keysym)[0], int(down), None, 0,
                                      c_ulong(0))
        _x.XSync(self._display, 0)

    def chord(self, *keysyms):
        for keysym in keysyms:
            self.key(keysym, True)
        for keysym in reversed(keysyms):
            self.key(keysym, False)

    def type(self, text):
        for character in text:
            keysym = "Return" if character == "\n" else character
            self.chord(*(["Shift_L"] if self._keycode(keysym)[1] else []), keysym)
            time.sleep(0.004)  # a fast typist; editors drop nothing at this pace

    def fake_key(self, keysym, down):
        """As programs do that bring somebody's keys here from another machine."""
        _xtst.XTestFakeKeyEvent(self._display, c_uint(self._keycode(keysym)[0]), int(down), c_ulong(0))
        _x.XSync(self._display, 0)

    def grab(self, keysym, modifiers):
        """Takes a combination away from everybody else; false when somebody has it already."""
        self._error = 0
        _x.XGrabKey(self._display, self._keycode(keysym)[0], c_uint(modifiers), c_ulong(self.root), 0, 1, 1)
        _x.XSync(self._display, 0)
        return self._error == 0

    # The mouse

    def move(self, x, y):
        _xtst.XTestFakeMotionEvent(self._display, -1, int(x), int(y), c_ulong(0))
        _x.XSync(self._display, 0)

    def button(self, number, down):
        _xtst.XTestFakeButtonEvent(self._display, c_uint(number), int(down), c_ulong(0))
        _x.XSync(self._display, 0)

    def click(self, x, y, button=1):
        self.move(x, y)
        self.button(button, True)
        self.button(button, False)
        time.sleep(0.05)  # window managers hold a click back while they raise a window; no hand types before that

    # The screen

    def paint_root(self, colour):
        _x.XSetWindowBackground(self._display, c_ulong(self.root), c_ulong(colour))
        _x.XClearWindow(self._display, c_ulong(self.root))
        _x.XSync(self._display, 0)

    def pixels(self, rect=None):
        """Red, green and blue of each point of the rectangle, or of the screen."""
        rect = rect or self.rect(self.root)
        image = ctypes.cast(_x.XGetImage(self._display, c_ulong(self.root), *rect, c_ulong(0xFFFFFFFF), 2),
                            POINTER(_Image)).contents
        data = ctypes.string_at(image.data, image.bytes_per_line * image.height)
        _x.XDestroyImage(byref(image))
        pixels = bytearray(rect.width * rect.height * 3)
        for channel in range(3):
            pixels[channel::3] = data[2 - channel::4]
        return pixels

    def screenshot(self, path, rect=None):
        rect = rect or self.rect(self.root)
        width, height = rect[2:]
        pixels = self.pixels(rect)
        rows = b"".join(b"\0" + pixels[y * width * 3:(y + 1) * width * 3] for y in range(height))

        def chunk(kind, body):
            return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))

        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
                       + chunk(b"IDAT", zlib.compress(rows, 1)) + chunk(b"IEND", b""))
