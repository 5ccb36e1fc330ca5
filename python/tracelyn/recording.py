"""Recordings, their groups and signals, and how they are read."""
import warnings
from collections import Counter
from collections.abc import Iterable, Iterator, Mapping
from os import PathLike
from typing import TYPE_CHECKING, Any, NamedTuple

import numpy

from . import _native, arguments
from ._native import Signal

if TYPE_CHECKING:
    import pandas

_LARGEST_FLOAT = float(numpy.finfo(numpy.float32).max)


class RecordingWarning(UserWarning):
    """Something is wrong inside a file, or was not compared; the text begins with the path of the file."""


class ReferenceLine(NamedTuple):
    """A fixed value that a group shows, such as a limit."""
    name: str
    value: float  # in the unit
    unit: str


class Group(NamedTuple):
    """Signals under one header of the picture. Several groups may have the same name."""
    name: str
    is_shown: bool  # in the picture or its console
    signals: tuple[Signal, ...]
    reference_lines: tuple[ReferenceLine, ...]


class Axis(NamedTuple):
    """What the samples are counted in, such as time: sample i stands at (i + offset) * factor."""
    name: str
    unit: str
    offset: float
    factor: float
    precision: int  # decimals with which the program prints it
    samples: int

    @property
    def values(self) -> numpy.ndarray:
        """Where each sample stands, in the unit: a new numpy array of shape (samples,), float64.

        The program shows these numbers rounded to 32 bits.
        """
        values = numpy.arange(self.samples, dtype=numpy.float64)
        values += self.offset
        values *= self.factor
        return values


def _keys(signals: tuple[Signal, ...]) -> Iterator[str]:
    """A key for each signal, as Signals describes them."""
    names = Counter(signal.name for signal in signals)
    taken = {name for name, number in names.items() if number == 1}
    last: Counter[str] = Counter()
    for signal in signals:
        if names[signal.name] == 1:
            yield signal.name
            continue
        key = base = f"{signal.group}: {signal.name}"
        while key in taken:
            last[base] += 1
            key = f"{base} ({last[base] + 1})"
        taken.add(key)
        yield key


class Signals(Mapping[str, Signal]):
    """The signals of a recording in the order of the file, a mapping of keys to signals.

    A key is the signal's name; where several signals have it, "GROUP: NAME"; where that is not enough either, the
    second is "GROUP: NAME (2)". The columns of Recording.to_pandas have the same names.

    signals[...] takes a key, a name, of which the first signal is meant, a pair (group, name), or a position as in a
    list. It raises KeyError, or IndexError for a position, when there is no such signal.
    """

    def __init__(self, signals: Iterable[Signal]) -> None:
        self._all = tuple(signals)
        self._by_key = dict(zip(_keys(self._all), self._all))
        self._by_name = {signal.name: signal for signal in reversed(self._all)}
        self._by_pair = {(signal.group, signal.name): signal for signal in reversed(self._all)}

    def __getitem__(self, which: str | int | tuple[str, str]) -> Signal:
        if isinstance(which, str):
            return self._by_key[which] if which in self._by_key else self._by_name[which]
        if isinstance(which, tuple):
            return self._by_pair[which]
        position = arguments.integer("signals", which)
        if position is None:
            raise TypeError("signals: None is not allowed")
        return self._all[position]

    def __contains__(self, which: object) -> bool:
        if not isinstance(which, (str, tuple)):
            return False
        return which in self._by_key or which in self._by_name or which in self._by_pair

    def __iter__(self) -> Iterator[str]:
        return iter(self._by_key)

    def __len__(self) -> int:
        return len(self._all)

    def __repr__(self) -> str:
        return f"<tracelyn.Signals {list(self)}>"


class Recording:
    """A recording, made by tracelyn.read. It never changes; its parts may be kept without it."""

    def __init__(self, native: _native.Recording) -> None:
        """Not for users: see tracelyn.read."""
        self._native = native
        self._groups = tuple(Group(name, is_shown, tuple(signals), tuple(ReferenceLine(*line) for line in lines))
                             for name, is_shown, signals, lines in native.groups)
        self._signals = Signals(signal for group in self._groups for signal in group.signals)

    @property
    def path(self) -> str:
        """The path that was read, as it was given."""
        return self._native.path

    @property
    def name(self) -> str:
        """The name that the file gives; empty when it gives none."""
        return self._native.name

    @property
    def samples(self) -> int:
        """Number of samples of the longest signal."""
        return self._native.samples

    @property
    def index(self) -> Axis:
        """The axis: its name, unit and values. Without a name it counts the samples."""
        return Axis(*self._native.axis, samples=self.samples)

    @property
    def groups(self) -> tuple[Group, ...]:
        """The groups in the order of the file, hidden ones included."""
        return self._groups

    @property
    def signals(self) -> Signals:
        """All signals of all groups, by key, name, (group, name) or position; hidden ones included.

        A quantity that two groups show is two signals.
        """
        return self._signals

    @property
    def problems(self) -> list[str]:
        """What is wrong inside the file, in the words of the program; empty for a sound file."""
        return self._native.problems

    def to_pandas(self) -> "pandas.DataFrame":
        """A table with a row for each sample and a column for each signal.

        Columns are named as the keys of `signals` and hold scaled values, float64. The index holds `index.values` and
        is named after the axis. `attrs` has "name" and "path" of the recording, "units" (a dict of column to unit) and
        "index_unit". A signal with fewer samples than the others repeats its last one.
        """
        import pandas  # only here, since it takes longer to import than most recordings to read
        table = numpy.empty((len(self.signals), self.samples))
        _native.fill_scaled(list(self.signals.values()), table)
        frame = pandas.DataFrame(table.T, index=pandas.Index(self.index.values, name=self.index.name or None),
                                 columns=pandas.Index(list(self.signals), dtype=object), copy=False)
        frame.attrs = {"name": self.name, "path": self.path, "index_unit": self.index.unit,
                       "units": {key: signal.unit for key, signal in self.signals.items()}}
        return frame

    def statistics(self, from_: int | None = None, to: int | None = None, *,
                   while_: str | None = None) -> list[dict[str, Any]]:
        """Figures of every shown signal between two samples, both included; the first and the last unless given.

        `while_` names an on/off signal: of those samples it takes those from the first time that it switches on to the
        next time that it switches off.

        Returns a dict for each signal: group, signal, unit, from, to, count, first, last, difference, min, minAt, max,
        maxAt, mean, deviation, slope, and for on/off signals switchedOn, switchedOff, timeOn, share. Values are in the
        signal's unit, the slope in that per unit of the axis, from, to, minAt, maxAt and timeOn in samples. A figure
        that does not exist is None. pandas.DataFrame(recording.statistics()) makes a table of it.
        """
        first, last = arguments.position("from_", from_), arguments.position("to", to)
        if first is not None and last is not None and first > last:
            raise ValueError(f"from_ {first} lies behind to {last}")
        return self._native.statistics(first, last, arguments.text("while_", while_))

    def plot(self, *, size: tuple[int, int] = (1280, 720), scheme: str = "dark", cursor: int | None = None,
             fixed: int | None = None, zoom: float | None = None, scroll: int | None = None,
             console: str | None = None, toggle: str | Iterable[str] = (), events: bool = False,
             compare: "Recording | None" = None, align: str | None = None) -> bytes:
        """The program's picture: the bytes of a PNG file, as the command render of tracelyn-cli writes it.

        size     width and height in pixels
        scheme   "dark" or "light"
        cursor   sample of the cursor, at first the middle one
        fixed    sample of the fixed cursor, which is not there at first
        zoom     how many times to zoom in around the cursor
        scroll   first sample in view
        console  "left", "right" or "none": where the values at the cursor stand
        toggle   a group, or several, to open or close
        events   whether no sample may be hidden
        compare  a recording to draw behind this one
        align    an on/off signal: where it first switches on, the two recordings are laid on each other
        """
        if compare is not None and not isinstance(compare, Recording):
            raise TypeError(f"compare: a Recording is needed, not {type(compare).__name__}")
        if align is not None and compare is None:
            raise ValueError("align needs compare")
        return self._native.plot(
            size=arguments.picture_size(size), dark=arguments.word("scheme", scheme, ("dark", "light")) == "dark",
            cursor=arguments.integer("cursor", cursor), fixed=arguments.integer("fixed", fixed),
            zoom=arguments.finite("zoom", zoom, _LARGEST_FLOAT), scroll=arguments.position("scroll", scroll),
            console=None if console is None else arguments.word("console", console, ("left", "right", "none")),
            toggle=arguments.names("toggle", toggle), events=bool(events),
            compare=None if compare is None else compare._native, align=arguments.text("align", align))

    def _repr_png_(self) -> bytes:
        """What a notebook shows."""
        return self.plot()

    def __repr__(self) -> str:
        return (f"<tracelyn.Recording {self.name!r}, {self.samples} samples of {len(self.signals)} signals, "
                f"{self.path!r}>")


def read(path: str | bytes | PathLike, code: str | int | Iterable[str | int] | None = None) -> Recording:
    """Reads an analysis file, .xml or .paf.

    `code` is an access code or several of them; the highest counts. Signals beyond its level are left out.

    Raises OSError, or the kind of it that fits, when nothing of the file can be read, and ValueError for a code that
    grants nothing. Warns once, with RecordingWarning, when something is wrong inside the file; what could be read is
    there, and Recording.problems lists everything.
    """
    native = _native.read(arguments.path(path), arguments.access_level(code))
    recording = Recording(native)
    if recording.problems:
        more = len(recording.problems) - 1
        warnings.warn(f"{recording.path}: {recording.problems[0]}" + (f" (and {more} more)" if more else ""),
                      RecordingWarning, stacklevel=2)
    return recording
