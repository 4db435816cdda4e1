"""The popover opens and closes when it should, exactly once, in the right place and with the keyboard."""
import unittest

from applications import HOT_KEY, POPOVER, Brindle, DesktopTest, Editor
from x11 import Rect


class PopoverTest(DesktopTest):
    def assert_open_and_close(self, desktop, brindle, editor, act, close=None):
        """`act` opens it and it stays; `close` or `act` closes it, it stays closed and the editor is in front."""
        act()
        rect = brindle.await_open()
        desktop.stays(brindle.popover, 0.5, "popover stays open")
        (close or act)()
        brindle.await_closed()
        desktop.stays(lambda: not brindle.popover(), 0.5, "popover stays closed")
        desktop.wait_for(lambda: editor.is_active, 5, "editor is in front again")
        return rect

    def test_every_way_to_open_and_close(self):
        for window_manager, tray in (("openbox", "tint2"), ("xfwm4", "trayer"), ("metacity", "tint2")):
            with self.subTest(window_manager), self.running(window_manager=window_manager, tray=tray) as desktop:
                brindle, editor, x = Brindle(desktop), Editor(desktop, "mousepad"), desktop.x
                hot_key, icon = brindle.press_hot_key, brindle.click_icon
                inside = x.rect(editor.window).centre
                ways = {
                    "hot key": (hot_key, None),
                    "icon": (icon, None),
                    "icon, hot key": (icon, hot_key),
                    "hot key, icon": (hot_key, icon),
                    "Escape": (hot_key, lambda: x.chord("Escape")),
                    "click elsewhere": (icon, lambda: x.click(*inside)),
                    "focus elsewhere": (hot_key, lambda: x.activate(editor.window)),
                }
                for name, (act, close) in ways.items():
                    with self.subTest(name):
                        rect = self.assert_open_and_close(desktop, brindle, editor, act, close)
                        self.assert_below_icon(desktop, rect, brindle.icon())
                brindle.open()
                self.assertIn(x.atom("_NET_WM_STATE_SKIP_TASKBAR"),
                              x.numbers(brindle.popover_window(), "_NET_WM_STATE"))

    def assert_below_icon(self, desktop, popover, icon):
        self.assertTrue(Rect(0, 0, *desktop.size).holds(popover), popover)
        self.assertGreaterEqual(popover.y, icon.y + icon.height)
        self.assertLessEqual(popover.y, icon.y + icon.height + 24)
        self.assertTrue(popover.x <= icon.centre[0] <= popover.x + popover.width, (popover, icon))

    def test_one_press_is_one_toggle_however_long_it_is_held(self):
        desktop, brindle = self.start(tray=None)
        for keysym in HOT_KEY:
            desktop.x.key(keysym, True)
        brindle.await_open()
        desktop.stays(brindle.popover, 1.2, "open while the keys repeat")
        for keysym in reversed(HOT_KEY):
            desktop.x.key(keysym, False)
        desktop.stays(brindle.popover, 0.3, "open after the keys are up")
        desktop.x.chord("Caps_Lock")
        desktop.x.chord("Num_Lock")
        brindle.press_hot_key()
        brindle.await_closed()

    def test_clicks_and_menus_of_its_own_do_not_close_it(self):
        desktop = self.desktop()
        desktop.seed_history(["one", "two"])
        brindle = Brindle(desktop)
        rect = brindle.open()
        brindle.search("t")
        desktop.wait_for(lambda: brindle.list_length() == 1, 5, "filtered list")
        brindle.click_row(0, button=3)
        desktop.wait_for(brindle.menu, 5, "row's menu")
        desktop.stays(brindle.popover, 0.5, "open beside its menu")
        desktop.x.chord("Escape")
        desktop.wait_for(lambda: not brindle.menu(), 5, "menu closed")
        desktop.x.click(rect.x + 319, rect.y + 32)
        desktop.wait_for(brindle.menu, 5, "header's menu")
        desktop.stays(brindle.popover, 0.5, "open beside the header's menu")

    def test_icon_menu_quits(self):
        desktop, brindle = self.start()
        brindle.click_icon(button=3)
        desktop.wait_for(brindle.menu, 5, "menu of the icon")
        self.assertFalse(brindle.popover())
        desktop.x.chord("Escape")
        desktop.wait_for(lambda: not brindle.menu(), 5, "menu closed")
        brindle.click_icon()
        brindle.await_open()
        brindle.click_icon(button=3)
        brindle.choose(0)
        desktop.wait_for(lambda: brindle.process.poll() is not None, 10, "Brindle ends")
        self.assertEqual(brindle.process.returncode, 0)

    def test_compositor_comes_and_goes(self):
        desktop, brindle = self.start(compositor="picom")
        content = brindle.open()
        shadowed = desktop.x.rect(brindle.popover_window())
        self.assertGreater(shadowed.width, POPOVER[0])
        desktop.stop_compositor()
        desktop.wait_for(lambda: desktop.x.rect(brindle.popover_window()) == content, 5, "no margin, same place")

    def test_without_a_tray_it_opens_at_the_top_right(self):
        desktop, brindle = self.start(tray=None)
        rect = brindle.open()
        self.assertTrue(Rect(desktop.size[0] // 2, 0, desktop.size[0] // 2, 600).holds(rect), rect)


if __name__ == "__main__":
    unittest.main()
