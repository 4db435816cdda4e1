#!/usr/bin/env python3
"""pictures.py BRINDLE FOLDER: the README's pictures of the real program on a virtual desktop, dark and light."""
import json
import os
import pathlib
import sys
import time
import uuid

ENTRIES = [  # text, application, pinned, list
    ("git rebase --autosquash main", "debian-xterm", False, "Dev"),
    ("Thanks for the notes. I moved the review to Thursday at ten, so that we both have time to read the draft.",
     "org.xfce.mousepad", False, "Work"),
    ("for (const auto& row : rows)\n    total += row.price * row.count;", "debian-xterm", False, "Dev"),
    ("https://docs.example.org/install", "org.xfce.mousepad", True, None),
    ("Lunch at noon? \U0001F957 See you there \U0001F44B", "org.xfce.mousepad", False, None),
    ("42 Harbour Street, Unit 5", "org.xfce.mousepad", False, "Work"),
    ("orders@example.com", None, False, "Work"),
]


def stored_values(theme):
    lists = {name: str(uuid.uuid4()).upper() for name in ("Work", "Dev")}
    now = time.time() - 978307200
    history = []
    for index, (content, application, is_pinned, list_name) in enumerate(ENTRIES):
        entry = {"id": str(uuid.uuid4()).upper(), "content": content, "type": "text", "date": now - index * 400,
                 "isPinned": is_pinned}
        if application:
            entry["sourceApp"] = application
        if list_name:
            entry["listId"] = lists[list_name]
        history.append(entry)
    named = [{"id": identifier, "name": name, "createdAt": now} for name, identifier in lists.items()]
    return {"BrindleHistory": json.dumps(history).encode(), "BrindleLists": json.dumps(named).encode(),
            "appTheme": theme}


def take(theme, path):
    from applications import Brindle
    from desktop import Desktop, write_store
    from x11 import Rect

    with Desktop(compositor="picom", size=(800, 600)) as desktop:
        desktop.store_path.parent.mkdir(mode=0o700, parents=True)
        write_store(desktop.store_path, **stored_values(theme))
        brindle = Brindle(desktop)
        brindle.click_icon()
        desktop.wait_for(brindle.has_focus, 10, "open popover")
        desktop.x.move(*brindle.row(1))
        time.sleep(0.5)  # for the picture alone: hover, and the compositor's last frame
        desktop.x.screenshot(path, Rect(400, 0, 400, 560))


def main(program, folder):
    os.environ["BRINDLE"] = str(pathlib.Path(program).resolve())
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    for theme in ("Dark", "Light"):
        take(theme, folder / f"desktop-{theme.lower()}.png")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
