"""The right window, wherever it is and whatever happens to it between the choice in the popover and the paste."""
import os
import signal
import time
from typing import NamedTuple

from applications import Editor
from pastes import SENT, TOO_LATE, start

TEXT = "pasted: Größe 世界"
ADD, ICONIC, USER = 1, 3, 2  # of _NET_WM_STATE, of WM_CHANGE_STATE, the source of a request


class Stage:
    """A target, and windows that must get nothing unless the scene says so."""

    def __init__(self, desktop, program, others=("mousepad",)):
        self.desktop, self.x = desktop, desktop.x
        self.brindle = start(desktop, TEXT)
        self.others = [Editor(desktop, name, name=f"other-{number}.txt") for number, name in enumerate(others)]
        self.target = Editor(desktop, program, name="target.txt")
        self.since = 0

    def set_state(self, editor, *states):
        for state in states:
            self.x.ask("_NET_WM_STATE", editor.window, ADD, self.x.atom(state), 0, USER)
            self.desktop.wait_for(lambda: self.x.atom(state) in self.x.numbers(editor.window, "_NET_WM_STATE"), 5, state)

    def choose(self):
        self.since = len(self.brindle.lines)
        self.brindle.open()
        self.brindle.click_row(0)

    def await_paste(self, holder=None):
        """The text is in that editor, once, and in no other."""
        self.brindle.await_line(SENT, since=self.since)
        holder = holder or self.target
        holder.activate()
        holder.await_text(TEXT)
        for editor in {self.target, *self.others} - {holder}:
            assert editor.path.read_text().strip() == "", f"{editor.path.name} got {editor.path.read_text()!r}"

    def said(self, line):
        return line in self.brindle.lines[self.since:]


def among_three(stage):
    stage.others += [Editor(stage.desktop, "mousepad", name="other-last.txt")]
    stage.target.activate()
    stage.choose()
    stage.await_paste()


def on_another_desktop(stage):
    root, x = stage.x.root, stage.x
    x.ask("_NET_NUMBER_OF_DESKTOPS", root, 2)
    stage.desktop.wait_for(lambda: x.numbers(root, "_NET_NUMBER_OF_DESKTOPS")[0] > 1, 5, "two virtual desktops")
    x.ask("_NET_CURRENT_DESKTOP", root, 1)
    stage.desktop.wait_for(lambda: x.numbers(root, "_NET_CURRENT_DESKTOP") == [1], 5, "on the second one")
    stage.desktop.wait_for(lambda: not stage.target.is_active, 5, "target no longer in front")
    stage.choose()
    stage.await_paste()


def minimised(stage):
    stage.x.ask("WM_CHANGE_STATE", stage.target.window, ICONIC)
    stage.desktop.wait_for(lambda: not stage.x.rect(stage.target.window), 5, "target out of sight")
    stage.choose()
    stage.await_paste()


def fullscreen(stage):
    stage.set_state(stage.target, "_NET_WM_STATE_FULLSCREEN")
    stage.choose()
    stage.await_paste()
    assert stage.x.rect(stage.target.window)[2:] == stage.desktop.size, "no longer fullscreen"


def below_others(stage):
    stage.set_state(stage.others[0], "_NET_WM_STATE_ABOVE")
    stage.choose()
    stage.await_paste()


def above_others(stage):
    stage.set_state(stage.target, "_NET_WM_STATE_ABOVE")
    stage.others[0].activate()
    stage.target.activate()
    stage.choose()
    stage.await_paste()


def dialog(stage):
    known = set(stage.x.clients())
    stage.x.chord("Control_L", "r")
    found = stage.desktop.wait_for(lambda: set(stage.x.clients()) - known, 5, "dialog").pop()
    stage.desktop.wait_for(lambda: stage.x.active() == found, 5, "dialog in front")
    stage.choose()
    stage.brindle.await_line(SENT, since=stage.since)
    owner = stage.x.owner("CLIPBOARD")

    def is_copied_from_dialog():
        stage.x.chord("Control_L", "a")
        stage.x.chord("Control_L", "c")
        return stage.x.owner("CLIPBOARD") != owner and stage.desktop.paste().decode() == TEXT
    stage.desktop.wait_for(is_copied_from_dialog, 5, "the text in the dialog")
    assert stage.x.active() == found, "the dialog is no longer in front"


def closes(stage):
    stage.choose()
    stage.target.process.kill()
    stage.brindle.await_line(SENT, since=stage.since)
    assert stage.said(TOO_LATE), "another window may have got the text without the line"
    if not stage.said("🔎 Frontmost before paste: Unknown (nil)"):  # some window managers leave the focus to nobody
        stage.await_paste(stage.others[0])


def stopped(seconds):
    def scene(stage):
        stage.choose()
        os.kill(stage.target.process.pid, signal.SIGSTOP)
        time.sleep(seconds)
        os.kill(stage.target.process.pid, signal.SIGCONT)
        stage.await_paste()
    return scene


class Scene(NamedTuple):
    program: str
    play: callable
    others: tuple = ("mousepad",)


SCENES = {
    "one of three windows": Scene("mousepad", among_three),
    "another desktop": Scene("mousepad", on_another_desktop),
    "minimised, alone": Scene("mousepad", minimised, ()),
    "fullscreen": Scene("mousepad", fullscreen),
    "below another": Scene("mousepad", below_others),
    "above another": Scene("mousepad", above_others),
    "its dialog": Scene("mousepad", dialog),
    "closes after the choice": Scene("featherpad", closes),
    "stopped for 0.5 s": Scene("featherpad", stopped(0.5)),
    "stopped for 2 s": Scene("featherpad", stopped(2)),
    "terminal stopped for 2 s": Scene("xterm", stopped(2)),
}


def play(desktop, name):
    scene = SCENES[name]
    scene.play(Stage(desktop, scene.program, scene.others))
