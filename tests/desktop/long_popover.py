"""A long history and a tray of the other kind, by hand: these take long to install or to run, so ctest leaves them out.

    apt-get install --no-install-recommends lxqt-panel
    BRINDLE=build/release/brindle python3 -B tests/desktop/long_popover.py [-k NAME]
"""
import unittest

from applications import Brindle, DesktopTest, Editor

PANEL = """[General]
__userfile__=true
panels=panel1
[panel1]
plugins=statusnotifier
position=Bottom
[statusnotifier]
type=statusnotifier
"""


class LongPopoverTest(DesktopTest):
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
        desktop = self.desktop(tray=None)
        configuration = desktop.home / ".config/lxqt/panel.conf"
        configuration.parent.mkdir()
        configuration.write_text(PANEL)
        panel = desktop.run("lxqt-panel")
        desktop.wait_for(lambda: desktop.x.windows("lxqt-panel"), 20, "panel")
        desktop.await_idle(panel)
        strip = desktop.x.rect(desktop.x.windows("lxqt-panel")[0])
        before = desktop.x.pixels(strip)
        brindle, editor = Brindle(desktop), Editor(desktop, "mousepad")
        desktop.wait_for(lambda: desktop.x.pixels(strip) != before, 10, "icon in the panel")
        icon = strip.x + strip.height // 2, strip.y + strip.height // 2
        for _ in range(2):
            desktop.x.click(*icon)
            rect = brindle.await_open()
            self.assertTrue(rect.x <= icon[0] + 8 and rect.y + rect.height <= strip.y, rect)
            desktop.stays(brindle.popover, 0.5, "stays open")
            desktop.x.click(*icon)
            brindle.await_closed()
            desktop.stays(lambda: not brindle.popover(), 0.5, "stays closed")
            desktop.wait_for(lambda: editor.is_active, 5, "editor in front again")
        desktop.x.click(*icon, 3)
        desktop.wait_for(lambda: desktop.x.pixels() and len(desktop.x.windows("lxqt-panel")) > 1, 5, "panel's menu")


if __name__ == "__main__":
    unittest.main()
