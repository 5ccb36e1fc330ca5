"""Measures Tracelyn side by side with other programs and with itself, and compares the ratios with the targets.

./bench.sh builds what this needs and starts it. All ratios come from one run: the sides take turns for some
rounds, and the fastest of each side counts.
"""
import argparse
import gzip
import json
import os
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from dataclasses import asdict, dataclass
from pathlib import Path

import python_module

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build/release"
CLI = BUILD / "src/cli/tracelyn-cli"
BENCH = BUILD / "bench/tracelyn_bench"
WINDOW = BUILD / "src/app/tracelyn"
EMPTY_WINDOW = BUILD / "bench/empty_window"
MAKE_SAMPLES = ROOT / "samples/make_samples.py"
FILES = ROOT / "build/bench"
SIGNALS = 16
INFO = [CLI, "info", "--code", python_module.CODE]
TYPE_SIZES = {"Byte": 1, "UByte": 1, "Binary": 1, "Short": 2, "UShort": 2, "Long": 4, "ULong": 4, "Float": 4}


@dataclass
class Row:
    what: str
    against: str
    target: str
    limit: float | None  # no target
    figure: float
    at_least: bool = False

    @property
    def verdict(self):
        if self.limit is None:
            return ""
        met = self.figure >= self.limit if self.at_least else self.figure <= self.limit
        return "met" if met else "MISSED"

    @property
    def figure_text(self):
        for unit, factor in ("ms", 1e3), ("ns", 1e9):
            if unit in self.target:
                return f"{self.figure * factor:.1f} {unit}"
        return f"{self.figure:.2%}" if "%" in self.target else f"{self.figure:.2f} x"


# Making the files

def make(path, sources, write):
    """Calls write(temporary path) unless the file is there and newer than what it is made from."""
    if path.exists() and all(path.stat().st_mtime >= source.stat().st_mtime for source in sources):
        return path
    print(f"== making {path.relative_to(ROOT)}", flush=True)
    unfinished = path.with_name("unfinished-" + path.name)
    write(unfinished)
    unfinished.rename(path)
    return path


def recording(rows):
    return make(FILES / f"{rows}.xml", [MAKE_SAMPLES], lambda path: run(
        [sys.executable, MAKE_SAMPLES, "--rows", str(rows), "--signals", str(SIGNALS), "--output", path]))


def noise(rows):
    """The recording's variables with digits that nothing can guess."""
    calm = recording(rows)

    def write(path):
        rng = random.Random(1)
        with open(calm, encoding="utf-8") as source, open(path, "w", encoding="utf-8") as target:
            head, begin, _ = source.read(1 << 16).partition("<Data>")
            source.seek(0, os.SEEK_END)
            source.seek(source.tell() - (1 << 16))
            _, end, tail = source.read().partition("</Data>")
            fields = {"Float": lambda: f"{rng.choice((-1, 1)) * 10 ** (4 * rng.random()):.3f}",
                      "Binary": lambda: str(rng.getrandbits(1))}
            columns = [fields.get(kind, lambda: str(int(10 ** (5 * rng.random()))))
                       for kind in re.findall(r'<TypedData [^>]*Type="(\w+)"', head)]
            target.write(head + begin)
            for _ in range(rows):
                target.write(",".join(column() for column in columns) + "\n")
            target.write(end + tail)
    return make(FILES / f"noise-{rows}.xml", [calm], write)


def packed(xml):
    return make(xml.with_suffix(".paf"), [xml], lambda path: run([CLI, "pack", xml, path]))


def gzipped(xml):
    def write(path):
        with open(xml, "rb") as source, gzip.open(path, "wb", compresslevel=9) as target:
            shutil.copyfileobj(source, target)
    return make(xml.with_suffix(".xml.gz"), [xml], write)


def rows_as_csv(xml):
    def write(path):
        with open(xml, "rb") as source, open(path, "wb") as target:
            inside = False
            for line in source:
                if inside and line.startswith(b"</Data>"):
                    break
                if not inside and (found := line.find(b"<Data>")) >= 0:
                    inside, line = True, line[found + len(b"<Data>"):]
                if inside:
                    target.write(line)
    return make(xml.with_suffix(".rows.csv"), [xml], write)


def stored_bytes(xml, rows):
    """What the samples take in their file types."""
    with open(xml, encoding="utf-8") as file:
        head = file.read(1 << 16).partition("<Data>")[0]
    variables = re.findall(r"<TypedData [^>]*>", head)
    return rows * sum(TYPE_SIZES[re.search(r'Type="(\w+)"', variable)[1]]
                      for variable in variables)


# Measuring

def run(command):
    """Seconds and largest resident bytes of a process whose output is thrown away."""
    start = time.perf_counter()
    process = subprocess.Popen([str(part) for part in command], stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.perf_counter() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise RuntimeError(f"exit code {process.returncode}: {' '.join(process.args)}")
    return seconds, usage.ru_maxrss * 1024


def seconds_of(command):
    return lambda: run(command)[0]


def seconds_in_python(script, *arguments):
    return lambda: python_module.seconds_of(script, *arguments, build=BUILD)


def second_of_two(measure):
    """Does it once before it counts. A virtual machine gives memory back that nobody has used for some seconds, and
    getting a lot of it again takes longer than reading a recording."""
    def measure_again():
        measure()
        return measure()
    return measure_again


def seconds_of_threads(process):
    """Of the processor, in all threads that have not ended."""
    seconds = 0.0
    for thread in Path(f"/proc/{process.pid}/task").iterdir():
        try:
            seconds += int((thread / "schedstat").read_text().split()[0]) / 1e9
        except (FileNotFoundError, ProcessLookupError):  # it has ended just now
            pass
    return seconds


def seconds_until_idle(command):
    """What a window costs the processor, in all threads, until it waits for its user."""
    def measure():
        process = subprocess.Popen([str(part) for part in command], stdout=subprocess.DEVNULL,
                                   env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})
        try:
            quiet, used = 0, 0.0
            while quiet < 8:
                time.sleep(0.05)
                now = seconds_of_threads(process)
                quiet, used = (quiet + 1 if abs(now - used) < 0.0005 and now > 0.005 else 0), now
        finally:
            process.kill()
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != -signal.SIGKILL:
            raise RuntimeError(f"exit code {process.returncode}: {' '.join(process.args)}")
        return usage.ru_utime + usage.ru_stime
    return measure


def fastest(rounds, **sides):
    """Lets the sides take turns; the smallest result of each."""
    results = {name: [] for name in sides}
    for _ in range(rounds):
        for name, measure in sides.items():
            results[name].append(measure())
    return {name: min(values) for name, values in results.items()}


class Inner:
    """The benchmarks inside the process; their repetitions take turns."""

    def __init__(self, rounds, seconds, *options):
        self.arguments = [*options, f"--benchmark_repetitions={rounds}", f"--benchmark_min_time={seconds}",
                          "--benchmark_enable_random_interleaving=true", "--benchmark_format=json"]
        self.seconds = {}

    def output(self, name_filter):
        """The result of every repetition."""
        process = subprocess.run([BENCH, f"--benchmark_filter={name_filter}", *self.arguments], capture_output=True)
        if process.returncode != 0:
            raise RuntimeError(process.stderr.decode())
        return [result for result in json.loads(process.stdout)["benchmarks"] if result["run_type"] == "iteration"]

    def run(self, name_filter):
        """Name -> the fastest repetition's result."""
        best = {}
        for result in self.output(name_filter):
            name = result["run_name"].split("/iterations")[0].split("/manual_time")[0]
            if name not in best or result["real_time"] < best[name]["real_time"]:
                best[name] = result
        unit = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
        self.seconds |= {name: result["real_time"] * unit[result["time_unit"]] for name, result in best.items()}
        return best

    def ratio(self, name_filter, side, against):
        best = self.run(name_filter)
        return best[side]["real_time"] / best[against]["real_time"]


def measure_loads(rows, rounds):
    """The rows of the table about loads, and the seconds behind them."""
    calm, four, noisy = recording(rows), recording(4 * rows), noise(rows)
    paf, gz, csv = packed(calm), gzipped(calm), rows_as_csv(calm)
    parse = ["xmllint", "--noout", "--huge"]
    sides = {"calm": [*INFO, calm], "calm_parse": [*parse, calm], "noise": [*INFO, noisy],
             "noise_parse": [*parse, noisy], "paf": [*INFO, paf], "gzip": ["gzip", "-dc", gz],
             "four": [*INFO, four]}
    one = {name + "_one_core": ["taskset", "-c", "0", *command] for name, command in sides.items()}
    loads = {name: seconds_of(command) for name, command in {**sides, **one}.items()}
    loads |= {"python": seconds_in_python(python_module.READ, calm, python_module.CODE),
              "pandas": seconds_in_python(python_module.READ_CSV, csv)}
    load = fastest(rounds, **{name: second_of_two(seconds) for name, seconds in loads.items()})
    frame = python_module.fastest_to_pandas(calm, rounds, BUILD)
    peak = min(run([*INFO, calm])[1] for _ in range(min(rounds, 3)))
    allowed = calm.stat().st_size + stored_bytes(calm, rows)

    def both(what, against, target, limit, figure):
        """A row for all cores, and one for one core, which has no target."""
        return [Row(what, against, target, limit, figure("")),
                Row(what + ", one core", against, "x", None, figure("_one_core"))]

    table = [
        *both("load of the .xml", "xmllint --noout --huge", "<= 0.6 x", 0.6,
              lambda core: load["calm" + core] / load["calm_parse" + core]),
        *both("load of noise", "xmllint --noout --huge", "<= 0.6 x", 0.6,
              lambda core: load["noise" + core] / load["noise_parse" + core]),
        *both("load of the .paf", "gzip -dc plus xmllint", "<= 0.7 x", 0.7,
              lambda core: load["paf" + core] / (load["gzip" + core] + load["calm_parse" + core])),
        *both("load, file four times as large", "the smaller", "<= 4.1 x", 4.1,
              lambda core: load["four" + core] / load["calm" + core]),
        Row("load of the .xml", "pandas.read_csv of the same rows", ">= 6 x faster", 6.0,
            load["pandas"] / load["calm"], at_least=True),
        Row("tracelyn.read in Python", "load of the .xml by the tool", "<= 1.1 x", 1.1, load["python"] / load["calm"]),
        Row("tracelyn.read in Python", "pandas.read_csv of the same rows", ">= 5 x faster", 5.0,
            load["pandas"] / load["python"], at_least=True),
        Row("to_pandas()", "the copies of its arrays", "<= 2 x", 2.0, frame["to_pandas"] / frame["copies"]),
        Row("to_pandas()", "pandas.read_csv of the same rows", ">= 5 x faster", 5.0,
            load["pandas"] / frame["to_pandas"], at_least=True),
        Row("peak memory of a load", "file size plus typed stores", "<= 0.5 x", 0.5, peak / allowed),
    ]
    return table, {"load": load, "to_pandas": frame, "peak_bytes": peak, "file_bytes": calm.stat().st_size,
                   "stored_bytes": stored_bytes(calm, rows)}


def measure(rows, samples, rounds, seconds):
    table, times = measure_loads(rows, rounds)
    xml = recording(rows)
    start = fastest(rounds, window=seconds_until_idle([WINDOW, ROOT / "samples/bend01.paf"]),
                    empty=seconds_until_idle([EMPTY_WINDOW]))
    inner = Inner(rounds, seconds, f"--file={xml}", f"--folder={FILES}", f"--samples={samples}")
    export = inner.ratio("ExportFile|PrintfLoop", "PrintfLoop", "ExportFile")
    with tempfile.TemporaryDirectory(dir="/dev/shm") as folder:
        memory = Inner(rounds, seconds, f"--file={xml}", f"--folder={folder}", f"--samples={samples}")
        export_in_memory = memory.ratio("ExportFile|PrintfLoop", "PrintfLoop", "ExportFile")
    first = inner.ratio("FrameAfterLoad", "FrameAfterLoad/first", "FrameAfterLoad/next")
    zoom = inner.ratio("ZoomAndScroll|EveryEvent", "ZoomAndScrollLarge", "ZoomAndScrollSmall")
    events = inner.seconds["EveryEventLarge"] / inner.seconds["EveryEventSmall"]
    ordinary = inner.seconds["EveryEventLarge"] / inner.seconds["ZoomAndScrollLarge"]
    measuring = inner.ratio("CursorStepLong|CursorStepMeasuring", "CursorStepMeasuring", "CursorStepLong")
    figures = inner.ratio("FiguresLong|FullFrame", "FiguresLong", "FullFrame")
    step = inner.ratio("FullFrame|CursorStep$", "CursorStep", "FullFrame")
    indexes = inner.run("BuildIndex|AskIndex").values()
    index = max(result["index_bytes"] / result["store_bytes"] for result in indexes if "index_bytes" in result)

    noise_columns = inner.run("ConvertRows|LookAtRows")
    field = {kind: noise_columns[f"ConvertRows/{kind}"]["fields"] for kind in ("noise", "calm", "mixed")}
    look = {kind: noise_columns[f"ConvertRows/{kind}"]["real_time"] / noise_columns[f"LookAtRows/{kind}"]["real_time"]
            for kind in field}
    inner.run("Noise|FillScreen")
    large = inner.seconds

    table += [
        Row("a field of noise", "time", "<= 5 ns", 5e-9, field["noise"]),
        Row("a field of calm digits", "time", "<= 5 ns", 5e-9, field["calm"]),
        Row("rows of noise", "memchr over their text", "x", None, look["noise"]),
        Row("rows of calm digits", "memchr over their text", "x", None, look["calm"]),
        Row("CSV export", "fprintf loop over the same values", ">= 25 x faster", 25.0, export, at_least=True),
        Row("CSV export into memory", "fprintf loop into memory", ">= 25 x faster", 25.0, export_in_memory,
            at_least=True),
        Row("first frame after the load", "the frame after it", "<= 3 x", 3.0, first),
        Row("frame after zoom or scroll, long", "the same with 10 thousand samples", "<= 1.5 x", 1.5, zoom),
        Row("frame with every event, long", "the same with 10 thousand samples", "<= 1.5 x", 1.5, events),
        Row("frame with every event, long", "the ordinary frame", "<= 1.5 x", 1.5, ordinary),
        Row("frame of noise, 3840x2160", "filling it with one colour", "<= 4 x", 4.0,
            large["NoiseFrame"] / large["FillScreen"]),
        Row("slowest zoom of noise, 3840x2160", "filling it with one colour", "<= 4 x", 4.0,
            large["NoiseFrameZoomed"] / large["FillScreen"]),
        Row("held arrow key, 3840x2160", "one core", "<= 10 %", 0.1, 30 * large["NoiseCursorStep"]),
        Row("cursor step, measuring, long", "the same without the dock", "<= 2 x", 2.0, measuring),
        Row("figures of all signals, long", "a full frame", "<= 0.2 x", 0.2, figures),
        Row("cursor step", "a full frame", "<= 0.1 x", 0.1, step),
        Row("memory of the min/max index", "typed stores", "<= 5 %", 0.05, index),
        Row("start until the window is idle", "an empty window", "<= 1.5 x", 1.5, start["window"] / start["empty"]),
    ]
    return table, {**times, "start": start, "inner": inner.seconds, "in_memory": memory.seconds}


def measure_odd_pictures(rounds):
    """Their slowest frames: the first, and those after zooms and steps; of each the fastest round counts."""
    slowest = {}
    for result in Inner(rounds, 0).output("OddPicture"):
        name = result["run_name"].split("/")[1]
        for frame in "first", "later":
            slowest[name, frame] = min(result[frame], slowest.get((name, frame), result[frame]))
    return [Row(name, f"{frame} frame", "<= 200 ms", 0.2, seconds) for (name, frame), seconds in sorted(slowest.items())]


def print_table(table, foot):
    cells = [("what", "measured against", "target", "figure", "verdict")]
    cells += [(row.what, row.against, row.target, row.figure_text, row.verdict) for row in table]
    widths = [max(len(line[column]) for line in cells) for column in range(len(cells[0]))]
    for line in cells:
        print("  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip())
    print("\n" + foot)


def main():
    parser = argparse.ArgumentParser(prog="./bench.sh", description="Measures Tracelyn against its targets.")
    parser.add_argument("--short", action="store_true", help="few rows and repetitions: only shows that it runs")
    parser.add_argument("--odd", action="store_true", help="instead: frames of recordings that nobody would record")
    parser.add_argument("--json", type=Path, default=FILES / "results.json", help="where the figures go")
    parser.add_argument("--rows", type=int, help="samples of the recording (default 1500000)")
    parser.add_argument("--folder", type=Path, default=Path(), help=argparse.SUPPRESS)
    given = parser.parse_args()
    rows = given.rows or (20_000 if given.short else 1_500_000)
    samples = 100_000 if given.short else 10_000_000
    rounds, seconds = (2, 0.01) if given.short else (7, 0.2)

    FILES.mkdir(parents=True, exist_ok=True)
    if given.odd:
        print_table(measure_odd_pictures(rounds), f"The fastest of {rounds} rounds; the slowest of the later frames.")
        return
    table, times = measure(rows, samples, rounds, seconds)
    foot = (f"{rows} rows x {SIGNALS} signals, all loaded; the export is that of a load without access codes.\n"
            f"Frames of 1280x720 pixels, the long ones over {samples} samples x 16 signals.\n"
            f"The sides take turns, {rounds} rounds; the fastest of each counts.")
    print_table(table, foot)
    results = {"rows": rows, "samples": samples, "rounds": rounds, "short": given.short, "seconds_and_bytes": times,
               "table": [asdict(row) | {"verdict": row.verdict} for row in table]}
    (given.folder / given.json).write_text(json.dumps(results, indent=2) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
