#!/usr/bin/python3 -B
"""tour.py BRINDLE FOLDER: plays Brindle's main job on a virtual desktop with real key presses and clicks.

Prints a line per step and leaves a screenshot of each in the folder; exits 1 at the first step that does not happen.
"""
import os
import pathlib
import sys

from applications import Brindle, Editor
from desktop import Desktop

TEXTS = ["Meeting moved to Thursday, room 4", "Dear all, the minutes are in the attachment.", "git rebase --onto main"]
PASTED = TEXTS[1]


class Tour:
    number = 0

    def __init__(self, desktop, program, folder):
        self.desktop, self.x, self.folder = desktop, desktop.x, folder
        self.brindle = Brindle(desktop, program)

    def step(self, text, happened):
        Tour.number += 1
        try:
            self.desktop.wait_for(happened, 10, text)
        except AssertionError as failure:
            sys.exit(f"{self.number}. {text} ✗\n{failure}")
        self.x.is_still()
        name = "".join(c if c.isalnum() else "-" for c in text.lower())
        self.x.screenshot(self.folder / f"{self.number:02}-{name}.png")
        print(f"{self.number}. {text} ✓", flush=True)

    def shows(self, count):
        return lambda: self.brindle.has_focus() and self.brindle.list_length() == count

    def play(self):
        x, brindle, editor = self.x, self.brindle, Editor(self.desktop, "mousepad")
        self.step("The editor is in front and the icon in the tray", lambda: editor.is_active and brindle.icon())
        for count, text in enumerate(TEXTS, 1):
            editor.replace(text)
            editor.copy_all()
            self.step(f"Text {count} is copied and captured", lambda: brindle.contents() == TEXTS[count - 1::-1])
        editor.replace("Pasted: ")
        brindle.press_hot_key()
        self.step("Super+Shift+V opens the popover", self.shows(len(TEXTS)))
        brindle.search("minutes")
        self.step("Typing in the search field filters the list", self.shows(1))
        brindle.click_row(0)
        self.step("A click on the entry closes the popover", lambda: not brindle.popover() and editor.is_active)
        self.step("The text is pasted into the editor", lambda: editor.text().strip() == f"Pasted: {PASTED}")
        self.step("Nothing was captured by that", lambda: brindle.contents() == TEXTS[::-1])

        brindle.click_icon()
        self.step("A click on the tray icon opens the popover", brindle.has_focus)
        brindle.click(150, 32)
        x.chord("Control_L", "a")
        x.chord("BackSpace")
        self.step("Clearing the search shows every entry", self.shows(len(TEXTS)))
        brindle.click_row(1, button=3)
        self.step("A right click on an entry opens its menu", lambda: brindle.menu() and brindle.popover())
        brindle.choose(2)
        self.step("The menu's Pin pins it",
                  lambda: [item["isPinned"] for item in brindle.history()] == [False, True, False])
        brindle.press_hot_key()
        self.step("The entry wears its pin", brindle.has_focus)
        self.visit_lists()
        self.visit_settings()
        x.click(*x.rect(editor.window).centre)
        self.step("A click elsewhere closes the popover", lambda: not brindle.popover())
        brindle.click_icon(button=3)
        self.step("A right click on the tray icon opens the menu", lambda: brindle.menu() and not brindle.popover())
        brindle.choose(0)
        self.step("Quit Brindle ends the program", lambda: brindle.process.poll() == 0)

    def visit_lists(self):
        brindle, x = self.brindle, self.x

        def names():
            return [each["name"] for each in brindle.stored("BrindleLists")]
        brindle.click(100, 78)
        self.step("The tab Pinned shows what is pinned", self.shows(1))
        brindle.click(39, 78)
        self.step("The tab All shows everything", self.shows(len(TEXTS)))
        brindle.click(175, 78)
        self.step("The button beside the tabs asks for a name", self.x.is_still)
        x.type("Work\n")
        self.step("Return makes the list and its tab", lambda: names() == ["Work"])
        brindle.click_row(0, button=3)
        rect = self.desktop.wait_for(brindle.menu, 5, "menu of the entry")
        x.move(rect.x + 40, rect.y + 97)
        self.desktop.wait_for(lambda: brindle.menu() != rect, 5, "the lists")
        brindle.choose(0)
        self.step("The menu's submenu files the entry", lambda: brindle.history()[0].get("listId"))
        brindle.open()
        brindle.click(180, 78)
        self.step("The list's tab shows it", self.shows(1))
        brindle.click(180, 78, button=3)
        brindle.choose(1)
        self.step("The tab's menu asks before it deletes", self.x.is_still)
        brindle.click(234, 287)
        self.step("Delete removes the list and closes the popover", lambda: not names() and not brindle.popover())
        brindle.press_hot_key()
        self.step("Its entries are still there", self.shows(len(TEXTS)))

    def visit_settings(self):
        brindle = self.brindle
        login_item = self.desktop.home / ".config/autostart/org.brindle.Brindle.desktop"
        brindle.choose_from_header(0)
        self.step("The menu's Settings slide in", self.x.is_still)
        brindle.click(202, 262)
        self.step("A size is chosen", lambda: brindle.setting("maxClipboardItems") == 100)
        brindle.click(305, 308)
        self.step("It starts at login", login_item.exists)
        brindle.click(70, 376)
        self.step("Light is chosen", lambda: brindle.setting("appTheme") == "Light")
        brindle.click(305, 191)
        self.step("The button closes the settings", self.shows(len(TEXTS)))
        brindle.choose_from_header(1)
        self.step("The menu's About tells the version", brindle.sheet)
        self.x.chord("Escape")
        self.step("Escape closes About", self.shows(len(TEXTS)))

    def visit_guide(self):
        """On a server to which nothing can post keys."""
        brindle, desktop = self.brindle, self.desktop
        desktop.copy("captured all the same")
        brindle.await_contents(["captured all the same"])
        popover = brindle.open()
        brindle.click_row(0)
        self.step("A click that may not paste opens the guide", brindle.sheet)
        brindle.await_line("No accessibility permission - showing dialog")
        guide = brindle.sheet()
        self.x.click(guide.x + 240, guide.y + 544)
        self.step("Done closes the guide", lambda: not brindle.sheet() and brindle.popover() == popover)
        self.x.chord("Control_L", "Super_L", "v")
        brindle.await_line("❌ Accessibility permission not granted. Cycling paste aborted.")


def main(program, folder):
    program, folder = os.path.abspath(program), pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    for old in folder.glob("*.png"):
        old.unlink()
    with Desktop() as desktop:
        Tour(desktop, program, folder).play()
    with Desktop(server=["-extension", "XTEST"], nested=True) as desktop:
        Tour(desktop, program, folder).visit_guide()
    print(f"Screenshots: {folder}")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
