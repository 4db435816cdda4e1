"""Nothing captured is lost, no broken store is a crash, and there is one Brindle at a time."""
import json
import os
import random
import shutil
import stat
import subprocess
import time
import unittest

from applications import Brindle, DesktopTest
from desktop import entry

LISTS = b'[{"id":"8D9BC8A2-7B6C-4E9B-9C55-0E0C5D1D7F11","name":"Kept","createdAt":1}]'
FILED = entry("filed", 1, isPinned=True, listId="8D9BC8A2-7B6C-4E9B-9C55-0E0C5D1D7F11")
ROUNDS = int(os.environ.get("BRINDLE_ROUNDS", "5"))


def mount(*arguments):
    return subprocess.run(["mount", *arguments], stderr=subprocess.DEVNULL).returncode == 0


class DurabilityTest(DesktopTest):
    options = {"tray": None}

    def test_killed_at_any_moment(self):
        """Nothing that was ever seen is lost, nor what the user arranged. BRINDLE_ROUNDS=200 is the long form."""
        desktop, chance, number = self.desktop(), random.Random(3), 0
        desktop.seed(BrindleHistory=json.dumps([FILED]).encode(), BrindleLists=LISTS, maxClipboardItems=100_000,
                     appTheme="Light")
        seen = [FILED]
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
        self.assertEqual([brindle.setting(key) for key in ("BrindleLists", "appTheme", "maxClipboardItems")],
                         [LISTS, "Light", 100_000])
        folder = desktop.store_path.parent
        modes = {path.name: stat.S_IMODE(os.stat(path).st_mode) for path in (folder, *folder.iterdir())}
        self.assertEqual(modes, {name: 0o700 if name == folder.name else 0o600 for name in modes})

    def test_a_full_or_read_only_disk_costs_one_line_and_the_next_change_saves_all(self):
        for name in ("full", "read-only"):
            with self.subTest(name), self.running() as desktop:
                folder = desktop.store_path.parent
                folder.mkdir(parents=True)
                if not mount("-t", "tmpfs", "-o", "size=1m", "tmpfs", folder):
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
            self.assertTrue(mount("-o", "remount,ro", folder))
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

    def test_a_second_start_toggles_the_first_and_ends(self):
        desktop, first = self.start()
        for await_effect in (first.await_open, first.await_closed):
            self.assertEqual(desktop.run(first.process.args[0]).wait(10), 0)
            await_effect()
        self.assertIsNone(first.process.poll())

    def test_after_an_unreadable_history_a_dead_x_server_is_one_line_and_the_end(self):
        desktop = self.desktop()
        desktop.seed(BrindleHistory=b"[" * 1_000_000)
        brindle = Brindle(desktop)
        desktop.copy("kept")
        brindle.await_contents(["kept"])
        said = len(brindle.lines)
        desktop.server.kill()
        self.assertNotEqual(brindle.process.wait(10), 0)
        brindle.reader.join(5)
        output = brindle.lines[said:] + desktop.output_of(brindle.process).splitlines()
        self.assertEqual(len(output), 1, output)
        self.assertEqual(brindle.contents(), ["kept"])


if __name__ == "__main__":
    unittest.main()
