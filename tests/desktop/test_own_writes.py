"""What Brindle puts on the clipboard is served correctly and is not captured again."""
import unittest

from applications import Brindle, DesktopTest

COPY = 0  # the first item of a row's menu


class OwnWritesTest(DesktopTest):
    def copy_row(self, brindle, index):
        brindle.open()
        brindle.click_row(index, button=3)
        brindle.choose(COPY)
        brindle.await_closed()

    def test_a_copy_from_the_menu_is_not_captured_and_the_next_one_is(self):
        desktop = self.desktop()
        desktop.seed_history(["newer", "older\r\n ünïcode \t"])
        brindle = Brindle(desktop)
        self.copy_row(brindle, 1)
        desktop.wait_for(lambda: desktop.paste() == "older\r\n ünïcode \t".encode(), 5, "Brindle serves the text")
        self.assertEqual(desktop.paste("STRING"), "older\r\n ünïcode \t".encode("latin-1"))
        before = brindle.history()
        desktop.stays(lambda: brindle.history() == before, 1.2, "history unchanged by an own write")
        desktop.copy("from outside")
        brindle.await_contents(["from outside", "newer", "older\r\n ünïcode \t"])

    def test_sixty_five_megabytes(self):
        desktop = self.desktop(tray=None)
        text = "0123456789 äöüß\n" * (65_000_000 // 20)
        desktop.copy(text)
        brindle = Brindle(desktop)
        desktop.wait_for(lambda: brindle.contents() == [text], 60, "65 MB in the store")
        self.copy_row(brindle, 0)
        desktop.wait_for(lambda: desktop.x.owner("CLIPBOARD") in desktop.x.tree(), 10, "Brindle owns the clipboard")
        self.assertEqual(desktop.paste(), text.encode())


if __name__ == "__main__":
    unittest.main()
