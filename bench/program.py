#!/usr/bin/python3 -B
"""The real program on a virtual desktop: program.py BRINDLE FLOOR REPEATS prints JSON, {figure: [value, …]}. FLOOR is a
program of the toolkit with nothing but an icon in the tray, a window of text and a timer.

Times are wall time in milliseconds as an X client sees them, CPU times are the scheduler's (/proc/…/schedstat).
"""
import json
import pathlib
import sys
import time

from Xlib import X

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "tests/desktop"))

from applications import HOT_KEY, POPOVER, ROW_HEIGHT, ROWS_TOP, Brindle  # noqa: E402
from desktop import Desktop  # noqa: E402
from x11 import Rect  # noqa: E402

MIB = 1 << 20
IDLE_SECONDS = 60
SETTLING_SECONDS = 15
SENT = 0x80  # in the type of an event that a program sent
PROGRAM, FLOOR = sys.argv[1:3]


def text(number, size):
    return (f"{number} " + "The quick brown fox jumps over the lazy dog.\n" * (size // 44 + 1))[:size]


def milliseconds(start):
    return (time.perf_counter() - start) * 1000


class Measured:
    """A desktop with a Brindle on a history of that many entries of 1 KB."""

    def __init__(self, entries, **options):
        self.desktop = Desktop(**options)
        self.entries = entries

    def __enter__(self):
        self.desktop.__enter__()
        self.desktop.seed_history([text(number, 1024) for number in range(self.entries)], limit=self.entries + 1000)
        return self

    def __exit__(self, *details):
        self.desktop.__exit__(*details)

    def start(self):
        self.brindle = Brindle(self.desktop, PROGRAM)
        self.pid = self.brindle.process.pid
        return self.brindle

    def tasks(self):
        return pathlib.Path(f"/proc/{self.pid}/task").iterdir()

    def cpu(self):
        """Milliseconds on a processor, of all threads."""
        return sum(int((task / "schedstat").read_text().split()[0]) for task in self.tasks()) / 1e6

    def wake_ups(self):
        return sum(int(line.split()[1]) for task in self.tasks() for line in (task / "status").read_text().splitlines()
                   if line.startswith("voluntary_ctxt_switches"))

    def memory(self, field, file="smaps_rollup"):
        """MiB."""
        for line in pathlib.Path(f"/proc/{self.pid}/{file}").read_text().splitlines():
            if line.startswith(field + ":"):
                return int(line.split()[1]) / 1024
        raise KeyError(field)

    def point(self, position):
        return bytes(self.desktop.x.pixels(Rect(*position, 1, 1)))


def until(condition, seconds=20):
    deadline = time.perf_counter() + seconds
    while not condition():
        if time.perf_counter() > deadline:
            raise TimeoutError
    return True


def start_up(repeats):
    """From exec to the icon in the tray; the pasteboard is watched before. One after the other, as the machine may be
    slower at one time than at another."""
    figures = {"start to the icon, ms": [], "floor of the start, ms": []}
    with Measured(1000) as measured:
        desktop = measured.desktop
        tray = desktop.x.owner("_NET_SYSTEM_TRAY_S0")
        panels = [child.id for child in desktop.x.root_window.query_tree().children if desktop.x.rect(child.id)]
        before = {window for panel in [tray, *panels] for window in desktop.x.tree(panel)}

        def docked():
            return any(window not in before and desktop.x.rect(window)
                       for panel in panels for window in desktop.x.tree(panel))
        for name, program in repeats * list(zip(list(figures), (PROGRAM, FLOOR))):
            start = time.perf_counter()
            process = desktop.run(program)
            until(docked)
            figures[name].append(milliseconds(start))
            desktop.await_idle(process)
            measured.pid = process.pid
            if program == FLOOR:
                until(lambda: desktop.x.windows(pathlib.Path(FLOOR).name))
                desktop.await_idle(process)
                figures |= {"floor of the memory, RSS MiB": [measured.memory("Rss")],
                            "floor of the memory, PSS MiB": [measured.memory("Pss")]}
            process.terminate()
            process.wait()
            until(lambda: not docked())
    return figures


def opening(repeats, entries):
    mapped, painted = [], []
    with Measured(entries) as measured:
        desktop, brindle = measured.desktop, measured.start()
        x, rect = desktop.x, brindle.open()
        x.root_window.change_attributes(event_mask=X.SubstructureNotifyMask)
        place = (rect.x + rect.width // 2, rect.y + 3)
        figures = {}
        if entries == 1000:
            figures = {"memory, RSS MiB": [measured.memory("Rss")], "memory, PSS MiB": [measured.memory("Pss")]}
        for _ in range(repeats):
            brindle.press_hot_key()
            brindle.await_closed()
            desktop.await_idle(brindle.process)
            background = measured.point(place)
            for key in HOT_KEY[:-1]:
                x.key(key, True)
            start = time.perf_counter()
            x.key(HOT_KEY[-1], True)
            until(lambda: is_mapped(x))
            mapped.append(milliseconds(start))
            until(lambda: measured.point(place) != background)
            painted.append(milliseconds(start))
            for key in reversed(HOT_KEY):
                x.key(key, False)
            brindle.await_open()
    return figures | {f"shortcut to mapped, {entries} entries, ms": mapped,
                      f"shortcut to painted, {entries} entries, ms": painted}


def is_mapped(x):
    """Whether a window as large as the popover has been."""
    event = next_event(x, X.MapNotify)
    rect = event and x.rect(event.window.id)
    return rect and rect.width >= POPOVER[0] and rect.height >= POPOVER[1]


def next_event(x, kind):
    """The next of this kind that has come; those of other kinds before it are left out."""
    while x.display.pending_events():
        event = x.display.next_event()
        if event.type & ~SENT == kind:
            return event
    return None


def idling(_repeats):
    """The same minute for the program and the floor, when what a start leaves for later is over."""
    with Measured(1000) as measured, Measured(0) as floor:
        brindle = measured.start()
        brindle.open()
        brindle.press_hot_key()
        brindle.await_closed()
        floor.pid = floor.desktop.run(FLOOR).pid
        time.sleep(SETTLING_SECONDS)
        before = [(each.cpu(), each.wake_ups()) for each in (measured, floor)]
        time.sleep(IDLE_SECONDS)
        (cpu, wakes), (floor_cpu, _) = [(each.cpu() - cpu, each.wake_ups() - wakes)
                                        for each, (cpu, wakes) in zip((measured, floor), before)]
        return {"idle CPU, ms a minute": [cpu], "floor of the idle CPU, ms": [floor_cpu], "idle wake-ups a minute": [wakes]}


def capturing(repeats, entries):
    """CPU of all that a copy costs the program: the transfer, the entry, the store."""
    values = []
    with Measured(entries) as measured:
        brindle = measured.start()
        for number in range(repeats):
            copied = text(10**6 + number, 1024)
            cpu = measured.cpu()
            measured.desktop.copy(copied)
            measured.desktop.wait_for(lambda: brindle.contents()[:1] == [copied], 5, "captured")
            values.append(measured.cpu() - cpu)
    return {f"CPU of a copy, {entries} entries, ms": values}


def large_text(repeats):
    """One text of 64 MiB, the popover open: shown, memory, the longest time in which the window answered no ping."""
    figures = {}
    for _ in range(repeats):
        for name, value in copy_large_text().items():
            figures.setdefault(name, []).append(value)
    return figures


def copy_large_text():
    with Measured(5) as measured:
        desktop, brindle = measured.desktop, measured.start()
        rect = brindle.open()
        x, window = desktop.x, brindle.popover_window()
        base = measured.memory("Rss")
        row = Rect(rect.x + 40, rect.y + ROWS_TOP + 10, 60, 12)
        before = bytes(x.pixels(row))
        pathlib.Path(f"/proc/{measured.pid}/clear_refs").write_text("5")
        start = time.perf_counter()
        desktop.copy("A" * (64 * MIB))
        stall = [0]
        until(lambda: longest_silence(x, window, stall) and bytes(x.pixels(row)) != before)
        shown = milliseconds(start)
        peak = measured.memory("VmHWM", "status")
        brindle.click_row(0, 3)
        brindle.choose(1)  # "Delete"
        desktop.wait_for(lambda: not any("A" * 50 in content for content in brindle.contents()), 10, "deleted")
        desktop.copy("short")
        desktop.wait_for(lambda: brindle.contents()[:1] == ["short"], 10, "captured")
        return {"64 MiB: copied to shown, ms": shown, "64 MiB: longest stall, ms": stall[0],
                "64 MiB: peak over base, times the text": (peak - base) / 64,
                "64 MiB: left after it is deleted, MiB": measured.memory("Rss") - base}


def longest_silence(x, window, longest):
    """One ping and its answer (EWMH, _NET_WM_PING), which comes from the main loop."""
    x.root_window.change_attributes(event_mask=X.StructureNotifyMask)  # by which the toolkit sends its answer
    start = time.perf_counter()
    x.ask("WM_PROTOCOLS", window, x.atom("_NET_WM_PING"), X.CurrentTime, window, to=window)
    until(lambda: next_event(x, X.ClientMessage))
    longest[0] = max(longest[0], milliseconds(start))
    return True


def pasting(repeats):
    """From the release of the button on a row to the V that arrives in a window which has the focus at once."""
    values = []
    with Measured(5) as measured:
        desktop, brindle = measured.desktop, measured.start()
        x = desktop.x
        shown = x.root_window.create_window(50, 50, 300, 200, 0, X.CopyFromParent, event_mask=X.KeyPressMask)
        shown.map()
        target = shown.id
        desktop.wait_for(lambda: x.active() == target, 10, "target in front")
        v = x.keycode("v")[0]
        for _ in range(repeats):
            brindle.open()
            rect = brindle.popover()
            x.move(rect.x + 150, rect.y + ROWS_TOP + ROW_HEIGHT * 3 // 2)
            x.button(1, True)

            def is_v():
                event = next_event(x, X.KeyPress)
                return event and event.detail == v
            start = time.perf_counter()
            x.button(1, False)
            until(is_v)
            values.append(milliseconds(start))
            desktop.await_idle(brindle.process)
            desktop.wait_for(lambda: x.active() == target, 10, "target in front")
    return {"click to the chord, ms": values}


def main(repeats):
    figures = {}
    for measure, *arguments in ((start_up,), (opening, 5), (opening, 1000), (opening, 10_000), (idling,),
                                (capturing, 5), (capturing, 1000), (large_text,), (pasting,)):
        print(f"{measure.__name__} {arguments or ''}", file=sys.stderr)
        figures |= measure(repeats, *arguments)
    json.dump(figures, sys.stdout, indent=1)


if __name__ == "__main__":
    main(int(sys.argv[3]))
