"""The popover opens and closes when it should, exactly once, in the right place and with the keyboard."""
import subprocess
import sys
import unittest

import dbus

from applications import HOT_KEY, POPOVER, Brindle, DesktopTest, Editor
from x11 import Rect, X

SURFACE = bytes.fromhex("1e293b")[::-1]
WATCHER = "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher"


class PopoverTest(DesktopTest):
    def test_every_way_to_open_and_close(self):
        """Each opens and stays open, closes and stays closed, and the editor is in front again."""
        for window_manager, tray in (("openbox", "tint2"), ("xfwm4", "trayer"), ("metacity", "tint2")):
            with self.running(window_manager=window_manager, tray=tray) as desktop:
                brindle, editor, x = Brindle(desktop), Editor(desktop, "mousepad"), desktop.x
                hot_key, icon = brindle.press_hot_key, brindle.click_icon
                inside = x.rect(editor.window).centre

                def slowly():
                    was_open = bool(brindle.popover())
                    x.move(*brindle.icon().centre)
                    x.button(1, True)
                    desktop.stays(lambda: bool(brindle.popover()) == was_open, 0.4, "as it was until the button is up")
                    x.button(1, False)
                for name, open_it, close_it in (
                        ("hot key", hot_key, hot_key), ("icon", icon, icon), ("icon, slowly", slowly, slowly), ("icon, hot key", icon, hot_key),
                        ("hot key, icon", hot_key, icon), ("Escape", hot_key, lambda: x.chord("Escape")),
                        ("click elsewhere", icon, lambda: x.click(*inside)),
                        ("focus elsewhere", hot_key, lambda: x.activate(editor.window))):
                    with self.subTest(name, window_manager=window_manager):
                        open_it()
                        self.assert_below_icon(desktop, brindle.await_open(), brindle.icon())
                        desktop.stays(brindle.popover, 0.5, "popover stays open")
                        close_it()
                        brindle.await_closed()
                        desktop.stays(lambda: not brindle.popover(), 0.5, "popover stays closed")
                        desktop.wait_for(lambda: editor.is_active, 5, "editor is in front again")
                brindle.open()
                self.assertIn(x.atom("_NET_WM_STATE_SKIP_TASKBAR"),
                              x.numbers(brindle.popover_window(), "_NET_WM_STATE"))

    def assert_below_icon(self, desktop, popover, icon):
        self.assertTrue(Rect(0, 0, *desktop.size).holds(popover), popover)
        self.assertTrue(0 <= popover.y - icon.y - icon.height <= 24, (popover, icon))
        self.assertTrue(popover.x <= icon.centre[0] <= popover.x + popover.width, (popover, icon))

    def test_one_press_is_one_toggle_however_long_it_is_held(self):
        desktop, brindle = self.start(tray=None)
        for keysym in HOT_KEY:
            desktop.x.key(keysym, True)
        rect = brindle.await_open()
        self.assertTrue(Rect(desktop.size[0] // 2, 0, desktop.size[0] // 2, 600).holds(rect), rect)
        desktop.stays(brindle.popover, 1.2, "open while the keys repeat")
        for keysym in reversed(HOT_KEY):
            desktop.x.key(keysym, False)
        desktop.stays(brindle.popover, 0.3, "open after the keys are up")
        desktop.x.chord("Caps_Lock")
        desktop.x.chord("Num_Lock")
        brindle.press_hot_key()
        brindle.await_closed()

    def test_on_each_screen_it_has_that_screens_scale(self):
        desktop = self.desktop(tray=None, size=(2200, 1100))
        for monitor in ("left 1100/1x1100/1+0+0 screen", "right 1100/1x1100/1+1100+0 none"):
            subprocess.run(["xrandr", "--setmonitor", *monitor.split()], env=desktop.environment, check=True,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        brindle, x = Brindle(desktop, QT_SCREEN_SCALE_FACTORS="1;1.5"), desktop.x
        for left, scale in ((1100, 1.5), (0, 1), (1100, 1.5)):
            x.move(left + 300, 900)
            brindle.press_hot_key()
            desktop.wait_for(brindle.popover_window, 5, "popover")
            size = [round(points * scale) for points in POPOVER]
            wanted = Rect(left + 1100 - round(8 * scale) - size[0], round(14 * scale), *size)
            desktop.wait_for(lambda: x.rect(brindle.popover_window()) == wanted, 5,
                             lambda: f"{wanted}; it is {x.rect(brindle.popover_window())}")
            far = Rect(wanted.x + size[0] - 30, wanted.y + size[1] - 80, 1, 1)
            desktop.wait_for(lambda: x.pixels(far)[:3] == SURFACE, 5, "it is painted and seen to its far corner")
            x.click(wanted.x + round(319 * scale), wanted.y + round(32 * scale))
            desktop.wait_for(brindle.menu, 5, "menu")
            x.chord("Escape")
            desktop.wait_for(lambda: not brindle.menu(), 5, "menu is closed")
            brindle.press_hot_key()
            desktop.wait_for(lambda: not brindle.popover_window(), 5, "closed")

    def test_a_menu_that_the_trays_host_shows_leaves_it_open(self):
        desktop = self.desktop(tray=None)
        brindle, x = Brindle(desktop), desktop.x
        desktop.run(sys.executable, "-m", "dbusmock", "--session", *WATCHER)  # the host is late
        bus = dbus.bus.BusConnection(desktop.environment["DBUS_SESSION_BUS_ADDRESS"])
        desktop.wait_for(lambda: bus.name_has_owner(WATCHER[0]), 10, "host")
        watcher = dbus.Interface(bus.get_object(*WATCHER[:2]), "org.freedesktop.DBus.Mock")
        watcher.AddProperty(WATCHER[2], "IsStatusNotifierHostRegistered", True)
        watcher.AddMethod(WATCHER[2], "RegisterStatusNotifierItem", "s", "", "")
        (_, (item,)), = desktop.wait_for(lambda: watcher.GetMethodCalls("RegisterStatusNotifierItem"), 10, "icon")
        brindle.open()
        x.move(20, 20)
        x.button(3, True)
        dbus.Interface(bus.get_object(item, "/MenuBar"), "com.canonical.dbusmenu").AboutToShow(0)
        x.root_window.grab_keyboard(False, X.GrabModeAsync, X.GrabModeAsync, X.CurrentTime)
        x.button(3, False)
        desktop.stays(brindle.popover, 0.5, "open beside the menu")
        x.display.ungrab_keyboard(X.CurrentTime)
        x.click(20, 20)
        brindle.await_closed()

    def test_compositor_comes_and_goes(self):
        desktop, brindle = self.start(compositor=True)
        content = brindle.open()
        self.assertGreater(desktop.x.rect(brindle.popover_window()).width, POPOVER[0])
        desktop.stop_compositor()
        desktop.wait_for(lambda: desktop.x.rect(brindle.popover_window()) == content, 5, "no margin, same place")


if __name__ == "__main__":
    unittest.main()
