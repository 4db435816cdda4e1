#!/usr/bin/python3 -B
"""Hours of use in minutes: soak.py PROGRAM MINUTES copies, opens and pastes without a pause (100, 40 and 20 times a
minute), replaces the tray and the window manager now and then, and fails when an entry is lost or doubled or when
memory, file descriptors or X resources grow. A sanitized program says at its end what leaked.
"""
import os
import pathlib
import re
import statistics
import sys
import time

from Xlib.ext import res

from applications import Brindle, Editor
from desktop import Desktop

LIMIT = 50
WARM_UP = 300  # copies; the reader has all its windows after 256
SLOPE = 100  # KiB a minute


class Soak:
    def __init__(self, desktop, program):
        self.desktop, self.x = desktop, desktop.x
        self.brindle = Brindle(desktop, program, ASAN_OPTIONS="detect_leaks=1:quarantine_size_mb=8")
        self.editor = Editor(desktop, "mousepad", "start")
        self.copies = self.openings = self.pastes = 0
        self.expected, self.samples = [], []

    def copy(self, opening):
        self.copies += 1
        self.expected = [f"copy {self.copies} " + "ü€😀x" * (self.copies * 7919 % 3000), *self.expected][:LIMIT]
        self.desktop.copy(self.expected[0])
        if opening:
            self.open()
            self.brindle.press_hot_key()
            self.brindle.await_closed(20)
        self.brindle.await_contents(self.expected, 20)

    def open(self):
        self.brindle.open()
        self.openings += 1

    def paste_twice(self):
        self.desktop.wait_for(lambda: self.editor.is_active, 20, "editor in front again")
        self.x.chord("Control_L", "a")
        for times in (1, 2):
            self.open()
            self.brindle.click_row(0)
            self.pastes += 1
            self.editor.await_text(self.expected[0] * times, 30)
        time.sleep(0.6)  # until the next poll an own write and a copy count as one

    def replace_tray(self):
        self.desktop.end_tray()
        self.desktop.start_tray()
        self.desktop.wait_for(self.brindle.icon, 20, "icon in the tray")

    def sample(self):
        """Minutes, KiB, files and X resources."""
        process = pathlib.Path(f"/proc/{self.brindle.process.pid}")
        resident = int(re.search(r"RssAnon:\s+(\d+)", (process / "status").read_text())[1])
        connections = self.x.display.res_query_client_ids([{"client": 0, "mask": res.LocalClientPIDMask}]).ids
        resources = sum(kind.count for each in connections if self.brindle.process.pid in each.value
                        for kind in self.x.display.res_query_client_resources(each.spec.client).types)
        self.samples.append((time.monotonic() / 60, resident, len(list((process / "fd").iterdir())), resources))
        print("{:.1f} min, {} KiB, {} files, {} X resources".format(*self.samples[-1]), flush=True)

    def run(self, minutes):
        end, turn, due = time.monotonic() + minutes * 60, 0, 0
        while time.monotonic() < end:
            turn += 1
            for number in range(10):
                self.copy(opening=number % 5 == 0)
            self.paste_twice()
            if turn % 20 == 0:
                self.replace_tray()
            if turn % 27 == 0:
                self.desktop.replace_window_manager()
                self.editor.activate()
            for process in self.desktop.started:
                process.poll()
            if self.copies >= WARM_UP and time.monotonic() > due:
                due = time.monotonic() + 30
                self.sample()
        self.sample()

    def verdict(self):
        self.brindle.process.terminate()
        self.brindle.process.wait(60)
        output = self.desktop.output_of(self.brindle.process)
        leaks = [block for block in output.split("\n\n") if "leak of" in block and "brindle::" in block]
        is_sound = "runtime error" not in output and "ERROR: AddressSanitizer" not in output
        minutes, sizes, files, resources = zip(*self.samples)
        slope = statistics.linear_regression(minutes, sizes).slope if len(sizes) > 1 else 0
        print(f"{self.copies} copies, {self.openings} openings, {self.pastes} pastes, memory {slope:.1f} KiB/min, "
              f"files {files[0]} to {files[-1]}, X resources {resources[0]} to {resources[-1]}, "
              f"leaks through our code: {len(leaks)}, complaints: {self.brindle.complaints()[:5]}, "
              f"exit {self.brindle.process.returncode}", *leaks[:9], sep="\n")
        return is_sound and not leaks and slope < SLOPE and all(counts[-1] <= counts[0] + 12
                                                                for counts in (files, resources))


def main(program, minutes):
    with Desktop() as desktop:
        soak = Soak(desktop, os.path.abspath(program))
        soak.run(float(minutes))
        return 0 if soak.verdict() else 1


sys.exit(main(*sys.argv[1:]))
