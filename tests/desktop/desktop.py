"""A virtual desktop for one test: X server, session bus, window manager, tray and a home; all of it ends with it."""
import contextlib
import ctypes
import json
import os
import pathlib
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
import uuid

from x11 import X11

HERE = pathlib.Path(__file__).resolve().parent
FAILURES = HERE.parent.parent / "build" / "desktop-failures"
_libc = ctypes.CDLL(None)
_PR_SET_PDEATHSIG, _PR_SET_CHILD_SUBREAPER = 1, 36

WINDOW_MANAGERS = {
    "openbox": ["openbox"],
    "xfwm4": ["xfwm4", "--compositor=off"],
    "metacity": ["metacity", "--no-composite"],
    "kwin": ["kwin_x11"],
}
TRAYS = {
    "tint2": ["tint2", "-c", "tint2rc"],
    "trayer": ["trayer", "--edge", "top", "--align", "right", "--widthtype", "request", "--SetDockType", "true"],
}
TINT2 = """
rounded = 0
background_color = #2d3440 100
panel_items = TSC
panel_size = 100% 30
panel_position = top center horizontal
panel_background_id = 1
panel_padding = 4 2 8
task_maximum_size = 180 26
task_font = Inter 9
task_font_color = #ffffff 100
systray_padding = 4 4 4
systray_icon_size = 22
time1_format = %H:%M
time1_font = Inter 9
clock_font_color = #ffffff 100
"""
FOLDERS = {"HOME": "", "XDG_CONFIG_HOME": ".config", "XDG_DATA_HOME": ".local/share", "XDG_CACHE_HOME": ".cache",
           "XDG_STATE_HOME": ".local/state", "XDG_RUNTIME_DIR": "run", "TMPDIR": "tmp"}
ENVIRONMENT = {
    "PATH": "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin", "LC_ALL": "C.UTF-8", "TZ": "UTC",
    "NO_AT_BRIDGE": "1", "GTK_A11Y": "none", "GTK_USE_PORTAL": "0", "GSETTINGS_BACKEND": "memory",
    "DBUS_SESSION_BUS_ADDRESS": "disabled:", "ASAN_OPTIONS": "detect_leaks=0:abort_on_error=0",
    "UBSAN_OPTIONS": "print_stacktrace=1", "QT_LOGGING_RULES": "qt.qpa.*=false"}


class Desktop:
    """`with Desktop() as desktop:`; window manager, tray and bus may be None to leave that part out."""

    def __init__(self, window_manager="openbox", tray="tint2", compositor=False, bus=True, size=(1280, 800),
                 server=(), nested=False):
        """`nested`: the server with these arguments is a window of another one, whose fingers and mouse reach it also
        where it has no extension for them."""
        self.window_manager, self.tray_name, self.compositor, self.bus = window_manager, tray, compositor, bus
        self.size, self.server_arguments, self.nested = size, server, nested
        self.x = self.brindle = None
        self.started = []

    def __enter__(self):
        # Orphans of what we start come to us, so that they can be ended too.
        _libc.prctl(_PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="brindle-desktop-"))
        try:
            self._start()
        except BaseException:
            self.close()
            raise
        return self

    def __exit__(self, *_):
        self.close()

    def _start(self):
        self.environment = ENVIRONMENT | {name: str(self.home / folder) for name, folder in FOLDERS.items()}
        for folder in FOLDERS.values():
            (self.home / folder).mkdir(mode=0o700, parents=True, exist_ok=True)
        width, height = self.size
        if self.nested:
            self._run_server("Xvfb", "-screen", "0", f"{width}x{height}x24")
            self._run_server("Xephyr", "-screen", f"{width}x{height}", *self.server_arguments)
        else:
            self._run_server("Xvfb", "-screen", "0", f"{width}x{height}x24", *self.server_arguments)
        self.x.move(width // 2, height // 2)
        if self.bus:
            self.bus_process = self.run("dbus-daemon", "--session", "--nofork", "--print-address=1",
                                        stdout=subprocess.PIPE)
            self.environment["DBUS_SESSION_BUS_ADDRESS"] = self.bus_process.stdout.readline().decode().strip()
        if self.window_manager:
            manager = self.run(*WINDOW_MANAGERS[self.window_manager])
            self.wait_for(lambda: self.x.numbers(self.x.root, "_NET_SUPPORTING_WM_CHECK"), 10, "window manager")
            self.await_idle(manager)  # a window that is shown while it starts is lost now and then, whoever's it is
        if self.compositor:
            self.start_compositor()
        if self.tray_name:
            self.start_tray()

    def _run_server(self, program, *arguments):
        self.server = self.run(program, "-displayfd", "1", "-noreset", "-nolisten", "tcp", *arguments,
                               stdout=subprocess.PIPE)
        number = self.server.stdout.readline().decode().strip()
        if not number:
            raise RuntimeError(f"{program} did not start: " + self.output_of(self.server))
        self.environment["DISPLAY"] = f":{number}"
        self.x = X11(self.environment["DISPLAY"], hands=self.x)
        self.x.paint_root(0x51606F)

    def start_tray(self):
        (self.home / "tint2rc").write_text(TINT2)
        self.tray = self.run(*TRAYS[self.tray_name])
        self.wait_for(lambda: self.x.owner("_NET_SYSTEM_TRAY_S0"), 10, "tray")

    def end_tray(self):
        self.tray.kill()
        self.tray.wait()
        self.wait_for(lambda: not self.x.owner("_NET_SYSTEM_TRAY_S0"), 20, "tray gone")

    def replace_window_manager(self):
        before = self.x.numbers(self.x.root, "_NET_SUPPORTING_WM_CHECK")
        manager = self.run("openbox", "--replace")
        self.wait_for(lambda: self.x.numbers(self.x.root, "_NET_SUPPORTING_WM_CHECK") not in ([], before), 20,
                      "the other window manager")
        self.await_idle(manager)

    def start_compositor(self):
        self._compositor = self.run("picom", "--backend", "xrender", "--config", "/dev/null")
        self.wait_for(lambda: self.x.owner("_NET_WM_CM_S0"), 10, "compositor")

    def stop_compositor(self):
        self._compositor.terminate()
        self._compositor.wait()

    # Programs

    def run(self, *command, **options):
        """Starts a program on this desktop. Its output goes to a file of its own unless a pipe is asked for."""
        log = open(self.home / f"{len(self.started):02}-{pathlib.Path(command[0]).name}.log", "wb")
        options = {"stdin": subprocess.DEVNULL, "stdout": log, **options}
        environment = self.environment | options.pop("environment", {})
        process = subprocess.Popen(command, env=environment, cwd=self.home, stderr=log, start_new_session=True,
                                   preexec_fn=_die_with_parent, **options)
        process.log = log.name
        log.close()
        self.started.append(process)
        return process

    def output_of(self, process):
        return pathlib.Path(process.log).read_text(errors="replace")

    def close(self):
        if self.x:
            self.x.close()
        for process in reversed(self.started):
            if process.poll() is None:
                process.kill()
                process.wait()
            if process.stdout:
                process.stdout.close()
        _end_orphans()
        shutil.rmtree(self.home, ignore_errors=True)

    # Brindle's store

    @property
    def store_path(self):
        return self.home / ".local/share/brindle/defaults.sqlite3"

    def seed(self, **values):
        """A store as a Brindle that ran before would have left it."""
        self.store_path.parent.mkdir(mode=0o700, parents=True, exist_ok=True)
        with contextlib.closing(sqlite3.connect(self.store_path, isolation_level=None)) as store:
            store.executescript("PRAGMA page_size = 32768; PRAGMA user_version = 1; CREATE TABLE defaults "
                                "(key TEXT PRIMARY KEY NOT NULL, value ANY NOT NULL) STRICT, WITHOUT ROWID")
            store.executemany("INSERT INTO defaults VALUES (?, ?)", values.items())

    def seed_history(self, contents, limit=50):
        """The newest text first."""
        history = [entry(content, 700000000 - index * 60) for index, content in enumerate(contents)]
        self.seed(BrindleHistory=json.dumps(history).encode(), maxClipboardItems=limit)

    # Waiting, and what is kept of a failure

    def wait_for(self, condition, seconds, what):
        """The first true answer of the condition; a failed test, with a picture, when there is none in time. `what` is
        a text, or a function that gives it then."""
        deadline = time.monotonic() + seconds
        while not (answer := condition()):
            if time.monotonic() > deadline:
                self.fail(f"not within {seconds} s: {what if isinstance(what, str) else what()}")
            time.sleep(0.02)
        return answer

    def stays(self, condition, seconds, what):
        """Fails as soon as the condition does not hold, within that many seconds."""
        deadline = time.monotonic() + seconds
        while time.monotonic() < deadline:
            if not condition():
                self.fail(f"did not stay for {seconds} s: {what}")
            time.sleep(0.02)

    def await_idle(self, process):
        """Until it has finished what it does at its start and waits for its user, or has handed it to another one."""
        def sleeps():
            time.sleep(0.02)
            return pathlib.Path(f"/proc/{process.pid}/stat").read_text().rpartition(")")[2].split()[0] == "S"
        self.wait_for(lambda: process.poll() is not None or all(sleeps() for _ in range(5)), 20,
                      f"{process.args[0]} is idle")

    def fail(self, text):
        if self.server.poll() is None:
            FAILURES.mkdir(parents=True, exist_ok=True)
            picture = FAILURES / f"{pathlib.Path(sys.argv[0]).stem}-{os.getpid()}-{time.monotonic_ns() // 1000000}.png"
            self.x.screenshot(picture)
            text += f"\npicture: {picture}, in front: {self.x.title(self.x.active())!r}"
        if self.brindle:
            said = [*self.brindle.lines[-25:], self.output_of(self.brindle.process)[-4000:]]
            text += "\n".join(["\nBrindle said:", *said])
        raise AssertionError(text)

    # The clipboard

    def copy(self, text):
        """A copy made by xclip."""
        before = self.x.owner("CLIPBOARD")
        (self.home / "copied").write_bytes(text.encode())
        self.run("xclip", "-i", "-quiet", "-selection", "clipboard", "-t", "UTF8_STRING", "copied")
        self.wait_for(lambda: self.x.owner("CLIPBOARD") not in (0, before), 10, "xclip owns the clipboard")

    def own(self, targets, way="honest"):
        """A clipboard owner that serves exactly these targets, in one of owner.py's ways."""
        served = [f"{target}={data.hex()}" for target, data in targets.items()]
        owner = self.run(sys.executable, str(HERE / "owner.py"), way, *served, stdout=subprocess.PIPE)
        assert owner.stdout.readline() == b"owner\n", self.output_of(owner)
        return owner

    def paste(self):
        return subprocess.run(["xclip", "-o", "-selection", "clipboard", "-t", "UTF8_STRING"], env=self.environment,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=60).stdout


def entry(content, date=0, **more):
    """An entry of the stored history."""
    identifier = str(uuid.uuid4()).upper()
    return {"id": identifier, "content": content, "type": "text", "date": date, "isPinned": False, **more}


def _die_with_parent():
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGKILL, 0, 0, 0)


def _end_orphans():
    """Daemons and activated services became our children when their parents ended."""
    deadline = time.monotonic() + 5
    children = pathlib.Path(f"/proc/self/task/{os.getpid()}/children")
    while (left := children.read_text().split()) and time.monotonic() < deadline:
        for pid in map(int, left):
            os.kill(pid, signal.SIGKILL)
            os.waitpid(pid, 0)
