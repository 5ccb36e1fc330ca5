"""The table that fleet.py makes: its columns, and how the parts that its workers wrote become one file."""
import io
import json
import os
import shutil
from collections import Counter
from pathlib import Path

COLUMNS = ("file", "group", "signal", "unit", "from", "to", "count", "first", "last", "difference", "min", "minAt",
           "max", "maxAt", "mean", "deviation", "slope", "switchedOn", "switchedOff", "timeOn", "share", "problem")
TEXTS = ("file", "group", "signal", "unit", "problem")
COUNTS = ("from", "to", "count", "minAt", "maxAt", "switchedOn", "switchedOff", "timeOn")
ROWS_AT_ONCE = 500_000  # of a Parquet table, which are in memory together and become one of its files


class Failure(Exception):
    """Ends the program with its text and exit code 1."""


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
