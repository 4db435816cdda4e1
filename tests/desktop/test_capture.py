"""What people copy elsewhere lands in the history: once, byte for byte, with its application, and never by waiting."""
import time
import unittest

from applications import Brindle, DesktopTest, Editor

TEXT = "Grüße, 世界 😀\n\tindented  twice\nend"


class CaptureTest(DesktopTest):
    def test_editors_and_terminal(self):
        desktop, brindle = self.start()
        expected = []
        for program in ("mousepad", "featherpad"):
            editor = Editor(desktop, program, f"{program}: {TEXT}", f"{program}.txt")
            editor.copy_all()
            expected.insert(0, (f"{program}: {TEXT}", editor.bundle_identifier))
            self.await_entries(brindle, expected)

        terminal = desktop.run("xterm", "-xrm", "XTerm*selectToClipboard: true", "-e", "sh", "-c", "echo word; sleep 9")
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
        self.await_entries(brindle, [("word", "debian-xterm"), *expected])
        terminal.kill()

    def await_entries(self, brindle, expected):
        brindle.await_contents([content for content, _ in expected])
        self.assertEqual([item.get("sourceApp") for item in brindle.history()], [source for _, source in expected])

    def test_kinds_of_owners(self):
        desktop, brindle = self.start(tray=None)
        utf8 = TEXT.encode()
        captured = []
        for targets, content in (
                ({"UTF8_STRING": utf8}, TEXT),
                ({"text/plain;charset=utf-8": b"caf\xc3\xa9"}, "café"),
                ({"STRING": b"na\xefve"}, "naïve"),
                ({"UTF8_STRING": b"best", "STRING": b"second best", "text/html": b"<b>best</b>"}, "best"),
                ({"UTF8_STRING": b"broken \xe2\x82 and \xff"}, "broken \ufffd and \ufffd"),
                ({"image/png": b"\x89PNG"}, None),
                ({"UTF8_STRING": b"secret", "x-kde-passwordManagerHint": b"secret"}, None),
                ({"UTF8_STRING": b"the end"}, "the end")):
            desktop.own(targets)
            if content is None:
                desktop.stays(lambda: brindle.contents() == captured, 1.1, f"not captured: {targets}")  # two polls
                continue
            captured.insert(0, content)
            with self.subTest(content):
                brindle.await_contents(captured)
        text = "0123456789abcdef" * 300_000
        desktop.copy(text)
        brindle.await_contents([text, *captured], 15)

    def test_text_at_launch_is_offered(self):
        desktop = self.desktop(tray=None)
        desktop.copy("there before")
        Brindle(desktop).await_contents(["there before"])


if __name__ == "__main__":
    unittest.main()
