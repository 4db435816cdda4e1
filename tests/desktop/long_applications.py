"""The same jobs beside larger applications, by hand: these take long to install or to run, so ctest leaves them out.

    apt-get install --no-install-recommends chromium gnome-text-editor konsole xfce4-terminal lxqt-panel
    BRINDLE=build/release/brindle python3 -B tests/desktop/long_applications.py [-k NAME]
"""
import shutil
import time
import unittest

from applications import EDITORS, TERMINALS, Brindle, DesktopTest, Editor

TEXT = "pasted: Größe 世界"


class LongApplicationsTest(DesktopTest):
    def editors(self, desktop):
        for program in EDITORS:
            if shutil.which(program):
                with self.subTest(program):
                    editor = Editor(desktop, program, "copied here", program)
                    yield editor
                    editor.process.kill()

    def test_capture_and_paste(self):
        desktop = self.desktop()
        desktop.seed_history([TEXT])
        brindle = Brindle(desktop)
        for editor in self.editors(desktop):
            if editor.program not in TERMINALS:
                editor.copy_all()
                desktop.wait_for(lambda: brindle.contents()[0] == "copied here", 5, "captured")
                self.assertEqual(brindle.history()[0].get("sourceApp"), editor.bundle_identifier)
                editor.x.chord("End")
            brindle.open()
            brindle.click_row(brindle.contents().index(TEXT))
            editor.await_text("copied here" + TEXT)

    def test_sixty_five_megabytes_into_editors(self):
        text = "0123456789 äöüß\n" * (65_000_000 // 20)
        for program in ("mousepad", "featherpad"):
            with self.subTest(program), self.running() as desktop:
                desktop.seed_history([text])
                brindle, editor = Brindle(desktop), Editor(desktop, program)
                brindle.open()
                brindle.click_row(0)
                time.sleep(20)  # the editor is busy with it
                editor.await_text(text.rstrip("\n"), 120)

    def test_ten_thousand_entries(self):
        desktop = self.desktop()
        desktop.seed_history([f"entry {number}" for number in range(10_000)], limit=20_000)
        brindle = Brindle(desktop)
        rect = brindle.open()
        before = desktop.x.pixels(rect)
        for _ in range(50):
            desktop.x.click(rect.x + 100, rect.y + 300, 5)
        desktop.wait_for(lambda: desktop.x.pixels(rect) != before, 2, "the list scrolls")
        brindle.search("entry 9999")
        desktop.wait_for(lambda: brindle.list_length() == 1, 5, "one entry found")

    def test_tray_of_the_other_kind(self):
        """lxqt-panel draws the icon itself and reports clicks over the bus."""
        desktop = self.desktop(tray="lxqt-panel")
        brindle, editor = Brindle(desktop, ready=False), Editor(desktop, "mousepad")
        icon = desktop.size[0] - 16, desktop.size[1] - 16
        time.sleep(3)
        for round in range(2):
            desktop.x.click(*icon)
            brindle.await_open()
            desktop.stays(brindle.popover, 0.5, "stays open")
            desktop.x.click(*icon)
            brindle.await_closed()
            desktop.stays(lambda: not brindle.popover(), 0.5, "stays closed")
            editor.activate()


if __name__ == "__main__":
    unittest.main()
