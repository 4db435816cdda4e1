"""A click on an entry pastes it, exactly once, into the very window that was in front."""
import unittest

from applications import Brindle, DesktopTest, Editor

SEQUENCE = ["Click detected!", "Has accessibility permission - pasting", "🎯 Using lastAppFocus as target: ",
            "🔄 Activating previous app (from lastAppFocus)...", "✅ Direct activation requested for: ",
            "⏳ Waiting for frontmost to become: ", "✅ Frontmost switched to target: ", "🔎 Frontmost before paste: ",
            "⌨️ Sent Cmd+V to frontmost app (HID)"]
TEXT = "pasted: Größe 世界"


class PasteTest(DesktopTest):
    def start_with(self, *texts):
        desktop = self.desktop()
        desktop.seed_history(texts)
        return desktop, Brindle(desktop)

    def paste(self, brindle, index=0):
        since = len(brindle.lines)
        brindle.open()
        brindle.click_row(index)
        brindle.await_line(SEQUENCE[-1], since=since)
        return brindle.lines[since:]

    def test_editors_and_terminal(self):
        for window_manager in ("openbox", "xfwm4", "metacity"):
            with self.running(window_manager=window_manager) as desktop:
                desktop.seed_history(["newest", TEXT])
                brindle = Brindle(desktop)
                for program in ("mousepad", "featherpad", "xterm"):
                    with self.subTest(program, window_manager=window_manager):
                        self.paste_twice(brindle, Editor(desktop, program, name=f"{program}.txt"))
                self.assertEqual(brindle.contents(), ["newest", TEXT])

    def paste_twice(self, brindle, editor):
        lines = self.paste(brindle, 1)
        editor.await_text(TEXT)
        self.assertTrue(editor.is_active)
        said = [line for line in lines if any(line.startswith(text) for text in SEQUENCE)]
        self.assertEqual([line[:len(text)] for line, text in zip(said, SEQUENCE)], SEQUENCE)
        self.assertIn(f"({editor.bundle_identifier})", said[-2])
        self.paste(brindle, 1)
        editor.await_text(TEXT * 2)

    def test_the_window_that_was_in_front_among_several(self):
        desktop, brindle = self.start_with(TEXT)
        editors = [Editor(desktop, "mousepad", name=f"{name}.txt") for name in ("one", "two", "three")]
        for editor in (editors[1], editors[0]):
            editor.activate()
            self.paste(brindle)
            editor.await_text(TEXT)
        self.assertEqual([editor.path.read_text().strip() for editor in editors], [TEXT, TEXT, ""])

    def test_fingers_still_on_modifiers(self):
        desktop, brindle = self.start_with("x")
        editor = Editor(desktop, "mousepad")
        for count, held in enumerate(("Shift_L", "Control_R", "Super_L"), 1):
            with self.subTest(held):
                since = len(brindle.lines)
                brindle.open()
                desktop.x.key(held, True)
                brindle.click_row(0)
                brindle.await_line(SEQUENCE[-1], since=since)
                desktop.x.key(held, False)
                editor.await_text("x" * count)
        desktop.x.type("typed")
        editor.await_text("xxxtyped")


if __name__ == "__main__":
    unittest.main()
