"""Nothing captured is lost, no broken store is a crash, and there is one Brindle at a time."""
import functools
import os
import stat
import unittest

from applications import Brindle, DesktopTest
from desktop import write_store


ENTRY = '{"id":"8D9BC8A2-7B6C-4E9B-9C55-0E0C5D1D7F10","content":"%s","type":"text","date":%s,"isPinned":false%s}'
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


class DurabilityTest(DesktopTest):
    options = {"tray": None}

    def test_killed_right_after_each_capture(self):
        desktop = self.desktop()
        expected = []
        for round in range(4):
            brindle = Brindle(desktop)
            expected.insert(0, f"text {round}")
            desktop.copy(expected[0])
            brindle.await_contents(expected)
            brindle.kill()
        Brindle(desktop).open()
        self.assertEqual(brindle.contents(), expected)
        folder = desktop.store_path.parent
        modes = {path.name: stat.S_IMODE(os.stat(path).st_mode) for path in (folder, *folder.iterdir())}
        self.assertEqual(modes, {name: 0o700 if name == folder.name else 0o600 for name in modes})

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
