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

LIST = {"id": "8D9BC8A2-7B6C-4E9B-9C55-0E0C5D1D7F11", "name": "Kept", "createdAt": 1}
FILED = entry("filed", 1, isPinned=True, listId=LIST["id"])
ROUNDS = int(os.environ.get("BRINDLE_ROUNDS", "5"))


def mount(*arguments):
    return subprocess.run(["mount", *arguments], stderr=subprocess.DEVNULL).returncode == 0


def arrangement(brindle):
    """What the user chose, beside the entries that come and go; the oldest one stays."""
    return {"entry": brindle.history()[-1], "lists": [each["name"] for each in brindle.stored("BrindleLists")],
            "first list": brindle.stored("BrindleLists")[0] | {"name": "any"},
            "theme": brindle.setting("appTheme"), "starts at login": brindle.setting("launchAtLogin"),
            "limit": brindle.setting("maxClipboardItems")}


def arrange(brindle, now, round):
    """The last click or key of one change by the user was just made; this is what it changes."""
    brindle.open()
    if round % 6 == 1:
        brindle.search("filed")
        brindle.desktop.wait_for(lambda: brindle.list_length() == 1, 5, "only that entry")
        brindle.click_row(0, button=3)
        brindle.choose(2)
        return {"entry": now["entry"] | {"isPinned": not now["entry"]["isPinned"]}}
    if round % 6 == 2:
        brindle.click(200, 78, button=3)
        brindle.choose(0)
        brindle.x.type(f"L{round:03}\n")
        return {"lists": [f"L{round:03}", *now["lists"][1:]]}
    if round % 6 == 3:
        return make_or_delete_list(brindle, now)
    brindle.choose_from_header(0)
    brindle.x.is_still()
    if round % 6 == 4:
        brindle.click(305, 308)
        return {"starts at login": 0 if now["starts at login"] else 1}
    theme = "Dark" if now["theme"] == "Light" else "Light"
    brindle.click({"Light": 70, "Dark": 125}[theme], 376)
    return {"theme": theme}


def make_or_delete_list(brindle, now):
    behind_the_first = 240 + 6 * len(str(len(brindle.history())))
    if len(now["lists"]) > 1:
        brindle.click(behind_the_first, 78, button=3)
        brindle.choose(1)
        brindle.x.is_still()
        brindle.click(234, 287)
        return {"lists": now["lists"][:1]}
    brindle.click(behind_the_first, 78)
    brindle.x.is_still()
    brindle.x.type("New\n")
    return {"lists": [*now["lists"], "New"]}


class DurabilityTest(DesktopTest):
    options = {"tray": None}

    def test_killed_at_any_moment(self):
        """Nothing that was ever seen is lost, nor what the user arranged. BRINDLE_ROUNDS=200 is the long form."""
        os.umask(0)  # what it makes is for its user alone all the same
        desktop, chance, number = self.desktop(), random.Random(3), 0
        desktop.seed(BrindleHistory=json.dumps([FILED]).encode(), BrindleLists=json.dumps([LIST]).encode(),
                     maxClipboardItems=100_000, appTheme="Light")
        seen = [FILED]
        possible = [{"entry": FILED, "lists": [LIST["name"]], "first list": LIST | {"name": "any"}, "theme": "Light",
                     "starts at login": None, "limit": 100_000}]
        for round in range(ROUNDS + 1):
            brindle = Brindle(desktop)
            self.assertEqual(brindle.history()[-len(seen):-1], seen[:-1], f"round {round}")
            self.assertIn(arrangement(brindle), possible, f"round {round}")
            end = time.monotonic() + chance.uniform(0.2, 2)
            while time.monotonic() < end:
                number += 1
                desktop.copy(f"text {number}")
                time.sleep(chance.uniform(0, 0.7))
                seen = brindle.history()
            if round % 6:
                before = arrangement(brindle)
                after = before | arrange(brindle, before, round)
                possible = [before, after]
                if chance.random() < 0.5:
                    desktop.wait_for(lambda: arrangement(brindle) == after, 5, lambda: f"{after}: {arrangement(brindle)}")
                    possible = [after]
                else:
                    time.sleep(chance.uniform(0, 0.05))
            brindle.kill()
        self.assertGreater(len(seen), ROUNDS)
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
        if is_full:  # from the start
            brindle.process.terminate()
            brindle.process.wait(10)
            (folder / "filler").write_bytes(bytes(shutil.disk_usage(folder).free))
            brindle = Brindle(desktop)
            desktop.copy("late" * 9000)
            brindle.await_line("Cannot store BrindleHistory: ")
            (folder / "filler").unlink()
            desktop.copy("last")
            brindle.await_contents(["last", "late" * 9000, "after", "second" * 9000, "first" * 9000, "before"])

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
