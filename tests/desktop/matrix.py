#!/usr/bin/python3 -B
"""Pastes into every application, window manager and keyboard layout that is installed, and prints what arrived.

    BRINDLE=build/release/brindle tests/desktop/matrix.py [--part PART] [--programs …] [--managers …] [--help]

Parts: texts (every text and layout), windows (the right window in every place it can be), fingers (1,000 pastes with
held fingers), copies (another copy while a paste is under way), captures (copies out of editors and browsers). Debian
packages: gnome-text-editor kate libreoffice-writer libreoffice-gtk3 chromium firefox-esr xfce4-terminal konsole kitty
alacritty emacs-lucid vim-gtk3 kwin-x11; those that are not there are left out.
"""
import argparse
import concurrent.futures
import multiprocessing
import shutil
import sys

from applications import Editor
from desktop import WINDOW_MANAGERS, Desktop
from pastes import (LAYOUTS, TEXTS, copy_out, paste_texts, paste_while_another_copy_comes, paste_with_held_fingers,
                    start)
from programs import PROGRAMS
from scenes import SCENES, play

HEAD = ("application", "manager", "layout or place", "tries", "exact", "")


def texts_rows(manager, program, options):
    with Desktop(window_manager=manager, tray=None) as desktop:
        start(desktop)
        editor = Editor(desktop, program)
        for layout in options.layouts:
            # The largest text is about the application, not about the keyboard.
            texts = [text for text in options.texts if text != "1 MB" or layout == options.layouts[0]]
            yield program, manager, layout, options.tries, paste_texts(editor, texts, layout, options.tries), ""


def windows_rows(manager, scene, options):
    for _ in range(options.tries):
        with Desktop(window_manager=manager, tray=None) as desktop:
            play(desktop, scene)
    yield SCENES[scene].program, manager, scene, options.tries, options.tries, ""


def in_a_row(job, layout, text=""):
    def rows(manager, program, options):
        with Desktop(window_manager=manager, tray=None) as desktop:
            start(desktop)
            yield program, manager, layout, options.tries, job(Editor(desktop, program, text), options.tries), ""
    return rows


def asked_for(*kinds):
    return lambda options: [name for name in options.programs if not kinds or PROGRAMS[name].kind in kinds]


PARTS = {  # part: (rows, on what, tries when none are asked for)
    "texts": (texts_rows, asked_for(), 3),
    "windows": (windows_rows, lambda _: SCENES, 3),
    "fingers": (in_a_row(paste_with_held_fingers, "fingers held"), asked_for(), 1000),
    "copies": (in_a_row(paste_while_another_copy_comes, "next copy"), asked_for(), 100),
    "captures": (in_a_row(copy_out, "copied out", TEXTS["tabs"] + TEXTS["emoji"]), asked_for("editor", "browser"), 3),
}


def run(part, manager, subject, options):
    """The rows of one part; what failed is the last row's note, and what would have followed is left out."""
    found = []
    try:
        found.extend(PARTS[part][0](manager, subject, options))
    except Exception as failure:  # noqa: one broken application must not end the matrix
        print(f"{manager}, {subject}: {failure}", file=sys.stderr)
        found.append((subject, manager, "", 0, 0, str(failure).splitlines()[0]))
    return found


def table(rows):
    return "\n".join("{:18} {:9} {:26} {:>5} {:>5}  {}".format(*map(str, row)) for row in [HEAD, *rows])


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--part", choices=PARTS, default="texts")
    parser.add_argument("--programs", nargs="+", default=list(PROGRAMS), choices=PROGRAMS)
    parser.add_argument("--managers", nargs="+", default=list(WINDOW_MANAGERS), choices=WINDOW_MANAGERS)
    parser.add_argument("--layouts", nargs="+", default=list(LAYOUTS), choices=LAYOUTS)
    parser.add_argument("--texts", nargs="+", default=list(TEXTS), choices=TEXTS)
    parser.add_argument("--tries", type=int, help="of each text, scene or row")
    parser.add_argument("--jobs", type=int, default=2, help="desktops at a time")
    options = parser.parse_args()
    options.tries = options.tries or PARTS[options.part][2]
    options.programs = [name for name in options.programs if shutil.which(PROGRAMS[name].command[0])]
    options.managers = [name for name in options.managers if shutil.which(WINDOW_MANAGERS[name][0])]
    rows = []
    # A process each: a desktop ends whatever its process has started.
    with concurrent.futures.ProcessPoolExecutor(options.jobs, multiprocessing.get_context("fork")) as pool:
        jobs = [pool.submit(run, options.part, manager, subject, options)
                for subject in PARTS[options.part][1](options) for manager in options.managers]
        for job in concurrent.futures.as_completed(jobs):
            print(table(job.result()).partition("\n")[2], flush=True)
            rows += job.result()
    print(table(sorted(rows, key=lambda row: (row[0], row[1]))))
    return any(row[4] < row[3] or not row[3] for row in rows)


if __name__ == "__main__":
    sys.exit(main())
