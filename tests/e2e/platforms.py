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
    abort_code = -signal.SIGABRT
    largest_size = SCREEN
    # Whether a dialog opens with its name selected, so that typing replaces it.
    selects_names = True

    def __init__(self, display):
        self._display = display

    def command(self, program, *arguments):
        return [program, *map(str, arguments)]

    def name(self, path):
        """What a user types for a file."""
        return str(path)

    def environment(self, folder):
        """A home and a temporary folder of their own."""
        environment = {name: os.environ[name] for name in os.environ if name == "PATH" or name.endswith("SAN_OPTIONS")}
        environment |= {"DISPLAY": self._display, "QT_QPA_PLATFORM": "xcb", "LC_ALL": "C.UTF-8",
                        "DBUS_SESSION_BUS_ADDRESS": "disabled:"}
        for variable in ("HOME", "TMPDIR", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME"):
            (folder / variable).mkdir(mode=0o700)
            environment[variable] = str(folder / variable)
        return environment

    def tool_environment(self):
        return None


class Windows:
    abort_code = 134
    # The system keeps windows with their frames, which are not seen here, on the screen.
    largest_size = SCREEN[0] - 20, SCREEN[1] - 40
    selects_names = False

    def __init__(self, wine):
        self._wine = wine

    def command(self, program, *arguments):
        return ["wine", program, *(windows_path(word) if isinstance(word, Path) else str(word) for word in arguments)]

    def name(self, path):
        return windows_path(path)

    def environment(self, folder):
        (folder / "TMPDIR").mkdir()
        (folder / "HOME").mkdir()
        temporary = windows_path(folder / "TMPDIR")
        return self._wine.environment | {"WINETEMP": temporary, "WINETMP": temporary}

    def tool_environment(self):
        return self._wine.environment


@contextmanager
def platform_of(program, desktop):
    if program.suffix != ".exe":
        yield Native(desktop.name)
        return
    with Wine(desktop.name) as wine:
        desktop.uncounted.add(KEEPER)
        yield Windows(wine)
