#!/usr/bin/env python3
"""Runs fuzzers side by side: run_fuzzers.py MINUTES [TARGET]...

A fuzzer that finds something is started again until the time is over. Prints what every target did and adds it to
build/fuzz-results.json. Exits with 1 when anything was found.
"""
import datetime
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build"
PROGRAMS = BUILD / "fuzz" / "fuzz"
SEEDS = BUILD / "fuzz-seeds"
CORPUS = BUILD / "fuzz-corpus"
FINDINGS = BUILD / "fuzz-findings"
RESULTS = BUILD / "fuzz-results.json"
KNOWN = ROOT / "tests" / "data" / "fuzz"  # inputs that once were findings

# Longest input of each target in bytes, and how far it stands back for the others: the large targets get most of the time.
TARGETS = {"analysis": (20_000, 0), "rows": (4_000, 5), "container": (8_000, 5), "numbers": (600, 15), "fileset": (400, 15),
           "commandline": (400, 15)}
FINDINGS_AT_MOST = 20
MERGE_GROWTH = 1.5  # a corpus that grew so much since it was last minimised is minimised again


def environment(temporary):
    return dict(os.environ, TMPDIR=temporary, XDG_RUNTIME_DIR=temporary, QT_QPA_PLATFORM="offscreen", LC_ALL="C",
                ASAN_OPTIONS="detect_stack_use_after_return=1:allocator_may_return_null=1",
                UBSAN_OPTIONS="print_stacktrace=1",
                LSAN_OPTIONS=f"suppressions={ROOT / 'fuzz' / 'lsan.supp'}:print_suppressions=0")


def last(pattern, text):
    found = re.findall(pattern, text)
    return int(found[-1]) if found else 0


class Fuzzer:
    """One target of one run."""

    def __init__(self, target, deadline, temporary):
        self.target = target
        self.environment = environment(temporary)
        self.deadline = deadline
        self.corpus = CORPUS / target
        self.findings_folder = FINDINGS / target
        self.executions = 0
        self.edges = 0
        self.seconds = 0.0
        self.findings = []
        self.broken = ""

    def command(self, *options):
        longest, niceness = TARGETS[self.target]
        command = ["nice", "-n", str(niceness), PROGRAMS / f"fuzz_{self.target}", "-timeout=10", "-rss_limit_mb=2048",
                   "-malloc_limit_mb=1024", f"-max_len={longest}", *options]
        dictionary = ROOT / "fuzz" / f"{self.target}.dict"
        return command + ([f"-dict={dictionary}"] if dictionary.exists() else [])

    def folders(self):
        return [f for f in (self.corpus, SEEDS / self.target, KNOWN / self.target) if f.is_dir()]

    def run(self):
        for folder in (self.corpus, self.findings_folder):
            folder.mkdir(parents=True, exist_ok=True)
        started = time.monotonic()
        while (left := int(self.deadline - time.monotonic())) > 0 and len(self.findings) < FINDINGS_AT_MOST:
            if not self.run_once(left):
                break
        self.seconds = time.monotonic() - started
        self.minimise()

    def run_once(self, seconds):
        """Runs until the time is over or something is found; false when going on makes no sense."""
        log = self.findings_folder / "last-run.log"
        with open(log, "wb") as output:
            status = subprocess.run(
                self.command(f"-max_total_time={seconds}", "-print_final_stats=1", f"-artifact_prefix={self.findings_folder}/",
                             *self.folders()), stdout=output, stderr=output, env=self.environment, check=False).returncode
        text = log.read_text(errors="replace")
        executions = last(r"stat::number_of_executed_units: (\d+)", text)
        self.executions += executions
        self.edges = max(self.edges, last(r"\bcov: (\d+)", text))
        if status == 0:
            return False
        inputs = [Path(name) for name in re.findall(r"Test unit written to (\S+)", text) if "slow-unit" not in name]
        for path in inputs:
            if path.name.startswith("timeout") and self.passes(path):
                path.unlink()  # the machine stood still, not the program
            else:
                self.findings.append(path.name)
                shutil.copyfile(log, f"{path}.log")
        if not inputs:
            self.broken = f"stopped with {status} and no input, see {log}"
        return bool(inputs) and executions > 0

    def passes(self, path):
        return subprocess.run(self.command(path), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=self.environment,
                              check=False).returncode == 0

    def minimise(self):
        """Keeps a smaller corpus that covers the same."""
        note = CORPUS / f"{self.target}.minimised"
        before = int(note.read_text()) if note.exists() else 50
        if len(list(self.corpus.iterdir())) <= before * MERGE_GROWTH:
            return
        smaller = CORPUS / f"{self.target}.smaller"
        shutil.rmtree(smaller, ignore_errors=True)
        smaller.mkdir()
        merged = subprocess.run(self.command("-merge=1", smaller, self.corpus), env=self.environment, check=False,
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0
        if merged and any(smaller.iterdir()):
            shutil.rmtree(self.corpus)
            smaller.rename(self.corpus)
        shutil.rmtree(smaller, ignore_errors=True)
        note.write_text(str(len(list(self.corpus.iterdir()))))

    def result(self):
        return {"target": self.target, "executions": self.executions, "edges": self.edges,
                "corpus": len(list(self.corpus.iterdir())), "seconds": round(self.seconds), "findings": self.findings}


def print_table(results, runs):
    print(f"{'target':12} {'executions':>12} {'edges':>7} {'corpus':>7} {'findings':>8}   {'all runs':>14} {'hours':>6}")
    for result in results:
        mine = [r for run in runs for r in run["targets"] if r["target"] == result["target"]]
        print(f"{result['target']:12} {result['executions']:12,} {result['edges']:7,} {result['corpus']:7,} "
              f"{len(result['findings']):8}   {sum(r['executions'] for r in mine):14,} {sum(r['seconds'] for r in mine) / 3600:6.2f}")


def main():
    try:
        minutes = float(sys.argv[1])
        targets = sys.argv[2:] or list(TARGETS)
        if minutes <= 0 or not set(targets) <= set(TARGETS):
            raise ValueError
    except (IndexError, ValueError):
        sys.exit(f"usage: fuzz.sh MINUTES [TARGET]...\ntargets: {', '.join(TARGETS)}")
    deadline = time.monotonic() + minutes * 60
    # Every run of a fuzzer writes files: memory is the place for them where a folder there is.
    memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
    with tempfile.TemporaryDirectory(prefix="tracelyn-fuzz-", dir=memory) as temporary:
        fuzzers = [Fuzzer(target, deadline, temporary) for target in targets]
        threads = [threading.Thread(target=fuzzer.run) for fuzzer in fuzzers]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()

    results = [fuzzer.result() for fuzzer in fuzzers]
    runs = json.loads(RESULTS.read_text()) if RESULTS.exists() else []
    runs.append({"date": datetime.datetime.now().isoformat(timespec="seconds"), "minutes": minutes, "targets": results})
    RESULTS.write_text(json.dumps(runs, indent=1) + "\n")
    print_table(results, runs)
    for fuzzer in fuzzers:
        for name in fuzzer.findings:
            print(f"FOUND: {fuzzer.findings_folder / name}, report beside it (.log)")
        if fuzzer.broken:
            print(f"BROKEN: {fuzzer.target} {fuzzer.broken}")
    sys.exit(any(fuzzer.findings or fuzzer.broken for fuzzer in fuzzers))


if __name__ == "__main__":
    main()
