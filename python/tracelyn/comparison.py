"""How far a recording is from a good one."""
import warnings
from collections.abc import Mapping
from typing import Any

from . import _native, arguments
from .recording import Recording, RecordingWarning


def compare(good: Recording, other: Recording, *, align: str | None = None,
            tolerances: Mapping[str, float] | None = None) -> list[dict[str, Any]]:
    """Compares every shown signal that both recordings have in a group of the same name.

    The recordings begin together or, with `align`, when that on/off signal switches on for the first time.
    `tolerances` gives the largest allowed difference for signals by their name, in the unit of the signal.

    Returns a dict for each signal: group, signal, unit, largest (difference), at (the sample of `other` that has it),
    rms (root of the mean square), tolerance, and kept, which is False when the tolerance is broken. What does not
    exist is None.

    Raises ValueError when `align` is no signal of both that switches on, and for a tolerance whose signal is not in
    both. Warns with RecordingWarning of what was not compared, and of recordings that are not equally long.
    """
    for recording in good, other:
        if not isinstance(recording, Recording):
            raise TypeError(f"a Recording is needed, not {type(recording).__name__}")
    rows, remarks = _native.compare(good._native, other._native, arguments.text("align", align),
                                    arguments.tolerances(tolerances))
    for remark in remarks:
        warnings.warn(remark, RecordingWarning, stacklevel=2)
    return rows
