"""The editors, browsers and terminals of the tests: how each is started, and how it tells exactly what it holds."""
import http.server
import threading
from typing import NamedTuple

TO_FILE = ["sh", "-c", 'stty -icanon -echo; exec cat >> "$0"']  # what a terminal runs; the file follows
PAGE = """<!doctype html><meta charset=utf-8><textarea style="width:90%;height:90vh">{}</textarea><script>
const area = document.querySelector("textarea");
let last = Promise.resolve();
area.oninput = () => last = last.then(() => fetch("/", {method: "POST", body: area.value}));
area.focus(); requestAnimationFrame(() => requestAnimationFrame(area.oninput));
</script>"""
FIREFOX = "".join(f'user_pref("{name}", {value});\n' for name, value in {
    "app.normandy.enabled": "false", "app.update.enabled": "false", "browser.aboutwelcome.enabled": "false",
    "browser.shell.checkDefaultBrowser": "false", "browser.startup.homepage_override.mstone": '"ignore"',
    "datareporting.policy.dataSubmissionEnabled": "false", "extensions.update.enabled": "false",
    "network.captive-portal-service.enabled": "false", "network.connectivity-service.enabled": "false",
    "toolkit.telemetry.enabled": "false"}.items())
OFFICE = """<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry">
<item oor:path="/org.openoffice.Office.Common/Save/Document"><prop oor:name="WarnAlienFormat" oor:op="fuse">
<value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="FirstRun" oor:op="fuse"><value>false</value></prop>
<prop oor:name="ShowTipOfTheDay" oor:op="fuse"><value>false</value></prop></item>
</oor:items>"""


class Program(NamedTuple):
    """The command takes a file's path, or a page's address, at its end; {home} in it is the home folder."""

    command: list
    window_class: str
    bundle_identifier: str
    kind: str = "editor"  # saves with Control+S; "self-saving"; "browser"; "terminal", which writes down what it gets
    files: dict = {}  # of configuration, below the home folder
    environment: dict = {}


PROGRAMS = {
    "mousepad": Program(["mousepad", "--opening-mode=window"], "mousepad", "org.xfce.mousepad"),
    "featherpad": Program(["featherpad", "--win"], "featherpad", "featherpad",
                          files={".config/featherpad/fp.conf": "[text]\nappendEmptyLine=false\n"}),
    "xterm": Program(["xterm", "-e", *TO_FILE], "xterm", "debian-xterm", "terminal"),
    "gnome-text-editor": Program(["gnome-text-editor", "--new-window"], "gnome-text-editor", "org.gnome.TextEditor"),
    "kate": Program(["kate", "--new", "--startanon"], "kate", "org.kde.kate", files={
        ".config/katepartrc": "[KTextEditor Document]\nReplaceTabsDyn=false\nRemove Spaces=0\nNewline at EOF=false\n"
                              "Indent On Text Paste=false\n"}),
    "soffice": Program(["soffice", "--writer", "--norestore", "--nologo", "-env:UserInstallation=file://{home}/office"],
                       "libreoffice-writer", "libreoffice-writer",
                       files={"office/user/registrymodifications.xcu": OFFICE}),
    # Of pastes that follow each other 0.2 s apart it loses about one in fifty, whoever owns the clipboard, xclip as well.
    # It waits for an answer that it has read from the server already until the next event wakes it, and drops the paste
    # if that event is the next copy.
    "chromium": Program(["chromium", "--no-sandbox", "--no-first-run", "--disable-gpu", "--password-store=basic",
                         "--disable-background-networking", "--disable-component-update", "--disable-sync"],
                        "chromium", "chromium", "browser"),
    "firefox-esr": Program(["firefox-esr", "--no-remote", "--profile", "{home}/firefox"], "firefox-esr", "firefox-esr",
                           "browser", files={"firefox/user.js": FIREFOX}),
    "xfce4-terminal": Program(["xfce4-terminal", "-x", *TO_FILE], "xfce4-terminal", "xfce4-terminal", "terminal", {
        ".config/xfce4/terminal/terminalrc": "[Configuration]\nMiscShowUnsafePasteDialog=FALSE\n"}),
    "konsole": Program(["konsole", "-e", *TO_FILE], "konsole", "org.kde.konsole", "terminal"),
    "kitty": Program(["kitty", "-o", "paste_actions=no-op", *TO_FILE], "kitty", "kitty", "terminal",
                     environment={"LIBGL_ALWAYS_SOFTWARE": "1"}),
    "alacritty": Program(["alacritty", "-e", *TO_FILE], "alacritty", "Alacritty", "terminal",
                         environment={"LIBGL_ALWAYS_SOFTWARE": "1"}),
    "emacs": Program(["emacs", "-Q", "--eval", "(progn (setq make-backup-files nil auto-save-default nil"
                      " auto-save-visited-interval 0.2) (prefer-coding-system 'utf-8) (auto-save-visited-mode))"],
                     "emacs", "emacs", "self-saving"),
    "gvim": Program(["gvim", "-fn", "-i", "NONE", "-c", "autocmd TextChangedI * silent write", "-c", "startinsert"],
                    "gvim", "gvim", "self-saving"),
}


class PageServer(http.server.ThreadingHTTPServer):
    """Serves a page with a text field to a browser on this machine, and keeps the field's text in the file."""

    daemon_threads = True

    def __init__(self, path, text):
        self.path, self.page = path, PAGE.replace("{}", text).encode()
        path.unlink(missing_ok=True)  # until the page is there
        super().__init__(("127.0.0.1", 0), _Handler)
        self.address = f"http://127.0.0.1:{self.server_port}/"
        threading.Thread(target=self.serve_forever, daemon=True).start()



class _Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        self._answer(self.server.page)

    def do_POST(self):
        text = self.rfile.read(int(self.headers["Content-Length"]))
        self.server.path.write_bytes(text)
        self._answer(b"")

    def _answer(self, body):
        self.send_response(200)
        self.send_header("Content-Type", "text/html; charset=utf-8")
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass
