#!/usr/bin/env python3
"""tour.py BRINDLE FOLDER: plays Brindle's main job on a virtual desktop with real key presses and clicks.

Prints a line per step and leaves a screenshot of each in the folder; exits 1 at the first step that does not happen.
"""
import os
import pathlib
import sys
import time

TEXTS = ["Meeting moved to Thursday, room 4", "Dear all, the minutes are in the attachment.", "git rebase --onto main"]
PASTED = TEXTS[1]


class Tour:
    def __init__(self, desktop, brindle, folder):
        self.desktop, self.brindle, self.x, self.folder = desktop, brindle, desktop.x, folder
        self.number = 0

    def step(self, text, happened, seconds=10):
        self.number += 1
        try:
            self.desktop.wait_for(happened, seconds, text)
        except AssertionError as failure:
            self._picture("FAILED " + text)
            print(f"{self.number}. {text} ✗\n{failure}", flush=True)
            return sys.exit(1)
        self._picture(text)
        print(f"{self.number}. {text} ✓", flush=True)

    def _picture(self, text):
        """Taken when nothing on the screen has moved for a moment."""
        last = None
        for _ in range(10):
            time.sleep(0.1)
            seen = self.x.pixels()
            if seen == last:
                break
            last = seen
        name = "".join(c if c.isalnum() else "-" for c in text.lower()).strip("-")
        self.x.screenshot(self.folder / f"{self.number:02}-{name}.png")

    def play(self, editor):
        x, brindle = self.x, self.brindle
        self.step("The editor is in front and the icon in the tray", lambda: editor.is_active and brindle.icon())
        for count, text in enumerate(TEXTS, 1):
            editor.replace(text)
            editor.copy_all()
            newest_first = TEXTS[count - 1::-1]
            self.step(f"Text {count} is copied and captured", lambda: brindle.contents() == newest_first)

        editor.replace("Pasted: ")
        brindle.press_hot_key()
        self.step("Super+Shift+V opens the popover", brindle.has_focus)
        every_row = x.pixels(brindle.popover())
        brindle.search("minutes")
        self.step("Typing in the search field filters the list",
                  lambda: x.pixels(brindle.popover()) != every_row and brindle.list_length() == 1)
        brindle.click_row(0)
        self.step("A click on the entry closes the popover", lambda: not brindle.popover() and editor.is_active)
        self.step("The text is pasted into the editor", lambda: editor.text().strip() == f"Pasted: {PASTED}")
        self.step("Nothing was captured by that", lambda: brindle.contents() == TEXTS[::-1])

        brindle.click_icon()
        self.step("A click on the tray icon opens the popover", brindle.has_focus)
        brindle.search("")
        x.chord("Control_L", "a")
        x.chord("BackSpace")
        self.step("Clearing the search shows every entry", lambda: brindle.list_length() == len(TEXTS))
        brindle.click_row(1, button=3)
        self.step("A right click on an entry opens its menu", brindle.menu)
        brindle.choose(2)
        self.step("The menu's Pin pins it",
                  lambda: [item["isPinned"] for item in brindle.history()] == [False, True, False])
        brindle.press_hot_key()
        self.step("The entry wears its pin", brindle.has_focus)
        x.click(*x.rect(editor.window).centre)
        self.step("A click elsewhere closes the popover", lambda: not brindle.popover())
        brindle.click_icon(button=3)
        self.step("A right click on the tray icon opens the menu", brindle.menu)
        brindle.choose(0)
        self.step("Quit Brindle ends the program", lambda: brindle.process.poll() is not None)


def main(program, folder):
    os.environ["BRINDLE"] = str(pathlib.Path(program).resolve())
    from applications import Brindle, Editor
    from desktop import Desktop

    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    for old in folder.glob("*.png"):
        old.unlink()
    with Desktop() as desktop:
        brindle = Brindle(desktop)
        Tour(desktop, brindle, folder).play(Editor(desktop, "mousepad"))
    print(f"Screenshots: {folder}")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
