"""What lies over the popover, what starts it at login, and what the desktop and assistive technology do with it."""
import json
import pathlib
import re
import shutil
import subprocess
import unittest

from applications import BRINDLE, Brindle, DesktopTest
from desktop import HERE, write_store
from x11 import Rect

DARK, LIGHT, SWITCH_OFF = (bytes.fromhex(colour) for colour in ("1e293b", "f1f5f9", "475569"))
SETTINGS, ABOUT = 0, 1


class InterfaceTest(DesktopTest):
    def seeded(self, desktop, **values):
        """A Brindle that starts with these stored values."""
        desktop.store_path.parent.mkdir(mode=0o700, parents=True)
        write_store(desktop.store_path, **values)
        return Brindle(desktop)

    def test_a_sheet_keeps_the_popover_from_clicks_and_keys(self):
        for window_manager in ("openbox", "xfwm4", "metacity"):
            with self.subTest(window_manager), self.running(window_manager=window_manager) as desktop:
                desktop.seed_history(["one", "two"])
                brindle, x = Brindle(desktop), desktop.x
                popover = brindle.open()
                brindle.choose_from_header(ABOUT)
                desktop.wait_for(brindle.sheet, 5, "About is open")
                x.click(popover.x + 100, popover.y + 32)  # the search field
                x.click(popover.x + 319, popover.y + 32)  # the menu button
                desktop.wait_for(lambda: x.title(x.active()).startswith("About"), 5, "About has the keyboard again")
                x.type("no")
                x.chord("Escape")
                desktop.wait_for(lambda: not brindle.sheet() and brindle.has_focus(), 5, "only About closed")
                self.assertEqual(brindle.list_length(), 2)
                x.chord("Escape")
                brindle.await_closed()

    def test_the_guide_where_keys_cannot_be_posted(self):
        desktop = self.desktop(server=["-extension", "XTEST"], nested=True)
        desktop.seed_history(["one"])
        brindle, x = Brindle(desktop), desktop.x
        popover = brindle.open()
        brindle.click_row(0)
        brindle.await_line("No accessibility permission - showing dialog")
        guide = desktop.wait_for(brindle.sheet, 5, "the guide is open")
        self.assertEqual((guide.width, guide.height), (480, 600))
        x.click(guide.x + 240, guide.y + 544)  # "Done"
        desktop.wait_for(lambda: not brindle.sheet(), 5, "the guide is closed")
        self.assertEqual(brindle.popover(), popover)
        x.chord("Control_L", "Super_L", "v")
        brindle.await_line("❌ Accessibility permission not granted. Cycling paste aborted.")
        self.assertEqual(brindle.contents(), ["one"])

    def test_the_login_item_starts_it_without_a_window(self):
        desktop, brindle = self.start()
        entry = desktop.home / ".config/autostart/org.brindle.Brindle.desktop"
        popover = brindle.open()
        brindle.choose_from_header(SETTINGS)
        switch = popover.x + 305, popover.y + 308
        desktop.wait_for(lambda: desktop.x.pixels(Rect(*switch, 1, 1)) == SWITCH_OFF, 5, "the panel has slid in")
        desktop.x.click(*switch)
        desktop.wait_for(entry.exists, 5, "the switch writes the login item")
        prefix = desktop.home / "a prefix"
        (prefix / "bin").mkdir(parents=True)
        shutil.copy(BRINDLE, prefix / "bin/brindle")
        shutil.copytree(HERE.parent.parent / "resources", prefix / "share/brindle")
        for program in (BRINDLE, str(prefix / "bin/brindle")):
            brindle.kill()
            Brindle(desktop, program=program).kill()  # each launch writes where it is by now
            subprocess.run(["desktop-file-validate", entry], check=True)
            path = re.search(r'^Exec="(.*)"$', entry.read_text(), re.MULTILINE)[1]
            self.assertEqual(path, str(pathlib.Path(program).resolve()))
            brindle = Brindle(desktop, program=path)
            self.assertIsNone(brindle.popover() or brindle.sheet())

    def test_it_follows_the_desktops_preference_while_it_is_open(self):
        desktop = self.desktop()
        portal = desktop.run(str(HERE / "portal.py"), stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.addCleanup(portal.stdin.close)

        def prefer(scheme):
            portal.stdin.write(b"%d\n" % scheme)
            portal.stdin.flush()
        prefer(1)
        self.assertEqual(portal.stdout.readline(), b"ready\n")
        brindle = self.seeded(desktop, appTheme="System")
        rect = brindle.open()
        for scheme, surface in ((None, DARK), (2, LIGHT), (1, DARK), (0, LIGHT)):  # the toolkit's own colours are light
            if scheme is not None:
                prefer(scheme)
            places = [(rect.x + 8, rect.y + 60), (rect.x + 100, rect.y + 300), (rect.x + 8, rect.y + 490)]
            desktop.wait_for(lambda: all(desktop.x.pixels(Rect(*place, 1, 1)) == surface for place in places), 5,
                             f"scheme {scheme} is seen")

    def test_assistive_technology_reads_it(self):
        desktop = self.desktop()
        desktop.environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        items = [{"id": f"00000000-0000-4000-8000-00000000000{index}", "content": text, "type": "text", "date": 0,
                  "isPinned": text == "two"} for index, text in enumerate(("one", "two"))]
        brindle = self.seeded(desktop, BrindleHistory=json.dumps(items).encode(), launchAtLogin=1)
        brindle.open()

        def reads(*expected):
            """Whether each [role, start of name, states it has, states it lacks] is there."""
            output = subprocess.run([HERE / "accessible.py"], env=desktop.environment, capture_output=True, timeout=30)
            read = json.loads(output.stdout or b"[]")
            return all(any(role == each[0] and each[1].startswith(name) and has <= set(each[2])
                           and not lacks & set(each[2]) for each in read) for role, name, has, lacks in expected)
        desktop.wait_for(lambda: reads(
            ("list item", "one, 00:00", {"focusable", "showing"}, set()),
            ("list item", "two, 00:00, pinned", {"focusable"}, set()),
            ("page tab", "All (2)", {"selected"}, set()), ("page tab", "Pinned (1)", set(), {"selected"}),
            ("text", "Search...", {"editable"}, {"focused"})), 20, "popover is read")
        brindle.choose_from_header(SETTINGS)
        desktop.wait_for(lambda: reads(
            ("check box", "Start at Login", {"checked"}, set()), ("radio button", "50", {"checked"}, set()),
            ("radio button", "25", set(), {"checked"})), 20, "settings are read")


if __name__ == "__main__":
    unittest.main()
