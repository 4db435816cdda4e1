"""What the paste tests and the matrix have in common: pastes in a row, read back to the letter."""
import itertools
import subprocess
import sys
import time

from applications import CYCLING_KEY, Brindle

SENT = "⌨️ Sent Cmd+V to frontmost app (HID)"
TOO_LATE = "⚠️ Frontmost app did not switch to target in time. Sending paste anyway as fallback."
UNLOCK = 0.06  # seconds from the post until the next paste is accepted
TEXTS = {
    "line": "one line: Größe 世界;",
    "newlines": "first\nsecond\n\n  fourth;",
    "tabs": "a\tb\t\tc\n\td;",
    "emoji": "👍🏽 👩‍👩‍👧 🇩🇪 e\u0301 ☺️;",
    "1 MB": "\n".join(f"{number:08} äöü {'x' * 50}" for number in range(16384)),
}
LAYOUTS = {"us": "us", "de": "de", "fr": "fr", "dvorak": "us(dvorak)", "ru": "us,ru", "gr": "us,gr"}


def start(desktop, text="x"):
    """A Brindle whose history is that text alone, so that every press of the cycling shortcut pastes the newest copy."""
    desktop.seed_history([text], limit=1)
    return Brindle(desktop)


def set_layout(desktop, name):
    """As a user does in a running session. With two layouts Caps Lock goes to the other one."""
    subprocess.run(["setxkbmap", "-layout", LAYOUTS[name], "-option", "", "-option", "grp:caps_toggle"], check=True,
                   env=desktop.environment)
    desktop.await_idle(desktop.brindle.process)


def press(desktop, modifiers=CYCLING_KEY[:2]):
    """One press of the cycling shortcut; back when its paste has gone out and the next one is accepted."""
    since = len(desktop.brindle.lines)
    desktop.x.chord(*modifiers, CYCLING_KEY[-1])
    desktop.brindle.await_line(SENT, since=since)
    time.sleep(UNLOCK)


def held(editor):
    """What is in the editor, without the line end that some editors put at a file's end; says yes to its questions."""
    if editor.x.title(editor.x.active()).startswith("Confirm Paste"):
        editor.x.chord("Return")
    return editor.text().removesuffix("\n")


def paste_in_a_row(editor, text, tries, press=press):
    """Pastes the text so many times; the number of pastes that arrived exactly."""
    before = held(editor)
    for _ in range(tries):
        press(editor.desktop)
    try:
        editor.desktop.wait_for(lambda: held(editor) == before + text * tries, 10 + len(text) / 20000, "exact text")
        return tries
    except AssertionError as failure:
        arrived = held(editor)[len(before):]
        print(f"{failure}"[:1500], f"it has {arrived[:200]!r} of {text[:40]!r} × {tries}", sep="\n", file=sys.stderr)
        count = arrived.count(text)
        return min(count, tries - 1) if arrived.replace(text, "") == "" else 0


def paste_texts(editor, texts, layout, tries):
    """Tries and exact pastes of these texts together, and which texts failed."""
    set_layout(editor.desktop, layout)
    switch = LAYOUTS[layout].count(",")

    def press_after_switch(desktop):
        if switch:
            desktop.x.chord("ISO_Next_Group")
        press(desktop)
    asked = exact = 0
    failed = []
    for name in texts:
        count = 1 if name == "1 MB" else tries
        editor.desktop.copy(TEXTS[name])
        editor.desktop.brindle.await_contents([TEXTS[name]], 20)
        arrived = paste_in_a_row(editor, TEXTS[name], count, press_after_switch)
        asked, exact = asked + count, exact + arrived
        failed += [name] * (arrived < count)
    return asked, exact, ", ".join(failed)


def paste_while_another_copy_comes(editor, tries):
    """The next copy 50 ms after the press, or a little later: the number of pastes that gave either text whole."""
    desktop, whole = editor.desktop, 0
    for number, delay in zip(range(tries), itertools.cycle((0.05, 0.07, 0.09, 0.11, 0.13, 0.15, 0.19))):
        before, old, new = held(editor), desktop.brindle.contents()[0], f"copy {number} äöü;"
        since = len(desktop.brindle.lines)
        desktop.x.chord(*CYCLING_KEY)
        time.sleep(delay)
        desktop.copy(new)
        desktop.brindle.await_line(SENT, since=since)
        desktop.brindle.await_contents([new])
        try:
            desktop.wait_for(lambda: held(editor) in (before + old, before + new), 5, "one of the texts, whole")
            whole += 1
        except AssertionError as failure:
            print(f"after {delay} s: {failure}"[:300], f"{held(editor)[len(before):]!r}", file=sys.stderr)
    return whole


def copy_out(editor, tries):
    """Copies what is in the application: the number of copies that were captured exactly and with their application."""
    desktop, captured = editor.desktop, 0
    text = held(editor)
    for _ in range(tries):
        desktop.copy("something else")
        desktop.brindle.await_contents(["something else"])
        editor.copy_all()
        desktop.brindle.await_contents([text])
        captured += desktop.brindle.history()[0].get("sourceApp") == editor.bundle_identifier
    return captured


# How fingers leave the keys: (what is held, in the order of release; "paste" is when the paste goes out)
HOLDS = [
    ("paste", "v", "Super_L", "Control_L"),
    ("v", "paste", "Super_L", "Control_L"),
    ("v", "Super_L", "Control_L", "paste"),
    ("Control_L", "Super_L", "paste", "v"),
    ("Super_L", "paste", "Control_L", "v"),
    ("paste", "Super_R", "v", "Control_R"),
    ("v", "Shift_R", "paste", "Control_R", "Super_L"),
    ("paste", "Alt_L", "Control_L", "v", "Super_R"),
]


def hold_and_paste(desktop, hold):
    mark = len(desktop.brindle.lines)
    for key in sorted((key for key in hold if key != "paste"), key=lambda key: key == "v"):
        desktop.x.key(key, True)
    for step in hold:
        if step == "paste":
            desktop.brindle.await_line(SENT, since=mark)
        else:
            desktop.x.key(step, False)
    desktop.brindle.await_line(SENT, since=mark)
    time.sleep(UNLOCK)


def paste_with_held_fingers(editor, tries):
    """Pastes while fingers stay on the keys in every way; the pastes that arrived exactly, then what remains wrong."""
    desktop, text = editor.desktop, "held;"
    desktop.copy(text)
    desktop.brindle.await_contents([text])
    before, since = held(editor), len(desktop.brindle.lines)
    for number, hold in zip(range(tries), itertools.cycle(HOLDS)):
        try:
            hold_and_paste(desktop, hold)
        except AssertionError as failure:
            raise AssertionError(f"paste {number}, {hold}, down: {desktop.x.keys_down()}: {failure}") from None
    sent = sum(line == SENT for line in desktop.brindle.lines[since:])
    desktop.wait_for(lambda: held(editor) == before + text * sent, 20, f"{sent} exact pastes")
    down = desktop.x.keys_down()
    desktop.x.type("typed by hand")
    desktop.wait_for(lambda: held(editor) == before + text * sent + "typed by hand", 10, "typing by hand")
    return sent if sent >= tries and not down else 0
