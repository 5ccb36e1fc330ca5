"""An X display of its own: synthetic keys and mouse, window titles, and screenshots read from its frame buffer.

    desktop.py COMMAND [ARGUMENT]...    runs the command with the display as its DISPLAY and gives its exit code
"""
import ctypes
import mmap
import os
import signal
import struct
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path

SCREEN = (1400, 900)


def wait_for(condition, seconds=30.0):
    """Polls until `condition()` is true and returns what it gave, after the deadline what it gave last."""
    end = time.monotonic() + seconds
    while not (value := condition()) and time.monotonic() < end:
        time.sleep(0.03)
    return value


def end_in_order():
    """From now on, who asks this process to end lets it leave its `with` blocks first."""
    def leave(*_):
        # Asked again, it goes on leaving.
        signal.signal(signal.SIGTERM, signal.SIG_IGN)
        sys.exit(f"asked to end: {' '.join(sys.argv)}")
    signal.signal(signal.SIGTERM, leave)


@dataclass(frozen=True)
class Picture:
    width: int
    height: int
    rgb: bytes

    @classmethod
    def load(cls, path):
        ppm = subprocess.run(["convert", str(path), "-depth", "8", "ppm:-"], check=True, capture_output=True).stdout
        width, height = map(int, ppm.split(maxsplit=3)[1:3])
        return cls(width, height, ppm[-3 * width * height:])

    def save(self, path):
        size = f"{self.width}x{self.height}"
        subprocess.run(["convert", "-size", size, "-depth", "8", "rgb:-", str(path)], input=self.rgb, check=True)

    def pixel(self, x, y):
        return self.rgb[3 * (y * self.width + x):][:3]

    def column(self, x):
        return [self.pixel(x, y) for y in range(self.height)]


class ClientMessage(ctypes.Structure):
    """Xlib's XClientMessageEvent, filled up to the size of an XEvent."""
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5), ("filler", ctypes.c_long * 12)]


class Desktop:
    """Runs Xvfb while it is entered. There is no window manager, so every window is given the focus by hand."""

    def __init__(self, folder: Path):
        self._folder = folder
        # How the titles of windows begin that are none of the program's.
        self.uncounted = set()

    def __enter__(self):
        end_in_order()
        read_end, write_end = os.pipe()
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "{}x{}x24".format(*SCREEN), "-noreset",
             "-fbdir", str(self._folder), "-nocursor", "-nolisten", "tcp"], pass_fds=[write_end],
            stderr=subprocess.DEVNULL,
            # It ends with this process, however that ends: 1 is PR_SET_PDEATHSIG.
            preexec_fn=lambda: ctypes.CDLL(None).prctl(1, signal.SIGTERM))
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            self.name = f":{int(pipe.readline())}"
        self._environment = os.environ | {"DISPLAY": self.name}
        with open(self._folder / "Xvfb_screen0", "rb") as file:
            self._buffer = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)
        # An X window dump: its header tells its own size, the bytes of a row and the number of colours, which follow.
        header = struct.unpack_from(">25I", self._buffer)
        self._stride, self._pixels = header[12], header[0] + 12 * header[19]
        return self

    def __exit__(self, *_):
        self._server.terminate()
        self._server.wait()

    def screenshot(self, x=0, y=0, width=SCREEN[0], height=SCREEN[1]):
        first = self._pixels + y * self._stride + 4 * x
        starts = range(first, first + height * self._stride, self._stride)
        bgrx = b"".join(self._buffer[start:start + 4 * width] for start in starts)
        rgb = bytearray(3 * width * height)
        rgb[0::3], rgb[1::3], rgb[2::3] = bgrx[2::4], bgrx[1::4], bgrx[0::4]
        return Picture(width, height, bytes(rgb))

    def steady_screenshot(self):
        """One of a moment in which nothing moves."""
        pictures = []

        def is_steady():
            pictures.append(self.screenshot())
            return len(pictures) > 5 and all(picture == pictures[-1] for picture in pictures[-5:])
        wait_for(is_steady)
        return pictures[-1]

    def input(self, *arguments):
        """What xdotool prints for the arguments: nothing when a window has just gone."""
        return subprocess.run(["xdotool", *map(str, arguments)], env=self._environment, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False).stdout

    def windows(self):
        """The visible windows: {title: window}."""
        visible = self.input("search", "--onlyvisible", "--name", ".").split()
        titles = {self.input("getwindowname", window).rstrip("\n"): window for window in visible}
        return {title: window for title, window in titles.items() if not title.startswith(tuple(self.uncounted))}

    def _geometry(self, window, *names):
        values = dict(line.split("=") for line in self.input("getwindowgeometry", "--shell", window).split())
        return tuple(int(values[name]) for name in names)

    def size(self, window):
        return self._geometry(window, "WIDTH", "HEIGHT")

    def move_to_corner(self, window):
        """To the upper left one, where a window is without a window manager unless it chooses another place."""
        if self._geometry(window, "X", "Y") != (0, 0):
            self.input("windowmove", "--sync", window, 0, 0)

    def focus(self, window):
        self.input("windowfocus", window)
        return wait_for(lambda: self.input("getwindowfocus", "-f").strip() == window)

    def ask_to_close(self, window):
        """What a window manager sends when the close box is clicked; xdotool can only destroy a window."""
        x11 = ctypes.CDLL("libX11.so.6")
        x11.XOpenDisplay.restype, x11.XInternAtom.restype = ctypes.c_void_p, ctypes.c_ulong
        display = ctypes.c_void_p(x11.XOpenDisplay(self.name.encode()))
        message = ClientMessage(type=33, window=int(window), format=32,
                                message_type=x11.XInternAtom(display, b"WM_PROTOCOLS", False))
        message.data[0] = x11.XInternAtom(display, b"WM_DELETE_WINDOW", False)
        x11.XSendEvent(display, ctypes.c_ulong(int(window)), False, ctypes.c_long(0), ctypes.byref(message))
        x11.XCloseDisplay(display)


def run(command, environment):
    """The command's exit code. When this process is asked to end, it asks the command, too, and waits for it."""
    process = subprocess.Popen(command, env=environment)
    try:
        return process.wait()
    finally:
        if process.poll() is None:
            process.terminate()
            process.wait()


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    with tempfile.TemporaryDirectory() as folder, Desktop(Path(folder)) as desktop:
        return run(sys.argv[1:], os.environ | {"DISPLAY": desktop.name})


if __name__ == "__main__":
    sys.exit(main())
