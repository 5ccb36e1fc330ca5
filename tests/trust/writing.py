#!/usr/bin/env python3
"""Shows that writing loses nothing: full disks, limits, read-only folders, killed processes, races.

Every output must be the old file or the whole new one, and a failure must be told. Prints a line of figures for each
subject and exits with 1 when anything did not hold.
"""
import argparse
import os
import pathlib
import random
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "fuzz"))
from hostile import with_columns

OLD = b"what was there before\n"
NOBODY = 65534


def recording(rows, factor):
    return with_columns(6, "\n".join(",".join(f"{row * factor * (i + 7919) % 10007 / 100}" for i in range(6)) for row in range(rows)))


class Bench:
    def __init__(self, folder, cli, save_copy):
        self.folder = folder
        self.temporary = folder / "tmp"
        self.out = folder / "out"
        self.temporary.mkdir()
        self.temporary.chmod(0o1777)
        # Copies, which another user can run as well.
        self.cli = shutil.copy(cli, folder / "tracelyn-cli")
        self.save_copy = shutil.copy(save_copy, folder / "save_copy")
        self.failures = 0
        self.xml, self.paf = ([folder / f"{name}.{kind}" for name in ("one", "two")] for kind in ("xml", "paf"))
        for number, (xml, paf) in enumerate(zip(self.xml, self.paf)):
            xml.write_bytes(recording(40000, 3 + number))
            self.run(self.command("pack", xml, paf), check=True)

    def command(self, name, *words):
        return [*map(str, [self.save_copy] if name == "save" else [self.cli, name]), *map(str, words)]

    def commands(self, target):
        """One of every kind that writes: its name, its words and whether it may replace a file."""
        sources = {"csv": self.paf, "render": self.xml, "pack": self.xml, "expand": self.paf, "save": self.paf}
        return [(name, self.command(name, source[0], target), name != "save") for name, source in sources.items()]

    def environment(self):
        return {**os.environ, "TMPDIR": str(self.temporary), "LC_ALL": "C", "QT_QPA_PLATFORM": "offscreen"}

    def run(self, command, **options):
        return subprocess.run(command, env=self.environment(), stdin=subprocess.DEVNULL, capture_output=True, **options)

    def start(self, command, **options):
        return subprocess.Popen(command, env=self.environment(), stdin=subprocess.PIPE,
                                **{"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, **options})

    def fresh_out(self, replaces, mode=0o755):
        """An output folder with the old file in it, where the command may replace it. Returns the target."""
        shutil.rmtree(self.out, ignore_errors=True)
        self.out.mkdir()
        target = self.out / "target"
        if replaces:
            target.write_bytes(OLD)
            target.chmod(0o666)
        self.out.chmod(mode)
        return target

    def wholes(self):
        """What each command writes when nothing goes wrong."""
        result = {}
        for name, command, replaces in self.commands(self.fresh_out(False)):
            target = self.fresh_out(replaces)
            self.run(command, check=True)
            result[name] = target.read_bytes()
        return result

    def check(self, holds, text):
        self.failures += not holds
        if not holds:
            print(f"FAILED: {text}")

    def expect_untouched(self, what, target, replaces, done):
        self.check(done.returncode != 0, f"{what}: failure is told")
        content = target.read_bytes() if target.exists() else None
        self.check(content == (OLD if replaces else None), f"{what}: the old file is whole")
        self.check(os.listdir(self.out) == (["target"] if replaces else []), f"{what}: nothing beside it")

    def left_in_temporary(self):
        return list(self.temporary.glob("tracelyn-*/*"))


def size_limit(bench):
    runs = 0
    for limit in (0, 1, 5000, 70000):
        for deadly in (False, True):
            for name, command, replaces in bench.commands(bench.out / "target"):
                target = bench.fresh_out(replaces)
                done = bench.run(command, restore_signals=deadly,
                                 preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
                if done.returncode != 0:
                    bench.expect_untouched(f"limit {limit} {name}", target, replaces, done)
                else:
                    bench.check(target.stat().st_size <= limit, f"limit {limit} {name}")
                runs += 1
    print(f"file size limit           {runs} runs, half of them killed by it")


def full_file_system(bench):
    """A file system of its own, which goes with the process that mounts it."""
    runs = 0
    for name, command, replaces in bench.commands("/mnt/target"):
        script = ("mount -t tmpfs -o size=12k none /mnt || exit 99; [ -z $1 ] || printf 'what was there before\n' >/mnt/target;"
                  'shift; "$@" </dev/null; code=$?; ls -A /mnt; cat /mnt/* 2>/dev/null; exit $code')
        done = bench.run(["unshare", "--mount", "sh", "-c", script, "sh", "old" if replaces else "", *command])
        if done.returncode == 99 or b"unshare" in done.stderr:
            print("full file system          skipped, it takes the right to mount one")
            return
        bench.check(done.returncode == 1 and done.stdout == (b"target\n" + OLD if replaces else b""),
                    f"full file system {name}: {done}")
        runs += 1
    print(f"full file system          {runs} commands, each told so")


def read_only_folder(bench):
    other = {"user": NOBODY, "group": NOBODY, "extra_groups": []} if os.geteuid() == 0 else {}
    for name, command, replaces in bench.commands(bench.out / "target"):
        for old in {replaces, False}:
            target = bench.fresh_out(old, mode=0o555)
            bench.expect_untouched(f"read-only folder {name}", target, old, bench.run(command, **other))
    print("read-only folder          9 runs, with and without a file that could be written over")


def stopped(bench, runs, how):
    """Stops the commands at random moments; returns what was found then."""
    wholes = bench.wholes()
    counts = {"old": 0, "new": 0, "beside": 0, "temporary": 0}
    for name, command, replaces in bench.commands(bench.out / "target"):
        if how == signal.SIGINT and name == "save":
            continue  # no program of its own outside the window
        bench.fresh_out(replaces)
        start = time.monotonic()
        bench.run(command, check=True)
        duration = time.monotonic() - start
        for _ in range(runs):
            target = bench.fresh_out(replaces)
            # Even if this script's own caller ignores Ctrl+C.
            process = bench.start(command, preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_DFL))
            process.stdin.close()
            time.sleep(random.uniform(0, duration))
            process.send_signal(how)
            bench.check(process.wait() in (0, -how), f"{how.name} {name}: told by the exit code {process.returncode}")
            content = target.read_bytes() if target.exists() else None
            bench.check(content in (OLD if replaces else None, wholes[name]), f"{how.name} {name}: the file is whole")
            counts["new" if content == wholes[name] else "old"] += 1
            counts["beside"] += sum(1 for entry in os.listdir(bench.out) if entry != "target")
            counts["temporary"] += len(bench.left_in_temporary())
    return counts


def killed(bench, runs):
    counts = stopped(bench, runs, signal.SIGKILL)
    bench.run(bench.command("info", bench.paf[0]), check=True)
    bench.check(not bench.left_in_temporary(), f"the next load removes what is left: {bench.left_in_temporary()}")
    print(f"killed at random moments  {5 * runs} runs: {counts['old']} old files, {counts['new']} whole new ones, "
          f"{counts['beside']} files left beside, {counts['temporary']} temporary folders, which the next run removed")


def interrupted(bench, runs):
    counts = stopped(bench, runs, signal.SIGINT)
    bench.check(counts["beside"] + counts["temporary"] == 0, f"Ctrl+C leaves nothing behind: {counts}")
    print(f"Ctrl+C at random moments  {4 * runs} runs: {counts['old']} old files, {counts['new']} whole new ones")


def save_races(bench, runs):
    wins = [0, 0]
    for _ in range(runs):
        target = bench.fresh_out(False)
        racers = [bench.start(bench.command("save", paf, target)) for paf in bench.paf]
        for racer in random.sample(racers, 2):
            racer.stdin.close()
        codes = [racer.wait() for racer in racers]
        bench.check(sorted(codes) == [0, 1], f"one of two saves wins: {codes}")
        winner = codes.index(0) if 0 in codes else 0
        wins[winner] += 1
        bench.check(target.read_bytes() == bench.paf[winner].read_bytes(), "the winner's file stays")
        bench.check(os.listdir(bench.out) == ["target"], "the loser leaves nothing")
    print(f"races of two saves        {runs} races, won {wins[0]} and {wins[1]} times")


def parallel_loads(bench, runs):
    expected = [bench.run(bench.command("csv", xml, "/dev/stdout")).stdout for xml in bench.xml]
    for _ in range(runs):
        loads = [bench.start(bench.command("csv", paf, "/dev/stdout"), stdout=subprocess.PIPE) for paf in bench.paf * 2]
        for number, load in enumerate(loads):
            bench.check(load.communicate()[0] == expected[number % 2], "loads at the same moment stay apart")
    bench.check(not bench.left_in_temporary(), "nothing is left of them")
    print(f"loads at the same moment  {runs} times 4 containers")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--runs", type=int, default=100, help="kills of each command and races (default 100)")
    parser.add_argument("cli", help="the program tracelyn-cli")
    parser.add_argument("save_copy", help="the program save_copy of this folder")
    options = parser.parse_args()
    seed = random.randrange(1 << 32)
    random.seed(seed)
    with tempfile.TemporaryDirectory(prefix="tracelyn-writing-") as name:
        folder = pathlib.Path(name)
        folder.chmod(0o755)
        bench = Bench(folder, options.cli, options.save_copy)
        size_limit(bench)
        full_file_system(bench)
        read_only_folder(bench)
        killed(bench, options.runs)
        interrupted(bench, options.runs)
        save_races(bench, options.runs)
        parallel_loads(bench, options.runs)
        shutil.rmtree(bench.out)
        print(f"{bench.failures} failures" + (f" (seed {seed})" if bench.failures else ""))
        return 1 if bench.failures else 0


if __name__ == "__main__":
    sys.exit(main())
