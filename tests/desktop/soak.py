#!/usr/bin/env python3
"""Hours of use in minutes: soak.py PROGRAM MINUTES copies, opens and pastes without a pause, replaces the tray and the
window manager now and then, and fails when an entry is lost or doubled or when memory, file descriptors or X resources
grow. A sanitized program says at its end what leaked. Needs xrestop beside what the tests need.
"""
import os
import pathlib
import re
import subprocess
import sys
import time

import applications
from desktop import Desktop

LIMIT = 50
WARM_UP = 300  # copies; the reader has all its windows after 256
SLOPE = 100  # KiB a minute


class Soak:
    def __init__(self, desktop):
        self.desktop = desktop
        self.brindle = applications.Brindle(desktop, ASAN_OPTIONS="detect_leaks=1:quarantine_size_mb=8")
        self.editor = applications.Editor(desktop, "mousepad", "start")
        self.expected = []
        self.counts = dict.fromkeys(("copies", "openings", "pastes", "trays", "window managers"), 0)
        self.samples = []

    def copy(self):
        self.counts["copies"] += 1
        number = self.counts["copies"]
        self.expected = [f"copy {number} " + "ü€😀x" * (number * 7919 % 3000), *self.expected][:LIMIT]
        self.desktop.copy(self.expected[0])
        self.brindle.await_contents(self.expected, 20)

    def open(self):
        self.counts["openings"] += 1
        self.brindle.press_hot_key()
        self.brindle.await_open(20)

    def close(self):
        self.brindle.press_hot_key()
        self.brindle.await_closed(20)
        self.desktop.wait_for(lambda: self.editor.is_active, 20, "editor in front again")

    def paste(self):
        self.desktop.x.chord("Control_L", "a")
        self.open()
        self.brindle.click_row(0)
        self.counts["pastes"] += 1
        self.editor.await_text(self.expected[0], 30)
        time.sleep(0.6)  # until the next poll an own write and a copy count as one

    def replace_tray(self):
        self.counts["trays"] += 1
        self.desktop.tray.kill()
        self.desktop.tray.wait()
        self.desktop.wait_for(lambda: not self.desktop.x.owner("_NET_SYSTEM_TRAY_S0"), 20, "tray gone")
        self.desktop.start_tray()
        self.desktop.wait_for(self.brindle.icon, 20, "icon in the tray")

    def replace_window_manager(self):
        self.counts["window managers"] += 1
        before = self.desktop.x.numbers(self.desktop.x.root, "_NET_SUPPORTING_WM_CHECK")
        self.desktop.run("openbox", "--replace")
        self.desktop.wait_for(lambda: self.desktop.x.numbers(self.desktop.x.root, "_NET_SUPPORTING_WM_CHECK")
                              not in ([], before), 20, "the other window manager")
        self.editor.activate()

    def sample(self):
        process = pathlib.Path(f"/proc/{self.brindle.process.pid}")
        resident = int(re.search(r"RssAnon:\s+(\d+)", (process / "status").read_text())[1])
        clients = subprocess.run(["xrestop", "-b", "-m", "1"], env=self.desktop.environment, text=True,
                                 stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
        # Three of its four connections have no name; neither has the one here, which does not change.
        resources = sum(int(number) for block in re.split(r"\n(?=\d+ - )", clients)
                        if re.match(r"\d+ - (Brindle|<unknown>)", block)
                        for number in re.findall(r"^\t(?!pixmap bytes)[a-zGC][a-zA-Z ]*: (\d+)$", block, re.M))
        self.samples.append((time.monotonic() / 60, resident, len(list((process / "fd").iterdir())), resources))
        print(f"{self.samples[-1][0] - self.samples[0][0]:5.1f} min: {resident} KiB, {self.samples[-1][2]} files, "
              f"{resources} X resources, {self.counts}", flush=True)

    def run(self, minutes):
        end, turn, due = time.monotonic() + minutes * 60, 0, 0
        while time.monotonic() < end:
            turn += 1
            for _ in range(5):
                self.copy()
            self.open()
            self.close()
            self.paste()
            if turn % 40 == 0:
                self.replace_tray()
            if turn % 55 == 0:
                self.replace_window_manager()
            for process in self.desktop._started:
                process.poll()
            if self.counts["copies"] >= WARM_UP and time.monotonic() > due:
                due = time.monotonic() + 30
                self.sample()

    def slope(self):
        """KiB a minute, by least squares."""
        times, sizes = [s[0] for s in self.samples], [s[1] for s in self.samples]
        middle, size = sum(times) / len(times), sum(sizes) / len(sizes)
        return (sum((t - middle) * (s - size) for t, s in zip(times, sizes))
                / max(1e-9, sum((t - middle) ** 2 for t in times)))

    def verdict(self):
        self.brindle.process.terminate()
        self.brindle.process.wait(60)
        output = self.desktop.output_of(self.brindle.process)
        leaks = [block for block in output.split("\n\n") if "leak of" in block and "brindle::" in block]
        print(f"memory {self.slope():.1f} KiB/min, files {self.samples[0][2]} to {self.samples[-1][2]}, X resources "
              f"{self.samples[0][3]} to {self.samples[-1][3]}, leaks through our code: {len(leaks)}, "
              f"complaints: {self.brindle.complaints()[:5]}, exit {self.brindle.process.returncode}", *leaks[:9], sep="\n")
        return self.slope() < SLOPE and all(self.samples[-1][i] <= self.samples[0][i] + 12 for i in (2, 3))


def main(program, minutes):
    applications.BRINDLE = os.path.abspath(program)
    with Desktop() as desktop:
        soak = Soak(desktop)
        soak.run(float(minutes))
        soak.sample()
        return 0 if soak.verdict() else 1


sys.exit(main(*sys.argv[1:]))
