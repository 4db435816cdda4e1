"""Nothing captured is lost, no broken store is a crash, and there is one Brindle at a time."""
import contextlib
import functools
import json
import os
import pathlib
import random
import shutil
import sqlite3
import stat
import subprocess
import time
import unittest

from applications import Brindle, DesktopTest
from desktop import write_store


ENTRY = '{"id":"8D9BC8A2-7B6C-4E9B-9C55-0E0C5D1D7F10","content":"%s","type":"text","date":%s,"isPinned":false%s}'
FILED = (ENTRY % ("filed", 1, ',"listId":"8D9BC8A2-7B6C-4E9B-9C55-0E0C5D1D7F11"')).replace("false", "true")
LISTS = b'[{"id":"8D9BC8A2-7B6C-4E9B-9C55-0E0C5D1D7F11","name":"Kept","createdAt":1}]'
ROUNDS = int(os.environ.get("BRINDLE_ROUNDS", "5"))
BROKEN_HISTORIES = {
    "not JSON": b"[{",
    "a text, not data": "[]",
    "a number": 7,
    "not UTF-8": b'["\xff\xfe"]',
    "too deep": b"[" * 1_000_000,
    "deep in an unknown key": ("[" + ENTRY % ("a", 1, ',"more":' + "[" * 500_000) + "]").encode(),
    "a huge number": ("[" + ENTRY % ("a", "1e999", "") + "]").encode(),
    "an unknown type": ("[" + ENTRY % ("a", 1, "") + "]").replace('"text"', '"sound"').encode(),
}
BROKEN_FILES = {
    "not a database": b"this is no database at all" * 100,
    "a cut database": b"SQLite format 3\0" + bytes(50),
}


def mount(*arguments):
    return subprocess.run(["mount", *arguments], stderr=subprocess.DEVNULL).returncode


class DurabilityTest(DesktopTest):
    options = {"tray": None}

    def test_killed_at_any_moment(self):
        """Nothing that was ever seen is lost, nor what the user arranged. BRINDLE_ROUNDS=200 is the long form."""
        desktop, chance, number = self.desktop(), random.Random(3), 0
        desktop.store_path.parent.mkdir(parents=True)
        write_store(desktop.store_path, BrindleHistory=("[" + FILED + "]").encode(), BrindleLists=LISTS,
                    maxClipboardItems=100_000, appTheme="Light")
        seen = [json.loads(FILED)]
        for round in range(ROUNDS):
            brindle = Brindle(desktop)
            self.assertEqual(brindle.history()[-len(seen):], seen, f"round {round}")
            end = time.monotonic() + chance.uniform(0.2, 2)
            while time.monotonic() < end:
                number += 1
                desktop.copy(f"text {number}")
                time.sleep(chance.uniform(0, 0.7))
                seen = brindle.history()
            brindle.kill()
        Brindle(desktop).open()
        self.assertEqual(brindle.history()[-len(seen):], seen)
        self.assertGreater(len(seen), ROUNDS)
        with contextlib.closing(sqlite3.connect(desktop.store_path)) as store:
            self.assertEqual(store.execute("select key, value from defaults where key <> 'BrindleHistory'").fetchall(),
                             [("BrindleLists", LISTS), ("appTheme", "Light"), ("maxClipboardItems", 100_000)])
        folder = desktop.store_path.parent
        modes = {path.name: stat.S_IMODE(os.stat(path).st_mode) for path in (folder, *folder.iterdir())}
        self.assertEqual(modes, {name: 0o700 if name == folder.name else 0o600 for name in modes})

    def test_a_full_or_read_only_disk_costs_one_line_and_the_next_change_saves_all(self):
        for name in ("full", "read-only"):
            with self.subTest(name), self.running() as desktop:
                folder = desktop.store_path.parent
                folder.mkdir(parents=True)
                if mount("-t", "tmpfs", "-o", "size=1m", "tmpfs", folder):
                    self.skipTest("no file system can be mounted here")
                try:
                    self.assert_waits_for_room(desktop, name == "full", folder)
                finally:
                    subprocess.run(["umount", "-l", folder])

    def assert_waits_for_room(self, desktop, is_full, folder):
        brindle = Brindle(desktop)
        desktop.copy("before")
        brindle.await_contents(["before"])
        if is_full:
            (folder / "filler").write_bytes(bytes(shutil.disk_usage(folder).free))
        else:  # no file of it may be open
            brindle.kill()
            self.assertEqual(mount("-o", "remount,ro", folder), 0)
            brindle = Brindle(desktop)
        for text in ("first", "second"):
            desktop.copy(text * 9000)
            time.sleep(1)  # two polls
        brindle.open()
        brindle.await_line("Cannot store BrindleHistory: ")
        self.assertEqual(len([line for line in brindle.lines if line.startswith("Cannot")]), 1, brindle.lines)
        (folder / "filler").unlink() if is_full else mount("-o", "remount,rw", folder)
        desktop.copy("after")
        brindle.await_contents(["after", "second" * 9000, "first" * 9000, "before"])

    def test_a_newer_store_is_kept_aside(self):
        desktop = self.desktop()
        desktop.seed_history(["from the future"])
        with contextlib.closing(sqlite3.connect(desktop.store_path)) as store:
            store.execute("pragma user_version = 2")
        before = desktop.store_path.read_bytes()
        brindle = Brindle(desktop)
        aside = brindle.await_line(f"Cannot use {desktop.store_path}: it is from a newer version").rpartition(" ")[2]
        desktop.copy("new")
        brindle.await_contents(["new"])
        self.assertEqual(pathlib.Path(aside).read_bytes(), before)

    def test_a_broken_store_starts_empty(self):
        breakages = {name: functools.partial(write_store, BrindleHistory=history)
                     for name, history in BROKEN_HISTORIES.items()}
        breakages |= {name: lambda path, data=data: path.write_bytes(data) for name, data in BROKEN_FILES.items()}
        for name, breaks in breakages.items():
            with self.subTest(name), self.running(window_manager=None) as desktop:
                desktop.store_path.parent.mkdir(parents=True)
                breaks(desktop.store_path)
                desktop.copy(f"after {name}")
                Brindle(desktop).await_contents([f"after {name}"])

    def test_a_folder_in_the_store_s_place_costs_the_store_only(self):
        desktop = self.desktop()
        desktop.store_path.mkdir(parents=True)
        brindle = Brindle(desktop)
        brindle.await_line(f"Cannot open {desktop.store_path}: ")
        desktop.copy("not stored")
        brindle.open()
        desktop.wait_for(lambda: brindle.list_length() == 1, 5, "captured all the same")

    def test_a_second_start_toggles_the_first_and_ends(self):
        desktop, first = self.start()
        for await_effect in (first.await_open, first.await_closed):
            second = desktop.run(first.process.args[0])
            self.assertEqual(second.wait(10), 0)
            await_effect()
        self.assertIsNone(first.process.poll())

    def test_a_dead_x_server_is_one_line_and_the_end(self):
        desktop, brindle = self.start()
        desktop.copy("kept")
        brindle.await_contents(["kept"])
        said = len(brindle.lines)
        desktop.kill_server()
        self.assertNotEqual(brindle.process.wait(10), 0)
        brindle.await_end_of_output()
        output = brindle.lines[said:] + desktop.output_of(brindle.process).splitlines()
        self.assertEqual(len(output), 1, output)
        self.assertEqual(brindle.contents(), ["kept"])


if __name__ == "__main__":
    unittest.main()
