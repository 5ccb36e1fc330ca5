#!/usr/bin/env python3
"""One table of the figures of many recordings: a row for each file, group and signal.

    fleet.py [--out NAME] [--code C]... [--workers N | --scheduler ADDRESS] FOLDER
    fleet.py [--out NAME] [--code C]... [--workers N | --scheduler ADDRESS] --list FILE

The columns are those of "tracelyn-cli stats", and "problem": what is wrong with the file, be it that it cannot be read.
A run that was stopped goes on where it was when the same command is given again. docs/fleet.md tells more.

exit code: 0 no problems, 1 nothing read or written, 2 wrong usage, 3 written, but files have problems or cannot be read
"""
import argparse
import csv
import hashlib
import io
import json
import logging
import os
import shutil
import signal
import sys
import threading
import warnings
import zlib
from concurrent.futures import CancelledError
from contextlib import ExitStack, contextmanager
from dataclasses import dataclass
from itertools import islice
from pathlib import Path

try:
    from distributed import Client, KilledWorker, LocalCluster, wait
    from distributed.comm import CommClosedError
except ImportError as missing:
    sys.exit(f"fleet.py: {missing}; on Debian: apt-get install python3-dask python3-distributed")

from fleet_output import COLUMNS, Failure, Progress, choose_output, publish, tell

if __name__ == "__mp_main__":  # a worker on this machine, which Ctrl+C does not mean
    signal.signal(signal.SIGINT, signal.SIG_IGN)

TRIES = 3  # more for a batch whose worker raised an error, such as a disk that was full


@dataclass(frozen=True)
class Batch:
    """Files that one task measures, and the name of the part of the table that becomes of them."""
    files: list[str]
    part: str


@dataclass(frozen=True)
class Work:
    """What every task needs to know."""
    home: str  # where relative paths begin
    parts: str  # folder of the parts
    codes: list[str]


# The next four functions run on the workers, which need not have this file.

def look_around(parts, file):
    """What is wrong with a worker, or nothing: it must import tracelyn, write the parts and see the files."""
    try:
        import tracelyn  # noqa: F401
    except ImportError as error:
        return f"it cannot import tracelyn ({error}); mind its PYTHONPATH"
    if not os.access(parts, os.W_OK):
        return f"it cannot write into {parts}; all machines must see one file system"
    return "" if os.path.exists(file) else f"it does not see {file}; all machines must see one file system"


def rows_of(file, work):
    """The rows of one file, and whether it could be read."""
    import tracelyn
    path = os.path.join(work.home, file)
    figures, problems, is_read = [], [], False
    try:
        recording = tracelyn.read(path, work.codes or None)
        is_read = True
        if problems := recording.problems[:1]:
            more = len(recording.problems) - 1
            problems[0] += f" (and {more} more)" if more else ""
        figures = recording.statistics()
        if not figures:
            problems.append("no signal is shown")
    except Exception as error:  # whatever it is, the other files go on and the table tells of it
        problems.append(str(error) or type(error).__name__)
    problem = "; ".join(problems).replace(path, file)
    return [{**row, "file": file, "problem": problem} for row in figures or [{}]], is_read


def write_part(path, files):
    """Writes what rows_of gave for some files: a line of counts, then CSV. The part appears whole or not at all."""
    text = io.StringIO()
    writer = csv.DictWriter(text, COLUMNS, lineterminator="\n")
    counts = dict.fromkeys(("files", "read", "problems", "rows"), 0)
    for rows, is_read in files:
        writer.writerows(rows)
        for name, more in zip(counts, (1, is_read, bool(rows[0]["problem"]), len(rows))):
            counts[name] += more
    draft = f"{path}.{os.uname().nodename}-{os.getpid()}-{threading.get_ident()}"
    with open(draft, "wb") as part:
        part.write(json.dumps(counts).encode() + b"\n" + text.getvalue().encode("utf-8", "surrogateescape"))
        part.flush()
        os.fsync(part.fileno())
    os.replace(draft, path)


def measure(batch, work):
    """Measures the files of a batch and writes its part. Done twice, it does the same again."""
    import tracelyn
    warnings.simplefilter("ignore", tracelyn.RecordingWarning)  # the table tells what they tell
    write_part(os.path.join(work.parts, batch.part), (rows_of(file, work) for file in batch.files))


def find_files(arguments):
    """The paths in the order of the table."""
    if arguments.list is None:
        def stop(error):
            raise Failure(f"Cannot read folder: {error.filename}")
        if not os.path.isdir(arguments.folder):
            raise Failure(f"Cannot read folder: {arguments.folder}")
        return sorted(os.path.join(folder, name) for folder, _, names in os.walk(arguments.folder, onerror=stop)
                      for name in names if name.lower().endswith((".xml", ".paf")))
    try:
        with open(arguments.list, encoding="utf-8", errors="surrogateescape", newline="\n") as file:
            return list(dict.fromkeys(line for line in map(str.rstrip, file) if line))
    except OSError as error:
        raise Failure(f"Cannot read list: {arguments.list}: {error.strerror}") from None


def identity(path):
    """What changes when a file does."""
    try:
        status = os.stat(path)
        return status.st_size, status.st_mtime_ns
    except (OSError, ValueError):
        return None


def divide(files, size, work):
    """Makes batches of about `size` files.

    A batch ends behind a file whose name says so, thus a file more or less changes one batch and not all behind it. The
    name of a part tells everything that its rows depend on.
    """
    import tracelyn
    files_of_batch = []
    for number, file in enumerate(files, 1):
        files_of_batch.append(file)
        ends = zlib.crc32(os.fsencode(file)) % size == 0
        if ends or len(files_of_batch) == 4 * size or number == len(files):
            sizes = [identity(os.path.join(work.home, one)) for one in files_of_batch]
            state = repr((COLUMNS, tracelyn.__version__, work.home, sorted(work.codes), files_of_batch, sizes))
            digest = hashlib.sha256(state.encode("utf-8", "surrogateescape")).hexdigest()
            yield Batch(files_of_batch, f"{digest[:40]}.part")
            files_of_batch = []


@contextmanager
def cluster(arguments, work, file):
    """A client of the scheduler that was named, or of a cluster on this machine, whose workers can read the file."""
    for name in ("distributed", "distributed.client"):
        logging.getLogger(name).setLevel(logging.CRITICAL)  # what matters of it, this program tells
    with ExitStack() as stack:
        where = arguments.scheduler
        if where is None:
            shutil.rmtree(os.path.join(work.parts, "dask-worker-space"), ignore_errors=True)  # of a run that was killed
            where = stack.enter_context(LocalCluster(
                n_workers=arguments.workers, threads_per_worker=1, dashboard_address=None, local_directory=work.parts,
                silence_logs=logging.CRITICAL))
        try:
            client = stack.enter_context(Client(where, timeout=10))
        except (OSError, ValueError) as error:
            raise Failure(f"There is no scheduler at {where}: {error}") from None
        answers = client.run(look_around, work.parts, os.path.join(work.home, file))
        if not answers:
            raise Failure(f"The scheduler at {where} has no workers")
        for worker, problem in answers.items():
            if problem:
                raise Failure(f"The worker {worker} cannot help: {problem}")
        yield client


def threads_of(client):
    """How many tasks can run at once. A cluster on this machine gets new workers for those that ended for good."""
    if client.cluster is not None and len(client.nthreads()) < len(client.cluster.worker_spec):
        client.cluster.scale(len(client.cluster.worker_spec))
    return sum(client.nthreads().values())


def done_of(client, futures):
    """Those of the tasks that are done, as soon as there are some."""
    is_told = False
    while True:
        try:
            return wait(futures, timeout=5, return_when="FIRST_COMPLETED").done
        except TimeoutError:
            if threads_of(client) == 0 and not is_told:
                tell("no worker is left; waiting for one")
                is_told = True


def run(client, batches, work, progress):
    """Measures the batches. Few are under way at a time, so that neither the scheduler nor this process holds many.

    A batch whose workers were killed again and again comes last, file by file and alone, since it may not be its fault.
    Returns the names of the parts of such batches: {part of the batch: parts of its files}.
    """
    def begin(batch):
        return client.submit(measure, batch, work, pure=False, retries=TRIES)

    waiting, under_way, suspects, divided = iter(batches), {}, [], {}
    while True:
        room = 2 * max(threads_of(client), 1) - len(under_way)
        under_way |= {begin(batch): batch for batch in islice(waiting, max(room, 0))}
        if not under_way:
            break
        for future in done_of(client, list(under_way)):
            batch = under_way.pop(future)
            try:
                future.result()
                progress.add(measured=len(batch.files))
            except KilledWorker:
                suspects.append(batch)
    for batch in suspects:
        singles = [single for file in batch.files for single in divide([file], 1, work)]
        for single in singles:
            path = os.path.join(work.parts, single.part)
            try:
                if not os.path.exists(path):
                    done_of(client, [future := begin(single)])
                    future.result()
            except KilledWorker:
                row = {"file": single.files[0], "problem": "a worker ended each time it read this file"}
                write_part(path, [([row], False)])
            progress.add(measured=1)
        divided[batch.part] = [single.part for single in singles]
    return divided


def parse(words):
    """The options; a wrong one ends the program with exit code 2."""
    parser = argparse.ArgumentParser(prog="fleet.py", description=__doc__, usage=argparse.SUPPRESS,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)

    def number(text):
        value = int(text)
        if value < 1:
            raise ValueError
        return value
    parser.add_argument("folder", nargs="?", metavar="FOLDER", help="take every .xml and .paf in it and below")
    parser.add_argument("--list", metavar="FILE", help="take the files that it names, one on a line, in this order")
    parser.add_argument("--out", metavar="NAME", default="fleet",
                        help="the table, .csv or .parquet; without either what can be written (default: fleet)")
    parser.add_argument("--code", metavar="C", action="append", default=[], help="access code; the highest counts")
    parser.add_argument("--workers", metavar="N", type=number, help="processes here (default: one for each core)")
    parser.add_argument("--scheduler", metavar="ADDRESS", help="a Dask scheduler that runs, such as tcp://host:8786")
    parser.add_argument("--batch", metavar="N", type=number, default=50, help="files of a task, about (default: 50)")
    arguments = parser.parse_args(words)
    if (arguments.folder is None) == (arguments.list is None):
        parser.error("either FOLDER or --list is needed")
    if arguments.workers and arguments.scheduler:
        parser.error("--workers is for a cluster on this machine, not for that of --scheduler")
    arguments.workers = arguments.workers or len(os.sched_getaffinity(0))
    try:
        import tracelyn
        tracelyn.read("", arguments.code or None)  # asks for nothing but the codes
    except ImportError as error:
        raise Failure(f"Cannot import tracelyn ({error}); mind the PYTHONPATH") from None
    except ValueError as error:
        parser.error(str(error))
    except OSError:
        pass
    return arguments


def measure_fleet(arguments):
    """Does everything and gives the exit code."""
    out = choose_output(arguments.out)
    files = find_files(arguments)
    if not files:
        raise Failure(f"No recording (.xml, .paf) is in {arguments.folder or arguments.list}")
    work = Work(os.getcwd(), os.path.abspath(f"{out}.parts"), arguments.code)
    if not os.path.isdir(work.parts):
        os.mkdir(work.parts)
    if out.suffix == ".csv" and not arguments.out.endswith(".csv"):
        tell(f"pandas has neither pyarrow nor fastparquet, so the table is {out}")
    progress, parts, missing = Progress(len(files)), [], []
    try:
        for batch in divide(files, arguments.batch, work):
            parts.append(batch.part)
            if os.path.exists(os.path.join(work.parts, batch.part)):
                progress.add(kept=len(batch.files))
            else:
                missing.append(batch)
        if missing:
            a_file = next((file for batch in missing for file in batch.files if os.path.exists(file)), work.parts)
            with cluster(arguments, work, a_file) as client:
                progress.begin()
                divided = run(client, missing, work, progress)
            parts = [name for part in parts for name in divided.get(part, [part])]
    finally:
        progress.end()
    sums = publish([Path(work.parts, part) for part in parts], out)
    shutil.rmtree(work.parts, ignore_errors=True)
    tell(f"{sums['rows']} rows of {sums['files']} files in {out}; measured now {progress.measured}, "
         f"kept from before {progress.kept}; problems in {sums['problems']}, unreadable {sums['files'] - sums['read']}")
    return 1 if sums["read"] == 0 else 3 if sums["problems"] else 0


def main():
    try:
        sys.exit(measure_fleet(parse(sys.argv[1:])))
    except KeyboardInterrupt:
        tell("stopped; the same command goes on from here")
        sys.exit(130)
    except Failure as failure:
        tell(failure)
    except (CancelledError, CommClosedError):
        tell("the scheduler is gone; the same command goes on from here")
    except ImportError as error:
        tell(f"a worker cannot import what it needs ({error}); mind its PYTHONPATH")
    except OSError as error:
        tell(f"Cannot write {error.filename}: {error.strerror}" if error.filename else error)
    sys.exit(1)


if __name__ == "__main__":
    main()
