"""Desktops that lack something: Brindle does what is left to do, and says what it must."""
import signal
import subprocess
import time
import unittest

from applications import HOT_KEY, Brindle, DesktopTest, Editor
from x11 import Rect

SHIFT_AND_SUPER = 0x41


class BadSurroundingsTest(DesktopTest):
    def test_no_window_manager(self):
        desktop = self.desktop(window_manager=None, tray=None)
        brindle = Brindle(desktop)
        desktop.copy("without a manager")
        brindle.await_contents(["without a manager"])
        brindle.open()
        brindle.press_hot_key()
        brindle.await_closed()

    def test_no_xtest(self):
        desktop = self.desktop(tray=None, server=["-extension", "XTEST"])
        brindle = Brindle(desktop)
        desktop.copy("captured all the same")
        brindle.await_contents(["captured all the same"])
        desktop.run(brindle.process.args[0])
        brindle.await_open()
        self.assertIsNone(brindle.process.poll())

    def test_hot_key_held_by_another_program(self):
        desktop = self.desktop()
        self.assertTrue(desktop.x.grab(HOT_KEY[-1], SHIFT_AND_SUPER))
        brindle = Brindle(desktop)
        brindle.await_line("Failed to register hotkey: 10")
        brindle.click_icon()
        brindle.await_open()
        desktop.copy("still captured")
        brindle.await_contents(["still captured"])

    def test_a_tray_that_comes_late_and_one_that_restarts(self):
        desktop = self.desktop(tray=None)
        brindle = Brindle(desktop)
        brindle.open()  # settled without any tray
        brindle.press_hot_key()
        brindle.await_closed()
        desktop.tray_name = "tint2"
        for _ in range(2):
            desktop.start_tray()
            desktop.wait_for(brindle.icon, 10, "icon in the tray")
            brindle.click_icon()
            brindle.await_open()
            brindle.click_icon()
            brindle.await_closed()
            desktop.tray.kill()
            desktop.tray.wait()
            desktop.wait_for(lambda: not desktop.x.owner("_NET_SYSTEM_TRAY_S0"), 5, "tray gone")

    def test_a_screen_smaller_than_the_popover(self):
        desktop, brindle = self.start(size=(320, 400), tray=None)
        rect = brindle.open()
        self.assertTrue(rect.x <= 0 and rect.y >= 0 or Rect(0, 0, 320, 400).holds(rect), rect)
        brindle.press_hot_key()
        brindle.await_closed()

    def test_no_session_bus(self):
        desktop, brindle = self.start(bus=False)
        editor = Editor(desktop, "mousepad", "copied")
        editor.copy_all()
        brindle.await_contents(["copied"])
        brindle.click_icon()
        brindle.await_open()

    def test_everything_changes_around_it(self):
        desktop, brindle = self.start()
        environment = desktop.environment

        def stop_for_a_while():
            brindle.process.send_signal(signal.SIGSTOP)
            time.sleep(2)
            brindle.process.send_signal(signal.SIGCONT)

        def resize(mode):
            subprocess.run(["xrandr", "--output", "screen", "--mode", mode], env=environment, check=True)
            desktop.wait_for(lambda: mode.startswith(str(desktop.x.rect(desktop.x.root).width)), 5, "new size")

        def is_wholly_visible():
            if not brindle.popover():  # the focus may have gone elsewhere, and does so when it likes
                brindle.press_hot_key()
                time.sleep(0.5)
            rect = brindle.popover()
            return rect and desktop.x.rect(desktop.x.root).holds(rect)

        subprocess.run("xrandr --newmode 800x600 40 800 840 968 1056 600 601 605 628; xrandr --addmode screen 800x600",
                       shell=True, env=environment, check=True)
        captured = []
        for name, happen in (
                ("window manager replaced", lambda: desktop.run("openbox", "--replace")),
                ("compositor started", desktop.start_compositor), ("compositor killed", desktop.stop_compositor),
                ("smaller screen", lambda: resize("800x600")), ("larger screen", lambda: resize("1280x800")),
                ("bus gone", lambda: (desktop.bus_process.kill(), desktop.bus_process.wait())),
                ("stopped for a while", stop_for_a_while)):
            with self.subTest(name):
                brindle.open()
                happen()
                captured.insert(0, name)
                desktop.copy(name)
                brindle.await_contents(captured)
                desktop.wait_for(is_wholly_visible, 5, "wholly visible")
                brindle.press_hot_key()
                brindle.await_closed()

    def test_asked_to_end_it_ends_at_once(self):
        desktop = self.desktop(tray=None)
        for number in (signal.SIGTERM, signal.SIGHUP):
            brindle = Brindle(desktop)
            brindle.open()
            brindle.process.send_signal(number)
            self.assertEqual(brindle.process.wait(2), 0)


if __name__ == "__main__":
    unittest.main()
