"""What the paste tests and the matrix have in common: pastes in a row, read back to the letter."""
import itertools
import subprocess
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
    """A Brindle whose history is that text alone, so that every press of the cycling shortcut pastes the last copy."""
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


def paste_text(editor, name, tries, has_two_layouts):
    """Pastes the text so many times, from the one layout and the other: it arrives exactly."""
    desktop, text, before = editor.desktop, TEXTS[name], held(editor)
    desktop.copy(text)
    desktop.brindle.await_contents([text], 20)
    for _ in range(tries):
        if has_two_layouts:
            desktop.x.chord("ISO_Next_Group")
        press(desktop)
    desktop.wait_for(lambda: held(editor) == before + text * tries, 10 + len(text) / 20000,
                     lambda: f"{name} × {tries}; it has {held(editor)[len(before):][:200]!r}")


def paste_texts(editor, texts, layout, tries):
    set_layout(editor.desktop, layout)
    for name in texts:
        paste_text(editor, name, 1 if name == "1 MB" else tries, "," in LAYOUTS[layout])
    return tries


def paste_while_another_copy_comes(editor, tries):
    """The next copy 50 ms after the press, or a little later: every paste gives either text whole."""
    desktop = editor.desktop
    for number, delay in zip(range(tries), itertools.cycle((0.05, 0.07, 0.09, 0.11, 0.13, 0.15, 0.19))):
        before, old, new = held(editor), desktop.brindle.contents()[0], f"copy {number} äöü;"
        since = len(desktop.brindle.lines)
        desktop.x.chord(*CYCLING_KEY)
        time.sleep(delay)
        desktop.copy(new)
        desktop.brindle.await_line(SENT, since=since)
        desktop.brindle.await_contents([new])
        desktop.wait_for(lambda: held(editor) in (before + old, before + new), 5, f"a whole text, after {delay} s")
    return tries


def copy_out(editor, tries):
    """Copies what is in the application: it is captured exactly and with its application."""
    desktop, text = editor.desktop, held(editor)
    for _ in range(tries):
        desktop.copy("something else")
        desktop.brindle.await_contents(["something else"])
        editor.copy_all()
        desktop.brindle.await_contents([text])
        assert desktop.brindle.history()[0].get("sourceApp") == editor.bundle_identifier, desktop.brindle.history()
    return tries


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
    ("paste", "paste", "paste", "v", "Super_L", "Control_L"),  # until the keys repeat
]


def hold_and_paste(desktop, hold):
    since = len(desktop.brindle.lines)
    for key in sorted(set(hold) - {"paste"}, key=lambda key: key == "v"):
        desktop.x.key(key, True)
    for step in hold:
        if step == "paste":
            desktop.brindle.await_line(SENT, since=since)
            since = desktop.brindle.lines.index(SENT, since) + 1
        else:
            desktop.x.key(step, False)
    time.sleep(UNLOCK)


def paste_with_held_fingers(editor, tries):
    """Pastes while fingers stay on the keys in every way; then no key is down and typing by hand works."""
    desktop, text = editor.desktop, "held;"
    desktop.copy(text)
    desktop.brindle.await_contents([text])
    before, since = held(editor), len(desktop.brindle.lines)
    for _, hold in zip(range(tries), itertools.cycle(HOLDS)):
        hold_and_paste(desktop, hold)
    assert not desktop.x.keys_down(), desktop.x.keys_down()

    def accepted():
        return [line for line in desktop.brindle.lines[since:] if line.startswith("🎯 Using ")]
    desktop.wait_for(lambda: len(accepted()) == desktop.brindle.lines[since:].count(SENT), 5, "a paste for each step")
    expected = before + text * desktop.brindle.lines[since:].count(SENT) + "typed by hand"
    desktop.x.type("typed by hand")
    desktop.wait_for(lambda: held(editor) == expected, 20, "exact pastes and what was typed")
    return tries
