"""Desktops that lack something: Brindle does what is left to do, and says what it must."""
import os
import resource
import signal
import subprocess
import time
import unittest

from applications import CYCLING_KEY, HOT_KEY, Brindle, DesktopTest, Editor
from x11 import Rect

SHIFT_AND_SUPER, CONTROL_AND_SUPER = 0x41, 0x44


class BadSurroundingsTest(DesktopTest):
    def test_nothing_but_a_small_screen(self):
        desktop, brindle = self.start(window_manager=None, tray=None, bus=False, size=(320, 400))
        desktop.copy("captured all the same")
        brindle.await_contents(["captured all the same"])
        rect = brindle.open()
        self.assertTrue(rect.x <= 0 and rect.y >= 0 or Rect(0, 0, 320, 400).holds(rect), rect)
        brindle.press_hot_key()
        brindle.await_closed()

    def test_combinations_that_another_program_holds(self):
        desktop = self.desktop()
        self.assertTrue(desktop.x.grab(HOT_KEY[-1], SHIFT_AND_SUPER))
        self.assertTrue(desktop.x.grab(CYCLING_KEY[-1], CONTROL_AND_SUPER))
        brindle, editor = Brindle(desktop), Editor(desktop, "xterm")
        brindle.await_line("Failed to register hotkey: 10")
        brindle.await_line("Failed to create event tap")
        desktop.copy("still captured")
        brindle.await_contents(["still captured"])
        brindle.click_icon()
        brindle.await_open()
        brindle.click_row(0)
        editor.await_text("still captured")

    def test_a_crash_leaves_no_core_dump(self):
        _, hard = resource.getrlimit(resource.RLIMIT_CORE)
        resource.setrlimit(resource.RLIMIT_CORE, (hard, hard))
        for is_private in (False, True):  # at first a limit keeps the dump away, which is given back later
            desktop = self.desktop()
            brindle = Brindle(desktop, ASAN_OPTIONS="disable_coredump=0")
            pid = brindle.process.pid

            def limit():
                return resource.prlimit(pid, resource.RLIMIT_CORE)[0]
            self.assertEqual(limit(), 1)
            if is_private:
                desktop.wait_for(lambda: limit() == hard, 10, "the limit is given back")
            brindle.process.send_signal(signal.SIGABRT)
            _, status = os.waitpid(pid, 0)
            self.assertEqual((os.WTERMSIG(status), os.WCOREDUMP(status)), (signal.SIGABRT, False), is_private)

    def test_a_tray_that_comes_late_and_one_that_restarts(self):
        desktop = self.desktop(tray=None)
        brindle = Brindle(desktop)
        brindle.open()  # settled without any tray
        brindle.press_hot_key()
        brindle.await_closed()
        desktop.tray_name = "tint2"
        for _ in range(2):
            desktop.start_tray()
            brindle.click_icon()
            brindle.await_open()
            brindle.click_icon()
            brindle.await_closed()
            desktop.end_tray()

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

        def toggled(is_wanted):
            if not is_wanted(brindle.popover()):  # the focus may have gone elsewhere, and does so when it likes
                brindle.press_hot_key()
                time.sleep(0.5)
            return is_wanted(brindle.popover())

        subprocess.run("xrandr --newmode 800x600 40 800 840 968 1056 600 601 605 628; xrandr --addmode screen 800x600",
                       shell=True, env=environment, check=True)
        captured = []
        for name, happen in (
                ("window manager replaced", desktop.replace_window_manager),
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
                desktop.wait_for(lambda: toggled(lambda rect: rect and desktop.x.rect(desktop.x.root).holds(rect)), 5,
                                 "wholly visible")
                desktop.wait_for(lambda: toggled(lambda rect: not rect), 5, "closed")


if __name__ == "__main__":
    unittest.main()
