#!/usr/bin/env python3
"""A Windows of its own, which wine makes in a scratch folder.

    wine.py COMMAND [ARGUMENT]...    runs the command with it as its WINEPREFIX and gives its exit code
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts"))
from desktop import end_in_order, run, wait_for

FONTS = Path("/usr/share/wine/fonts")
# How the title of a window begins that tests do not count.
KEEPER = "About Wine"
# Seconds for a program that shows no window.
PATIENCE = 180


class Wine:
    """Exists while it is entered. Its programs show their windows on the given X display."""

    def __init__(self, display):
        self._folder = tempfile.TemporaryDirectory(prefix="tracelyn-wine-")
        self.prefix = Path(self._folder.name)
        # wine hands no variable that begins with QT_ to a program, and one with WINE before it without that.
        self.environment = {name: value for name, value in os.environ.items() if not name.startswith("QT_")}
        self.environment |= {"DISPLAY": display, "WINEPREFIX": str(self.prefix), "WINEDEBUG": "-all",
                             # A program that crashes ends; a debugger would wait beside it.
                             "WINEDLLOVERRIDES": "mscoree,mshtml,winedbg.exe="}

    def __enter__(self):
        end_in_order()
        try:
            try:
                self.run("wineboot", "-i")
            except subprocess.CalledProcessError:
                print("wineboot failed, once more", file=sys.stderr)
                self.settle()
                self.run("wineboot", "-i")
            fonts = list(FONTS.glob("*.ttf"))
            if not fonts:
                raise RuntimeError(f"no fonts in {FONTS}")
            for font in fonts:
                shutil.copy(font, self.prefix / "drive_c/windows/Fonts")
            self.run("winecfg", "-v", "win10")
            self.keep_desktop()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self.settle()
        self._folder.cleanup()

    def keep_desktop(self):
        """Keeps a small window open from now on, titled KEEPER.

        While the process behind all windows ends, the next window may wait for it for ever; with this one it does not
        end.
        """
        self.start("wine", "winver")

    def start(self, *command):
        return subprocess.Popen([*map(str, command)], env=self.environment, stdout=subprocess.DEVNULL,
                                stderr=subprocess.DEVNULL)

    def run(self, *command):
        """Returns when the program has ended; raises when it ends badly or not at all."""
        subprocess.run([*map(str, command)], env=self.environment, check=True, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, timeout=PATIENCE)

    def output(self, *command):
        """What a program prints, however it ends."""
        run = subprocess.run([*map(str, command)], env=self.environment, check=False, stdout=subprocess.PIPE,
                             stderr=subprocess.DEVNULL, timeout=PATIENCE)
        return run.stdout.decode(errors="replace")

    def path(self, file):
        """The name of a file on the system drive."""
        return "C:\\" + str(file.relative_to(self.prefix / "drive_c")).replace("/", "\\")

    def settle(self):
        """Ends all programs; the registry is in its files then."""
        for option in ("-k", "-w"):
            subprocess.run(["wineserver", option], env=self.environment, check=False, timeout=PATIENCE)

    def registry(self, ignored):
        """The keys that do not match the pattern, and their values, without the times of their last change.

        A set of (key, line); each key, also an empty one, has an empty line.
        """
        self.settle()
        found, key = set(), ""
        for file in ("user.reg", "system.reg"):
            for line in (self.prefix / file).read_text(errors="replace").splitlines():
                if head := re.match(r"\[(.*)\] \d+", line):
                    key, line = f"{file}: {head[1]}", ""
                elif not line or line.startswith(("#", "WINE REGISTRY", ";;")):
                    continue
                if not ignored.search(key):
                    found.add((key, line))
        return found


def keep_desktop_seen(wine, desktop):
    """Keeps the desktop, and returns when its window is there: shown later, it would take the keys from others."""
    desktop.uncounted.discard(KEEPER)
    wine.keep_desktop()
    wait_for(lambda: any(title.startswith(KEEPER) for title in desktop.windows()))
    desktop.uncounted.add(KEEPER)


def windows_path(path):
    """The name by which Windows programs know a file of this machine."""
    return "Z:" + str(path).replace("/", "\\")


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    with Wine(os.environ["DISPLAY"]) as wine:
        return run(sys.argv[1:], wine.environment)


if __name__ == "__main__":
    sys.exit(main())
