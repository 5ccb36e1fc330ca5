"""How the programs under test are started: on this system, or Windows programs under wine."""
import os
import signal
import sys
from contextlib import contextmanager
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "packaging/windows"))
from desktop import SCREEN
from wine import KEEPER, Wine, windows_path


class Native:
    launcher = ()
    name = staticmethod(str)  # of a file, as a user types it
    abort_code = -signal.SIGABRT
    largest_size = SCREEN
    selects_names = True  # a dialog opens with its name selected, so that typing replaces it
    tool_environment = None

    def __init__(self, display):
        self._display = display

    def command(self, program, *arguments):
        return [*self.launcher, program, *(self.name(word) if isinstance(word, Path) else str(word) for word in arguments)]

    def environment(self, folder):
        # A home and a temporary folder of their own.
        environment = {name: os.environ[name] for name in os.environ if name == "PATH" or name.endswith("SAN_OPTIONS")}
        environment |= {"DISPLAY": self._display, "QT_QPA_PLATFORM": "xcb", "LC_ALL": "C.UTF-8",
                        "DBUS_SESSION_BUS_ADDRESS": "disabled:"}
        for variable in ("HOME", "TMPDIR", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME"):
            (folder / variable).mkdir(mode=0o700)
            environment[variable] = str(folder / variable)
        return environment


class Windows(Native):
    launcher = ("wine",)
    name = staticmethod(windows_path)
    abort_code = 134
    # The system keeps windows with their frames, which are not seen here, on the screen.
    largest_size = SCREEN[0] - 20, SCREEN[1] - 40
    selects_names = False

    def __init__(self, wine):
        self.tool_environment = wine.environment

    def environment(self, folder):
        for name in ("TMPDIR", "HOME"):
            (folder / name).mkdir()
        return self.tool_environment | dict.fromkeys(("WINETEMP", "WINETMP"), windows_path(folder / "TMPDIR"))


@contextmanager
def platform_of(program, desktop):
    if program.suffix != ".exe":
        yield Native(desktop.name)
        return
    with Wine(desktop.name) as wine:
        desktop.uncounted.add(KEEPER)
        yield Windows(wine)
