#!/usr/bin/env python3
"""Drives the viewer in a real window with keys and mouse, and compares what it shows with tracelyn-cli's pictures.

    run_window.py TRACELYN TRACELYN_CLI [SCENARIO]...
"""
import itertools
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts"))
from desktop import Desktop, Picture
from platforms import platform_of
from viewer import Checks, Failed, Tool, Viewer

SAMPLES = Path(__file__).resolve().parents[2] / "samples"
HEADER_BOX = bytes((0, 128, 0))


class Bench:
    """What the scenarios share: programs, display, copies of the samples in a folder with an awkward name."""

    def __init__(self, binary, tool, folder: Path, desktop, platform):
        self.binary, self.folder, self.desktop, self.platform = binary, folder, desktop, platform
        self.tool = Tool(tool, folder, platform)
        self.checks = Checks(desktop, Path(tempfile.gettempdir()) / time.strftime("tracelyn-e2e-%Y%m%d-%H%M%S"))
        self.viewer = self.margins = None
        self._numbers = itertools.count()
        self.samples = self.new_folder("Prüf stücke")
        for file in SAMPLES.glob("bend0*.paf"):
            shutil.copy(file, self.samples)

    def new_folder(self, name):
        folder = self.folder / f"{name} {next(self._numbers)}"
        folder.mkdir()
        return folder

    def sample(self, number):
        return self.samples / f"bend{number:02}.paf"

    def name(self, number):
        return self.tool.info(self.sample(number))["name"]

    def last_index(self, number):
        return self.tool.info(self.sample(number))["samples"] - 1

    def start(self, *arguments):
        """One viewer at a time: the one before it is killed."""
        self.stop()
        self.viewer = Viewer(self, *arguments)
        return self.viewer

    def stop(self):
        if self.viewer:
            self.viewer.kill()
            self.viewer = None

    def open_sample(self, number, code=None):
        viewer = self.start(*filter(None, [code, self.sample(number)]))
        viewer.find_main(f"{self.name(number)}- bend {number:02}")
        viewer.shows(f"bend {number:02} as the tool draws it", file=self.sample(number), code=code)
        return viewer

    def measure_margins(self):
        """How far the view is from the window's edges, seen in an empty window."""
        viewer = self.start()
        viewer.find_main("Tracelyn viewer")

        def steady_area():
            before = one_colour_area(viewer.window())
            time.sleep(0.5)  # a window that is still being painted looks different then
            return before == one_colour_area(viewer.window()) and before

        left, top, right, bottom = self.checks.expect("an empty view", steady_area)
        self.margins = left, top, viewer.size[0] - right, viewer.size[1] - bottom
        return viewer


def one_colour_area(picture):
    """The edges of the area around the middle that has one colour, if it fills most of the picture but not all."""
    def around(line):
        middle = len(line) // 2
        before = next((i for i in range(middle, -1, -1) if line[i] != line[middle]), -1)
        return before + 1, next((i for i in range(middle, len(line)) if line[i] != line[middle]), len(line))

    top, bottom = around(picture.column(picture.width // 2))
    left, right = around([picture.pixel(x, picture.height // 2) for x in range(picture.width)])
    fills_most = 1.5 * (right - left) * (bottom - top) > picture.width * picture.height
    return (left, top, right, bottom) if top > 0 and fills_most else None


def header_rows(picture):
    """The tops of the bands, which begin with a box of 9 rows from their second row on."""
    column = [pixel == HEADER_BOX for pixel in picture.column(1)]
    return [y - 1 for y in range(1, len(column) - 9) if all(column[y:y + 9]) and not column[y - 1]]


# Each scenario starts its own viewer. The first one measures where the view is.

def empty_window(bench):
    viewer = bench.measure_margins()
    viewer.menu("f", "x")
    viewer.expect_exit("File > Exit")


def command_line(bench):
    viewer = bench.start("-style", "-platform", bench.sample(1))
    viewer.find_main(f"{bench.name(1)}- bend 01")
    viewer.shows("no argument is the toolkit's", file=bench.sample(1))
    if not bench.platform.launcher:
        process = Path(f"/proc/{viewer.process.pid}/comm").read_text()
        bench.checks.check(f"the process is called {process}", process == "tracelyn\n")
    viewer = bench.start(*range(11))
    viewer.find("Tracelyn", "a box for eleven arguments")
    bench.checks.check("before the end", viewer.process.poll() is None)
    viewer.answer("Tracelyn", "Return")
    bench.checks.expect("which then comes", lambda: viewer.process.poll() == bench.platform.abort_code)
    bench.checks.check(f"a place in the project: {viewer.errors()}", "])), src/support/" in viewer.errors())
    for option, begin in (("--version", "tracelyn "), ("--help", "usage:")):
        run = subprocess.run(bench.platform.command(bench.binary, option), env=bench.platform.tool_environment or {},
                             capture_output=True, text=True, timeout=30)
        bench.checks.check(f"{option} prints", run.returncode == 0 and run.stdout.startswith(begin))


def keys(bench):
    viewer = bench.open_sample(1)
    middle, names = bench.last_index(1) // 2, bench.tool.groups(bench.sample(1))
    # "1" twice changes only the selection, back to what the tool's pictures show.
    for key, option, value in (
            ("Right", "cursor", middle + 1), ("Left", "cursor", middle), ("shift+Right", "cursor", middle + 10),
            ("Page_Down", "cursor", middle + 20), ("shift+Left", "cursor", middle + 10), ("End", "cursor", middle),
            ("Tab", "console", "left"), ("Page_Up", "console", "right"),
            ("Up", "zoom", 1.25), ("Up", "zoom", 1.5625), ("Down", "zoom", 1.25), ("Home", "zoom", None),
            ("space", "toggle", names[:1]), ("space", "toggle", []),
            ("shift+Page_Down space shift+Page_Up", "toggle", names[1:2]), ("2 1 1", "toggle", []),
            ("Up " * 20, "zoom", 40), ("Right Right shift+Right Left Left shift+Left", "zoom", 40), ("Home", "zoom", None),
            ("Return", "fixed", middle), ("Right Right", "cursor", middle + 2), ("KP_Enter", "fixed", None)):
        viewer.keys(*key.split())
        viewer.shows(f"{key}: {option} {value}", **{option: value})
    viewer.menu("a", "Up", "Return")
    viewer.shows("Action > Toggle fixed cursor", fixed=middle + 2)
    viewer.keys("ctrl+c", "ctrl+x", "ctrl+v", "ctrl+z", "F6", "shift+F6", "Right")
    viewer.shows("the keys of editing and panes do nothing", cursor=middle + 3)


def mouse(bench):
    viewer = bench.open_sample(1)
    _, _, width, _ = viewer.view_area()
    names = bench.tool.groups(bench.sample(1))

    def sample_at(x):
        return int(x / width * bench.last_index(1) + 0.5)

    viewer.mouse(550, 100, "mousedown", 1)
    viewer.shows("the press is enough", cursor=sample_at(550))
    for x in (620, 580):
        viewer.mouse(x, 130)
        viewer.shows("the cursor follows a drag", cursor=sample_at(x))
    viewer.mouse(580, 130, "mouseup", 1, "mousemove", 800, 300)
    viewer.mouse(300, 600, "click", 1)
    viewer.shows("a click moves the cursor", cursor=sample_at(300))
    for index, toggled in ((1, names[1:2]), (1, []), (4, names[4:5]), (4, [])):
        viewer.mouse(60, header_rows(viewer.view())[index] + 6, "click", 1)
        viewer.shows(f"a click on a header: {toggled}", toggle=toggled)
        time.sleep(0.5)  # the next click must not be taken for the second one of a pair
    viewer.mouse(60, 6, "click", "--repeat", 2, "--delay", 60, 1)
    viewer.keys("Right")
    viewer.shows("a double click leaves the group as it was", cursor=sample_at(300) + 1)


def scroll_bar(bench):
    viewer = bench.open_sample(1)
    _, top, width, height = viewer.view_area()
    bar = height + 8
    viewer.keys("Up")
    viewer.mouse(width // 2, bar, "click", 3)
    viewer.keys(*["Up"] * 4)
    viewer.shows("zoomed: no menu of the bar takes the keys", zoom=1.25 ** 5)
    viewer.mouse(width // 2, bar, "mousedown", 1, "mousemove", 10, top + bar, "mouseup", 1)
    viewer.shows("dragging the thumb to the left end", scroll=1)
    before = viewer.view()
    viewer.mouse(width - 40, bar, "click", 1)
    bench.checks.expect("a click behind the thumb pages right", lambda: viewer.view() != before)
    viewer.mouse(40, bar, "click", 1)
    viewer.shows("a click before it pages back")
    viewer.mouse(width - 5, bar, "click", "--repeat", 25, "--delay", 30, 1)
    viewer.shows("the arrow moves on to the end", scroll=bench.last_index(1))


def wheel(bench):
    viewer = bench.open_sample(1)
    viewer.mouse(400, 100, "click", 5)
    viewer.mouse(400, 100, "keydown", "ctrl", "click", 4, "click", 4, "keyup", "ctrl")
    viewer.shows("with Ctrl the wheel zooms, and alone it does not scroll what is all in view", zoom=1.25 ** 2)
    for button, sample in ((5, bench.last_index(1)), (4, 0), (7, bench.last_index(1)), (6, 0)):
        viewer.mouse(400, 100, "click", "--repeat", 25, "--delay", 30, button)
        viewer.shows(f"button {button} scrolls to sample {sample}", scroll=sample)


def context_menu(bench):
    viewer = bench.open_sample(2)
    for name, opens in (("by mouse.png", lambda: viewer.mouse(400, 100, "click", 3)), ("by key.png", lambda: viewer.keys("Menu"))):
        picture = bench.new_folder("pictures") / name
        before = viewer.view()
        opens()
        bench.checks.expect("a menu opens", lambda: viewer.view() != before)
        # The menu holds the keyboard.
        viewer.desktop.input("key", "s")
        viewer.answer("Save As", "Return", text=picture)
        viewer.answer("Tracelyn", "Return")
        bench.checks.check(f"the picture saved {name}", Picture.load(picture) == viewer.expected())
    viewer.keys("Right")
    viewer.shows("the window works on", cursor=bench.last_index(2) // 2 + 1)


def file_set(bench):
    viewer = bench.open_sample(1)
    viewer.keys("F1")
    viewer.answer("About Tracelyn", "Return")
    viewer.keys("Return")
    viewer.shows("fixed cursor, which stays from file to file", fixed=bench.last_index(1) // 2)
    for key, number in (("F3", 2), ("F3", 3), ("F3", 4), ("F3", 5), ("F3", 6), ("F2", 5)):
        viewer.keys(key)
        viewer.find(f"{bench.name(number)}- bend {number:02}")
        viewer.shows(f"{key} opens bend {number:02}", file=bench.sample(number))
    viewer.menu("v", "c")
    viewer.shows("View > Change background color", scheme="light")
    viewer.menu("f", "c")
    viewer.find(bench.name(5), "File > Close leaves the title alone")
    target = bench.new_folder("open") / "other name.paf"
    shutil.copy(bench.sample(3), target)
    viewer.menu("f", "o")
    viewer.answer("Open", "Return", text=target)
    viewer.find(f"{bench.name(3)}- other name (new)")
    viewer.shows("the opened file", file=target, cursor=None)
    viewer.keys("Right")
    viewer.shows("the first step after Open", cursor=bench.last_index(3) // 2 + 1)


def saving(bench):
    viewer = bench.open_sample(2)
    folder = bench.new_folder("copies")
    copy = folder / "a copy.paf"
    viewer.menu("f", "s")
    viewer.answer("Save...", "Return", text=copy)
    viewer.answer("Tracelyn", "Return")
    bench.checks.check("a copy", copy.read_bytes() == bench.sample(2).read_bytes())
    for key, dialog in (("s", "Save..."), ("a", "Save As")):
        table = folder / f"by {key}.csv"
        viewer.menu("f", key)
        viewer.answer(dialog, "Return", text=table)
        viewer.answer("Tracelyn", "Return")
        bench.checks.check("the table is the tool's", table.read_bytes() == bench.tool.csv(bench.sample(2)))
    viewer.keys("Right")
    viewer.shows("the window works on", cursor=bench.last_index(2) // 2 + 1)
    viewer.menu("f", "x")
    viewer.expect_exit("File > Exit after dialogs")


def opening(bench):
    for code in ("60418", "83206", "47195"):
        bench.open_sample(1, code)
    folder = bench.new_folder("odd files")
    (folder / "run01.paf").write_bytes(bench.sample(1).read_bytes()[:5000])
    shutil.copy(bench.sample(2), folder / "RUN02.PAF")
    viewer = bench.start(folder / "run01.paf")
    viewer.find("ERROR", "a damaged file is reported")
    bench.checks.check("before the main window is shown", list(viewer.desktop.windows()) == ["ERROR"])
    viewer.answer("ERROR", "Return")
    viewer.find_main("Tracelyn viewer- run 01")
    viewer.keys("F3")
    viewer.find(f"{bench.name(2)}- run 02")
    viewer.shows("its neighbour, written in capitals", file=bench.sample(2))


def resizing(bench):
    viewer = bench.open_sample(1)
    for viewer.size in ((900, 600), bench.platform.largest_size, (640, 480)):
        viewer.desktop.input("windowsize", viewer.main, *viewer.size)
        viewer.shows(f"resized to {viewer.size}")
    viewer.keys("Right")
    viewer.shows("cursor step after resizing", cursor=bench.last_index(1) // 2 + 1)
    viewer.desktop.ask_to_close(viewer.main)
    viewer.expect_exit("closing the window")


SCENARIOS = [empty_window, command_line, keys, mouse, scroll_bar, wheel, context_menu, file_set, saving, opening, resizing]


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    binary, tool = (Path(argument).resolve() for argument in sys.argv[1:3])
    with (tempfile.TemporaryDirectory(prefix="tracelyn-e2e-") as folder, Desktop(Path(folder)) as desktop,
          platform_of(binary, desktop) as platform):
        bench = Bench(binary, tool, Path(folder), desktop, platform)
        for scenario in SCENARIOS:
            if sys.argv[3:] and scenario.__name__ not in sys.argv[3:] and scenario is not empty_window:
                continue
            print(f"== {scenario.__name__.replace('_', ' ')}", flush=True)
            try:
                scenario(bench)
            except Failed:
                print(bench.viewer.errors(), end="", flush=True)
            finally:
                bench.stop()
    print(f"{bench.checks.passed} passed, {bench.checks.failed} failed")
    return 1 if bench.checks.failed else 0


if __name__ == "__main__":
    sys.exit(main())
