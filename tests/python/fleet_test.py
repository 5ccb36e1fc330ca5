"""examples/fleet.py: its table is the tool's, whatever happens to workers and to the run itself."""
import csv
import importlib.util
import io
import os
import re
import shutil
import signal
import subprocess
import sys
import time
import unittest
from pathlib import Path

from testing import ROOT, SAMPLES, Folder, made, small, tool

FILES = 60
SCRIPT = ROOT / "examples" / "fleet.py"
BENDS = [path for path in SAMPLES if path.suffix == ".paf"]


def children(process):
    """The processes that one has started itself, with their command lines."""
    listed = " ".join(path.read_text() for path in Path(f"/proc/{process}/task").glob("*/children")).split()
    return {int(child): Path(f"/proc/{child}/cmdline").read_text() for child in listed}


@unittest.skipUnless(importlib.util.find_spec("distributed"), "Dask is not there")
class Fleet(Folder):
    def setUp(self):
        super().setUp()
        (self.folder / "fleet" / "press").mkdir(parents=True)
        for number in range(FILES - 4):
            source = BENDS[number % len(BENDS)]
            shutil.copy(source, self.folder / "fleet" / f"{'press/' if number % 2 else ''}bend{number:02}.paf")
        (self.folder / "fleet" / "cut.paf").write_bytes(BENDS[0].read_bytes()[:5000])
        self.put(small().replace('"Float"', '"short"'), "fleet/press/problem, \"inside\".xml")
        self.put(made(2), "fleet/odd.xml")
        self.put(re.sub(r"(</?)Data>", r"\1Rows>", small()), "fleet/empty.xml")
        self.first, *_ = self.files = sorted(str(path.relative_to(self.folder)) for path in self.folder.rglob("*.???")
                                             if path.is_file())

    def start(self, out, workers):
        """Begins a run with batches of one or few files, so that it can be met in the middle."""
        run = subprocess.Popen([sys.executable, "-B", SCRIPT, "--out", out, "--workers", str(workers), "--batch", "2",
                                "fleet"], cwd=self.folder, stderr=subprocess.PIPE, encoding="utf-8")
        self.addCleanup(run.kill)
        return run

    def parts(self, out):
        return list(self.folder.glob(f"{out}.parts/*.part"))

    def wait_for_parts(self, run, out, number):
        while len(self.parts(out)) < number:
            self.assertIsNone(run.poll(), "the run ended before it could be met in the middle")
            time.sleep(0.002)

    def finish(self, run, out):
        """The table, and how many files the run has measured and kept."""
        words = run.communicate(timeout=120)[1]
        self.assertEqual(run.returncode, 3, words)
        self.assertFalse((self.folder / f"{out}.parts").exists())
        self.assertIn(f"{FILES} of {FILES} files", words)
        return (self.folder / out).read_bytes(), [int(text) for text in
                                                  re.search(r"now (\d+), kept from before (\d+);", words).groups()]

    def assert_rows_of_the_tool(self, table):
        """Every figure is the tool's; files that have problems tell of them in its words."""
        os.chdir(self.folder)
        self.addCleanup(os.chdir, ROOT)
        text, errors = tool("stats", "--format", "csv", *self.files)
        head, *expected = csv.reader(io.StringIO(text.decode()))
        own_head, *rows = csv.reader(io.StringIO(table.decode()))
        self.assertEqual(own_head, head + ["problem"])
        self.assertEqual(list(dict.fromkeys(row[0] for row in rows)), self.files)
        measured = [row for row in rows if row[5]]
        self.assertGreater(len(expected), 1000)
        for row, line in zip(measured, expected, strict=True):
            self.assertEqual(row[:4], line[:4])
            self.assertEqual([text and float(text) for text in row[4:-1]], [text and float(text) for text in line[4:]])
        problems = {row[0]: row[-1] for row in rows if row[-1]}
        words = errors.decode()
        self.assertLessEqual({"fleet/cut.paf", "fleet/empty.xml", 'fleet/press/problem, "inside".xml'}, problems.keys())
        for problem in problems.values():
            for piece in problem.split("; "):
                self.assertIn(re.sub(r" \(and \d+ more\)$", "", piece), words)

    def test_same_table_with_more_workers_a_killed_one_and_a_stopped_run(self):
        table, counts = self.finish(self.start("two.csv", 2), "two.csv")
        self.assert_rows_of_the_tool(table)
        self.assertEqual(counts, [FILES, 0])

        run = self.start("killed.csv", 1)
        self.wait_for_parts(run, "killed.csv", 3)
        worker, = (child for child, command in children(run.pid).items() if "spawn_main" in command)
        os.kill(worker, signal.SIGKILL)
        self.assertEqual(self.finish(run, "killed.csv")[0], table)

        run = self.start("stopped.csv", 2)
        self.wait_for_parts(run, "stopped.csv", 5)
        run.kill()
        run.communicate()
        self.assertFalse((self.folder / "stopped.csv").exists())
        before = self.folder / self.first
        shutil.copy(BENDS[5], before)  # of other figures than the one that was there
        again, (measured, kept) = self.finish(self.start("stopped.csv", 2), "stopped.csv")
        self.assertEqual(measured + kept, FILES)
        self.assertGreaterEqual(kept, 4)
        self.assertGreaterEqual(measured, 1)
        self.assert_rows_of_the_tool(again)
        others = [[line for line in one.splitlines() if not line.startswith(self.first.encode())]
                  for one in (table, again)]
        self.assertEqual(*others)
        self.assertNotEqual(table, again)


if __name__ == "__main__":
    unittest.main()
