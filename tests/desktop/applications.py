"""The programs in which people copy and paste, and Brindle itself, as the tests use them."""
import contextlib
import json
import os
import reprlib
import sqlite3
import subprocess
import threading
import time
import unittest

from desktop import Desktop
from programs import PROGRAMS, PageServer
from x11 import Rect

BRINDLE = os.path.abspath(os.environ.get("BRINDLE", "build/release/brindle"))
POPOVER = (350, 500)
ROWS_TOP, ROW_HEIGHT = 101, 57  # of rows with one line of text
MENU_PADDING, MENU_ITEM_HEIGHT = 6, 26
HOT_KEY = ("Super_L", "Shift_L", "v")
CYCLING_KEY = ("Control_L", "Super_L", "v")


class Editor:
    """One window of an editor or terminal on a file of its own."""

    def __init__(self, desktop, program, text="", name="notes.txt"):
        self.desktop, self.x, self.program = desktop, desktop.x, program
        self.path = desktop.home / name
        self.path.write_text(text)
        command, window_class, self.bundle_identifier, self.kind, files, environment = PROGRAMS[program]
        for file, content in files.items():
            (desktop.home / file).parent.mkdir(parents=True, exist_ok=True)
            (desktop.home / file).write_text(content)
        page = PageServer(self.path, text) if self.kind == "browser" else None
        command = [word.replace("{home}", str(desktop.home)) for word in command]
        before = set(self.x.windows(window_class))
        self.process = desktop.run(*command, page.address if page else str(self.path), environment=environment)
        self.window = desktop.wait_for(lambda: set(self.x.windows(window_class)) & set(self.x.clients()) - before, 90,
                                       f"window of {program}").pop()
        desktop.await_idle(self.process)
        if page:  # the window comes before the page
            desktop.wait_for(self.path.exists, 60, "page in the browser")
        self.activate()

    @property
    def is_active(self):
        return self.x.active() == self.window

    def activate(self):
        def is_active_now():
            if not self.is_active:
                self.x.activate(self.window)
                time.sleep(0.05)
            return self.is_active
        self.desktop.wait_for(is_active_now, 10, f"{self.program} in front")

    def text(self):
        """What is in the editor now; asks it to save."""
        if self.kind == "editor" and self.is_active:
            self.x.chord("Control_L", "s")
            time.sleep(0.1)  # saving has no sign that tells it from having nothing to save
        return self.path.read_bytes().decode(errors="replace")

    def await_text(self, expected, seconds=10):
        self.desktop.wait_for(lambda: self.text().rstrip("\n") == expected, seconds,
                              lambda: f"{self.program} has {expected!r}; it has {self.text()!r}")

    def copy_all(self):
        self.x.chord("Control_L", "a")
        self.x.chord("Control_L", "c")

    def replace(self, text):
        self.x.chord("Control_L", "a")
        self.x.type(text)


class Brindle:
    """A running Brindle: what it says, what it stores, where it is on the screen."""

    def __init__(self, desktop, program=BRINDLE, **environment):
        self.desktop, self.x = desktop, desktop.x
        self.lines = []
        desktop.brindle = self
        self.process = desktop.run(program, stdout=subprocess.PIPE, environment=environment)
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()
        # The icon is docked, the popover's window is made, and the launch, whose last step is the hot key, is over.
        if desktop.tray_name:
            desktop.wait_for(self.icon, 20, "icon in the tray")
        desktop.wait_for(lambda: self.x.windows("brindle", seen=False), 20, "window of Brindle")
        desktop.await_idle(self.process)

    def _read(self):
        with contextlib.suppress(ValueError):  # the desktop ends and closes the pipe
            for line in self.process.stdout:
                self.lines.append(line.decode("utf-8", "replace").rstrip("\n"))

    def await_line(self, text, seconds=10, since=0):
        """The first line that starts so, counted from line number `since`."""
        def found():
            return next((line for line in self.lines[since:] if line.startswith(text)), None)
        return self.desktop.wait_for(found, seconds, f"line {text!r}")

    # The store

    def setting(self, key):
        """The stored value; none while there is no store that could be read."""
        with contextlib.suppress(sqlite3.DatabaseError), contextlib.closing(
                sqlite3.connect(f"file:{self.desktop.store_path}?mode=ro", uri=True)) as store:
            return dict(store.execute("select key, value from defaults where key = ?", (key,))).get(key)

    def stored(self, key):
        try:
            return json.loads(self.setting(key) or "[]")
        except (ValueError, RecursionError):
            return []

    def history(self):
        """The stored entries, newest first."""
        return self.stored("BrindleHistory")

    def contents(self):
        return [item["content"] for item in self.history()]

    def await_contents(self, expected, seconds=6):
        self.desktop.wait_for(lambda: self.contents() == expected, seconds,
                              lambda: f"history is {reprlib.repr(expected)}; it is {reprlib.repr(self.contents())}")

    # The screen

    def _seen(self, fits):
        """The windows that fit, the newest last, each with its rectangle."""
        shadow = self.x.atom("_NET_WM_WINDOW_TYPE_TOOLTIP")
        windows = [(window, self.x.rect(window)) for window in self.x.windows("brindle")
                   if shadow not in self.x.numbers(window, "_NET_WM_WINDOW_TYPE")]
        return [(window, rect) for window, rect in windows if rect and fits(rect)] or [(None, None)]

    def icon(self):
        return self._seen(lambda rect: rect.width < 64 and rect.height < 64)[0][1]

    def popover_window(self):
        return self._seen(lambda rect: rect.width >= POPOVER[0] and rect.height >= POPOVER[1])[0][0]

    def popover(self):
        """The rectangle of its content, the shadow's margin left out."""
        rect = self._seen(lambda rect: rect.width >= POPOVER[0] and rect.height >= POPOVER[1])[0][1]
        left, top = (32, 22) if rect and rect.width > POPOVER[0] else (0, 0)
        return rect and Rect(rect.x + left, rect.y + top, *POPOVER)

    def sheet(self):
        """The window of a sheet over the popover."""
        return next((self.x.rect(window) for window in self.x.windows("brindle")
                     if self.x.title(window).endswith("— Brindle")), None)

    def menu(self):
        """The rectangle of an open menu, the newest one."""
        return self._seen(lambda rect: rect.width >= 64 and rect.height < POPOVER[1])[-1][1]

    def has_focus(self):
        window = self.popover_window()
        return window and (self.x.active() == window or not self.desktop.window_manager)

    def await_open(self, seconds=5):
        rect = self.desktop.wait_for(self.popover, seconds, "popover is open")
        self.desktop.wait_for(self.has_focus, seconds, "popover has the focus")
        return rect

    def await_closed(self, seconds=5):
        self.desktop.wait_for(lambda: not self.popover(), seconds, "popover is closed")

    def list_length(self):
        """The rows seen, one line of text each: their separators are the only lines across the whole list."""
        rect = self.popover()
        if not rect:
            return 0
        pixels = self.x.pixels(rect)

        def line(y):
            return pixels[(y * rect.width + 20) * 4:(y * rect.width + 330) * 4]
        return sum(line(y) == line(y)[:4] * 310 and line(y) != line(y - 1) and line(y) != line(y + 1)
                   for y in range(ROWS_TOP + 10, POPOVER[1] - 30))

    # The user

    def press_hot_key(self):
        self.x.chord(*HOT_KEY)

    def open(self):
        self.press_hot_key()
        return self.await_open()

    def click_icon(self, button=1):
        self.x.click(*self.desktop.wait_for(self.icon, 5, "icon in the tray").centre, button)

    def click(self, x, y, button=1):
        """At that place in the popover."""
        rect = self.popover()
        self.x.click(rect.x + x, rect.y + y, button)

    def click_row(self, index, button=1):
        self.click(150, ROWS_TOP + index * ROW_HEIGHT + ROW_HEIGHT // 2, button)

    def choose(self, item):
        """Clicks the item of that number in the open menu."""
        rect = self.desktop.wait_for(self.menu, 5, "menu is open")
        self.x.click(rect.x + 40, rect.y + MENU_PADDING + item * MENU_ITEM_HEIGHT + MENU_ITEM_HEIGHT // 2)

    def choose_from_header(self, item):
        self.click(319, 32)
        self.choose(item)

    def search(self, text):
        self.click(150, 32)
        self.x.type(text)

    def kill(self):
        self.process.kill()
        self.process.wait()

    def complaints(self):
        """What the sanitizers said."""
        output = self.desktop.output_of(self.process)
        return [line for line in output.splitlines() if "Sanitizer" in line or "runtime error" in line]


class DesktopTest(unittest.TestCase):
    """A test with desktops of its own; options of the class and of each call go to `Desktop`."""

    options = {}

    @contextlib.contextmanager
    def running(self, **options):
        """A desktop; a Brindle on it that a sanitizer complained about fails the test."""
        with Desktop(**{**self.options, **options}) as desktop:
            yield desktop
            self.assertEqual(desktop.brindle.complaints() if desktop.brindle else [], [])

    def desktop(self, **options):
        return self.enterContext(self.running(**options))

    def start(self, **options):
        desktop = self.desktop(**options)
        return desktop, Brindle(desktop)
