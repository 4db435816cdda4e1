"""What people copy elsewhere lands in the history; what Brindle copies is served and not captured again."""
import time
import unittest

from applications import Brindle, DesktopTest

COPY = 0  # the first item of a row's menu


class CaptureTest(DesktopTest):
    def test_a_word_selected_in_a_terminal(self):
        desktop, brindle = self.start(tray=None)
        desktop.run("xterm", "-xrm", "XTerm*selectToClipboard: true", "-e", "sh", "-c", "echo word; sleep 9")
        window = desktop.wait_for(lambda: desktop.x.windows("xterm"), 10, "terminal")[0]
        desktop.wait_for(lambda: desktop.x.active() == window, 10, "terminal in front")
        x, y, *_ = desktop.x.rect(window)

        def copied_by_double_click():  # the word may not be on the screen at the first one
            desktop.x.click(x + 14, y + 10)
            desktop.x.click(x + 14, y + 10)
            last = time.monotonic() + 0.5  # clicks that follow sooner would count as a third and a fourth
            while desktop.paste() != b"word" and time.monotonic() < last:
                pass
            return desktop.paste() == b"word"
        desktop.wait_for(copied_by_double_click, 10, "copy in the terminal")
        brindle.await_contents(["word"])
        self.assertEqual(brindle.history()[0]["sourceApp"], "debian-xterm")

    def test_sixty_five_megabytes_from_before_the_launch_and_back(self):
        desktop = self.desktop(tray=None)
        text = "0123456789 äöüß\r\n" * (65_000_000 // 21)
        desktop.copy(text)
        brindle = Brindle(desktop)
        brindle.await_contents([text], 60)
        brindle.open()
        brindle.click_row(0, button=3)
        brindle.choose(COPY)
        desktop.wait_for(lambda: desktop.x.owner("CLIPBOARD") in desktop.x.tree(), 10, "Brindle owns the clipboard")
        self.assertEqual(desktop.paste(), text.encode())
        time.sleep(1.1)  # two polls
        desktop.copy("from outside")
        brindle.await_contents(["from outside", text], 20)


if __name__ == "__main__":
    unittest.main()
