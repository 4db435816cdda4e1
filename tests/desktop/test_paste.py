"""A choice pastes its text, exactly once, into the very window that was in front: a part of the matrix, and more."""
import argparse
import concurrent.futures
import multiprocessing
import unittest

import matrix
from applications import CYCLING_KEY, Brindle, DesktopTest, Editor
from pastes import press, start

PASTES = argparse.Namespace(layouts=["us"], texts=["tabs"], tries=50)
LAYOUTS = argparse.Namespace(layouts=["fr", "dvorak", "ru"], texts=["line"], tries=2)
HELD = argparse.Namespace(tries=16)
ONCE = argparse.Namespace(tries=1)
ROWS = [
    *(("texts", manager, program, PASTES) for manager in ("openbox", "xfwm4")
      for program in ("mousepad", "featherpad", "xterm", "xfce4-terminal")),
    ("texts", "openbox", "mousepad", LAYOUTS), ("fingers", "openbox", "xterm", HELD),
    ("copies", "openbox", "mousepad", HELD), ("captures", "openbox", "mousepad", ONCE),
    ("captures", "openbox", "featherpad", ONCE), ("windows", "metacity", "one of three windows", ONCE),
    ("windows", "openbox", "another desktop", ONCE), ("windows", "xfwm4", "below another", ONCE),
    ("windows", "xfwm4", "a terminal's dialog", ONCE), ("windows", "openbox", "closes after the choice", ONCE),
    ("windows", "openbox", "terminal stopped for 2 s", ONCE)]


class PasteTest(DesktopTest):
    options = {"tray": None}

    def test_part_of_the_matrix(self):  # mostly waits, so several desktops at a time cost little
        with concurrent.futures.ProcessPoolExecutor(4, multiprocessing.get_context("fork")) as pool:
            found = sum(pool.map(matrix.run, *zip(*ROWS)), [])
        self.assertGreaterEqual(len(found), len(ROWS))
        self.assertEqual([row for row in found if not row[3] or row[4] < row[3]], [], matrix.table(found))

    def test_what_cycling_gives_when_each_paste_is_captured(self):
        desktop = self.desktop()
        desktop.seed_history(["1", "2", "3"])
        brindle, editor = Brindle(desktop), Editor(desktop, "xterm")
        for pasted, history in (("1", "123"), ("12", "213"), ("123", "321"), ("1233", "321"), ("12332", "231")):
            press(desktop)
            editor.await_text(pasted)
            brindle.await_contents(list(history))

    def test_keys_that_a_program_holds_for_somebody_elsewhere_stay_down(self):
        desktop = self.desktop()
        start(desktop, "x")
        editor, x = Editor(desktop, "xterm"), desktop.x
        for key in CYCLING_KEY[:2]:
            x.fake_key(key, True)
        held = x.keys_down()
        for pasted in ("x", "xx"):
            press(desktop, modifiers=())
            editor.await_text(pasted)
            self.assertEqual(x.keys_down(), held)


if __name__ == "__main__":
    unittest.main()
