"""Recordings of a press brake as numbers, figures and pictures.

    >>> import tracelyn
    >>> recording = tracelyn.read("samples/bend01.paf")
    >>> recording.signals["Force"].scaled.max()      # in its unit
    >>> recording.to_pandas()                        # a table: a column for each signal
    >>> recording.statistics(1051, 2962)             # figures between two samples
    >>> recording.plot(cursor=2048)                  # the program's picture, PNG

Samples count from 0, and all signals of a recording have the same samples. A signal's `values` are the recorded
numbers in the type of the file, its `scaled` values are in its unit.

Wrong arguments raise TypeError or ValueError, a file that cannot be read raises OSError or the kind of it that fits,
such as FileNotFoundError. What is wrong inside a file is listed in Recording.problems, and warned about with
RecordingWarning. Ctrl+C stops long work.

Threads: any number of them may read and use recordings, also the same one. Reading, conversions, figures and pictures
let other threads of Python run meanwhile.
"""
import atexit as _atexit

from . import _native
from ._native import Signal
from .comparison import compare
from .recording import Axis, Group, Recording, RecordingWarning, ReferenceLine, Signals, read

__version__ = _native.VERSION
__all__ = ["read", "compare", "Recording", "Signal", "Signals", "Group", "ReferenceLine", "Axis", "RecordingWarning"]

for _name in __all__:
    globals()[_name].__module__ = __name__
_atexit.register(_native.remove_empty_temporary_folder)
