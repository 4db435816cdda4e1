"""A choice pastes its text, exactly once, into the very window that was in front: a part of the matrix that fits here."""
import argparse
import concurrent.futures
import multiprocessing
import unittest

import matrix
from applications import CYCLING_KEY, Brindle, DesktopTest, Editor
from pastes import SENT, copy, press, start

SEQUENCE = ["Click detected!", "Has accessibility permission - pasting", "🎯 Using lastAppFocus as target: ",
            "🔄 Activating previous app (from lastAppFocus)...", "✅ Direct activation requested for: ",
            "⏳ Waiting for frontmost to become: ", "✅ Frontmost switched to target: ", "🔎 Frontmost before paste: ", SENT]
PASTES = argparse.Namespace(layouts=["us"], texts=["tabs"], tries=50)
HELD = argparse.Namespace(tries=16)
ONCE = argparse.Namespace(tries=1)
ROWS = [
    ("texts", "openbox", "mousepad", PASTES), ("texts", "xfwm4", "mousepad", PASTES),
    ("texts", "openbox", "featherpad", PASTES), ("texts", "xfwm4", "featherpad", PASTES),
    ("texts", "openbox", "xterm", PASTES), ("texts", "xfwm4", "xterm", PASTES),
    ("texts", "openbox", "xfce4-terminal", PASTES), ("texts", "xfwm4", "xfce4-terminal", PASTES),
    ("texts", "openbox", "mousepad", argparse.Namespace(layouts=["fr", "dvorak", "ru"], texts=["line"], tries=2)),
    ("fingers", "openbox", "xterm", HELD), ("copies", "openbox", "mousepad", HELD),
    ("windows", "metacity", "one of three windows", ONCE), ("windows", "openbox", "another desktop", ONCE),
    ("windows", "xfwm4", "below another", ONCE), ("windows", "xfwm4", "its dialog", ONCE),
    ("windows", "openbox", "closes after the choice", ONCE), ("windows", "openbox", "terminal stopped for 2 s", ONCE)]
CONTROL_AND_SUPER = 0x44


class PasteTest(DesktopTest):
    def test_part_of_the_matrix(self):  # mostly waits, so several desktops at a time cost little
        with concurrent.futures.ProcessPoolExecutor(4, multiprocessing.get_context("fork")) as pool:
            found = sum(pool.map(matrix.run, *zip(*ROWS)), [])
        self.assertGreaterEqual(len(found), len(ROWS))
        self.assertEqual([row for row in found if not row[3] or row[4] < row[3]], [], matrix.table(found))

    def test_what_is_said_about_a_click(self):
        desktop = self.desktop(tray=None)
        brindle, editor = start(desktop), Editor(desktop, "mousepad")
        brindle.open()
        since = len(brindle.lines)
        brindle.click_row(0)
        brindle.await_line(SENT, since=since)
        said = [line for line in brindle.lines[since:] if any(line.startswith(text) for text in SEQUENCE)]
        self.assertEqual([line[:len(text)] for line, text in zip(said, SEQUENCE)], SEQUENCE)
        self.assertIn(f"({editor.bundle_identifier})", said[-2])
        editor.await_text("x")

    def test_what_cycling_gives_when_each_paste_is_captured(self):
        desktop = self.desktop(tray=None)
        desktop.seed_history(["1", "2", "3"])
        brindle, editor = Brindle(desktop), Editor(desktop, "xterm")
        for pasted, history in (("1", "123"), ("12", "213"), ("123", "321"), ("1233", "321"), ("12332", "231")):
            press(desktop)
            editor.await_text(pasted)
            brindle.await_contents(list(history))

    def test_cycling_through_a_history_that_is_empty_or_changes(self):
        desktop = self.desktop(tray=None)
        brindle, editor = Brindle(desktop), Editor(desktop, "xterm")
        desktop.x.chord(*CYCLING_KEY)
        desktop.copy("a")
        brindle.await_contents(["a"])
        press(desktop)
        desktop.copy("b")
        brindle.await_contents(["b", "a"])
        press(desktop)  # the second of what is there now
        editor.await_text("aa")

    def test_a_combination_that_another_program_holds(self):
        desktop = self.desktop(tray=None)
        self.assertTrue(desktop.x.grab(CYCLING_KEY[-1], CONTROL_AND_SUPER))
        brindle, editor = start(desktop), Editor(desktop, "xterm")
        brindle.await_line("Failed to create event tap")
        copy(desktop, "still captured")
        brindle.open()
        brindle.click_row(0)
        editor.await_text("still captured")


if __name__ == "__main__":
    unittest.main()
