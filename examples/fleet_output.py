"""What fleet.py gives its user: the progress on the terminal, and the table that the parts of its workers become."""
import io
import json
import os
import shutil
import sys
import time
from collections import Counter
from pathlib import Path

COLUMNS = ("file", "group", "signal", "unit", "from", "to", "count", "first", "last", "difference", "min", "minAt",
           "max", "maxAt", "mean", "deviation", "slope", "switchedOn", "switchedOff", "timeOn", "share", "problem")
TEXTS = ("file", "group", "signal", "unit", "problem")
COUNTS = ("from", "to", "count", "minAt", "maxAt", "switchedOn", "switchedOff", "timeOn")
ROWS_AT_ONCE = 500_000  # of a Parquet table, which are in memory together and become one of its files


class Failure(Exception):
    """Ends the program with its text and exit code 1."""


def tell(text):
    """A message on the error output."""
    print(f"fleet.py: {text}", file=sys.stderr, flush=True)


class Progress:
    """Files done, files a second and time left: one line that changes on a terminal, otherwise a line now and then."""

    def __init__(self, total):
        self._total, self._begin, self._shown = total, time.monotonic(), 0.0
        self._is_terminal = sys.stderr.isatty()
        self.measured = self.kept = 0

    def begin(self):
        """From now on files are measured: the cluster is there."""
        self._begin = time.monotonic()

    def add(self, measured=0, kept=0):
        """Counts files that this run has measured, or that an earlier one had."""
        self.measured += measured
        self.kept += kept
        now = time.monotonic()
        done = self.measured + self.kept
        if done < self._total and now - self._shown < (0.2 if self._is_terminal else 10):
            return
        self._shown = now
        line = f"{done} of {self._total} files"
        if self.measured:
            rate = self.measured / max(now - self._begin, 1e-3)
            left = int((self._total - done) / rate)
            line += f", {rate:.0f} a second, {left // 3600}:{left // 60 % 60:02}:{left % 60:02} left"
        print(f"\r{line}\033[K" if self._is_terminal else line, end="" if self._is_terminal else "\n", file=sys.stderr,
              flush=True)

    def end(self):
        """The next output begins on a line of its own."""
        if self._is_terminal and self._shown:
            print(file=sys.stderr)


def put_together(parts, table):
    """Writes the parts one behind the other as one CSV file and gives the sums of their counts."""
    sums = Counter()
    with open(table, "wb") as out:
        out.write(",".join(COLUMNS).encode() + b"\n")
        for part in parts:
            with open(part, "rb") as file:
                sums.update(json.loads(file.readline()))
                shutil.copyfileobj(file, out)
        out.flush()
        os.fsync(out.fileno())
    return sums


def can_write_parquet():
    """Whether pandas has what it needs for it."""
    import pandas
    try:
        pandas.DataFrame({"a": [1]}).to_parquet(io.BytesIO())
        return True
    except ImportError:
        return False


def write_parquet(table, out):
    """Turns the CSV file into a folder of Parquet files, which pandas and others read as one table."""
    import pandas
    types = {name: "string" if name in TEXTS else "Int64" if name in COUNTS else "float64" for name in COLUMNS}
    empty = {name: [""] for name in COLUMNS if name == "problem" or name not in TEXTS}
    out.mkdir()
    frames = pandas.read_csv(table, dtype=types, keep_default_na=False, na_values=empty, chunksize=ROWS_AT_ONCE,
                             float_precision="round_trip", encoding_errors="replace")
    for number, frame in enumerate(frames):
        frame.to_parquet(out / f"part{number:04}.parquet", index=False)


def choose_output(name):
    """The path of the table: Parquet where pandas can write it, CSV otherwise, unless the name says which."""
    out = Path(name)
    if out.suffix == ".csv":
        return out
    can = can_write_parquet()
    if out.suffix == ".parquet":
        if not can:
            raise Failure(f"Cannot write {name}: pandas needs pyarrow or fastparquet for it; a name with .csv would do")
        return out
    return out.with_name(out.name + (".parquet" if can else ".csv"))


def publish(parts, out):
    """Puts the table that the parts make into its place, whole or not at all, and gives the sums of their counts."""
    table = parts[0].with_name("table.csv")
    sums = put_together(parts, table)
    if out.suffix == ".parquet":
        folder = table.with_suffix(".parquet")
        shutil.rmtree(folder, ignore_errors=True)
        write_parquet(table, folder)
        if out.is_dir():
            shutil.rmtree(out)
        os.replace(folder, out)
    else:
        os.replace(table, out)
    return sums
