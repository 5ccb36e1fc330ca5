"""What users may give, as the compiled part takes it: everything else raises TypeError or ValueError."""
import math
import operator
import os
from collections.abc import Iterable, Mapping
from numbers import Real

from . import _native

_LARGEST_NUMBER = 2**31 - 1  # of a sample


def path(value: object) -> str:
    """What names a file."""
    name = os.fsdecode(os.fspath(value))  # type: ignore[call-overload]
    if "\0" in name:
        raise ValueError("path: a null character is not allowed")
    return name


def access_level(code: str | int | Iterable[str | int] | None) -> int:
    """The highest level that the codes grant."""
    if code is None:
        return 0
    codes = [code] if isinstance(code, (str, int)) else iterable("code", code)
    level = 0
    for one in codes:
        if not isinstance(one, (str, int)) or isinstance(one, bool):
            raise TypeError(f"code: a str or an int is needed, not {type(one).__name__}")
        granted = _native.level_granted_by(str(one))
        if granted == 0:
            raise ValueError(f"the code '{one}' grants nothing")
        level = max(level, granted)
    return level


def iterable(name: str, value: object) -> list:
    """The elements of what can be iterated over."""
    try:
        return list(value)  # type: ignore[call-overload]
    except TypeError:
        raise TypeError(f"{name}: {type(value).__name__} is not allowed") from None


def integer(name: str, value: object) -> int | None:
    """A whole number, cut to what fits into 32 bits; None stays None."""
    if value is None:
        return None
    if isinstance(value, bool):
        raise TypeError(f"{name}: an int is needed, not bool")
    try:
        number = operator.index(value)  # type: ignore[arg-type]
    except TypeError:
        raise TypeError(f"{name}: an int is needed, not {type(value).__name__}") from None
    return max(-_LARGEST_NUMBER, min(number, _LARGEST_NUMBER))


def position(name: str, value: object) -> int | None:
    """A whole number that is not below 0."""
    number = integer(name, value)
    if number is not None and number < 0:
        raise ValueError(f"{name}: {value} is not allowed")
    return number


def finite(name: str, value: object, largest: float) -> float | None:
    """A number whose size is not above the largest."""
    if value is None:
        return None
    if not isinstance(value, Real) or isinstance(value, bool):
        raise TypeError(f"{name}: a number is needed, not {type(value).__name__}")
    number = float(value)
    if not math.isfinite(number) or abs(number) > largest:
        raise ValueError(f"{name}: {value} is not allowed")
    return number


def text(name: str, value: object) -> str | None:
    """A str; None stays None."""
    if value is not None and not isinstance(value, str):
        raise TypeError(f"{name}: a str is needed, not {type(value).__name__}")
    return value


def word(name: str, value: object, allowed: tuple[str, ...]) -> str:
    """One of the allowed words."""
    if text(name, value) not in allowed:
        raise ValueError(f"{name}: {value!r} is not allowed, only {', '.join(map(repr, allowed))}")
    return value  # type: ignore[return-value]


def picture_size(value: object) -> tuple[int, int]:
    """Width and height in pixels."""
    sides = iterable("size", value)
    if len(sides) != 2:
        raise ValueError(f"size: {value!r} is not allowed, only (width, height)")
    width, height = (integer("size", side) for side in sides)
    if width is None or height is None:
        raise TypeError("size: an int is needed, not None")
    if not 1 <= width <= _native.LARGEST_SIDE or not 1 <= height <= _native.LARGEST_SIDE:
        raise ValueError(f"size: {value!r} is not allowed, each side has 1 to {_native.LARGEST_SIDE} pixels")
    return width, height


def names(name: str, value: object) -> list[str]:
    """One str or several of them."""
    found = [value] if isinstance(value, str) else iterable(name, value)
    for one in found:
        if not isinstance(one, str):
            raise TypeError(f"{name}: a str is needed, not {type(one).__name__}")
    return found


def tolerances(value: object) -> dict[str, float]:
    """The largest allowed deviation for signals by their name."""
    if value is None:
        return {}
    if not isinstance(value, Mapping):
        raise TypeError(f"tolerances: a mapping is needed, not {type(value).__name__}")
    found = {}
    for signal, largest in value.items():
        limit = finite("tolerances", largest, math.inf)
        if text("tolerances", signal) is None or limit is None:
            raise TypeError("tolerances: None is not allowed")
        if limit < 0:
            raise ValueError(f"tolerances: {largest} is not allowed")
        found[signal] = limit
    return found
