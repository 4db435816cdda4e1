#!/usr/bin/python3 -B
"""pictures.py BRINDLE FOLDER: the README's pictures of the real program on a virtual desktop, dark and light."""
import json
import os
import pathlib
import sys
import time
import uuid

from applications import ROW_HEIGHT, ROWS_TOP, Brindle
from desktop import Desktop, entry
from x11 import Rect

WORK, DEV = (str(uuid.uuid4()).upper() for _ in range(2))
NOW = time.time() - 978307200  # since 2001
EDITOR, TERMINAL = {"sourceApp": "org.xfce.mousepad"}, {"sourceApp": "debian-xterm"}
ENTRIES = [
    ("git rebase --autosquash main", {**TERMINAL, "listId": DEV}),
    ("Thanks for the notes. I moved the review to Thursday at ten, so that we both have time to read the draft.",
     {**EDITOR, "listId": WORK}),
    ("for (const auto& row : rows)\n    total += row.price * row.count;", {**TERMINAL, "listId": DEV}),
    ("https://docs.example.org/install", {**EDITOR, "isPinned": True}),
    ("Lunch at noon? \U0001F957 See you there \U0001F44B", EDITOR),
    ("42 Harbour Street, Unit 5", {**EDITOR, "listId": WORK}),
    ("orders@example.com", {"listId": WORK}),
]


def take(program, theme, path):
    history = [entry(text, NOW - index * 400, **more) for index, (text, more) in enumerate(ENTRIES)]
    lists = [{"id": identifier, "name": name, "createdAt": NOW} for identifier, name in ((WORK, "Work"), (DEV, "Dev"))]
    with Desktop(compositor=True, size=(800, 600)) as desktop:
        desktop.seed(BrindleHistory=json.dumps(history).encode(), BrindleLists=json.dumps(lists).encode(),
                     appTheme=theme)
        brindle = Brindle(desktop, program)
        brindle.click_icon()
        rect = brindle.await_open()
        desktop.x.move(rect.x + 150, rect.y + ROWS_TOP + ROW_HEIGHT * 3 // 2)
        time.sleep(0.5)  # for the picture alone: hover, and the compositor's last frame
        desktop.x.screenshot(path, Rect(400, 0, 400, 560))


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    folder = pathlib.Path(sys.argv[2])
    folder.mkdir(parents=True, exist_ok=True)
    for theme in ("Dark", "Light"):
        take(os.path.abspath(sys.argv[1]), theme, folder / f"desktop-{theme.lower()}.png")
