"""The Debian package, unpacked into a folder of its own: what is in it, and that the program in it works from there."""
import pathlib
import subprocess
import tempfile
import unittest

from applications import Brindle, DesktopTest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BUILD = ROOT / "build/release"


def run(*command):
    return subprocess.run(list(map(str, command)), cwd=ROOT, check=True, stdout=subprocess.PIPE, text=True).stdout


class PackageTest(DesktopTest):
    @classmethod
    def setUpClass(cls):
        run("cmake", "--preset", "release")
        for old in BUILD.glob("brindle_*.deb"):
            old.unlink()
        run("cmake", "--build", "--preset", "release", "--target", "package")
        (cls.package,) = BUILD.glob("brindle_*.deb")
        folder = tempfile.TemporaryDirectory(suffix=" of a user")
        cls.addClassCleanup(folder.cleanup)
        cls.prefix = pathlib.Path(folder.name) / "usr"
        run("dpkg-deb", "-x", cls.package, folder.name)

    def test_it_declares_what_it_needs_and_describes_itself_to_the_desktop(self):
        version, depends = run("dpkg-deb", "-f", self.package, "Version", "Depends").splitlines()
        version = version.removeprefix("Version: ")
        for library in ("libqt6widgets6", "libqt6svg6", "libqt6dbus6", "libsqlite3-0", "libxcb-xtest0", "libicu"):
            self.assertIn(library, depends)
        self.assertNotIn("-dev", depends)
        share = self.prefix / "share"
        self.assertIn(f"Brindle {version}", run("zcat", share / "man/man1/brindle.1.gz"))
        self.assertIn(f"brindle ({version})", run("zcat", share / "doc/brindle/changelog.gz"))
        run("desktop-file-validate", share / "applications/org.brindle.Brindle.desktop")
        run("appstreamcli", "validate", "--no-net", share / "metainfo/org.brindle.Brindle.metainfo.xml")
        for size in ("16x16", "48x48", "512x512", "scalable"):
            self.assertTrue(list((share / "icons/hicolor" / size / "apps").glob("org.brindle.Brindle.*")), size)

    def test_the_program_in_it_works_from_where_it_lies_and_starts_at_login_from_there(self):
        program = self.prefix / "bin/brindle"
        self.assertNotIn(str(ROOT).encode(), program.read_bytes())
        desktop = self.desktop()
        desktop.seed(launchAtLogin=1)
        brindle = Brindle(desktop, program=str(program))
        self.assertIsNone(brindle.popover() or brindle.sheet())
        login_item = desktop.home / ".config/autostart/org.brindle.Brindle.desktop"
        self.assertIn(f'\nExec="{program}"\n', login_item.read_text())
        run("desktop-file-validate", login_item)
        pixels = desktop.x.pixels(brindle.icon())
        self.assertNotEqual(pixels, pixels[:4] * (len(pixels) // 4), "the icon's drawing is not found")
        desktop.copy("captured")
        brindle.await_contents(["captured"])


if __name__ == "__main__":
    unittest.main()
