"""How the Python module reads: errors and warnings, threads, memory, Ctrl+C, and what it says of itself."""
import ast
import os
import pathlib
import pydoc
import signal
import subprocess
import sys
import threading
import typing
import unittest
import warnings
from concurrent.futures import ThreadPoolExecutor

from testing import ROOT, SAMPLES, Folder, small, tool

import tracelyn
import tracelyn._native

BEND = ROOT / "samples/bend01.paf"
GROWTH = """
import sys, tracelyn
def resident():
    return int(open("/proc/self/statm").read().split()[1]) * 4096
for i in range(1, 1001):
    recording = tracelyn.read(sys.argv[1 + i % 2])
    recording.signals[0].values, recording.statistics()
    if i == 200:
        before = resident()
print(resident() - before)
"""


class Errors(Folder):
    def test_unreadable_files_raise_the_words_of_the_tool(self):
        bad = self.put("PK no container", "bad.paf")
        cases = [(self.folder / "missing.xml", FileNotFoundError), (self.folder / "a.txt", FileNotFoundError),
                 (self.put("x", "there.txt"), OSError), (bad, OSError), (self.put("<Analysis>"), OSError),
                 (self.put("<Other/>", "other.xml"), OSError)]
        (self.folder / "folder.xml").mkdir()
        cases.append((self.folder / "folder.xml", IsADirectoryError))
        for path, kind in cases:
            with self.subTest(path.name), self.assertRaises(OSError) as caught:
                tracelyn.read(path)
            words = tool("csv", path, self.folder / "out.csv")[1].decode().replace("ERROR: ", "").strip()
            self.assertEqual((type(caught.exception), str(caught.exception)), (kind, words))

    def test_problems_inside_a_file_are_listed_and_warned_about_once_a_read(self):
        path = self.put(small().replace("</Groups>", '<Group Name="h"><Line DataName="y"/></Group></Groups>'))
        for _ in range(2):
            with warnings.catch_warnings(record=True) as caught:
                warnings.simplefilter("always")
                recording = tracelyn.read(path)
            self.assertEqual([(one.category, str(one.message), one.filename) for one in caught],
                             [(tracelyn.RecordingWarning, f"{path}: Data not found: y", __file__)])
        self.assertEqual(recording.problems, ["Data not found: y"])
        self.assertEqual([group.name for group in recording.groups], ["Forces", "h"])

    def test_wrong_arguments(self):
        read, bend = tracelyn.read, tracelyn.read(BEND)
        wrong = {
            TypeError: [lambda: read(7), lambda: read(None), lambda: read(BEND, 1.5), lambda: read(BEND, [None]),
                        lambda: read(BEND, True), lambda: bend.statistics("1"), lambda: bend.statistics(1.5),
                        lambda: bend.statistics(while_=3), lambda: bend.plot(size=3), lambda: bend.plot(size=("a", 1)),
                        lambda: bend.plot(zoom="2"), lambda: bend.plot(toggle=[1]), lambda: bend.plot(compare=BEND),
                        lambda: bend.plot(console=1), lambda: bend.plot(cursor=True),
                        lambda: tracelyn.compare(bend, "x"), lambda: tracelyn.compare(bend, bend, tolerances=[1]),
                        lambda: tracelyn.compare(bend, bend, tolerances={1: 1})],
            ValueError: [lambda: read("a\0b.xml"), lambda: read(BEND, "12345"), lambda: read(BEND, ["60418", 7]),
                         lambda: bend.statistics(-1), lambda: bend.statistics(5, 4), lambda: bend.statistics(10**9),
                         lambda: bend.statistics(0, 2**70), lambda: bend.statistics(while_="none such"),
                         lambda: bend.plot(size=(0, 5)), lambda: bend.plot(size=(1, 2, 3)),
                         lambda: bend.plot(size=(99999, 5)), lambda: bend.plot(scheme="red"),
                         lambda: bend.plot(zoom=float("nan")), lambda: bend.plot(zoom=1e300),
                         lambda: bend.plot(scroll=-1), lambda: bend.plot(console="up"),
                         lambda: bend.plot(toggle="none such"), lambda: bend.plot(align="Pedal up"),
                         lambda: bend.plot(compare=bend), lambda: tracelyn.compare(bend, bend),
                         lambda: tracelyn.compare(bend, read(BEND), align="none such"),
                         lambda: tracelyn.compare(bend, read(BEND), tolerances={"none such": 1}),
                         lambda: tracelyn.compare(bend, read(BEND), tolerances={"P1": -1})],
        }
        for kind, calls in wrong.items():
            for number, call in enumerate(calls):
                with self.subTest(kind.__name__, number=number), self.assertRaises(kind):
                    call()

    def test_codes_and_paths_may_be_given_in_any_form(self):
        numbers = [len(tracelyn.read(path, code).signals) for path, code in (
            (BEND, None), (str(BEND), 60418), (os.fsencode(BEND), "60418"), (BEND, ["47195", 60418]))]
        self.assertTrue(numbers[0] < numbers[1] == numbers[2] < numbers[3], numbers)
        odd = self.folder / "\N{GREEK SMALL LETTER OMEGA} \N{SNOWMAN}.xml"
        odd.write_text(small())
        self.assertEqual(tracelyn.read(odd).path, str(odd))


class LongWork(Folder):
    def test_ten_threads_read_at_once_and_leave_the_lock_to_others(self):
        paths = [self.put(small(range(i, 100_000 + i)), f"{i}.xml") for i in range(10)]
        counted, done = 0, threading.Event()

        def count():
            nonlocal counted
            while not done.wait(0.001):
                counted += 1
        other = threading.Thread(target=count)
        other.start()
        with ThreadPoolExecutor(10) as pool:
            sums = list(pool.map(lambda path: float(tracelyn.read(path).to_pandas()["Force"].sum()), paths))
        done.set()
        other.join()
        self.assertEqual(sums, [sum(range(i, 100_000 + i)) for i in range(10)])
        self.assertGreater(counted, 3)

    def test_one_recording_may_be_used_by_many_threads(self):
        recording, good = tracelyn.read(BEND), tracelyn.read(SAMPLES[-1])
        work = [recording.statistics, lambda: recording.plot(compare=good), lambda: recording.signals[4].scaled.sum(),
                lambda: good.plot(compare=recording, toggle="Pressure"), lambda: recording.plot(size=(300, 200))]
        alone = [call() for call in work]
        with ThreadPoolExecutor(8) as pool:
            together = list(pool.map(lambda i: work[i % 5](), range(40)))
        self.assertTrue(all(result == alone[i % 5] for i, result in enumerate(together)))

    def test_a_signal_handler_stops_a_load(self):
        path = self.put(small(["1" + "\n11111" * 10_000_000]))

        def stop(*_):
            raise KeyboardInterrupt
        before = signal.signal(signal.SIGALRM, stop)
        self.addCleanup(signal.signal, signal.SIGALRM, before)
        signal.setitimer(signal.ITIMER_REAL, 0.02)
        with self.assertRaises(KeyboardInterrupt):
            tracelyn.read(path)

    def test_memory_does_not_grow_with_the_number_of_files(self):
        paths = [self.put(small(range(500)), "a.xml"), self.folder / "b.paf"]
        tool("pack", *paths)
        grown = int(subprocess.run([sys.executable, "-c", GROWTH, *map(str, paths)], check=True,
                                   capture_output=True).stdout)
        sanitized = "libasan" in os.environ.get("LD_PRELOAD", "")
        self.assertLess(grown, 400e6 if sanitized else 2e6)


class TheModule(unittest.TestCase):
    def test_help_tells_of_everything(self):
        text = pydoc.plain(pydoc.render_doc(tracelyn))
        for name in tracelyn.__all__:
            self.assertIn(name, text)
            self.assertTrue(getattr(tracelyn, name).__doc__, name)
        for kind in (tracelyn.Recording, tracelyn.Signal, tracelyn.Signals, tracelyn.Axis):
            for name, member in vars(kind).items():
                if not name.startswith("_") and (callable(member) or hasattr(member, "__get__")):
                    self.assertTrue(member.__doc__, f"{kind.__name__}.{name}")

    def test_everything_public_has_type_hints(self):
        hints = ast.parse(pathlib.Path(tracelyn._native.__file__).with_name("_native.pyi").read_text())
        listed = {node.name for node in hints.body if hasattr(node, "name")}
        listed |= {node.target.id for node in hints.body if isinstance(node, ast.AnnAssign)}
        self.assertEqual(listed, {name for name in dir(tracelyn._native) if not name.startswith("_")})
        for kind in [node for node in hints.body if isinstance(node, ast.ClassDef)]:
            real = {name for name in vars(getattr(tracelyn._native, kind.name)) if not name.startswith("_")}
            self.assertEqual({node.name for node in kind.body if not node.name.startswith("_")}, real)
        for function in (tracelyn.read, tracelyn.compare, tracelyn.Recording.plot, tracelyn.Recording.statistics,
                         tracelyn.Recording.to_pandas):
            self.assertIn("return", function.__annotations__)
        self.assertEqual(typing.get_type_hints(tracelyn.Recording.plot)["return"], bytes)


if __name__ == "__main__":
    unittest.main()
