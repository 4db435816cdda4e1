"""What lies over the popover, and what the desktop and its user's main job do with it."""
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

import dbus

import tour
from applications import BRINDLE, Brindle, DesktopTest
from desktop import entry
from x11 import Rect

DARK, LIGHT = (bytes.fromhex(colour)[::-1] for colour in ("1e293b", "f1f5f9"))
PORTAL = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings"
SETTINGS, ABOUT = 0, 1
HERE = pathlib.Path(__file__).resolve().parent


class InterfaceTest(DesktopTest):
    def test_the_tour(self):
        with tempfile.TemporaryDirectory() as folder:
            tour.main(BRINDLE, folder)

    def test_a_sheet_keeps_the_popover_from_clicks_and_keys(self):
        for window_manager in ("openbox", "xfwm4", "metacity"):
            with self.subTest(window_manager), self.running(window_manager=window_manager) as desktop:
                desktop.seed_history(["one", "two"])
                brindle, x = Brindle(desktop), desktop.x
                brindle.open()
                brindle.choose_from_header(ABOUT)
                desktop.wait_for(brindle.sheet, 5, "About is open")
                brindle.click(100, 32)  # the search field
                brindle.click(319, 32)  # the menu button
                desktop.wait_for(lambda: x.title(x.active()).startswith("About"), 5, "About has the keyboard again")
                x.type("no")
                x.chord("Escape")
                desktop.wait_for(lambda: not brindle.sheet() and brindle.has_focus(), 5, "only About closed")
                self.assertEqual(brindle.list_length(), 2)
                x.chord("Escape")
                brindle.await_closed()

    def test_it_follows_the_desktops_preference_while_it_is_open(self):
        desktop = self.desktop()
        desktop.run(sys.executable, "-m", "dbusmock", "--session", *PORTAL)
        bus = dbus.bus.BusConnection(desktop.environment["DBUS_SESSION_BUS_ADDRESS"])
        desktop.wait_for(lambda: bus.name_has_owner(PORTAL[0]), 10, "portal")
        portal = dbus.Interface(bus.get_object(*PORTAL[:2]), "org.freedesktop.DBus.Mock")

        def prefer(scheme):
            """0 nothing, 1 dark, 2 light."""
            portal.AddMethod(PORTAL[2], "Read", "ss", "v", f"ret = dbus.UInt32({scheme}, variant_level=2)")
            portal.EmitSignal(PORTAL[2], "SettingChanged", "ssv",
                              ["org.freedesktop.appearance", "color-scheme", dbus.UInt32(scheme)])
        prefer(1)
        desktop.seed(appTheme="System")
        brindle = Brindle(desktop)
        rect = brindle.open()
        for scheme, surface in ((1, DARK), (2, LIGHT), (1, DARK), (0, LIGHT)):  # the toolkit's own colours are light
            prefer(scheme)
            places = [(rect.x + 8, rect.y + 60), (rect.x + 100, rect.y + 300), (rect.x + 8, rect.y + 490)]
            desktop.wait_for(lambda: all(desktop.x.pixels(Rect(*place, 1, 1))[:3] == surface for place in places), 5,
                             f"scheme {scheme} is seen")

    def test_assistive_technology_reads_it(self):
        desktop = self.desktop()
        desktop.seed(BrindleHistory=json.dumps([entry("one"), entry("two", isPinned=True)]).encode(), launchAtLogin=1)
        brindle = Brindle(desktop, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        brindle.open()

        def reads(*expected):
            """Whether each role, start of a name, states it has and states it lacks is there."""
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
