"""What bench.py measures of the Python module: each round is a Python of its own, since a process that has read before
has memory at hand."""
import json
import os
import subprocess

# Debian's Python has Debian's pandas, whichever Python runs this. Each script prints seconds as JSON.
PYTHON = "/usr/bin/python3"
CODE = "47195"  # shows every signal

READ_CSV = """
import json, sys, time, pandas
start = time.perf_counter()
pandas.read_csv(sys.argv[1], header=None, engine="c")
print(json.dumps(time.perf_counter() - start))
"""

READ = """
import json, sys, time, tracelyn
start = time.perf_counter()
recording = tracelyn.read(sys.argv[1], sys.argv[2])
print(json.dumps(time.perf_counter() - start))
"""

# The copies are those of all samples into one table of the type and the size that to_pandas makes.
TO_PANDAS = """
import json, sys, time, numpy, pandas, tracelyn
recording = tracelyn.read(sys.argv[1], sys.argv[2])

def copies():
    table = numpy.empty((len(recording.signals), recording.samples))
    for row, signal in zip(table, recording.signals.values()):
        row[:] = signal.values
    return table

def seconds(work):
    start = time.perf_counter()
    kept = work()
    return time.perf_counter() - start

seconds(copies)
print(json.dumps({"copies": seconds(copies), "to_pandas": seconds(recording.to_pandas)}))
"""


def seconds_of(script, *arguments, build):
    """Runs a script with the module of a build folder; what it prints."""
    return json.loads(subprocess.run([PYTHON, "-c", script, *map(str, arguments)], check=True, stdout=subprocess.PIPE,
                                     env={**os.environ, "PYTHONPATH": str(build / "python")}).stdout)


def fastest_to_pandas(xml, rounds, build):
    """The fastest of the copies, and of to_pandas."""
    results = [seconds_of(TO_PANDAS, xml, CODE, build=build) for _ in range(rounds)]
    return {what: min(result[what] for result in results) for what in ("copies", "to_pandas")}
