#!/usr/bin/env python3
"""How long hostile files keep the tool busy, and how that grows with their size.

    growth.py TRACELYN-CLI LOAD_GAPS [--sizes 1,2,4,10] [--only TEXT]... [--json FILE]

A document of 1 MB may take 2 s and one of 10 MB may take 10 s, with sizes between in proportion; each MB that a
container expands to may take 0.1 s more. Machines are noisy: only a time of more than twice its bound counts as broken
(exit code 1), and so does a tool that crashes or runs out of memory. The times are seconds of CPU or of the clock,
whichever are fewer. For the largest file of each kind load_gaps adds how long the window could not paint and how long a
load went on after it was asked to stop, both in milliseconds; more than twice 200 ms counts as broken.
"""
import argparse
import json
import math
import os
import resource
import signal
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "fuzz"))
from hostile import CONTAINERS, DOCUMENTS, MB

COMMANDS = {"info": lambda file: ["info", file], "render": lambda file: ["render", file, "/dev/null"],
            "csv": lambda file: ["csv", file, "/dev/null"]}
MEMORY = 4 << 30       # address space that the tool may take
STOPPED_AFTER = 4      # times the bound
BROKEN_ABOVE = 2
STOPPED_WITHIN = 200   # ms
PATIENCE = 5           # seconds of the clock for a second of CPU, on a busy machine
EXPECTED_CODES = (0, 1, 3)


def bound(megabytes, file):
    expanded = min(256.0, 800 * megabytes) if file.suffix == ".paf" else 0  # at most; see hostile.largest
    return 2 + max(0.0, megabytes - 1) * 8 / 9 + 0.1 * expanded


def run(command, allowed):
    """Seconds, peak memory in MB and what went wrong ("" if nothing)."""
    limit = math.ceil(allowed * STOPPED_AFTER)

    def prepare():
        for kind, most in ((resource.RLIMIT_AS, MEMORY), (resource.RLIMIT_CORE, 0), (resource.RLIMIT_CPU, limit)):
            resource.setrlimit(kind, (most, most))
    started = time.monotonic()
    with subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, preexec_fn=prepare) as process:
        timer = threading.Timer(limit * PATIENCE, process.kill)
        timer.start()
        _, status, usage = os.wait4(process.pid, 0)
        timer.cancel()
        process.returncode = os.waitstatus_to_exitcode(status)
    seconds = min(time.monotonic() - started, usage.ru_utime + usage.ru_stime)
    problem = "beyond twice its bound" if seconds > allowed * BROKEN_ABOVE else ""
    if process.returncode not in EXPECTED_CODES:
        problem = "too slow" if process.returncode == -signal.SIGKILL else f"ended with {process.returncode}"
    return round(seconds, 3), round(usage.ru_maxrss / 1024), problem


def gaps(program, file):
    """Longest time without a report and after a stop, in ms, and the document's MB; nothing if the program failed."""
    done = subprocess.run([program, str(file)], capture_output=True, text=True, check=False)
    if done.returncode != 0:
        return None
    _, longest, after_stop, size = map(float, done.stdout.split())
    return longest, after_stop, size / MB


def measure(program, kind, make, file, sizes):
    """For every command its times, memory and problems, one for each size; a command that was too slow is not run again."""
    rows = [{"kind": kind, "command": name, "seconds": [], "memory": [], "problems": []} for name in COMMANDS]
    for size in sizes:
        file.write_bytes(make(int(size * MB)))
        for row in rows:
            if "too slow" not in row["problems"]:
                figures = run([program, *COMMANDS[row["command"]](str(file))], bound(size, file))
                for name, figure in zip(("seconds", "memory", "problems"), figures):
                    row[name].append(figure)
    return rows


def growth(row, sizes):
    """Time of the largest file over that of the smallest, as if sizes were doubled: 2 is linear, 4 quadratic."""
    first, last = row["seconds"][0], row["seconds"][-1]
    ratio = sizes[len(row["seconds"]) - 1] / sizes[0]
    return f"{(last / max(first, 0.001)) ** (1 / math.log2(ratio)):.1f}" if ratio > 1 and last >= 0.2 else ""


def print_row(row, sizes):
    times = "".join(f"{s:8.2f}" for s in row["seconds"]) + "       -" * (len(sizes) - len(row["seconds"]))
    problem = next(filter(None, row["problems"]), "")
    print(f"{row['kind']:38} {row['command']:7}{times} {growth(row, sizes):>6} {max(row['memory']):6}  {problem}", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program")
    parser.add_argument("load_gaps")
    parser.add_argument("--sizes", default="1,2,4,10", help="in MB")
    parser.add_argument("--only", action="append", default=[], help="kinds that hold this text")
    parser.add_argument("--json", help="file for the figures")
    options = parser.parse_args()
    sizes = [float(size) for size in options.sizes.split(",")]
    kinds = [(k, make, ".xml") for k, make in DOCUMENTS.items()] + [(k, make, ".paf") for k, make in CONTAINERS.items()]
    print(f"{'file':38} {'command':7}" + "".join(f"{s:5g} MB" for s in sizes) + " growth MB peak")
    rows, stops = [], []
    with tempfile.TemporaryDirectory() as folder:
        for kind, make, extension in kinds:
            if options.only and not any(text in kind for text in options.only):
                continue
            measured = measure(os.path.abspath(options.program), kind, make, Path(folder) / f"hostile{extension}", sizes)
            rows += measured
            for row in measured:
                print_row(row, sizes)
            found = gaps(os.path.abspath(options.load_gaps), Path(folder) / f"hostile{extension}")
            problem = "" if found and max(found[:2]) < BROKEN_ABOVE * STOPPED_WITHIN else "cannot be stopped in time"
            stops.append({"kind": kind, "gaps": found, "problem": problem})
            if found:
                print(f"{'':38} of {found[2]:.0f} MB, no paint for {found[0]:.0f} ms, stopped in {found[1]:.0f} ms  {problem}")
    broken = [row for row in rows if any(row["problems"])] + [stop for stop in stops if stop["problem"]]
    ends = [stop["gaps"] for stop in stops if stop["gaps"]]
    slowest = max(rows, key=lambda row: max(row["seconds"]))
    print(f"{len(rows)} rows, {len(broken)} beyond their bounds; slowest: {slowest['kind']} ({slowest['command']}), "
          f"{max(slowest['seconds']):.2f} s; most memory: {max(max(row['memory']) for row in rows)} MB; "
          f"longest without a paint: {max(end[0] for end in ends):.0f} ms, to a stop: {max(end[1] for end in ends):.0f} ms")
    if options.json:
        Path(options.json).write_text(json.dumps({"sizes": sizes, "rows": rows, "stops": stops}, indent=1) + "\n")
    sys.exit(bool(broken))


if __name__ == "__main__":
    main()
