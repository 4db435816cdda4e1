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

    def __init__(self, desktop, program, others):
        self.desktop, self.x, self.wait_for = desktop, desktop.x, desktop.wait_for
        self.brindle = start(desktop, TEXT)
        self.others = [Editor(desktop, name, name=f"other-{number}.txt") for number, name in enumerate(others)]
        self.target = Editor(desktop, program, name="target.txt")

    def set_state(self, editor, state):
        self.x.ask("_NET_WM_STATE", editor.window, ADD, self.x.atom(state), 0, USER)
        self.wait_for(lambda: self.x.atom(state) in self.x.numbers(editor.window, "_NET_WM_STATE"), 5, state)

    def choose(self):
        self.brindle.open()
        self.brindle.click_row(0)

    def await_paste(self, holder):
        """The text is in that editor, once, and in no other."""
        self.brindle.await_line(SENT)
        holder.activate()
        holder.await_text(TEXT)
        for editor in {self.target, *self.others} - {holder}:
            assert editor.path.read_text().strip() == "", f"{editor.path.name} got {editor.path.read_text()!r}"


# What is done before the choice

def among_three(stage):
    stage.others += [Editor(stage.desktop, "mousepad", name="other-last.txt")]
    stage.target.activate()


def on_another_desktop(stage):
    root, x = stage.x.root, stage.x
    x.ask("_NET_NUMBER_OF_DESKTOPS", root, 2)
    stage.wait_for(lambda: x.numbers(root, "_NET_NUMBER_OF_DESKTOPS")[0] > 1, 5, "two virtual desktops")
    x.ask("_NET_CURRENT_DESKTOP", root, 1)
    stage.wait_for(lambda: x.numbers(root, "_NET_CURRENT_DESKTOP") == [1], 5, "on the second one")
    stage.wait_for(lambda: not stage.target.is_active, 5, "target no longer in front")


def minimised(stage):
    stage.x.ask("WM_CHANGE_STATE", stage.target.window, ICONIC)
    stage.wait_for(lambda: not stage.x.rect(stage.target.window), 5, "target out of sight")


def fullscreen(stage):
    stage.set_state(stage.target, "_NET_WM_STATE_FULLSCREEN")


def below_others(stage):
    stage.set_state(stage.others[0], "_NET_WM_STATE_ABOVE")


def open_dialog(*shortcut):
    def open_it(stage):
        known = set(stage.x.clients())
        stage.x.chord(*shortcut)
        stage.dialog = stage.wait_for(lambda: set(stage.x.clients()) - known, 5, "dialog").pop()
        stage.wait_for(lambda: stage.x.active() == stage.dialog, 5, "dialog in front")
    return open_it


# What happens after it, the paste among it

def paste(stage):
    stage.await_paste(stage.target)


def paste_into_dialog(stage):
    stage.brindle.await_line(SENT)
    owner = stage.x.owner("CLIPBOARD")

    def is_copied_from_dialog():
        stage.x.chord("Control_L", "a")
        stage.x.chord("Control_L", "c")
        return stage.x.owner("CLIPBOARD") != owner and stage.desktop.paste().decode() == TEXT
    stage.wait_for(is_copied_from_dialog, 5, "the text in the dialog")
    assert stage.x.active() == stage.dialog, "the dialog is no longer in front"


def close(stage):
    stage.target.process.kill()
    stage.brindle.await_line(SENT)
    assert TOO_LATE in stage.brindle.lines, "another window may have got the text without the line"
    if "🔎 Frontmost before paste: Unknown (nil)" not in stage.brindle.lines:  # some managers leave the focus to nobody
        stage.await_paste(stage.others[0])


def stop_for(seconds):
    def stop(stage):
        os.kill(stage.target.process.pid, signal.SIGSTOP)
        time.sleep(seconds)
        os.kill(stage.target.process.pid, signal.SIGCONT)
        paste(stage)
    return stop


class Scene(NamedTuple):
    program: str = "mousepad"
    before: callable = lambda stage: None
    after: callable = paste
    others: tuple = ("mousepad",)


SCENES = {
    "one of three windows": Scene(before=among_three),
    "another desktop": Scene(before=on_another_desktop),
    "minimised, alone": Scene(before=minimised, others=()),
    "fullscreen": Scene(before=fullscreen),
    "below another": Scene(before=below_others),
    "its dialog": Scene(before=open_dialog("Control_L", "r"), after=paste_into_dialog),
    "a terminal's dialog": Scene("xfce4-terminal", before=open_dialog("Control_L", "Shift_L", "f"),
                                 after=paste_into_dialog),
    "closes after the choice": Scene("featherpad", after=close),
    "stopped for 0.5 s": Scene("featherpad", after=stop_for(0.5)),
    "stopped for 2 s": Scene("featherpad", after=stop_for(2)),
    "terminal stopped for 2 s": Scene("xterm", after=stop_for(2)),
}


def play(desktop, name):
    scene = SCENES[name]
    stage = Stage(desktop, scene.program, scene.others)
    scene.before(stage)
    stage.choose()
    scene.after(stage)
