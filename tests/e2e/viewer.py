"""The two programs under test: the viewer in its window, and the tool whose pictures the window must match."""
import functools
import json
import subprocess
from pathlib import Path

from desktop import Picture, wait_for


class Failed(Exception):
    """What follows in the same scenario means nothing any more."""


class Checks:
    def __init__(self, desktop, pictures: Path):
        self.passed = self.failed = 0
        self._desktop, self._pictures = desktop, pictures

    def check(self, what, holds, expected=None):
        print("ok   " if holds else "FAIL ", what, flush=True)
        self.passed += bool(holds)
        self.failed += not holds
        if not holds:
            self._pictures.mkdir(parents=True, exist_ok=True)
            for kind, picture in (("screen", self._desktop.screenshot()), ("expected", expected)):
                if picture:
                    picture.save(self._pictures / f"{self.failed:02}-{kind}.png")
            print(f"      {self._pictures}/{self.failed:02}-*.png", flush=True)

    def expect(self, what, condition, expected=None):
        """Waits until the condition holds and returns its value. The expected picture is kept when it does not."""
        value = wait_for(condition)
        self.check(what, value, expected)
        if not value:
            raise Failed(what)
        return value


class Tool:
    """tracelyn-cli."""

    def __init__(self, binary, folder: Path, platform):
        self._binary, self._output, self._platform = binary, folder / "tool-output", platform

    def run(self, *arguments):
        command = self._platform.command(self._binary, *arguments)
        return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True,
                              env=self._platform.tool_environment).stdout

    @functools.cache
    def info(self, file):
        return json.loads(self.run("info", file))

    def groups(self, file):
        """The names of the groups that the graph shows."""
        return [group["name"] for group in self.info(file)["groups"] if group["displayType"] & 1]

    def csv(self, file):
        self.run("csv", file, self._output)
        return self._output.read_bytes()

    def render(self, width, height, file, toggle=(), **options):
        arguments = [f"--toggle={name}" for name in toggle]
        arguments += [f"--{name}={value}" for name, value in options.items() if value is not None]
        self.run("render", f"--size={width}x{height}", *arguments, file, self._output)
        return Picture.load(self._output)


class Viewer:
    """A run of the viewer in a home and a temporary folder of its own."""

    def __init__(self, bench, *arguments):
        self.bench, self.desktop, self.checks = bench, bench.desktop, bench.checks
        self.folder = bench.new_folder("viewer")
        command = bench.platform.command(bench.binary, *arguments)
        with open(self.folder / "errors", "wb") as errors:
            self.process = subprocess.Popen(command, env=bench.platform.environment(self.folder), stderr=errors)
        # What the window should show, as options of the tool.
        self.state = {}
        self.main = self.active = self.size = None

    def find(self, title, what=None):
        """Waits for a window with the title. It gets the keys from now on."""
        self.active = self.checks.expect(what or f'window "{title}"', lambda: self.desktop.windows().get(title))

    def find_main(self, title):
        self.find(title)
        self.main = self.active
        self.desktop.move_to_corner(self.main)
        self.size = self.desktop.size(self.main)

    def answer(self, title, key, text=""):
        """Waits for a dialog and answers it with a text and a key."""
        self.find(title)
        self.keys(key, text=text)
        self.checks.expect(f"{key} closes it", lambda: title not in self.desktop.windows())
        self.active = self.main

    def view_area(self):
        """Where the view is on the screen: x, y, width, height."""
        left, top, right, bottom = self.bench.margins
        return left, top, self.size[0] - left - right, self.size[1] - top - bottom

    def view(self):
        return self.desktop.screenshot(*self.view_area())

    def window(self):
        return self.desktop.screenshot(0, 0, *self.size)

    def expected(self):
        return self.bench.tool.render(*self.view_area()[2:], **self.state)

    def shows(self, what, **changes):
        """Checks that after these changes the view is the tool's picture, pixel for pixel."""
        self.state |= changes
        expected = self.expected()
        self.checks.expect(what, lambda: self.view() == expected, expected)

    def keys(self, *keys, text=""):
        self.desktop.focus(self.active)
        if text:
            if not self.bench.platform.selects_names:
                self.desktop.input("key", "Home", "shift+End")
            self.desktop.input("type", self.bench.platform.name(text))
        self.desktop.input("key", *keys)

    def menu(self, menu, *keys):
        self.keys(f"alt+{menu}", *keys)

    def mouse(self, x, y, *actions):
        """Moves to a point of the view, then xdotool's actions."""
        left, top = self.view_area()[:2]
        self.desktop.input("mousemove", left + x, top + y, *actions)

    def errors(self):
        return (self.folder / "errors").read_text(errors="replace")

    def expect_exit(self, what):
        """The process ends well, silently, and leaves nothing behind."""
        self.checks.expect(f"{what} ends the process", lambda: self.process.poll() is not None)
        self.checks.check(f"exit code {self.process.returncode}", self.process.returncode == 0)
        self.checks.check(f"nothing on the error output {self.errors()}", not self.errors())
        for folder in ("TMPDIR", "HOME"):
            left = [str(path) for path in (self.folder / folder).rglob("*") if not path.is_dir()]
            self.checks.check(f"nothing left in {folder} {' '.join(left)}", not left)

    def kill(self):
        """Returns when its windows are gone, too, which the next viewer's could be taken for."""
        self.process.kill()
        self.process.wait()
        wait_for(lambda: not self.desktop.windows())
